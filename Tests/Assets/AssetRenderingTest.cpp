// Assets, their instances and highlights; model files and the descriptions of renderables.

#include "KestrelCommon/Assets/AssetRendering.h"
#include "Tests/Support/LogCapture.h"
#include "Tests/Support/TempFolder.h"

#include <fstream>
#include <gtest/gtest.h>

namespace
{

using terrain::AssetRendering;

constexpr const char* s_pWedge = "o wedge\n"
                                 "v 0 0 0\nv 4 0 0\nv 0 8 0\nv 0 0 2\n"
                                 "vt 0 0\nvt 1 0\nvt 0 1\n"
                                 "usemtl stone\nf 1/1 3/3 2/2\nf 1/1 2/2 4/3\n"
                                 "usemtl cap\nf 1/1 4/2 3/3\nf 2/1 3/2 4/3\n";

struct AssetRenderingTest : testing::Test
{
    AssetRenderingTest() { std::ofstream(m_folder.path() / "wedge.obj") << s_pWedge; }

    [[nodiscard]] resource::PathResolver resolver() const
    {
        return [this](std::string_view sPath) { return m_folder.path() / sPath; };
    }
    AssetRendering::Asset* addAsset(const Uuid& uuid, const std::string& sMesh, const std::string& sName = "")
    {
        auto pAsset = std::make_unique<AssetRendering::Asset>();
        pAsset->uuid = uuid;
        pAsset->strName = sName;
        resource::RenderableDesc desc{.sMesh = sMesh, .mapMaterials = {}};
        desc.mapMaterials["stone"].sColorSlot = "body";
        pAsset->pWireframeRenderable = m_assets.makeRenderable(desc, true, resolver());
        pAsset->pRenderable = m_assets.makeRenderable(desc, false, resolver());
        m_assets.addAsset(std::move(pAsset));
        return m_assets.findAssetOrNull(uuid);
    }
    AssetRendering::AssetInstance* place(const Uuid& uuid, uint32_t uId, float fX)
    {
        auto pInstance = std::make_unique<AssetRendering::AssetInstance>();
        pInstance->uuid = uuid;
        pInstance->uEntityId = uId;
        pInstance->transform.position.x = fX;
        pInstance->m_colorMap["body"] = uId;
        return m_assets.addInstance(std::move(pInstance));
    }
    /// X of the highlights of an asset, in their order.
    [[nodiscard]] std::vector<float> highlights(const AssetRendering::Asset& asset) const
    {
        std::vector<float> vecX;
        for (const rend::InstanceData& data : m_world.highlights(asset.uWireframeRenderable))
            vecX.push_back(data.arrRows[0].w);
        return vecX;
    }

