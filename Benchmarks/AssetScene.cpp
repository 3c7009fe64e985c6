#include "Benchmarks/AssetScene.h"

#include "TileEditorCommon/Entities/Asset/AssetArgs.h"

#include <fstream>

namespace bench
{

using namespace tilebuilder;

namespace
{

uint32_t slotsOf(uint32_t uKind)
{
    constexpr std::array<uint32_t, 3> s_arrSlots{0, 2, 5};
    return s_arrSlots[uKind % s_arrSlots.size()];
}

void write(const std::string& sPath, const std::string& sText)
{
    const std::filesystem::path path = DirectoryManager::ms_pInstance->resolvePath(sPath);
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << sText;
}

void writeLists()
{
    std::string sAssets;
    for (uint32_t u = 0; u < SceneKinds; ++u)
    {
        std::string sColors;
        std::string sMaterials;
        for (uint32_t uSlot = 0; uSlot < slotsOf(u); ++uSlot)
        {
            const std::string sComma = uSlot ? "," : "";
            const std::string sNumber = std::to_string(uSlot);
            sColors += sComma + "\"Slot" + sNumber + "\": \"A0B0C0\"";
            sMaterials += sComma + "\"m" + sNumber + "\": {\"colorSlot\": \"Slot" + sNumber + "\"}";
        }
        sAssets += (u ? "," : "") + std::string("{\"uuid\": \"") + AssetScene::uuid(u).text() +
                   "\", \"name\": \"asset_" + std::to_string(u) +
                   "\", \"renderable\": {\"mesh\": \"$GAME_DATA/bench.obj\", \"materials\": {" + sMaterials +
                   "}}, \"defaultColors\": {" + sColors + "}}";
    }
    std::string sModel = "v -4 0 -4\nv 4 0 0\nv 0 12 0\nv 0 0 4\n";
    for (int i = 0; i < 5; ++i)
        sModel += "usemtl m" + std::to_string(i) + "\nf 1 3 2\nf 1 2 4\nf 1 4 3\nf 2 3 4\n";
    write("$GAME_DATA/bench.obj", sModel);
    write("$GAME_DATA/bench.json", "{\"assetListRenderable\": [" + sAssets + "]}");
    write("$GAME_DATA/Terrain/Database/assetsets.json",
          "{\"assetSetList\": [{\"assetSet\": \"$GAME_DATA/bench.json\", \"category\": \"Bench\"}]}");
}

} // namespace

Uuid AssetScene::uuid(uint32_t u)
{
    return Uuid{{7, static_cast<uint8_t>(u)}};
}

AssetScene::AssetScene(TileWorld& world_) : world(world_), entities(world.host, tools)
{
    writeLists();
    entities.addKind(AssetEntityType::makeKind(std::make_unique<AssetEntityType>(
        entities, instances, AssetLists{.bSurvival = false, .bChallenge = false})));
    pSections = std::make_unique<EntitySections>(entities);
    for (const auto& pProvider : pSections->providers())
        world.tile.addProvider(*pProvider);
    open();
}

void AssetScene::open()
{
    entities.openTile({world.tile.width(), world.tile.height(), tile::TypeGround, {}});
}

std::vector<EntityCreateArgs> AssetScene::args(uint32_t uCount) const
{
    std::mt19937 random(11);
    const auto roll = [&](float fTo) { return fTo * static_cast<float>(random() % 1000000) * 1.0e-6f; };
    const float fWidth = 64.0f * static_cast<float>(world.tile.width());
    const float fHeight = 64.0f * static_cast<float>(world.tile.height());
    std::vector<EntityCreateArgs> vecArgs(uCount);
    for (EntityCreateArgs& one : vecArgs)
    {
        const uint32_t uKind = static_cast<uint32_t>(random()) % SceneKinds;
        auto pPayload = std::make_shared<EntityCreateArgs::Asset>();
        pPayload->uuid = uuid(uKind);
        for (uint32_t uSlot = 0; uSlot < slotsOf(uKind); ++uSlot)
            pPayload->mapColors.emplace("Slot" + std::to_string(uSlot), static_cast<uint32_t>(random()));
        one.eTypeId = EntityTypeId_Asset;
        one.transform = {{roll(fWidth), roll(fHeight), roll(20.0f)},
                         glm::angleAxis(roll(6.0f), glm::vec3(0.0f, 0.0f, 1.0f)),
                         glm::vec3(random() % 20 ? 0.25f : 2.5f)};
        one.pPayload = std::move(pPayload);
    }
    return vecArgs;
}

void AssetScene::fill()
{
    open();
    entities.createEntities(args(SceneAssets));
}

} // namespace bench
