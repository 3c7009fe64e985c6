#pragma once // The files of the asset database.

#include "KestrelCommon/Assets/AssetRendering.h"

#include <json/forwards.h>
#include <optional>

namespace terrain
{

/// An entry of a list of sets.
struct AssetSetRef
{
    std::string sSet; ///< keyed path of a set file
    bool bHidden = false;
    std::vector<std::string> vecCategories;
};

struct AssetSetList
{
    std::vector<AssetSetRef> vecSets;
    std::string sIconDirectory; ///< keyed; empty: none is named
};

/// An entry of a set.
struct AssetEntry
{
    Uuid uuid; ///< never nil
    std::string sName;
    std::string sRenderable;                            ///< keyed path of a ".rend" file, or
    std::optional<resource::RenderableDesc> renderable; ///< what stands inline; neither: it is unusable
    ColorMap mapDefaultColors;
    bool bHidden = false;
};

/// "RRGGBB" or "RRGGBBAA", with or without a "#", as red in the lowest byte; nullopt for anything else.
[[nodiscard]] std::optional<uint32_t> parseColor(std::string_view sText);

/// Entries without a path are left out.
[[nodiscard]] AssetSetList readAssetSetList(const Json::Value& jRoot);

/// Entries without a renderable are left out; so are those with a uuid that can't be used, with a line. A
/// colour that can't be read is white, with a line.
[[nodiscard]] std::vector<AssetEntry> readAssetSet(const Json::Value& jRoot);

} // namespace terrain
