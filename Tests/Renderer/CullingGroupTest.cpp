// Culling groups: slots, sorting, and what a frame gathers of them.

#include "KestrelCommon/renderer/ClutterGather.h"
#include "Tests/Support/LogCapture.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include <glm/gtc/matrix_transform.hpp>

using namespace rend;

namespace
{

float fromHalf(uint16_t uHalf)
{
    const int iExponent = uHalf >> 10 & 31;
    const float fMantissa = static_cast<float>(uHalf & 1023);
    const float fValue = iExponent == 0    ? std::ldexp(fMantissa, -24)
                         : iExponent == 31 ? INFINITY
                                           : std::ldexp(fMantissa + 1024.0f, iExponent - 25);
    return uHalf & 0x8000 ? -fValue : fValue;
}

TEST(HalfFloatTest, roundsHalfwayValuesAwayFromZeroAndKeepsSigns)
{
    EXPECT_EQ(toHalf(1.0f), 0x3C00);
    EXPECT_EQ(toHalf(-2.0f), 0xC000);
    EXPECT_EQ(fromHalf(toHalf(100.03f)), 100.0f);
    EXPECT_EQ(fromHalf(toHalf(100.03125f)), 100.0625f) << "up, though the lower one is even";
    EXPECT_EQ(fromHalf(toHalf(-100.03125f)), -100.0625f);
    EXPECT_EQ(toHalf(0.0f), 0);
    EXPECT_EQ(toHalf(-1e-9f), 0x8000);
    EXPECT_EQ(toHalf(1e9f), 0x7C00);
    EXPECT_EQ(toHalf(65519.0f), 0x7BFF);
    EXPECT_EQ(toHalf(65520.0f), 0x7C00);
    for (uint32_t u = 0; u < 0x7C00; ++u)
        ASSERT_EQ(toHalf(fromHalf(static_cast<uint16_t>(u))), u) << "small ones have fewer bits";
}

std::array<uint8_t, 256> impostors(std::initializer_list<std::pair<uint8_t, uint8_t>> list)
{
    std::array<uint8_t, 256> arrOf{};
    arrOf.fill(255);
    for (const auto& [uType, uImpostor] : list)
        arrOf[uType] = uImpostor;
    return arrOf;
}

struct CullingGroupTest : testing::Test
{
    uint32_t add(uint8_t uType, float x, float y, float z = 0.0f)
    {
        return group.addClutter(mesh, uType, {x, y, z}, {0, 0, 1}, 0xAABBCCDD, 2.0f);
    }

