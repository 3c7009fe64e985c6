// Assets as entities: what the database says, how instances move, look and are stored.

#include "KestrelCommon/Assets/AssetSets.h"
#include "KestrelCommon/Io/ByteStream.h"
#include "Tests/AssetEntities/AssetWorld.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Contracts/PropertyPanelI.h"
#include "TileEditorCommon/Entities/Asset/AssetLibrarySource.h"
#include "TileEditorCommon/Entities/Asset/AssetRecords.h"

#include <gmock/gmock.h>

namespace
{

using namespace tilebuilder;
using testing::ElementsAre;

struct AssetEntityTest : testing::Test
{
    AssetWorld m_world;
};

/// Upright, at a place, with the unit scale.
Transform upright(const glm::vec3& position, float fScale = 0.25f)
{
    return {position, glm::quat(0.70710677f, 0.70710677f, 0.0f, 0.0f), glm::vec3(fScale)};
}

TEST_F(AssetEntityTest, databaseKnowsSetsCategoriesAndHiddenOnes)
{
    m_world.start();
    const AssetEntityType& type = *m_world.m_pType;
    EXPECT_THAT(type.getAssetUuids(), ElementsAre(m_world.uuid(1), m_world.uuid(2), m_world.uuid(3)));
    EXPECT_EQ(type.categoryCounts(),
              (std::map<std::string, size_t>{{"Lost", 1}, {"Nature", 2}, {"Rocks", 1}}));
    EXPECT_THAT(type.categorySets().at("Nature"),
                ElementsAre("$GAME_DATA/rocks.json", "$GAME_DATA/posts.json"));
    const EditorAsset* pRock = type.findAsset(m_world.uuid(1));
    ASSERT_TRUE(pRock);
    EXPECT_EQ(pRock->mapDefaultColors, (tile::ColorMap{{"moss", 0x70605040u}, {"stone", 0xFF302010u}}));
    EXPECT_EQ(pRock->strRenderablePath, "$GAME_DATA/rock.rend");
    EXPECT_EQ(pRock->strSet, "$GAME_DATA/rocks.json");
    EXPECT_EQ(type.getIconDirectory(m_world.uuid(2)), "$GAME_DATA/Icons");
    EXPECT_FALSE(type.findAsset(m_world.uuid(2))->isHidden());
    EXPECT_TRUE(type.findAsset(m_world.uuid(3))->isHidden());
    EXPECT_TRUE(m_world.place(3)); // hidden ones stay usable
    EXPECT_TRUE(m_world.m_log.lines().empty()) << m_world.m_log.dump();
}

TEST_F(AssetEntityTest, badEntriesAreReportedAndLeftOut)
{
    m_world.write("Data/rocks.json", R"({"assetListRenderable": [7, {"uuid": "x"},
        {"uuid": "no uuid", "renderable": {"mesh": "a"}},
        {"uuid": "00000000-0000-0000-0000-000000000000", "renderable": {"mesh": "a"}},
        {"uuid": ")" + AssetWorld::text(7) +
                                         R"(", "renderable": "$GAME_DATA/missing.rend"},
        {"uuid": ")" + AssetWorld::text(8) +
                                         R"(", "renderable": {"materials": {}}},
        {"uuid": ")" + AssetWorld::text(2) +
                                         R"(", "name": "First", "renderable": {"mesh": "a"},
         "defaultColors": {"a": "12345", "b": "#A1B2C3"}}]})");
    m_world.start();
    EXPECT_TRUE(m_world.m_log.has("Terrain Asset Parse uuid : no uuid"));
    EXPECT_TRUE(m_world.m_log.has("Terrain Asset Parse uuid : 00000000-0000-0000-0000-000000000000"));
    EXPECT_TRUE(m_world.m_log.has("No renderable found for terrain asset {" + AssetWorld::text(7) + "}"));
    EXPECT_TRUE(m_world.m_log.has("No renderable found for terrain asset {" + AssetWorld::text(8) + "}"));
    // The later of two with the same uuid counts, and stands in the list once.
    EXPECT_TRUE(m_world.m_log.has("Conflicting uuid {" + AssetWorld::text(2) + "}: 'First' and 'Post'"));
    EXPECT_THAT(m_world.m_pType->getAssetUuids(), ElementsAre(m_world.uuid(2), m_world.uuid(3)));
    EXPECT_EQ(m_world.m_pType->findAsset(m_world.uuid(2))->strName, "Post");
    EXPECT_EQ(m_world.m_pType->findByName("First"), m_world.uuid(2));
    EXPECT_EQ(terrain::parseColor("#A1B2C3"), 0xFFC3B2A1u);
    EXPECT_EQ(terrain::parseColor("a1b2c3d4"), 0xD4C3B2A1u);
    for (const char* pText : {"", "#", "12345", "1234567", "12345G", "##12345", "123456789"})
        EXPECT_FALSE(terrain::parseColor(pText)) << pText;
}

