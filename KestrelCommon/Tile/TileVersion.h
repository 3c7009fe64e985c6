#pragma once // The versions of the tile format, named by what each of them brought.

#include <cstdint>

namespace tile
{

enum Version : uint32_t
{
    VersionClutterTable = 2,    ///< clutter sections begin with a table of types
    VersionUuid = 3,            ///< the header's uuid can be trusted
    VersionOldestAtRunTime = 5, ///< the game refuses anything older
    VersionScriptsAndNodes = 6, ///< script and node sections
    VersionPrefabs = 7,         ///< prefab sections; blueprint records changed
    VersionDecals = 8,          ///< decal sections
    VersionPrefabScale = 9,     ///< prefab records gain a scale
    VersionKinematics = 10,     ///< kinematic sections; harvestables gain parameters
    VersionVoxelTerrain = 11,   ///< voxel terrain sections
    VersionTags = 12,           ///< tags of assets, harvestables, kinematics; decals changed
    VersionBlueprintTags = 13,  ///< tags of blueprints; prefab records changed
    VersionCurrent = VersionBlueprintTags,
};

} // namespace tile
