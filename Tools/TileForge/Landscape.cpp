#include "Tools/TileForge/Landscape.h"

#include "Tools/TileForge/Noise.h"
#include "Tools/TileForge/Scene.h"

#include <algorithm>
#include <cmath>

namespace forge
{

namespace
{

float ramp(float fFrom, float fTo, float fValue)
{
    const float t = std::clamp((fValue - fFrom) / (fTo - fFrom), 0.0f, 1.0f);
    return t * t * (3.0f - 2.0f * t);
}

float blend(float a, float b, float t)
{
    return a + (b - a) * t;
}

struct Ground
{
    explicit Ground(int iCellsOnASide)
        : iCells(iCellsOnASide),
          heights(32 * iCells + 1, 32 * iCells + 1),
          flow(heights.iWidth, heights.iHeight)
    {
    }

    /// Metres along a side.
    [[nodiscard]] float size() const { return 64.0f * static_cast<float>(iCells); }

    template <class Height>
    void shape(Height fnHeight)
    {
        for (int iY = 0; iY < heights.iHeight; ++iY)
            for (int iX = 0; iX < heights.iWidth; ++iX)
                heights.at(iX, iY) = fnHeight(2.0f * static_cast<float>(iX), 2.0f * static_cast<float>(iY));
    }

    int iCells;
    Grid heights;
    Grid flow;
};

/// What a place looks like to the one who decides what covers it.
struct Place
{
    float fX, fY;  ///< metres
    float fHeight; ///< metres
    float fSteep;  ///< rise over run
    float fHollow; ///< metres below the mean around
    float fFlow;   ///< 0 to 1, how wet
    float fPatch;  ///< -1 to 1, slow noise
    float fGrain;  ///< -1 to 1, quick noise
};

using Cover = std::array<float, s_iMaterials>;

// Covers each place by the given rule, later materials over earlier ones, and tints the ground by
// its hollows and its moisture.
template <class CoverRule>
Landscape finish(const char* pName, const Ground& ground, uint32_t uSeed, CoverRule fnCover)
{
    Landscape land;
    land.sName = pName;
    land.iCells = ground.iCells;
    land.heights = ground.heights;
    const Grid hollow = hollowness(ground.heights, 8);
    Grid steep(ground.heights.iWidth, ground.heights.iHeight);
    for (int iY = 0; iY < steep.iHeight; ++iY)
        for (int iX = 0; iX < steep.iWidth; ++iX)
            steep.at(iX, iY) = steepness(ground.heights, iX, iY);

    const int iTexels = 64 * ground.iCells + 1;
    land.vecWeights.resize(static_cast<size_t>(iTexels) * static_cast<size_t>(iTexels));
    for (int iY = 0; iY < iTexels; ++iY)
        for (int iX = 0; iX < iTexels; ++iX)
        {
            const auto fX = static_cast<float>(iX);
            const auto fY = static_cast<float>(iY);
            const float fU = fX * 0.5f, fV = fY * 0.5f;
            const Place place{fX,
                              fY,
                              ground.heights.sample(fU, fV),
                              steep.sample(fU, fV),
                              hollow.sample(fU, fV),
                              ramp(14.0f, 60.0f, ground.flow.sample(fU, fV)),
                              fractal(fX / 41.0f, fY / 41.0f, uSeed + 70, {4, 2.1f, 0.55f}),
                              fractal(fX / 6.5f, fY / 6.5f, uSeed + 90, {3, 2.1f, 0.6f})};
            const Cover cover = fnCover(place);
            auto& weights = land.vecWeights[static_cast<size_t>(iY * iTexels + iX)];
            for (int iMaterial = 0; iMaterial < s_iMaterials; ++iMaterial)
                weights[static_cast<size_t>(iMaterial)] = static_cast<uint8_t>(
                    std::clamp(cover[static_cast<size_t>(iMaterial)], 0.0f, 1.0f) * 255.0f + 0.5f);
        }

    land.vecTint.resize(land.heights.vecValues.size());
    for (int iY = 0; iY < land.heights.iHeight; ++iY)
        for (int iX = 0; iX < land.heights.iWidth; ++iX)
        {
            const float fShade = std::clamp(0.96f - 0.05f * hollow.at(iX, iY), 0.72f, 1.0f);
            const float fWarm =
                0.05f * fractal(static_cast<float>(iX) / 23.0f, static_cast<float>(iY) / 23.0f, uSeed + 50);
            const auto byteOf = [](float f)
            { return static_cast<uint32_t>(std::clamp(f, 0.0f, 1.0f) * 255.0f); };
            land.vecTint[static_cast<size_t>(iY * land.heights.iWidth + iX)] =
                byteOf(fShade + fWarm) | byteOf(fShade) << 8 | byteOf(fShade - fWarm) << 16 | 255u << 24;
        }
    return land;
}

// Lays a material over the ones so far: they keep what it leaves free.
void lay(Cover& cover, Material eMaterial, float fAmount)
{
    fAmount = std::clamp(fAmount, 0.0f, 1.0f);
    for (float& fOther : cover)
        fOther *= 1.0f - fAmount;
    cover[eMaterial] += fAmount;
}

Landscape meadow()
{
    Ground ground(1);
    ground.shape(
        [](float fX, float fY)
        {
            const float fPath = std::fabs(fY - meadowPathAt(fX));
            const float fBrook = std::fabs(fX - meadowBrookAt(fY));
            return 1.3f * fractal(fX / 47.0f, fY / 47.0f, 11) + 0.9f * ramp(6.0f, 30.0f, fPath) - 0.5f -
                   2.1f * (1.0f - ramp(0.8f, 5.2f, fBrook));
        });
    return finish(
        "Meadow", ground, 11,
        [](const Place& place)
        {
            Cover cover{};
            cover[Grass] = 1.0f;
            lay(cover, DryGrass, ramp(0.0f, 0.6f, place.fPatch + 0.3f * place.fGrain) * 0.8f);
            const float fPath = std::fabs(place.fY - meadowPathAt(place.fX)) + 0.9f * place.fGrain;
            lay(cover, Dirt, 1.0f - ramp(1.2f, 2.6f, fPath));
            lay(cover, Gravel, (1.0f - ramp(0.2f, 1.3f, fPath)) * ramp(-0.4f, 0.4f, place.fPatch) * 0.7f);
            const float fBrook = std::fabs(place.fX - meadowBrookAt(place.fY)) + 0.8f * place.fGrain;
            lay(cover, Dirt, (1.0f - ramp(2.0f, 4.2f, fBrook)) * 0.8f);
            lay(cover, Gravel, 1.0f - ramp(1.2f, 2.6f, fBrook));
            return cover;
        });
}

Landscape dunes()
{
    Ground ground(2);
    ground.shape(
        [](float fX, float fY)
        {
            // Wind from the west heaps long ridges with a gentle windward and a steep lee side.
            const float fBend = 22.0f * fractal(fX / 160.0f, fY / 90.0f, 21, {3, 2.0f, 0.5f});
            const float fPhase = (fX + 0.35f * fY + fBend) / 34.0f;
            const float t = fPhase - std::floor(fPhase);
            const float fDune = t < 0.72f ? ramp(0.0f, 0.72f, t) : 1.0f - ramp(0.72f, 1.0f, t);
            const float fHeight =
                3.0f + 4.5f * ramp(-0.7f, 0.7f, fractal(fX / 110.0f, fY / 110.0f, 22, {3, 2.0f, 0.5f}));
            return fDune * fHeight + 2.5f * fractal(fX / 95.0f, fY / 95.0f, 23);
        });
    slide(ground.heights, 1.25f, 12);
    return finish("Dunes", ground, 21,
                  [](const Place& place)
                  {
                      Cover cover{};
                      cover[Sand] = 1.0f;
                      lay(cover, Gravel, ramp(0.25f, 0.9f, place.fHollow + 0.35f * place.fGrain) * 0.55f);
                      lay(cover, DryGrass,
                          ramp(0.55f, 1.0f, place.fHollow * 0.5f + place.fPatch + 0.4f * place.fGrain) *
                              0.8f);
                      return cover;
                  });
}

Landscape island()
{
    Ground ground(4);
    const float fCentre = ground.size() * 0.5f;
    ground.shape(
        [fCentre](float fX, float fY)
        {
            const float fWarp = 26.0f * fractal(fX / 85.0f, fY / 85.0f, 31);
            const float fReach = std::hypot(fX - fCentre, fY - fCentre) + fWarp;
            const float fShore = ramp(118.0f, 30.0f, fReach);
            const float fHills = 9.0f * fShore + 17.0f * fShore * fShore *
                                                     ridged(fX / 120.0f, fY / 120.0f, 32, {5, 2.05f, 0.5f});
            return fHills - 9.0f + 0.5f * fractal(fX / 20.0f, fY / 20.0f, 33) + 1.0f;
        });
    erode(ground.heights, ground.flow, {26000, 3.0f, 0.25f, 0.3f, 0.02f, 3, 31});
    slide(ground.heights, 1.8f, 3);
    return finish(
        "Island", ground, 31,
        [](const Place& place)
        {
            Cover cover{};
            cover[Sand] = 1.0f;
            lay(cover, Gravel, (1.0f - ramp(-7.5f, -5.0f, place.fHeight + place.fGrain)) * 0.6f);
            const float fGreen = ramp(-2.2f, 0.6f, place.fHeight + 0.9f * place.fGrain);
            lay(cover, DryGrass, fGreen);
            lay(cover, Grass,
                fGreen * ramp(-0.3f, 0.5f, place.fPatch + 0.25f * place.fHollow + 0.3f * place.fGrain));
            lay(cover, ForestFloor,
                fGreen * ramp(0.35f, 1.0f, 0.6f * place.fHollow + place.fFlow + 0.3f * place.fGrain) * 0.7f);
            lay(cover, Rock, ramp(0.55f, 0.85f, place.fSteep + 0.12f * place.fGrain));
            return cover;
        });
}

Landscape cliffCoast()
{
    Ground ground(4);
    ground.shape(
        [](float fX, float fY)
        {
            const float fLine =
                116.0f + 34.0f * fractal(fY / 120.0f, 3.7f, 41) + 12.0f * fractal(fX / 45.0f, fY / 45.0f, 42);
            const float fUp = ramp(fLine, fLine + 17.0f, fX);
            const float fLedge = 0.35f * ramp(fLine - 26.0f, fLine - 10.0f, fX);
            const float fPlateau =
                21.0f + 6.0f * fractal(fX / 105.0f, fY / 105.0f, 43) + 0.035f * (fX - fLine);
            const float fBeach = -7.0f + 0.055f * fX + 1.1f * fractal(fX / 33.0f, fY / 33.0f, 44);
            const float fStacks = 13.0f *
                                  ramp(0.62f, 0.78f, ridged(fX / 64.0f, fY / 64.0f, 45, {3, 2.0f, 0.45f})) *
                                  ramp(40.0f, 70.0f, fX) * (1.0f - ramp(fLine - 20.0f, fLine, fX));
            return blend(fBeach + 5.0f * fLedge + fStacks, fPlateau, fUp);
        });
    erode(ground.heights, ground.flow, {26000, 3.2f, 0.3f, 0.22f, 0.015f, 2, 41});
    return finish(
        "Cliff Coast", ground, 41,
        [](const Place& place)
        {
            Cover cover{};
            cover[Sand] = 1.0f;
            lay(cover, Gravel, ramp(-0.2f, 0.5f, place.fPatch + 0.5f * place.fGrain) * 0.55f);
            const float fTop = ramp(7.0f, 12.0f, place.fHeight + 1.5f * place.fGrain);
            lay(cover, Grass, fTop);
            lay(cover, DryGrass,
                fTop * ramp(0.0f, 0.6f, place.fPatch + 0.35f * place.fGrain - 0.15f * place.fHollow) * 0.9f);
            lay(cover, Dirt, fTop * place.fFlow * ramp(0.1f, 0.5f, place.fSteep) * 0.6f);
            lay(cover, Rock, ramp(0.55f, 0.95f, place.fSteep + 0.15f * place.fGrain));
            return cover;
        });
}

Landscape erodedHills()
{
    Ground ground(4);
    ground.shape(
        [](float fX, float fY)
        {
            const float fWarpX = fX + 30.0f * fractal(fX / 130.0f, fY / 130.0f, 51, {3, 2.0f, 0.5f});
            const float fWarpY = fY + 30.0f * fractal(fX / 130.0f, fY / 130.0f, 52, {3, 2.0f, 0.5f});
            return 34.0f * ridged(fWarpX / 190.0f, fWarpY / 190.0f, 53, {6, 2.05f, 0.48f}) +
                   8.0f * fractal(fX / 140.0f, fY / 140.0f, 54) - 8.0f;
        });
    erode(ground.heights, ground.flow, {13000, 3.5f, 0.3f, 0.25f, 0.012f, 3, 51});
    slide(ground.heights, 2.3f, 2);
    return finish("Eroded Hills", ground, 51,
                  [](const Place& place)
                  {
                      Cover cover{};
                      cover[Grass] = 1.0f;
                      lay(cover, DryGrass,
                          ramp(0.0f, 0.7f, place.fPatch + 0.35f * place.fGrain + 0.02f * place.fHeight) *
                              0.9f);
                      lay(cover, Dirt, ramp(0.25f, 0.8f, place.fFlow + 0.25f * place.fGrain) * 0.75f);
                      lay(cover, Gravel,
                          ramp(0.6f, 1.1f, place.fFlow + 0.3f * place.fHollow + 0.3f * place.fGrain) * 0.7f);
                      lay(cover, Rock, ramp(0.5f, 0.8f, place.fSteep + 0.14f * place.fGrain));
                      lay(cover, Snow,
                          ramp(19.0f, 25.0f, place.fHeight + 3.0f * place.fGrain) *
                              (1.0f - ramp(0.6f, 0.9f, place.fSteep)));
                      return cover;
                  });
}

Landscape riverValley()
{
    Ground ground(8);
    const auto courseAt = [](float fX)
    { return 256.0f + 70.0f * std::sin(fX / 83.0f) + 36.0f * std::sin(fX / 37.0f + 1.3f); };
    ground.shape(
        [&](float fX, float fY)
        {
            const float fAway = std::fabs(fY - courseAt(fX) + 9.0f * fractal(fX / 50.0f, fY / 50.0f, 61));
            const float fSides = ramp(30.0f, 235.0f, fAway);
            const float fHills =
                58.0f * fSides * (0.45f + 0.75f * ridged(fX / 230.0f, fY / 230.0f, 62, {6, 2.04f, 0.5f}));
            const float fFloor = 2.6f * ramp(9.0f, 26.0f, fAway) + 0.9f * fractal(fX / 36.0f, fY / 36.0f, 63);
            const float fBed = -2.8f * (1.0f - ramp(3.0f, 13.0f, fAway));
            return fHills + fFloor + fBed + 0.012f * (512.0f - fX);
        });
    erode(ground.heights, ground.flow, {60000, 3.2f, 0.28f, 0.25f, 0.012f, 3, 61});
    slide(ground.heights, 2.4f, 2);
    return finish(
        "River Valley", ground, 61,
        [&](const Place& place)
        {
            const float fAway =
                std::fabs(place.fY - courseAt(place.fX)) + 4.0f * place.fPatch + 1.5f * place.fGrain;
            Cover cover{};
            cover[Grass] = 1.0f;
            lay(cover, ForestFloor,
                ramp(0.0f, 0.5f, place.fPatch + 0.3f * place.fGrain) * ramp(60.0f, 110.0f, fAway) * 0.85f);
            lay(cover, DryGrass,
                ramp(14.0f, 34.0f, place.fHeight + 8.0f * place.fGrain) * ramp(-0.4f, 0.5f, place.fPatch));
            lay(cover, Dirt, ramp(0.3f, 0.9f, place.fFlow + 0.25f * place.fGrain) * 0.6f);
            lay(cover, Gravel, (1.0f - ramp(11.0f, 21.0f, fAway)) * 0.9f);
            lay(cover, Sand,
                (1.0f - ramp(4.0f, 10.0f, fAway)) * ramp(-0.5f, 0.4f, place.fPatch + 0.3f * place.fGrain));
            lay(cover, Rock, ramp(0.52f, 0.85f, place.fSteep + 0.14f * place.fGrain));
            lay(cover, Snow,
                ramp(46.0f, 56.0f, place.fHeight + 5.0f * place.fGrain) *
                    (1.0f - ramp(0.6f, 0.9f, place.fSteep)));
            return cover;
        });
}

} // namespace

float meadowPathAt(float fX)
{
    return 32.0f + 9.0f * std::sin(fX / 19.0f);
}

float meadowBrookAt(float fY)
{
    return 46.0f + 2.2f * std::sin(fY / 7.5f + 0.6f);
}

const std::vector<Recipe>& recipes()
{
    static const std::vector<Recipe> s_vecRecipes = {
        {"b2a0d652-37e1-4ec8-a41c-cf04c407ac1f", &meadow, 1, &furnishHamlet},
        {"f7231e66-2650-413e-ab2e-e6d7e3f68bbb", &dunes},
        {"8f5d5e7d-090c-4fb4-8fb8-7b993cbe096d", &island},
        {"19661e64-fdd3-4306-a528-a16631071077", &cliffCoast, 3, &furnishGrove},
        {"1fda5542-ec14-4331-b02f-4fc5ea3a67e9", &erodedHills, 2, &furnishRuin},
        {"3ea5c975-2c0e-4a1a-9224-1ef305c5c80c", &riverValley},
    };
    return s_vecRecipes;
}

} // namespace forge
