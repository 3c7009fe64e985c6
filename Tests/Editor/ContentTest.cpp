#include "KestrelCommon/Platform/VirtualKeys.h"
#include "KestrelCommon/Ugc/UgcTile.h"
#include "Tests/Editor/EditorWorld.h"
#include "Tests/Support/RecordingPanel.h"
#include "TileEditorCommon/Editor/Placement.h"
#include "TileEditorCommon/Entities/Asset/AssetArgs.h"
#include "TileEditorCommon/Entities/Asset/AssetEntityType.h"
#include "TileEditorCommon/Entities/Entities.h"

#include <glm/geometric.hpp>
#include <gtest/gtest.h>

using namespace tilebuilder;

namespace
{

constexpr const char* s_pItem = "0123abcd-4567-49ef-8123-456789abcdef";
constexpr const char* s_pAsset = "11111111-2222-4333-8444-555555555555";

/// An editor, and a content item with one asset.
struct ContentTest : testing::Test
{
    ContentTest()
    {
        m_sItem = m_world.directories.userSubFolder("/Mods") + "/rocks";
        write("description.json", std::string(R"({"type":"Terrain Assets","name":"Rocks","localId":")") +
                                      s_pItem + R"(","fileId":77,"version":1})");
        write("preview.png", "png");
        write("Terrain/Database/assetsets.assetdb",
              R"({"assetSetList":[{"assetSet":"$CONTENT_DATA/Terrain/rocks.json","categories":["Rocks"]}]})");
        write("Terrain/rocks.json",
              std::string(R"({"assetListRenderable":[{"name":"mod_rock","uuid":")") + s_pAsset +
                  R"(","defaultColors":{"Moss":"102030"},"renderable":{"mesh":"$CONTENT_DATA/none.obj"}}]})");
    }

    void write(const std::string& sName, const std::string& sText) const
    {
        const std::filesystem::path path = m_sItem + "/" + sName;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << sText;
    }

    UgcManager::Item addItem()
    {
        const auto pItem = m_world.pUgc->loadItem(m_sItem);
        if (pItem)
            m_world.pUgc->addItem(pItem);
        m_world.pUgc->updateAdded();
        return pItem;
    }

    Entity placeAsset(const glm::vec3& position = {20.0f, 30.0f, 0.0f})
    {
        EntityCreateArgs args;
        args.eTypeId = EntityTypeId_Asset;
        args.transform.position = position;
        auto pPayload = std::make_shared<EntityCreateArgs::Asset>();
        pPayload->uuid = *Uuid::parse(s_pAsset);
        args.pPayload = std::move(pPayload);
        const Entity made = m_editor.entityStore().createEntity(std::move(args));
        m_world.waitForQuiet();
        return made;
    }

    [[nodiscard]] AssetEntityType& assets() { return m_editor.entityStore().typed<AssetEntityType>(); }

    EditorWorld m_world;
    TileEditor& m_editor = *m_world.pEditor;
    std::string m_sItem;
};

TEST_F(ContentTest, anItemsAssetsComeStayInTheTileAndAreNamedAsItsDependency)
{
    EXPECT_FALSE(placeAsset()) << "nobody knows it yet";
    const auto pItem = addItem();
    ASSERT_TRUE(pItem);
    ASSERT_TRUE(assets().knowsOrigin(*Uuid::parse(s_pItem))) << m_world.log.dump();
    ASSERT_TRUE(placeAsset());

    m_editor.saveAs("Quarry", "");
    const auto pTileItem = m_world.pUgc->findByPath(m_editor.documentDirectory());
    ASSERT_TRUE(pTileItem);
    ASSERT_EQ(pTileItem->getDependencies().size(), 1u);
    EXPECT_EQ(pTileItem->getDependencies()[0].localId.text(), s_pItem);
    EXPECT_EQ(pTileItem->getDependencies()[0].fileId, 77u);

    // A change that isn't a step yet survives another item's arrival, which reads the document anew.
    assets().setOriginTransform(m_editor.entityStore().all()[0].uId, {{40.0f, 41.0f, 2.0f}});
    m_editor.entityStore().clearSelection();
    assets().removeSets(*Uuid::parse(s_pItem));
    EXPECT_TRUE(assets().findAsset(*Uuid::parse(s_pAsset))->isHidden()) << "out of the library";
    EXPECT_EQ(m_editor.entityStore().count(), 1u) << "but what is placed stays";
    EXPECT_EQ(m_editor.entityStore()
                  .all()[0]
                  .pType->getOriginTransform(m_editor.entityStore().all()[0].uId)
                  .position.x,
              40.0f);
}

