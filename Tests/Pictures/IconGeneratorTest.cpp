#include "KestrelCommon/Device/RecordingDevice.h"
#include "KestrelCommon/Resources/ResourceManager.h"
#include "KestrelCommon/renderer/Renderer.h"
#include "Tests/Renderer/TestScene.h"
#include "Tests/Support/LogCapture.h"
#include "Tests/Support/TempFolder.h"
#include "TileEditorCommon/Pictures/ObjectIcons.h"

#include <fstream>
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

namespace
{

std::shared_ptr<const resource::Renderable> boxObject()
{
    resource::RenderableDesc desc{.sMesh = "none", .mapMaterials = {}};
    auto pModel = std::make_shared<const resource::ModelFile>("none", [](std::string_view)
                                                              { return std::filesystem::path(); });
    return std::make_shared<const resource::Renderable>(desc, pModel, false);
}

} // namespace

/// Long, flat and tiny objects: all of them in sight, in the middle, as large as the picture allows.
TEST_F(IconGeneratorTest, objectsFillTheirPictures)
{
    for (const Aabb& box : {Aabb{{-2, 0, -2}, {2, 4, 2}}, Aabb{{-50, -1, 0}, {50, 1, 3}},
                            Aabb{{0, 0, 0}, {0.01f, 0.02f, 0.01f}}, Aabb{{5, 100, 5}, {6, 180, 6}}})
    {
        std::vector<glm::vec3> vecCorners;
        for (int i = 0; i < 8; ++i)
            vecCorners.emplace_back(i & 1 ? box.highest.x : box.lowest.x,
                                    i & 2 ? box.highest.y : box.lowest.y,
                                    i & 4 ? box.highest.z : box.lowest.z);
        const rend::SceneView view = IconGenerator::objectView(vecCorners);
        glm::vec2 low(1.0f);
        glm::vec2 high(-1.0f);
        for (const glm::vec3& corner : vecCorners)
        {
            // Upright: +Y of the model is up, its +Z looks to -Y; a quarter of a metre a unit.
            const glm::vec2 place = placeInView(view, glm::vec3(corner.x, -corner.z, corner.y) * 0.25f);
            low = glm::min(low, place);
            high = glm::max(high, place);
        }
        const glm::vec2 size = high - low;
        EXPECT_NEAR(std::max(size.x, size.y), 2.0f / 1.06f, 0.01f);
        EXPECT_NEAR(low.x + high.x, 0.0f, 0.01f);
        EXPECT_NEAR(low.y + high.y, 0.0f, 0.01f);
    }
}

TEST_F(IconGeneratorTest, iconsAreMadeInTurnAndWrittenWhereTheyCan)
{
    IconGenerator generator(m_renderer);
    std::vector<std::string> vecDone;
    ObjectIcons icons(generator, [&](const Uuid&, const std::string& sPath) { vecDone.push_back(sPath); });
    std::ofstream(m_folder.path() / "file") << "no folder";
    for (uint8_t u = 1; u <= 3; ++u)
    {
        const std::string sName = "/" + std::to_string(u) + ".png";
        icons.request(
            {Uuid{{u}}, boxObject(), {}, {"$NOWHERE" + sName, "$HERE/file" + sName, "$HERE/a/b" + sName}});
        icons.request({Uuid{{u}}, boxObject(), {}, {"$HERE/again.png"}}); // waits already
    }
    EXPECT_EQ(icons.waiting(), 3u);
    icons.update(2);
    EXPECT_EQ(vecDone, (std::vector<std::string>{"$HERE/a/b/1.png", "$HERE/a/b/2.png"}));
    icons.update(2);
    icons.update(2);
    EXPECT_EQ(vecDone.size(), 3u);
    const auto picture = resource::loadPicture(m_folder.path() / "a/b/3.png");
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->iWidth, static_cast<int>(IconGenerator::s_uObjectSide));
    icons.request({Uuid{{9}}, boxObject(), {}, {"$NOWHERE/a.png"}});
    icons.update();
    EXPECT_EQ(vecDone.back(), ""); // told, so that nobody waits for it
}

/// On a real driver: the object stands in the middle before nothing.
TEST(ObjectPictureTest, objectStandsBeforeNothing)
{
    if (!TestScene::isAvailable())
        GTEST_SKIP() << "no game folder";
    TestScene scene(64, 64);
    ASSERT_TRUE(scene.m_bReady);
    TempFolder folder;
    resource::PathResolver fnGame = scene.m_pResources->resolver();
    const std::string sPath = (folder.path() / "icon.png").string();
    const char* pFolder = std::getenv("QM_TEST_PICTURES");
    const auto draw = [&](const std::string& sMesh, const std::string& sFile)
    {
        const std::filesystem::path rend = fnGame("$GAME_DATA/Environment/" + sMesh + ".rend");
        std::ifstream file(rend);
        const auto desc =
            resource::parseRenderable(std::string((std::istreambuf_iterator<char>(file)), {}), sMesh);
        EXPECT_TRUE(desc);
        const auto pRenderable = std::make_shared<const resource::Renderable>(
            *desc, std::make_shared<const resource::ModelFile>(desc->sMesh, fnGame), false);
        IconGenerator generator(*scene.m_pRenderer);
        while (!generator.prepareObject(pRenderable))
            scene.m_pResources->update();
        const std::string sTo = pFolder ? std::string(pFolder) + "/" + sFile : sPath;
        // The resolver of the scene puts what has no key into the game folder.
        const std::string sKeyed =
            std::filesystem::relative(sTo, std::filesystem::path(QM_GAME_DIR) / "Data").string();
        EXPECT_EQ(
            generator.renderObject(std::array{sKeyed}, pRenderable, std::array{0xFF78A8C8u, 0xFF60906Cu}),
            sKeyed);
        return resource::loadPicture(sTo);
    };
    for (const char* pName : {"Trees/env_tree_oak_01", "Rocks/env_rock_granite_large_01",
                              "Crates/env_crate_small_01", "Fences/env_fence_plank_4m_01"})
    {
        const auto picture = draw(pName, "icon_" + std::filesystem::path(pName).filename().string() + ".png");
        ASSERT_TRUE(picture);
        size_t uCovered = 0;
        for (size_t u = 3; u < picture->vecPixels.size(); u += 4)
            uCovered += picture->vecPixels[u] == std::byte{255};
        const size_t uPixels = picture->vecPixels.size() / 4;
        EXPECT_GT(uCovered, uPixels / 20) << pName;
        EXPECT_LT(uCovered, uPixels * 95 / 100) << pName;
        EXPECT_EQ(picture->vecPixels[3], std::byte{0}) << pName; // a corner
    }
}
