// What every kind of entities of this editor must do. A new kind joins with its line in the table.

#include "KestrelCommon/Io/ByteStream.h"
#include "Tests/Support/RecordingPanel.h"
#include "Tests/Walk/WalkWorld.h"
#include "TileEditorCommon/Contracts/EntityTraits.h"
#include "TileEditorCommon/Entities/EntityRecordsI.h"

#include <glm/trigonometric.hpp>
#include <gtest/gtest.h>

using namespace tilebuilder;

namespace
{

using MakePayload = std::shared_ptr<IPayload> (*)();

std::shared_ptr<IPayload> anAsset()
{
    auto pPayload = std::make_shared<EntityCreateArgs::Asset>();
    pPayload->uuid = WalkWorld::uuid(1);
    pPayload->mapColors = {{"s0", 0x11223344}, {"s1", 0x55667788}};
    pPayload->setTags = {"cave", "spawn"};
    return pPayload;
}

std::shared_ptr<IPayload> nothing()
{
    return nullptr;
}

struct Kind
{
    EntityTypeId eId;
    MakePayload fnPayload; ///< of an instance with values that aren't the defaults
};

constexpr Kind s_arrKinds[] = {
    {EntityTypeId_Asset, anAsset},
    {EntityTypeId_Character, nothing},
    {EntityTypeId_Grid, nothing},
};

constexpr uint32_t s_uUnknown = 999;

/// A tile of two cells a side.
struct KindContractTest : testing::TestWithParam<Kind>
{
    KindContractTest()
    {
        world.editor().newTile(2);
        world.look();
        world.world.log.clear();
    }

    Entity add(const Transform& transform)
    {
        EntityCreateArgs args;
        args.eTypeId = GetParam().eId;
        args.transform = transform;
        args.pPayload = GetParam().fnPayload();
        return entities.createEntity(std::move(args));
    }
    [[nodiscard]] static Transform turned(const glm::vec3& position)
    {
        return {position,
                glm::angleAxis(0.7f, glm::normalize(glm::vec3(1.0f, 2.0f, 3.0f))),
                {0.5f, 0.75f, 0.25f}};
    }
    [[nodiscard]] const EntityTraits& traits() const { return entityTraits(GetParam().eId); }
    [[nodiscard]] bool isStored() const { return traits().uLists > 0; }
    /// The revisions of all sections of the kind's lists that a place is in, in both forms.
    [[nodiscard]] std::vector<uint64_t> revisionsAt(uint32_t uCell) const
    {
        std::vector<uint64_t> vecRevisions;
        for (const StoredForm eForm : {StoredForm::Plain, StoredForm::Export})
            for (const StoredList& list : traits().lists())
                for (uint32_t uLevel = 0; uLevel < CellIndex::s_uLevels; ++uLevel)
                    vecRevisions.push_back(entities.index().revision(eForm, {list.eGroup, uCell, uLevel}));
        return vecRevisions;
    }
    /// All values; equal for equal entities.
    [[nodiscard]] static uint64_t valuesOf(const Entity& entity)
    {
        EntityCreateArgs args;
        EXPECT_TRUE(entity.pType->getCloneArgs(entity.uId, args));
        return args.recordHash();
    }
    static void expectNear(const Transform& is, const Transform& expected)
    {
        EXPECT_LT(glm::length(is.position - expected.position), 1e-4f);
        EXPECT_LT(glm::length(is.scale - expected.scale), 1e-5f);
        EXPECT_GT(std::abs(glm::dot(is.rotation, expected.rotation)), 1.0f - 1e-5f);
    }

