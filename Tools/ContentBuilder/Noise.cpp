#include "Tools/ContentBuilder/Noise.h"

#include <algorithm>
#include <cmath>

namespace content
{

namespace
{

uint32_t scramble(uint32_t u)
{
    u ^= u >> 16;
    u *= 0x7FEB352Du;
    u ^= u >> 15;
    u *= 0x846CA68Bu;
    u ^= u >> 16;
    return u;
}

int wrap(int i, int iPeriod)
{
    const int iRest = i % iPeriod;
    return iRest < 0 ? iRest + iPeriod : iRest;
}

float fade(float t)
{
    return t * t * t * (t * (t * 6.0f - 15.0f) + 10.0f);
}

} // namespace

float hash(int iX, int iY, uint32_t uSeed)
{
    const uint32_t u = scramble(static_cast<uint32_t>(iX) * 0x8DA6B343u ^
                                static_cast<uint32_t>(iY) * 0xD8163841u ^ scramble(uSeed + 0x68E31DA4u));
    return static_cast<float>(u >> 8) * (1.0f / 16777216.0f);
}

float gradientNoise(float fX, float fY, int iPeriod, uint32_t uSeed)
{
    const float fCellX = std::floor(fX);
    const float fCellY = std::floor(fY);
    const float fPartX = fX - fCellX;
    const float fPartY = fY - fCellY;
    const auto corner = [&](int iX, int iY)
    {
        const float fAngle = 6.2831853f * hash(wrap(static_cast<int>(fCellX) + iX, iPeriod),
                                               wrap(static_cast<int>(fCellY) + iY, iPeriod), uSeed);
        return std::cos(fAngle) * (fPartX - static_cast<float>(iX)) +
               std::sin(fAngle) * (fPartY - static_cast<float>(iY));
    };
    const float fU = fade(fPartX);
    return blend(blend(corner(0, 0), corner(1, 0), fU), blend(corner(0, 1), corner(1, 1), fU), fade(fPartY));
}

float fractal(float u, float v, int iFrequency, int iOctaves, uint32_t uSeed, float fGain)
{
    float fSum = 0.0f;
    float fSize = 1.0f;
    for (int i = 0; i < iOctaves; ++i)
    {
        fSum += fSize * gradientNoise(u * static_cast<float>(iFrequency), v * static_cast<float>(iFrequency),
                                      iFrequency, uSeed + static_cast<uint32_t>(i) * 101u);
        fSize *= fGain;
        iFrequency *= 2;
    }
    return fSum;
}

float ridges(float u, float v, int iFrequency, int iOctaves, uint32_t uSeed)
{
    float fSum = 0.0f;
    float fSize = 0.5f;
    for (int i = 0; i < iOctaves; ++i)
    {
        const float fNoise =
            gradientNoise(u * static_cast<float>(iFrequency), v * static_cast<float>(iFrequency), iFrequency,
                          uSeed + static_cast<uint32_t>(i) * 77u);
        const float fRidge = 1.0f - std::min(1.0f, std::abs(fNoise) * 1.8f);
        fSum += fSize * fRidge * fRidge;
        fSize *= 0.5f;
        iFrequency *= 2;
    }
    return fSum;
}

CellNoise cells(float u, float v, int iColumns, int iRows, uint32_t uSeed)
{
    const float fX = u * static_cast<float>(iColumns);
    const float fY = v * static_cast<float>(iRows);
    const int iX = static_cast<int>(std::floor(fX));
    const int iY = static_cast<int>(std::floor(fY));
    float fFirst = 9.0f;
    float fSecond = 9.0f;
    float fValue = 0.0f;
    for (int iRow = iY - 1; iRow <= iY + 1; ++iRow)
        for (int iColumn = iX - 1; iColumn <= iX + 1; ++iColumn)
        {
            const int iWrapX = wrap(iColumn, iColumns);
            const int iWrapY = wrap(iRow, iRows);
            const float fAwayX = static_cast<float>(iColumn) + hash(iWrapX, iWrapY, uSeed) - fX;
            const float fAwayY = static_cast<float>(iRow) + hash(iWrapX, iWrapY, uSeed + 1) - fY;
            const float fAway = std::sqrt(fAwayX * fAwayX + fAwayY * fAwayY);
            if (fAway < fFirst)
            {
                fSecond = fFirst;
                fFirst = fAway;
                fValue = hash(iWrapX, iWrapY, uSeed + 2);
            }
            else
                fSecond = std::min(fSecond, fAway);
        }
    return {fFirst, fSecond - fFirst, fValue};
}

float Dice::roll(float fLow, float fHigh)
{
    m_uState = m_uState * 1664525u + 1013904223u;
    return fLow + (fHigh - fLow) * static_cast<float>(scramble(m_uState) >> 8) * (1.0f / 16777216.0f);
}

} // namespace content
