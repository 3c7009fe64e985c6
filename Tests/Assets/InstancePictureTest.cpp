// Instances as the software renderer draws them: lit, tinted, outlined, thinned in motion.

#include "KestrelCommon/Assets/AssetSets.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "Tests/Renderer/TestScene.h"
#include "Tests/Support/LogCapture.h"

#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <json/value.h>

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
            !std::filesystem::exists(QM_GAME_DIR "/Data/Terrain/Database/AssetSets/trees.json"))
            GTEST_SKIP() << "no game folder";
        ASSERT_TRUE(m_scene.m_bReady) << m_log.dump();
        m_scene.setGround(2, [](float x, float y) { return hillsAt(x, y, s_fSize); });
        m_scene.m_pRenderer->setInstances(&m_world);
    }

    /// A renderable of the game's sets, by the asset's name, with its default colours.
    struct Kind
    {
        uint32_t uRenderable = InstanceWorld::s_uNone;
        std::vector<uint32_t> vecColours;
    };
    Kind load(const std::string& sSet, const std::string& sName)
    {
        std::ifstream setFile(QM_GAME_DIR "/Data/Terrain/Database/AssetSets/" + sSet + ".json");
        std::string sError;
        const auto jSet = parseJson(std::string((std::istreambuf_iterator<char>(setFile)), {}), sError);
        for (const terrain::AssetEntry& entry : terrain::readAssetSet(jSet.value()))
        {
            if (entry.sName != sName)
                continue;
            std::ifstream file(m_scene.m_pResources->resolver()(entry.sRenderable));
            const auto desc =
                resource::parseRenderable(std::string((std::istreambuf_iterator<char>(file)), {}), sName);
            auto pModel = std::make_shared<const resource::ModelFile>(desc.value().sMesh,
                                                                      m_scene.m_pResources->resolver());
            auto pRenderable = std::make_shared<const resource::Renderable>(*desc, pModel, false);
            Kind kind;
            for (const std::string& sSlot : pRenderable->colorSlots())
                kind.vecColours.push_back(entry.mapDefaultColors.at(sSlot));
            kind.uRenderable = m_world.addRenderable(std::move(pRenderable));
            return kind;
        }
        ADD_FAILURE() << "no asset " << sName;
        return {};
    }
    uint32_t place(const Kind& kind, const Transform& transform)
    {
        return m_world.addInstance(kind.uRenderable, transform, kind.vecColours);
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
    const Kind oak = load("trees", "env_tree_oak_01");
    const Kind pine = load("trees", "env_tree_pine_01");
    const Kind bush = load("trees", "env_bush_round_01");
    const Kind rock = load("rocks", "env_rock_granite_large_01");
    const Kind stone = load("rocks", "env_rock_granite_small_01");
    const Kind fence = load("fences", "env_fence_plank_4m_01");
    const Kind wall = load("fences", "env_fence_stone_4m_01");
    const Kind crate = load("crates", "env_crate_small_01");
    const Kind barrel = load("crates", "env_barrel_01");
    const glm::vec3 eye(34, 22, 2.4f);
    const resource::Picture bare = shot(eye, {44, 40, 1}, "bare");

    place(oak, standing(50, 42, 20));
    place(oak, standing(38, 60, 120, 0.3f));
    place(pine, standing(43, 52));
    place(pine, standing(56, 55, 70));
    place(pine, standing(34, 48, 200, 0.2f));
    place(rock, standing(55, 36, 40));
    place(stone, standing(44.5f, 34, 10));
    place(stone, standing(46, 33.2f, 80, 0.18f));
    for (int i = 0; i < 4; ++i)
        place(fence, standing(30.0f + 4.0f * static_cast<float>(i), 40));
    place(wall, standing(47, 38.5f));
    place(wall, standing(51, 38.5f));
    place(bush, standing(43, 36.5f, 200));
    place(crate, standing(39.0f, 33, 15));
    place(crate, standing(40.4f, 33.6f, 50));
    place(barrel, standing(37.6f, 32.6f));
    place(barrel, standing(38.1f, 31.2f));
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
    const Kind crate = load("crates", "env_crate_small_01");
    const glm::vec3 eye(38, 36, 1.5f);
    const uint32_t uSlot =
        m_world.addInstance(crate.uRenderable, standing(40, 40), std::array{0xFFFFFFFFu, 0xFFFFFFFFu});
    const resource::Picture white = shot(eye, {40, 40, 0.5f}, "white");
    m_world.setColours(uSlot, std::array{0xFF0000FFu, 0xFF0000FFu});
    const resource::Picture red = shot(eye, {40, 40, 0.5f}, "red");
    EXPECT_GT(difference(white, red), 0.01);
    EXPECT_GT(meanWhereDifferent(red, white, 0), 3.0 * meanWhereDifferent(red, white, 1));
    m_world.setColours(uSlot, std::array{0x000000FFu, 0x000000FFu}); // no alpha, no tint
    EXPECT_LT(difference(white, shot(eye, {40, 40, 0.5f}, "untinted")), 0.001);
    m_world.removeInstance(uSlot);
    EXPECT_GT(difference(white, shot(eye, {40, 40, 0.5f}, "gone")), 0.02);
}

