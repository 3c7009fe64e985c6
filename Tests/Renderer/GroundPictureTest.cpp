#include "Tests/Renderer/TestScene.h"
#include "Tests/Support/LogCapture.h"

#include <gtest/gtest.h>

#include <glm/geometric.hpp>

namespace
{

struct Mean
{
    double r = 0.0;
    double g = 0.0;
    double b = 0.0;
    double spread = 0.0; ///< standard deviation of the green channel
};

/// Of a rectangle given in parts of the picture.
Mean meanOf(const resource::Picture& picture, double fLeft, double fTop, double fRight, double fBottom)
{
    Mean mean;
    double fSquares = 0.0;
    double fCount = 0.0;
    for (int iY = static_cast<int>(fTop * picture.iHeight); iY < static_cast<int>(fBottom * picture.iHeight);
         ++iY)
        for (int iX = static_cast<int>(fLeft * picture.iWidth);
             iX < static_cast<int>(fRight * picture.iWidth); ++iX)
        {
            const size_t u =
                (static_cast<size_t>(iY) * static_cast<size_t>(picture.iWidth) + static_cast<size_t>(iX)) * 4;
            const double fGreen = static_cast<double>(picture.vecPixels[u + 1]);
            mean.r += static_cast<double>(picture.vecPixels[u]);
            mean.g += fGreen;
            mean.b += static_cast<double>(picture.vecPixels[u + 2]);
            fSquares += fGreen * fGreen;
            fCount += 1.0;
        }
    mean.r /= fCount;
    mean.g /= fCount;
    mean.b /= fCount;
    mean.spread = std::sqrt(std::max(0.0, fSquares / fCount - mean.g * mean.g));
    return mean;
}

/// Mean difference of the green channels of two pictures of one size.
double differenceOf(const resource::Picture& a, const resource::Picture& b)
{
    double fSum = 0.0;
    for (size_t u = 1; u < a.vecPixels.size(); u += 4)
        fSum += std::abs(static_cast<double>(a.vecPixels[u]) - static_cast<double>(b.vecPixels[u]));
    return fSum * 4.0 / static_cast<double>(a.vecPixels.size());
}

struct GroundPictureTest : testing::TestWithParam<bool>
{
    void SetUp() override
    {
        if (!TestScene::isAvailable())
            GTEST_SKIP() << "no game folder";
    }

    /// All ground of one material, seen from above at a slant.
    static void setPlain(TestScene& scene, int iMaterial, std::array<uint8_t, 3> arrColour = {191, 191, 191})
    {
        scene.setGround(1,
                        [&](float, float)
                        {
                            TestGroundSample sample;
                            if (iMaterial < 8)
                                sample.arrWeights[static_cast<size_t>(iMaterial)] = 1.0f;
                            sample.arrColour = arrColour;
                            return sample;
                        });
        scene.m_camera.position = {32.0f, 20.0f, 14.0f};
        scene.m_camera.lookAlong({0.0f, 1.0f, -1.0f});
    }

    LogCapture m_log;
};

} // namespace

/// Each channel of both weight textures reaches its own layer, and no weight at all the ninth.
TEST_P(GroundPictureTest, everyWeightShowsItsOwnMaterial)
{
    TestScene scene(320, 180, GetParam());
    ASSERT_TRUE(scene.m_bReady) << m_log.dump();
    std::vector<Mean> vecMeans;
    std::vector<resource::Picture> vecPictures;
    for (int iMaterial = 0; iMaterial < 9; ++iMaterial)
    {
        setPlain(scene, iMaterial);
        scene.draw();
        vecPictures.push_back(scene.picture());
        vecMeans.push_back(meanOf(vecPictures.back(), 0.0, 0.5, 1.0, 1.0));
        EXPECT_GT(vecMeans.back().spread, 0.5) << iMaterial << " has no structure";
    }
    for (size_t a = 0; a < vecMeans.size(); ++a)
        for (size_t b = 0; b < a; ++b)
            EXPECT_GT(differenceOf(vecPictures[a], vecPictures[b]), 2.0)
                << a << " and " << b << " look the same";
    EXPECT_GT(vecMeans[0].g, vecMeans[0].r) << "grass is green";
    EXPECT_GT(vecMeans[5].r, vecMeans[5].b + 20.0) << "sand is warm";
    EXPECT_GT(vecMeans[7].g, 180.0) << "snow is bright";
    EXPECT_EQ(m_log.errors(), 0u) << m_log.dump();
}

