#include "Tests/Ground/GroundWorld.h"
#include "TileEditorCommon/Ground/BrushOutline.h"
#include "TileEditorCommon/Ground/CollisionWorld.h"
#include "TileEditorCommon/Ground/DisplayColor.h"

#include <btBulletCollisionCommon.h>
#include <gtest/gtest.h>
#include <numeric>

namespace
{

using namespace tilebuilder;

TEST(NoiseImage, isSmoothTilesAndHasTheRangeOfTheGround)
{
    const auto& arrValues = NoiseImage::values();
    EXPECT_EQ(*std::ranges::min_element(arrValues), 36);
    EXPECT_EQ(*std::ranges::max_element(arrValues), 199);
    EXPECT_NEAR(std::accumulate(arrValues.begin(), arrValues.end(), 0.0) / 4096.0, 125.6, 0.5);
    for (size_t i = 0; i < 4096; ++i)
    {
        const size_t uRight = i / 64 * 64 + (i + 1) % 64;
        EXPECT_LE(std::abs(arrValues[i] - arrValues[uRight]), 40) << i;
        EXPECT_LE(std::abs(arrValues[i] - arrValues[(i + 64) % 4096]), 40) << i;
    }
}

TEST(DisplayColor, darkensRedGreenBlueAndTurnsTheBytesAround)
{
    EXPECT_EQ(displayColor(0x80FF40C0u, 1.0f), 0xC040FF80u);
    EXPECT_EQ(displayColor(0xFF0A64C8u, 0.5f), 0x643205FFu);
    EXPECT_EQ(tintColor(0x12FFFFFFu, 0.75f), 0x12BFBFBFu);
}

TEST(Surface, aNewOneIsFlatWhiteAndUp)
{
    GroundWorld world(2, 1);
    EXPECT_EQ(world.surface.verticesX(), 65u);
    EXPECT_EQ(world.surface.texelsY(), 65u);
    EXPECT_EQ(world.surface.indices().size(), 64u * 32 * 6);
    world.surface.rebuild();
    EXPECT_EQ(world.surface.vertices()[100].normal, glm::vec3(0, 0, 1));
    const std::array arrFirst{65u, 1u, 0u, 65u, 66u, 1u}; // a flat quad splits b-c
    EXPECT_TRUE(std::equal(arrFirst.begin(), arrFirst.end(), world.surface.indices().begin()));
    EXPECT_EQ(world.surface.vertices()[0].color, displayColor(0xFFFFFFFF, 0u, 0u));
}

TEST(Surface, samplesBetweenVerticesAndAtTheFarCorner)
{
    GroundWorld world;
    world.surface.m_lockEdges = false;
    world.surface.raise(GroundWorld::dab(32, 32, 0.5f, 1), 1.0f);
    EXPECT_FLOAT_EQ(world.surface.getHeight(33.0f, 32.0f), 0.5f);
    EXPECT_FLOAT_EQ(world.surface.getHeight(33.0f, 33.0f), 0.25f);
    for (const auto& [x, y] : {std::pair{64.0f, 64.0f}, {1.0e9f, -5.0f}, {NAN, 3.0f}})
        EXPECT_TRUE(std::isfinite(world.surface.getHeight(x, y)));
    EXPECT_EQ(world.surface.getHeight(64, 64), world.at(32, 32));
    EXPECT_TRUE(world.surface.isInside(0, 63.99f));
    EXPECT_FALSE(world.surface.isInside(64, 10));
    EXPECT_FALSE(world.surface.isInside(-0.01f, 10));
    EXPECT_EQ(world.surface.getColor(0, 0), tintColor(0xFFFFFFFF, NoiseImage::factor(0, 0)));
    world.surface.release();
    EXPECT_EQ(world.surface.getHeight(10, 10), 0.0f);
    EXPECT_FALSE(world.surface.castRay({0, 0, 10}, {0, 0, -10}));
}

/// What a full rebuild gives, from the formulas.
void expectFullRebuild(const EditorTerrainSurface& surface)
{
    const uint32_t uX = surface.verticesX();
    const auto h = [&](uint32_t i, uint32_t j) { return surface.heights()[size_t{j} * uX + i]; };
    for (uint32_t j = 1; j < surface.quadsY(); ++j)
        for (uint32_t i = 1; i < surface.quadsX(); ++i)
        {
            const float dx = h(i + 1, j) - h(i - 1, j), dy = h(i, j + 1) - h(i, j - 1);
            const float s = 1.0f / std::sqrt(16 * (dx * dx + dy * dy) + 256);
            const glm::vec3 normal = surface.vertices()[size_t{j} * uX + i].normal;
            ASSERT_EQ(normal, glm::vec3(-4 * dx * s, -4 * dy * s, 16 * s)) << i << ' ' << j;
        }
    for (uint32_t j = 0; j < surface.quadsY(); ++j)
        for (uint32_t i = 0; i < surface.quadsX(); ++i)
        {
            const uint32_t a = j * uX + i, b = a + 1, c = a + uX, d = c + 1;
            const bool bBC = std::abs(h(i, j) - h(i + 1, j + 1)) >= std::abs(h(i + 1, j) - h(i, j + 1));
            const std::array arrQuad = bBC ? std::array{c, b, a, c, d, b} : std::array{d, b, a, c, d, a};
            ASSERT_TRUE(std::equal(arrQuad.begin(), arrQuad.end(),
                                   surface.indices().begin() + (size_t{j} * surface.quadsX() + i) * 6));
        }
}

TEST(Surface, aPartialRebuildGivesWhatAFullOneDoes)
{
    GroundWorld world(3, 2);
    world.roughen();
    expectFullRebuild(world.surface);
    for (const auto& dab : {GroundWorld::dab(100, 70, 9, 1, 1), GroundWorld::dab(3, 3, 4, 1),
                            GroundWorld::dab(190, 126, 6, 1, 2), GroundWorld::dab(64, 64, 1, 1),
                            GroundWorld::dab(90, 60, 200, 0.3f, 0)})
    {
        world.surface.clearPending();
        const uint64_t uHash = world.surface.indexHash();
        world.surface.raise(dab, 1.0f);
        world.surface.rebuild();
        expectFullRebuild(world.surface);
        GroundWorld fresh(3, 2);
        for (int iCell = 0; iCell < 6; ++iCell)
        {
            ByteStream stream;
            world.surface.writeCell(stream, iCell % 3, iCell / 3, 0);
            ASSERT_TRUE(fresh.surface.readCell(stream.bytes(), iCell % 3, iCell / 3));
        }
        fresh.surface.rebuild();
        EXPECT_EQ(fresh.surface.indexHash(), world.surface.indexHash());
        EXPECT_EQ(world.surface.pending().quads.empty(), world.surface.indexHash() == uHash);
        const glm::vec3 from{dab.x, dab.y, 300.0f};
        const auto hit = world.surface.castRay(from, {dab.x, dab.y, -300.0f});
        ASSERT_TRUE(hit);
        EXPECT_EQ(hit->position, fresh.surface.castRay(from, {dab.x, dab.y, -300.0f})->position);
    }
}

TEST(Surface, onlyTheTouchedCellsGetANewRevision)
{
    GroundWorld world(3, 3);
    const auto changed = [&](const std::function<void()>& fnChange)
    {
        std::array<uint64_t, 9> arrBefore{};
        for (int i = 0; i < 9; ++i)
            arrBefore[static_cast<size_t>(i)] = world.surface.cellRevision(i % 3, i / 3);
        fnChange();
        std::string sChanged;
        for (int i = 0; i < 9; ++i)
            sChanged +=
                arrBefore[static_cast<size_t>(i)] != world.surface.cellRevision(i % 3, i / 3) ? 'x' : '.';
        return sChanged;
    };
    EXPECT_EQ(changed([&] { world.surface.raise(GroundWorld::dab(96, 96, 10, 1), 1.0f); }), "....x....");
    EXPECT_EQ(changed([&] { world.surface.raise(GroundWorld::dab(96, 128, 1, 1), 1.0f); }), "....x..x.");
    EXPECT_EQ(changed([&] { world.surface.paintMaterial(0, false, GroundWorld::dab(64, 64, 0.5f, 1)); }),
              "xx.xx....");
    EXPECT_EQ(changed([&] { world.surface.paintColor({}, GroundWorld::dab(0, 0, 5, 1)); }), "x........");
    ByteStream stream;
    world.surface.writeCell(stream, 1, 1, 0);
    EXPECT_EQ(changed([&] { world.surface.readCell(stream.bytes(), 1, 1); }), "xxxxxxxxx");
}

TEST(Surface, ofCellsThatDifferOnTheirSharedEdgeTheLastReadStays)
{
    for (const bool bTogether : {false, true})
    {
        GroundWorld world(2, 2);
        std::vector<std::vector<std::byte>> vecCells;
        for (uint32_t i = 0; i < 4; ++i)
        {
            vecCells.emplace_back(tile::surfaceSectionSize(0));
            for (size_t uVertex = 0; uVertex < 33 * 33; ++uVertex)
            {
                const tile::VertexRecord record{static_cast<float>(i + 1), 0xFFFFFFFF};
                std::memcpy(vecCells.back().data() + uVertex * 8, &record, 8);
            }
        }
        std::vector<CellSection> vecSections;
        for (int i = 0; i < 4; ++i)
            vecSections.push_back({i % 2, i / 2, vecCells[static_cast<size_t>(i)]});
        if (bTogether)
            ASSERT_TRUE(world.surface.readCells(vecSections));
        else
            for (const CellSection& section : vecSections)
                ASSERT_TRUE(world.surface.readCell(section.spanBytes, section.iCellX, section.iCellY));
        EXPECT_EQ(world.at(32, 31), 2.0f);
        EXPECT_EQ(world.at(31, 32), 3.0f);
        EXPECT_EQ(world.at(32, 32), 4.0f);
        EXPECT_EQ(world.at(64, 64), 4.0f);
        EXPECT_EQ(world.at(64, 0), 2.0f);
        EXPECT_FALSE(world.surface.readCell(vecCells[0], 2, 0));
        EXPECT_FALSE(world.surface.readCell(std::span(vecCells[0]).subspan(1), 0, 0));
    }
}

TEST(Surface, heightsThatAreNoNumbersAreReadAsZero)
{
    GroundWorld world;
    std::vector<std::byte> vecCell(tile::surfaceSectionSize(0));
    for (const float fBad : {NAN, INFINITY, -INFINITY})
    {
        std::memcpy(vecCell.data() + 8 * 500, &fBad, 4);
        ASSERT_TRUE(world.surface.readCell(vecCell, 0, 0));
        EXPECT_EQ(world.surface.heights()[500], 0.0f);
    }
}

TEST(GroundRay, agreesWithTheHeightsFromAboveBelowAndAslant)
{
    CollisionWorld collision;
    GroundWorld world(2, 3, &collision.world());
    world.roughen();
    int iHits = 0;
    for (int i = 0; i < 500; ++i)
    {
        const glm::vec3 from{static_cast<float>(i * 53 % 150) - 10.0f,
                             static_cast<float>(i * 71 % 210) - 10.0f, i % 2 ? 60.0f : -60.0f};
        const glm::vec3 to{static_cast<float>(i * 29 % 150) - 10.0f, static_cast<float>(i * 17 % 210) - 10.0f,
                           i % 2 ? -50.0f : 50.0f};
        const auto hit = world.surface.castRay(from, to);
        // The collision world splits quads the other way, which matters little.
        btCollisionWorld::ClosestRayResultCallback callback({from.x, from.y, from.z}, {to.x, to.y, to.z});
        collision.world().rayTest(callback.m_rayFromWorld, callback.m_rayToWorld, callback);
        EXPECT_EQ(hit.has_value(), callback.hasHit()) << i;
        if (!hit)
            continue;
        ++iHits;
        EXPECT_NEAR(hit->fraction, callback.m_closestHitFraction, 0.02f) << i;
        EXPECT_NEAR(hit->position.z, world.surface.getHeight(hit->position.x, hit->position.y), 0.8f);
    }
    EXPECT_GT(iHits, 300);
    EXPECT_FALSE(world.surface.castRay({NAN, 0, 0}, {1, 1, 1}));
    EXPECT_FALSE(world.surface.castRay({30, 30, 90}, {30, 30, 80}));
    ASSERT_TRUE(world.surface.castRay({128, 192, 90}, {128, 192, -90})) << "the far corner";
    world.surface.release();
    EXPECT_EQ(collision.world().getNumCollisionObjects(), 0);
}

TEST(BrushOutline, followsTheGroundAndTheCentreOffTheTile)
{
    GroundWorld world;
    world.roughen();
    const auto arrPoints = brushOutline(world.surface, {60, 32, 7}, 10);
    EXPECT_EQ(arrPoints[0], glm::vec3(70, 32, 7));
    EXPECT_NEAR(arrPoints[64].x, 50, 1e-4f);
    EXPECT_EQ(arrPoints[64].z, world.surface.getHeight(arrPoints[64].x, arrPoints[64].y));
    EXPECT_NEAR(arrPoints[32].y, 42, 1e-4f);
}

} // namespace
