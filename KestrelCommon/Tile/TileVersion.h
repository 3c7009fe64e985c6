#pragma once // The versions of the tile format, named by what each of them brought.

#include <cstdint>

namespace tile
{

enum Version : uint32_t
{
    VersionClutterTable = 2,           ///< clutter sections begin with a table of types
    VersionUuid = 3,                   ///< the header's uuid can be trusted
    VersionAssetUuid = 4,              ///< assets by id; below it by name
    VersionScalePerAxis = 5,           ///< assets have three scales; below it one
    VersionOldestAtRunTime = 5,        ///< the game refuses anything older
    VersionScriptsAndNodes = 6,        ///< script and node sections
    VersionPrefabsAmongBlueprints = 6, ///< prefabs stand in the blueprint sections
    VersionPrefabs = 7,                ///< prefab sections; blueprint records changed
    VersionDecals = 8,                 ///< decal sections
    VersionPrefabScale = 9,            ///< prefab records gain a scale
    VersionKinematics = 10,            ///< kinematic sections; harvestables gain parameters
    VersionVoxelTerrain = 11,          ///< voxel terrain sections
    VersionTags = 12,                  ///< tags of assets, harvestables, kinematics; decals changed
    VersionBlueprintTags = 13,         ///< tags of blueprints; prefab records changed
    VersionCurrent = VersionBlueprintTags,
};

/// The versions of the prefab format.
enum PrefabVersion : uint32_t
{
    PrefabVersionAssets = 3,       ///< a section of assets
    PrefabVersionDecals = 4,       ///< a section of decals
    PrefabVersionScalePerAxis = 5, ///< transforms have three scales; below it one
    PrefabVersionHarvestables = 6, ///< a section of harvestables
    PrefabVersionParameters = 7,   ///< harvestables gain parameters
    PrefabVersionVoxelMeshes = 8,  ///< a section of voxel meshes
    PrefabVersionKinematics = 9,   ///< a section of kinematics
    PrefabVersionTags = 9,         ///< tags of assets, decals, harvestables, kinematics
    PrefabVersionAllTags = 10,     ///< tags of blueprints; prefabs list theirs instead of a text
    PrefabVersionCurrent = PrefabVersionAllTags,
};

} // namespace tile