    LogCapture log;
    ClutterMesh mesh = defaultClutterMesh();
    StaticCullingGroup group;
};

TEST_F(CullingGroupTest, slotsAreReusedAndFreedOnce)
{
    EXPECT_EQ(add(1, 1, 1), 0u);
    EXPECT_EQ(add(1, 2, 2), 1u);
    group.removeClutter(0);
    EXPECT_EQ(group.clutter().uCount, 1u);
    EXPECT_EQ(log.errors(), 0u);
    group.removeClutter(0);
    EXPECT_EQ(log.count("Double freed clutter! "), 1u);
    EXPECT_EQ(group.clutter().uCount, 1u);
    group.removeClutter(2);
    EXPECT_TRUE(log.has("uIndex < m_clutter.vecAabb.size()"));
    EXPECT_EQ(add(2, 3, 3), 0u);
    EXPECT_EQ(add(2, 4, 4), 2u);
    const Aabb& box = group.clutter().vecAabb[2];
    EXPECT_EQ(box.lowest, glm::vec3(3.5f, 3.5f, 0.0f));
    EXPECT_EQ(box.highest, glm::vec3(4.5f, 4.5f, 2.0f));
}

TEST_F(CullingGroupTest, rebuildSortsByTypeAndGivesImpostorsTheirIndex)
{
    std::mt19937 random(3);
    std::vector<uint32_t> vecSlots;
    for (int i = 0; i < 500; ++i)
        vecSlots.push_back(add(static_cast<uint8_t>(random() % 3 * 7), static_cast<float>(i % 32),
                               static_cast<float>(i / 32)));
    for (int i = 0; i < 500; i += 5)
        group.removeClutter(vecSlots[static_cast<size_t>(i)]);
    group.rebuildClutter(impostors({{7, 0}, {14, 1}}));

    const StaticCullingGroup::Clutter& clutter = group.clutter();
    EXPECT_FALSE(clutter.bDirty);
    EXPECT_EQ(clutter.vecSorted.size(), 400u);
    ASSERT_EQ(clutter.vecBatches.size(), 3u);
    std::set<std::pair<float, float>> setPlaces;
    for (const ClutterBatch& batch : clutter.vecBatches)
        for (uint32_t u = batch.uFirst; u < batch.uFirst + batch.uCount; ++u)
        {
            EXPECT_EQ(clutter.vecSorted[u].colorIndex, 0xAABBCC00u | batch.uType);
            setPlaces.insert({clutter.vecSorted[u].x, clutter.vecSorted[u].y});
        }
    EXPECT_EQ(setPlaces.size(), 400u) << "each live one once";
    EXPECT_EQ(clutter.vecBatches[1].uType, 7u);
    EXPECT_EQ(clutter.vecBatches[2].uFirst, clutter.vecBatches[0].uCount + clutter.vecBatches[1].uCount);
    ASSERT_EQ(clutter.vecImpostorBatches.size(), 2u);
    EXPECT_EQ(clutter.vecImpostors.size(), clutter.vecBatches[1].uCount + clutter.vecBatches[2].uCount);
    EXPECT_EQ(clutter.vecImpostors.front().colorIndex, 0xAABBCC00u);
    EXPECT_EQ(clutter.vecImpostors.back().colorIndex, 0xAABBCC01u);
    EXPECT_EQ(group.flags(), static_cast<uint32_t>(GroupHasClutter | GroupHasImpostors));

    // The beginning of a run stands for the whole of it: all quarters of the square are in its first tenth.
    std::set<int> setQuarters;
    for (uint32_t u = 0; u < clutter.vecBatches[0].uCount / 10; ++u)
        setQuarters.insert((clutter.vecSorted[u].x < 16 ? 0 : 1) + (clutter.vecSorted[u].y < 8 ? 0 : 2));
    EXPECT_EQ(setQuarters.size(), 4u);
}

TEST_F(CullingGroupTest, theEdgeOfTheRectangleIsOutside)
{
    add(0, 10, 10);
    group.rebuildClutter(impostors({}));
    EXPECT_EQ(group.flags(), static_cast<uint32_t>(GroupHasClutter));
    // The mesh is a quarter of four units wide.
    EXPECT_TRUE(group.isNear({110.49f, 10}));
    EXPECT_FALSE(group.isNear({110.5f, 10}));
    EXPECT_TRUE(group.isNear({10, -90.49f}));
    EXPECT_FALSE(group.isNear({10, -90.5f}));
    group.removeClutter(0);
    group.rebuildClutter(impostors({}));
    EXPECT_EQ(group.flags(), 0u);
}

TEST(CullingGroupsTest, noMoreThanTheLimit)
{
    LogCapture log;
    CullingGroups groups;
    for (int i = 0; i < 8192; ++i)
        ASSERT_NE(groups.findOrCreate({static_cast<int16_t>(i % 128 - 64), static_cast<int16_t>(i / 128)}),
                  nullptr);
    EXPECT_EQ(log.errors(), 0u);
    EXPECT_EQ(groups.findOrCreate({-1000, 0}), nullptr);
    EXPECT_EQ(log.count("Oh no! we are out of culling groups!!!"), 1u);
    EXPECT_EQ(groups.findOrCreate({-64, 63}), groups.find({-64, 63}));
    EXPECT_EQ(groups.all().size(), 8192u);
}

/// Groups in a row along X, 32 m apart, seen from anywhere.
struct GatherTest : testing::Test
{
    void plant(int iGroup, uint8_t uType, int iCount)
    {
        StaticCullingGroup* pGroup = groups.findOrCreate({static_cast<int16_t>(iGroup), 0});
        for (int i = 0; i < iCount; ++i)
            pGroup->addClutter(mesh, uType,
                               {32.0f * static_cast<float>(iGroup) + 16.0f, 0.1f * static_cast<float>(i), 0},
                               {0, 0, 1}, 0, 1.0f);
    }
    void look(const glm::vec2& camera, const ClutterDensity& density = {})
    {
        groups.rebuildClutter(impostors({{1, 0}, {2, 1}}));
        // Everything within 10 km is in view.
        gather.gather(groups,
                      Frustum(glm::scale(glm::mat4(1.0f), glm::vec3(1e-4f, 1e-4f, 0.0f)) *
                              glm::translate(glm::mat4(1.0f), glm::vec3(0))),
                      camera, density);
    }

