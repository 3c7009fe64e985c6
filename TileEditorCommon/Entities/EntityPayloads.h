#pragma once // What is particular to new things of the stored kinds besides assets.

#include "KestrelCommon/Core/Uuid.h"
#include "KestrelCommon/Tile/Records/TagList.h"
#include "TileEditorCommon/Entities/EntityCreateArgs.h"

#include <string>
#include <vector>

namespace tilebuilder
{

class IParam;

/// Parameters are shared by copies of the arguments, so nobody changes one that others may hold.
using ParamList = std::vector<std::shared_ptr<IParam>>;

struct EntityCreateArgs::VoxelMesh : IPayload
{
    Uuid uuid;
    std::array<uint32_t, 3> arrSettings{}; ///< in the order of the record
    std::array<uint8_t, 2> arrFlags{};

    [[nodiscard]] uint64_t hash(uint64_t uSeed) const override;
};

struct EntityCreateArgs::Harvestable : IPayload
{
    Uuid uuid;
    uint32_t uColor = 0; ///< red in the highest byte
    ParamList vecParams;
    tile::TagSet setTags;

    [[nodiscard]] uint64_t hash(uint64_t uSeed) const override;
};

struct EntityCreateArgs::Blueprint : IPayload
{
    std::string strPathOrJson; ///< keyed path, or "?JB:" and the text of the blueprint itself
    int32_t iSortingIndex = 0;
    tile::TagSet setTags;

    [[nodiscard]] uint64_t hash(uint64_t uSeed) const override;
};

struct EntityCreateArgs::Prefab : IPayload
{
    std::string strPath; ///< keyed
    std::vector<EntityCreateArgs> vecChildArgs;
    tile::TagSet setTags;
    uint32_t uFlags = 0;

    [[nodiscard]] uint64_t hash(uint64_t uSeed) const override;
};

struct EntityCreateArgs::Node : IPayload
{
    std::string strName;
    std::vector<std::string> vecTags;
    ParamList vecParams;

    [[nodiscard]] uint64_t hash(uint64_t uSeed) const override;
};

struct EntityCreateArgs::Decal : IPayload
{
    uint32_t uColor = 0;      ///< red in the lowest byte
    uint32_t uDecalIndex = 0; ///< place in the table of all decals
    uint32_t uLayer = 0;
    tile::TagSet setTags;

    [[nodiscard]] uint64_t hash(uint64_t uSeed) const override;
};

} // namespace tilebuilder