TEST_F(AssetEntityTest, listsOfContentItemsAreAddedOnce)
{
    m_world.start();
    m_world.write("Data/mod.assetdb",
                  R"({"assetSetList": [{"assetSet": "$GAME_DATA/mod.json", "category": "Mod"},
        {"assetSet": "$GAME_DATA/rocks.json", "category": "Mod"}]})");
    m_world.write("Data/mod.json",
                  R"({"assetListRenderable": [
        {"uuid": ")" + AssetWorld::text(9) +
                      R"(", "name": "Mine", "renderable": {"mesh": "$GAME_DATA/post.obj"}}]})");
    const uint64_t uRevision = m_world.m_pType->databaseRevision();
    EXPECT_TRUE(m_world.m_pType->addSets("$GAME_DATA/mod.assetdb", m_world.uuid(50)));
    EXPECT_TRUE(m_world.m_pType->addSets("$GAME_DATA/mod.assetdb", m_world.uuid(50)));
    EXPECT_NE(m_world.m_pType->databaseRevision(), uRevision);
    EXPECT_EQ(m_world.m_pType->findAsset(m_world.uuid(9))->uOriginUuid, m_world.uuid(50));
    EXPECT_EQ(m_world.m_pType->categoryCounts().at("Mod"), 1u);
    EXPECT_EQ(m_world.m_pType->getAssetUuids().size(), 4u);
    EXPECT_FALSE(m_world.m_log.has("Conflicting"));
    EXPECT_FALSE(m_world.m_pType->addSets("$GAME_DATA/nothing.assetdb", {}));
}

TEST_F(AssetEntityTest, placedOnesFollowAnAssetThatTakesTheirsPlace)
{
    m_world.start();
    const Entity post = m_world.place(2, upright({10, 20, 3}));
    m_world.write("Data/mod.assetdb", R"({"assetSetList": [{"assetSet": "$GAME_DATA/mod.json"}]})");
    m_world.write("Data/mod.json",
                  R"({"assetListRenderable": [
        {"uuid": ")" + AssetWorld::text(2) +
                      R"(", "name": "Tall", "renderable": {"mesh": "$GAME_DATA/tall.obj"}}]})");
    m_world.write("Data/tall.obj",
                  "v 0 0 0\nv 4 0 0\nv 0 80 0\nv 0 0 2\nf 1 3 2\nf 1 2 4\nf 1 4 3\nf 2 3 4\n");
    const uint64_t uRevision = m_world.m_entities.revision();
    ASSERT_TRUE(m_world.m_pType->addSets("$GAME_DATA/mod.assetdb", {}));
    EXPECT_EQ(m_world.m_pType->getDisplayName(post.uId), "Tall");
    EXPECT_NEAR(m_world.m_pType->getCenterTransform(post.uId).position.z, 13.0f, 1e-4f);
    EXPECT_NE(m_world.m_entities.revision(), uRevision); // its place for picking moved with it
}

