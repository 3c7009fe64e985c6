#include "Tests/Ground/GroundWorld.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Ground/DisplayColor.h"

#include <gtest/gtest.h>

namespace
{

using namespace tilebuilder;

TEST(Brush, falloffsFollowTheirFormulas)
{
    const float arrAtHalf[] = {0.5f, 0.5f, 0.75f, 0.25f, 1.0f, 1.1968268f * std::exp(-1.125f)};
    const float arrAtRim[] = {0.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.013296f};
    const float arrAtCentre[] = {1.0f, 1.0f, 1.0f, 1.0f, 1.0f, 1.1968268f};
    for (size_t i = 0; i < BrushCount; ++i)
    {
        EXPECT_NEAR(brush(i)->falloff(0.5f), arrAtHalf[i], 1e-6f) << brushName(i);
        EXPECT_NEAR(brush(i)->falloff(0.0f), arrAtRim[i], 1e-5f) << brushName(i);
        EXPECT_NEAR(brush(i)->falloff(1.0f), arrAtCentre[i], 1e-6f) << brushName(i);
        float arrRow[] = {0.0f, 0.25f, 0.5f, 0.7f, 1.0f};
        brush(i)->falloffRow(arrRow);
        EXPECT_EQ(arrRow[3], brush(i)->falloff(0.7f)) << brushName(i);
    }
}

TEST(Stroke, raisesTheCircleAndNothingElse)
{
    GroundWorld world;
    world.surface.raise(GroundWorld::dab(32, 32, 6.0f, 0.5f), 1.0f);
    for (uint32_t j = 0; j < 33; ++j)
        for (uint32_t i = 0; i < 33; ++i)
        {
            const float fDistance =
                std::hypot(static_cast<float>(i) * 2 - 32, static_cast<float>(j) * 2 - 32);
            EXPECT_EQ(world.at(i, j), fDistance <= 6.0f ? 0.5f : 0.0f) << i << ' ' << j;
            EXPECT_EQ(world.surface.vertices()[j * 33 + i].height, world.at(i, j));
        }
    EXPECT_EQ(world.sink.uMasks, static_cast<uint32_t>(ChangeSurface));
    world.surface.raise(GroundWorld::dab(32, 32, 6.0f, 1.0f, 0), 1.0f);
    EXPECT_FLOAT_EQ(world.at(16, 16), 1.5f);
    EXPECT_FLOAT_EQ(world.at(17, 16), 0.5f + 1.0f - 2.0f / 6.0f);
}

TEST(Stroke, radiusZeroAndFarAwayMakeNoDab)
{
    GroundWorld world;
    const uint64_t uRevision = world.surface.revision();
    for (const auto& dab : {GroundWorld::dab(32, 32, 0, 1), GroundWorld::dab(500, 500, 20, 1),
                            GroundWorld::dab(32, 32, NAN, 1), GroundWorld::dab(NAN, 32, 5, 1)})
    {
        world.surface.raise(dab, 1.0f);
        world.surface.flatten(dab);
        world.surface.smooth(dab);
        world.surface.paintColor({0, 0, 0, 1}, dab);
        world.surface.paintMaterial(0, false, dab);
    }
    world.surface.paintMaterial(8, false, GroundWorld::dab(32, 32, 20, 1));
    world.surface.paintMaterial(-1, false, GroundWorld::dab(32, 32, 20, 1));
    EXPECT_EQ(world.surface.revision(), uRevision);
}

TEST(Stroke, theRimIsLockedAndTheLastRowIsNeverReached)
{
    for (const bool bLocked : {true, false})
    {
        GroundWorld world;
        world.surface.m_lockEdges = bLocked;
        world.surface.raise(GroundWorld::dab(32, 32, 500, 1), 1.0f);
        for (uint32_t i = 0; i < 33; ++i)
        {
            EXPECT_EQ(world.at(i, 0), bLocked || i == 32 ? 0.0f : 1.0f) << i;
            EXPECT_EQ(world.at(0, i), bLocked || i == 32 ? 0.0f : 1.0f) << i;
            EXPECT_EQ(world.at(i, 32), 0.0f);
            EXPECT_EQ(world.at(32, i), 0.0f);
        }
        EXPECT_EQ(world.at(31, 31), 1.0f);
    }
}

TEST(Stroke, loweringStopsAtTheBottom)
{
    GroundWorld world;
    for (int i = 0; i < 120; ++i)
        world.surface.raise(GroundWorld::dab(32, 32, 5, 1), -1.0f);
    EXPECT_EQ(world.at(16, 16), -95.0f);
}

TEST(Stroke, flattenPullsToTheFourVerticesAroundTheFormulasCentre)
{
    GroundWorld world;
    world.roughen();
    const HeightGrid grid{world.surface.heights(), 33, 33};
    const float fTarget = weightedAverage(grid, 16, 17, 0.5f); // trunc((32.5 + 1) / 2), trunc((33.2 + 1) / 2)
    const float fBefore = world.at(17, 16);
    world.surface.flatten(GroundWorld::dab(32.5f, 33.2f, 8, 0.25f));
    EXPECT_NEAR(world.at(17, 16), 0.75f * fBefore + 0.25f * fTarget, 1e-5f);
    world.surface.flatten(GroundWorld::dab(63.9f, 63.9f, 8, 1.0f)); // at the far corner
    EXPECT_TRUE(std::isfinite(world.at(31, 31)));
}

/// The literal form in float, to which the separated one must come close.
float literalAverage(const EditorTerrainSurface& surface, int i, int j, float r)
{
    const int k = static_cast<int>(r + 1);
    const float fSigma = r / 3;
    const auto g = [&](int a, int b)
    {
        const auto d = static_cast<float>(a - b);
        return std::exp(-0.5f / (fSigma * fSigma) * d * d) / (2.5066283f * fSigma);
    };
    double fSum = 0, fWeights = 0;
    for (int v = std::max(j - k, 0); v < std::min(j + k, static_cast<int>(surface.verticesY())); ++v)
        for (int u = std::max(i - k, 0); u < std::min(i + k, static_cast<int>(surface.verticesX())); ++u)
        {
            const float fWeight = (g(u, i) + g(v, j)) * 0.5f;
            fSum += static_cast<double>(
                fWeight *
                surface.heights()[static_cast<size_t>(v) * surface.verticesX() + static_cast<size_t>(u)]);
            fWeights += static_cast<double>(fWeight);
        }
    return static_cast<float>(fSum / fWeights);
}

struct SmoothTest : testing::TestWithParam<float>
{
};

TEST_P(SmoothTest, theSeparatedFormIsTheLiteralOneAlsoOnOblongTiles)
{
    for (const auto& [uX, uY] : {std::pair{1u, 1u}, {3u, 1u}, {1u, 2u}})
    {
        GroundWorld before(uX, uY);
        before.roughen();
        GroundWorld world(uX, uY);
        world.roughen();
        const float fX = 20.0f + 10.0f * static_cast<float>(uX);
        world.surface.smooth(GroundWorld::dab(fX, 33.0f, GetParam(), 0.6f));
        int iInside = 0;
        for (uint32_t j = 1; j < 32 * uY; ++j)
            for (uint32_t i = 1; i < 32 * uX; ++i)
            {
                const bool bInside = std::hypot(static_cast<float>(i) * 2 - fX,
                                                static_cast<float>(j) * 2 - 33.0f) <= GetParam();
                iInside += bInside;
                const float fTarget =
                    literalAverage(before.surface, static_cast<int>(i), static_cast<int>(j), GetParam() / 4);
                ASSERT_NEAR(world.at(i, j),
                            bInside ? 0.4f * before.at(i, j) + 0.6f * fTarget : before.at(i, j), 1e-4f)
                    << i << ' ' << j;
            }
        EXPECT_GT(iInside, 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Radii, SmoothTest, testing::Values(1.5f, 5.0f, 12.5f, 30.0f, 70.0f, 400.0f));

TEST(Stroke, aWeightIsAddedAndTakenAlone)
{
    GroundWorld world;
    const auto texel = [&](int iSet)
    { return (iSet ? world.surface.texels1() : world.surface.texels0())[20 * 65 + 30]; };
    world.surface.paintMaterial(1, false, GroundWorld::dab(30, 20, 3, 0.5f));
    world.surface.paintMaterial(6, false, GroundWorld::dab(30, 20, 3, 0.7f));
    EXPECT_EQ(texel(0), 128u << 8);
    EXPECT_EQ(texel(1), 179u << 16);
    world.surface.paintMaterial(6, false, GroundWorld::dab(30, 20, 3, 0.7f));
    EXPECT_EQ(texel(1), 255u << 16);
    world.surface.paintMaterial(1, true, GroundWorld::dab(30, 20, 3, 0.9f));
    EXPECT_EQ(texel(0), 0u);
    EXPECT_EQ(world.surface.texels0()[20 * 65 + 34], 0u);
    // Finer than bytes: many small strokes add up.
    for (int i = 0; i < 10; ++i)
        world.surface.paintMaterial(0, false, GroundWorld::dab(30, 20, 3, 0.001f));
    EXPECT_EQ(texel(0), 3u);
    // The far rim is reached.
    world.surface.paintMaterial(0, false, GroundWorld::dab(64, 64, 2, 1.0f));
    EXPECT_EQ(world.surface.texels0()[65 * 65 - 1], 255u);
}

TEST(Stroke, colourMovesTowardsTheBytesOfTheTool)
{
    GroundWorld world;
    world.surface.paintColor({0.5f, 0.25f, 0.0f, 1.0f}, GroundWorld::dab(64, 64, 3, 0.5f));
    const tile::ColorValue color = world.surface.colors()[33 * 33 - 1];
    EXPECT_NEAR(color.r, 0.5f + 0.5f * 127 / 255, 1e-5f); // 0.5 is byte 127
    EXPECT_NEAR(color.g, 0.5f + 0.5f * 63 / 255, 1e-5f);
    EXPECT_NEAR(color.b, 0.5f, 1e-5f);
    EXPECT_EQ(color.a, 1.0f);
    EXPECT_EQ(world.surface.vertices()[33 * 33 - 1].color, displayColor(tile::packColor(color), 32u, 32u));
    EXPECT_TRUE(world.surface.rebuild());
    EXPECT_FALSE(world.surface.rebuild());
}

} // namespace
