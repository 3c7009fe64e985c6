#include "TileEditorCommon/Clutter/EditorTerrainClutter.h"

#include "KestrelCommon/Tile/TileVersion.h"
#include "Tests/Support/LogCapture.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Ground/Brush.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

#include <gtest/gtest.h>

namespace
{

using namespace tilebuilder;

struct ClutterGridTest : testing::Test, EditorSinkI
{
    ClutterGridTest()
    {
        database.loadText(R"({"clutterList":[{"uuid":"00000000-0000-4000-8000-000000000001"}]})", "one");
        surface.init(128, 64);
        clutter.init(128, 64);
    }
    void markChanged(uint32_t uMask) override { uMasks |= uMask; }
    void markInterfaceDirty(uint32_t) override {}

    LogCapture log;
    uint32_t uMasks = 0;
    tile::ClutterDatabase database;
    EditorTerrainSurface surface{*this, nullptr};
    EditorTerrainClutter clutter{*this, surface, database};
};

TEST_F(ClutterGridTest, samplesTellTypeAndGround)
{
    surface.raise({96, 32, 5, 1, brush(4)}, 1.0f);
    uMasks = 0;
    std::vector<uint8_t> vecSamples(tile::SamplesPerPatch, tile::EmptyClutter);
    vecSamples[128 * 64 + 65] = 0; // at (32.5, 32)
    const uint64_t uOther = clutter.cellRevision(0, 0);
    clutter.setSamples(1, 0, vecSamples);
    EXPECT_EQ(uMasks, static_cast<uint32_t>(ChangeClutter));
    EXPECT_EQ(clutter.cellRevision(0, 0), uOther);
    EXPECT_EQ(clutter.cellRevision(1, 0), clutter.revision());

    float fHeight = -1;
    uint32_t uColor = 0;
    glm::vec3 normal{};
    EXPECT_EQ(clutter.sampleAt(1, 0, {32.7f, 32.4f}, fHeight, uColor, normal), 0);
    EXPECT_EQ(fHeight, 1.0f);
    EXPECT_EQ(uColor, surface.getColor(96.7f, 32.4f));
    EXPECT_EQ(clutter.sampleAt(1, 0, {32.0f, 32.4f}, fHeight, uColor, normal), 255);
    fHeight = -1;
    EXPECT_EQ(clutter.sampleAt(2, 0, {1, 1}, fHeight, uColor, normal), 255);
    EXPECT_EQ(fHeight, -1.0f);
    EXPECT_EQ(clutter.sampleAt(0, 0, {64, 64}, fHeight, uColor, normal), 255);
    EXPECT_TRUE(log.has("ASSERT: 'idx >= 0 && idx < tile::SamplesPerPatch'"));
}

TEST_F(ClutterGridTest, aLoadWithoutAnyTypesTellsItOnce)
{
    clutter.setSamples(0, 0, std::vector<uint8_t>(tile::SamplesPerPatch, 0));
    ByteStream stream;
    clutter.writeCell(stream, 0, 0);
    const tile::ClutterDatabase none;
    EditorTerrainClutter other(*this, surface, none);
    other.init(128, 64);
    EXPECT_TRUE(other.readCell(stream.bytes(), 0, 0, tile::VersionCurrent));
    EXPECT_TRUE(other.readCell(stream.bytes(), 1, 0, tile::VersionCurrent));
    EXPECT_EQ(log.errors(), 1u) << log.dump();
    EXPECT_EQ(other.samples(1, 0)[9], 255);
    EXPECT_FALSE(other.readCell(stream.bytes(), 2, 0, tile::VersionCurrent));
    EXPECT_FALSE(other.readCell(stream.bytes(), 0, 0, 1));
    EXPECT_TRUE(clutter.readCell(stream.bytes(), 1, 0, tile::VersionCurrent));
    EXPECT_EQ(clutter.samples(1, 0)[9], 0);
}

} // namespace