    LogCapture log;
    ClutterMesh mesh = defaultClutterMesh();
    CullingGroups groups;
    ClutterGather gather;
};

TEST_F(GatherTest, nearBatchesOfATypeMergeAndFarOnesAreImpostorsOrNothing)
{
    plant(0, 0, 5);
    plant(0, 2, 3);
    plant(1, 0, 4);
    plant(1, 1, 2);
    plant(9, 0, 10); // no impostor
    plant(9, 2, 6);
    look({20, 5});
    ASSERT_EQ(gather.nearBatches().size(), 3u);
    const auto expect = [&](size_t uBatch, uint32_t uType, uint32_t uFirst, uint32_t uCount)
    {
        const ClutterBatch& batch = gather.nearBatches()[uBatch];
        EXPECT_EQ(batch.uType, uType);
        EXPECT_EQ(batch.uFirst, uFirst);
        EXPECT_EQ(batch.uCount, uCount);
        for (uint32_t u = uFirst; u < uFirst + uCount; ++u)
            EXPECT_EQ(gather.nearInstances()[u].colorIndex, uType);
    };
    expect(0, 0, 0, 9);
    expect(1, 1, 9, 2);
    expect(2, 2, 11, 3);
    EXPECT_EQ(gather.nearInstances().size(), 14u);
    ASSERT_EQ(gather.farInstances().size(), 6u);
    for (const ClutterInstance& instance : gather.farInstances())
        EXPECT_EQ(instance.colorIndex, 1u);
    EXPECT_FALSE(gather.isThinned());

    look({4000, 5});
    EXPECT_TRUE(gather.nearInstances().empty());
    EXPECT_EQ(gather.farInstances().size(), 11u);
}

TEST_F(GatherTest, whatTheFrustumLeavesOutIsNotGathered)
{
    plant(0, 0, 5);
    plant(1, 0, 7);
    groups.rebuildClutter(impostors({}));
    // Clip space is x from 0 to 20 m.
    const glm::mat4 view = glm::translate(glm::mat4(1.0f), glm::vec3(-1, 0, 0)) *
                           glm::scale(glm::mat4(1.0f), glm::vec3(0.1f, 0.001f, 0.0f));
    gather.gather(groups, Frustum(view), {0, 0}, {});
    EXPECT_EQ(gather.nearInstances().size(), 5u);
}

TEST_F(GatherTest, aBudgetThinsWhatIsFarBeforeWhatIsNear)
{
    for (int i = 0; i < 4; ++i)
        plant(i, 0, 1000);
    look({16, 5}, {.fNearBudget = 2000.0f, .fFarBudget = 0.0f, .fFullRange = 10.0f});
    EXPECT_TRUE(gather.isThinned());
    EXPECT_NEAR(static_cast<double>(gather.nearInstances().size()), 2000.0, 120.0);
    std::array<int, 4> arrCounts{};
    for (const ClutterInstance& instance : gather.nearInstances())
        ++arrCounts[static_cast<size_t>(instance.x / 32.0f)];
    EXPECT_EQ(arrCounts[0], 1000);
    EXPECT_GT(arrCounts[1], arrCounts[2]);
    EXPECT_GT(arrCounts[2], arrCounts[3]);
    EXPECT_GT(arrCounts[3], 0);
    look({16, 5}, {.fNearBudget = 5000.0f});
    EXPECT_EQ(gather.nearInstances().size(), 4000u);
    EXPECT_FALSE(gather.isThinned());
}

TEST_F(GatherTest, tooManyNearRunsAreNotDrawnButFarOnesAreOneAGroup)
{
    // 50 x 210 runs of near types; each far group is one run, whatever its types.
    for (int i = 0; i < 50; ++i)
        for (int iType = 0; iType < 210; ++iType)
            groups.findOrCreate({static_cast<int16_t>(i % 5), static_cast<int16_t>(i / 5)})
                ->addClutter(mesh, static_cast<uint8_t>(iType), {32.0f * static_cast<float>(i % 5), 8.0f, 0},
                             {0, 0, 1}, 0, 1);
    std::array<uint8_t, 256> arrAll{};
    groups.rebuildClutter(arrAll);
    const Frustum all(glm::scale(glm::mat4(1.0f), glm::vec3(1e-4f, 1e-4f, 0.0f)));
    gather.gather(groups, all, {64, 8}, {});
    EXPECT_TRUE(gather.nearInstances().empty());
    EXPECT_TRUE(gather.nearBatches().empty());
    gather.gather(groups, all, {5000, 8}, {});
    EXPECT_EQ(gather.farInstances().size(), 50u * 210u);
}

} // namespace
