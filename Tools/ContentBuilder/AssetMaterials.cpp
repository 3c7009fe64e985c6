#include "Tools/ContentBuilder/Assets.h"
#include "Tools/ContentBuilder/Noise.h"

#include <cmath>

namespace content
{

namespace
{

/// Boards side by side, their grain along u.
Texel boards(float u, float v, int iBoards, const Colour& dark, const Colour& light, uint32_t uSeed)
{
    const float fAcross = v * static_cast<float>(iBoards);
    const int iBoard = static_cast<int>(std::floor(fAcross)) % iBoards;
    const float fPart = fAcross - std::floor(fAcross);
    const float fOwn = hash(iBoard, 5, uSeed);
    const float fGap = 1.0f - smoothStep(0.0f, 0.05f, std::min(fPart, 1.0f - fPart));
    const float fWarp = 0.35f * fractal(u, v, 3, 3, uSeed + static_cast<uint32_t>(iBoard));
    const float fGrain = fractal(u * 1.0f + fOwn, v, 2, 2, uSeed + 31) +
                         0.7f * gradientNoise(u * 8.0f, (v + fWarp * 0.05f) * 96.0f, 96, uSeed + 32);
    Texel texel;
    texel.colour = mix(dark, light, clamp01(0.5f + 0.4f * fGrain + (fOwn - 0.5f) * 0.5f));
    texel.colour = scaled(texel.colour, 1.0f - 0.6f * fGap);
    texel.fHeight = 0.5f * fGrain + 0.5f * fOwn - 2.5f * fGap;
    texel.fGloss = 0.12f;
    return texel;
}

void paintWood(Canvas& canvas)
{
    canvas.fill([](float u, float v) { return boards(u, v, 12, rgb(104, 78, 54), rgb(158, 124, 88), 301); });
}

void paintPainted(Canvas& canvas)
{
    canvas.fill(
        [](float u, float v)
        {
            Texel texel = boards(u, v, 12, rgb(196, 194, 188), rgb(236, 234, 228), 311);
            const float fWorn = smoothStep(0.30f, 0.42f, fractal(u, v, 7, 4, 312));
            texel.colour = mix(texel.colour, rgb(150, 132, 108), 0.6f * fWorn);
            texel.fHeight -= 0.5f * fWorn;
            texel.fGloss = 0.25f * (1.0f - fWorn);
            return texel;
        });
}

void paintBark(Canvas& canvas)
{
    canvas.fill(
        [](float u, float v)
        {
            const float fBend = 0.05f * fractal(u, v, 4, 3, 321);
            const CellNoise plate = cells(u + fBend, v, 16, 5, 322);
            const float fGroove = 1.0f - smoothStep(0.02f, 0.22f, plate.fEdge);
            const float fRough = fractal(u, v, 12, 4, 323);
            Texel texel;
            texel.colour = mix(rgb(96, 78, 62), rgb(140, 118, 96), clamp01(0.5f + 0.5f * fRough));
            texel.colour = mix(texel.colour, rgb(54, 42, 34), 0.75f * fGroove);
            texel.fHeight = 2.6f * (1.0f - fGroove) + 0.9f * fRough + plate.fValue;
            texel.fGloss = 0.05f;
            return texel;
        });
}

void paintStone(Canvas& canvas)
{
    canvas.fill(
        [](float u, float v)
        {
            const float fLarge = fractal(u, v, 3, 4, 331);
            const float fRough = fractal(u, v, 14, 4, 332, 0.6f);
            const CellNoise chip = cells(u + 0.06f * fractal(u, v, 5, 3, 333), v + 0.06f * fractal(u, v, 5, 3, 335), 5, 6, 334);
            const float fCrack = 1.0f - smoothStep(0.0f, 0.03f, chip.fEdge);
            Texel texel;
            const float fTone =
                clamp01(0.55f + 0.35f * fLarge + 0.22f * fRough + 0.14f * (chip.fValue - 0.5f));
            texel.colour = mix(rgb(150, 148, 144), rgb(222, 218, 210), fTone);
            texel.colour = scaled(texel.colour, 1.0f - 0.12f * fCrack);
            texel.fHeight = 1.2f * fLarge + 1.3f * fRough + 0.7f * chip.fValue - 0.7f * fCrack;
            texel.fGloss = 0.14f;
            return texel;
        });
}

void paintLeaves(Canvas& canvas)
{
    canvas.fill(
        [](float u, float v)
        {
            const float fBent = 0.02f * fractal(u, v, 6, 2, 341);
            const CellNoise leaf = cells(u + fBent, v - fBent, 26, 26, 342);
            const CellNoise clump = cells(u, v, 8, 8, 343);
            const float fRim = smoothStep(0.05f, 0.4f, leaf.fEdge);
            const float fTone =
                clamp01(0.20f + 0.34f * leaf.fValue + 0.30f * fRim + 0.22f * (1.0f - clump.fNearest));
            Texel texel;
            texel.colour = mix(rgb(120, 126, 108), rgb(244, 246, 226), fTone);
            texel.fHeight = 2.4f * fRim + 1.6f * leaf.fValue + 1.8f * (1.0f - clump.fNearest);
            texel.fGloss = 0.08f;
            return texel;
        });
}

void paintMetal(Canvas& canvas)
{
    canvas.fill(
        [](float u, float v)
        {
            const float fSpots = fractal(u, v, 5, 5, 351);
            const float fFine = gradientNoise(u * 120.0f, v * 120.0f, 120, 352);
            const float fRust = smoothStep(0.25f, 0.5f, fSpots);
            Texel texel;
            texel.colour =
                mix(rgb(86, 88, 92), rgb(124, 126, 128), clamp01(0.5f + 0.5f * fSpots + 0.2f * fFine));
            texel.colour = mix(texel.colour, rgb(122, 78, 50), 0.6f * fRust);
            texel.fHeight = 0.3f * fSpots + 0.2f * fFine + 0.3f * fRust;
            texel.fGloss = 0.55f - 0.4f * fRust;
            return texel;
        });
}

constexpr std::array<Material, 6> s_arrMaterials = {{
    {"Data/Terrain/Assets/Materials/ast_wood", paintWood, 0.8f, 0.7f},
    {"Data/Terrain/Assets/Materials/ast_painted", paintPainted, 0.7f, 0.6f},
    {"Data/Terrain/Assets/Materials/ast_bark", paintBark, 0.9f, 0.8f},
    {"Data/Terrain/Assets/Materials/ast_stone", paintStone, 0.9f, 0.7f},
    {"Data/Terrain/Assets/Materials/ast_leaves", paintLeaves, 0.8f, 0.9f},
    {"Data/Terrain/Assets/Materials/ast_metal", paintMetal, 0.6f, 0.5f},
}};

} // namespace

std::span<const Material> assetMaterials()
{
    return s_arrMaterials;
}

} // namespace content
