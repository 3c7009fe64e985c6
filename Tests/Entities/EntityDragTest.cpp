#include "TileEditorCommon/Entities/EntityDrag.h"

#include "Tests/Entities/FakeKind.h"
#include "Tests/Support/LogCapture.h"

#include <glm/trigonometric.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tilebuilder;

namespace
{

constexpr float s_fLeast = 1.1920929e-7f;

struct EntityDragTest : testing::Test
{
    /// The eye looks at the active entity; the tool is as in a frame before a press.
    void frame(bool bLocal = false)
    {
        centre = world.entities.pivot(world.entities.active()).position;
        eye = centre + glm::vec3(-30.0f, -40.0f, 35.0f);
        drag.updateTool(eye, 0.4f, {eye, centre}, true, bLocal);
    }
    [[nodiscard]] ToolRay through(const glm::vec3& point) const
    {
        return {eye, eye + glm::normalize(point - eye) * 4000.0f};
    }
    /// A point on a handle along an axis of the shown tool.
    [[nodiscard]] glm::vec3 onAxis(int iAxis) const
    {
        return centre + drag.tool().pose().axis(iAxis) * drag.tool().pose().size * 0.7f;
    }
    /// A whole drag of the arrow or cube of an axis, by metres along it.
    void dragAxis(int iAxis, float fWay, bool bLocal = false, bool bClone = false)
    {
        frame(bLocal);
        const glm::vec3 start = onAxis(iAxis);
        const glm::vec3 end = start + drag.tool().pose().axis(iAxis) * fWay;
        drag.beginTransform(through(start), bClone);
        ASSERT_EQ(drag.activeHandle() % 3, iAxis);
        ASSERT_TRUE(drag.isDragging());
        drag.applyTransform(through(end), bLocal);
        drag.endTransform();
    }

