#include "Tools/ContentBuilder/Shapes.h"

#include "Tools/ContentBuilder/Noise.h"

#include <algorithm>
#include <cmath>

namespace content
{

namespace
{

constexpr float s_fSide = Canvas::s_iSide;

Colour oneOf(const std::array<Colour, 3>& arrColours, Dice& dice)
{
    return arrColours[std::min<size_t>(static_cast<size_t>(dice.roll() * 3.0f), 2)];
}

} // namespace

void paintBlades(Canvas& canvas, const BladeSettings& settings)
{
    Dice dice(settings.uSeed);
    for (int i = 0; i < settings.iCount; ++i)
    {
        const float fLayer = static_cast<float>(i) / static_cast<float>(settings.iCount);
        const float fX = dice.roll(0.0f, s_fSide);
        const float fY = dice.roll(0.0f, s_fSide);
        const float fClump = 0.5f + fractal(fX / s_fSide, fY / s_fSide, 7, 3, settings.uSeed + 500);
        const float fChance = dice.roll();
        const float fTurn =
            fractal(fX / s_fSide, fY / s_fSide, 3, 2, settings.uSeed + 600) * 7.0f + dice.roll(-1.3f, 1.3f);
        const float fLength =
            dice.roll(settings.fShortest, settings.fLongest) * (0.8f + 0.4f * clamp01(fClump));
        const float fWidth = settings.fHalfWidth * dice.roll(0.75f, 1.35f);
        const float fShade = dice.roll(0.86f, 1.12f) * (0.82f + 0.3f * fLayer);
        const float fBend = dice.roll(-0.7f, 0.7f);
        const Colour root = scaled(oneOf(settings.arrRoots, dice), fShade);
        const Colour tip = scaled(oneOf(settings.arrTips, dice), fShade);
        const float fGround = canvas.at(fX, fY).fHeight * 0.3f;
        if (fChance > 1.35f - settings.fClumps * (1.0f - fClump) && settings.fClumps > 0.0f)
            continue;
        const float fFoot = fGround + fLayer * settings.fHeight * 0.75f;
        const float fReach = fWidth + std::abs(fBend) * fWidth * 2.0f;
        canvas.stamp({fX, fY, fLength * 0.5f, fReach, fTurn},
                     [&](float x, float y, Texel& texel)
                     {
                         const float fAlong = x * 0.5f + 0.5f;
                         const float fMiddle = fBend * fWidth * 2.0f * (1.0f - x * x) / fReach;
                         const float fHalf = fWidth / fReach * (1.0f - fAlong * fAlong * 0.85f);
                         const float fAcross = (y - fMiddle) / fHalf;
                         if (std::abs(fAcross) > 1.0f)
                             return false;
                         texel.colour = mix(root, tip, fAlong);
                         texel.colour = scaled(texel.colour, 1.0f - 0.14f * fAcross);
                         texel.fHeight = fFoot + settings.fHeight * (0.12f + 0.28f * fAlong) *
                                                     (1.0f - 0.3f * fAcross * fAcross);
                         texel.fGloss = 0.12f + 0.1f * fAlong;
                         return true;
                     });
    }
}

void paintPebbles(Canvas& canvas, const PebbleSettings& settings)
{
    Dice dice(settings.uSeed);
    for (int i = 0; i < settings.iCount; ++i)
    {
        const float fX = dice.roll(0.0f, s_fSide);
        const float fY = dice.roll(0.0f, s_fSide);
        const float fPick = dice.roll();
        const float fRadius = blend(settings.fSmallest, settings.fLargest, fPick * fPick);
        const float fStretch = dice.roll(1.0f, 1.45f);
        const float fTurn = dice.roll(0.0f, 6.2831853f);
        const Colour tone =
            scaled(mix(oneOf(settings.arrTones, dice), oneOf(settings.arrTones, dice), dice.roll()),
                   dice.roll(0.84f, 1.12f));
        const float fCorners = dice.roll(0.0f, 6.28f);
        const float fRough = dice.roll(0.05f, 0.16f);
        const float fTilt = dice.roll(-0.3f, 0.3f);
        const float fGround = canvas.at(fX, fY).fHeight * 0.4f;
        const auto uGrain = static_cast<uint32_t>(i) + settings.uSeed * 977u;
        canvas.stamp({fX, fY, fRadius * fStretch, fRadius, fTurn},
                     [&](float x, float y, Texel& texel)
                     {
                         const float fAngle = std::atan2(y, x);
                         const float fRim =
                             1.0f - fRough * (1.0f + 0.6f * std::sin(fAngle * 3.0f + fCorners) +
                                              0.4f * std::sin(fAngle * 5.0f - fCorners));
                         const float fOut = std::sqrt(x * x + y * y) / fRim;
                         if (fOut > 1.0f)
                             return false;
                         // A flat crown and steep flanks.
                         const float fDome = std::sqrt(std::max(0.0f, 1.0f - fOut * fOut * fOut));
                         texel.fHeight = fGround + fRadius * 0.5f * (fDome + fTilt * x * 0.5f);
                         const float fSpeck = hash(static_cast<int>(x * fRadius * 1.5f + 40.0f),
                                                   static_cast<int>(y * fRadius * 1.5f + 40.0f), uGrain) -
                                              0.5f;
                         texel.colour = scaled(tone, 0.74f + 0.3f * fDome + fSpeck * 0.1f);
                         texel.fGloss = 0.26f;
                         return true;
                     });
    }
}

void paintLeaves(Canvas& canvas, const LeafSettings& settings)
{
    Dice dice(settings.uSeed);
    for (int i = 0; i < settings.iCount; ++i)
    {
        const float fX = dice.roll(0.0f, s_fSide);
        const float fY = dice.roll(0.0f, s_fSide);
        const float fLength = dice.roll(settings.fShortest, settings.fLongest);
        const float fSlim = dice.roll(0.42f, 0.62f);
        const float fTurn = dice.roll(0.0f, 6.2831853f);
        const Colour tone =
            scaled(mix(oneOf(settings.arrWarm, dice), oneOf(settings.arrCool, dice), dice.roll()),
                   dice.roll(0.8f, 1.1f));
        const float fCurl = dice.roll(-0.6f, 0.9f);
        const float fFoot = canvas.at(fX, fY).fHeight * 0.3f + 1.2f +
                            settings.fHeight * static_cast<float>(i) / static_cast<float>(settings.iCount);
        canvas.stamp({fX, fY, fLength, fLength * fSlim, fTurn},
                     [&](float x, float y, Texel& texel)
                     {
                         const float fHalf = (1.0f - x * x) * (1.0f - 0.25f * x);
                         if (std::abs(y) > fHalf)
                             return false;
                         const float fVein = 1.0f - smoothStep(0.0f, 0.14f, std::abs(y));
                         texel.colour = scaled(tone, 0.88f + 0.16f * (y * 0.6f) + 0.2f * fVein - 0.08f * x);
                         texel.fHeight = fFoot + 0.5f * (x * x + y * y) * fCurl - 0.12f * fVein;
                         texel.fGloss = settings.fGloss;
                         return true;
                     });
    }
}

void paintTwigs(Canvas& canvas, uint32_t uSeed, int iCount)
{
    Dice dice(uSeed);
    for (int i = 0; i < iCount; ++i)
    {
        float fX = dice.roll(0.0f, s_fSide);
        float fY = dice.roll(0.0f, s_fSide);
        float fTurn = dice.roll(0.0f, 6.2831853f);
        const int iPieces = static_cast<int>(dice.roll(3.0f, 8.0f));
        const float fWide = dice.roll(1.2f, 2.3f);
        const Colour tone =
            scaled(mix(rgb(92, 72, 52), rgb(124, 104, 80), dice.roll()), dice.roll(0.85f, 1.1f));
        for (int k = 0; k < iPieces; ++k)
        {
            const float fHalf = dice.roll(5.0f, 9.0f);
            const float fHere = fWide * (1.0f - 0.09f * static_cast<float>(k));
            fX += std::cos(fTurn) * fHalf;
            fY += std::sin(fTurn) * fHalf;
            canvas.stamp({fX, fY, fHalf + 1.0f, fHere, fTurn},
                         [&](float, float y, Texel& texel)
                         {
                             const float fRound = std::sqrt(std::max(0.0f, 1.0f - y * y));
                             texel.colour = scaled(tone, 0.7f + 0.36f * fRound);
                             texel.fHeight = 3.0f + fHere * 0.6f * fRound;
                             texel.fGloss = 0.12f;
                             return true;
                         });
            fX += std::cos(fTurn) * fHalf;
            fY += std::sin(fTurn) * fHalf;
            fTurn += dice.roll(-0.35f, 0.35f);
        }
    }
}

} // namespace content
