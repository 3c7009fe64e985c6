#include "Tools/TileForge/Terrain.h"

#include <algorithm>
#include <cmath>

namespace forge
{

namespace
{

// xorshift32 (Marsaglia 2003); 0 to 1.
float random01(uint32_t& uState)
{
    uState ^= uState << 13;
    uState ^= uState >> 17;
    uState ^= uState << 5;
    return static_cast<float>(uState >> 8) * (1.0f / 16777216.0f);
}

struct Droplet
{
    float fX, fY;
    float fDirX = 0.0f, fDirY = 0.0f;
    float fSpeed = 1.0f;
    float fWater = 1.0f;
    float fSediment = 0.0f;
};

struct Slope
{
    float fHeight, fX, fY;
};

Slope slopeAt(const Grid& heights, float fX, float fY)
{
    const int iX = static_cast<int>(fX);
    const int iY = static_cast<int>(fY);
    const float fU = fX - static_cast<float>(iX);
    const float fV = fY - static_cast<float>(iY);
    const float a = heights.at(iX, iY), b = heights.at(iX + 1, iY);
    const float c = heights.at(iX, iY + 1), d = heights.at(iX + 1, iY + 1);
    return {a * (1 - fU) * (1 - fV) + b * fU * (1 - fV) + c * (1 - fU) * fV + d * fU * fV,
            (b - a) * (1 - fV) + (d - c) * fV, (c - a) * (1 - fU) + (d - b) * fU};
}

void addBilinear(Grid& grid, float fX, float fY, float fAmount)
{
    const int iX = static_cast<int>(fX);
    const int iY = static_cast<int>(fY);
    const float fU = fX - static_cast<float>(iX);
    const float fV = fY - static_cast<float>(iY);
    grid.at(iX, iY) += fAmount * (1 - fU) * (1 - fV);
    grid.at(iX + 1, iY) += fAmount * fU * (1 - fV);
    grid.at(iX, iY + 1) += fAmount * (1 - fU) * fV;
    grid.at(iX + 1, iY + 1) += fAmount * fU * fV;
}

// Takes an amount over a cone around the place, so that no pits are dug.
void takeSoil(Grid& heights, float fX, float fY, float fAmount, int iRadius)
{
    const int iCentreX = static_cast<int>(fX);
    const int iCentreY = static_cast<int>(fY);
    const auto weightAt = [&](int iX, int iY)
    {
        const float fDistance = std::hypot(static_cast<float>(iX) - fX, static_cast<float>(iY) - fY);
        return std::max(0.0f, static_cast<float>(iRadius) - fDistance);
    };
    const int iX0 = std::max(iCentreX - iRadius, 0),
              iX1 = std::min(iCentreX + iRadius + 1, heights.iWidth - 1);
    const int iY0 = std::max(iCentreY - iRadius, 0),
              iY1 = std::min(iCentreY + iRadius + 1, heights.iHeight - 1);
    float fTotal = 0.0f;
    for (int iY = iY0; iY <= iY1; ++iY)
        for (int iX = iX0; iX <= iX1; ++iX)
            fTotal += weightAt(iX, iY);
    if (fTotal <= 0.0f)
        return;
    for (int iY = iY0; iY <= iY1; ++iY)
        for (int iX = iX0; iX <= iX1; ++iX)
            heights.at(iX, iY) -= fAmount * weightAt(iX, iY) / fTotal;
}

} // namespace

float Grid::sample(float fX, float fY) const
{
    fX = std::clamp(fX, 0.0f, static_cast<float>(iWidth - 1) - 0.001f);
    fY = std::clamp(fY, 0.0f, static_cast<float>(iHeight - 1) - 0.001f);
    return slopeAt(*this, fX, fY).fHeight;
}

void erode(Grid& heights, Grid& flow, const ErosionSettings& settings)
{
    constexpr int iMaxSteps = 96;
    constexpr float fInertia = 0.08f;
    constexpr float fTopSpeed = 2.5f;
    constexpr float fDeepestCut = 0.05f; // metres a step, so that no droplet digs a pit
    uint32_t uState = settings.uSeed * 747796405u + 1u;
    const auto fMaxX = static_cast<float>(heights.iWidth - 2);
    const auto fMaxY = static_cast<float>(heights.iHeight - 2);
    for (int iDroplet = 0; iDroplet < settings.iDroplets; ++iDroplet)
    {
        Droplet drop{random01(uState) * fMaxX, random01(uState) * fMaxY};
        for (int iStep = 0; iStep < iMaxSteps; ++iStep)
        {
            const Slope here = slopeAt(heights, drop.fX, drop.fY);
            drop.fDirX = drop.fDirX * fInertia - here.fX * (1.0f - fInertia);
            drop.fDirY = drop.fDirY * fInertia - here.fY * (1.0f - fInertia);
            const float fLength = std::hypot(drop.fDirX, drop.fDirY);
            if (fLength < 1e-5f)
                break;
            const float fNextX = drop.fX + drop.fDirX / fLength;
            const float fNextY = drop.fY + drop.fDirY / fLength;
            if (fNextX < 0.0f || fNextY < 0.0f || fNextX >= fMaxX || fNextY >= fMaxY)
                break;
            const float fRise = slopeAt(heights, fNextX, fNextY).fHeight - here.fHeight;
            const float fCapacity = std::max(-fRise, 0.01f) * drop.fSpeed * drop.fWater * settings.fCapacity;
            addBilinear(flow, drop.fX, drop.fY, drop.fWater);
            if (drop.fSediment > fCapacity || fRise > 0.0f)
            {
                const float fAmount = fRise > 0.0f ? std::min(fRise, drop.fSediment)
                                                   : (drop.fSediment - fCapacity) * settings.fDeposit;
                drop.fSediment -= fAmount;
                addBilinear(heights, drop.fX, drop.fY, fAmount);
            }
            else
            {
                const float fAmount =
                    std::min({(fCapacity - drop.fSediment) * settings.fErode, -fRise, fDeepestCut});
                drop.fSediment += fAmount;
                takeSoil(heights, drop.fX, drop.fY, fAmount, settings.iRadius);
            }
            drop.fSpeed =
                std::min(std::sqrt(std::max(0.0f, drop.fSpeed * drop.fSpeed * 0.9f - fRise)), fTopSpeed);
            drop.fWater *= 1.0f - settings.fEvaporate;
            drop.fX = fNextX;
            drop.fY = fNextY;
        }
    }
}

void slide(Grid& heights, float fTalus, int iPasses)
{
    static constexpr int s_arrSteps[4][2] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}};
    for (int iPass = 0; iPass < iPasses; ++iPass)
        for (int iY = 1; iY + 1 < heights.iHeight; ++iY)
            for (int iX = 1; iX + 1 < heights.iWidth; ++iX)
                for (const auto& step : s_arrSteps)
                {
                    float& fHere = heights.at(iX, iY);
                    float& fThere = heights.at(iX + step[0], iY + step[1]);
                    const float fExcess = fHere - fThere - fTalus;
                    if (fExcess <= 0.0f)
                        continue;
                    fHere -= fExcess * 0.25f;
                    fThere += fExcess * 0.25f;
                }
}