    LogCapture log;
    FakeWorld world;
    Entities& entities = world.entities;
    EntityDrag drag{entities};
    glm::vec3 centre{0.0f};
    glm::vec3 eye{0.0f};
};

void expectNear(const glm::vec3& actual, const glm::vec3& expected, float fError = 2e-3f)
{
    EXPECT_LT(glm::length(actual - expected), fError)
        << actual.x << " " << actual.y << " " << actual.z << " instead of " << expected.x << " " << expected.y
        << " " << expected.z;
}

TEST_F(EntityDragTest, movesAllOfTheSelectionAndLeavesTheRest)
{
    const Entity other = world.add({1.0f, 1.0f, 0.0f});
    const Entity first = world.addSelected({10.0f, 10.0f, 0.0f});
    const Entity last = world.addSelected({20.0f, 12.0f, 3.0f});
    dragAxis(0, 5.0f);
    expectNear(world.instance(first).origin.position, {15.0f, 10.0f, 0.0f});
    expectNear(world.instance(last).origin.position, {25.0f, 12.0f, 3.0f});
    EXPECT_EQ(world.instance(other).origin.position, glm::vec3(1.0f, 1.0f, 0.0f));
    EXPECT_TRUE(world.sink.uChanged & ChangeEntitySet);
    EXPECT_FALSE(drag.isDragging());
}

TEST_F(EntityDragTest, aPressOrAWayBackLeavesEveryBit)
{
    Transform start;
    start.position = {10.1f, 20.7f, 0.3f};
    start.rotation = glm::normalize(glm::quat(0.3f, 0.2f, -0.7f, 0.11f));
    start.scale = {0.13f, 0.29f, 0.71f};
    entities.select(world.add(start), false);
    frame();
    const ToolRay press = through(onAxis(2));
    world.sink.reset();
    drag.beginTransform(press, false);
    ASSERT_TRUE(drag.isDragging());
    drag.applyTransform(press, false);
    EXPECT_EQ(world.sink.uChanges, 0u);

    entities.setSnapping(true);
    drag.applyTransform(through(onAxis(2) + glm::vec3(0.0f, 0.0f, 7.0f)), false);
    EXPECT_FALSE(world.instance(entities.active()).origin == start);
    drag.applyTransform(through(onAxis(2) + glm::vec3(0.0f, 0.0f, 0.05f)), false); // snaps to no way at all
    EXPECT_EQ(world.instance(entities.active()).origin, start);
    drag.endTransform();
    drag.applyTransform(through(onAxis(2) + glm::vec3(0.0f, 0.0f, 9.0f)), false);
    EXPECT_EQ(world.instance(entities.active()).origin, start) << "nothing without a drag";
}

TEST_F(EntityDragTest, nothingBeginsOffTheHandlesOrWithoutASelection)
{
    const Entity entity = world.addSelected({10.0f, 10.0f, 0.0f});
    frame();
    drag.beginTransform(through(centre + glm::vec3(40.0f, 0.0f, 0.0f)), false);
    EXPECT_FALSE(drag.isDragging());
    const ToolRay good = through(onAxis(0));
    entities.clearSelection();
    drag.beginTransform(good, false);
    EXPECT_FALSE(drag.isDragging());
    entities.select(entity, false);
    drag.beginTransform(good, false);
    EXPECT_TRUE(drag.isDragging());
    entities.removeEntity(entity, true); // as undo may do in the middle
    drag.applyTransform(through(onAxis(0) + glm::vec3(3.0f, 0.0f, 0.0f)), false);
    drag.endTransform();
}

TEST_F(EntityDragTest, worldSpaceTurnsTheGroupAroundTheActiveOne)
{
    const Entity first = world.addSelected({12.0f, 10.0f, 0.0f});
    const Entity last = world.addSelected({10.0f, 10.0f, 0.0f});
    world.tools.transformMode = ModeRotate;
    frame();
    const float fRadius = drag.tool().pose().size * 0.86f;
    drag.beginTransform(through(centre + glm::vec3(0.0f, -fRadius, 0.0f)), false);
    ASSERT_EQ(drag.activeHandle(), HandleRing + 2);
    drag.applyTransform(through(centre + glm::vec3(fRadius, 0.0f, 0.0f)), false);
    drag.endTransform();
    expectNear(world.instance(last).origin.position, {10.0f, 10.0f, 0.0f}, 0.02f);
    expectNear(world.instance(first).origin.position, {10.0f, 12.0f, 0.0f}, 0.08f);
    expectNear(world.instance(first).origin.rotation * glm::vec3(1.0f, 0.0f, 0.0f), {0.0f, 1.0f, 0.0f},
               0.04f);
}

TEST_F(EntityDragTest, localSpaceMovesEachAlongItsOwnAxes)
{
    Transform turned;
    turned.position = {10.0f, 10.0f, 0.0f};
    turned.rotation = glm::angleAxis(glm::radians(90.0f), glm::vec3(0.0f, 0.0f, 1.0f));
    turned.scale = glm::vec3(0.25f);
    const Entity first = world.addSelected({20.0f, 12.0f, 3.0f});
    const Entity last = world.add(turned);
    entities.select(last, true);
    dragAxis(0, 2.0f, true);
    expectNear(world.instance(last).origin.position, {10.0f, 12.0f, 0.0f});
    expectNear(world.instance(first).origin.position, {22.0f, 12.0f, 3.0f});

    // A grid has no space of its own.
    entities.select(world.add(turned, 0, EntityTypeId_Grid), false);
    dragAxis(0, 2.0f, true);
    expectNear(world.instance(entities.active()).origin.position, {12.0f, 10.0f, 0.0f});
}

TEST_F(EntityDragTest, draggedByIsTheDeltaAroundTheCentre)
{
    Transform start;
    start.position = {5.0f, 0.0f, 1.0f};
    start.scale = glm::vec3(2.0f);
    TransformDelta delta;
    delta.translation = {1.0f, 0.0f, 0.0f};
    delta.rotation = glm::angleAxis(glm::radians(90.0f), glm::vec3(0.0f, 0.0f, 1.0f));
    delta.scale = {3.0f, 1.0f, 1.0f};
    ToolPose pose;
    pose.centre = {4.0f, 0.0f, 0.0f};
    const Transform out = draggedBy(start, delta, pose, ScaleCan, false);
    expectNear(out.position, {5.0f, 3.0f, 1.0f}, 1e-5f);
    expectNear(out.scale, {6.0f, 2.0f, 2.0f}, 1e-5f);
    const Transform local = draggedBy(start, delta, pose, 0, true);
    expectNear(local.position, {6.0f, 0.0f, 1.0f}, 1e-5f);
    expectNear(local.scale, {2.0f, 2.0f, 2.0f}, 1e-5f);
}

TEST_F(EntityDragTest, scaleKeepsToWhatTheThingAllows)
{
    const glm::vec3 unit(1.0f);
    const glm::vec3 factors(1.0f, 1.0f, 3.0f);
    EXPECT_EQ(scaledBy(unit, factors, ScaleCan), factors);
    EXPECT_EQ(scaledBy(unit, factors, ScaleCan | ScaleUniform), glm::vec3(3.0f));
    EXPECT_EQ(scaledBy(unit, factors, ScaleCan | ScaleUniform | ScaleKeepY), glm::vec3(3.0f, 1.0f, 3.0f));
    EXPECT_EQ(scaledBy(unit, glm::vec3(2.0f), ScaleCan | ScaleKeepY), glm::vec3(2.0f, 1.0f, 2.0f));
    EXPECT_EQ(scaledBy(unit, factors, ScaleUniform), unit) << "without the right to scale";
    // Nothing vanishes, and what has vanished can grow again.
    EXPECT_EQ(scaledBy(unit, {0.0f, 1.0f, 1.0f}, ScaleCan), glm::vec3(s_fLeast, 1.0f, 1.0f));
    EXPECT_EQ(scaledBy(glm::vec3(0.0f), {1.0f, 4.0f, 1.0f}, ScaleCan), glm::vec3(s_fLeast, 0.004f, s_fLeast));
    EXPECT_EQ(scaledBy(glm::vec3(0.0f), factors, ScaleCan | ScaleUniform), glm::vec3(0.003f));
    EXPECT_EQ(scaledBy({0.0f, 5.0f, 0.0f}, {2.0f, 2.0f, 2.0f}, ScaleCan | ScaleKeepY),
              glm::vec3(0.002f, 5.0f, 0.002f))
        << "the axis that can't scale doesn't count";
    EXPECT_EQ(scaledBy({0.0f, 5.0f, 0.0f}, glm::vec3(2.0f), ScaleCan), glm::vec3(s_fLeast, 10.0f, s_fLeast));
}

TEST_F(EntityDragTest, oneThatMovesByTheGridMakesAllSnap)
{
    const Entity plain = world.addSelected({10.0f, 10.0f, 0.0f});
    dragAxis(0, 0.3f);
    expectNear(world.instance(plain).origin.position, {10.3f, 10.0f, 0.0f});
    const Entity byGrid = world.addSelected({20.0f, 10.0f, 0.0f});
    world.pAssets->edit(byGrid.uId)->bByGrid = true;
    dragAxis(0, 0.3f);
    EXPECT_FLOAT_EQ(world.instance(byGrid).origin.position.x, 20.25f);
    EXPECT_NEAR(world.instance(plain).origin.position.x, 10.55f, 2e-3f);
}

TEST_F(EntityDragTest, cloningDragsCopiesConnectedToTheirSources)
{
    const Entity first = world.addSelected({10.0f, 10.0f, 0.0f});
    const Entity last = world.addSelected({20.0f, 10.0f, 0.0f});
    dragAxis(0, 4.0f, false, true);
    ASSERT_EQ(entities.count(), 4u);
    EXPECT_EQ(world.instance(first).origin.position.x, 10.0f);
    EXPECT_EQ(world.instance(last).origin.position.x, 20.0f);
    ASSERT_EQ(entities.selected().size(), 2u);
    expectNear(world.instance(entities.selected()[0]).origin.position, {14.0f, 10.0f, 0.0f});
    expectNear(world.instance(entities.active()).origin.position, {24.0f, 10.0f, 0.0f});
    EXPECT_TRUE(world.pAssets->bLastStored);
    EXPECT_THAT(world.pAssets->vecConnected,
                testing::ElementsAre(std::pair(entities.selected()[0].uId, first.uId),
                                     std::pair(entities.active().uId, last.uId)));

    world.pAssets->bNoClones = true;
    frame();
    drag.beginTransform(through(onAxis(0)), true);
    EXPECT_FALSE(drag.isDragging()) << "nothing could be copied";
    EXPECT_TRUE(entities.selected().empty());
}

TEST_F(EntityDragTest, dragsMoveThePivotThatIsChosen)
{
    Transform start;
    start.position = {10.0f, 10.0f, 0.0f};
    start.scale = glm::vec3(1.0f);
    const Entity entity = world.add(start);
    entities.select(entity, false);
    world.tools.transformMode = ModeScale;
    dragAxis(2, drag.tool().pose().size);
    const float fScale = world.instance(entity).origin.scale.z;
    EXPECT_GT(fScale, 1.1f);
    expectNear(entities.pivot(entity).position, {10.0f, 10.0f, 2.0f}); // the middle stayed
    expectNear(world.instance(entity).origin.position, {10.0f, 10.0f, 2.0f - 2.0f * fScale});

    entity.pType->setOriginTransform(entity.uId, start);
    entities.setTransformAroundOrigin(true);
    dragAxis(2, drag.tool().pose().size);
    EXPECT_GT(world.instance(entity).origin.scale.z, 1.1f);
    EXPECT_EQ(world.instance(entity).origin.position, start.position);
}

} // namespace