TEST_P(GroundPictureTest, vertexColourBytesArriveInTheirOrder)
{
    TestScene scene(320, 180, GetParam());
    ASSERT_TRUE(scene.m_bReady) << m_log.dump();
    for (size_t uChannel = 0; uChannel < 3; ++uChannel)
    {
        std::array<uint8_t, 3> arrColour{20, 20, 20};
        arrColour[uChannel] = 191;
        setPlain(scene, 7, arrColour);
        scene.draw();
        const Mean mean = meanOf(scene.picture(), 0.0, 0.5, 1.0, 1.0);
        const std::array<double, 3> arrMean{mean.r, mean.g, mean.b};
        EXPECT_EQ(std::max_element(arrMean.begin(), arrMean.end()) - arrMean.begin(),
                  static_cast<std::ptrdiff_t>(uChannel));
    }
}

/// The sun stands at +X, +Y: a slope towards it is brighter than one away from it, and the sky is above.
TEST_P(GroundPictureTest, slopesTowardsTheSunAreBrighter)
{
    TestScene scene(320, 180, GetParam());
    ASSERT_TRUE(scene.m_bReady) << m_log.dump();
    scene.setGround(1,
                    [](float fX, float)
                    {
                        TestGroundSample sample;
                        sample.fHeight = 14.0f - std::abs(fX - 32.0f) * 0.45f;
                        sample.arrWeights[5] = 1.0f;
                        sample.arrColour = {191, 191, 191};
                        return sample;
                    });
    scene.m_camera.position = {32.0f, -14.0f, 26.0f};
    scene.m_camera.lookAlong({0.0f, 1.0f, -0.45f});
    scene.draw();
    const resource::Picture picture = scene.picture();
    const Mean away = meanOf(picture, 0.30, 0.55, 0.45, 0.75);
    const Mean towards = meanOf(picture, 0.55, 0.55, 0.70, 0.75);
    EXPECT_GT(towards.r, away.r + 20.0);
    EXPECT_GT(away.r, 60.0) << "the sky lights what the sun doesn't reach";
    scene.keep(GetParam() ? "slopes-fine" : "slopes-soft");
    scene.m_camera.lookAlong({0.0f, 1.0f, 0.4f});
    scene.draw();
    const Mean sky = meanOf(scene.picture(), 0.0, 0.0, 1.0, 0.3);
    EXPECT_GT(sky.b, sky.r + 10.0);
}

/// A line on the ground is seen whole, behind a hill only faintly; the untested one shines through.
TEST_P(GroundPictureTest, linesLieOnTheGroundAndFadeBehindIt)
{
    TestScene scene(320, 180, GetParam());
    ASSERT_TRUE(scene.m_bReady) << m_log.dump();
    setPlain(scene, 8);
    const glm::vec4 magenta(1.0f, 0.0f, 1.0f, 1.0f);
    const auto drawn = [&](float fZ, bool bDepthTest)
    {
        scene.m_debugDrawer.addLine({2.0f, 36.0f, fZ}, {62.0f, 36.0f, fZ}, magenta, bDepthTest);
        scene.draw();
        const resource::Picture picture = scene.picture();
        double fMost = 0.0;
        for (int iY = 0; iY < picture.iHeight; ++iY)
        {
            const size_t u = (static_cast<size_t>(iY) * 320 + 160) * 4;
            fMost = std::max(fMost, static_cast<double>(picture.vecPixels[u]) -
                                        static_cast<double>(picture.vecPixels[u + 1]));
        }
        return fMost;
    };
    const double fOn = drawn(0.0f, true);
    const double fUnder = drawn(-3.0f, true);
    const double fThrough = drawn(-3.0f, false);
    EXPECT_GT(fOn, 200.0);
    EXPECT_LT(fUnder, fOn * 0.6);
    EXPECT_GT(fUnder, 20.0);
    EXPECT_GT(fThrough, 200.0);
}

