#include "Tools/ContentBuilder/Materials.h"

#include "Tools/ContentBuilder/Noise.h"
#include "Tools/ContentBuilder/Shapes.h"

#include <cmath>

namespace content
{

Texel earth(float u, float v, const Colour& dark, const Colour& light, uint32_t uSeed)
{
    const float fLumps = fractal(u, v, 5, 6, uSeed, 0.6f);
    const float fGrain = gradientNoise(u * 128.0f, v * 128.0f, 128, uSeed + 9);
    const float fTone = clamp01(0.5f + fLumps * 0.6f + fGrain * 0.25f);
    return {mix(dark, light, fTone), fLumps * 1.1f + fGrain * 0.16f, 0.06f};
}

void paintRock(Canvas& canvas)
{
    canvas.fill(
        [](float u, float v)
        {
            const float fWarpU = u + 0.06f * fractal(u, v, 3, 4, 71);
            const float fWarpV = v + 0.05f * fractal(u, v, 3, 4, 72);
            // Slabs that lie askew, split by joints, chipped at the edges.
            const CellNoise slab = cells(fWarpU, fWarpV, 3, 6, 73);
            const CellNoise chip = cells(fWarpU + 0.01f * fractal(u, v, 12, 2, 79), fWarpV, 9, 14, 74);
            const float fJoint = 1.0f - smoothStep(0.0f, 0.06f, slab.fEdge);
            const float fCrack =
                (1.0f - smoothStep(0.0f, 0.07f, chip.fEdge)) *
                smoothStep(0.3f, 0.75f,
                           hash(static_cast<int>(slab.fValue * 1000.0f), 3, 75) * 0.6f + chip.fValue * 0.6f);
            const float fRough = fractal(u, v, 10, 5, 76, 0.6f);
            const float fCrest = ridges(u, v, 5, 4, 77);
            Texel texel;
            texel.fHeight = slab.fValue * 4.5f + chip.fValue * 1.5f + fRough * 1.3f + fCrest * 1.5f -
                            fJoint * 2.4f - fCrack * 1.1f;
            const float fTone =
                clamp01(0.42f + (slab.fValue - 0.5f) * 0.4f + (chip.fValue - 0.5f) * 0.22f + fRough * 0.35f);
            texel.colour = mix(rgb(86, 82, 78), rgb(152, 146, 136), fTone);
            texel.colour = mix(texel.colour, rgb(140, 118, 92),
                               0.35f * smoothStep(0.05f, 0.4f, fractal(u, v, 4, 3, 78)));
            texel.colour = mix(texel.colour, rgb(50, 47, 44), std::max(fJoint * 0.42f, fCrack * 0.34f));
            const float fLichen = smoothStep(0.3f, 0.42f, fractal(u, v, 9, 3, 80)) *
                                  smoothStep(0.0f, 0.3f, fractal(u, v, 3, 2, 81));
            texel.colour = mix(texel.colour, rgb(148, 150, 112), fLichen * 0.55f * (1.0f - fJoint));
            texel.fGloss = 0.22f;
            return texel;
        });
}

namespace
{

constexpr float s_fSide = Canvas::s_iSide;

void paintGrass(Canvas& canvas)
{
    canvas.fill([](float u, float v) { return earth(u, v, rgb(44, 50, 26), rgb(66, 70, 36), 11); });
    paintBlades(canvas, {.uSeed = 1,
                         .iCount = 15000,
                         .fShortest = 9.0f,
                         .fLongest = 21.0f,
                         .fHalfWidth = 1.35f,
                         .fHeight = 4.5f,
                         .arrRoots = {rgb(60, 72, 36), rgb(70, 80, 42), rgb(68, 78, 48)},
                         .arrTips = {rgb(104, 121, 62), rgb(126, 137, 76), rgb(100, 118, 70)},
                         .fClumps = 1.0f});
}

void paintDryGrass(Canvas& canvas)
{
    canvas.fill([](float u, float v) { return earth(u, v, rgb(96, 78, 52), rgb(132, 110, 76), 23); });
    paintPebbles(canvas, {.uSeed = 21,
                          .iCount = 90,
                          .fSmallest = 2.0f,
                          .fLargest = 4.5f,
                          .arrTones = {rgb(140, 126, 104), rgb(116, 104, 88), rgb(152, 140, 118)}});
    paintBlades(canvas, {.uSeed = 22,
                         .iCount = 6800,
                         .fShortest = 10.0f,
                         .fLongest = 26.0f,
                         .fHalfWidth = 1.1f,
                         .fHeight = 3.0f,
                         .arrRoots = {rgb(116, 98, 56), rgb(128, 108, 64), rgb(98, 98, 54)},
                         .arrTips = {rgb(178, 158, 98), rgb(190, 170, 114), rgb(140, 142, 78)},
                         .fClumps = 1.35f});
}

void paintDirt(Canvas& canvas)
{
    canvas.fill(
        [](float u, float v)
        {
            Texel texel = earth(u, v, rgb(84, 64, 46), rgb(134, 108, 80), 31);
            const float fWarpU = u + 0.02f * fractal(u, v, 6, 3, 33);
            const float fWarpV = v + 0.02f * fractal(u, v, 6, 3, 34);
            const CellNoise crack = cells(fWarpU, fWarpV, 7, 7, 35);
            const float fCrack = (1.0f - smoothStep(0.0f, 0.09f, crack.fEdge)) *
                                 smoothStep(-0.25f, 0.25f, fractal(u, v, 3, 2, 36));
            texel.fHeight += crack.fValue * 0.35f - fCrack * 0.7f;
            texel.colour = mix(texel.colour, rgb(62, 48, 36), fCrack * 0.38f);
            return texel;
        });
    paintPebbles(canvas, {.uSeed = 37,
                          .iCount = 1500,
                          .fSmallest = 1.1f,
                          .fLargest = 2.6f,
                          .arrTones = {rgb(118, 94, 68), rgb(136, 112, 84), rgb(100, 78, 58)}});
    paintPebbles(canvas, {.uSeed = 38,
                          .iCount = 130,
                          .fSmallest = 3.0f,
                          .fLargest = 7.5f,
                          .arrTones = {rgb(136, 124, 108), rgb(120, 106, 90), rgb(150, 136, 116)}});
}

void paintForestFloor(Canvas& canvas)
{
    canvas.fill(
        [](float u, float v)
        {
            Texel texel = earth(u, v, rgb(50, 40, 28), rgb(84, 68, 48), 41);
            const float fMoss = smoothStep(0.0f, 0.45f, fractal(u, v, 6, 4, 42));
            const float fTuft = 0.5f + gradientNoise(u * 90.0f, v * 90.0f, 90, 43);
            texel.colour = mix(texel.colour, mix(rgb(62, 66, 36), rgb(94, 98, 54), fTuft), fMoss * 0.7f);
            texel.fHeight += fMoss * (0.7f + fTuft * 0.6f);
            return texel;
        });
    paintBlades(canvas, {.uSeed = 44,
                         .iCount = 3600,
                         .fShortest = 7.0f,
                         .fLongest = 15.0f,
                         .fHalfWidth = 0.75f,
                         .fHeight = 0.9f,
                         .arrRoots = {rgb(104, 74, 44), rgb(84, 62, 40), rgb(122, 92, 56)},
                         .arrTips = {rgb(128, 92, 54), rgb(104, 78, 50), rgb(140, 108, 68)},
                         .fClumps = 0.4f});
    paintLeaves(canvas, {.uSeed = 45,
                         .iCount = 420,
                         .arrWarm = {rgb(124, 92, 60), rgb(108, 82, 56), rgb(140, 112, 70)},
                         .arrCool = {rgb(104, 88, 52), rgb(92, 84, 48), rgb(88, 64, 42)}});
    paintTwigs(canvas, 46, 34);
}

void paintGravel(Canvas& canvas)
{
    canvas.fill([](float u, float v) { return earth(u, v, rgb(78, 72, 64), rgb(112, 104, 92), 51); });
    const std::array<Colour, 3> arrTones = {rgb(136, 131, 124), rgb(120, 112, 100), rgb(156, 150, 140)};
    paintPebbles(canvas,
                 {.uSeed = 52, .iCount = 5200, .fSmallest = 2.0f, .fLargest = 4.5f, .arrTones = arrTones});
    paintPebbles(canvas,
                 {.uSeed = 53, .iCount = 1300, .fSmallest = 4.5f, .fLargest = 9.0f, .arrTones = arrTones});
    paintPebbles(canvas,
                 {.uSeed = 54, .iCount = 150, .fSmallest = 9.0f, .fLargest = 16.0f, .arrTones = arrTones});
}

void paintSand(Canvas& canvas)
{
    canvas.fill(
        [](float u, float v)
        {
            const float fWarp = fractal(u, v, 2, 3, 61) * 0.75f + fractal(u, v, 8, 2, 62) * 0.16f;
            const float fPhase = (v * 9.0f + u * 2.0f + fWarp);
            const float fPart = fPhase - std::floor(fPhase);
            // A long windward side and a short lee.
            const float fRipple =
                fPart < 0.68f ? smoothStep(0.0f, 0.68f, fPart) : 1.0f - smoothStep(0.68f, 1.0f, fPart);
            const float fStrength = 0.55f + 0.45f * smoothStep(-0.3f, 0.35f, fractal(u, v, 2, 2, 63));
            const float fGrain =
                hash(static_cast<int>(u * s_fSide), static_cast<int>(v * s_fSide), 64) - 0.5f;
            const float fPatches = fractal(u, v, 3, 4, 65);
            const float fTone =
                clamp01(0.42f + fRipple * fStrength * 0.36f + fPatches * 0.3f + fGrain * 0.16f);
            return Texel{mix(rgb(172, 148, 106), rgb(214, 194, 150), fTone),
                         fRipple * fStrength * 2.1f + fPatches * 0.5f + fGrain * 0.1f, 0.16f};
        });
    paintPebbles(canvas, {.uSeed = 66,
                          .iCount = 60,
                          .fSmallest = 1.0f,
                          .fLargest = 2.2f,
                          .arrTones = {rgb(178, 160, 128), rgb(156, 138, 112), rgb(206, 196, 172)}});
}

void paintSnow(Canvas& canvas)
{
    canvas.fill(
        [](float u, float v)
        {
            const float fDrifts = fractal(u + 0.03f * fractal(u, v, 4, 2, 91), v, 3, 5, 92, 0.45f);
            const float fWind = fractal(u, v + 0.08f * fractal(u, v, 3, 2, 93), 8, 3, 94);
            const float fGrain = hash(static_cast<int>(u * s_fSide), static_cast<int>(v * s_fSide), 95);
            Texel texel;
            texel.fHeight = fDrifts * 5.0f + fWind * 0.8f + fGrain * 0.09f;
            const float fTone = clamp01(0.55f + fDrifts * 0.7f + fWind * 0.25f);
            texel.colour =
                scaled(mix(rgb(202, 213, 228), rgb(243, 245, 247), fTone), 0.985f + 0.02f * fGrain);
            texel.fGloss = fGrain > 0.985f ? 0.85f : 0.3f;
            return texel;
        });
}

/// Short turf with earth and stones between: what an untouched tile shows.
void paintTurf(Canvas& canvas)
{
    canvas.fill([](float u, float v) { return earth(u, v, rgb(84, 78, 50), rgb(116, 108, 70), 101); });
    paintPebbles(canvas, {.uSeed = 102,
                          .iCount = 140,
                          .fSmallest = 1.6f,
                          .fLargest = 4.2f,
                          .arrTones = {rgb(140, 132, 114), rgb(120, 112, 96), rgb(152, 144, 126)}});
    paintBlades(canvas, {.uSeed = 103,
                         .iCount = 17000,
                         .fShortest = 6.0f,
                         .fLongest = 13.0f,
                         .fHalfWidth = 1.15f,
                         .fHeight = 2.2f,
                         .arrRoots = {rgb(78, 92, 44), rgb(90, 98, 50), rgb(96, 98, 54)},
                         .arrTips = {rgb(120, 138, 70), rgb(138, 148, 80), rgb(146, 148, 88)},
                         .fClumps = 0.95f});
}

constexpr std::array<Material, 9> s_arrMaterials = {{
    {"Data/Terrain/Materials/gnd_grass_meadow", paintGrass, 0.34f, 0.85f},
    {"Data/Terrain/Materials/gnd_grass_dry", paintDryGrass, 0.36f, 0.8f},
    {"Data/Terrain/Materials/gnd_dirt_packed", paintDirt, 0.8f, 0.8f},
    {"Data/Terrain/Materials/gnd_forest_floor", paintForestFloor, 0.55f, 0.85f},
    {"Data/Terrain/Materials/gnd_gravel_river", paintGravel, 0.5f, 0.9f},
    {"Data/Terrain/Materials/gnd_sand_dune", paintSand, 0.75f, 0.45f},
    {"Data/Terrain/Materials/gnd_rock_cliff", paintRock, 0.55f, 0.6f},
    {"Data/Terrain/Materials/gnd_snow_fresh", paintSnow, 0.6f, 0.3f},
    {"Data/Terrain/Materials/gnd_turf_worn", paintTurf, 0.45f, 0.75f},
}};

} // namespace

std::span<const Material> standardMaterials()
{
    return s_arrMaterials;
}

} // namespace content