TEST_P(InstancePictureTest, outlinesShowOnAnyGroundAndThroughWhatHides)
{
    const Kind rock = load("rocks", "env_rock_granite_large_01");
    const Kind crate = load("crates", "env_crate_small_01");
    const uint32_t uCrate = crate.uRenderable;
    const glm::vec3 eye(38, 30, 2.0f);
    const glm::vec3 to(40, 44, 1.0f);
    place(crate, standing(37.5f, 36));
    place(rock, standing(41, 40));
    place(crate, standing(42, 46)); // behind the rock
    const resource::Picture plain = shot(eye, to, "no_outline");
    m_world.addHighlight(uCrate, standing(37.5f, 36));
    const resource::Picture open = shot(eye, to, "outline");
    EXPECT_GT(difference(plain, open), 0.0005);
    m_world.addHighlight(uCrate, standing(42, 46));
    const resource::Picture both = shot(eye, to, "outline_hidden");
    EXPECT_GT(difference(open, both), 0.0002);
    m_world.removeHighlight(uCrate, 0);
    m_world.removeHighlight(uCrate, 0);
    EXPECT_EQ(difference(plain, shot(eye, to, "outline_gone")), 0.0);
}

/// A patch of ground, seen from above, on which a tree out of sight throws its shadow.
TEST_P(InstancePictureTest, shadowsFallOnTheGroundAndGoWithTheirObjects)
{
    const Kind pine = load("trees", "env_tree_pine_01");
    const auto patch = [this](const char* pName) {
        return shot({41.2f, 46.2f, 5.0f}, {41.2f, 46.4f, 0.0f}, pName);
    };
    const auto brightness = [](const resource::Picture& picture)
    {
        double fSum = 0.0;
        for (size_t u = 0; u < picture.vecPixels.size(); u += 4)
            fSum += static_cast<double>(picture.vecPixels[u + 1]);
        return fSum / static_cast<double>(picture.vecPixels.size() / 4);
    };
    const uint32_t uFar = place(pine, standing(100, 100));
    const resource::Picture bare = patch("unshadowed");
    const uint32_t uSlot = place(pine, standing(46, 50));
    const resource::Picture dark = patch("shadowed");
    EXPECT_LT(brightness(dark), 0.85 * brightness(bare));
    m_world.setTransform(uSlot, standing(90, 90));
    EXPECT_EQ(difference(bare, patch("shadow_moved")), 0.0);
    m_world.setTransform(uSlot, standing(46, 50));
    EXPECT_EQ(difference(dark, patch("shadow_back")), 0.0);
    m_world.removeInstance(uSlot);
    m_world.removeInstance(uFar);
    EXPECT_EQ(difference(bare, patch("shadow_gone")), 0.0);
}

INSTANTIATE_TEST_SUITE_P(Paths, InstancePictureTest, testing::Bool(),
                         [](const auto& path) { return path.param ? "Fine" : "Soft"; });

} // namespace
