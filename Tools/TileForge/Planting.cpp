#include "Tools/TileForge/Planting.h"

#include "KestrelCommon/Tile/ClutterDatabase.h"
#include "KestrelCommon/Tile/TileFormat.h"
#include "Tools/TileForge/Noise.h"

#include <algorithm>
#include <optional>

namespace forge
{

namespace
{

float dice(int iX, int iY)
{
    auto u = static_cast<uint32_t>(iX) * 0x9E3779B1u ^ static_cast<uint32_t>(iY) * 0x85EBCA77u;
    u = (u ^ u >> 15) * 0x2C1B3C6Du;
    u = (u ^ u >> 12) * 0x297A2D39u;
    return static_cast<float>((u ^ u >> 15) >> 8) / static_cast<float>(1 << 24);
}

/// A sample's ground and the noises that decide over it.
struct Spot
{
    std::array<float, s_iMaterials> arrShare; ///< 0 to 1
    float fHeight;                            ///< metres
    float fWide;                              ///< -1 to 1, patches of 30 m
    float fPatch;                             ///< -1 to 1, patches of 9 m
    float fOther;                             ///< -1 to 1, others of 12 m
    float fDice;                              ///< 0 to 1

    [[nodiscard]] bool is(Material eMaterial) const { return arrShare[eMaterial] > 0.52f; }
};

/// The name of what grows there; null for nothing. Most of it in closed patches of one type, which pack
/// well in a file.
const char* plantAt(const Spot& spot, bool bRiver)
{
    const bool bThick = spot.fPatch + 0.7f * spot.fWide > 0.02f;
    if (spot.is(Grass))
    {
        if (spot.fOther > 0.30f && spot.fDice < 0.16f)
            return spot.fWide > 0.05f ? "Daisies" : spot.fWide < -0.25f ? "Poppies" : "White Clover";
        if (!bThick)
            return nullptr;
        return spot.fPatch > 0.38f ? "Tall Meadow Grass" : "Meadow Grass";
    }
    if (spot.is(DryGrass))
    {
        if (spot.fHeight > 9.0f && spot.fOther > 0.22f)
            return spot.fDice < 0.4f ? "Heather" : nullptr;
        if (!bThick)
            return nullptr;
        return spot.fPatch > 0.36f ? "Tall Dry Grass" : "Dry Grass";
    }
    if (spot.is(ForestFloor))
    {
        if (spot.fPatch > 0.12f && spot.fDice < 0.35f)
            return "Fern";
        return spot.fOther > 0.1f && spot.fDice > 0.88f ? "Fallen Leaves" : nullptr;
    }
    if (bRiver && spot.arrShare[Gravel] + spot.arrShare[Sand] > 0.6f && spot.fPatch > 0.34f)
        return spot.fDice < 0.5f ? "Reeds" : nullptr;
    if (spot.is(Gravel))
        return spot.fDice < 0.07f ? "Pebbles" : nullptr;
    if (spot.is(Sand))
    {
        if (spot.fPatch + 0.4f * spot.fOther > 0.36f)
            return spot.fDice < 0.45f ? "Beach Grass" : nullptr;
        return spot.fDice > 0.995f ? "Driftwood Chips" : nullptr;
    }
    return nullptr;
}

std::optional<uint8_t> indexOf(const tile::ClutterDatabase& database, std::string_view sName)
{
    const auto& vecTypes = database.types();
    const auto it = std::find_if(vecTypes.begin(), vecTypes.end(),
                                 [&](const tile::GrassInfo& type) { return type.name == sName; });
    if (it == vecTypes.end())
        return std::nullopt;
    return static_cast<uint8_t>(it - vecTypes.begin());
}

} // namespace

void plantCell(const Landscape& land, const tile::ClutterDatabase& database, int iCellX, int iCellY,
               std::vector<uint8_t>& vecSamples)
{
    constexpr int s_iSide = tile::ClutterTileSamples;
    vecSamples.assign(tile::SamplesPerPatch, tile::EmptyClutter);
    const bool bRiver = land.sName == "River Valley";
    const int iTexels = 64 * land.iCells + 1;
    const FractalShape shape{3, 2.1f, 0.5f};
    for (int j = 0; j < s_iSide; ++j)
        for (int i = 0; i < s_iSide; ++i)
        {
            const int iX = iCellX * s_iSide + i;
            const int iY = iCellY * s_iSide + j;
            const float fX = 0.5f * static_cast<float>(iX) + 0.25f;
            const float fY = 0.5f * static_cast<float>(iY) + 0.25f;
            const auto& weights = land.vecWeights[static_cast<size_t>((iY + 1) / 2 * iTexels + (iX + 1) / 2)];
            Spot spot{{},
                      land.heights.sample(fX * 0.5f, fY * 0.5f),
                      fractal(fX / 30.0f, fY / 30.0f, 501, shape),
                      fractal(fX / 9.0f, fY / 9.0f, 502, shape),
                      fractal(fX / 12.0f, fY / 12.0f, 503, shape),
                      dice(iX, iY)};
            for (size_t u = 0; u < spot.arrShare.size(); ++u)
                spot.arrShare[u] = static_cast<float>(weights[u]) / 255.0f;
            if (const char* pName = plantAt(spot, bRiver))
                if (const auto uIndex = indexOf(database, pName))
                    vecSamples[static_cast<size_t>(j * s_iSide + i)] = *uIndex;
        }
}

} // namespace forge
