#include "TileEditorCommon/Contracts/EntityTraits.h"

#include "KestrelCommon/Core/Assert.h"

namespace tilebuilder
{

namespace
{

using tile::SectionGroup;

constexpr std::array<EntityTraits, EntityTypeId_COUNT> s_arrTraits{{
    {.eId = EntityTypeId_Asset,
     .sName = "Asset",
     .sPluralName = "Assets",
     .sArrayName = "assets",
     .sNullName = "<Null Asset>",
     .uFilterFlag = 4,
     .sGizmo = "asset",
     .arrLists = {{{SectionGroup::Assets, true}}},
     .uLists = 1,
     .eExport = TestPoint::Centre,
     .bTags = true},
    {.eId = EntityTypeId_Blueprint,
     .sName = "Blueprint",
     .sPluralName = "Blueprints",
     .sArrayName = "blueprints",
     .sNullName = "<Null Blueprint>",
     .uFilterFlag = 8,
     .arrLists = {{{SectionGroup::Blueprints, false}}},
     .uLists = 1,
     .ePlain = TestPoint::Centre,
     .eExport = TestPoint::Centre,
     .bTags = true,
     .bCentreBounds = true},
    {.eId = EntityTypeId_Prefab,
     .sName = "Prefab",
     .sPluralName = "Prefabs",
     .sArrayName = "prefabs",
     .sNullName = "<Null Prefab>",
     .uFilterFlag = 16,
     .sGizmo = "prefab",
     .arrLists = {{{SectionGroup::Prefabs, false}}},
     .uLists = 1,
     .ePlain = TestPoint::Centre,
     .eExport = TestPoint::Centre,
     .bTags = true,
     .bCentreBounds = true},
    {.eId = EntityTypeId_Character,
     .sName = "Character",
     .sArrayName = "characters",
     .sNullName = "<Null Character>",
     .bNeverOutside = true},
    {.eId = EntityTypeId_Grid,
     .sName = "Grid",
     .sArrayName = "grids",
     .sNullName = "<Null Grid>",
     .bNeverOutside = true},
    {.eId = EntityTypeId_Node,
     .sName = "Node",
     .sPluralName = "Nodes",
     .sArrayName = "nodes",
     .sNullName = "<Null Node>",
     .uFilterFlag = 32,
     .sGizmo = "node",
     .arrLists = {{{SectionGroup::Nodes, false}}},
     .uLists = 1,
     .bTags = true},
    {.eId = EntityTypeId_Selector,
     .sName = "Selector",
     .sArrayName = "selectors",
     .sNullName = "<Null Selector>",
     .bNeverOutside = true},
    {.eId = EntityTypeId_Decal,
     .sName = "Decal",
     .sPluralName = "Decals",
     .sArrayName = "decals",
     .sNullName = "<Null Decal>",
     .uFilterFlag = 64,
     .sGizmo = "decal",
     .arrLists = {{{SectionGroup::Decals, false}}},
     .uLists = 1,
     .bTags = true},
    {.eId = EntityTypeId_Harvestable,
     .sName = "Harvestable",
     .sPluralName = "Harvestables",
     .sArrayName = "harvestables",
     .sNullName = "<Null Harvestable>",
     .uFilterFlag = 128,
     .sGizmo = "harvestable",
     .arrLists = {{{SectionGroup::Harvestables, true}, {SectionGroup::Kinematics, true}}},
     .uLists = 2,
     .bTags = true},
    {.eId = EntityTypeId_VoxelMesh,
     .sName = "VoxelMesh",
     .sArrayName = "voxelMeshes",
     .sNullName = "<Null VoxelMesh>",
     .uFilterFlag = 256,
     .sGizmo = "voxelmesh",
     .arrLists = {{{SectionGroup::VoxelMeshes, false}}},
     .uLists = 1},
}};

} // namespace

std::span<const EntityTraits, EntityTypeId_COUNT> entityTraits()
{
    return s_arrTraits;
}

const EntityTraits& entityTraits(EntityTypeId eId)
{
    if (!QM_ASSERT_TEXT(eId < EntityTypeId_COUNT, "args.eTypeId < EntityTypeId_COUNT"))
        return s_arrTraits[0];
    return s_arrTraits[eId];
}

} // namespace tilebuilder
