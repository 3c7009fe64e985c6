#pragma once // What is particular to a new asset.

#include "KestrelCommon/Core/Uuid.h"
#include "KestrelCommon/Tile/Records/TagList.h"
#include "TileEditorCommon/Entities/EntityCreateArgs.h"

namespace tilebuilder
{

struct EntityCreateArgs::Asset : IPayload
{
    Uuid uuid;
    tile::ColorMap mapColors; ///< red in the lowest byte; empty: the asset's defaults
    tile::TagSet setTags;

    [[nodiscard]] uint64_t hash(uint64_t uSeed) const override;
};

} // namespace tilebuilder
