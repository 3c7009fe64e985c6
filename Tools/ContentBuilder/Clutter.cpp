#include "Tools/ContentBuilder/Clutter.h"

#include "Tools/ContentBuilder/Noise.h"

#include <cmath>

namespace content
{

namespace
{

using Cut = PictureCut;

// Meshes

/// Three planes that cross and three around them, leaning out.
ClutterShape tuft(float fWidth, float fLean)
{
    ClutterShape shape;
    for (int i = 0; i < 3; ++i)
        shape.upright(static_cast<float>(i) * 60.0f + 8.0f, 0.0f, fWidth, 4.0f, i % 2 ? 0.15f : -0.15f);
    shape.endCore();
    for (int i = 0; i < 3; ++i)
        shape.upright(static_cast<float>(i) * 120.0f + 40.0f, 0.42f * fWidth * 0.5f, fWidth * 0.85f, 3.1f,
                      fLean);
    return shape;
}

ClutterShape grassShape()
{
    return tuft(2.9f, 0.55f);
}

ClutterShape tallGrassShape()
{
    return tuft(3.1f, 0.8f);
}

ClutterShape beachGrassShape()
{
    return tuft(3.2f, 1.0f);
}

ClutterShape flowerShape()
{
    ClutterShape shape;
    for (int i = 0; i < 3; ++i)
        shape.upright(static_cast<float>(i) * 60.0f + 15.0f, 0.1f, 2.4f, 4.0f, i % 2 ? 0.2f : -0.2f);
    return shape;
}

ClutterShape cloverShape()
{
    ClutterShape shape;
    constexpr Cut s_leaves{0.0f, 0.5f, 0.0f, 0.5f};
    constexpr Cut s_flowers{0.5f, 1.0f, 0.0f, 1.0f};
    shape.lying(0.0f, 0.0f, 1.3f, 1.25f, 0.0f, 0.25f, -0.2f, s_leaves);
    shape.lying(0.25f, -0.2f, 2.1f, 0.9f, 130.0f, -0.2f, 0.3f, s_leaves);
    for (int i = 0; i < 2; ++i)
        shape.upright(static_cast<float>(i) * 90.0f + 30.0f, 0.1f, 1.1f, 4.0f, 0.1f, s_flowers);
    return shape;
}

ClutterShape fernShape()
{
    ClutterShape shape;
    for (int i = 0; i < 7; ++i)
    {
        const float fTurn = static_cast<float>(i) * 51.43f + 9.0f * static_cast<float>(i % 2);
        shape.arch(fTurn, i % 2 ? 2.9f : 2.4f, i % 2 ? 3.4f : 4.6f, 1.15f, 2, i % 2 ? 0.9f : 0.6f);
    }
    return shape;
}

ClutterShape pebbleShape()
{
    ClutterShape shape;
    shape.stone(0.1f, 0.05f, 0.46f, 0.36f, 3.2f, 20.0f, 3, {0.0f, 0.5f, 0.0f, 1.0f});
    shape.endCore();
    shape.stone(-0.75f, 0.5f, 0.28f, 0.22f, 2.0f, 70.0f, 5, {0.5f, 1.0f, 0.0f, 0.5f});
    shape.stone(0.45f, -0.8f, 0.20f, 0.25f, 1.6f, 130.0f, 7, {0.5f, 1.0f, 0.5f, 1.0f});
    return shape;
}

ClutterShape leavesShape()
{
    ClutterShape shape;
    Dice dice(17);
    for (int i = 0; i < 8; ++i)
    {
        if (i == 5)
            shape.endCore();
        const float fLeft = i % 2 ? 0.5f : 0.0f;
        const float fLow = i / 2 % 2 ? 0.5f : 0.0f;
        shape.lying(dice.roll(-1.1f, 1.1f), dice.roll(-1.1f, 1.1f), dice.roll(1.2f, 2.4f),
                    dice.roll(0.18f, 0.28f), dice.roll(0.0f, 360.0f), dice.roll(-1.1f, 1.1f),
                    dice.roll(-1.1f, 1.1f), {fLeft, fLeft + 0.5f, fLow, fLow + 0.5f});
    }
    return shape;
}

ClutterShape driftwoodShape()
{
    ClutterShape shape;
    shape.chip(0.0f, 0.0f, 1.1f, 0.34f, 1.5f, 25.0f, {0.0f, 1.0f, 0.0f, 0.5f});
    shape.chip(0.5f, 0.6f, 0.6f, 0.24f, 1.2f, 140.0f, {0.0f, 1.0f, 0.5f, 1.0f});
    shape.chip(-0.6f, -0.4f, 0.45f, 0.2f, 1.0f, 85.0f, {0.2f, 0.8f, 0.5f, 1.0f});
    return shape;
}

ClutterShape heatherShape()
{
    ClutterShape shape = tuft(2.7f, 0.9f);
    shape.upright(100.0f, 0.3f, 2.0f, 3.6f, 0.5f);
    return shape;
}

ClutterShape reedShape()
{
    ClutterShape shape;
    for (int i = 0; i < 4; ++i)
        shape.upright(static_cast<float>(i) * 45.0f + 10.0f, i % 2 ? 0.35f : -0.1f, 2.5f, i % 2 ? 3.5f : 4.0f,
                      i % 2 ? 0.35f : -0.1f);
    return shape;
}

// Pictures

struct BladeMix
{
    unsigned uSeed = 1;
    int iCount = 60;
    float fLow = 0.35f; ///< tip heights
    float fHigh = 0.98f;
    float fSpread = 0.30f; ///< of the roots
    float fFan = 0.34f;    ///< how far tips move outwards
    float fBend = 0.28f;
    float fHalfWidth = 0.012f;
    std::array<Colour, 3> arrRoots{};
    std::array<Colour, 3> arrTips{};
};

Sprite::Blade rollBlade(Dice& dice, const BladeMix& mixture)
{
    const float fSide = dice.roll(-1.0f, 1.0f);
    Sprite::Blade blade;
    blade.fX = 0.5f + fSide * mixture.fSpread;
    blade.fTipY = blend(mixture.fLow, mixture.fHigh, dice.roll() * (1.0f - 0.35f * fSide * fSide));
    blade.fTipX = std::min(
        std::max(blade.fX + fSide * mixture.fFan * dice.roll(0.2f, 1.0f) + dice.roll(-0.09f, 0.09f), 0.02f),
        0.98f);
    blade.fBend = -fSide * mixture.fBend * dice.roll(0.2f, 1.0f) + dice.roll(-0.06f, 0.06f);
    blade.fHalfWidth = mixture.fHalfWidth * dice.roll(0.7f, 1.25f);
    const auto uTone = static_cast<size_t>(dice.roll(0.0f, 2.999f));
    const float fLight = dice.roll(0.86f, 1.12f);
    blade.root = scaled(mixture.arrRoots[uTone], fLight);
    blade.tip = scaled(mixture.arrTips[uTone], fLight);
    return blade;
}

void paintTuft(Sprite& sprite, const BladeMix& mixture)
{
    Dice dice(mixture.uSeed);
    for (int i = 0; i < mixture.iCount; ++i)
    {
        Sprite::Blade blade = rollBlade(dice, mixture);
        // Those drawn first stand behind and are darker.
        const float fDepth = 0.74f + 0.26f * static_cast<float>(i) / static_cast<float>(mixture.iCount);
        blade.root = scaled(blade.root, fDepth);
        blade.tip = scaled(blade.tip, fDepth);
        sprite.blade(blade);
    }
}

const BladeMix s_meadow{.uSeed = 3,
                        .iCount = 64,
                        .arrRoots = {rgb(62, 76, 36), rgb(70, 84, 40), rgb(66, 80, 46)},
                        .arrTips = {rgb(122, 142, 70), rgb(142, 154, 82), rgb(112, 134, 72)}};
const BladeMix s_dry{.uSeed = 5,
                     .iCount = 52,
                     .fFan = 0.38f,
                     .fBend = 0.36f,
                     .fHalfWidth = 0.010f,
                     .arrRoots = {rgb(118, 104, 60), rgb(130, 112, 66), rgb(104, 106, 58)},
                     .arrTips = {rgb(188, 168, 106), rgb(202, 182, 122), rgb(160, 154, 86)}};

void paintMeadowGrass(Sprite& sprite)
{
    paintTuft(sprite, s_meadow);
}

/// An ear of grains along the end of a blade.
void paintEar(Sprite& sprite, const Sprite::Blade& stalk, float fFrom, float fGrain, const Colour& colour,
              Dice& dice)
{
    for (int i = 0; i < 16; ++i)
    {
        const float t = blend(fFrom, 1.0f, static_cast<float>(i) / 15.0f);
        float fX = 0.0f;
        float fY = 0.0f;
        Sprite::pointOn(stalk, t, fX, fY);
        const float fSide = i % 2 ? 1.0f : -1.0f;
        const float fSize = fGrain * (1.15f - 0.6f * static_cast<float>(i) / 15.0f);
        sprite.ellipse(fX + fSide * fSize * 0.7f, fY, fSize, fSize * 0.42f, 1.5708f - fSide * 0.5f,
                       scaled(colour, dice.roll(0.85f, 1.15f)));
    }
}

void paintStalks(Sprite& sprite, const BladeMix& mixture, int iCount, float fGrain, const Colour& ear)
{
    Dice dice(mixture.uSeed + 40);
    for (int i = 0; i < iCount; ++i)
    {
        Sprite::Blade stalk = rollBlade(dice, mixture);
        stalk.fTipY = dice.roll(0.78f, 0.985f);
        stalk.fTipX = 0.5f + (stalk.fTipX - 0.5f) * 0.85f;
        stalk.fHalfWidth = 0.0045f;
        stalk.bRound = true;
        sprite.blade(stalk);
        paintEar(sprite, stalk, 0.78f, fGrain, ear, dice);
    }
}

void paintTallGrass(Sprite& sprite)
{
    BladeMix mixture = s_meadow;
    mixture.uSeed = 7;
    mixture.iCount = 50;
    mixture.fHigh = 0.86f;
    mixture.fHalfWidth = 0.0105f;
    paintTuft(sprite, mixture);
    paintStalks(sprite, mixture, 9, 0.017f, rgb(158, 150, 92));
}

void paintDryGrassTuft(Sprite& sprite)
{
    paintTuft(sprite, s_dry);
}

void paintTallDryGrass(Sprite& sprite)
{
    BladeMix mixture = s_dry;
    mixture.uSeed = 9;
    mixture.iCount = 44;
    mixture.fHigh = 0.8f;
    paintTuft(sprite, mixture);
    paintStalks(sprite, mixture, 11, 0.020f, rgb(206, 186, 136));
}

void paintClover(Sprite& sprite)
{
    Dice dice(21);
    const std::array<Colour, 3> arrGreens = {rgb(84, 106, 50), rgb(98, 120, 58), rgb(76, 96, 48)};
    // Seen from above, a round patch that frays at its rim.
    for (int i = 0; i < 115; ++i)
    {
        const float fAround = dice.roll(0.0f, 6.283f);
        const float fOut = 0.215f * std::sqrt(dice.roll()) * (0.8f + 0.2f * std::sin(fAround * 3.0f + 1.0f));
        const float fX = 0.25f + fOut * std::cos(fAround);
        const float fY = 0.25f + fOut * std::sin(fAround);
        const Colour green = scaled(arrGreens[static_cast<size_t>(dice.roll(0.0f, 2.99f))],
                                    0.66f + 0.42f * static_cast<float>(i) / 115.0f);
        const float fTurn = dice.roll(0.0f, 6.283f);
        for (int k = 0; k < 3; ++k)
        {
            const float fAngle = fTurn + static_cast<float>(k) * 2.094f;
            const float fLeafX = fX + 0.017f * std::cos(fAngle);
            const float fLeafY = fY + 0.017f * std::sin(fAngle);
            sprite.ellipse(fLeafX, fLeafY, 0.019f, 0.016f, fAngle, green);
            sprite.ellipse(fLeafX, fLeafY, 0.004f, 0.010f, fAngle, mix(green, rgb(170, 190, 144), 0.35f));
        }
    }
    for (int i = 0; i < 6; ++i)
    {
        const float fX = 0.58f + 0.068f * static_cast<float>(i) + dice.roll(-0.015f, 0.015f);
        const float fTop = dice.roll(0.62f, 0.9f);
        sprite.blade({.fX = blend(fX, 0.75f, 0.4f),
                      .fTipX = fX,
                      .fTipY = fTop,
                      .fBend = 0.04f,
                      .fHalfWidth = 0.005f,
                      .bRound = true,
                      .root = rgb(60, 88, 44),
                      .tip = rgb(96, 130, 70)});
        for (int k = 0; k < 22; ++k)
        {
            const float fAngle = dice.roll(0.0f, 6.283f);
            const float fOut = std::sqrt(dice.roll());
            sprite.ellipse(
                fX + 0.030f * fOut * std::cos(fAngle), fTop + 0.055f * fOut * std::sin(fAngle), 0.014f,
                0.006f, fAngle,
                mix(rgb(236, 232, 220), rgb(206, 190, 184), dice.roll() * (0.4f - 0.4f * std::sin(fAngle))));
        }
    }
}

/// Stems with a few leaves; calls back at each tip.
template <class Head>
void paintFlowers(Sprite& sprite, unsigned uSeed, int iCount, float fLow, const Colour& root,
                  const Colour& tip, Head fnHead)
{
    BladeMix leaves = s_meadow;
    leaves.uSeed = uSeed;
    leaves.iCount = 26;
    leaves.fHigh = 0.55f;
    leaves.fLow = 0.2f;
    leaves.fHalfWidth = 0.014f;
    paintTuft(sprite, leaves);
    Dice dice(uSeed + 1);
    for (int i = 0; i < iCount; ++i)
    {
        const float fX = (static_cast<float>(i) + dice.roll(0.25f, 0.75f)) / static_cast<float>(iCount);
        const Sprite::Blade stem{.fX = 0.5f + (fX - 0.5f) * 0.5f,
                                 .fTipX = 0.08f + 0.84f * fX,
                                 .fTipY = dice.roll(fLow, 0.9f),
                                 .fBend = dice.roll(-0.12f, 0.12f),
                                 .fHalfWidth = 0.0055f,
                                 .bRound = true,
                                 .root = root,
                                 .tip = tip};
        sprite.blade(stem);
        fnHead(stem.fTipX, stem.fTipY, dice);
    }
}

void paintDaisies(Sprite& sprite)
{
    paintFlowers(
        sprite, 31, 8, 0.55f, rgb(64, 84, 42), rgb(104, 130, 68),
        [&](float fX, float fY, Dice& dice)
        {
            const float fFlat = dice.roll(0.45f, 0.8f);
            for (int i = 0; i < 16; ++i)
            {
                const float fAngle = static_cast<float>(i) * 0.3927f;
                sprite.ellipse(fX + 0.036f * std::cos(fAngle), fY + 0.036f * fFlat * std::sin(fAngle), 0.027f,
                               0.0105f, std::atan2(fFlat * std::sin(fAngle), std::cos(fAngle)),
                               mix(rgb(240, 238, 230), rgb(206, 206, 204), 0.5f - 0.5f * std::sin(fAngle)));
            }
            sprite.ellipse(fX, fY + 0.004f, 0.022f, 0.018f * fFlat + 0.004f, 0.0f, rgb(222, 178, 52));
        });
}

void paintPoppies(Sprite& sprite)
{
    paintFlowers(sprite, 33, 5, 0.6f, rgb(74, 92, 52), rgb(110, 128, 78),
                 [&](float fX, float fY, Dice& dice)
                 {
                     const Colour red = mix(rgb(196, 44, 30), rgb(222, 74, 42), dice.roll());
                     sprite.ellipse(fX - 0.022f, fY + 0.014f, 0.050f, 0.040f, 0.7f, scaled(red, 0.78f));
                     sprite.ellipse(fX + 0.024f, fY + 0.014f, 0.050f, 0.040f, -0.7f, scaled(red, 0.84f));
                     sprite.ellipse(fX, fY - 0.004f, 0.060f, 0.036f, dice.roll(-0.2f, 0.2f), red);
                     sprite.ellipse(fX, fY + 0.012f, 0.017f, 0.011f, 0.0f, rgb(44, 34, 32));
                 });
}

void paintFern(Sprite& sprite)
{
    const Sprite::Blade rib{
        .fTipY = 0.99f, .fHalfWidth = 0.011f, .root = rgb(92, 92, 50), .tip = rgb(98, 124, 60)};
    Dice dice(41);
    for (int i = 0; i < 30; ++i)
    {
        const float t = 0.10f + 0.88f * static_cast<float>(i) / 29.0f;
        const float fLong =
            0.44f * std::pow(std::sin(3.0f * std::pow(1.0f - t, 0.75f) + 0.06f), 0.9f) + 0.02f;
        const Colour green = scaled(mix(rgb(66, 94, 44), rgb(106, 140, 66), t), dice.roll(0.92f, 1.08f));
        for (const float fSide : {-1.0f, 1.0f})
            sprite.blade({.fX = 0.5f,
                          .fY = t - 0.02f,
                          .fTipX = 0.5f + fSide * fLong,
                          .fTipY = std::min(t + 0.10f * fLong / 0.44f + 0.02f, 0.995f),
                          .fBend = fSide * 0.12f,
                          .fHalfWidth = 0.034f * (0.45f + fLong * 1.3f),
                          .root = scaled(green, 0.82f),
                          .tip = green});
    }
    sprite.blade(rib);
}

void paintStone(Sprite& sprite)
{
    sprite.fill(
        [](float u, float v)
        {
            const bool bFirst = u < 0.5f;
            const Colour base = bFirst     ? rgb(138, 132, 122)
                                : v < 0.5f ? rgb(122, 112, 98)
                                           : rgb(156, 150, 140);
            const float fTone = fractal(u, v, 8, 5, 51, 0.6f);
            const float fSpeck = smoothStep(0.25f, 0.5f, gradientNoise(u * 90.0f, v * 90.0f, 90, 52));
            return scaled(mix(base, rgb(96, 90, 82), fSpeck * 0.35f), 1.0f + 0.28f * fTone);
        });
}

void paintFallenLeaves(Sprite& sprite)
{
    const std::array<Colour, 4> arrTones = {rgb(150, 98, 46), rgb(172, 124, 56), rgb(126, 78, 42),
                                            rgb(146, 116, 60)};
    for (int i = 0; i < 4; ++i)
    {
        const float fX = i % 2 ? 0.75f : 0.25f;
        const float fY = i / 2 ? 0.75f : 0.25f;
        const Colour tone = arrTones[static_cast<size_t>(i)];
        sprite.blade({.fX = fX,
                      .fY = fY - 0.235f,
                      .fTipX = fX,
                      .fTipY = fY,
                      .fHalfWidth = 0.006f,
                      .bRound = true,
                      .root = scaled(tone, 0.6f),
                      .tip = scaled(tone, 0.8f)});
        sprite.stamp(fX, fY + 0.01f, 0.225f, 0.225f, 1.5708f,
                     [&](float x, float y, Colour& colour)
                     {
                         const float fLobes =
                             i % 2 ? 0.13f * std::cos(x * 11.0f) : 0.03f * std::cos(x * 30.0f);
                         const float fHalf =
                             0.62f * std::pow(std::max(1.0f - x * x, 0.0f), 0.75f) * (1.0f - 0.25f * x) +
                             fLobes * (1.0f - x * x);
                         if (std::fabs(y) > fHalf)
                             return false;
                         const float fVein = std::fabs(std::sin((x - std::fabs(y) * 0.9f) * 12.0f));
                         const bool bRib = std::fabs(y) < 0.035f;
                         colour = scaled(tone, bRib ? 0.72f
                                                    : 0.86f + 0.2f * std::min(fVein * 2.0f, 1.0f) *
                                                                  (1.0f - 0.4f * std::fabs(y)));
                         return true;
                     });
    }
}

void paintBeachGrass(Sprite& sprite)
{
    BladeMix mixture{.uSeed = 61,
                     .iCount = 40,
                     .fLow = 0.4f,
                     .fSpread = 0.2f,
                     .fFan = 0.42f,
                     .fBend = 0.42f,
                     .fHalfWidth = 0.0095f,
                     .arrRoots = {rgb(122, 118, 78), rgb(108, 112, 72), rgb(134, 126, 86)},
                     .arrTips = {rgb(160, 166, 116), rgb(142, 156, 108), rgb(186, 180, 132)}};
    paintTuft(sprite, mixture);
    paintStalks(sprite, mixture, 4, 0.018f, rgb(204, 188, 144));
}

void paintDriftwood(Sprite& sprite)
{
    sprite.fill(
        [](float u, float v)
        {
            const float fWave = 0.03f * fractal(u, v, 4, 3, 71);
            const float fGrain = gradientNoise(u * 6.0f, (v + fWave) * 60.0f, 60, 72);
            const float fCrack = smoothStep(0.3f, 0.5f, gradientNoise(u * 4.0f, (v + fWave) * 34.0f, 34, 73));
            return scaled(mix(mix(rgb(168, 158, 144), rgb(136, 124, 108), 0.5f + fGrain), rgb(88, 78, 66),
                              0.6f * fCrack),
                          v < 0.5f ? 1.0f : 0.92f);
        });
}

void paintHeather(Sprite& sprite)
{
    BladeMix mixture{.uSeed = 81,
                     .iCount = 46,
                     .fLow = 0.4f,
                     .fHigh = 0.95f,
                     .fSpread = 0.26f,
                     .fFan = 0.3f,
                     .fBend = 0.16f,
                     .fHalfWidth = 0.007f,
                     .arrRoots = {rgb(78, 66, 48), rgb(70, 72, 46), rgb(84, 72, 54)},
                     .arrTips = {rgb(92, 100, 62), rgb(84, 92, 58), rgb(104, 104, 70)}};
    Dice dice(mixture.uSeed);
    for (int i = 0; i < mixture.iCount; ++i)
    {
        const Sprite::Blade twig = rollBlade(dice, mixture);
        sprite.blade(twig);
        const float fDepth = 0.75f + 0.3f * static_cast<float>(i) / static_cast<float>(mixture.iCount);
        for (int k = 0; k < 18; ++k)
        {
            const float t = 0.30f + 0.70f * static_cast<float>(k) / 17.0f;
            float fX = 0.0f;
            float fY = 0.0f;
            Sprite::pointOn(twig, t, fX, fY);
            const bool bFlower = t > 0.52f;
            const Colour tone = bFlower ? mix(rgb(150, 92, 136), rgb(186, 128, 166), dice.roll())
                                        : mix(rgb(74, 88, 48), rgb(96, 108, 60), dice.roll());
            sprite.ellipse(fX + dice.roll(-0.016f, 0.016f), fY + dice.roll(-0.008f, 0.008f), 0.0115f, 0.0075f,
                           dice.roll(0.0f, 3.1f), scaled(tone, fDepth));
        }
    }
}

void paintReeds(Sprite& sprite)
{
    BladeMix mixture{.uSeed = 91,
                     .iCount = 24,
                     .fLow = 0.5f,
                     .fHigh = 0.99f,
                     .fSpread = 0.30f,
                     .fFan = 0.16f,
                     .fBend = 0.10f,
                     .fHalfWidth = 0.0125f,
                     .arrRoots = {rgb(84, 92, 48), rgb(98, 100, 56), rgb(76, 86, 50)},
                     .arrTips = {rgb(126, 146, 80), rgb(150, 152, 92), rgb(112, 134, 80)}};
    paintTuft(sprite, mixture);
    Dice dice(92);
    for (int i = 0; i < 4; ++i)
    {
        const float fX = 0.22f + 0.19f * static_cast<float>(i) + dice.roll(-0.04f, 0.04f);
        const float fTop = dice.roll(0.8f, 0.93f);
        sprite.blade({.fX = blend(fX, 0.5f, 0.3f),
                      .fTipX = fX,
                      .fTipY = fTop + 0.055f,
                      .fHalfWidth = 0.0055f,
                      .bRound = true,
                      .root = rgb(90, 98, 54),
                      .tip = rgb(140, 140, 84)});
        sprite.ellipse(fX, fTop - 0.03f, 0.062f, 0.017f, 1.5708f, rgb(108, 70, 42));
    }
}

const std::array<ClutterType, 14> s_arrTypes = {{
    {"Data/Terrain/Clutter/clt_grass_meadow", &grassShape, &paintMeadowGrass, true},
    {"Data/Terrain/Clutter/clt_grass_meadow_tall", &tallGrassShape, &paintTallGrass, true},
    {"Data/Terrain/Clutter/clt_grass_dry", &grassShape, &paintDryGrassTuft, true},
    {"Data/Terrain/Clutter/clt_grass_dry_tall", &tallGrassShape, &paintTallDryGrass, true},
    {"Data/Terrain/Clutter/clt_clover_white", &cloverShape, &paintClover, true},
    {"Data/Terrain/Clutter/clt_daisies", &flowerShape, &paintDaisies, true},
    {"Data/Terrain/Clutter/clt_poppies", &flowerShape, &paintPoppies, true},
    {"Data/Terrain/Clutter/clt_fern", &fernShape, &paintFern, true},
    {"Data/Terrain/Clutter/clt_pebbles", &pebbleShape, &paintStone, false},
    {"Data/Terrain/Clutter/clt_leaves_fallen", &leavesShape, &paintFallenLeaves, false},
    {"Survival/Terrain/Clutter/clt_grass_beach", &beachGrassShape, &paintBeachGrass, true},
    {"Survival/Terrain/Clutter/clt_driftwood_chips", &driftwoodShape, &paintDriftwood, false},
    {"Survival/Terrain/Clutter/clt_heather", &heatherShape, &paintHeather, true},
    {"Survival/Terrain/Clutter/clt_reeds", &reedShape, &paintReeds, true},
}};

} // namespace

std::span<const ClutterType> clutterTypes()
{
    return s_arrTypes;
}

} // namespace content
