#include "Tests/Content/StarterAssets.h"

#include <fstream>
#include <iterator>
#include <json/json.h>

namespace
{

std::string textOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

std::filesystem::path starterPath(std::string_view sKeyedPath)
{
    const std::filesystem::path game(QM_GAME_DIR);
    constexpr std::string_view s_sGame = "$GAME_DATA/";
    constexpr std::string_view s_sSurvival = "$SURVIVAL_DATA/";
    if (sKeyedPath.starts_with(s_sGame))
        return game / "Data" / sKeyedPath.substr(s_sGame.size());
    if (sKeyedPath.starts_with(s_sSurvival))
        return game / "Survival" / sKeyedPath.substr(s_sSurvival.size());
    return {};
}

Json::Value starterJson(std::string_view sKeyedPath)
{
    Json::Value jRoot;
    std::ifstream file(starterPath(sKeyedPath));
    std::string sError;
    Json::CharReaderBuilder builder;
    if (!file || !Json::parseFromStream(builder, file, &jRoot, &sError))
        return {};
    return jRoot;
}

std::shared_ptr<const resource::Renderable> starterRenderable(const std::string& sKeyedPath)
{
    auto desc = resource::parseRenderable(textOf(starterPath(sKeyedPath)), sKeyedPath);
    if (!desc)
        return nullptr;
    const auto pModel = std::make_shared<const resource::ModelFile>(desc->sMesh, [](std::string_view s)
                                                                    { return starterPath(s); });
    return std::make_shared<const resource::Renderable>(*desc, pModel, false);
}

std::vector<StarterAsset> starterAssets()
{
    std::vector<StarterAsset> vecAssets;
    for (const char* pRoot : {"$GAME_DATA", "$SURVIVAL_DATA"})
        for (const terrain::AssetSetRef& ref :
             terrain::readAssetSetList(starterJson(std::string(pRoot) + "/Terrain/Database/assetsets.json"))
                 .vecSets)
            for (terrain::AssetEntry& entry : terrain::readAssetSet(starterJson(ref.sSet)))
            {
                auto pRenderable = starterRenderable(entry.sRenderable);
                vecAssets.push_back(
                    {std::move(entry), ref.sSet, pRoot, ref.vecCategories, std::move(pRenderable)});
            }
    return vecAssets;
}