    TempFolder m_folder;
    LogCapture m_log;
    rend::InstanceWorld m_world;
    AssetRendering m_assets{m_world};
    Uuid m_uuid{{1}};
};

TEST_F(AssetRenderingTest, modelsKeepAxesUnitsAndMaterials)
{
    const AssetRendering::Asset* pAsset = addAsset(m_uuid, "wedge.obj");
    const resource::Model& model = pAsset->pRenderable->model();
    EXPECT_EQ(m_assets.localBounds(m_uuid), (Aabb{{0, 0, 0}, {4, 8, 2}}));
    ASSERT_EQ(model.vecParts.size(), 2u);
    EXPECT_EQ(model.vecParts[0].uCount + model.vecParts[1].uCount, 12u);
    EXPECT_EQ(pAsset->pRenderable->colorSlotOf("stone"), 0);
    EXPECT_EQ(pAsset->pRenderable->colorSlotOf("cap"), -1);
    const terrain::TriangleShape shape = m_assets.triangleShape(m_uuid);
    EXPECT_EQ(shape.spanIndices.size(), 12u);
    for (const uint32_t u : shape.spanIndices)
        EXPECT_LT(u, shape.spanPositions.size());
    // Both forms share the model, and the texture's v runs downwards.
    EXPECT_EQ(&pAsset->pWireframeRenderable->model(), &model);
    for (size_t u = 0; u < model.vecPositions.size(); ++u)
        if (model.vecPositions[u] == glm::vec3(0, 8, 0) && model.vecParts[0].sMaterial == "stone")
        {
            EXPECT_EQ(model.vecCoords[u].y, 0.0f);
            break;
        }
    EXPECT_EQ(m_log.errors(), 0u) << m_log.dump();
}

TEST_F(AssetRenderingTest, brokenMeshBecomesABoxThatIsUsable)
{
    std::ofstream(m_folder.path() / "broken.glb") << "glTF nonsense";
    std::ofstream(m_folder.path() / "lines.obj") << "v 0 0 0\nv 1 0 0\nl 1 2\n";
    std::ofstream(m_folder.path() / "nan.obj") << "v nan 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";
    uint8_t uId = 10;
    for (const char* pFile : {"missing.obj", "broken.glb", "lines.obj", "nan.obj"})
    {
        m_log.clear();
        const Uuid uuid{{++uId}};
        addAsset(uuid, pFile);
        EXPECT_EQ(m_assets.localBounds(uuid), (Aabb{{-2, 0, -2}, {2, 4, 2}})) << pFile;
        EXPECT_NE(place(uuid, uId, 1.0f), nullptr);
        EXPECT_EQ(m_log.lines().size(), 1u) << m_log.dump();
        EXPECT_TRUE(m_log.has(std::string("Failed to load mesh \"") + pFile));
    }
}

TEST_F(AssetRenderingTest, highlightsMoveWithTheLastOne)
{
    const AssetRendering::Asset* pAsset = addAsset(m_uuid, "wedge.obj");
    std::array<AssetRendering::AssetInstance*, 4> arrPlaced{};
    for (uint32_t u = 1; u <= 3; ++u)
        arrPlaced[u] = place(m_uuid, u, static_cast<float>(u));
    for (uint32_t u = 1; u <= 3; ++u)
        m_assets.setHighlighted(*arrPlaced[u], true);
    m_assets.setHighlighted(*arrPlaced[2], true); // again
    EXPECT_EQ(highlights(*pAsset), (std::vector<float>{1, 2, 3}));

    m_assets.setHighlighted(*arrPlaced[2], false);
    EXPECT_EQ(highlights(*pAsset), (std::vector<float>{1, 3}));
    EXPECT_EQ(pAsset->m_vecWireframeAssetEntityIds, (std::vector<uint32_t>{1, 3}));
    EXPECT_EQ(arrPlaced[3]->uWireframeIndex, 1u);
    EXPECT_EQ(arrPlaced[2]->uWireframeIndex, 0xFFFFFFFFu);

    Transform moved = arrPlaced[3]->transform;
    moved.position.x = 9.0f;
    m_assets.setInstanceTransform(*arrPlaced[3], moved);
    EXPECT_EQ(highlights(*pAsset), (std::vector<float>{1, 9}));
    m_assets.removeInstance(1); // its highlight goes with it
    EXPECT_EQ(highlights(*pAsset), (std::vector<float>{9}));
    EXPECT_EQ(arrPlaced[3]->uWireframeIndex, 0u);
}

TEST_F(AssetRenderingTest, newAssetOfTheSameIdTakesOverTheInstances)
{
    addAsset(m_uuid, "wedge.obj", "Old");
    AssetRendering::AssetInstance* pInstance = place(m_uuid, 5, 2.0f);
    m_assets.setHighlighted(*pInstance, true);
    EXPECT_EQ(m_log.warnings() + m_log.errors(), 0u);
    const AssetRendering::Asset* pNew = addAsset(m_uuid, "missing.obj", "New");
    EXPECT_TRUE(m_log.has("Conflicting uuid {" + m_uuid.text() + "}: 'Old' and 'New'"));
    EXPECT_EQ(m_assets.assetCount(), 1u);
    EXPECT_EQ(pInstance->pAsset, pNew);
    EXPECT_EQ(m_world.instanceCount(pNew->uRenderable), 1u);
    EXPECT_EQ(highlights(*pNew), (std::vector<float>{2}));
    EXPECT_EQ(m_world.instance(pInstance->uInstanceSlot)->arrColours[0], 5u);
    EXPECT_EQ(place(Uuid{{9}}, 6, 0.0f), nullptr); // unknown
    EXPECT_EQ(place(m_uuid, 5, 0.0f), nullptr);    // the id is taken
}

TEST_F(AssetRenderingTest, renderablesHaveDefaultsForAllButTheMesh)
{
    const auto desc = resource::parseRenderable(R"({"mesh": "$GAME_DATA/a.obj", "materials": {
        "bark": {"diffuse": "d", "normal": "n", "asg": "g", "colorSlot": "wood"}, "bare": {}, "odd": 7,
        "leaf": {"colorSlot": "leaf", "diffuse": 5}, "twig": {"colorSlot": "wood"}}})",
                                                "x.rend");
    ASSERT_TRUE(desc);
    EXPECT_EQ(desc->sMesh, "$GAME_DATA/a.obj");
    EXPECT_EQ(desc->mapMaterials.at("bark"), (resource::RenderableMaterial{"d", "n", "g", "wood"}));
    EXPECT_EQ(desc->mapMaterials.at("odd"), resource::RenderableMaterial{});
    EXPECT_EQ(desc->mapMaterials.at("leaf"), (resource::RenderableMaterial{"", "", "", "leaf"}));
    const auto pRenderable = m_assets.makeRenderable(*desc, false, resolver());
    EXPECT_EQ(std::vector<std::string>(pRenderable->colorSlots().begin(), pRenderable->colorSlots().end()),
              (std::vector<std::string>{"leaf", "wood"}));
    EXPECT_EQ(pRenderable->colorSlotOf("twig"), 1);
    EXPECT_EQ(pRenderable->colorSlotOf("bare"), -1);

    for (const char* pText : {"", "{", "[]", "{}", R"({"mesh": ""})", R"({"mesh": 7})", "7"})
    {
        m_log.clear();
        EXPECT_FALSE(resource::parseRenderable(pText, "x.rend")) << pText;
        EXPECT_EQ(m_log.lines().size(), 1u) << pText;
    }
}

} // namespace
