// Clutter as the software renderer draws it.

#include "KestrelCommon/renderer/ClutterDraw.h"
#include "Tests/Renderer/TestScene.h"
#include "Tests/Support/LogCapture.h"

#include <cmath>
#include <fstream>
#include <gtest/gtest.h>

namespace
{

using namespace rend;

/// Plants on a lattice of half a metre; the function tells the type at a place, below 0 for none.
template <class TypeAt>
void plant(TestScene& scene, float fSize, const TypeAt& fnType)
{
    const ClutterTypes& types = scene.m_pRenderer->clutterTypes();
    for (float fY = 0.3f; fY < fSize; fY += 0.58f)
        for (float fX = 0.3f; fX < fSize; fX += 0.58f)
        {
            const int iType = fnType(fX, fY);
            if (iType < 0)
                continue;
            const auto uType = static_cast<uint8_t>(iType);
            const auto key = [](float f) { return static_cast<int16_t>(std::floor(f / 32.0f)); };
            StaticCullingGroup* pGroup = scene.m_pRenderer->cullingGroups().findOrCreate({key(fX), key(fY)});
            const auto at = [&](float x, float y) { return hillsAt(x, y, fSize).fHeight; };
            const glm::vec3 normal(at(fX - 1, fY) - at(fX + 1, fY), at(fX, fY - 1) - at(fX, fY + 1), 2.0f);
            pGroup->addClutter(types.mesh(uType), uType, {fX, fY, at(fX, fY)},
                               normal / std::hypot(normal.x, normal.y, normal.z), 0xBFBFBF00u,
                               types.size(uType));
        }
}

/// With the shaders for a CPU and, smaller, with those for a GPU.
struct ClutterPictureTest : testing::TestWithParam<bool>
{
    void SetUp() override
    {
        if (!TestScene::isAvailable())
            GTEST_SKIP() << "no game folder";
    }
    LogCapture m_log;
};

/// Bytes of colour that differ by more than a little, as a share of the picture.
double difference(const resource::Picture& a, const resource::Picture& b)
{
    size_t uCount = 0;
    for (size_t u = 0; u < a.vecPixels.size(); ++u)
        uCount += std::abs(static_cast<int>(a.vecPixels[u]) - static_cast<int>(b.vecPixels[u])) > 12;
    return static_cast<double>(uCount) / static_cast<double>(a.vecPixels.size());
}

/// Mean of the colour bytes.
double brightness(const resource::Picture& picture)
{
    double fSum = 0.0;
    for (size_t u = 0; u < picture.vecPixels.size(); u += 4)
        for (size_t k = 0; k < 3; ++k)
            fSum += static_cast<double>(picture.vecPixels[u + k]);
    return fSum / static_cast<double>(picture.vecPixels.size() / 4 * 3);
}

/// A meadow with all fourteen types in a band across it, seen from near and from afar.
TEST_P(ClutterPictureTest, plantsShowNearAndFar)
{
    const bool bFine = GetParam();
    TestScene scene(bFine ? 480 : 1280, bFine ? 270 : 720, bFine);
    ASSERT_TRUE(scene.m_bReady);
    tile::ClutterDatabase database;
    for (const char* pFolder : {"/Data", "/Survival"})
    {
        std::ifstream file(std::string(QM_GAME_DIR) + pFolder + "/Terrain/Database/clutter.json");
        const std::string sText((std::istreambuf_iterator<char>(file)), {});
        ASSERT_TRUE(database.loadText(sText, pFolder));
    }
    ASSERT_EQ(database.types().size(), 14u);
    ASSERT_TRUE(scene.m_pRenderer->loadClutter(database)) << m_log.dump();
    scene.m_pResources->finishLoading();
    constexpr float s_fSize = 128.0f;
    scene.setGround(2, [](float x, float y) { return hillsAt(x, y, s_fSize); });
    const auto shot = [&](const glm::vec3& from, const glm::vec3& to, const char* pName)
    {
        const auto above = [](const glm::vec3& p)
        { return glm::vec3(p.x, p.y, p.z + hillsAt(p.x, p.y, s_fSize).fHeight); };
        scene.m_camera.position = above(from);
        scene.m_camera.lookAlong(above(to) - scene.m_camera.position);
        scene.draw();
        scene.keep(pName + std::string(bFine ? "_fine" : ""));
        return scene.picture();
    };
    const auto shots = [&](const std::string& sPrefix)
    {
        return std::array{shot({30, 20, 2.2f}, {40, 60, 1}, (sPrefix + "near").c_str()),
                          shot({87, 44, 2.2f}, {110, 48, 0}, (sPrefix + "types").c_str()),
                          shot({64, -40, 60}, {64, 64, 0}, (sPrefix + "high").c_str()),
                          shot({64, -120, 40}, {64, 64, 0}, (sPrefix + "far").c_str())};
    };
    const auto arrBare = shots("bare_");
    plant(scene, s_fSize,
          [](float x, float y)
          {
              const int iDice =
                  static_cast<int>(std::fabs(std::sin(x * 12.9898f + y * 78.233f) * 43758.5f)) % 100;
              if (y > 40 && y < 54)
                  return static_cast<int>(x / 9.2f) % 14;
              return iDice < 50   ? 0
                     : iDice < 58 ? 1
                     : iDice < 62 ? 5
                     : iDice < 65 ? 6
                     : iDice < 75 ? 2
                     : iDice < 78 ? 7
                                  : -1;
          });
    const auto arrGreen = shots("green_");
    EXPECT_GT(difference(arrBare[0], arrGreen[0]), 0.05);
    EXPECT_GT(difference(arrBare[1], arrGreen[1]), 0.05);
    EXPECT_GT(difference(arrBare[2], arrGreen[2]), 0.01);
    EXPECT_GT(difference(arrBare[3], arrGreen[3]), 0.002);
    EXPECT_LT(difference(arrBare[3], arrGreen[3]), 0.2);
    // Lit like the ground they stand on: neither glowing nor black.
    const double fBare = brightness(arrBare[2]);
    EXPECT_NEAR(brightness(arrGreen[2]) / fBare, 1.0, 0.12);
    EXPECT_EQ(m_log.errors(), 0u) << m_log.dump();
}

INSTANTIATE_TEST_SUITE_P(Paths, ClutterPictureTest, testing::Bool(),
                         [](const auto& path) { return path.param ? "Fine" : "Soft"; });

} // namespace