TEST_F(AssetEntityTest, pivotsAreInversesAndMovesReachThePicture)
{
    m_world.start();
    const Entity post = m_world.place(2, upright({10, 20, 3}, 0.5f));
    AssetEntityType& type = *m_world.m_pType;
    // The box is 4 x 8 x 2 units, Y up: its middle stands 2 m above the foot.
    const Transform centre = type.getCenterTransform(post.uId);
    EXPECT_NEAR(centre.position.x, 11.0f, 1e-5f);
    EXPECT_NEAR(centre.position.y, 19.5f, 1e-5f);
    EXPECT_NEAR(centre.position.z, 5.0f, 1e-5f);
    m_world.m_uChanged = 0;
    type.setCenterTransform(post.uId, centre);
    const Transform origin = type.getOriginTransform(post.uId);
    EXPECT_NEAR(glm::length(origin.position - glm::vec3(10, 20, 3)), 0.0f, 1e-5f);
    m_world.m_uChanged = 0;
    type.setOriginTransform(post.uId, origin);
    EXPECT_EQ(m_world.m_uChanged, 0u); // equal: nothing happened
    type.setOriginTransform(post.uId, upright({40, 20, 3}));
    EXPECT_EQ(m_world.m_uChanged & ChangeEntityValues, ChangeEntityValues);
    EXPECT_EQ(m_world.m_instances.instance(type.instance(post.uId)->uInstanceSlot)->arrRows[0].w, 40.0f);
    EXPECT_EQ(type.getLocalTransform(post.uId).position, glm::vec3(10, 20, 3));
    EXPECT_EQ(type.getScaleFlags(post.uId), ScaleCan | ScaleQuarter);

    m_world.m_entities.select(post, false);
    m_world.m_entities.hideSelected();
    EXPECT_EQ(m_world.m_instances.instanceCount(type.assetOf(post.uId)->uRenderable), 0u);
    type.setOriginTransform(post.uId, upright({41, 20, 3})); // moves unseen
    m_world.m_entities.showHidden();
    EXPECT_EQ(m_world.m_instances.instance(type.instance(post.uId)->uInstanceSlot)->arrRows[0].w, 41.0f);
}

TEST_F(AssetEntityTest, raysMeetTrianglesOfTurnedAndScaledModels)
{
    m_world.start();
    const Entity post = m_world.place(2, upright({10, 20, 3}, 0.5f));
    // From above onto the foot's corner region: the slanted side of the wedge.
    const auto hit = m_world.m_pType->castRay(post.uId, {10.5f, 19.8f, 50.0f}, {10.5f, 19.8f, -50.0f});
    ASSERT_TRUE(hit);
    EXPECT_NEAR(hit->position.z, 3.0f + 4.0f * (1.0f - 0.5f / 2.0f - 0.2f), 1e-3f);
    EXPECT_GT(hit->normal.z, 0.0f);
    EXPECT_NEAR(glm::length(hit->normal), 1.0f, 1e-5f);
    EXPECT_NEAR(hit->fraction, (50.0f - hit->position.z) / 100.0f, 1e-5f);
    const auto below = m_world.m_pType->castRay(post.uId, {10.5f, 19.8f, -50.0f}, {10.5f, 19.8f, 50.0f});
    ASSERT_TRUE(below);
    EXPECT_NEAR(below->position.z, 3.0f, 1e-4f);
    EXPECT_NEAR(below->normal.z, -1.0f, 1e-5f); // towards where the ray came from
    EXPECT_FALSE(m_world.m_pType->castRay(post.uId, {13, 19.8f, 50}, {13, 19.8f, -50}));
    EXPECT_FALSE(m_world.m_pType->castRay(post.uId, {10.5f, 19.8f, 50}, {10.5f, 19.8f, 10})); // too short
}

TEST_F(AssetEntityTest, unknownOnesAreRefusedAndUnknownIdsYieldNothing)
{
    m_world.start();
    EXPECT_FALSE(m_world.place(77));
    EXPECT_TRUE(m_world.m_log.has("Failed to create asset {" + AssetWorld::text(77) + "}"));
    const AssetEntityType& type = *m_world.m_pType;
    EXPECT_FALSE(type.findAsset(m_world.uuid(77)));
    EXPECT_TRUE(m_world.m_log.has("Failed to find asset uuid: {" + AssetWorld::text(77) + "}"));
    tile::ColorMap mapColors{{"kept", 1}};
    EXPECT_FALSE(type.defaultColors(m_world.uuid(77), mapColors));
    EXPECT_TRUE(
        m_world.m_log.has("Failed to find default color map for asset {" + AssetWorld::text(77) + "}"));
    type.normalizeColors(m_world.uuid(77), mapColors);
    EXPECT_EQ(mapColors.size(), 1u);
    EXPECT_EQ(type.getIconDirectory(m_world.uuid(77)), "");
    EXPECT_TRUE(m_world.m_log.has("Failed to find icon directory for asset {" + AssetWorld::text(77) + "}"));
    EXPECT_EQ(type.localBox(m_world.uuid(77)), Aabb());
    EXPECT_TRUE(m_world.m_log.has("Failed to find bounding box for asset {" + AssetWorld::text(77) + "}"));
    EXPECT_TRUE(type.findByName("Nobody").isNil());
    EXPECT_TRUE(m_world.m_log.has("Asset named 'Nobody' not found!"));
    EXPECT_EQ(type.getDisplayName(5), "<Null Asset>");
    EXPECT_EQ(type.getOriginTransform(5), Transform());
}

