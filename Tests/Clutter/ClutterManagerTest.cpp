// Plants of cells in culling groups.

#include "Tests/Support/LogCapture.h"
#include "TileEditorCommon/Clutter/EditorTerrainClutter.h"
#include "TileEditorCommon/Clutter/Terrain3ClutterManager.h"
#include "TileEditorCommon/Ground/Brush.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

#include <gtest/gtest.h>

namespace
{

using namespace tilebuilder;

TEST(ClutterPositionsTest, aCellHasItsLatticeInFourListsOfFixedShares)
{
    const ClutterPositions arrLists = makeClutterPositions(64, 4);
    size_t uTotal = 0;
    for (const auto& vecList : arrLists)
        uTotal += vecList.size();
    EXPECT_NEAR(static_cast<double>(uTotal), 12200.0, 100.0);
    EXPECT_EQ(arrLists[1].size(), uTotal / 2);
    EXPECT_EQ(arrLists[3].size(), (uTotal + 7) / 8);
    EXPECT_NEAR(static_cast<double>(arrLists[0].size()), static_cast<double>(uTotal) / 4, 1.0);
    EXPECT_NEAR(static_cast<double>(arrLists[2].size()), static_cast<double>(uTotal) / 8, 1.0);
    for (const auto& vecList : arrLists)
        for (const glm::vec2& place : vecList)
        {
            ASSERT_GT(std::min(place.x, place.y), 0.0f);
            ASSERT_LT(std::max(place.x, place.y), 64.0f);
        }
    // Evenly spread: each quarter of the cell holds about as many.
    std::array<size_t, 4> arrQuarters{};
    for (const auto& vecList : arrLists)
        for (const glm::vec2& place : vecList)
            ++arrQuarters[(place.x < 32 ? 0u : 1u) + (place.y < 32 ? 0u : 2u)];
    for (const size_t uQuarter : arrQuarters)
        EXPECT_NEAR(static_cast<double>(uQuarter) / static_cast<double>(uTotal), 0.25, 0.05);

    EXPECT_TRUE(makeClutterPositions(64, 0)[1].empty());
    EXPECT_TRUE(makeClutterPositions(64, -3)[1].empty());
    EXPECT_EQ(makeClutterPositions(64, 9)[1].size(), arrLists[1].size());
    EXPECT_LT(makeClutterPositions(64, 1)[1].size(), makeClutterPositions(64, 2)[1].size());
}

/// Three types; the function tells what grows where.
struct ClutterManagerTest : testing::Test
{
    ClutterManagerTest()
    {
        database.loadText(R"({"clutterList":[
            {"uuid":"00000000-0000-4000-8000-000000000001","height":0.5,"scaleVariance":0.2},
            {"uuid":"00000000-0000-4000-8000-000000000002","height":2,"impostor_texture":"i"}]})",
                          "two");
        types = rend::ClutterTypes(database, [](std::string_view) { return std::filesystem::path(); });
        uErrors = log.errors();
    }
    [[nodiscard]] uint32_t live() const
    {
        uint32_t uCount = 0;
        for (const auto& pGroup : groups.all())
            uCount += pGroup->clutter().uCount;
        return uCount;
    }

    LogCapture log;
    uint32_t uErrors = 0; ///< of the meshes that don't exist
    tile::ClutterDatabase database;
    rend::ClutterTypes types;
    rend::CullingGroups groups;
    int iType = 0;
    Terrain3ClutterManager manager{
        groups, types,
        [this](int, int, const glm::vec2& place, float& height, uint32_t& color, glm::vec3& normal) -> uint8_t
        {
            height = place.x;
            color = 0x44332211;
            normal = {0, 0.6f, 0.8f};
            return place.y < 32.0f ? static_cast<uint8_t>(iType) : 255;
        }};
};

TEST_F(ClutterManagerTest, recordsTellTypePlaceGroundAndGroup)
{
    const ClutterCellPos cell{2, 1};
    manager.regenerate({&cell, 1});
    size_t uRecords = 0;
    for (int iLevel = 0; iLevel < 4; ++iLevel)
    {
        const auto& vecPlaces = manager.positions()[static_cast<size_t>(iLevel)];
        size_t uNext = 0;
        for (const ClutterRecord& record : manager.records({2, 1, iLevel}))
        {
            while (vecPlaces[uNext].y >= 32.0f)
                ++uNext;
            const glm::vec2 place = vecPlaces[uNext++];
            ASSERT_EQ(record.position, glm::vec3(128.0f + place.x, 64.0f + place.y, place.x));
            ASSERT_EQ(record.color, 0x11223344u);
            ASSERT_EQ(record.mesh, &types.mesh(0));
            ASSERT_FLOAT_EQ(record.size, 0.6f);
            ASSERT_EQ(record.groupKey.x, record.position.x < 160.0f ? 4 : 5);
            ASSERT_EQ(record.groupKey.y, 2);
            ASSERT_NE(record.slot, ClutterRecord::s_uNoSlot);
            ++uRecords;
        }
    }
    EXPECT_GT(uRecords, 5500u);
    EXPECT_EQ(live(), uRecords);
    EXPECT_EQ(groups.all().size(), 2u);

    const auto uSlots = groups.all()[0]->clutter().vecAabb.size();
    manager.regenerate({&cell, 1});
    EXPECT_EQ(live(), uRecords) << "the old ones are gone";
    EXPECT_EQ(groups.all()[0]->clutter().vecAabb.size(), uSlots) << "and their slots are used again";
    iType = 255;
    manager.regenerate({&cell, 1});
    EXPECT_EQ(live(), 0u);
    EXPECT_EQ(log.errors(), uErrors) << log.dump();
}

