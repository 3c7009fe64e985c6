#include "Tests/Entities/FakeKind.h"
#include "Tests/Support/LogCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tilebuilder;
using testing::ElementsAre;

namespace
{

std::vector<uint32_t> idsOf(std::span<const Entity> spanEntities)
{
    std::vector<uint32_t> vecIds;
    for (const Entity& entity : spanEntities)
        vecIds.push_back(entity.uId);
    return vecIds;
}

struct EntitiesTest : testing::Test
{
    LogCapture log;
    FakeWorld world;
    Entities& entities = world.entities;
};

TEST_F(EntitiesTest, idsAreUsedUpByRefusalsAndStartAgainOnlyWhenAllGo)
{
    EXPECT_EQ(world.add(glm::vec3(1.0f)).uId, 1u);
    world.pAssets->bRefuses = true;
    EXPECT_FALSE(world.add(glm::vec3(1.0f)));
    world.pAssets->bRefuses = false;
    const Entity third = world.add(glm::vec3(1.0f));
    EXPECT_EQ(third.uId, 3u);
    entities.removeEntity(third, true);
    EXPECT_TRUE(world.pAssets->bLastRemovedLinks);
    EXPECT_EQ(world.add(glm::vec3(1.0f)).uId, 4u);
    EXPECT_EQ(entities.count(), 2u);

    entities.clear();
    EXPECT_EQ(entities.count(), 0u);
    EXPECT_EQ(world.pAssets->size(), 0u);
    EXPECT_EQ(world.add(glm::vec3(1.0f)).uId, 1u);
    entities.closeTile();
    EXPECT_FALSE(world.add(glm::vec3(1.0f)));
}

TEST_F(EntitiesTest, kindsThatAreNotThereAreReported)
{
    EXPECT_FALSE(world.add(glm::vec3(1.0f), 0, EntityTypeId_Node));
    EXPECT_TRUE(log.has("Failed to create entity. No type registered for type id 5")) << log.dump();
    EXPECT_FALSE(world.add(glm::vec3(1.0f), 0, EntityTypeId_COUNT));
    EXPECT_TRUE(log.has("args.eTypeId < EntityTypeId_COUNT")) << log.dump();
    EXPECT_EQ(world.add(glm::vec3(1.0f)).uId, 1u) << "neither used up an id";
}

TEST_F(EntitiesTest, removalMovesTheLastIntoTheHoleAndMarksTheChange)
{
    const Entity first = world.add({1.0f, 1.0f, 0.0f});
    const Entity second = world.add({2.0f, 1.0f, 0.0f}, 0, EntityTypeId_Decal);
    const Entity third = world.add({3.0f, 1.0f, 0.0f});
    entities.selectMany(entities.all());
    world.sink.reset();
    entities.removeEntity(first, false);

    EXPECT_TRUE(world.sink.uChanged & ChangeEntitySet);
    EXPECT_THAT(idsOf(entities.all()), ElementsAre(third.uId, second.uId));
    EXPECT_THAT(idsOf(entities.selected()), ElementsAre(second.uId, third.uId));
    EXPECT_EQ(entities.find(first.uId), NullEntity);
    EXPECT_EQ(entities.countOf(EntityTypeId_Asset), 1u);
    // The places for picking went the same way.
    EXPECT_EQ(entities.pick({{3.0f, 1.0f, 100.0f}, {0.0f, 0.0f, -1.0f}, 4000.0f}), third);
    entities.removeEntity(first, false);
    entities.removeEntity(third, false);
    EXPECT_EQ(entities.pick({{3.0f, 1.0f, 100.0f}, {0.0f, 0.0f, -1.0f}, 4000.0f}), second);
    entities.removeEntity(second, false);
    EXPECT_EQ(entities.count(), 0u);
    EXPECT_FALSE(entities.active());
    EXPECT_FALSE(entities.pick({{3.0f, 1.0f, 100.0f}, {0.0f, 0.0f, -1.0f}, 4000.0f}));
}

TEST_F(EntitiesTest, creationMarksTheChangeOfStoredKinds)
{
    world.add(glm::vec3(1.0f));
    EXPECT_TRUE(world.sink.uChanged & ChangeEntitySet);
}

TEST_F(EntitiesTest, pivotsAreTheInverseOfEachOtherAndMoveThePlaceForPicking)
{
    Transform start;
    start.position = {10.0f, 20.0f, 5.0f};
    start.rotation = glm::normalize(glm::quat(0.5f, 0.1f, -0.7f, 0.3f));
    start.scale = {0.5f, 2.0f, 3.0f};
    const Entity entity = world.add(start);
    for (const bool bAroundOrigin : {false, true})
    {
        entities.setTransformAroundOrigin(bAroundOrigin);
        const Transform pivot = entities.pivot(entity);
        const PickRay ray{pivot.position + glm::vec3(0.0f, 0.0f, 50.0f), {0.0f, 0.0f, -1.0f}, 4000.0f};
        EXPECT_EQ(entities.pick(ray), entity) << bAroundOrigin;
        Transform moved = pivot;
        moved.position += glm::vec3(40.0f, 0.0f, 0.0f);
        entities.setPivot(entity, moved);
        EXPECT_FALSE(entities.pick(ray)) << bAroundOrigin;
        entities.setPivot(entity, pivot);
        const glm::vec3 off = world.instance(entity).origin.position - start.position;
        EXPECT_LT(glm::length(off), 1e-4f) << bAroundOrigin;
    }
}

// Selection

TEST_F(EntitiesTest, selectingKeepsOrderPlaceAndTheTypeInformed)
{
    const Entity a = world.add(glm::vec3(1.0f));
    const Entity b = world.add(glm::vec3(2.0f));
    const Entity c = world.add(glm::vec3(3.0f), 0, EntityTypeId_Decal);
    int iSearchesEmptied = 0;
    entities.onSelecting([&] { ++iSearchesEmptied; });

    entities.select(a, false);
    entities.select(b, true);
    entities.select(a, true);
    EXPECT_THAT(idsOf(entities.selected()), ElementsAre(a.uId, b.uId)) << "a keeps its place";
    EXPECT_EQ(entities.active(), b);
    EXPECT_EQ(iSearchesEmptied, 2);
    EXPECT_EQ(world.instance(a).uSelections, 1u);

    entities.select(c, false);
    EXPECT_THAT(idsOf(entities.selected()), ElementsAre(c.uId));
    EXPECT_EQ(world.instance(a).uSelections, 0u);
    entities.selectAllOfType(EntityTypeId_Asset);
    EXPECT_THAT(idsOf(entities.selected()), ElementsAre(a.uId, b.uId));
    EXPECT_EQ(world.instance(c).uSelections, 0u);

    world.sink.reset();
    entities.select(NullEntity, true);
    EXPECT_TRUE(entities.selected().empty()) << "nothing empties even when adding";
    EXPECT_EQ(world.sink.uDirty, uint32_t{ChangeSelection});
    EXPECT_EQ(world.sink.uChanges, 0u) << "selecting is no step of the history";
}

TEST_F(EntitiesTest, lockedThingsAreNeitherSelectedNorPicked)
{
    const Entity a = world.add({1.0f, 1.0f, 0.0f});
    const Entity locked = world.add({5.0f, 1.0f, 0.0f}, 0, EntityTypeId_Decal);
    world.setLocked.insert(locked.uId);
    entities.select(a, false);
    entities.select(locked, false);
    entities.select(locked, true);
    EXPECT_THAT(idsOf(entities.selected()), ElementsAre(a.uId));
    entities.selectAll();
    EXPECT_THAT(idsOf(entities.selected()), ElementsAre(a.uId));
    EXPECT_FALSE(entities.pick({{5.0f, 1.0f, 100.0f}, {0.0f, 0.0f, -1.0f}, 4000.0f}))
        << "not passed over for the one behind";
}

TEST_F(EntitiesTest, outOfBoundsTakesTheEdgeInAndTheOpenTilesWithoutGroundAll)
{
    const auto isOut = [&](const glm::vec3& place) { return entities.isOutOfBounds(world.add(place)); };
    EXPECT_FALSE(isOut({0.0f, 0.0f, -8192.0f}));
    EXPECT_FALSE(isOut({128.0f, 64.0f, 8192.0f}));
    EXPECT_TRUE(isOut({128.01f, 64.0f, 0.0f}));
    EXPECT_TRUE(isOut({-0.01f, 64.0f, 0.0f}));
    EXPECT_TRUE(isOut({1.0f, 1.0f, 8193.0f}));
    EXPECT_TRUE(isOut({1.0f, NAN, 0.0f}));
    entities.openTile({1, 1, 1, ""});
    EXPECT_FALSE(isOut({-900.0f, 64.0f, 0.0f}));
}

TEST_F(EntitiesTest, hiddenThingsAreNeitherPickedNorLeftHiddenToTheNextOfTheirPlace)
{
    const PickRay ray{{1.0f, 1.0f, 100.0f}, {0.0f, 0.0f, -1.0f}, 4000.0f};
    const Entity first = world.add({1.0f, 1.0f, 0.0f});
    const Entity last = world.add({30.0f, 1.0f, 0.0f});
    entities.select(first, false);
    entities.hideSelected();
    EXPECT_TRUE(entities.selected().empty());
    EXPECT_FALSE(entities.pick(ray));
    entities.setPivot(first, entities.pivot(first));
    EXPECT_FALSE(entities.pick(ray)) << "a move keeps it hidden";

    entities.removeEntity(first, false); // the last one takes its place
    Transform place;
    place.position = {1.0f, 1.0f, 0.0f};
    entities.setPivot(last, place);
    EXPECT_EQ(entities.pick(ray), last);
    entities.select(last, false);
    entities.hideSelected();
    entities.showHidden();
    EXPECT_EQ(entities.pick(ray), last);
}

// Picking

TEST(PickList, coneOpensWithDistance)
{
    const PickRay ray{{0.0f, 0.0f, 0.0f}, {1.0f, 0.0f, 0.0f}, 4000.0f};
    const auto picks = [&](const glm::vec3& place)
    {
        PickList list;
        list.add(place, 4);
        return list.pick(ray, 4).has_value();
    };
    EXPECT_TRUE(picks({0.0f, 0.74f, 0.0f}));
    EXPECT_FALSE(picks({0.0f, 0.77f, 0.0f}));
    EXPECT_TRUE(picks({400.0f, 10.7f, 0.0f})); // a tenth of the way: 10.75
    EXPECT_FALSE(picks({400.0f, 10.8f, 0.0f}));
    EXPECT_TRUE(picks({4000.0f, 0.0f, 100.7f}));
    EXPECT_FALSE(picks({4000.0f, 0.0f, 100.8f}));
    // Behind the eye the nearest point of the line is just before it.
    EXPECT_TRUE(picks({-0.5f, 0.0f, 0.0f}));
    EXPECT_FALSE(picks({-0.8f, 0.0f, 0.0f}));
    EXPECT_FALSE(picks({-300.0f, 0.0f, 0.0f}));
    // Past the end what the last sphere touches.
    EXPECT_TRUE(picks({4100.0f, 5.0f, 0.0f}));
    EXPECT_FALSE(picks({4100.0f, 30.0f, 0.0f}));
    EXPECT_FALSE(picks({4101.0f, 0.0f, 0.0f}));
    EXPECT_FALSE(picks({100.0f, NAN, 0.0f}));
}

TEST(PickList, choosesByDistanceFromTheLineThenAlongItThenTheLater)
{
    const PickRay ray{{0.0f, 0.0f, 0.0f}, {1.0f, 0.0f, 0.0f}, 4000.0f};
    PickList list;
    list.add({100.0f, 2.0f, 0.0f}, 4);
    list.add({900.0f, 1.0f, 0.0f}, 4); // nearest to the line
    list.add({50.0f, 0.0f, 0.5f}, 64); // of a hidden kind
    EXPECT_EQ(list.pick(ray, 4 | 8), 1u);
    EXPECT_EQ(list.pick(ray, 4 | 64), 2u);
    EXPECT_FALSE(list.pick(ray, 8));
    list.add({200.0f, -1.0f, 0.0f}, 4); // as near to the line, nearer along it
    EXPECT_EQ(list.pick(ray, 4), 3u);
    list.add({300.0f, 0.0f, 1.0f}, 4);
    EXPECT_EQ(list.pick(ray, 4), 3u);
    list.add({200.0f, 0.0f, -1.0f}, 4); // equal in both: the later one
    EXPECT_EQ(list.pick(ray, 4), 4u + 1u);
    list.remove(3); // moves the last to place 3
    EXPECT_EQ(list.pick(ray, 4), 3u);
    // Ties also hold across the blocks that the scan works in.
    for (int i = 0; i < 1000; ++i)
        list.add({200.0f, 0.0f, 1.0f}, i == 777 ? 4 : 64);
    EXPECT_EQ(list.pick(ray, 4), 5u + 777u);
}

TEST(PickList, theFlagWithoutAnEntryShowsUnlessNothingDoes)
{
    const PickRay ray{{0.0f, 0.0f, 0.0f}, {1.0f, 0.0f, 0.0f}, 4000.0f};
    PickList list;
    list.add({10.0f, 0.0f, 0.0f}, 512);
    EXPECT_TRUE(list.pick(ray, 0x1FC));
    EXPECT_TRUE(list.pick(ray, 4));
    EXPECT_FALSE(list.pick(ray, 0));
}

} // namespace