TEST_F(AssetEntityTest, recordsKeepAllAndMeetThePresentDatabase)
{
    m_world.start();
    const AssetEntityType& type = *m_world.m_pType;
    const AssetRecords records(type, m_world.m_entities);
    std::vector<uint32_t> vecIds;
    // One that lost a slot and misses a new one, one that is as it should be, one without colours.
    vecIds.push_back(m_world.place(1, upright({70, 5, 1}), {{"stone", 5}, {"old", 6}}, {"b", "a"}).uId);
    vecIds.push_back(m_world.place(1, upright({66, 5, 1}), {{"stone", 7}, {"moss", 8}}).uId);
    vecIds.push_back(m_world.place(2, upright({68, 5, 1})).uId);
    const std::vector<uint32_t> vecPlaced = vecIds;

    ByteStream stream;
    stream.write(uint32_t{0xABCD}); // sections may stand behind other bytes
    records.write(stream, vecIds, {64, 0, 0});
    const std::span<const std::byte> spanRecords = stream.bytes().subspan(4);
    std::vector<uint32_t> vecEnds;
    ASSERT_TRUE(records.split(spanRecords, 3, tile::VersionCurrent, vecEnds));
    EXPECT_EQ(vecEnds.back(), spanRecords.size());
    EXPECT_THAT(vecIds, testing::UnorderedElementsAreArray(vecPlaced));
    // The same whatever the order, and the ids follow their records.
    std::vector<uint32_t> vecTurned{vecPlaced.rbegin(), vecPlaced.rend()};
    ByteStream again;
    records.write(again, vecTurned, {64, 0, 0});
    EXPECT_TRUE(std::ranges::equal(spanRecords, again.bytes()));
    EXPECT_EQ(vecTurned, vecIds);

    std::vector<EntityCreateArgs> vecArgs;
    ASSERT_TRUE(records.read(spanRecords, 3, {64, 0, 0}, tile::VersionCurrent, vecArgs));
    ASSERT_EQ(vecArgs.size(), 3u);
    for (size_t u = 0; u < 3; ++u)
    {
        const EditorAssetInstance& instance = *type.instance(vecIds[u]);
        EXPECT_EQ(vecArgs[u].transform, instance.transform);
        const auto* pPayload = vecArgs[u].payload<EntityCreateArgs::Asset>();
        EXPECT_EQ(pPayload->uuid, instance.uuid);
        EXPECT_EQ(pPayload->setTags, instance.setTags);
        if (vecIds[u] == vecPlaced[0])
        {
            EXPECT_EQ(pPayload->mapColors, (tile::ColorMap{{"moss", 0x70605040u}, {"stone", 5}}));
        }
        else
        {
            EXPECT_EQ(pPayload->mapColors, instance.m_colorMap);
        }
    }
    EXPECT_FALSE(records.split(spanRecords.first(spanRecords.size() - 1), 3, tile::VersionCurrent, vecEnds));
    EXPECT_FALSE(records.split(stream.bytes(), 3, tile::VersionCurrent, vecEnds));
    EXPECT_EQ(vecEnds.back(), spanRecords.size()); // as it was
}

TEST_F(AssetEntityTest, levelFollowsTheScaledDiagonalAndNotTheTurn)
{
    m_world.start();
    const AssetRecords records(*m_world.m_pType, m_world.m_entities);
    const float fDiagonal = std::sqrt(16.0f + 64.0f + 4.0f);
    for (const auto& [fSize, uLevel] : std::vector<std::pair<float, uint32_t>>{
             {7.9f, 0}, {8.01f, 1}, {23.9f, 1}, {24.1f, 2}, {73.0f, 3}, {1e5f, 3}})
    {
        EXPECT_EQ(records.level(m_world.place(2, upright({0, 0, 0}, fSize / fDiagonal)).uId), uLevel)
            << fSize;
        EXPECT_EQ(records.level(m_world.place(2, {{}, {1, 0, 0, 0}, glm::vec3(fSize / fDiagonal)}).uId),
                  uLevel);
    }
}

/// Keeps the swatches of a filling.
class SwatchPanel : public PropertyPanelI
{
public:
    struct Swatch
    {
        std::string sLabel;
        ColorRgba color;
        ColorEdit onEdit;
    };
    std::vector<Swatch> m_vecSwatches;

