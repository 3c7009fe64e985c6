#include "Tools/ContentBuilder/Sprite.h"

#include "Tools/ContentBuilder/Noise.h"

#include <algorithm>
#include <cmath>

namespace content
{

void Sprite::pointOn(const Blade& blade, float t, float& fX, float& fY)
{
    const float fAlongX = blade.fTipX - blade.fX;
    const float fAlongY = blade.fTipY - blade.fY;
    const float fArch = 4.0f * t * (1.0f - t) * 0.5f * blade.fBend;
    fX = blade.fX + fAlongX * t + fAlongY * fArch;
    fY = blade.fY + fAlongY * t - fAlongX * fArch;
}

void Sprite::blade(const Blade& blade)
{
    constexpr int s_iSteps = 900;
    for (int iStep = 0; iStep <= s_iSteps; ++iStep)
    {
        const float t = static_cast<float>(iStep) / s_iSteps;
        float fX = 0.0f;
        float fY = 0.0f;
        pointOn(blade, t, fX, fY);
        float fWide = blade.fHalfWidth;
        if (!blade.bRound)
            fWide *= std::min(0.65f + t, 1.0f) * std::pow(1.0f - t, 0.6f) * 1.25f;
        const Colour middle = mix(blade.root, blade.tip, t);
        // One side of the rib is in the light, the other in the shade.
        const float fReach = std::max(fWide * s_iFine, 0.6f);
        const int iRow = static_cast<int>(fY * s_iFine);
        if (iRow < 0 || iRow >= s_iFine)
            continue;
        for (int iX = static_cast<int>(std::floor(fX * s_iFine - fReach));
             iX <= static_cast<int>(fX * s_iFine + fReach); ++iX)
        {
            if (iX < 0 || iX >= s_iFine)
                continue;
            const float fSide = (static_cast<float>(iX) + 0.5f - fX * s_iFine) / fReach;
            Texel& texel = m_vecTexels[static_cast<size_t>(iRow) * s_iFine + static_cast<size_t>(iX)];
            texel = {scaled(middle, 0.98f + 0.12f * std::clamp(fSide, -1.0f, 1.0f)), true};
        }
    }
}

void Sprite::stamp(float fX, float fY, float fHalfLength, float fHalfWidth, float fAngle,
                   const std::function<bool(float, float, Colour&)>& fnShape)
{
    const float fReach = std::max(fHalfLength, fHalfWidth) * s_iFine;
    const float fCosine = std::cos(fAngle);
    const float fSine = std::sin(fAngle);
    const auto clampRow = [](float f) { return std::clamp(static_cast<int>(f), 0, s_iFine - 1); };
    for (int iY = clampRow(fY * s_iFine - fReach); iY <= clampRow(fY * s_iFine + fReach); ++iY)
        for (int iX = clampRow(fX * s_iFine - fReach); iX <= clampRow(fX * s_iFine + fReach); ++iX)
        {
            const float fDx = (static_cast<float>(iX) + 0.5f) / s_iFine - fX;
            const float fDy = (static_cast<float>(iY) + 0.5f) / s_iFine - fY;
            const float x = (fDx * fCosine + fDy * fSine) / fHalfLength;
            const float y = (fDy * fCosine - fDx * fSine) / fHalfWidth;
            Texel& texel = m_vecTexels[static_cast<size_t>(iY) * s_iFine + static_cast<size_t>(iX)];
            if (x * x <= 1.0f && y * y <= 1.0f && fnShape(x, y, texel.colour))
                texel.bCovered = true;
        }
}

void Sprite::ellipse(float fX, float fY, float fHalfLength, float fHalfWidth, float fAngle,
                     const Colour& colour)
{
    stamp(fX, fY, fHalfLength, fHalfWidth, fAngle,
          [&](float x, float y, Colour& out)
          {
              if (x * x + y * y > 1.0f)
                  return false;
              out = scaled(colour, 1.04f - 0.16f * (x * x + y * y) + 0.06f * y);
              return true;
          });
}

void Sprite::fill(const std::function<Colour(float, float)>& fnColour)
{
    for (int iY = 0; iY < s_iFine; ++iY)
        for (int iX = 0; iX < s_iFine; ++iX)
            m_vecTexels[static_cast<size_t>(iY) * s_iFine + static_cast<size_t>(iX)] = {
                fnColour((static_cast<float>(iX) + 0.5f) / s_iFine,
                         (static_cast<float>(iY) + 0.5f) / s_iFine),
                true};
}

std::vector<uint8_t> Sprite::pixels() const
{
    struct Average
    {
        Colour colour;
        float fAlpha = 0.0f;
    };
    const auto at = [](int iX, int iY)
    { return static_cast<size_t>(iY) * s_iSide + static_cast<size_t>(iX); };
    std::vector<Average> vecPixels(static_cast<size_t>(s_iSide) * s_iSide);
    for (int iY = 0; iY < s_iSide; ++iY)
        for (int iX = 0; iX < s_iSide; ++iX)
        {
            Average& pixel = vecPixels[at(iX, iY)];
            for (int j = 0; j < s_iOversize; ++j)
                for (int i = 0; i < s_iOversize; ++i)
                {
                    const Texel& texel = m_vecTexels[static_cast<size_t>(iY * s_iOversize + j) * s_iFine +
                                                     static_cast<size_t>(iX * s_iOversize + i)];
                    if (!texel.bCovered)
                        continue;
                    pixel.colour.r += texel.colour.r;
                    pixel.colour.g += texel.colour.g;
                    pixel.colour.b += texel.colour.b;
                    pixel.fAlpha += 1.0f;
                }
            if (pixel.fAlpha > 0.0f)
                pixel.colour = scaled(pixel.colour, 1.0f / pixel.fAlpha);
            pixel.fAlpha /= s_iOversize * s_iOversize;
        }
    // Colours spread outwards, doubling their reach, so that coarser pictures get no dark rims.
    std::vector<bool> vecKnown;
    for (const Average& pixel : vecPixels)
        vecKnown.push_back(pixel.fAlpha > 0.0f);
    for (int iReach = 1; iReach < s_iSide; iReach *= 2)
    {
        const std::vector<bool> vecBefore = vecKnown;
        for (int iY = 0; iY < s_iSide; ++iY)
            for (int iX = 0; iX < s_iSide; ++iX)
            {
                if (vecBefore[at(iX, iY)])
                    continue;
                Colour sum;
                int iCount = 0;
                for (int j = -1; j <= 1; ++j)
                    for (int i = -1; i <= 1; ++i)
                    {
                        const int iOtherX = iX + i * iReach;
                        const int iOtherY = iY + j * iReach;
                        if (iOtherX < 0 || iOtherY < 0 || iOtherX >= s_iSide || iOtherY >= s_iSide ||
                            !vecBefore[at(iOtherX, iOtherY)])
                            continue;
                        const Colour& other = vecPixels[at(iOtherX, iOtherY)].colour;
                        sum = {sum.r + other.r, sum.g + other.g, sum.b + other.b};
                        ++iCount;
                    }
                if (iCount == 0)
                    continue;
                vecPixels[at(iX, iY)].colour = scaled(sum, 1.0f / static_cast<float>(iCount));
                vecKnown[at(iX, iY)] = true;
            }
    }
    std::vector<uint8_t> vecBytes;
    const auto byteOf = [](float f) { return static_cast<uint8_t>(clamp01(f) * 255.0f + 0.5f); };
    for (int iY = s_iSide - 1; iY >= 0; --iY)
        for (int iX = 0; iX < s_iSide; ++iX)
        {
            const Average& pixel = vecPixels[at(iX, iY)];
            vecBytes.insert(vecBytes.end(), {byteOf(pixel.colour.r), byteOf(pixel.colour.g),
                                             byteOf(pixel.colour.b), byteOf(pixel.fAlpha)});
        }
    return vecBytes;
}

} // namespace content
