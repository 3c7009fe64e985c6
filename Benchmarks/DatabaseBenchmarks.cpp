// The databases of the game: from files to tables, against the bare parse of their texts.

#include "Benchmarks/Harness.h"
#include "KestrelCommon/Assets/AssetSets.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Effects/EffectCatalogue.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "KestrelCommon/Tile/ClutterDatabase.h"
#include "Tests/Support/TempFolder.h"
#include "TileEditorCommon/Ground/TerrainGroundMaterialSet.h"

#include <cstdio>
#include <fstream>
#include <json/json.h>

namespace
{

using namespace bench;

constexpr size_t s_uMadeUpAssets = 19'000;

/// jsoncpp alone, as strict as the product asks it to be.
Json::Value plainParse(const std::string& sText)
{
    static const std::unique_ptr<Json::CharReader> s_pReader = []
    {
        Json::CharReaderBuilder builder;
        builder["collectComments"] = false;
        return std::unique_ptr<Json::CharReader>(builder.newCharReader());
    }();
    Json::Value jRoot;
    std::string sError;
    s_pReader->parse(sText.data(), sText.data() + sText.size(), &jRoot, &sError);
    return jRoot;
}

std::string plainRead(const std::string& sFile)
{
    std::string sText;
    if (std::FILE* pFile = std::fopen(sFile.c_str(), "rb"))
    {
        std::fseek(pFile, 0, SEEK_END);
        sText.resize(static_cast<size_t>(std::ftell(pFile)));
        std::rewind(pFile);
        sText.resize(std::fread(sText.data(), 1, sText.size(), pFile));
        std::fclose(pFile);
    }
    return sText;
}

/// Everything that the starter content's databases hold.
struct Tables
{
    tile::ClutterDatabase clutter;
    EffectCatalogue effects;
    std::vector<terrain::AssetEntry> vecAssets;
    std::vector<tilebuilder::GroundMaterialSetDesc> vecMaterials;

    void loadAssets(const char* pList)
    {
        const auto jList = readJsonFile(pList);
        for (const terrain::AssetSetRef& ref : terrain::readAssetSetList(*jList).vecSets)
            for (terrain::AssetEntry& entry : terrain::readAssetSet(*readJsonFile(ref.sSet)))
                vecAssets.push_back(std::move(entry));
    }
    void loadMaterials(const char* pSet)
    {
        vecMaterials.push_back(*tilebuilder::readGroundMaterialSet(*readJsonFile(pSet), pSet));
    }
};

int starterContent()
{
    constexpr const char* pName = "read of all databases of the starter content";
    if (!isWanted(pName))
        return 0;
    TempFolder folder;
    DirectoryManager directories(
        {folder.path() / "roaming", folder.path() / "local", QM_GAME_DIR "/Release", {}, 7});
    if (directories.initialise() != DirectoryManager::Success)
        return 1;
    constexpr const char* arrLists[] = {"$GAME_DATA/Terrain/Database/assetsets.json",
                                        "$SURVIVAL_DATA/Terrain/Database/assetsets.json"};
    constexpr const char* arrMaterials[] = {"$GAME_DATA/Terrain/Materials/gnd_standard_materialset.json",
                                            "$SURVIVAL_DATA/Terrain/Materials/gnd_autumn_materialset.json"};
    std::vector<std::string> vecFiles;
    const auto add = [&](std::string_view sPath)
    { vecFiles.push_back(directories.resolvePath(sPath).string()); };
    add("$GAME_DATA/Terrain/Database/clutter.json");
    add("$SURVIVAL_DATA/Terrain/Database/clutter.json");
    add(EffectCatalogue::s_pGamePath);
    for (const char* pList : arrLists)
    {
        add(pList);
        for (const terrain::AssetSetRef& ref : terrain::readAssetSetList(*readJsonFile(pList)).vecSets)
            add(ref.sSet);
    }
    for (const char* pSet : arrMaterials)
        add(pSet);

    size_t uMembers = 0;
    std::optional<Tables> tables;
    return !run({.sName = pName,
                 .fLimit = 1.2,
                 .fnFloor =
                     [&]
                 {
                     uMembers = 0;
                     for (const std::string& sFile : vecFiles)
                         uMembers += plainParse(plainRead(sFile)).size();
                 },
                 .fnProduct =
                     [&]
                 {
                     tables.reset();
                     tables.emplace();
                     tables->clutter.loadGameDatabases();
                     tables->effects.load(EffectCatalogue::s_pGamePath);
                     for (const char* pList : arrLists)
                         tables->loadAssets(pList);
                     for (const char* pSet : arrMaterials)
                         tables->loadMaterials(pSet);
                 },
                 .fnEqual =
                     [&]
                 {
                     return uMembers >= vecFiles.size() && tables->clutter.types().size() >= 14 &&
                            !tables->effects.sets().empty() && tables->vecAssets.size() >= 60 &&
                            tables->vecMaterials.size() == 2;
                 },
                 .iRepeat = 20});
}

std::string madeUpSet()
{
    std::string sText = "{\n    \"assetListRenderable\": [";
    for (size_t i = 0; i < s_uMadeUpAssets; ++i)
    {
        const std::string sName = "env_made_up_" + std::to_string(i);
        sText += std::string(i ? "," : "") + "\n        {\n            \"uuid\": \"" + Uuid::random().text() +
                 "\",\n            \"name\": \"" + sName +
                 "\",\n            \"renderable\": \"$GAME_DATA/Environment/MadeUp/" + sName +
                 ".rend\",\n            \"defaultColors\": { \"Moss\": \"8C9A58\", \"Rock\": \"AAA59B\" }\n"
                 "        }";
    }
    return sText + "\n    ]\n}\n";
}

int madeUp()
{
    constexpr const char* pName = "read of a database of 5 MB";
    if (!isWanted(pName))
        return 0;
    const std::string sText = madeUpSet();
    std::vector<terrain::AssetEntry> vecAssets;
    size_t uPlain = 0;
    return !run({.sName = pName,
                 .fLimit = 1.2,
                 .fnFloor = [&] { uPlain = plainParse(sText)["assetListRenderable"].size(); },
                 .fnProduct =
                     [&]
                 {
                     std::string sError;
                     vecAssets = terrain::readAssetSet(*parseJson(sText, sError));
                 },
                 .fnEqual =
                     [&]
                 {
                     const Json::Value jPlain = plainParse(sText);
                     const Json::Value& jList = jPlain["assetListRenderable"];
                     bool bEqual = sText.size() > 5'000'000 && vecAssets.size() == uPlain;
                     for (Json::ArrayIndex i = 0; bEqual && i < jList.size(); ++i)
                         bEqual = vecAssets[i].uuid.text() == jList[i]["uuid"].asString() &&
                                  vecAssets[i].sName == jList[i]["name"].asString() &&
                                  vecAssets[i].sRenderable == jList[i]["renderable"].asString() &&
                                  vecAssets[i].mapDefaultColors.size() == 2;
                     return bEqual;
                 }});
}

int databases()
{
    return starterContent() + madeUp();
}

const Registration s_databases(&databases);

} // namespace
