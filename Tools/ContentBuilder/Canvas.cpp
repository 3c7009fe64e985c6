#include "Tools/ContentBuilder/Canvas.h"

#include "Tools/ContentBuilder/Noise.h"

#include <algorithm>
#include <cmath>

namespace content
{

namespace
{

uint8_t toByte(float f)
{
    return static_cast<uint8_t>(clamp01(f) * 255.0f + 0.5f);
}

} // namespace

Colour mix(const Colour& a, const Colour& b, float t)
{
    return {blend(a.r, b.r, t), blend(a.g, b.g, t), blend(a.b, b.b, t)};
}

Colour scaled(const Colour& colour, float f)
{
    return {colour.r * f, colour.g * f, colour.b * f};
}

size_t Canvas::index(int iX, int iY)
{
    static_assert((s_iFine & (s_iFine - 1)) == 0);
    return static_cast<size_t>(iY & (s_iFine - 1)) * s_iFine + static_cast<size_t>(iX & (s_iFine - 1));
}

const Texel& Canvas::at(float fX, float fY) const
{
    return m_vecTexels[index(static_cast<int>(std::floor(fX * s_iOversize)),
                             static_cast<int>(std::floor(fY * s_iOversize)))];
}

void Canvas::fill(const std::function<Texel(float, float)>& fnTexel)
{
    for (int iY = 0; iY < s_iFine; ++iY)
        for (int iX = 0; iX < s_iFine; ++iX)
            m_vecTexels[index(iX, iY)] =
                fnTexel((static_cast<float>(iX) + 0.5f) / s_iFine, (static_cast<float>(iY) + 0.5f) / s_iFine);
}

void Canvas::stamp(const Stamp& stamped, const std::function<bool(float, float, Texel&)>& fnShape)
{
    constexpr auto s_fScale = static_cast<float>(s_iOversize);
    const Stamp place{stamped.fX * s_fScale, stamped.fY * s_fScale, stamped.fHalfLength * s_fScale,
                      stamped.fHalfWidth * s_fScale, stamped.fAngle};
    const float fCosine = std::cos(place.fAngle);
    const float fSine = std::sin(place.fAngle);
    const int iReach = static_cast<int>(std::sqrt(place.fHalfLength * place.fHalfLength +
                                                  place.fHalfWidth * place.fHalfWidth)) +
                       1;
    const int iMiddleX = static_cast<int>(std::floor(place.fX));
    const int iMiddleY = static_cast<int>(std::floor(place.fY));
    for (int iY = iMiddleY - iReach; iY <= iMiddleY + iReach; ++iY)
        for (int iX = iMiddleX - iReach; iX <= iMiddleX + iReach; ++iX)
        {
            const float fAwayX = static_cast<float>(iX) + 0.5f - place.fX;
            const float fAwayY = static_cast<float>(iY) + 0.5f - place.fY;
            const float x = (fAwayX * fCosine + fAwayY * fSine) / place.fHalfLength;
            const float y = (fAwayY * fCosine - fAwayX * fSine) / place.fHalfWidth;
            if (std::abs(x) > 1.0f || std::abs(y) > 1.0f)
                continue;
            Texel& below = m_vecTexels[index(iX, iY)];
            Texel texel = below;
            if (fnShape(x, y, texel) && texel.fHeight > below.fHeight)
                below = texel;
        }
}

std::vector<float> Canvas::blurred(const std::vector<float>& vecValues, int iRadius) const
{
    std::vector<float> vecFrom = vecValues;
    std::vector<float> vecTo(vecValues.size());
    const float fScale = 1.0f / static_cast<float>(2 * iRadius + 1);
    for (int iPass = 0; iPass < 4; ++iPass) // along x, along y, twice
    {
        const bool bAcross = iPass % 2 == 0;
        const auto cell = [bAcross](int iLine, int i) { return bAcross ? index(i, iLine) : index(iLine, i); };
        for (int iLine = 0; iLine < s_iFine; ++iLine)
        {
            float fSum = 0.0f;
            for (int i = -iRadius; i <= iRadius; ++i)
                fSum += vecFrom[cell(iLine, i)];
            for (int i = 0; i < s_iFine; ++i)
            {
                vecTo[cell(iLine, i)] = fSum * fScale;
                fSum += vecFrom[cell(iLine, i + iRadius + 1)] - vecFrom[cell(iLine, i - iRadius)];
            }
        }
        vecFrom.swap(vecTo);
    }
    return vecFrom;
}

Canvas::Maps Canvas::maps(float fRelief, float fShade) const
{
    std::vector<float> vecHeights(m_vecTexels.size());
    for (size_t u = 0; u < vecHeights.size(); ++u)
        vecHeights[u] = m_vecTexels[u].fHeight;
    const std::vector<float> vecNear = blurred(vecHeights, 4 * s_iOversize);
    const std::vector<float> vecWide = blurred(vecHeights, 18 * s_iOversize);
    // Large patches would show as a pattern when the map repeats: tones are evened out over half a metre.
    std::vector<float> vecTones(m_vecTexels.size());
    float fMeanTone = 0.0f;
    for (size_t u = 0; u < vecTones.size(); ++u)
    {
        const Colour& colour = m_vecTexels[u].colour;
        vecTones[u] = 0.3f * colour.r + 0.6f * colour.g + 0.1f * colour.b;
        fMeanTone += vecTones[u] / static_cast<float>(vecTones.size());
    }
    const std::vector<float> vecPatches = blurred(vecTones, 34 * s_iOversize);
    std::vector<float> vecSorted = vecHeights;
    std::sort(vecSorted.begin(), vecSorted.end());
    const float fLowest = vecSorted[vecSorted.size() / 100];
    const float fHighest = vecSorted[vecSorted.size() - 1 - vecSorted.size() / 100];
    const float fRange = std::max(fHighest - fLowest, 0.01f);

    const float fPixel = s_fMetres * 100.0f / s_iFine; // centimetres
    // Twelve sums a pixel of the maps: three maps of four channels.
    std::vector<std::array<float, 12>> vecSums(static_cast<size_t>(s_iSide) * s_iSide);
    for (int iY = 0; iY < s_iFine; ++iY)
        for (int iX = 0; iX < s_iFine; ++iX)
        {
            const size_t u = index(iX, iY);
            const Texel& texel = m_vecTexels[u];
            const float fHeight = clamp01((texel.fHeight - fLowest) / fRange);
            const float fHollow = (vecNear[u] - texel.fHeight) * 0.9f + (vecWide[u] - texel.fHeight) * 0.45f;
            const float fLit = clamp01(1.0f - std::max(fHollow, 0.0f) / fRange * 1.5f);
            const float fEven = std::pow(fMeanTone / std::max(vecPatches[u], 0.01f), 0.8f);
            const float fColour = fEven * blend(1.0f, 0.35f + 0.65f * fLit, fShade) *
                                  (1.0f + fShade * 0.22f * std::clamp(-fHollow / fRange, 0.0f, 0.6f));
            const float fAcross = fRelief / (2.0f * fPixel);
            const float fSlopeX = (vecHeights[index(iX - 1, iY)] - vecHeights[index(iX + 1, iY)]) * fAcross;
            const float fSlopeY = (vecHeights[index(iX, iY - 1)] - vecHeights[index(iX, iY + 1)]) * fAcross;
            const float fLength = std::sqrt(fSlopeX * fSlopeX + fSlopeY * fSlopeY + 1.0f);
            const std::array<float, 12> arrValues = {texel.colour.r * fColour,
                                                     texel.colour.g * fColour,
                                                     texel.colour.b * fColour,
                                                     fHeight,
                                                     fLit,
                                                     texel.fGloss,
                                                     0.0f,
                                                     1.0f,
                                                     fSlopeX / fLength * 0.5f + 0.5f,
                                                     fSlopeY / fLength * 0.5f + 0.5f,
                                                     1.0f, // follows from the other two
                                                     1.0f};
            auto& arrSum = vecSums[static_cast<size_t>(iY / s_iOversize) * s_iSide +
                                   static_cast<size_t>(iX / s_iOversize)];
            for (size_t v = 0; v < arrValues.size(); ++v)
                arrSum[v] += clamp01(arrValues[v]) / (s_iOversize * s_iOversize);
        }

    Maps result;
    for (const auto& arrSum : vecSums)
        for (size_t v = 0; v < arrSum.size(); ++v)
        {
            // The last bits would be lost when the maps are compressed for drawing, and cost most in a file.
            const uint8_t uValue = toByte(arrSum[v]);
            const auto rounded = [uValue](int iStep)
            { return static_cast<uint8_t>(std::min((uValue + iStep / 2) / iStep * iStep, 255)); };
            if (v < 4)
                result.vecDiffuse.push_back(uValue);
            else if (v < 8)
                result.vecAsg.push_back(rounded(4));
            else
                result.vecNormal.push_back(rounded(2));
        }
    return result;
}

} // namespace content
