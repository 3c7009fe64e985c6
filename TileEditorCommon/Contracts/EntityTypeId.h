#pragma once // The kinds of entities.

#include <cstdint>

namespace tilebuilder
{

enum EntityTypeId : uint8_t
{
    EntityTypeId_Asset = 0,
    EntityTypeId_Blueprint = 1,
    EntityTypeId_Prefab = 2,
    EntityTypeId_Character = 3,
    EntityTypeId_Grid = 4,
    EntityTypeId_Node = 5,
    EntityTypeId_Selector = 6,
    EntityTypeId_Decal = 7,
    EntityTypeId_Harvestable = 8, ///< and kinematics: a flag of the description tells them apart
    EntityTypeId_VoxelMesh = 9,
    EntityTypeId_COUNT = 10,
};

} // namespace tilebuilder
