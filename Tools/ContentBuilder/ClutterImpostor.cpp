#include "Tools/ContentBuilder/Clutter.h"

#include "Tools/ContentBuilder/Noise.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace content
{

namespace
{

constexpr int s_iFine = ImpostorSide * 8;
constexpr int s_iDirections = 5;

struct View
{
    std::vector<Colour> vecColours = std::vector<Colour>(static_cast<size_t>(s_iFine) * s_iFine);
    std::vector<float> vecDepth =
        std::vector<float>(static_cast<size_t>(s_iFine) * s_iFine, -std::numeric_limits<float>::max());
};

struct Projected
{
    float x, y, fDepth, u, v;
};

void drawTriangle(View& view, const std::array<Projected, 3>& t, const std::vector<uint8_t>& vecPicture)
{
    const float fArea = (t[1].x - t[0].x) * (t[2].y - t[0].y) - (t[2].x - t[0].x) * (t[1].y - t[0].y);
    if (std::fabs(fArea) < 1e-6f)
        return;
    const auto [fX0, fX1] = std::minmax({t[0].x, t[1].x, t[2].x});
    const auto [fY0, fY1] = std::minmax({t[0].y, t[1].y, t[2].y});
    const auto clamped = [](float f) { return std::clamp(static_cast<int>(f), 0, s_iFine - 1); };
    for (int iY = clamped(fY0); iY <= clamped(fY1); ++iY)
        for (int iX = clamped(fX0); iX <= clamped(fX1); ++iX)
        {
            const float fX = static_cast<float>(iX) + 0.5f;
            const float fY = static_cast<float>(iY) + 0.5f;
            const float b = ((fX - t[0].x) * (t[2].y - t[0].y) - (t[2].x - t[0].x) * (fY - t[0].y)) / fArea;
            const float c = ((t[1].x - t[0].x) * (fY - t[0].y) - (fX - t[0].x) * (t[1].y - t[0].y)) / fArea;
            const float a = 1.0f - b - c;
            if (a < 0.0f || b < 0.0f || c < 0.0f)
                continue;
            const float fDepth = a * t[0].fDepth + b * t[1].fDepth + c * t[2].fDepth;
            const size_t uPlace = static_cast<size_t>(iY) * s_iFine + static_cast<size_t>(iX);
            if (fDepth <= view.vecDepth[uPlace])
                continue;
            const float u = a * t[0].u + b * t[1].u + c * t[2].u;
            const float v = a * t[0].v + b * t[1].v + c * t[2].v;
            const auto texel = [](float f)
            { return std::clamp(static_cast<int>(f * Sprite::s_iSide), 0, Sprite::s_iSide - 1); };
            const size_t uTexel =
                (static_cast<size_t>(texel(1.0f - v)) * Sprite::s_iSide + static_cast<size_t>(texel(u))) * 4;
            if (vecPicture[uTexel + 3] < 128)
                continue;
            view.vecDepth[uPlace] = fDepth;
            view.vecColours[uPlace] = rgb(vecPicture[uTexel], vecPicture[uTexel + 1], vecPicture[uTexel + 2]);
        }
}

} // namespace

std::vector<uint8_t> makeImpostor(const ClutterShape& shape, const std::vector<uint8_t>& vecPicture)
{
    float fLow = 0.0f;
    float fHigh = 0.0f;
    ClutterShape::Vector lowest{};
    ClutterShape::Vector highest{};
    for (const ClutterShape::Triangle& triangle : shape.triangles())
        for (const ClutterShape::Corner& corner : triangle)
        {
            fHigh = std::max(fHigh, corner.place[2]);
            for (size_t i = 0; i < 3; ++i)
            {
                lowest[i] = std::min(lowest[i], corner.place[i]);
                highest[i] = std::max(highest[i], corner.place[i]);
            }
        }
    // As wide as the renderer draws it: the mean of the two extents.
    const float fHalf = (highest[0] - lowest[0] + highest[1] - lowest[1]) * 0.25f;

    std::vector<Colour> vecSums(static_cast<size_t>(ImpostorSide) * ImpostorSide);
    std::vector<float> vecCover(vecSums.size());
    for (int iDirection = 0; iDirection < s_iDirections; ++iDirection)
    {
        const float fAngle = static_cast<float>(iDirection) * 3.14159265f / s_iDirections + 0.2f;
        const float fCosine = std::cos(fAngle);
        const float fSine = std::sin(fAngle);
        View view;
        for (const ClutterShape::Triangle& triangle : shape.triangles())
        {
            std::array<Projected, 3> arrCorners{};
            for (size_t i = 0; i < 3; ++i)
            {
                const ClutterShape::Corner& corner = triangle[i];
                const float fSide = corner.place[0] * fCosine + corner.place[1] * fSine;
                arrCorners[i] = {(fSide / fHalf * 0.5f + 0.5f) * s_iFine,
                                 (corner.place[2] - fLow) / (fHigh - fLow) * s_iFine,
                                 corner.place[1] * fCosine - corner.place[0] * fSine, corner.u, corner.v};
            }
            drawTriangle(view, arrCorners, vecPicture);
        }
        constexpr int s_iBlock = s_iFine / ImpostorSide;
        for (int iY = 0; iY < s_iFine; ++iY)
            for (int iX = 0; iX < s_iFine; ++iX)
            {
                const size_t uFrom = static_cast<size_t>(iY) * s_iFine + static_cast<size_t>(iX);
                if (view.vecDepth[uFrom] == -std::numeric_limits<float>::max())
                    continue;
                const size_t uTo =
                    static_cast<size_t>(iY / s_iBlock) * ImpostorSide + static_cast<size_t>(iX / s_iBlock);
                Colour& sum = vecSums[uTo];
                const Colour& colour = view.vecColours[uFrom];
                sum = {sum.r + colour.r, sum.g + colour.g, sum.b + colour.b};
                vecCover[uTo] += 1.0f;
            }
    }
    Colour all;
    float fAll = 0.001f;
    for (size_t u = 0; u < vecSums.size(); ++u)
    {
        all = {all.r + vecSums[u].r, all.g + vecSums[u].g, all.b + vecSums[u].b};
        fAll += vecCover[u];
    }
    const float fFull = s_iDirections * (s_iFine / ImpostorSide) * (s_iFine / ImpostorSide);
    std::vector<uint8_t> vecBytes;
    const auto byteOf = [](float f) { return static_cast<uint8_t>(clamp01(f) * 255.0f + 0.5f); };
    for (int iY = ImpostorSide - 1; iY >= 0; --iY)
        for (int iX = 0; iX < ImpostorSide; ++iX)
        {
            const size_t u = static_cast<size_t>(iY) * ImpostorSide + static_cast<size_t>(iX);
            const Colour colour =
                vecCover[u] > 0.0f ? scaled(vecSums[u], 1.0f / vecCover[u]) : scaled(all, 1.0f / fAll);
            vecBytes.insert(vecBytes.end(), {byteOf(colour.r), byteOf(colour.g), byteOf(colour.b),
                                             byteOf(1.6f * vecCover[u] / fFull)});
        }
    return vecBytes;
}

} // namespace content
