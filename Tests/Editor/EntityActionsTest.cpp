// Handles, commands and menu through the editor object: what input does to the selection.

#include "KestrelCommon/Platform/VirtualKeys.h"
#include "Tests/Editor/EditorWorld.h"
#include "Tests/Entities/FakeKind.h"
#include "TileEditorCommon/Entities/EntityCommands.h"
#include "TileEditorCommon/Entities/TransformTool.h"

#include <glm/trigonometric.hpp>
#include <gtest/gtest.h>

using namespace tilebuilder;

namespace
{

struct EntityActionsTest : testing::Test
{
    EntityActionsTest() : entities(world.pEditor->entityStore())
    {
        auto pType = std::make_unique<FakeKind>(entities, EntityTypeId_Decal);
        pFakes = pType.get();
        EntityKind kind;
        kind.pType = std::move(pType);
        entities.addKind(std::move(kind));
        entities.setTransformAroundOrigin(true);
        // From the side, so that all handles can be seen.
        world.camera.position = {10.0f, 5.0f, 25.0f};
        world.camera.lookAlong(glm::vec3(32.0f, 32.0f, 0.0f) - world.camera.position);
        world.frames(1, 0.016f);
    }

    Entity add(const glm::vec3& position)
    {
        EntityCreateArgs args;
        args.eTypeId = EntityTypeId_Decal;
        args.transform.position = position;
        return entities.createEntity(std::move(args));
    }
    [[nodiscard]] glm::vec3 placeOf(const Entity& entity) const
    {
        return entity.pType->getOriginTransform(entity.uId).position;
    }

    void moveTo(const glm::vec3& point) { ASSERT_TRUE(world.pointAt(point)); }
    void button(bool bDown, int iButton = 0) { world.press(bDown, iButton); }
    void key(uint32_t uKey, bool bDown) { world.key(uKey, bDown); }
    /// A point of the arrow along X of the tool at the active entity.
    [[nodiscard]] glm::vec3 onArrow() const
    {
        const glm::vec3 centre = entities.pivot(entities.active()).position;
        const float fSize =
            ToolPose::sizeFor(centre, world.camera.position, std::tan(glm::radians(world.camera.fov) * 0.5f));
        return centre + glm::vec3(0.7f * fSize, 0.0f, 0.0f);
    }