TEST_F(ContentTest, objectsThatNobodyKnowsAreOnlyLeftOutAfterAQuestion)
{
    const auto pItem = addItem();
    ASSERT_TRUE(pItem && placeAsset());
    m_editor.saveAs("Quarry", "");
    const std::string sPath = m_editor.documentDirectory() + "/" + m_editor.documentName();
    const auto file = m_world.directories.resolvePath(sPath);
    const auto fnBytes = [&]
    {
        std::ifstream stream(file, std::ios::binary);
        return std::string((std::istreambuf_iterator<char>(stream)), {});
    };
    const std::string sBefore = fnBytes();

    // Another day, without the item.
    m_world.pEditor.reset();
    m_world.pUgc->removeItem(pItem);
    EditorServices services;
    services.pCamera = &m_world.camera;
    services.pInput = &m_world.input;
    m_world.pEditor = std::make_unique<TileEditor>(services, true, 0);
    TileEditor& editor = *m_world.pEditor;
    editor.setInterface(&m_world.windows);
    ASSERT_TRUE(editor.openTile(sPath, true));
    EXPECT_EQ(editor.entityStore().count(), 0u);
    EXPECT_TRUE(m_world.log.has(std::string("Failed to create asset {") + s_pAsset + "}"));

    editor.save();
    EXPECT_NE(m_world.windows.sQuestion.find("1 object of this tile"), std::string::npos)
        << m_world.windows.sQuestion;
    EXPECT_EQ(fnBytes(), sBefore) << "No keeps the file as it is";
    ASSERT_TRUE(m_world.windows.fnOnYes);
    m_world.windows.fnOnYes();
    EXPECT_NE(fnBytes(), sBefore);
    m_world.windows.sQuestion.clear();
    editor.save();
    EXPECT_TRUE(m_world.windows.sQuestion.empty()) << "nothing is lost any more";
}

TEST_F(ContentTest, aBatchWarnsOfTheObjectsThatItLeavesOut)
{
    const auto pItem = addItem();
    ASSERT_TRUE(pItem && placeAsset());
    m_editor.saveAs("Quarry.tile", "$GAME_DATA");
    m_world.pEditor.reset();
    m_world.pUgc->removeItem(pItem);
    EditorServices services;
    services.pCamera = &m_world.camera;
    services.pInput = &m_world.input;
    m_world.pEditor = std::make_unique<TileEditor>(services, true, 0);
    std::ofstream(m_world.directories.resolvePath("$GAME_DATA/list.txt")) << "$GAME_DATA/Quarry.tile\n";
    EXPECT_EQ(m_world.pEditor->processTiles("$GAME_DATA/list.txt"), 1u);
    EXPECT_TRUE(m_world.log.has("1 objects of '$GAME_DATA/Quarry.tile' are not known here"))
        << m_world.log.dump();
}

TEST_F(ContentTest, aShiftClickTakesTheColourOfThePickedThing)
{
    addItem();
    const Entity painted = placeAsset();
    const Entity picked = placeAsset({32.0f, 32.0f, 0.0f}); // in the middle of the view
    ASSERT_TRUE(painted && picked);
    m_editor.entityStore().setColors(picked, {{"Moss", 0xFF03FE01u}, {"None", 1u}});
    m_world.waitForQuiet();
    const size_t uStates = m_editor.tile()->states().size();

    m_editor.entityStore().select(painted, false);
    RecordingPanel panel;
    panel.begin(1);
    painted.pType->displayProperties(painted.uId, panel);
    panel.end();
    PlatformEvent move;
    move.eType = PlatformEventType::MouseMove;
    move.iX = 640;
    move.iY = 360;
    m_world.input.queue(move);
    PlatformEvent shift;
    shift.eType = PlatformEventType::Key;
    shift.uVirtualKey = KeyShift;
    shift.iScanCode = 42;
    shift.bDown = true;
    m_world.input.queue(shift);
    m_world.input.update();
    m_editor.leftMouseDown();

    EXPECT_EQ(m_editor.entityStore().colors(painted).at("Moss"), 0xFF03FE01u);
    EXPECT_EQ(m_editor.entityStore().active(), painted) << "the selection stays";
    m_world.waitForQuiet();
    EXPECT_EQ(m_editor.tile()->states().size(), uStates + 1);
}

TEST(PlacementTest, thingsStandUprightTurnedAlignedAndSnapped)
{
    const glm::vec3 hit(1.3f, 2.4f, 0.9f);
    const glm::vec3 slope = glm::normalize(glm::vec3(0.0f, 1.0f, 1.0f));
    const auto fnRandom = [] { return 8192u; }; // a quarter of its range
    const auto upOf = [](const Transform& transform)
    { return transform.rotation * glm::vec3(0.0f, 1.0f, 0.0f); };

    const Transform plain = placeUpright(hit, slope, {false, false, false}, fnRandom);
    EXPECT_EQ(plain.position, hit);
    EXPECT_EQ(plain.scale, glm::vec3(0.25f));
    EXPECT_NEAR(upOf(plain).z, 1.0f, 1e-5f) << "the model's +Y is up, whatever the slope";

    const Transform turned = placeUpright(hit, slope, {true, false, true}, fnRandom);
    EXPECT_EQ(turned.position, glm::vec3(1.25f, 2.5f, 1.0f));
    EXPECT_NEAR(upOf(turned).z, 1.0f, 1e-5f);
    const glm::vec3 side = turned.rotation * glm::vec3(1.0f, 0.0f, 0.0f);
    EXPECT_NEAR(side.y, 1.0f, 1e-3f) << "a quarter turn about the world's Z";

    const Transform aligned = placeUpright(hit, slope, {true, true, false}, fnRandom);
    EXPECT_NEAR(glm::dot(upOf(aligned), slope), 1.0f, 1e-4f);
    EXPECT_NEAR(aligned.scale.x, 0.2f, 1e-4f);
}

} // namespace
