#include "KestrelCommon/Tile/SectionTable.h"

namespace tile
{

namespace
{

#define QM_GROUP(group, name, elements, version, sizeField, readText)                                        \
    {                                                                                                        \
        SectionGroup::group, #group, elements, offsetof(CellHeader, name##Count),                            \
            offsetof(CellHeader, name##Index), version, "cellHeader." sizeField " > 0",                      \
            "uReadSize == h." readText                                                                       \
    }

// Each group's fields follow each other as blocks of its elements: count, index, compressed
// size, size. That is what lets two offsets describe all four.
constexpr std::array<SectionGroupInfo, SectionGroupCount> s_arrGroups{{
    {SectionGroup::Mips, "Mips", MipCount, SectionGroupInfo::s_uNoCount, offsetof(CellHeader, mipIndex), 0,
     "cellHeader.mipSize[uMip] > 0", "uReadSize == h.mipSize[i]"},
    {SectionGroup::Clutter, "Clutter", 1, SectionGroupInfo::s_uNoCount, offsetof(CellHeader, clutterIndex), 0,
     "cellHeader.clutterSize > 0", "uReadSize == h.clutterSize"},
    QM_GROUP(Assets, assetList, LevelCount, 0, "assetListSize[uLodLevel]", "assetListSize[i]"),
    QM_GROUP(Blueprints, blueprintList, 1, 0, "blueprintListSize", "blueprintListSize"),
    QM_GROUP(Nodes, node, 1, VersionScriptsAndNodes, "nodeSize", "nodeSize"),
    QM_GROUP(Prefabs, prefab, 1, VersionPrefabs, "prefabSize", "prefabSize"),
    QM_GROUP(Decals, decal, 1, VersionDecals, "decalSize", "decalSize"),
    QM_GROUP(Harvestables, harvestableList, LevelCount, 0, "harvestableListSize[uSizeLevel]",
             "harvestableListSize[i]"),
    QM_GROUP(Kinematics, kinematicList, LevelCount, VersionKinematics, "kinematicListSize[uSizeLevel]",
             "kinematicListSize[i]"),
    QM_GROUP(VoxelMeshes, voxelMesh, 1, 0, "voxelMeshSize", "voxelMeshSize"),
    QM_GROUP(VoxelTerrain, voxelTerrain, 1, VersionVoxelTerrain, "voxelTerrainSize", "voxelTerrainSize"),
    QM_GROUP(Scripts, script, 1, VersionScriptsAndNodes, "scriptSize", "scriptSize"),
}};
#undef QM_GROUP

constexpr std::array s_arrReadOrder{
    SectionGroup::Assets,     SectionGroup::Nodes,       SectionGroup::Prefabs,
    SectionGroup::Blueprints, SectionGroup::Decals,      SectionGroup::Harvestables,
    SectionGroup::Kinematics, SectionGroup::VoxelMeshes, SectionGroup::VoxelTerrain};

// Lists and voxel meshes go by their count alone.
constexpr bool needsIndex(SectionGroup eGroup)
{
    return eGroup == SectionGroup::Nodes || eGroup == SectionGroup::Prefabs ||
           eGroup == SectionGroup::Blueprints || eGroup == SectionGroup::Decals;
}

uint32_t field(const CellHeader& header, size_t uOffset)
{
    uint32_t uValue;
    std::memcpy(&uValue, reinterpret_cast<const std::byte*>(&header) + uOffset, sizeof(uValue));
    return uValue;
}

void setField(CellHeader& header, size_t uOffset, uint32_t uValue)
{
    std::memcpy(reinterpret_cast<std::byte*>(&header) + uOffset, &uValue, sizeof(uValue));
}

} // namespace

std::span<const SectionGroupInfo, SectionGroupCount> sectionGroups()
{
    return s_arrGroups;
}

const SectionGroupInfo& sectionGroup(SectionGroup eGroup)
{
    return s_arrGroups[static_cast<size_t>(eGroup)];
}

std::span<const SectionGroup> objectReadOrder()
{
    return s_arrReadOrder;
}

Section section(const CellHeader& header, const SectionGroupInfo& group, uint32_t uElement)
{
    const size_t uBlock = group.uElements * sizeof(uint32_t);
    const size_t uOffset = uElement * sizeof(uint32_t);
    Section result;
    result.uCount = group.isObjects() ? field(header, group.uCount + uOffset) : 1;
    result.uIndex = field(header, group.uIndex + uOffset);
    result.uCompressedSize = field(header, group.uIndex + uBlock + uOffset);
    result.uSize = field(header, group.uIndex + uBlock * 2 + uOffset);
    return result;
}

void setSection(CellHeader& header, const SectionGroupInfo& group, uint32_t uElement, const Section& section)
{
    const size_t uBlock = group.uElements * sizeof(uint32_t);
    const size_t uOffset = uElement * sizeof(uint32_t);
    const Section stored = section.uCount ? section : Section{};
    if (group.isObjects())
        setField(header, group.uCount + uOffset, stored.uCount);
    setField(header, group.uIndex + uOffset, stored.uIndex);
    setField(header, group.uIndex + uBlock + uOffset, stored.uCompressedSize);
    setField(header, group.uIndex + uBlock * 2 + uOffset, stored.uSize);
}

bool isPresent(const SectionGroupInfo& group, const Section& section, uint32_t uVersion)
{
    return section.uCount > 0 && uVersion >= group.uFirstVersion &&
           !(needsIndex(group.eGroup) && section.uIndex == 0);
}

} // namespace tile
