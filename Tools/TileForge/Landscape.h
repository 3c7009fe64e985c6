#pragma once // The example landscapes: their shape, their materials and their tint.

#include "Tools/TileForge/Terrain.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace forge
{

/// Places of the materials in the standard set.
enum Material : uint8_t
{
    Grass,
    DryGrass,
    Dirt,
    ForestFloor,
    Gravel,
    Sand,
    Rock,
    Snow,
};
constexpr int s_iMaterials = 8;

/// A finished landscape of square tiles.
///
/// Shape: heights (32n + 1)^2 metres, 2 m apart; tint the same, red lowest; weights (64n + 1)^2,
///        1 m apart, 0 to 255 by Material.
struct Landscape
{
    std::string sName;
    int iCells = 1;
    Grid heights;
    std::vector<uint32_t> vecTint;
    std::vector<std::array<uint8_t, s_iMaterials>> vecWeights;
};

/// Where the meadow's path runs, and its brook; metres.
[[nodiscard]] float meadowPathAt(float fX);
[[nodiscard]] float meadowBrookAt(float fY);

class Scene;

/// What makes a landscape, and the id that its tile keeps.
struct Recipe
{
    const char* pUuid;
    Landscape (*fnMake)();
    uint32_t uSceneSeed = 0;
    void (*fnFurnish)(Scene& scene) = nullptr; ///< null: nothing stands there
};

/// All examples, in the order of their sizes.
[[nodiscard]] const std::vector<Recipe>& recipes();

} // namespace forge
