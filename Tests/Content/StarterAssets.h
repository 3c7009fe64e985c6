#pragma once // The asset database that comes with the program, as a test sees it.

#include "KestrelCommon/Assets/AssetSets.h"

#include <filesystem>
#include <json/forwards.h>
#include <vector>

/// Of the laid out game folder.
[[nodiscard]] std::filesystem::path starterPath(std::string_view sKeyedPath);

/// Null when it can't be read.
[[nodiscard]] Json::Value starterJson(std::string_view sKeyedPath);

struct StarterAsset
{
    terrain::AssetEntry entry;
    std::string sSet;
    std::string sRoot; ///< the key of its paths
    std::vector<std::string> vecCategories;
    std::shared_ptr<const resource::Renderable> pRenderable; ///< null when its file can't be read
};

/// Of the game's and the survival lists, in their order. Empty without a game folder.
[[nodiscard]] std::vector<StarterAsset> starterAssets();

[[nodiscard]] std::shared_ptr<const resource::Renderable> starterRenderable(const std::string& sKeyedPath);
