// The autumn set: rust, ochre and wet earth.

#include "Tools/ContentBuilder/Materials.h"
#include "Tools/ContentBuilder/Noise.h"
#include "Tools/ContentBuilder/Shapes.h"

namespace content
{

namespace
{

constexpr float s_fSide = Canvas::s_iSide;

constexpr std::array<Colour, 3> s_arrRedLeaves = {rgb(136, 76, 48), rgb(118, 62, 43), rgb(152, 94, 55)};
constexpr std::array<Colour, 3> s_arrGoldLeaves = {rgb(172, 131, 70), rgb(158, 110, 60), rgb(142, 112, 72)};
constexpr std::array<Colour, 3> s_arrBrownLeaves = {rgb(112, 78, 50), rgb(92, 64, 44), rgb(128, 94, 60)};

/// Paints again over what is there.
template <class Function>
void refine(Canvas& canvas, const Function& fnRefine)
{
    canvas.fill(
        [&](float u, float v)
        {
            Texel texel = canvas.at(u * s_fSide, v * s_fSide);
            fnRefine(u, v, texel);
            return texel;
        });
}

void paintRustyGrass(Canvas& canvas)
{
    canvas.fill([](float u, float v) { return earth(u, v, rgb(70, 54, 36), rgb(102, 80, 52), 211); });
    paintBlades(canvas, {.uSeed = 201,
                         .iCount = 14000,
                         .fShortest = 9.0f,
                         .fLongest = 23.0f,
                         .fHalfWidth = 1.25f,
                         .fHeight = 4.2f,
                         .arrRoots = {rgb(94, 72, 40), rgb(104, 84, 46), rgb(82, 78, 44)},
                         .arrTips = {rgb(154, 108, 66), rgb(164, 132, 82), rgb(128, 118, 70)},
                         .fClumps = 1.05f});
}

void paintFallenLeaves(Canvas& canvas)
{
    canvas.fill([](float u, float v) { return earth(u, v, rgb(54, 40, 28), rgb(84, 62, 42), 221); });
    paintLeaves(canvas, {.uSeed = 222,
                         .iCount = 2200,
                         .fShortest = 8.0f,
                         .fLongest = 15.0f,
                         .fHeight = 2.4f,
                         .arrWarm = s_arrBrownLeaves,
                         .arrCool = s_arrRedLeaves});
    paintTwigs(canvas, 223, 10);
    paintLeaves(canvas, {.uSeed = 224,
                         .iCount = 1100,
                         .fShortest = 9.0f,
                         .fLongest = 17.0f,
                         .fHeight = 4.4f,
                         .fGloss = 0.26f,
                         .arrWarm = s_arrRedLeaves,
                         .arrCool = s_arrGoldLeaves});
}

/// Churned earth with water standing in its hollows.
void paintWetMud(Canvas& canvas)
{
    canvas.fill(
        [](float u, float v)
        {
            Texel texel = earth(u, v, rgb(64, 48, 35), rgb(112, 88, 64), 231);
            const float fWarp = 0.05f * fractal(u, v, 4, 3, 232);
            const float fHollows = fractal(u + fWarp, v - fWarp, 4, 4, 233);
            const float fRidges = ridges(u + fWarp, v, 6, 3, 234);
            texel.fHeight = texel.fHeight * 0.8f + fHollows * 3.4f + fRidges * 1.4f;
            texel.colour = mix(texel.colour, rgb(116, 94, 70), smoothStep(0.1f, 0.5f, fHollows) * 0.5f);
            texel.fGloss = 0.42f;
            const float fWater = smoothStep(-0.2f, -0.26f, fHollows);
            const float fShore = smoothStep(-0.08f, -0.2f, fHollows);
            texel.colour = mix(scaled(texel.colour, 1.0f - 0.32f * fShore), rgb(58, 52, 46), fWater * 0.8f);
            texel.fHeight = blend(texel.fHeight, -0.9f, fWater);
            texel.fGloss = blend(texel.fGloss, 0.92f, fWater);
            return texel;
        });
    paintPebbles(canvas, {.uSeed = 236,
                          .iCount = 1400,
                          .fSmallest = 1.1f,
                          .fLargest = 2.8f,
                          .arrTones = {rgb(92, 72, 54), rgb(108, 86, 64), rgb(78, 62, 48)}});
    paintLeaves(canvas, {.uSeed = 235,
                         .iCount = 26,
                         .fShortest = 8.0f,
                         .fLongest = 14.0f,
                         .fGloss = 0.5f,
                         .arrWarm = s_arrBrownLeaves,
                         .arrCool = s_arrGoldLeaves});
}

void paintPineNeedles(Canvas& canvas)
{
    canvas.fill([](float u, float v) { return earth(u, v, rgb(58, 42, 30), rgb(92, 66, 44), 241); });
    paintBlades(canvas, {.uSeed = 242,
                         .iCount = 13000,
                         .fShortest = 11.0f,
                         .fLongest = 21.0f,
                         .fHalfWidth = 0.7f,
                         .fHeight = 1.6f,
                         .arrRoots = {rgb(112, 74, 44), rgb(94, 62, 40), rgb(126, 86, 50)},
                         .arrTips = {rgb(152, 102, 60), rgb(132, 86, 52), rgb(164, 118, 70)},
                         .fClumps = 0.35f});
    paintTwigs(canvas, 243, 26);
    paintPebbles(canvas, {.uSeed = 244, // cones, half sunk
                          .iCount = 22,
                          .fSmallest = 5.0f,
                          .fLargest = 7.5f,
                          .arrTones = {rgb(98, 70, 48), rgb(84, 60, 42), rgb(112, 82, 56)}});
}

void paintStreamStones(Canvas& canvas)
{
    canvas.fill([](float u, float v) { return earth(u, v, rgb(58, 54, 46), rgb(88, 80, 66), 251); });
    const std::array<Colour, 3> arrTones = {rgb(112, 104, 96), rgb(98, 92, 80), rgb(124, 108, 92)};
    paintPebbles(canvas,
                 {.uSeed = 252, .iCount = 4200, .fSmallest = 2.0f, .fLargest = 5.0f, .arrTones = arrTones});
    paintPebbles(canvas,
                 {.uSeed = 253, .iCount = 900, .fSmallest = 6.0f, .fLargest = 12.0f, .arrTones = arrTones});
    paintPebbles(canvas,
                 {.uSeed = 254, .iCount = 120, .fSmallest = 13.0f, .fLargest = 22.0f, .arrTones = arrTones});
    refine(canvas,
           [](float u, float v, Texel& texel)
           {
               const float fMoss =
                   smoothStep(0.08f, 0.3f, fractal(u, v, 5, 4, 255)) * smoothStep(1.0f, 5.0f, texel.fHeight);
               const float fTuft = 0.5f + gradientNoise(u * 120.0f, v * 120.0f, 120, 256);
               texel.colour = mix(texel.colour, mix(rgb(66, 70, 34), rgb(98, 102, 52), fTuft), fMoss * 0.7f);
               texel.fGloss = blend(0.5f, 0.1f, fMoss);
           });
    paintLeaves(canvas, {.uSeed = 257,
                         .iCount = 60,
                         .fShortest = 7.0f,
                         .fLongest = 12.0f,
                         .fHeight = 6.0f,
                         .fGloss = 0.4f,
                         .arrWarm = s_arrGoldLeaves,
                         .arrCool = s_arrRedLeaves});
}

void paintStubble(Canvas& canvas)
{
    canvas.fill([](float u, float v) { return earth(u, v, rgb(104, 82, 54), rgb(146, 118, 80), 261); });
    paintBlades(canvas, {.uSeed = 262, // straw that lies
                         .iCount = 5200,
                         .fShortest = 16.0f,
                         .fLongest = 38.0f,
                         .fHalfWidth = 1.0f,
                         .fHeight = 1.4f,
                         .arrRoots = {rgb(182, 152, 92), rgb(196, 166, 104), rgb(164, 132, 78)},
                         .arrTips = {rgb(208, 182, 122), rgb(218, 194, 138), rgb(188, 158, 98)},
                         .fClumps = 0.8f});
    paintBlades(canvas, {.uSeed = 263, // and what stands
                         .iCount = 2600,
                         .fShortest = 5.0f,
                         .fLongest = 9.0f,
                         .fHalfWidth = 1.5f,
                         .fHeight = 3.4f,
                         .arrRoots = {rgb(140, 110, 64), rgb(154, 124, 74), rgb(128, 102, 60)},
                         .arrTips = {rgb(214, 188, 126), rgb(198, 170, 110), rgb(222, 200, 146)},
                         .fClumps = 1.5f});
}

void paintMossyRock(Canvas& canvas)
{
    paintRock(canvas);
    refine(canvas,
           [](float u, float v, Texel& texel)
           {
               // Moss fills the joints and hangs on in pads.
               const float fPads = fractal(u, v, 4, 5, 271, 0.6f);
               const float fLow = smoothStep(3.4f, 0.6f, texel.fHeight);
               const float fMoss = smoothStep(0.12f, 0.34f, fPads + fLow * 0.34f);
               const float fTuft = 0.5f + gradientNoise(u * 110.0f, v * 110.0f, 110, 272);
               const Colour moss = mix(mix(rgb(56, 60, 32), rgb(94, 96, 50), fTuft), rgb(132, 108, 58),
                                       0.5f * smoothStep(0.1f, 0.4f, fractal(u, v, 6, 3, 273)));
               texel.colour = mix(scaled(texel.colour, 0.86f), moss, fMoss * 0.92f);
               texel.fHeight += fMoss * (1.0f + fTuft * 0.9f);
               texel.fGloss = blend(0.34f, 0.06f, fMoss);
           });
    paintLeaves(canvas, {.uSeed = 274,
                         .iCount = 34,
                         .fShortest = 6.0f,
                         .fLongest = 11.0f,
                         .fHeight = 9.0f,
                         .arrWarm = s_arrGoldLeaves,
                         .arrCool = s_arrRedLeaves});
}

/// Grass on a frosty morning: white where it reaches up.
void paintHoarFrost(Canvas& canvas)
{
    canvas.fill([](float u, float v) { return earth(u, v, rgb(92, 86, 78), rgb(136, 132, 126), 281); });
    paintBlades(canvas, {.uSeed = 282,
                         .iCount = 11500,
                         .fShortest = 8.0f,
                         .fLongest = 19.0f,
                         .fHalfWidth = 1.25f,
                         .fHeight = 3.8f,
                         .arrRoots = {rgb(118, 116, 96), rgb(132, 126, 104), rgb(110, 112, 98)},
                         .arrTips = {rgb(206, 214, 218), rgb(222, 226, 228), rgb(188, 196, 194)},
                         .fClumps = 1.0f});
    refine(canvas,
           [](float u, float v, Texel& texel)
           {
               const float fRime = smoothStep(-0.3f, 0.4f, fractal(u, v, 4, 4, 283));
               const float fSpark = hash(static_cast<int>(u * s_fSide), static_cast<int>(v * s_fSide), 284);
               texel.colour = mix(texel.colour, rgb(226, 232, 238), 0.18f + 0.3f * fRime);
               texel.fGloss = fSpark > 0.98f ? 0.8f : 0.3f;
           });
}

/// Faded turf under the first leaves: what an untouched tile shows.
void paintFadedTurf(Canvas& canvas)
{
    canvas.fill([](float u, float v) { return earth(u, v, rgb(88, 72, 46), rgb(118, 98, 62), 291); });
    paintBlades(canvas, {.uSeed = 292,
                         .iCount = 16000,
                         .fShortest = 6.0f,
                         .fLongest = 13.0f,
                         .fHalfWidth = 1.15f,
                         .fHeight = 2.2f,
                         .arrRoots = {rgb(88, 84, 52), rgb(100, 90, 56), rgb(100, 94, 60)},
                         .arrTips = {rgb(124, 120, 76), rgb(140, 126, 86), rgb(146, 134, 96)},
                         .fClumps = 0.95f});
    paintLeaves(canvas, {.uSeed = 293,
                         .iCount = 130,
                         .fShortest = 5.0f,
                         .fLongest = 9.0f,
                         .fHeight = 1.6f,
                         .arrWarm = s_arrRedLeaves,
                         .arrCool = s_arrGoldLeaves});
}

constexpr std::array<Material, 9> s_arrMaterials = {{
    {"Survival/Terrain/Materials/gnd_grass_rusty", paintRustyGrass, 0.34f, 0.85f},
    {"Survival/Terrain/Materials/gnd_leaves_fallen", paintFallenLeaves, 0.6f, 0.85f},
    {"Survival/Terrain/Materials/gnd_mud_wet", paintWetMud, 0.7f, 0.7f},
    {"Survival/Terrain/Materials/gnd_needles_pine", paintPineNeedles, 0.5f, 0.85f},
    {"Survival/Terrain/Materials/gnd_stones_stream", paintStreamStones, 0.5f, 0.9f},
    {"Survival/Terrain/Materials/gnd_stubble_field", paintStubble, 0.5f, 0.8f},
    {"Survival/Terrain/Materials/gnd_rock_mossy", paintMossyRock, 0.55f, 0.65f},
    {"Survival/Terrain/Materials/gnd_frost_hoar", paintHoarFrost, 0.38f, 0.6f},
    {"Survival/Terrain/Materials/gnd_turf_faded", paintFadedTurf, 0.45f, 0.75f},
}};

} // namespace

std::span<const Material> autumnMaterials()
{
    return s_arrMaterials;
}

} // namespace content