TEST_F(ClutterManagerTest, unknownTypesAreToldAndLeftOut)
{
    iType = 2;
    const ClutterCellPos cell{0, 0};
    manager.regenerate({&cell, 1});
    EXPECT_TRUE(log.has("Clutter index out of bounds: 2 (max 1)"));
    EXPECT_EQ(live(), 0u);
}

TEST_F(ClutterManagerTest, withoutGroupsRecordsStayWithoutSlots)
{
    for (int i = 0; i < static_cast<int>(rend::CullingGroups::s_uMaxGroups); ++i)
        ASSERT_NE(groups.findOrCreate({static_cast<int16_t>(i), -7}), nullptr);
    const ClutterCellPos cell{0, 0};
    manager.regenerate({&cell, 1});
    EXPECT_EQ(log.count("Oh no! we are out of culling groups!!!"), 1u);
    EXPECT_FALSE(manager.records({0, 0, 1}).empty());
    EXPECT_EQ(manager.records({0, 0, 1}).front().slot, ClutterRecord::s_uNoSlot);
    manager.clear();
    EXPECT_EQ(log.errors(), uErrors + 1) << log.dump();
}

/// The whole grid over a ground of 10 x 10 cells.
struct ClutterRefreshTest : ClutterManagerTest, EditorSinkI
{
    ClutterRefreshTest()
    {
        surface.init(640, 640);
        clutter.init(640, 640);
        clutter.attach(groups, types);
        clutter.finishUpdate();
    }
    void markChanged(uint32_t) override {}
    void markInterfaceDirty(uint32_t) override {}
    void sow(int iCellX, int iCellY)
    {
        clutter.setSamples(iCellX, iCellY, std::vector<uint8_t>(tile::SamplesPerPatch, 0));
    }
    [[nodiscard]] std::span<const ClutterRecord> records(int iCellX, int iCellY) const
    {
        return clutter.manager()->records({iCellX, iCellY, 1});
    }

    EditorTerrainSurface surface{*this, nullptr};
    EditorTerrainClutter clutter{*this, surface, database};
};

TEST_F(ClutterRefreshTest, nearestCellsComeFirstAndAFrameTakesSixtyFour)
{
    for (int iCell = 0; iCell < 100; ++iCell)
        sow(iCell % 10, iCell / 10);
    EXPECT_EQ(clutter.queuedCells(), 100u);
    clutter.update({600, 600}, true);
    EXPECT_EQ(clutter.queuedCells(), 36u);
    EXPECT_FALSE(records(9, 9).empty());
    EXPECT_FALSE(records(5, 5).empty());
    EXPECT_TRUE(records(0, 0).empty());
    EXPECT_TRUE(records(1, 2).empty());
    clutter.update({600, 600}, true);
    EXPECT_EQ(clutter.queuedCells(), 0u);
    EXPECT_FALSE(records(0, 0).empty());
}

TEST_F(ClutterRefreshTest, plantsFollowTheGroundWhenAStrokeIsOver)
{
    sow(4, 4);
    sow(8, 8);
    clutter.update({}, true);
    surface.raise({288, 288, 60, 1, brush(4)}, 1.0f);
    surface.rebuild();
    clutter.update({}, false);
    EXPECT_EQ(records(4, 4).front().position.z, 0.0f);
    const auto uSlots = groups.find({16, 16})->clutter().uCount;
    clutter.update({}, true);
    const auto spanRecords = records(4, 4);
    EXPECT_TRUE(std::any_of(spanRecords.begin(), spanRecords.end(),
                            [](const ClutterRecord& record) { return record.position.z > 0.9f; }));
    EXPECT_EQ(groups.find({16, 16})->clutter().uCount, uSlots);
    clutter.update({}, true);
    EXPECT_EQ(clutter.queuedCells(), 0u);
}

TEST_F(ClutterRefreshTest, closingATileFreesAllSlots)
{
    sow(0, 0);
    clutter.finishUpdate();
    EXPECT_GT(live(), 10000u);
    clutter.release();
    EXPECT_EQ(live(), 0u);
    clutter.init(64, 64);
    clutter.update({}, true);
    EXPECT_EQ(live(), 0u);
    EXPECT_EQ(log.errors(), uErrors) << log.dump();
}

} // namespace
