#include "KestrelCommon/Ugc/UgcCustomGameMod.h"

#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Services/DirectoryManager.h"

#include <json/value.h>

namespace
{

constexpr std::pair<const char*, BaseGameContent> s_arrBaseWords[] = {
    {"None", BaseGameContent::None},
    {"Creative", BaseGameContent::Creative},
    {"Survival", BaseGameContent::Survival},
};

} // namespace

void UgcCustomGameMod::refresh()
{
    if (const auto jConfig = readJsonFile(configPath()))
    {
        const std::string sBase = jsonText(*jConfig, "baseGameContent");
        for (const auto& [pWord, eBase] : s_arrBaseWords)
            if (sBase == pWord)
                m_eBaseGameContent = eBase;
    }
    m_sPreviewPath = directoryKey() + "/preview.jpg";
    for (const UgcContentPath path :
         {&UgcContentPaths::sAssetSets, &UgcContentPaths::sHarvestableSets, &UgcContentPaths::sKinematicSets,
          &UgcContentPaths::sCharacterSets, &UgcContentPaths::sToolSets, &UgcContentPaths::sProjectiles,
          &UgcContentPaths::sMeleeAttacks, &UgcContentPaths::sShapeSets, &UgcContentPaths::sRotationSets,
          &UgcContentPaths::sEffectSets, &UgcContentPaths::sLanguage, &UgcContentPaths::sTiles,
          &UgcContentPaths::sWorlds, &UgcContentPaths::sBlueprints, &UgcContentPaths::sScriptableObjects,
          &UgcContentPaths::sNodes, &UgcContentPaths::sLogs})
        findContent(path);
    findParticles();
    m_paths.sPrefabs = directoryKey() + std::string(ugcContentSuffix(&UgcContentPaths::sPrefabs));
    m_sIconSetName = "ItemIconsSet_" + getLocalId().text();
}

bool UgcCustomGameMod::validate()
{
    if (DirectoryManager::ms_pInstance->exists(configPath()))
        return true;
    tellUser("Failed to find config.json");
    return false;
}

bool UgcCustomGameMod::prepare()
{
    const auto jConfig = readJsonFile(configPath());
    if (!jConfig || !jConfig->isObject())
    {
        tellUser("Custom Game config error");
        return false;
    }
    return readScript(*jConfig, "gameScript", m_gameScript) &&
           readScript(*jConfig, "playerScript", m_playerScript);
}

bool UgcCustomGameMod::readScript(const Json::Value& jConfig, const char* pKey, GameScript& script) const
{
    const Json::Value& jScript = jsonMember(jConfig, pKey);
    const std::string sFile = jsonText(jScript, "file");
    const std::string sPath = DirectoryManager::replaceGenericKey(sFile, directoryKey());
    // A script lies in a registered folder; nothing in a description leads elsewhere.
    if (!DirectoryManager::ms_pInstance->isValidKeyedPath(sPath) ||
        !DirectoryManager::ms_pInstance->exists(sPath))
    {
        tellUser("File not found: '" + sFile + "'");
        return false;
    }
    script = {sPath, jsonText(jScript, "class")};
    return true;
}
