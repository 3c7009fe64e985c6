#pragma once // Things that lie and grow on the ground, strewn over a canvas.

#include "Tools/ContentBuilder/Canvas.h"

namespace content
{

struct BladeSettings
{
    uint32_t uSeed = 0;
    int iCount = 0;
    float fShortest = 8.0f; ///< pixels
    float fLongest = 16.0f;
    float fHalfWidth = 1.0f;
    float fHeight = 3.0f; ///< of the highest layer, centimetres
    std::array<Colour, 3> arrRoots;
    std::array<Colour, 3> arrTips;
    float fClumps = 1.0f; ///< how much bare ground is left between clumps
};
void paintBlades(Canvas& canvas, const BladeSettings& settings);

struct PebbleSettings
{
    uint32_t uSeed = 0;
    int iCount = 0;
    float fSmallest = 2.0f; ///< radius, pixels
    float fLargest = 6.0f;
    std::array<Colour, 3> arrTones;
};
void paintPebbles(Canvas& canvas, const PebbleSettings& settings);

struct LeafSettings
{
    uint32_t uSeed = 0;
    int iCount = 0;
    float fShortest = 5.0f; ///< half length, pixels
    float fLongest = 10.5f;
    float fHeight = 1.3f; ///< how high they lie on each other, centimetres
    float fGloss = 0.2f;
    std::array<Colour, 3> arrWarm;
    std::array<Colour, 3> arrCool;
};
void paintLeaves(Canvas& canvas, const LeafSettings& settings);
void paintTwigs(Canvas& canvas, uint32_t uSeed, int iCount);

} // namespace content
