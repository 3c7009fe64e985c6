#include "Tests/Entities/FakeKind.h"
#include "Tests/Support/LogCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tilebuilder;
using testing::UnorderedElementsAre;

namespace
{

std::vector<uint32_t> livingIds(const Entities& entities)
{
    std::vector<uint32_t> vecIds;
    for (const Entity& entity : entities.all())
        vecIds.push_back(entity.uId);
    return vecIds;
}

struct RestoreTest : testing::Test
{
    LogCapture log;
    FakeWorld world;
    Entities& entities = world.entities;
};

TEST_F(RestoreTest, onlyWhatMovedIsMadeAnew)
{
    std::vector<Entity> vecAll;
    for (uint32_t i = 0; i < 50; ++i)
        vecAll.push_back(world.add({static_cast<float>(i) * 2.5f, 30.0f, 0.0f}, i % 3 * 1000,
                                   i % 2 ? EntityTypeId_Decal : EntityTypeId_Asset));
    const auto vecState = world.storeAll();
    const Entity moved = vecAll[7];
    Transform away = entities.pivot(moved);
    away.position.x += 64.0f; // into the other cell
    entities.setPivot(moved, away);
    const uint32_t uPlaced = world.add({3.0f, 3.0f, 3.0f}, 5).uId;
    const Entity gone = vecAll[20];
    entities.removeEntity(gone, true);

    world.restore(vecState, true);

    EXPECT_EQ(entities.count(), 50u);
    EXPECT_FALSE(entities.find(moved.uId)) << "lives on under a new id";
    EXPECT_FALSE(entities.find(uPlaced));
    EXPECT_EQ(entities.restored().size(), 2u);
    EXPECT_EQ(entities.selected().size(), 2u);
    EXPECT_TRUE(world.pAssets->bLastStored);
    EXPECT_FALSE(world.pDecals->bLastRemovedLinks);
    for (size_t i = 0; i < vecAll.size(); ++i)
        EXPECT_EQ(entities.exists(vecAll[i]), i != 7 && i != 20) << i;
    const auto vecAfter = world.storeAll();
    for (size_t i = 0; i < vecState.size(); ++i)
        EXPECT_EQ(vecState[i].second.vecBytes, vecAfter[i].second.vecBytes) << i;
}

TEST_F(RestoreTest, twinsAreCountedOneByOne)
{
    world.add({1.0f, 1.0f, 1.0f}, 7);
    const auto vecOne = world.storeAll();
    world.add({1.0f, 1.0f, 1.0f}, 7);
    world.add({1.0f, 1.0f, 1.0f}, 7);
    const auto vecThree = world.storeAll();

    world.restore(vecOne);
    EXPECT_EQ(entities.count(), 1u);
    EXPECT_TRUE(entities.restored().empty()) << "one of the three is kept";
    const uint32_t uKept = entities.all().front().uId;
    world.restore(vecThree);
    EXPECT_EQ(entities.count(), 3u);
    EXPECT_TRUE(entities.find(uKept));
    EXPECT_EQ(entities.restored().size(), 2u);
    world.restore(vecThree);
    EXPECT_TRUE(entities.restored().empty());
}

TEST_F(RestoreTest, onlyNamedSectionsChangeAndWhatStandsOutsideGoes)
{
    const Entity outside = world.add({-5.0f, 1.0f, 0.0f});
    const Entity unnamed = world.add({1.0f, 1.0f, 0.0f});
    const Entity emptied = world.add({100.0f, 1.0f, 0.0f});
    const Entity otherLevel = world.add({100.0f, 1.0f, 0.0f}, 2000);
    entities.select(unnamed, false);
    entities.beginRestore();
    entities.restoreSection({tile::SectionGroup::Assets, 1, 0}, {}, 0, tile::VersionCurrent);
    entities.endRestore(true);
    EXPECT_THAT(livingIds(entities), UnorderedElementsAre(unnamed.uId, otherLevel.uId));
    EXPECT_FALSE(entities.exists(outside) || entities.exists(emptied));
    EXPECT_TRUE(entities.selected().empty());
}

TEST_F(RestoreTest, brokenBytesChangeNothing)
{
    const Entity kept = world.add({1.0f, 1.0f, 0.0f});
    const std::vector<std::byte> vecShort(FakeRecords::s_uSize - 1);
    entities.beginRestore();
    entities.restoreSection({tile::SectionGroup::Assets, 0, 0}, vecShort, 1, tile::VersionCurrent);
    entities.endRestore(false);
    EXPECT_TRUE(entities.exists(kept));
    EXPECT_EQ(entities.count(), 1u);
    EXPECT_GT(log.errors(), 0u);
}

// Sections

TEST(CellIndex, edgesBelongToTheCellThatTheyBegin)
{
    CellIndex index;
    index.reset(3, 2, true);
    EXPECT_EQ(index.cellAt({0.0f, 0.0f, 0.0f}), 0u);
    EXPECT_EQ(index.cellAt({63.999f, 0.0f, 0.0f}), 0u);
    EXPECT_EQ(index.cellAt({64.0f, 0.0f, 0.0f}), 1u);
    EXPECT_EQ(index.cellAt({64.0f, 64.0f, -8192.0f}), 4u);
    EXPECT_EQ(index.origin(4), glm::vec3(64.0f, 64.0f, 0.0f));
    for (const glm::vec3& place :
         {glm::vec3(192.0f, 0.0f, 0.0f), glm::vec3(0.0f, 128.0f, 0.0f), glm::vec3(-1e-6f, 0.0f, 0.0f),
          glm::vec3(0.0f, 0.0f, 8192.0f), glm::vec3(0.0f, 0.0f, -8192.5f), glm::vec3(NAN, 0.0f, 0.0f),
          glm::vec3(INFINITY, 0.0f, 0.0f), glm::vec3(1e30f, 1.0f, 0.0f)})
        EXPECT_EQ(index.cellAt(place), index.outside()) << place.x << " " << place.y << " " << place.z;
    EXPECT_EQ(index.origin(index.outside()), glm::vec3(0.0f));
    index.reset(1, 1, false);
    EXPECT_EQ(index.cellAt({-4000.0f, 1e6f, 1e5f}), 0u);
}

TEST(CellIndex, everySectionThatMayHaveOtherBytesGetsANewRevision)
{
    using testing::ElementsAre;
    CellIndex index;
    index.reset(2, 1, true);
    const SectionKey here{tile::SectionGroup::Assets, 0, 0};
    const SectionKey there{tile::SectionGroup::Assets, 1, 3};
    const SectionKey other{tile::SectionGroup::Decals, 0, 0};
    const auto revisions = [&]
    {
        return std::array{index.revision(StoredForm::Plain, here), index.revision(StoredForm::Plain, there),
                          index.revision(StoredForm::Plain, other), index.revision(StoredForm::Export, here)};
    };
    const auto start = revisions();
    for (const uint32_t uId : {1u, 2u, 3u})
        index.place(uId, StoredForm::Plain, here);
    const auto placed = revisions();
    EXPECT_NE(start[0], placed[0]);
    EXPECT_EQ(start[1], placed[1]);
    EXPECT_EQ(start[3], placed[3]) << "the forms are apart";

    index.place(1, StoredForm::Plain, there);
    const auto moved = revisions();
    EXPECT_TRUE(moved[0] != placed[0] && moved[1] != placed[1] && moved[2] == placed[2]);
    EXPECT_THAT(index.ids(StoredForm::Plain, here), ElementsAre(3, 2));
    EXPECT_THAT(index.ids(StoredForm::Plain, there), ElementsAre(1));

    index.place(3, StoredForm::Plain, here); // stays, with other values
    EXPECT_NE(index.revision(StoredForm::Plain, here), moved[0]);
    EXPECT_THAT(index.ids(StoredForm::Plain, here), ElementsAre(3, 2));

    index.place(2, StoredForm::Export, other);
    index.remove(3);
    index.remove(2);
    index.remove(99);
    EXPECT_TRUE(index.ids(StoredForm::Plain, here).empty());
    EXPECT_TRUE(index.ids(StoredForm::Export, other).empty());
    EXPECT_THAT(index.ids(StoredForm::Plain, there), ElementsAre(1));
    const uint64_t uBefore = index.revision(StoredForm::Plain, there);
    index.reset(2, 1, true);
    EXPECT_NE(index.revision(StoredForm::Plain, there), uBefore) << "another tile of the same shape";
}

TEST(CellIndex, entitiesFollowTheirLevelAndPlace)
{
    const LogCapture log;
    FakeWorld world;
    const Entity entity = world.add({1.0f, 1.0f, 0.0f}, 3000);
    const auto holds = [&](uint32_t uCell, uint32_t uLevel)
    {
        const SectionKey key{tile::SectionGroup::Assets, uCell, uLevel};
        return !world.entities.index().ids(StoredForm::Plain, key).empty() &&
               !world.entities.index().ids(StoredForm::Export, key).empty();
    };
    EXPECT_TRUE(holds(0, 3));
    world.pAssets->edit(entity.uId)->uValue = 1000;
    EXPECT_TRUE(!holds(0, 3) && holds(0, 1));
    Transform place;
    place.position = {64.0f, 1.0f, 0.0f};
    entity.pType->setOriginTransform(entity.uId, place); // past the container, as kinds do
    EXPECT_TRUE(!holds(0, 1) && holds(1, 1));
    world.entities.removeEntity(entity, false);
    EXPECT_FALSE(holds(1, 1));
}

} // namespace
