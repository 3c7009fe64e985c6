#include "KestrelCommon/Ugc/UgcContentPaths.h"

namespace
{

struct Suffix
{
    UgcContentPath path;
    std::string_view sSuffix;
};

constexpr Suffix s_arrSuffixes[] = {
    {&UgcContentPaths::sAssetSets, "/Terrain/Database/assetsets.assetdb"},
    {&UgcContentPaths::sHarvestableSets, "/Harvestables/Database/harvestablesets.harvestabledb"},
    {&UgcContentPaths::sKinematicSets, "/Kinematics/Database/kinematicsets.kinematicdb"},
    {&UgcContentPaths::sCharacterSets, "/Characters/Database/charactersets.characterdb"},
    {&UgcContentPaths::sToolSets, "/Tools/Database/toolsets.tooldb"},
    {&UgcContentPaths::sProjectiles, "/Projectiles/projectiles.projectileset"},
    {&UgcContentPaths::sMeleeAttacks, "/MeleeAttacks/meleeattacks.meleeattackset"},
    {&UgcContentPaths::sShapeSets, "/Objects/Database/shapesets.shapedb"},
    {&UgcContentPaths::sRotationSets, "/Objects/Database/rotationsets.rotationset"},
    {&UgcContentPaths::sParticles, "/Particles/"},
    {&UgcContentPaths::sEffectSets, "/Effects/Database/effectsets.effectdb"},
    {&UgcContentPaths::sLanguage, "/Gui/Language"},
    {&UgcContentPaths::sTiles, "/Terrain/Tiles"},
    {&UgcContentPaths::sWorlds, "/Terrain/Worlds"},
    {&UgcContentPaths::sBlueprints, "/Blueprints"},
    {&UgcContentPaths::sPrefabs, "/Prefabs"},
    {&UgcContentPaths::sNodes, "/Nodes/nodes.nodeset"},
    {&UgcContentPaths::sScriptableObjects, "/ScriptableObjects/scriptableObjectSets.sobdb"},
    {&UgcContentPaths::sLogs, "/Logs/logs.logset"},
};

} // namespace

std::string_view ugcContentSuffix(UgcContentPath path)
{
    for (const Suffix& entry : s_arrSuffixes)
        if (entry.path == path)
            return entry.sSuffix;
    return {};
}
