#pragma once // What an item may hold, and where below its folder.

#include <span>
#include <string>
#include <string_view>

/// Keyed paths; empty where the item has no such file or folder.
struct UgcContentPaths
{
    std::string sAssetSets;
    std::string sHarvestableSets;
    std::string sKinematicSets;
    std::string sCharacterSets;
    std::string sToolSets;
    std::string sProjectiles;
    std::string sMeleeAttacks;
    std::string sShapeSets;
    std::string sRotationSets;
    std::string sParticles; ///< a folder, kept when it holds one of the particle lists
    std::string sEffectSets;
    std::string sLanguage;
    std::string sTiles;
    std::string sWorlds;
    std::string sBlueprints;
    std::string sPrefabs;
    std::string sNodes;
    std::string sScriptableObjects;
    std::string sLogs;
};

using UgcContentPath = std::string UgcContentPaths::*;

/// The place of a kind of content below an item's key, with a leading '/'.
[[nodiscard]] std::string_view ugcContentSuffix(UgcContentPath path);