/// The pictures to judge by eye.
TEST_P(GroundPictureTest, hillsAreLitStructuredAndHazy)
{
    // The fine path is meant for a GPU: a CPU draws it small.
    TestScene scene(GetParam() ? 320 : 1280, GetParam() ? 180 : 720, GetParam());
    ASSERT_TRUE(scene.m_bReady) << m_log.dump();
    const float fSize = 128.0f;
    scene.setGround(2, [&](float fX, float fY) { return hillsAt(fX, fY, fSize); });
    struct Shot
    {
        const char* pName;
        glm::vec3 position;
        glm::vec3 direction;
    };
    const std::string sPath = GetParam() ? "fine" : "soft";
    for (const Shot& shot :
         {Shot{"over", {-12.0f, -22.0f, 38.0f}, {0.65f, 0.75f, -0.34f}},
          Shot{"down", {64.0f, 10.0f, 70.0f}, {0.0f, 0.6f, -0.7f}},
          Shot{"back", {118.0f, 122.0f, 42.0f}, {-0.62f, -0.66f, -0.42f}},
          Shot{"near", {58.0f, 40.0f, hillsAt(58.0f, 40.0f, fSize).fHeight + 1.8f}, {0.7f, 0.6f, -0.22f}},
          Shot{"feet", {30.0f, 60.0f, hillsAt(30.0f, 60.0f, fSize).fHeight + 1.8f}, {-0.5f, 0.5f, -0.55f}}})
    {
        scene.m_camera.position = shot.position;
        scene.m_camera.lookAlong(shot.direction);
        const auto outline = [&]
        {
            std::array<glm::vec3, 128> arrPoints;
            for (size_t u = 0; u < arrPoints.size(); ++u)
            {
                const float fAngle = 6.2831853f * static_cast<float>(u) / 128.0f;
                const glm::vec2 place(60.0f + 12.5f * std::cos(fAngle), 50.0f + 12.5f * std::sin(fAngle));
                arrPoints[u] = {place, hillsAt(place.x, place.y, fSize).fHeight};
            }
            scene.m_debugDrawer.addLoop(arrPoints, {1.0f, 0.816f, 0.267f, 1.0f});
        };
        outline();
        scene.draw();
        const Mean all = meanOf(scene.picture(), 0.0, 0.0, 1.0, 1.0);
        EXPECT_GT(all.spread, 8.0) << shot.pName;
        EXPECT_GT(all.g, 50.0) << shot.pName;
        EXPECT_LT(all.g, 220.0) << shot.pName;
        scene.keep(std::string(shot.pName) + "-" + sPath);
    }
    EXPECT_EQ(m_log.errors(), 0u) << m_log.dump();
}

/// What a first start shows: a flat tile of the ninth material, framed whole.
TEST_P(GroundPictureTest, freshTileFillsTheMiddleOfItsFrame)
{
    TestScene scene(640, 360, GetParam());
    ASSERT_TRUE(scene.m_bReady) << m_log.dump();
    setPlain(scene, 8);
    scene.m_camera.position = {0.0f, 0.0f, 0.0f};
    scene.m_camera.frame({32.0f, 32.0f, 0.0f}, std::sqrt(2.0f) * 32.0f, 45.0f, false);
    scene.draw();
    const resource::Picture picture = scene.picture();
    const Mean ground = meanOf(picture, 0.4, 0.4, 0.6, 0.6);
    const Mean middle = meanOf(picture, 0.49, 0.49, 0.51, 0.51);
    const Mean beside = meanOf(picture, 0.02, 0.92, 0.04, 0.94);
    EXPECT_GT(middle.spread, beside.spread * 2.0 + 1.0) << "the plain beside the tile is calm";
    EXPECT_GT(std::abs(ground.r - beside.r) + std::abs(ground.g - beside.g) + std::abs(ground.b - beside.b),
              12.0)
        << "the tile stands out from the plain";
    scene.keep(GetParam() ? "fresh-fine" : "fresh-soft");
}

INSTANTIATE_TEST_SUITE_P(Paths, GroundPictureTest, testing::Bool(),
                         [](const auto& path) { return path.param ? "Fine" : "Soft"; });
