#include "Tools/ContentBuilder/Models/AssetModels.h"

#include "Tools/ContentBuilder/Models/AssetTextures.h"
#include "Tools/ContentBuilder/OutputFolder.h"

#include <algorithm>
#include <cstdio>
#include <set>

namespace content
{

namespace
{

constexpr std::array<AssetMaterial, 16> s_arrMaterials = {{
    {"Rock", "env_stone", "Rock", "AAA59B"},
    {"Moss", "env_moss", "Moss", "8C9A58"},
    {"Stone", "env_stone", "Stone", "C2B9A7"},
    {"Masonry", "env_masonry", "Stone", "C2B9A7"},
    {"Wood", "env_wood", "Wood", "B79C7A"},
    {"Trim", "env_wood", "Trim", "917862"},
    {"Bark", "env_bark", "Bark", "948270"},
    {"Birch", "env_birch", "Bark", "E6E0D4"},
    {"Leaves", "env_leaf", "Leaves", "A3B864"},
    {"LeafCards", "env_leaf_card", "Leaves", "A3B864"},
    {"Needles", "env_needle", "Leaves", "7F9A62"},
    {"Plaster", "env_plaster", "Plaster", "EFE3CA"},
    {"Roof", "env_shingle", "Roof", "AC8672"},
    {"Metal", "env_metal", "Metal", "77777A"},
    {"Cloth", "env_cloth", "Cloth", "CDB98F"},
    {"Glow", "env_glow", "Glow", "FFDC92"},
}};

std::string contentPath(const AssetSet& set, std::string_view sName, const char* pEnding)
{
    return std::string(set.pKey) + "/Environment/" + set.pFolder + "/" + std::string(sName) + pEnding;
}

} // namespace

const AssetMaterial* findAssetMaterial(std::string_view sName)
{
    const auto it = std::find_if(s_arrMaterials.begin(), s_arrMaterials.end(),
                                 [&](const AssetMaterial& material) { return sName == material.pName; });
    return it == s_arrMaterials.end() ? nullptr : &*it;
}

std::span<const AssetSet> assetSets()
{
    static constexpr std::array<AssetSet, 16> s_arrSets = {{
        {"Data", "$GAME_DATA", "rocks", "Rocks", "Rocks", &rockModels},
        {"Data", "$GAME_DATA", "trees", "Trees", "Trees", &treeModels},
        {"Data", "$GAME_DATA", "fences", "Fences", "Fences", &fenceModels},
        {"Data", "$GAME_DATA", "walls", "Walls", "Walls and Floors", &wallModels},
        {"Data", "$GAME_DATA", "huts", "Huts", "Buildings", &hutModels},
        {"Data", "$GAME_DATA", "ruins", "Ruins", "Buildings", &ruinModels},
        {"Data", "$GAME_DATA", "lamps", "Lamps", "Lamps", &lampModels},
        {"Data", "$GAME_DATA", "bridges", "Bridges", "Bridges", &bridgeModels},
        {"Data", "$GAME_DATA", "crates", "Crates", "Crates and Barrels", &crateModels},
        {"Survival", "$SURVIVAL_DATA", "slate", "Rocks", "Rocks", &slateModels},
        {"Survival", "$SURVIVAL_DATA", "autumn_trees", "Trees", "Trees", &autumnTreeModels},
        {"Survival", "$SURVIVAL_DATA", "camp", "Camp", "Buildings", &campModels},
        {"Survival", "$SURVIVAL_DATA", "scrap_fences", "Fences", "Fences", &scrapFenceModels},
        {"Survival", "$SURVIVAL_DATA", "supplies", "Supplies", "Crates and Barrels", &supplyModels},
        {"Survival", "$SURVIVAL_DATA", "camp_lamps", "Lamps", "Lamps", &campLampModels},
        {"Survival", "$SURVIVAL_DATA", "log_bridges", "Bridges", "Bridges", &logBridgeModels},
    }};
    return s_arrSets;
}

std::string assetUuid(std::string_view sName)
{
    const uint64_t uHigh = hashBytes(sName, hashBytes("quillmere asset high"));
    const uint64_t uLow = hashBytes(sName, hashBytes("quillmere asset low"));
    std::array<char, 40> arrText{};
    std::snprintf(arrText.data(), arrText.size(), "%08x-%04x-5%03x-%04x-%012llx",
                  static_cast<unsigned>(uHigh >> 32), static_cast<unsigned>(uHigh >> 16 & 0xFFFF),
                  static_cast<unsigned>(uHigh & 0xFFF), static_cast<unsigned>((uLow >> 48 & 0x3FFF) | 0x8000),
                  static_cast<unsigned long long>(uLow & 0xFFFFFFFFFFFFull));
    return arrText.data();
}

std::string renderableText(std::string_view sMeshPath, const ModelMesh& mesh)
{
    std::string sText = "{\n    \"mesh\": \"" + std::string(sMeshPath) + "\",\n    \"materials\": {";
    bool bFirst = true;
    for (const auto& [sName, vecTriangles] : mesh.materials())
    {
        const AssetMaterial* pMaterial = findAssetMaterial(sName);
        if (!pMaterial)
        {
            std::fprintf(stderr, "No material %s\n", sName.c_str());
            continue;
        }
        const std::string sPicture = std::string("$GAME_DATA/Environment/Textures/") + pMaterial->pTexture;
        sText += bFirst ? "\n" : ",\n";
        bFirst = false;
        sText += "        \"" + sName + "\": {\n            \"diffuse\": \"" + sPicture + "_dif.png\"";
        const AssetTexture* pTexture = findAssetTexture(pMaterial->pTexture);
        if (pTexture && pTexture->bMaps)
            sText += ",\n            \"normal\": \"" + sPicture + "_nor.png\",\n            \"asg\": \"" +
                     sPicture + "_asg.png\"";
        if (*pMaterial->pSlot)
            sText += std::string(",\n            \"colorSlot\": \"") + pMaterial->pSlot + "\"";
        sText += "\n        }";
    }
    return sText + "\n    }\n}\n";
}

std::string assetSetText(const AssetSet& set, std::span<const std::pair<AssetModel, ModelMesh>> spanModels)
{
    std::string sText = "{\n    \"assetListRenderable\": [";
    bool bFirst = true;
    for (const auto& [model, mesh] : spanModels)
    {
        std::map<std::string, std::string> mapColours;
        for (const auto& [sMaterial, vecTriangles] : mesh.materials())
            if (const AssetMaterial* pMaterial = findAssetMaterial(sMaterial); pMaterial && *pMaterial->pSlot)
            {
                const auto it = model.mapColours.find(pMaterial->pSlot);
                mapColours[pMaterial->pSlot] = it == model.mapColours.end() ? pMaterial->pColour : it->second;
            }
        sText += bFirst ? "\n" : ",\n";
        bFirst = false;
        sText += "        {\n            \"uuid\": \"" + assetUuid(model.sName) +
                 "\",\n            \"name\": \"" + model.sName + "\",\n            \"renderable\": \"" +
                 contentPath(set, model.sName, ".rend") + "\"";
        if (!mapColours.empty())
        {
            sText += ",\n            \"defaultColors\": {";
            const char* pBefore = " ";
            for (const auto& [sSlot, sColour] : mapColours)
            {
                sText += pBefore;
                pBefore = ", ";
                sText += "\"" + sSlot + "\": \"" + sColour + "\"";
            }
            sText += " }";
        }
        sText += "\n        }";
    }
    return sText + "\n    ]\n}\n";
}

std::string assetSetListText(std::string_view sRoot)
{
    std::string sText = "{\n    \"assetSetList\": [";
    bool bFirst = true;
    for (const AssetSet& set : assetSets())
    {
        if (sRoot != set.pRoot)
            continue;
        sText += bFirst ? "\n" : ",\n";
        bFirst = false;
        sText += std::string("        { \"assetSet\": \"") + set.pKey + "/Terrain/Database/AssetSets/" +
                 set.pFile + ".json\", \"categories\": [\"" + set.pCategory + "\"] }";
    }
    return sText + "\n    ]\n}\n";
}

} // namespace content
