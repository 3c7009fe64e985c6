// Every asset as the renderer shows it. With QM_TEST_PICTURES set, sheets of them are kept to look at.

#include "KestrelCommon/renderer/InstanceWorld.h"
#include "Tests/Content/StarterAssets.h"
#include "Tests/Renderer/TestScene.h"
#include "Tests/Support/LogCapture.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <glm/geometric.hpp>
#include <gtest/gtest.h>

namespace
{

constexpr int s_iSide = 300;
constexpr int s_iColumns = 4;
constexpr float s_fMiddle = 32.0f; ///< metres, where an asset stands on the ground of one cell

/// Pixels that the asset changed, as a share of the picture.
double changed(const resource::Picture& a, const resource::Picture& b)
{
    size_t uCount = 0;
    for (size_t u = 0; u < a.vecPixels.size(); u += 4)
        for (size_t k = 0; k < 3; ++k)
            if (std::abs(static_cast<int>(a.vecPixels[u + k]) - static_cast<int>(b.vecPixels[u + k])) > 10)
            {
                ++uCount;
                break;
            }
    return static_cast<double>(uCount) / static_cast<double>(a.vecPixels.size() / 4);
}

/// The eye stands to the south-east, a little above, so that the model fills the picture.
void look(Camera& camera, const Aabb& box)
{
    const glm::vec3 size = box.size() * 0.25f;
    const glm::vec3 centre =
        glm::vec3(s_fMiddle, s_fMiddle, 0.0f) + 0.25f * glm::vec3(0.5f * (box.lowest.x + box.highest.x),
                                                                  -0.5f * (box.lowest.z + box.highest.z),
                                                                  0.5f * (box.lowest.y + box.highest.y));
    const float fAway = 1.25f * glm::length(size) + 0.3f;
    const glm::vec3 way = glm::normalize(glm::vec3(-0.62f, 1.0f, -0.48f));
    camera.position = centre - way * fAway;
    const glm::vec3 right = glm::normalize(glm::cross(way, glm::vec3(0.0f, 0.0f, 1.0f)));
    camera.rotation = glm::quat_cast(glm::mat3(right, way, glm::cross(right, way)));
}

struct Sheet
{
    std::string sName;
    std::vector<std::byte> vecPixels;
    int iCount = 0;

    void add(const resource::Picture& picture)
    {
        const int iRow = iCount / s_iColumns;
        const int iColumn = iCount % s_iColumns;
        ++iCount;
        vecPixels.resize(static_cast<size_t>((iRow + 1) * s_iSide * s_iColumns * s_iSide) * 4,
                         std::byte{255});
        for (int iY = 0; iY < s_iSide; ++iY)
            std::copy_n(picture.vecPixels.begin() + static_cast<ptrdiff_t>(iY) * s_iSide * 4, s_iSide * 4,
                        vecPixels.begin() +
                            (static_cast<ptrdiff_t>(iRow * s_iSide + iY) * s_iColumns * s_iSide +
                             static_cast<ptrdiff_t>(iColumn) * s_iSide) *
                                4);
    }
    void keep() const
    {
        if (const char* pFolder = std::getenv("QM_TEST_PICTURES"); pFolder && iCount > 0)
            (void)resource::writePicture(
                std::filesystem::path(pFolder) / ("sheet_" + sName + ".png"), s_iSide * s_iColumns,
                static_cast<int>(vecPixels.size() / 4 / (s_iSide * s_iColumns)), vecPixels);
    }
};

TEST(ContactSheet, everyAssetShows)
{
    if (!TestScene::isAvailable())
        GTEST_SKIP() << "no game folder";
    LogCapture log;
    TestScene scene(s_iSide, s_iSide, std::getenv("QM_TEST_HARDWARE_PATH") != nullptr);
    if (!scene.m_bReady)
        GTEST_SKIP() << "no driver";
    scene.setGround(1,
                    [](float, float)
                    {
                        TestGroundSample sample;
                        sample.arrWeights[0] = 1.0f;
                        return sample;
                    });
    rend::InstanceWorld world;
    scene.m_pRenderer->setInstances(&world);
    const char* pOnly = std::getenv("QM_TEST_ONLY");
    Sheet sheet;
    std::vector<StarterAsset> vecAssets = starterAssets();
    for (const char* pFigure :
         {"$GAME_DATA/Character/character.rend", "$GAME_DATA/TileEditor/gui_gizmo_origin.rend"})
    {
        vecAssets.emplace_back();
        vecAssets.back().entry.sName = pFigure;
        vecAssets.back().sSet = "figures.json";
        vecAssets.back().pRenderable = starterRenderable(pFigure);
    }
    for (const StarterAsset& asset : vecAssets)
    {
        ASSERT_TRUE(asset.pRenderable) << asset.entry.sName;
        const std::string sSet = std::filesystem::path(asset.sSet).stem().string();
        if (pOnly && sSet != pOnly)
            continue;
        if (sheet.sName != sSet)
        {
            sheet.keep();
            sheet = {sSet, {}, 0};
        }
        look(scene.m_camera, asset.pRenderable->model().box);
        scene.draw();
        const resource::Picture empty = scene.picture();

        std::vector<uint32_t> vecColours;
        for (const std::string& sSlot : asset.pRenderable->colorSlots())
        {
            const auto it = asset.entry.mapDefaultColors.find(sSlot);
            vecColours.push_back(it == asset.entry.mapDefaultColors.end() ? 0xFFFFFFFF : it->second);
        }
        const uint32_t uRenderable = world.addRenderable(asset.pRenderable);
        const uint32_t uSlot = world.addInstance(
            uRenderable,
            {{s_fMiddle, s_fMiddle, 0.0f}, {0.70710677f, 0.70710677f, 0.0f, 0.0f}, glm::vec3(0.25f)},
            vecColours);
        for (int i = 0; i < 200; ++i) // until its pictures are loaded
        {
            scene.m_pResources->update();
            scene.draw();
            if (i > 2 && changed(empty, scene.picture()) > 0.02)
                break;
        }
        const resource::Picture shown = scene.picture();
        EXPECT_GT(changed(empty, shown), 0.004) << asset.entry.sName;
        EXPECT_LT(changed(empty, shown), 0.9) << asset.entry.sName;
        sheet.add(shown);
        world.removeInstance(uSlot);
    }
    sheet.keep();
    scene.m_pRenderer->setInstances(nullptr);
    EXPECT_EQ(log.errors() + log.warnings(), 0u) << log.dump();
}

} // namespace
