#include "TileEditorCommon/Entities/TransformTool.h"

#include <cmath>
#include <glm/geometric.hpp>
#include <glm/trigonometric.hpp>
#include <gtest/gtest.h>

using namespace tilebuilder;

namespace
{

/// Seen from above and in front, far enough that perspective hardly matters.
struct TransformToolTest : testing::Test
{
    TransformToolTest()
    {
        pose.centre = {10.0f, 20.0f, 5.0f};
        pose.eye = pose.centre + glm::vec3(-30.0f, -40.0f, 35.0f);
        pose.size = 2.0f;
        tool.setPose(pose);
    }
    /// From the eye through a point, given from the centre in sizes of the tool along its axes.
    [[nodiscard]] ToolRay through(const glm::vec3& point) const
    {
        return throughWorld(tool.pose().centre + tool.pose().rotation * point * tool.pose().size);
    }
    [[nodiscard]] ToolRay throughWorld(const glm::vec3& point) const
    {
        const glm::vec3& eye = tool.pose().eye;
        return {eye, eye + glm::normalize(point - eye) * 4000.0f};
    }
    [[nodiscard]] int handleAt(const glm::vec3& point, uint8_t uMode) const
    {
        const auto hit = tool.hit(through(point), uMode);
        return hit ? int{hit->uHandle} : int{HandleNone};
    }
    [[nodiscard]] glm::vec3 world(const glm::vec3& metres) const { return tool.pose().centre + metres; }

