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
            StaticCullingGroup* pGroup =
                scene.m_pRenderer->cullingGroups().findOrCreate({key(fX), key(fY)});
            const auto at = [&](float x, float y) { return hillsAt(x, y, fSize).fHeight; };
            const glm::vec3 normal(at(fX - 1, fY) - at(fX + 1, fY), at(fX, fY - 1) - at(fX, fY + 1), 2.0f);
            pGroup->addClutter(types.mesh(uType), uType, {fX, fY, at(fX, fY)}, normal / std::hypot(normal.x, normal.y, normal.z),
                               0xBFBFBF00u, types.size(uType));
        }
}

struct ClutterPictureTest : testing::Test
{
    void SetUp() override
    {
        if (!TestScene::isAvailable())
            GTEST_SKIP() << "no game folder";
    }
    LogCapture m_log;
};

TEST_F(ClutterPictureTest, meadow)
{
    TestScene scene(getenv("QW") ? 160 : 1280, getenv("QW") ? 90 : 720);
    ASSERT_TRUE(scene.m_bReady);
    tile::ClutterDatabase database;
    const auto load = [&](const char* pFolder)
    {
        std::ifstream file(std::string(QM_GAME_DIR) + pFolder + "/Terrain/Database/clutter.json");
        const std::string sText((std::istreambuf_iterator<char>(file)), {});
        database.loadText(sText, pFolder);
    };
    load("/Data");
    load("/Survival");
    ASSERT_TRUE(scene.m_pRenderer->loadClutter(database)) << m_log.dump();
    scene.m_pResources->finishLoading();
    constexpr float s_fSize = 128.0f;
    scene.setGround(2, [](float x, float y) { return hillsAt(x, y, 128.0f); });
    if (!getenv("QN")) plant(scene, s_fSize,
          [](float x, float y)
          {
              const int iHash = static_cast<int>(std::fabs(std::sin(x * 12.9898f + y * 78.233f) * 43758.5f)) % 100;
              if (y > 40 && y < 54)
                  return static_cast<int>(x / 9.2f) % 14;
              return iHash < 50 ? 0 : iHash < 58 ? 1 : iHash < 62 ? 5 : iHash < 65 ? 6 : iHash < 75 ? 2 : iHash < 78 ? 7 : -1;
          });
    const auto shot = [&](const glm::vec3& from, const glm::vec3& to, const char* pName)
    {
        scene.m_camera.position = from;
        scene.m_camera.lookAlong(to - from);
        scene.draw();
        double fTook = 1e9; for (int k = 0; k < 6; ++k) fTook = std::min(fTook, scene.draw());
        std::printf("%s %.1f ms, %zu drawn\n", pName, fTook, scene.m_pRenderer->clutterDraw().drawnCount());
        scene.keep(pName);
    };
    const auto z = [](float x, float y) { return hillsAt(x, y, 128.0f).fHeight; };
    shot({30, 20, z(30, 20) + 2.2f}, {40, 60, z(40, 60) + 1}, "near");
    shot({40, 48, z(40, 48) + 2.6f}, {64, 46, z(64, 46)}, "types");
    shot({87, 44, z(87, 44) + 2.2f}, {110, 48, z(110, 48)}, "types2");
    shot({64, -40, 60}, {64, 64, 0}, "far");
    shot({64, -120, 60}, {64, 64, 0}, "impostors");
}

} // namespace