    void begin(uint64_t) override {}
    void end() override {}
    void heading(std::string_view) override {}
    void beginGroup(std::string_view, std::string_view, bool, HoverAction) override {}
    void endGroup() override {}
    void beginLine() override {}
    void endLine() override {}
    void label(std::string_view) override {}
    void text(std::string_view, std::string_view, TextEdit) override {}
    void check(std::string_view, bool, BoolEdit) override {}
    void intNumber(std::string_view, int32_t, const IntRange&, IntEdit) override {}
    void floatNumber(std::string_view, float, const FloatRange&, FloatEdit) override {}
    void triple(std::string_view, const std::array<float, 3>&, const FloatRange&, TripleEdit) override {}
    void choice(std::string_view, const std::vector<std::string>&, size_t, ChoiceEdit) override {}
    void swatch(std::string_view sLabel, const ColorRgba& color, bool, ColorEdit onEdit) override
    {
        m_vecSwatches.push_back({std::string(sLabel), color, std::move(onEdit)});
    }
    void button(std::string_view, PanelAction) override {}
    void pictureButton(std::string_view, std::string_view, PanelAction) override {}
    void dataView(std::string_view, DynamicData::Value&, const DynamicData::Value*, const DynamicTemplate*,
                  DataEdit) override
    {
    }
};

TEST_F(AssetEntityTest, coloursAreEditedPickedAndDrawn)
{
    m_world.start();
    AssetEntityType& type = *m_world.m_pType;
    const Entity rock = m_world.place(1, {}, {{"moss", 0x01020304}, {"stone", 0xFF0000FF}});
    const Entity other = m_world.place(1, {}, {{"moss", 0x0A0B0C0D}, {"stone", 0x55}});
    const Entity post = m_world.place(2);
    SwatchPanel panel;
    m_world.m_entities.select(post, false);
    type.displayProperties(post.uId, panel);
    EXPECT_TRUE(panel.m_vecSwatches.empty());
    EXPECT_EQ(AssetEntityType::s_iColorEditIndex, -1);

    m_world.m_entities.select(rock, false);
    type.displayProperties(rock.uId, panel);
    ASSERT_EQ(panel.m_vecSwatches.size(), 2u);
    EXPECT_EQ(panel.m_vecSwatches[0].sLabel, "moss");
    EXPECT_EQ(AssetEntityType::s_iColorEditIndex, 0); // the first is under edit at once
    EXPECT_NEAR(m_world.m_tools.entityColor[0], 4.0f / 255.0f, 1e-6f);
    m_world.m_uChanged = 0;
    panel.m_vecSwatches[1].onEdit({1.0f, 0.5f, 0.0f, 1.0f}, EditPhase::Changing);
    EXPECT_EQ(AssetEntityType::s_iColorEditIndex, 1);
    EXPECT_EQ(m_world.m_uChanged, ChangeEntityValues);
    EXPECT_EQ(type.instance(rock.uId)->m_colorMap.at("stone"), 0xFF007FFFu);
    EXPECT_EQ(m_world.m_instances.instance(type.instance(rock.uId)->uInstanceSlot)->arrColours[0],
              0xFF007FFFu);

    EXPECT_TRUE(type.pickColor(rock.uId, other.uId));
    EXPECT_EQ(type.instance(rock.uId)->m_colorMap.at("stone"), 0x55u);
    EXPECT_EQ(type.instance(rock.uId)->m_colorMap.at("moss"), 0x01020304u);
    EXPECT_FALSE(type.pickColor(rock.uId, post.uId)); // no such slot
    m_world.m_tools.onColorChanged({0, 0, 1, 1});
    EXPECT_EQ(type.instance(rock.uId)->m_colorMap.at("stone"), 0xFFFF0000u);

    // A swatch that outlives its asset changes nothing; deselecting lets the colour tool go.
    m_world.m_entities.clearSelection();
    EXPECT_EQ(AssetEntityType::s_iColorEditIndex, -1);
    EXPECT_EQ(m_world.m_tools.pColorTarget, nullptr);
    m_world.m_entities.removeEntity(rock, false);
    panel.m_vecSwatches[1].onEdit({0, 0, 0, 0}, EditPhase::Finished);
    EXPECT_FALSE(type.exists(rock.uId));
}

