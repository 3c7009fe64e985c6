#include "Tools/TileForge/Noise.h"

#include <cmath>

namespace forge
{

namespace
{

uint32_t mix(uint32_t uX, uint32_t uY, uint32_t uSeed)
{
    uint32_t uHash = uX * 0x9E3779B1u ^ uY * 0x85EBCA77u ^ uSeed * 0xC2B2AE3Du;
    uHash = (uHash ^ uHash >> 15) * 0x2C1B3C6Du;
    uHash = (uHash ^ uHash >> 12) * 0x297A2D39u;
    return uHash ^ uHash >> 15;
}

float slope(int iX, int iY, uint32_t uSeed, float fX, float fY)
{
    const float fAngle =
        static_cast<float>(mix(static_cast<uint32_t>(iX), static_cast<uint32_t>(iY), uSeed)) *
        (6.2831853f / 4294967296.0f);
    return std::cos(fAngle) * fX + std::sin(fAngle) * fY;
}

// Perlin's quintic, whose first two derivatives vanish at 0 and 1.
float fade(float t)
{
    return t * t * t * (t * (t * 6.0f - 15.0f) + 10.0f);
}

float blend(float a, float b, float t)
{
    return a + (b - a) * t;
}

} // namespace

float gradientNoise(float fX, float fY, uint32_t uSeed)
{
    const float fCellX = std::floor(fX);
    const float fCellY = std::floor(fY);
    const int iX = static_cast<int>(fCellX);
    const int iY = static_cast<int>(fCellY);
    const float fU = fX - fCellX;
    const float fV = fY - fCellY;
    const float fLow = blend(slope(iX, iY, uSeed, fU, fV), slope(iX + 1, iY, uSeed, fU - 1.0f, fV), fade(fU));
    const float fHigh = blend(slope(iX, iY + 1, uSeed, fU, fV - 1.0f),
                              slope(iX + 1, iY + 1, uSeed, fU - 1.0f, fV - 1.0f), fade(fU));
    return blend(fLow, fHigh, fade(fV)) * 1.414f;
}

float fractal(float fX, float fY, uint32_t uSeed, const FractalShape& shape)
{
    float fSum = 0.0f;
    float fAmplitude = 1.0f;
    float fTotal = 0.0f;
    for (int iOctave = 0; iOctave < shape.iOctaves; ++iOctave)
    {
        fSum += fAmplitude * gradientNoise(fX, fY, uSeed + static_cast<uint32_t>(iOctave));
        fTotal += fAmplitude;
        fAmplitude *= shape.fGain;
        fX = fX * shape.fLacunarity + 17.3f;
        fY = fY * shape.fLacunarity - 9.7f;
    }
    return fSum / fTotal * 1.4f;
}

float ridged(float fX, float fY, uint32_t uSeed, const FractalShape& shape)
{
    float fSum = 0.0f;
    float fAmplitude = 1.0f;
    float fTotal = 0.0f;
    float fWeight = 1.0f;
    for (int iOctave = 0; iOctave < shape.iOctaves; ++iOctave)
    {
        float fCrest = 1.0f - std::fabs(gradientNoise(fX, fY, uSeed + static_cast<uint32_t>(iOctave)));
        fCrest *= fCrest;
        fSum += fAmplitude * fCrest * fWeight;
        fTotal += fAmplitude;
        fWeight = fCrest;
        fAmplitude *= shape.fGain;
        fX = fX * shape.fLacunarity + 5.1f;
        fY = fY * shape.fLacunarity + 11.9f;
    }
    return fSum / fTotal;
}

} // namespace forge