    WalkWorld world{1};
    Entities& entities = world.entities();
    EntityTypeI& type = *entities.type(GetParam().eId);
};

TEST(KindTable, everyKindOfTheEditorIsTested)
{
    WalkWorld world(1);
    for (uint8_t u = 0; u < EntityTypeId_COUNT; ++u)
        EXPECT_EQ(world.entities().type(static_cast<EntityTypeId>(u)) != nullptr,
                  std::ranges::count(s_arrKinds, static_cast<EntityTypeId>(u), &Kind::eId) == 1)
            << entityTraits(static_cast<EntityTypeId>(u)).sName;
}

TEST_P(KindContractTest, unknownIdsYieldNothingAndChangeNothing)
{
    const Entity known = add(turned({20.0f, 20.0f, 1.0f}));
    ASSERT_TRUE(known);
    EXPECT_EQ(type.getTypeId(), GetParam().eId);
    EXPECT_EQ(type.getFilterFlag(), traits().uFilterFlag);
    const Transform before = type.getOriginTransform(known.uId);
    const uint64_t uRevision = entities.revision();

    EXPECT_FALSE(type.exists(s_uUnknown));
    EXPECT_EQ(type.getDisplayName(s_uUnknown), traits().sNullName);
    for (const Transform& transform :
         {type.getCenterTransform(s_uUnknown), type.getOriginTransform(s_uUnknown),
          type.getLocalCenterTransform(s_uUnknown), type.getLocalTransform(s_uUnknown)})
        EXPECT_EQ(transform, Transform{});
    Aabb box;
    EXPECT_FALSE(type.getBounds(s_uUnknown, box));
    EXPECT_EQ(type.getInstance(s_uUnknown), nullptr);
    EXPECT_EQ(type.getScaleFlags(s_uUnknown), 0);
    EntityCreateArgs args;
    EXPECT_FALSE(type.getCloneArgs(s_uUnknown, args));
    Entity copy = known;
    EXPECT_FALSE(type.clone(s_uUnknown, entities, copy));
    EXPECT_EQ(copy, known);
    EXPECT_FALSE(type.connect(s_uUnknown, known));
    EXPECT_TRUE(entities.colors({s_uUnknown, &type}).empty());

    type.setCenterTransform(s_uUnknown, turned(glm::vec3(3.0f)));
    type.setOriginTransform(s_uUnknown, turned(glm::vec3(3.0f)));
    type.setFieldOfView(s_uUnknown, 40.0f);
    entities.setColors({s_uUnknown, &type}, {{"s0", 1}});
    type.onSelect(s_uUnknown);
    type.onDeselect(s_uUnknown);
    RecordingPanel panel;
    type.displayProperties(s_uUnknown, panel);
    type.remove(s_uUnknown, true);
    entities.removeEntity({s_uUnknown, &type}, true);
    EXPECT_EQ(type.getOriginTransform(known.uId), before);
    EXPECT_TRUE(type.exists(known.uId));
    EXPECT_EQ(entities.count(), 1u);
    EXPECT_EQ(entities.revision(), uRevision);
    EXPECT_TRUE(world.world.log.lines().empty()) << world.world.log.dump();
}

TEST_P(KindContractTest, pivotsAreInverses)
{
    const Entity entity = add(turned({20.0f, 20.0f, 1.0f}));
    for (int i = 0; i < 20; ++i)
    {
        Transform wanted = turned({world.between(0.0f, 128.0f), world.between(0.0f, 128.0f), 3.0f});
        wanted.rotation = glm::normalize(glm::quat(world.between(-1.0f, 1.0f), world.between(-1.0f, 1.0f),
                                                   world.between(-1.0f, 1.0f), 0.5f));
        wanted.scale *= world.between(0.1f, 9.0f);
        // What can't be scaled keeps its scale.
        if (!(type.getScaleFlags(entity.uId) & ScaleCan))
            wanted.scale = type.getOriginTransform(entity.uId).scale;
        type.setOriginTransform(entity.uId, wanted);
        EXPECT_EQ(type.getOriginTransform(entity.uId), wanted);
        const Transform centre = type.getCenterTransform(entity.uId);
        EXPECT_EQ(centre.rotation, wanted.rotation);
        EXPECT_EQ(centre.scale, wanted.scale);

        Transform moved = centre;
        moved.position += glm::vec3(1.0f, -2.0f, 0.5f);
        type.setCenterTransform(entity.uId, moved);
        expectNear(type.getCenterTransform(entity.uId), moved);
        type.setCenterTransform(entity.uId, centre);
        expectNear(type.getOriginTransform(entity.uId), wanted);
    }
}

TEST_P(KindContractTest, aCloneIsEqualAndApart)
{
    const Entity entity = add(turned({20.0f, 20.0f, 1.0f}));
    Entity copy;
    if (!type.clone(entity.uId, entities, copy))
    {
        EXPECT_FALSE(copy);
        EXPECT_FALSE(isStored()) << "what is stored can be copied";
        EXPECT_EQ(entities.count(), 1u);
        return;
    }
    EXPECT_EQ(entities.count(), 2u);
    EXPECT_NE(copy.uId, entity.uId);
    EXPECT_EQ(entities.find(copy.uId), copy);
    EXPECT_EQ(valuesOf(copy), valuesOf(entity));
    const Transform before = type.getOriginTransform(entity.uId);
    EXPECT_EQ(type.getOriginTransform(copy.uId), before);
    type.setOriginTransform(copy.uId, turned({50.0f, 1.0f, 1.0f}));
    EXPECT_EQ(type.getOriginTransform(entity.uId), before);
    entities.removeEntity(entity, true);
    EXPECT_TRUE(type.exists(copy.uId));
    EXPECT_FALSE(type.exists(entity.uId));
}

TEST_P(KindContractTest, recordsBringBackTheSame)
{
    const Entity entity = add(turned({90.0f, 20.0f, 1.0f}));
    EXPECT_EQ(traits().lists().size(), isStored() ? traits().uLists : 0u);
    size_t uHolding = 0;
    for (const StoredList& list : traits().lists())
    {
        const EntityRecordsI* pRecords = entities.records(list.eGroup);
        ASSERT_TRUE(pRecords);
        EXPECT_EQ(pRecords->group(), list.eGroup);
        if (!pRecords->holds(entity.uId))
            continue;
        ++uHolding;
        EXPECT_LT(pRecords->level(entity.uId), list.bLevels ? CellIndex::s_uLevels : 1u);
        const glm::vec3 origin = entities.index().origin(1);
        std::vector<uint32_t> vecIds{entity.uId};
        ByteStream stream;
        pRecords->write(stream, vecIds, origin);
        std::vector<uint32_t> vecEnds;
        ASSERT_TRUE(pRecords->split(stream.bytes(), 1, tile::VersionCurrent, vecEnds));
        EXPECT_EQ(vecEnds, std::vector<uint32_t>{static_cast<uint32_t>(stream.size())});

        std::vector<EntityCreateArgs> vecArgs;
        ASSERT_TRUE(pRecords->read(stream.bytes(), 1, origin, tile::VersionCurrent, vecArgs));
        ASSERT_EQ(vecArgs.size(), 1u);
        EXPECT_TRUE(vecArgs[0].bStored);
        const Entity again = entities.createEntity(vecArgs[0]);
        ASSERT_TRUE(again);
        EXPECT_EQ(valuesOf(again), valuesOf(entity));
        EXPECT_EQ(type.getOriginTransform(again.uId), type.getOriginTransform(entity.uId));
        vecIds = {again.uId};
        ByteStream second;
        pRecords->write(second, vecIds, origin);
        EXPECT_TRUE(std::ranges::equal(stream.bytes(), second.bytes()));
        entities.removeEntity(again, false);

        const auto spanShort = stream.bytes().first(stream.size() - 1);
        EXPECT_FALSE(pRecords->split(spanShort, 1, tile::VersionCurrent, vecEnds));
        EXPECT_FALSE(pRecords->read(spanShort, 1, origin, tile::VersionCurrent, vecArgs));
        EXPECT_EQ(vecArgs.size(), 1u) << "as it was";
    }
    EXPECT_EQ(uHolding, isStored() ? 1u : 0u) << "it stands in one of its lists";
}

TEST_P(KindContractTest, everyChangeMovesThePlaceAndCounts)
{
    const Entity entity = add(turned({20.0f, 20.0f, 1.0f}));
    world.settle();
    std::vector<std::pair<const char*, std::function<void()>>> vecChanges{
        {"origin",
         [&] {
             type.setOriginTransform(entity.uId, turned({20.0f, 90.0f, 2.0f}));
         }},
        {"centre",
         [&] {
             type.setCenterTransform(entity.uId, turned({90.0f, 90.0f, 2.0f}));
         }},
        {"pivot",
         [&] {
             entities.setPivot(entity, turned({20.0f, 20.0f, 5.0f}));
         }},
    };
    tile::ColorMap mapColors = entities.colors(entity);
    for (auto& [sSlot, uColor] : mapColors)
        uColor ^= 0xFF;
    if (!mapColors.empty())
        vecChanges.emplace_back("colours", [&] { entities.setColors(entity, mapColors); });
    for (const auto& [pName, fnChange] : vecChanges)
    {
        SCOPED_TRACE(pName);
        const auto cell = [&]
        { return entities.index().cellAt(type.getOriginTransform(entity.uId).position); };
        const uint32_t uOld = cell();
        std::array<std::vector<uint64_t>, 4> arrBefore;
        for (uint32_t u = 0; u < 4; ++u)
            arrBefore[u] = revisionsAt(u);
        const uint64_t uRevision = entities.revision();
        const size_t uStates = world.tile().states().size();
        uint32_t uMask = 0;
        static_cast<void>(world.editor().takeInterfaceDirty(uMask));

        fnChange();
        EXPECT_NE(entities.revision(), uRevision);
        EXPECT_TRUE(world.editor().takeInterfaceDirty(uMask));
        for (uint32_t u = 0; u < 4; ++u)
            EXPECT_EQ(revisionsAt(u) != arrBefore[u], isStored() && (u == uOld || u == cell())) << u;
        const glm::vec3 place = entities.pivot(entity).position;
        EXPECT_EQ(entities.pick({place + glm::vec3(0.0f, 0.0f, 40.0f), {0.0f, 0.0f, -1.0f}, 4000.0f}),
                  entity);
        world.settle();
        EXPECT_EQ(world.tile().states().size(), uStates + (isStored() ? 1 : 0));

        // The same once more is no change.
        for (uint32_t u = 0; u < 4; ++u)
            arrBefore[u] = revisionsAt(u);
        type.setOriginTransform(entity.uId, type.getOriginTransform(entity.uId));
        for (uint32_t u = 0; u < 4; ++u)
            EXPECT_EQ(revisionsAt(u), arrBefore[u]);
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, KindContractTest, testing::ValuesIn(s_arrKinds),
                         [](const auto& info) { return std::string(entityTraits(info.param.eId).sName); });

} // namespace