TEST_F(AssetEntityTest, libraryListsWhatIsShownAndAsksForPicturesOnce)
{
    m_world.m_directories.addKey("$CACHE_DATA", (m_world.m_folder.path() / "Cache").string());
    m_world.write("Data/rock.mesh", "");
    m_world.start();
    AssetLibrarySource source(*m_world.m_pType);
    std::vector<std::vector<std::string>> vecAsked;
    source.setIconMaker([&](const Uuid&, const std::vector<std::string>& vecPaths)
                        { vecAsked.push_back(vecPaths); });
    std::vector<LibraryItem> vecItems;
    source.listItems(vecItems);
    ASSERT_EQ(vecItems.size(), 2u); // no ghost
    EXPECT_EQ(vecItems[0].sName, "Rock");
    EXPECT_EQ(vecItems[0].sContent, "$GAME_DATA");
    EXPECT_THAT(vecItems[0].vecCategories, ElementsAre("Nature", "Rocks"));
    EXPECT_EQ(source.placement(vecItems[0]).uuid, m_world.uuid(1));
    EXPECT_EQ(source.menu(vecItems[1])[0].sPath, "$GAME_DATA/posts.json");
    EXPECT_EQ(source.tip(vecItems[0])[3].sValue, "Nature, Rocks");

    const std::string sIcon = "/" + AssetWorld::text(1) + ".png";
    EXPECT_EQ(source.iconPath(vecItems[0]), "");
    EXPECT_EQ(source.iconPath(vecItems[0]), "");
    ASSERT_EQ(vecAsked.size(), 1u);
    EXPECT_THAT(vecAsked[0], ElementsAre("$GAME_DATA/Icons" + sIcon, "$CACHE_DATA/Icons" + sIcon));
    const uint64_t uRevision = source.iconRevision();
    source.onIconMade(m_world.uuid(1), "$CACHE_DATA/Icons" + sIcon);
    EXPECT_NE(source.iconRevision(), uRevision);
    EXPECT_EQ(source.iconPath(vecItems[0]), "$CACHE_DATA/Icons" + sIcon);

    // In another run: one of the cache counts while it isn't older than what it shows.
    m_world.write("Cache/Icons" + sIcon, "picture");
    EXPECT_EQ(AssetLibrarySource(*m_world.m_pType).iconPath(vecItems[0]), "$CACHE_DATA/Icons" + sIcon);
    const auto later = std::filesystem::file_time_type::clock::now() + std::chrono::hours(1);
    std::filesystem::last_write_time(m_world.m_folder.path() / "Data/rock.rend", later);
    EXPECT_EQ(AssetLibrarySource(*m_world.m_pType).iconPath(vecItems[0]), "");
    m_world.write("Data/Icons" + sIcon, "the list's own");
    EXPECT_EQ(AssetLibrarySource(*m_world.m_pType).iconPath(vecItems[0]), "$GAME_DATA/Icons" + sIcon);
    LibraryItem unknown;
    unknown.uuid = m_world.uuid(99);
    EXPECT_EQ(source.iconPath(unknown), "");
    EXPECT_EQ(source.placement(unknown).eType, EntityTypeId_COUNT);
}

TEST_F(AssetEntityTest, clonesAndHighlightsFollowTheirEntities)
{
    m_world.start();
    AssetEntityType& type = *m_world.m_pType;
    const Entity rock = m_world.place(1, upright({1, 2, 3}), {{"moss", 1}, {"stone", 2}}, {"tag"});
    Entity copy;
    ASSERT_TRUE(type.clone(rock.uId, m_world.m_entities, copy));
    EXPECT_EQ(type.instance(copy.uId)->m_colorMap, type.instance(rock.uId)->m_colorMap);
    EXPECT_EQ(type.instance(copy.uId)->setTags, (tile::TagSet{"tag"}));
    m_world.m_entities.select(rock, false);
    m_world.m_entities.select(rock, true); // again
    m_world.m_entities.select(copy, true);
    const EditorAsset& asset = *type.assetOf(rock.uId);
    EXPECT_EQ(asset.m_vecWireframeAssetEntityIds.size(), m_world.m_instances.highlightCount());
    m_world.m_entities.removeSelected();
    EXPECT_EQ(m_world.m_instances.highlightCount(), 0u);
    EXPECT_EQ(m_world.m_instances.instanceCount(asset.uRenderable), 0u);
}

} // namespace
