#pragma once // The editor's assets and their instances.

#include "KestrelCommon/Assets/AssetRendering.h"
#include "KestrelCommon/Tile/Records/TagList.h"

namespace tilebuilder
{

struct EditorAsset : terrain::AssetRendering::Asset
{
    static constexpr uint32_t s_uHidden = 0x10000; ///< stays out of the library

    std::string strSet; ///< keyed path of its set file
    std::vector<std::string> vecCategories;
    std::string strRenderablePath; ///< of the ".rend" file; of the set file when it stands inline
    std::string strIconDirectory;  ///< keyed; empty: its list names none
    uint32_t uFlags = 0;
    Uuid uOriginUuid; ///< of the content that holds the set; nil for the game's own

    [[nodiscard]] bool isHidden() const { return (uFlags & s_uHidden) != 0; }
};

struct EditorAssetInstance : terrain::AssetRendering::AssetInstance
{
    glm::vec3 centerOffset{0.0f}; ///< middle of the asset's box, in its own units
    Transform localTransform;     ///< as it was created
    tile::TagSet setTags;         ///< its own
};

} // namespace tilebuilder
