#include "TileEditorCommon/Pictures/IconGenerator.h"
#include "KestrelCommon/Device/RecordingDevice.h"
#include "KestrelCommon/Resources/ResourceManager.h"
#include "KestrelCommon/renderer/Renderer.h"
#include "Tests/Renderer/TestScene.h"
#include "Tests/Support/LogCapture.h"
#include "Tests/Support/TempFolder.h"

#include <gtest/gtest.h>

using namespace tilebuilder;

namespace
{

glm::vec2 placeInView(const rend::SceneView& view, const glm::vec3& point)
{
    const glm::vec4 clip = view.projection * view.view * glm::vec4(point, 1.0f);
    EXPECT_GE(clip.z, 0.0f);
    EXPECT_LE(clip.z, 1.0f);
    return clip;
}

/// A file system with one key, "$HERE", and a device that draws nothing.
struct IconGeneratorTest : testing::Test
{
    LogCapture m_log;
    TempFolder m_folder;
    rend::RecordingDevice m_device;
    resource::ResourceManager m_resources{m_device,
                                          [this](std::string_view sPath) {
                                              return sPath.starts_with("$HERE/")
                                                         ? m_folder.path() / sPath.substr(6)
                                                         : std::filesystem::path(sPath);
                                          },
                                          1, false};
    rend::Renderer m_renderer{m_device, m_resources};
};

} // namespace

/// For square and long tiles in both sizes: the tile's middle on the picture's axis, moved by the offset, all
/// corners in sight, and the quads all around.
TEST_F(IconGeneratorTest, tileLiesWholeInThePictureAmidItsQuads)
{
    for (const bool bSmall : {true, false})
        for (const glm::ivec2 cells :
             {glm::ivec2(1, 1), glm::ivec2(4, 4), glm::ivec2(16, 16), glm::ivec2(2, 5)})
        {
            const TilePictureFraming frame = IconGenerator::framing(bSmall);
            const rend::SceneView view = IconGenerator::tileView(cells.x, cells.y, frame);
            const glm::vec2 size = glm::vec2(cells) * 64.0f;
            const glm::vec2 middle = placeInView(view, {size * 0.5f, 0.0f});
            EXPECT_NEAR(middle.x, 0.0f, 1e-4f);
            EXPECT_NEAR(middle.y, 2.0f * frame.fOffset, 1e-4f);
            for (const glm::vec2 corner :
                 {glm::vec2(0, 0), glm::vec2(1, 0), glm::vec2(0, 1), glm::vec2(1, 1)})
            {
                const glm::vec2 place = placeInView(view, {corner * size, 0.0f});
                EXPECT_LT(std::abs(place.x), 1.2f);
                EXPECT_LT(std::abs(place.y), 1.2f);
            }
            // +Z is up in the picture.
            EXPECT_GT(placeInView(view, {size * 0.5f, 10.0f}).y, middle.y);

            ASSERT_EQ(view.uQuads, 8u);
            glm::vec2 sum(0.0f);
            for (const glm::vec2& quad : view.arrQuads)
            {
                EXPECT_NE(quad, glm::vec2(0.0f));
                sum += quad;
            }
            EXPECT_EQ(sum, glm::vec2(0.0f));
        }
}

TEST_F(IconGeneratorTest, pathWithoutAKeyIsRefusedBeforeAnythingIsDrawn)
{
    IconGenerator generator(m_renderer);
    EXPECT_FALSE(generator.renderTile("$NOWHERE/a.png", 1, 1, true));
    EXPECT_TRUE(m_log.has("Failed to create tile icon at non valid path: $NOWHERE/a.png"));
    EXPECT_TRUE(m_device.calls().empty());
}

TEST_F(IconGeneratorTest, targetsAreKeptSettingsComeBackAndTheFileHasThePicturesSize)
{
    IconGenerator generator(m_renderer);
    m_renderer.settings().exposure = 0.123f;
    EXPECT_TRUE(generator.renderTile("$HERE/a.png", 1, 1, true));
    EXPECT_TRUE(generator.renderTile("$HERE/b.jpg", 2, 1, true));
    EXPECT_EQ(m_device.targetCount(), 1u);
    EXPECT_EQ(m_renderer.settings().exposure, 0.123f);
    EXPECT_EQ(m_log.count("Saving texture icon to: $HERE/"), 2u);
    for (const char* pFile : {"a.png", "b.jpg"})
    {
        const auto picture = resource::loadPicture(m_folder.path() / pFile);
        ASSERT_TRUE(picture) << pFile;
        EXPECT_EQ(picture->iWidth, 220);
        EXPECT_EQ(picture->iHeight, 150);
    }
    EXPECT_FALSE(generator.renderTile("$HERE/missing/a.png", 1, 1, true));
}

/// Really drawn: the tile in the middle is the snow that was loaded, around it lie the quads.
TEST(TilePictureTest, showsTheTileAmidPlainGround)
{
    if (!TestScene::isAvailable())
        GTEST_SKIP() << "no game folder";
    LogCapture log;
    TempFolder folder;
    TestScene scene(64, 64);
    ASSERT_TRUE(scene.m_bReady) << log.dump();
    scene.setGround(2,
                    [](float, float)
                    {
                        TestGroundSample sample;
                        sample.arrWeights[7] = 1.0f;
                        sample.arrColour = {191, 191, 191};
                        return sample;
                    });
    IconGenerator generator(*scene.m_pRenderer);
    const std::string sFile = (folder.path() / "tile.png").string();
    ASSERT_TRUE(generator.renderTile(sFile, 2, 2, true)) << log.dump();
    const auto picture = resource::loadPicture(sFile);
    ASSERT_TRUE(picture);
    const auto green = [&](int iX, int iY)
    { return static_cast<int>(picture->vecPixels[static_cast<size_t>(iY * 220 + iX) * 4 + 1]); };
    EXPECT_GT(green(110, 93), 180);
    for (const auto& [iX, iY] : {std::pair{2, 2}, {217, 2}, {2, 147}, {217, 147}})
    {
        EXPECT_LT(green(iX, iY), 150);
        EXPECT_GT(green(iX, iY), 40);
    }
    EXPECT_EQ(log.errors(), 0u) << log.dump();
}
