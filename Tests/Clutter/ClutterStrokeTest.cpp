// What a stroke of the clutter brush hits.

#include "KestrelCommon/Core/Random.h"
#include "Tests/Support/LogCapture.h"
#include "TileEditorCommon/Clutter/EditorTerrainClutter.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Ground/Brush.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

#include <gtest/gtest.h>
#include <numeric>

namespace
{

using namespace tilebuilder;

constexpr uint8_t Empty = tile::EmptyClutter;

/// The same weight everywhere in the circle.
struct EvenBrush : BrushOf<EvenBrush>
{
    static float at(float) { return 1.0f; }
};

struct ClutterStrokeTest : testing::Test, EditorSinkI
{
    ClutterStrokeTest()
    {
        surface.init(128, 128);
        clutter.init(128, 128);
        seedRandom(7);
        uMasks = 0;
        iMarks = 0;
    }
    void markChanged(uint32_t uMask) override
    {
        uMasks |= uMask;
        ++iMarks;
    }
    void markInterfaceDirty(uint32_t) override {}

    [[nodiscard]] uint8_t at(int gx, int gy) const
    {
        return clutter.samples(gx / 128, gy / 128)[static_cast<size_t>(gy % 128 * 128 + gx % 128)];
    }
    void fill(uint8_t uType)
    {
        for (int iCell = 0; iCell < 4; ++iCell)
            clutter.setSamples(iCell % 2, iCell / 2, std::vector<uint8_t>(tile::SamplesPerPatch, uType));
        uMasks = 0;
        iMarks = 0;
    }
    [[nodiscard]] std::map<uint8_t, int> counts() const
    {
        std::map<uint8_t, int> mapCounts;
        for (int iCell = 0; iCell < 4; ++iCell)
            for (const uint8_t u : clutter.samples(iCell % 2, iCell / 2))
                ++mapCounts[u];
        return mapCounts;
    }

    LogCapture log;
    uint32_t uMasks = 0;
    int iMarks = 0;
    EvenBrush even;
    tile::ClutterDatabase database;
    EditorTerrainSurface surface{*this, nullptr};
    EditorTerrainClutter clutter{*this, surface, database};
};

TEST_F(ClutterStrokeTest, solidStrokeOfFullStrengthHitsEverySampleOfTheCircleAndNoOther)
{
    constexpr float s_fX = 63.4f, s_fY = 64.9f, s_fRadius = 7.3f; // over four cells
    clutter.paint(std::array<uint8_t, 2>{4, 9}, {s_fX, s_fY, s_fRadius, 1.0f, brush(4)}, false);
    int iInside = 0;
    std::set<uint8_t> setSeen;
    for (int gy = 0; gy < 256; ++gy)
        for (int gx = 0; gx < 256; ++gx)
        {
            const float fDx = 0.5f * static_cast<float>(gx) + 0.25f - s_fX;
            const float fDy = 0.5f * static_cast<float>(gy) + 0.25f - s_fY;
            const bool bInside = std::sqrt(fDx * fDx + fDy * fDy) <= s_fRadius;
            ASSERT_EQ(at(gx, gy) != Empty, bInside) << gx << ", " << gy;
            iInside += bInside;
            setSeen.insert(at(gx, gy));
        }
    EXPECT_GT(iInside, 600);
    EXPECT_EQ(setSeen, (std::set<uint8_t>{4, 9, Empty}));
    EXPECT_EQ(uMasks, static_cast<uint32_t>(ChangeClutter));
    EXPECT_EQ(iMarks, 1);
}

TEST_F(ClutterStrokeTest, chanceIsTheWeightAndTypesAreEquallyLikely)
{
    const std::array<uint8_t, 3> arrTypes = {1, 2, 3};
    clutter.paint(arrTypes, {64, 64, 60, 0.1f, &even}, false);
    const auto mapCounts = counts();
    const double fSamples = 3.14159 * 120 * 120;
    int iHits = 0;
    for (const uint8_t uType : arrTypes)
    {
        EXPECT_NEAR(mapCounts.at(uType) / (fSamples * 0.1 / 3), 1.0, 0.1) << int{uType};
        iHits += mapCounts.at(uType);
    }
    EXPECT_NEAR(iHits / fSamples, 0.1, 0.004);
}

TEST_F(ClutterStrokeTest, faintAndEmptyStrokesDoNothingAndLargeWeightsAlwaysHit)
{
    const uint64_t uRevision = clutter.revision();
    clutter.paint(std::array<uint8_t, 1>{1}, {64, 64, 40, 0.001f, &even}, false);
    clutter.paint({}, {64, 64, 40, 1.0f, &even}, false);
    clutter.paint({}, {64, 64, 40, 1.0f, &even}, true);
    clutter.paint(std::array<uint8_t, 1>{1}, {64, 64, 0, 1.0f, &even}, false);
    clutter.paint(std::array<uint8_t, 1>{1}, {-300, 64, 40, 1.0f, &even}, false);
    EXPECT_EQ(counts().at(Empty), 4 * tile::SamplesPerPatch);
    EXPECT_EQ(clutter.revision(), uRevision);
    EXPECT_EQ(iMarks, 0);

    // Gauss passes 1 near its centre, where n / w falls below n.
    clutter.paint(std::array<uint8_t, 1>{1}, {64, 64, 40, 1.0f, brush(5)}, false);
    for (int gy = 125; gy < 131; ++gy)
        for (int gx = 125; gx < 131; ++gx)
            EXPECT_EQ(at(gx, gy), 1);
}

/// With 15 bits a chance of one in 100,000 could not be drawn at all.
TEST_F(ClutterStrokeTest, rareHitsOfManyTypesAreNotLost)
{
    std::vector<uint8_t> vecTypes(200);
    std::iota(vecTypes.begin(), vecTypes.end(), uint8_t{0});
    for (int i = 0; i < 20; ++i)
        clutter.paint(vecTypes, {64, 64, 90, 0.002f, &even}, false); // 200 / 0.002 = 100,000
    const auto mapCounts = counts();
    EXPECT_NEAR(4 * tile::SamplesPerPatch - mapCounts.at(Empty), 65536 * (1 - std::pow(0.998, 20)), 250);
    EXPECT_GT(mapCounts.size(), 195u);
}

TEST_F(ClutterStrokeTest, erasingLeavesOtherTypesAlone)
{
    fill(3);
    clutter.paint(std::array<uint8_t, 1>{5}, {64, 64, 20, 1.0f, brush(4)}, false);
    const int iFives = counts().at(5);
    clutter.paint(std::array<uint8_t, 1>{3}, {64, 64, 40, 1.0f, brush(4)}, true);
    EXPECT_EQ(counts().at(5), iFives);
    EXPECT_EQ(at(128, 128), 5);
    EXPECT_EQ(at(128 + 60, 128), Empty);
    EXPECT_EQ(at(128 + 100, 128), 3);
    iMarks = 0;
    clutter.paint(std::array<uint8_t, 1>{3}, {64, 64, 40, 1.0f, brush(4)}, true);
    EXPECT_EQ(iMarks, 0) << "nothing was left to erase";
}

TEST_F(ClutterStrokeTest, onlyCellsThatChangedGetARevision)
{
    const uint64_t uBefore = clutter.revision();
    clutter.paint(std::array<uint8_t, 1>{0}, {20, 20, 10, 1.0f, brush(4)}, false);
    EXPECT_EQ(clutter.revision(), uBefore + 1);
    EXPECT_EQ(clutter.cellRevision(0, 0), uBefore + 1);
    EXPECT_LE(clutter.cellRevision(1, 0), uBefore);
}

} // namespace