float steepness(const Grid& heights, int iX, int iY)
{
    const int iLeft = std::max(iX - 1, 0), iRight = std::min(iX + 1, heights.iWidth - 1);
    const int iDown = std::max(iY - 1, 0), iUp = std::min(iY + 1, heights.iHeight - 1);
    const float fX =
        (heights.at(iRight, iY) - heights.at(iLeft, iY)) / (2.0f * static_cast<float>(iRight - iLeft));
    const float fY = (heights.at(iX, iUp) - heights.at(iX, iDown)) / (2.0f * static_cast<float>(iUp - iDown));
    return std::hypot(fX, fY);
}

Grid hollowness(const Grid& heights, int iRadius)
{
    // Two box means, one along each axis.
    const auto boxMean = [iRadius](const Grid& source, bool bRows)
    {
        Grid out(source.iWidth, source.iHeight);
        const int iLength = bRows ? source.iWidth : source.iHeight;
        const int iLines = bRows ? source.iHeight : source.iWidth;
        const auto value = [&](int iLine, int i)
        { return bRows ? source.at(i, iLine) : source.at(iLine, i); };
        for (int iLine = 0; iLine < iLines; ++iLine)
        {
            std::vector<double> vecSum(static_cast<size_t>(iLength) + 1, 0.0);
            for (int i = 0; i < iLength; ++i)
                vecSum[static_cast<size_t>(i) + 1] = vecSum[static_cast<size_t>(i)] + double{value(iLine, i)};
            for (int i = 0; i < iLength; ++i)
            {
                const int iFrom = std::max(i - iRadius, 0), iTo = std::min(i + iRadius + 1, iLength);
                const auto fMean = static_cast<float>(
                    (vecSum[static_cast<size_t>(iTo)] - vecSum[static_cast<size_t>(iFrom)]) / (iTo - iFrom));
                (bRows ? out.at(i, iLine) : out.at(iLine, i)) = fMean;
            }
        }
        return out;
    };
    Grid out = boxMean(boxMean(heights, true), false);
    for (size_t uPlace = 0; uPlace < out.vecValues.size(); ++uPlace)
        out.vecValues[uPlace] -= heights.vecValues[uPlace];
    return out;
}

} // namespace forge
