#pragma once // The assets of the starter content: their models and the materials that they share.

#include "Tools/ContentBuilder/Materials.h"
#include "Tools/ContentBuilder/ModelShape.h"

namespace content
{

struct AssetModel
{
    const char* pKey;  ///< of the keyed path, such as "$GAME_DATA"
    const char* pRoot; ///< the key's folder below the game folder
    const char* pFile; ///< below the root; files are <pFile>.obj and <pFile>.rend
    void (*fnBuild)(ModelShape& shape);
};
[[nodiscard]] std::span<const AssetModel> assetModels();

/// Maps for models, without height in alpha. Light and grey ones are tinted by colour slots.
[[nodiscard]] std::span<const Material> assetMaterials();

} // namespace content