    ToolPose pose;
    TransformTool tool;
    TransformTool::Snap snapping{true, false};
};

TEST_F(TransformToolTest, handlesAreFoundWhereTheyAreShown)
{
    for (const bool bTurned : {false, true})
    {
        if (bTurned)
            pose.rotation = glm::angleAxis(-0.15f, glm::vec3(0.0f, 0.0f, 1.0f));
        tool.setPose(pose);
        EXPECT_EQ(handleAt({0.7f, 0.0f, 0.0f}, ModeTranslate), 0);
        EXPECT_EQ(handleAt({0.0f, 0.7f, 0.0f}, ModeTranslate), 1);
        EXPECT_EQ(handleAt({0.0f, 0.0f, 0.7f}, ModeTranslate), 2);
        EXPECT_EQ(handleAt({0.0f, 0.42f, 0.42f}, ModeTranslate), 3);
        EXPECT_EQ(handleAt({0.42f, 0.0f, 0.42f}, ModeTranslate), 4);
        EXPECT_EQ(handleAt({0.42f, 0.42f, 0.0f}, ModeTranslate), 5);
        EXPECT_EQ(handleAt({0.7f, 0.0f, 0.0f}, ModeScale), 9);
        EXPECT_EQ(handleAt({0.0f, 0.88f, 0.0f}, ModeScale), 10);
        EXPECT_EQ(handleAt({0.0f, 0.0f, 0.88f}, ModeScale), 11);
        EXPECT_EQ(handleAt({1.3f, 0.0f, 0.0f}, ModeTranslate), HandleNone);
        EXPECT_EQ(handleAt({0.0f, 0.0f, 0.0f}, ModeTranslate), HandleNone);
        EXPECT_EQ(handleAt({0.7f, 0.0f, 0.0f}, 3), HandleNone);
    }
}

TEST_F(TransformToolTest, ringsCountOnTheEyesSideOnlyAndTheNearestWins)
{
    const float fOut = 0.86f * std::sqrt(0.5f);
    // The ring around Z: its half toward the eye is that of negative Y.
    EXPECT_EQ(handleAt({-fOut, -fOut, 0.0f}, ModeRotate), 8);
    EXPECT_EQ(handleAt({fOut, fOut, 0.0f}, ModeRotate), HandleNone);
    // Where two rings lie behind one another the one in front.
    const ToolRay ray = through({0.0f, -0.86f, 0.0f});
    const auto hit = tool.hit(ray, ModeRotate);
    ASSERT_TRUE(hit);
    EXPECT_TRUE(hit->uHandle == 6 || hit->uHandle == 8);
    EXPECT_GT(glm::dot(hit->point - pose.centre, pose.eye - pose.centre), 0.0f);
    EXPECT_NEAR(hit->distance, glm::length(hit->point - ray.start), 1e-3f);
    // A segment that ends before the tool takes nothing.
    EXPECT_FALSE(tool.hit({ray.start, ray.start + (ray.end - ray.start) * 0.001f}, ModeRotate));
}

TEST_F(TransformToolTest, handlesSeenEndOnCantBeTaken)
{
    pose.eye = pose.centre + glm::vec3(0.0f, 0.0f, 50.0f);
    tool.setPose(pose);
    EXPECT_EQ(handleAt({0.0f, 0.0f, 0.7f}, ModeTranslate), HandleNone);
    EXPECT_EQ(handleAt({0.42f, 0.42f, 0.0f}, ModeTranslate), 5);
    EXPECT_EQ(handleAt({0.7f, 0.0f, 0.0f}, ModeTranslate), 0);
    EXPECT_EQ(handleAt({0.608f, 0.608f, 0.0f}, ModeRotate), 8) << "the whole of a ring that is seen flat";
}

TEST_F(TransformToolTest, fillsTheSamePartOfTheViewFromAnyDistance)
{
    const float fNear = ToolPose::sizeFor({0, 0, 0}, {10.0f, 0.0f, 0.0f}, 0.4f);
    EXPECT_NEAR(ToolPose::sizeFor({0, 0, 0}, {0.0f, 100.0f, 0.0f}, 0.4f), 10.0f * fNear, 1e-4f);
    EXPECT_NEAR(ToolPose::sizeFor({0, 0, 0}, {10.0f, 0.0f, 0.0f}, 0.8f), 2.0f * fNear, 1e-5f);
    EXPECT_GT(ToolPose::sizeFor({1, 1, 1}, {1, 1, 1}, 0.4f), 0.0f);
}

TEST_F(TransformToolTest, pressingWhereItWasTakenDoesNothing)
{
    for (const uint8_t uMode : {ModeTranslate, ModeRotate, ModeScale})
        for (const glm::vec3& point : {glm::vec3(0.7f, 0.02f, 0.01f), glm::vec3(0.0f, -0.85f, 0.0f)})
        {
            const ToolRay ray = through(point);
            const auto hit = tool.hit(ray, uMode);
            if (!hit)
                continue;
            const auto delta = tool.delta(hit->uHandle, hit->point, ray, {});
            ASSERT_TRUE(delta);
            EXPECT_LT(glm::length(delta->translation), 1e-3f);
            EXPECT_NEAR(std::abs(delta->rotation.w), 1.0f, 1e-5f);
            EXPECT_LT(glm::length(delta->scale - glm::vec3(1.0f)), 1e-3f);
        }
}

TEST_F(TransformToolTest, movesAlongOneAxisOrInOnePlane)
{
    const glm::vec3 dragPoint = world({1.4f, 0.0f, 0.0f});
    for (const float fWay : {3.0f, -4.5f})
    {
        // The mouse strays off the line, across what it sees of it.
        const auto delta =
            tool.delta(0, dragPoint, throughWorld(dragPoint + glm::vec3(fWay, 0.0f, 0.0f)), {});
        ASSERT_TRUE(delta);
        EXPECT_NEAR(delta->translation.x, fWay, 1e-3f);
        EXPECT_EQ(delta->translation.y, 0.0f);
        EXPECT_EQ(delta->rotation, glm::quat(1.0f, 0.0f, 0.0f, 0.0f));
    }
    const auto plane = tool.delta(4, dragPoint, throughWorld(dragPoint + glm::vec3(2.0f, 0.0f, -1.0f)), {});
    ASSERT_TRUE(plane);
    EXPECT_NEAR(plane->translation.x, 2.0f, 1e-3f);
    EXPECT_EQ(plane->translation.y, 0.0f);
    EXPECT_NEAR(plane->translation.z, -1.0f, 1e-3f);

    pose.rotation = glm::angleAxis(glm::radians(90.0f), glm::vec3(0.0f, 0.0f, 1.0f)); // X is the world's Y
    tool.setPose(pose);
    const auto turned = tool.delta(0, world({0.0f, 1.4f, 0.0f}), throughWorld(world({0.0f, 3.4f, 0.0f})), {});
    ASSERT_TRUE(turned);
    EXPECT_NEAR(turned->translation.x, 2.0f, 1e-3f) << "in the axes of the tool";
}

TEST_F(TransformToolTest, rotatesByTheAngleAroundTheRing)
{
    const glm::vec3 dragPoint = world({0.0f, -1.72f, 0.0f});
    for (const float fDegrees : {30.0f, -100.0f, 179.0f})
    {
        const glm::quat turn = glm::angleAxis(glm::radians(fDegrees), glm::vec3(0.0f, 0.0f, 1.0f));
        // How far out the mouse is doesn't matter.
        const auto delta =
            tool.delta(8, dragPoint, throughWorld(pose.centre + turn * (dragPoint - pose.centre) * 1.5f), {});
        ASSERT_TRUE(delta);
        EXPECT_GT(std::abs(glm::dot(delta->rotation, turn)), 0.99999f) << fDegrees;
        EXPECT_EQ(delta->translation, glm::vec3(0.0f));
    }
    // Seen edge-on the way along the tangent counts instead.
    pose.eye = pose.centre + glm::vec3(0.0f, -50.0f, 0.0f);
    tool.setPose(pose);
    const auto edge = tool.delta(8, dragPoint, throughWorld(dragPoint + glm::vec3(0.86f, 0.0f, 0.0f)), {});
    ASSERT_TRUE(edge);
    EXPECT_NEAR(glm::angle(edge->rotation), 0.5f, 1e-3f);
    EXPECT_GT(edge->rotation.z, 0.0f);
}

TEST_F(TransformToolTest, scalesByTheRatioOfTheDistances)
{
    const glm::vec3 dragPoint = world({0.0f, 0.0f, 1.6f});
    const auto factor = [&](float fHeight)
    {
        const auto delta = tool.delta(11, dragPoint, throughWorld(world({0.0f, 0.0f, fHeight})), {});
        return delta ? delta->scale : glm::vec3(-1.0f);
    };
    EXPECT_LT(glm::length(factor(3.2f) - glm::vec3(1.0f, 1.0f, 2.0f)), 1e-3f);
    EXPECT_LT(glm::length(factor(0.8f) - glm::vec3(1.0f, 1.0f, 0.5f)), 1e-3f);
    EXPECT_EQ(factor(-2.0f).z, 0.0f) << "past the centre it doesn't grow again";
}

TEST_F(TransformToolTest, snapsEachToItsOwnSteps)
{
    const glm::vec3 dragPoint = world({1.4f, 0.0f, 0.0f});
    const auto moved = [&](float fWay)
    {
        const ToolRay ray = throughWorld(dragPoint + glm::vec3(fWay, 0.0f, 0.0f));
        return tool.delta(0, dragPoint, ray, snapping)->translation.x;
    };
    EXPECT_EQ(moved(0.3f), 0.25f);
    EXPECT_EQ(moved(0.4f), 0.5f);
    EXPECT_EQ(moved(-0.3f), -0.25f);
    EXPECT_EQ(moved(0.1f), 0.0f);

    const glm::vec3 onRing = world({0.0f, -1.72f, 0.0f});
    const auto turned = [&](float fDegrees, bool bForceGrid)
    {
        const glm::quat turn = glm::angleAxis(glm::radians(fDegrees), glm::vec3(0.0f, 0.0f, 1.0f));
        const ToolRay ray = throughWorld(pose.centre + turn * (onRing - pose.centre));
        const auto delta = tool.delta(8, onRing, ray, {true, bForceGrid});
        return glm::degrees(2.0f * std::atan2(delta->rotation.z, delta->rotation.w));
    };
    EXPECT_NEAR(turned(30.0f, false), 45.0f, 1e-3f);
    EXPECT_NEAR(turned(-20.0f, false), 0.0f, 1e-3f);
    EXPECT_NEAR(turned(30.0f, true), 0.0f, 1e-3f);
    EXPECT_NEAR(turned(-50.0f, true), -90.0f, 1e-3f);

    const glm::vec3 onCube = world({0.0f, 0.0f, 1.6f});
    const ToolRay ray = throughWorld(world({0.0f, 0.0f, 1.6f * 1.31f}));
    EXPECT_NEAR(tool.delta(11, onCube, ray, snapping)->scale.z, 1.3f, 1e-5f);
}

TEST_F(TransformToolTest, raysWithoutAMeasureChangeNothing)
{
    const glm::vec3 dragPoint = world({1.4f, 0.0f, 0.0f});
    const ToolRay along{dragPoint - glm::vec3(50.0f, 0.0f, 0.0f), dragPoint + glm::vec3(50.0f, 0.0f, 0.0f)};
    EXPECT_FALSE(tool.delta(0, dragPoint, along, {}));
    EXPECT_FALSE(tool.delta(4, dragPoint, along, {}));
    // Away from the tool: the closest place lies behind the eye.
    const glm::vec3 away = pose.eye + (pose.eye - pose.centre);
    EXPECT_FALSE(tool.delta(0, dragPoint, {pose.eye, away + glm::vec3(3.0f, 0.0f, 0.0f)}, {}));
    EXPECT_FALSE(tool.delta(5, dragPoint, {pose.eye, away}, {}));
    EXPECT_FALSE(tool.delta(0, dragPoint, {pose.eye, pose.eye}, {}));
    EXPECT_FALSE(tool.delta(HandleNone, dragPoint, throughWorld(dragPoint), {}));
    EXPECT_FALSE(tool.delta(8, pose.centre, throughWorld(dragPoint), {})) << "no radius";
    EXPECT_FALSE(tool.delta(9, pose.centre, throughWorld(dragPoint), {})) << "no distance";
}

} // namespace
