// Instances as the software renderer draws them: lit, tinted, outlined, thinned in motion.

#include "KestrelCommon/renderer/InstanceWorld.h"
#include "Tests/Renderer/TestScene.h"
#include "Tests/Support/LogCapture.h"

#include <cmath>
#include <fstream>
#include <gtest/gtest.h>

namespace
{

using namespace rend;

constexpr float s_fSize = 128.0f;

float groundAt(float fX, float fY)
{
    return hillsAt(fX, fY, s_fSize).fHeight;
}

/// With the shaders for a CPU and, smaller, with those for a GPU.
struct InstancePictureTest : testing::TestWithParam<bool>
{
    InstancePictureTest() : m_scene(GetParam() ? 480 : 1280, GetParam() ? 270 : 720, GetParam()) {}

    void SetUp() override
    {
        if (!TestScene::isAvailable() ||
            !std::filesystem::exists(QM_GAME_DIR "/Data/Terrain/Assets/Nature/env_tree_oak_01.rend"))
            GTEST_SKIP() << "no game folder";
        ASSERT_TRUE(m_scene.m_bReady) << m_log.dump();
        m_scene.setGround(2, [](float x, float y) { return hillsAt(x, y, s_fSize); });
        m_scene.m_pRenderer->setInstances(&m_world);
    }

    uint32_t load(const std::string& sFolder, const std::string& sName)
    {
        std::ifstream file(QM_GAME_DIR "/" + sFolder + "/" + sName + ".rend");
        const std::string sText((std::istreambuf_iterator<char>(file)), {});
        const auto desc = resource::parseRenderable(sText, sName);
        if (!desc)
            return InstanceWorld::s_uNone;
        auto pModel =
            std::make_shared<const resource::ModelFile>(desc->sMesh, m_scene.m_pResources->resolver());
        return m_world.addRenderable(std::make_shared<const resource::Renderable>(*desc, pModel, false));
    }
    /// Upright on the ground, turned by degrees, in its unit scale.
    [[nodiscard]] static Transform standing(float fX, float fY, float fDegrees = 0.0f, float fScale = 0.25f)
    {
        const glm::quat upright(0.70710677f, 0.70710677f, 0.0f, 0.0f);
        return {{fX, fY, groundAt(fX, fY)},
                glm::angleAxis(glm::radians(fDegrees), glm::vec3(0, 0, 1)) * upright,
                glm::vec3(fScale)};
    }
    resource::Picture shot(const glm::vec3& from, const glm::vec3& to, const std::string& sName)
    {
        m_scene.m_camera.position = {from.x, from.y, from.z + groundAt(from.x, from.y)};
        m_scene.m_camera.lookAlong(glm::vec3(to.x, to.y, to.z + groundAt(to.x, to.y)) -
                                   m_scene.m_camera.position);
        m_scene.draw();
        m_scene.m_pResources->finishLoading();
        m_scene.draw();
        m_scene.keep("assets_" + sName + (GetParam() ? "_fine" : ""));
        return m_scene.picture();
    }

