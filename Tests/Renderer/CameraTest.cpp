#include "KestrelCommon/renderer/Camera.h"

#include <gtest/gtest.h>

#include <glm/geometric.hpp>

namespace
{

struct CameraTest : testing::Test
{
    void SetUp() override
    {
        m_camera.width = 800.0f;
        m_camera.height = 600.0f;
        m_camera.nearPlane = 0.1f;
        m_camera.farPlane = 2000.0f;
        m_input.rightButton = true;
        m_input.flyAllowed = true;
    }

    static void expectNear(const glm::vec3& a, const glm::vec3& b, float fError = 1e-4f)
    {
        EXPECT_LT(glm::distance(a, b), fError)
            << a.x << ' ' << a.y << ' ' << a.z << " is not " << b.x << ' ' << b.y << ' ' << b.z;
    }

    Camera m_camera;
    CameraInput m_input;
};

} // namespace

TEST_F(CameraTest, mouseTurnsTheWayItMovesAndPitchStopsAtThePoles)
{
    expectNear(m_camera.forward(), {0, 1, 0});
    m_input.mouseX = 785.398f; // a quarter turn
    m_camera.update(0.01f, m_input);
    expectNear(m_camera.forward(), {1, 0, 0});
    expectNear(m_camera.right(), {0, -1, 0});

    m_input.mouseX = 0.0f;
    m_input.mouseY = 5000.0f;
    m_camera.update(0.01f, m_input);
    expectNear(m_camera.forward(), {0, 0, -1}, 1e-3f);
    m_input.mouseY = -20000.0f;
    m_camera.update(0.01f, m_input);
    expectNear(m_camera.forward(), {0, 0, 1}, 1e-3f);
    expectNear(m_camera.right(), {0, -1, 0}, 1e-3f);
    m_input.mouseY = 785.398f;
    m_camera.update(0.01f, m_input);
    expectNear(m_camera.forward(), {1, 0, 0}, 1e-3f);
}

TEST_F(CameraTest, keysMoveAtTheStatedSpeeds)
{
    m_camera.changeFlySpeed(1.0f);
    m_input.forward = true;
    m_input.right = true;
    m_input.down = true;
    m_camera.update(0.5f, m_input);
    expectNear(m_camera.position, {20, 20, -20});
    m_input = {.rightButton = true, .flyAllowed = true, .fast = true, .back = true};
    m_camera.update(0.25f, m_input);
    expectNear(m_camera.position, {20, -20, -20});
    m_camera.changeFlySpeed(-100.0f);
    EXPECT_FLOAT_EQ(m_camera.flySpeed, 0.3f);
    m_camera.changeFlySpeed(100.0f);
    EXPECT_FLOAT_EQ(m_camera.flySpeed, 6.0f);
}

TEST_F(CameraTest, clickIsToldFromDragAtTheRelease)
{
    const auto stroke = [&](float fPixels)
    {
        m_input.rightButton = true;
        m_input.mouseX = fPixels * 0.5f;
        m_camera.update(0.01f, m_input);
        m_camera.update(0.01f, m_input);
        m_input.mouseX = 0.0f;
        m_input.rightButton = false;
        m_camera.update(0.01f, m_input);
        EXPECT_FALSE(m_camera.flying);
        return m_camera.dragged;
    };
    EXPECT_FALSE(stroke(4.0f));
    EXPECT_TRUE(stroke(6.0f));
    EXPECT_FALSE(stroke(0.0f));

    // Over a widget nothing flies; once it flies it goes on over one.
    m_input = {.mouseX = 100.0f, .rightButton = true};
    m_camera.update(0.01f, m_input);
    EXPECT_FALSE(m_camera.flying);
    m_input.flyAllowed = true;
    m_camera.update(0.01f, m_input);
    m_input.flyAllowed = false;
    m_camera.update(0.01f, m_input);
    EXPECT_TRUE(m_camera.flying);
}

/// The way of a glide doesn't depend on the frame rate, it ends, and flying ends it at once.
TEST_F(CameraTest, glideArrivesAndIsCancelledByFlight)
{
    Camera coarse = m_camera;
    for (Camera* pCamera : {&m_camera, &coarse})
        pCamera->frame({50, 80, 10}, 20.0f, 30.0f, true);
    EXPECT_TRUE(m_camera.isGliding);
    expectNear(m_camera.position, {0, 0, 0});
    const CameraInput idle;
    for (int i = 0; i < 20; ++i)
        m_camera.update(0.005f, idle);
    for (int i = 0; i < 4; ++i)
        coarse.update(0.025f, idle);
    expectNear(m_camera.position, coarse.position, 1e-2f);
    for (int i = 0; i < 400 && m_camera.isGliding; ++i)
        m_camera.update(0.01f, idle);
    EXPECT_FALSE(m_camera.isGliding);
    EXPECT_EQ(m_camera.position, m_camera.targetPosition);

    EXPECT_TRUE(coarse.isGliding);
    m_input.mouseX = 30.0f;
    coarse.update(0.01f, m_input);
    EXPECT_FALSE(coarse.isGliding);
}

TEST_F(CameraTest, framingKeepsTheSideAndTheDistance)
{
    m_camera.fov = 90.0f;
    m_camera.position = {-30, 0, 99};
    m_camera.frame({0, 0, 5}, 10.0f, 30.0f, false);
    expectNear(m_camera.forward(), {std::cos(glm::radians(30.0f)), 0, -0.5f});
    expectNear(m_camera.position + m_camera.forward() * 10.0f, {0, 0, 5}, 1e-3f);
    EXPECT_NEAR(m_camera.right().z, 0.0f, 1e-5f);

    m_camera.frame({0, 0, 0}, 0.5f, 45.0f, false); // never closer than a size of 2
    EXPECT_NEAR(glm::length(m_camera.position), 2.0f, 1e-3f);
    m_camera.position = {0, 0, 50}; // straight above: no side to keep
    m_camera.frame({0, 0, 0}, 10.0f, 45.0f, false);
    EXPECT_NEAR(m_camera.forward().z, -std::sqrt(0.5f), 1e-4f);
    EXPECT_FALSE(std::isnan(m_camera.position.x));
}

/// A pixel's ray and the matrices agree, and depth is reversed.
TEST_F(CameraTest, raysAndMatricesAgree)
{
    m_camera.setPose({3, -4, 5}, Camera::rotationAlong({0.5f, 0.7f, -0.3f}));
    for (const glm::vec2 pixel :
         {glm::vec2(0, 0), glm::vec2(400, 300), glm::vec2(799, 12), glm::vec2(123, 600)})
    {
        const CameraRay ray = m_camera.ray(pixel.x, pixel.y);
        EXPECT_NEAR(glm::length(ray.direction), 1.0f, 1e-5f);
        glm::vec2 back;
        ASSERT_TRUE(m_camera.project(ray.origin + ray.direction * 70.0f, back));
        EXPECT_LT(glm::distance(back, pixel), 0.05f);
        EXPECT_FALSE(m_camera.project(ray.origin - ray.direction, back));
    }
    const auto depth = [&](float fAhead)
    {
        const glm::vec4 clip = m_camera.projectionMatrix() * m_camera.viewMatrix() *
                               glm::vec4(m_camera.position + m_camera.forward() * fAhead, 1.0f);
        return clip.z / clip.w;
    };
    EXPECT_NEAR(depth(0.1f), 1.0f, 1e-4f);
    EXPECT_NEAR(depth(2000.0f), 0.0f, 1e-6f);
    EXPECT_GT(depth(10.0f), depth(11.0f));
}
