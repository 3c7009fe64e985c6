#include "Tools/ContentBuilder/Models/AssetTextures.h"

#include "Tools/ContentBuilder/Canvas.h"
#include "Tools/ContentBuilder/Noise.h"
#include "Tools/ContentBuilder/Shapes.h"
#include "Tools/ContentBuilder/Sprite.h"

#include <algorithm>
#include <cmath>

namespace content
{

namespace
{

using Bytes = std::vector<uint8_t>;

Colour grey(float f)
{
    return {f, f, f};
}

/// A warm light and a cool dark tone around a grey, so that what is tinted doesn't look dull.
Colour tone(float f)
{
    f = clamp01(f);
    return {clamp01(f * (0.97f + 0.05f * f)), f, clamp01(f * (1.06f - 0.08f * f))};
}

Bytes halved(const Bytes& vecFull, bool bOpaque)
{
    constexpr int s_iFull = Canvas::s_iSide;
    Bytes vecHalf;
    for (int iY = 0; iY < s_iAssetTextureSide; ++iY)
        for (int iX = 0; iX < s_iAssetTextureSide; ++iX)
            for (int iChannel = 0; iChannel < 4; ++iChannel)
            {
                int iSum = 2;
                for (const auto& [iDx, iDy] : {std::pair{0, 0}, {1, 0}, {0, 1}, {1, 1}})
                    iSum += vecFull[static_cast<size_t>(((2 * iY + iDy) * s_iFull + 2 * iX + iDx) * 4 +
                                                        iChannel)];
                vecHalf.push_back(bOpaque && iChannel == 3 ? 255 : static_cast<uint8_t>(iSum / 4));
            }
    return vecHalf;
}

Bytes finish(const Canvas& canvas, float fRelief, float fShade, Bytes& vecNormal, Bytes& vecAsg)
{
    const Canvas::Maps maps = canvas.maps(fRelief, fShade);
    vecNormal = halved(maps.vecNormal, true);
    vecAsg = halved(maps.vecAsg, true);
    return halved(maps.vecDiffuse, true);
}

Bytes paintStone(Bytes& vecNormal, Bytes& vecAsg)
{
    Canvas canvas;
    canvas.fill(
        [](float u, float v)
        {
            const float fWarp = 0.05f * fractal(u, v, 3, 4, 901);
            const CellNoise crack = cells(u + fWarp, v - fWarp, 3, 4, 902);
            const float fCrack = (1.0f - smoothStep(0.0f, 0.035f, crack.fEdge)) *
                                 smoothStep(-0.1f, 0.3f, fractal(u, v, 3, 2, 903));
            const float fSoft = fractal(u, v, 4, 3, 904);
            const float fGrain = fractal(u, v, 24, 3, 905, 0.6f);
            const float fStreak = fractal(u, v * 2.0f, 6, 3, 906);
            Texel texel;
            texel.colour = tone(0.83f + 0.09f * fSoft + 0.07f * fGrain + 0.05f * fStreak - 0.12f * fCrack);
            const float fSpot = smoothStep(0.34f, 0.46f, fractal(u, v, 9, 3, 907));
            texel.colour = mix(texel.colour, tone(0.95f), 0.35f * fSpot);
            texel.fHeight = 0.8f * fSoft + 0.5f * fGrain - 1.5f * fCrack;
            texel.fGloss = 0.16f;
            return texel;
        });
    return finish(canvas, 1.0f, 0.35f, vecNormal, vecAsg);
}

Bytes paintMasonry(Bytes& vecNormal, Bytes& vecAsg)
{
    Canvas canvas;
    canvas.fill(
        [](float u, float v)
        {
            // Four courses of blocks of unequal lengths.
            constexpr int s_iCourses = 4;
            const float fWarpU = u + 0.006f * fractal(u, v, 8, 3, 911);
            const float fWarpV = v + 0.006f * fractal(u, v, 8, 3, 912);
            const float fCourse = fWarpV * s_iCourses;
            const int iCourse = (static_cast<int>(std::floor(fCourse)) + s_iCourses) % s_iCourses;
            const float fInCourse = fCourse - std::floor(fCourse);
            const int iBlocks = iCourse % 2 == 0 ? 2 : 3;
            float fAlong = fWarpU * static_cast<float>(iBlocks) + 0.31f * static_cast<float>(iCourse);
            const int iBlock = static_cast<int>(std::floor(fAlong)) % iBlocks;
            const float fIn = fAlong - std::floor(fAlong);
            const float fEdgeU = std::min(fIn, 1.0f - fIn) / static_cast<float>(iBlocks);
            const float fEdgeV = std::min(fInCourse, 1.0f - fInCourse) / s_iCourses;
            const float fEdge = std::min(fEdgeU, fEdgeV);
            const float fJoint = 1.0f - smoothStep(0.006f, 0.02f, fEdge);
            const float fRound = smoothStep(0.0f, 0.05f, fEdge);
            const float fBlock = hash(iBlock + 7, iCourse, 913);
            const float fGrain = fractal(u, v, 20, 3, 914, 0.6f);
            const float fSoft = fractal(u, v, 5, 3, 915);
            Texel texel;
            texel.colour = tone(0.80f + 0.14f * (fBlock - 0.5f) + 0.06f * fGrain + 0.05f * fSoft +
                                0.05f * fRound - 0.17f * fJoint);
            texel.fHeight = 3.0f * fRound + 0.8f * fBlock + 0.5f * fGrain - 2.5f * fJoint;
            texel.fGloss = 0.14f;
            return texel;
        });
    return finish(canvas, 1.0f, 0.4f, vecNormal, vecAsg);
}

/// Grain along v; the boards' edges are left to the models.
Bytes paintWood(Bytes& vecNormal, Bytes& vecAsg)
{
    Canvas canvas;
    canvas.fill(
        [](float u, float v)
        {
            const float fBend = u + 0.018f * fractal(u, v, 2, 3, 921);
            const float fFibre = gradientNoise(fBend * 48.0f, v * 3.0f, 48, 922) * 0.6f +
                                 gradientNoise(fBend * 24.0f, v * 2.0f, 24, 923);
            const float fRing = gradientNoise(fBend * 12.0f, v * 1.0f, 12, 924);
            const CellNoise knot = cells(u, v, 3, 2, 925);
            const float fKnot = knot.fValue > 0.6f ? 1.0f - smoothStep(0.03f, 0.13f, knot.fNearest) : 0.0f;
            const float fSplit = smoothStep(0.42f, 0.62f, gradientNoise(fBend * 32.0f, v * 2.0f, 32, 926));
            Texel texel;
            texel.colour = tone(0.80f + 0.09f * fFibre + 0.12f * fRing - 0.25f * fKnot - 0.22f * fSplit);
            texel.fHeight = 0.5f * fFibre + 0.4f * fRing - 1.3f * fSplit;
            texel.fGloss = 0.18f;
            return texel;
        });
    return finish(canvas, 0.8f, 0.25f, vecNormal, vecAsg);
}

Bytes paintBark(Bytes& vecNormal, Bytes& vecAsg)
{
    Canvas canvas;
    canvas.fill(
        [](float u, float v)
        {
            const float fBend = u + 0.05f * fractal(u, v, 3, 3, 931);
            const CellNoise plate = cells(fBend, v + 0.04f * fractal(u, v, 4, 2, 932), 12, 3, 933);
            const float fGroove = 1.0f - smoothStep(0.02f, 0.22f, plate.fEdge);
            const float fGrain = fractal(u, v, 20, 3, 934, 0.6f);
            Texel texel;
            texel.colour = tone(0.80f + 0.14f * (plate.fValue - 0.5f) + 0.09f * fGrain - 0.20f * fGroove);
            texel.fHeight = 2.5f * (1.0f - fGroove) + plate.fValue + 0.6f * fGrain;
            texel.fGloss = 0.08f;
            return texel;
        });
    return finish(canvas, 0.9f, 0.3f, vecNormal, vecAsg);
}

Bytes paintBirch(Bytes& vecNormal, Bytes& vecAsg)
{
    Canvas canvas;
    canvas.fill(
        [](float u, float v)
        {
            const float fPaper = fractal(u, v, 5, 4, 941);
            const float fLines = gradientNoise(u * 4.0f, v * 40.0f, 40, 942);
            const CellNoise mark = cells(u, v + 0.02f * fractal(u, v, 4, 2, 943), 3, 8, 944);
            const float fMark = mark.fValue > 0.45f ? 1.0f - smoothStep(0.16f, 0.3f, mark.fNearest) : 0.0f;
            Texel texel;
            texel.colour = tone(0.90f + 0.05f * fPaper + 0.05f * fLines);
            texel.colour = mix(texel.colour, rgb(58, 52, 50), 0.85f * fMark);
            texel.fHeight = 0.3f * fPaper - 1.2f * fMark;
            texel.fGloss = 0.14f;
            return texel;
        });
    return finish(canvas, 0.8f, 0.2f, vecNormal, vecAsg);
}

Bytes paintPlaster(Bytes& vecNormal, Bytes& vecAsg)
{
    Canvas canvas;
    canvas.fill(
        [](float u, float v)
        {
            const float fTrowel = fractal(u + 0.05f * fractal(u, v, 3, 2, 951), v * 1.0f, 6, 3, 952);
            const float fGrain = fractal(u, v, 40, 2, 953);
            const float fStain = smoothStep(0.0f, 0.5f, fractal(u, v, 3, 4, 954));
            Texel texel;
            texel.colour = tone(0.90f + 0.05f * fTrowel + 0.03f * fGrain - 0.07f * fStain);
            texel.fHeight = 0.7f * fTrowel + 0.15f * fGrain;
            texel.fGloss = 0.08f;
            return texel;
        });
    return finish(canvas, 0.7f, 0.2f, vecNormal, vecAsg);
}

/// Rows of wooden shingles; v grows towards the eaves as the picture is read from its top.
Bytes paintShingle(Bytes& vecNormal, Bytes& vecAsg)
{
    Canvas canvas;
    canvas.fill(
        [](float u, float v)
        {
            constexpr int s_iRows = 6;
            constexpr int s_iAcross = 7;
            const float fRow = v * s_iRows;
            const int iRow = static_cast<int>(std::floor(fRow)) % s_iRows;
            const float fAcross =
                u * s_iAcross + (iRow % 2 == 0 ? 0.0f : 0.5f) + 0.12f * (hash(iRow, 3, 961) - 0.5f);
            const int iShingle = static_cast<int>(std::floor(fAcross) + s_iAcross) % s_iAcross;
            const float fIn = fAcross - std::floor(fAcross);
            const float fTone = hash(iShingle, iRow, 962);
            const float fDown = fRow - std::floor(fRow) + 0.16f * (fTone - 0.5f);
            const float fGap = 1.0f - smoothStep(0.01f, 0.07f, std::min(fIn, 1.0f - fIn));
            const float fShadow = 1.0f - smoothStep(0.0f, 0.28f, fDown); // of the row above
            const float fGrain = gradientNoise(u * 70.0f, v * 5.0f, 70, 963);
            Texel texel;
            texel.colour = tone(0.74f + 0.22f * (fTone - 0.5f) + 0.07f * fGrain + 0.16f * clamp01(fDown) -
                                0.30f * fShadow - 0.24f * fGap);
            texel.fHeight = 2.6f * clamp01(fDown) + 0.4f * fTone + 0.2f * fGrain - 1.4f * fGap;
            texel.fGloss = 0.1f;
            return texel;
        });
    return finish(canvas, 1.0f, 0.25f, vecNormal, vecAsg);
}

Bytes paintMetal(Bytes& vecNormal, Bytes& vecAsg)
{
    Canvas canvas;
    canvas.fill(
        [](float u, float v)
        {
            const float fHammer = cells(u, v, 12, 12, 971).fNearest;
            const float fRust = smoothStep(0.12f, 0.5f, fractal(u, v, 5, 4, 972));
            const float fGrain = fractal(u, v, 40, 2, 973);
            Texel texel;
            texel.colour = tone(0.84f - 0.10f * fHammer + 0.05f * fGrain);
            texel.colour = mix(texel.colour, rgb(190, 150, 118), 0.45f * fRust);
            texel.fHeight = -0.7f * fHammer + 0.2f * fGrain;
            texel.fGloss = 0.55f - 0.3f * fRust;
            return texel;
        });
    return finish(canvas, 0.7f, 0.25f, vecNormal, vecAsg);
}

Bytes paintCloth(Bytes& vecNormal, Bytes& vecAsg)
{
    Canvas canvas;
    canvas.fill(
        [](float u, float v)
        {
            const float fWeave = std::sin(u * 6.2831853f * 64.0f) * std::sin(v * 6.2831853f * 64.0f);
            const float fFold = fractal(u, v, 3, 3, 981);
            const float fThread =
                gradientNoise(u * 64.0f, v * 4.0f, 64, 982) + gradientNoise(u * 4.0f, v * 64.0f, 64, 983);
            Texel texel;
            texel.colour = tone(0.86f + 0.04f * fWeave + 0.06f * fFold + 0.06f * fThread);
            texel.fHeight = 0.25f * fWeave + 0.6f * fFold;
            texel.fGloss = 0.05f;
            return texel;
        });
    return finish(canvas, 0.7f, 0.2f, vecNormal, vecAsg);
}

/// Dabs of leaf over leaf, darker below.
void strewLeaves(Canvas& canvas, uint32_t uSeed, int iCount, float fLength, float fSlim)
{
    Dice dice(uSeed);
    for (int i = 0; i < iCount; ++i)
    {
        const float fRank = static_cast<float>(i) / static_cast<float>(iCount);
        const float fTone = 0.52f + 0.36f * fRank + dice.roll(-0.07f, 0.07f);
        const float fWarm = dice.roll(-0.04f, 0.05f);
        const float fHalf = fLength * dice.roll(0.75f, 1.25f);
        const float fX = dice.roll(0.0f, Canvas::s_iSide);
        const float fY = dice.roll(0.0f, Canvas::s_iSide);
        canvas.stamp({fX, fY, fHalf, fHalf * fSlim, dice.roll(0.0f, 6.2831853f)},
                     [=](float x, float y, Texel& texel)
                     {
                         const float fWide = (1.0f - x * x) * (1.0f - 0.35f * x);
                         if (std::abs(y) > fWide)
                             return false;
                         const float fRib = 1.0f - smoothStep(0.0f, 0.16f, std::abs(y));
                         const float f = fTone + 0.09f * x + 0.05f * (y > 0.0f ? 1.0f : -1.0f) - 0.05f * fRib;
                         texel.colour = {clamp01(f + fWarm), clamp01(f), clamp01(f * 0.92f - fWarm)};
                         texel.fHeight = 4.0f * fRank + 0.8f * (1.0f - std::abs(y));
                         texel.fGloss = 0.18f;
                         return true;
                     });
    }
}

Bytes paintLeaf(Bytes& vecNormal, Bytes& vecAsg)
{
    Canvas canvas;
    canvas.fill([](float, float) { return Texel{grey(0.45f), 0.0f, 0.1f}; });
    strewLeaves(canvas, 991, 900, 26.0f, 0.46f);
    return finish(canvas, 0.7f, 0.3f, vecNormal, vecAsg);
}

Bytes paintMoss(Bytes& vecNormal, Bytes& vecAsg)
{
    Canvas canvas;
    canvas.fill([](float, float) { return Texel{grey(0.55f), 0.0f, 0.05f}; });
    strewLeaves(canvas, 992, 6000, 7.0f, 0.5f);
    return finish(canvas, 0.6f, 0.35f, vecNormal, vecAsg);
}

/// Sprays of needles that hang along v.
Bytes paintNeedle(Bytes& vecNormal, Bytes& vecAsg)
{
    Canvas canvas;
    canvas.fill([](float, float) { return Texel{grey(0.46f), 0.0f, 0.1f}; });
    Dice dice(993);
    for (int i = 0; i < 3400; ++i)
    {
        const float fRank = static_cast<float>(i) / 3400.0f;
        const float fTone = 0.52f + 0.34f * fRank + dice.roll(-0.08f, 0.08f);
        const float fHalf = dice.roll(14.0f, 30.0f);
        const float fX = dice.roll(0.0f, Canvas::s_iSide);
        const float fY = dice.roll(0.0f, Canvas::s_iSide);
        canvas.stamp({fX, fY, fHalf, 3.2f, 1.5707963f + dice.roll(-0.55f, 0.55f)},
                     [=](float x, float y, Texel& texel)
                     {
                         if (std::abs(y) > 1.0f - x * x * 0.8f)
                             return false;
                         texel.colour = tone(fTone + 0.08f * x);
                         texel.fHeight = 3.0f * fRank + 0.4f * (1.0f - std::abs(y));
                         texel.fGloss = 0.12f;
                         return true;
                     });
    }
    return finish(canvas, 0.6f, 0.3f, vecNormal, vecAsg);
}

/// Four bunches of leaves cut out of nothing, the upper two lighter.
Bytes paintLeafCard(Bytes&, Bytes&)
{
    Sprite sprite;
    Dice dice(994);
    for (int iBunch = 0; iBunch < 4; ++iBunch)
    {
        const float fX = 0.25f + 0.5f * static_cast<float>(iBunch % 2);
        const float fY = 0.25f + 0.5f * static_cast<float>(iBunch / 2);
        const float fLight = iBunch >= 2 ? 0.10f : 0.0f;
        for (int i = 0; i < 34; ++i)
        {
            const float fRank = static_cast<float>(i) / 34.0f;
            const float fAngle = dice.roll(0.0f, 6.2831853f);
            const float fAway = 0.165f * std::sqrt(dice.roll()) * (1.0f - 0.35f * fRank);
            const float fTone = 0.55f + 0.26f * fRank + fLight + dice.roll(-0.05f, 0.05f);
            const float fHalf = dice.roll(0.045f, 0.062f);
            const float fWarm = dice.roll(-0.04f, 0.05f);
            sprite.stamp(fX + std::cos(fAngle) * fAway, fY + std::sin(fAngle) * fAway, fHalf, fHalf * 0.5f,
                         fAngle + dice.roll(-0.6f, 0.6f),
                         [=](float x, float y, Colour& colour)
                         {
                             if (std::abs(y) > (1.0f - x * x) * (1.0f - 0.35f * x))
                                 return false;
                             const float fRib = 1.0f - smoothStep(0.0f, 0.16f, std::abs(y));
                             const float f =
                                 fTone + 0.08f * x + 0.05f * (y > 0.0f ? 1.0f : -1.0f) - 0.05f * fRib;
                             colour = {clamp01(f + fWarm), clamp01(f), clamp01(f * 0.92f - fWarm)};
                             return true;
                         });
        }
    }
    return sprite.pixels();
}

/// Lit from within: brightest in the middle.
Bytes paintGlow(Bytes&, Bytes&)
{
    Bytes vecPixels;
    for (int iY = 0; iY < s_iAssetTextureSide; ++iY)
        for (int iX = 0; iX < s_iAssetTextureSide; ++iX)
        {
            const float u = static_cast<float>(iX) / s_iAssetTextureSide;
            const float v = static_cast<float>(iY) / s_iAssetTextureSide;
            const float f = 0.94f + 0.06f * fractal(u, v, 3, 2, 995);
            for (const float fChannel : {1.0f, f, f * 0.93f, 1.0f})
                vecPixels.push_back(static_cast<uint8_t>(clamp01(fChannel) * 255.0f + 0.5f));
        }
    return vecPixels;
}

constexpr std::array<AssetTexture, 14> s_arrTextures = {{
    {"env_stone", true, &paintStone},
    {"env_masonry", true, &paintMasonry},
    {"env_wood", true, &paintWood},
    {"env_bark", true, &paintBark},
    {"env_birch", true, &paintBirch},
    {"env_plaster", true, &paintPlaster},
    {"env_shingle", true, &paintShingle},
    {"env_metal", true, &paintMetal},
    {"env_cloth", true, &paintCloth},
    {"env_leaf", true, &paintLeaf},
    {"env_moss", true, &paintMoss},
    {"env_needle", true, &paintNeedle},
    {"env_glow", false, &paintGlow},
    {"env_leaf_card", false, &paintLeafCard},
}};

} // namespace

std::span<const AssetTexture> assetTextures()
{
    return s_arrTextures;
}

const AssetTexture* findAssetTexture(std::string_view sName)
{
    const auto spanAll = assetTextures();
    const auto it = std::find_if(spanAll.begin(), spanAll.end(),
                                 [&](const AssetTexture& texture) { return sName == texture.pName; });
    return it == spanAll.end() ? nullptr : &*it;
}

} // namespace content