    LogCapture m_log;
    InstanceWorld m_world;
    TestScene m_scene;
};

/// Bytes of colour that differ by more than a little, as a share of the picture.
double difference(const resource::Picture& a, const resource::Picture& b)
{
    size_t uCount = 0;
    for (size_t u = 0; u < a.vecPixels.size(); ++u)
        uCount += std::abs(static_cast<int>(a.vecPixels[u]) - static_cast<int>(b.vecPixels[u])) > 12;
    return static_cast<double>(uCount) / static_cast<double>(a.vecPixels.size());
}

/// Mean of a channel where the pictures differ.
double meanWhereDifferent(const resource::Picture& picture, const resource::Picture& other, size_t uChannel)
{
    double fSum = 0.0;
    size_t uCount = 0;
    for (size_t u = 0; u < picture.vecPixels.size(); u += 4)
        if (std::abs(static_cast<int>(picture.vecPixels[u + 1]) - static_cast<int>(other.vecPixels[u + 1])) >
            12)
        {
            fSum += static_cast<double>(picture.vecPixels[u + uChannel]);
            ++uCount;
        }
    return uCount ? fSum / static_cast<double>(uCount) : 0.0;
}

TEST_P(InstancePictureTest, sceneOfAssetsIsLitLikeItsGround)
{
    const uint32_t uOak = load("Data", "Terrain/Assets/Nature/env_tree_oak_01");
    const uint32_t uPine = load("Data", "Terrain/Assets/Nature/env_tree_pine_01");
    const uint32_t uRock = load("Data", "Terrain/Assets/Nature/env_rock_granite_large_01");
    const uint32_t uStone = load("Data", "Terrain/Assets/Nature/env_rock_granite_small_01");
    const uint32_t uFence = load("Data", "Terrain/Assets/Village/vil_fence_plank_01");
    const uint32_t uWall = load("Data", "Terrain/Assets/Village/vil_wall_stone_01");
    const uint32_t uLamp = load("Data", "Terrain/Assets/Village/vil_lamp_post_01");
    const uint32_t uCrate = load("Survival", "Terrain/Assets/Camp/cmp_crate_wood_01");
    const uint32_t uBarrel = load("Survival", "Terrain/Assets/Camp/cmp_barrel_wood_01");
    const glm::vec3 eye(34, 22, 2.4f);
    const resource::Picture bare = shot(eye, {44, 40, 1}, "bare");

    const auto place = [&](uint32_t uKind, const Transform& transform, std::vector<uint32_t> vecColours)
    { return m_world.addInstance(uKind, transform, vecColours); };
    place(uOak, standing(50, 42, 20), {0xFF4C9A7E});
    place(uOak, standing(38, 60, 120, 0.3f), {0xFF4C8A8E});
    place(uPine, standing(43, 52), {0xFF4A7856});
    place(uPine, standing(56, 55, 70), {0xFF4A7856});
    place(uPine, standing(34, 48, 200, 0.2f), {0xFF5A8060});
    place(uRock, standing(55, 36, 40), {0xFF8C9AA3});
    place(uStone, standing(44.5f, 34, 10), {0xFF8C9AA3});
    place(uStone, standing(46, 33.2f, 80, 0.18f), {0xFF8C9AA3});
    for (int i = 0; i < 4; ++i)
        place(uFence, standing(30.0f + 4.0f * static_cast<float>(i), 40, 0), {0xFFC4D2D8});
    place(uWall, standing(47, 38.5f, 0), {0xFF9EAEB8, 0xFF88949C});
    place(uWall, standing(51, 38.5f, 0), {0xFF9EAEB8, 0xFF88949C});
    place(uLamp, standing(43, 36.5f, 200), {0xFFA0E2FF, 0xFF88949C});
    place(uCrate, standing(39.0f, 33, 15), {0xFF6B9AB9});
    place(uCrate, standing(40.4f, 33.6f, 50), {0xFF8B7A5A});
    place(uBarrel, standing(37.6f, 32.6f, 0), {0xFFB4CDE0});
    place(uBarrel, standing(38.1f, 31.2f, 0), {0xFF8090D0});
    const resource::Picture full = shot(eye, {44, 40, 1}, "near");
    const resource::Picture high = shot({20, 10, 22}, {44, 42, 0}, "high");
    shot({38, 28, 1.4f}, {40, 34, 0.8f}, "close");
    shot({47, 31, 1.8f}, {50, 39, 1.2f}, "stones");
    EXPECT_GT(difference(bare, full), 0.1);
    EXPECT_GT(difference(full, high), 0.1);
    // Neither glowing nor black.
    const double fMean = meanWhereDifferent(full, bare, 1);
    EXPECT_GT(fMean, 35.0);
    EXPECT_LT(fMean, 190.0);
    EXPECT_EQ(m_log.errors(), 0u) << m_log.dump();
}

TEST_P(InstancePictureTest, coloursTintTheirSlotAlone)
{
    const uint32_t uCrate = load("Survival", "Terrain/Assets/Camp/cmp_crate_wood_01");
    const glm::vec3 eye(38, 36, 1.5f);
    const uint32_t uSlot = m_world.addInstance(uCrate, standing(40, 40), std::array{0xFFFFFFFFu});
    const resource::Picture white = shot(eye, {40, 40, 0.5f}, "white");
    m_world.setColours(uSlot, std::array{0xFF0000FFu});
    const resource::Picture red = shot(eye, {40, 40, 0.5f}, "red");
    EXPECT_GT(difference(white, red), 0.01);
    EXPECT_GT(meanWhereDifferent(red, white, 0), 3.0 * meanWhereDifferent(red, white, 1));
    m_world.setColours(uSlot, std::array{0x000000FFu}); // no alpha, no tint
    EXPECT_LT(difference(white, shot(eye, {40, 40, 0.5f}, "untinted")), 0.001);
    m_world.removeInstance(uSlot);
    EXPECT_GT(difference(white, shot(eye, {40, 40, 0.5f}, "gone")), 0.02);
}

TEST_P(InstancePictureTest, outlinesShowOnAnyGroundAndThroughWhatHides)
{
    const uint32_t uRock = load("Data", "Terrain/Assets/Nature/env_rock_granite_large_01");
    const uint32_t uCrate = load("Survival", "Terrain/Assets/Camp/cmp_crate_wood_01");
    const glm::vec3 eye(38, 30, 2.0f);
    const glm::vec3 to(40, 44, 1.0f);
    m_world.addInstance(uCrate, standing(37.5f, 36), {});
    m_world.addInstance(uRock, standing(41, 40), std::array{0xFF8C9AA3u});
    m_world.addInstance(uCrate, standing(42, 46), {}); // behind the rock
    const resource::Picture plain = shot(eye, to, "no_outline");
    m_world.addHighlight(uCrate, standing(37.5f, 36));
    const resource::Picture open = shot(eye, to, "outline");
    EXPECT_GT(difference(plain, open), 0.002);
    m_world.addHighlight(uCrate, standing(42, 46));
    const resource::Picture both = shot(eye, to, "outline_hidden");
    EXPECT_GT(difference(open, both), 0.0005);
    m_world.removeHighlight(uCrate, 0);
    m_world.removeHighlight(uCrate, 0);
    EXPECT_EQ(difference(plain, shot(eye, to, "outline_gone")), 0.0);
}

INSTANTIATE_TEST_SUITE_P(Paths, InstancePictureTest, testing::Bool(),
                         [](const auto& path) { return path.param ? "Fine" : "Soft"; });

} // namespace