    EditorWorld world;
    Entities& entities;
    FakeKind* pFakes = nullptr;
};

TEST_F(EntityActionsTest, aPressOnAHandleDragsUntilTheButtonIsUp)
{
    const Entity entity = add({32.0f, 32.0f, 1.0f});
    const Entity other = add({20.0f, 40.0f, 1.0f});
    entities.select(entity, false);
    world.pEditor->toggleSnapping();
    EXPECT_TRUE(world.pEditor->isSnapping());
    const glm::vec3 grip = onArrow();
    moveTo(grip);
    button(true);
    EXPECT_EQ(entities.active(), entity) << "the press is the handle's";
    moveTo(grip + glm::vec3(3.1f, 0.0f, 0.0f));
    EXPECT_EQ(placeOf(entity), glm::vec3(35.0f, 32.0f, 1.0f));
    moveTo(grip + glm::vec3(-2.0f, 0.0f, 0.0f));
    EXPECT_EQ(placeOf(entity), glm::vec3(30.0f, 32.0f, 1.0f)) << "counts from where it began";
    world.pEditor->runEntityAction(6);
    EXPECT_TRUE(entities.exists(entity)) << "nothing is deleted in a drag";
    button(false);
    moveTo(grip + glm::vec3(9.0f, 0.0f, 0.0f));
    EXPECT_EQ(placeOf(entity), glm::vec3(30.0f, 32.0f, 1.0f));
    EXPECT_EQ(placeOf(other), glm::vec3(20.0f, 40.0f, 1.0f));

    // With Shift a copy goes instead.
    key(KeyShift, true);
    const glm::vec3 again = onArrow();
    moveTo(again);
    button(true);
    moveTo(again + glm::vec3(4.0f, 0.0f, 0.0f));
    button(false);
    key(KeyShift, false);
    EXPECT_EQ(entities.count(), 3u);
    EXPECT_EQ(placeOf(entity).x, 30.0f);
    EXPECT_EQ(placeOf(entities.active()).x, 34.0f);
    EXPECT_FALSE(entities.active() == entity);
}

TEST_F(EntityActionsTest, keysActInTheEntityToolAndPasteAtTheCursor)
{
    const Entity entity = add({32.0f, 32.0f, 7.0f});
    entities.select(entity, false);
    world.pEditor->setTool(ToolHeight); // empties the selection
    entities.select(entity, false);
    world.pEditor->runEntityAction(44);
    EXPECT_EQ(placeOf(entity).z, 7.0f);
    EXPECT_FALSE(world.pEditor->canRunEntityAction(44));
    world.pEditor->setTool(ToolPlace);
    EXPECT_TRUE(world.pEditor->canRunEntityAction(44));
    world.pEditor->runEntityAction(44);
    EXPECT_NEAR(placeOf(entity).z, 0.0f, 1e-3f);

    world.pEditor->runEntityAction(46);
    moveTo({40.0f, 20.0f, 0.0f});
    world.pEditor->runEntityAction(47);
    ASSERT_EQ(entities.count(), 2u);
    EXPECT_LT(glm::length(placeOf(entities.active()) - glm::vec3(40.0f, 20.0f, 0.0f)), 0.1f);
    // Where the cursor points at nothing nothing is pasted.
    world.camera.lookAlong({0.0f, 0.2f, 1.0f});
    world.frames(1, 0.016f);
    world.pEditor->runEntityAction(47);
    EXPECT_EQ(entities.count(), 2u);
}

TEST_F(EntityActionsTest, theMenusPasteGoesWhereItOpened)
{
    entities.select(add({32.0f, 32.0f, 0.0f}), false);
    world.pEditor->runEntityAction(46);
    moveTo({25.0f, 25.0f, 0.0f});
    const auto vecMenu = world.pEditor->entityMenu();
    moveTo({45.0f, 45.0f, 0.0f});
    for (const EntityMenuItem& item : vecMenu)
        if (item.sLabel == "Paste ")
            world.pEditor->runEntityMenu(item.uCommand);
    ASSERT_EQ(entities.count(), 2u);
    EXPECT_LT(glm::length(placeOf(entities.active()) - glm::vec3(25.0f, 25.0f, 0.0f)), 0.1f);
}

TEST_F(EntityActionsTest, deletingWhatTheMiddleButtonDragsEndsThatDrag)
{
    const Entity entity = add({32.0f, 32.0f, 0.0f});
    entities.select(entity, false);
    moveTo({30.0f, 30.0f, 0.0f});
    button(true, 2);
    moveTo({28.0f, 28.0f, 0.0f});
    EXPECT_LT(glm::length(placeOf(entity) - glm::vec3(28.0f, 28.0f, 0.0f)), 0.1f);
    world.pEditor->runEntityAction(6);
    EXPECT_FALSE(entities.exists(entity));
    EXPECT_TRUE(world.pEditor->toolState().noPlacement);
    EXPECT_FALSE(world.pEditor->toolState().placementHandle);
    moveTo({26.0f, 28.0f, 0.0f});
    EXPECT_EQ(entities.count(), 0u) << "nothing new is placed";
}

/// What is dragged may be gone, and what took its place isn't the user's choice.
TEST_F(EntityActionsTest, anUndoInADragEndsIt)
{
    for (const int iButton : {0, 2})
    {
        const Entity entity = add({32.0f, 32.0f, 0.0f});
        entities.select(entity, false);
        const glm::vec3 grip = iButton == 0 ? onArrow() : glm::vec3(30.0f, 30.0f, 0.0f);
        moveTo(grip);
        button(true, iButton);
        moveTo(grip + glm::vec3(-2.0f, 0.0f, 0.0f));
        world.pEditor->undo();
        const glm::vec3 place = placeOf(entity);
        const size_t uCount = entities.count();
        moveTo(grip + glm::vec3(5.0f, 0.0f, 0.0f));
        EXPECT_EQ(placeOf(entity), place);
        EXPECT_EQ(entities.count(), uCount) << "nothing new is placed";
        button(false, iButton);
        EXPECT_EQ(world.pEditor->toolState().pickState, PickNormal);
    }
}

TEST_F(EntityActionsTest, theGridGoesToTheSelectionAndBack)
{
    entities.select(add({20.0f, 20.0f, 0.0f}), false);
    entities.select(add({24.0f, 28.0f, 4.0f}), true);
    world.pEditor->toggleGrid();
    world.pEditor->runEntityAction(43);
    EXPECT_EQ(placeOf(entities.grid()), glm::vec3(22.0f, 24.0f, 2.0f));
    moveTo({40.0f, 20.0f, 0.0f});
    world.pEditor->placeGridAtCursor(); // with a selection it comes back to that
    EXPECT_EQ(placeOf(entities.grid()), glm::vec3(22.0f, 24.0f, 2.0f));
}

} // namespace
