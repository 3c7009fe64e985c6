#include "KestrelCommon/Tile/TileImage.h"
#include "KestrelCommon/Io/Lz4Section.h"
#include "KestrelCommon/Tile/SurfaceSection.h"
#include "Tests/Document/TileWorld.h"
#include "Tests/Support/LogCapture.h"

#include <gtest/gtest.h>

namespace
{

using namespace tilebuilder;

template <class T>
T at(std::span<const std::byte> spanBytes, size_t uOffset)
{
    T value;
    std::memcpy(&value, spanBytes.data() + uOffset, sizeof(value));
    return value;
}

std::vector<std::byte> copyOf(const TileState& state)
{
    return {state.bytes().begin(), state.bytes().end()};
}

bool readInto(TileWorld& world, std::span<const std::byte> spanImage)
{
    return world.tile.read(spanImage, "$TEST_DATA", "x.tile", false, true, false);
}

struct TileImageTest : testing::Test
{
    LogCapture log;
};

TEST_F(TileImageTest, anEmptyTileHasTheFrameOfItsFormat)
{
    TileWorld world;
    const TileState state = world.tile.write(tile::WriteUndo);
    const auto image = state.bytes();
    EXPECT_EQ(std::memcmp(image.data(), "TILE", 4), 0);
    EXPECT_EQ(at<uint32_t>(image, 4), 13u);
    EXPECT_EQ(at<uint8_t>(image, 8), 0x01);  // first byte of the uuid
    EXPECT_EQ(at<uint8_t>(image, 23), 0xef); // last byte
    EXPECT_EQ(at<int32_t>(image, 32), 1);
    EXPECT_EQ(at<int32_t>(image, 36), 1);
    EXPECT_EQ(at<uint32_t>(image, 40), 60u);
    EXPECT_EQ(at<uint32_t>(image, 44), 388u);
    EXPECT_EQ(at<uint32_t>(image, 48), 448u);
    EXPECT_EQ(at<uint32_t>(image, 48) + at<uint32_t>(image, 52), state.size);
    EXPECT_EQ(at<uint32_t>(image, 56), 0u);

    uint32_t uPlace = 448;
    for (size_t uMip = 0; uMip < 6; ++uMip)
    {
        EXPECT_EQ(at<uint32_t>(image, 60 + uMip * 4), uPlace) << uMip;
        uPlace += at<uint32_t>(image, 60 + 24 + uMip * 4);
        EXPECT_EQ(at<uint32_t>(image, 60 + 48 + uMip * 4), tile::surfaceSectionSize(static_cast<int>(uMip)));
    }
    EXPECT_EQ(at<uint32_t>(image, 60 + 72), uPlace);
    EXPECT_EQ(at<uint32_t>(image, 60 + 80), 16385u);
    EXPECT_EQ(uPlace + at<uint32_t>(image, 60 + 76), state.size);
    for (size_t uField = 84; uField < 388; uField += 4)
        EXPECT_EQ(at<uint32_t>(image, 60 + uField), 0u) << uField;
}

TEST_F(TileImageTest, thePackedWordHoldsTypeAndCategory)
{
    TileWorld world(2, 1, tile::TypeObjects);
    world.tile.setTerrainCategory(2, 0x123);
    const TileState state = world.tile.write(tile::WriteUndo);
    EXPECT_EQ(state.size, 60u + 2 * 388u); // neither ground nor clutter
    EXPECT_EQ(at<uint32_t>(state.bytes(), 56), 0x01002123u);

    TileWorld other;
    ASSERT_TRUE(readInto(other, state.bytes()));
    EXPECT_EQ(other.tile.type(), tile::TypeObjects);
    EXPECT_EQ(other.tile.terrainCategory(), 2u);
    EXPECT_EQ(other.tile.terrainCategoryIndex(), 0x123u);
}

TEST_F(TileImageTest, aReadTileHoldsAndWritesWhatWasWritten)
{
    TileWorld world(3, 2);
    world.paintEverything();
    for (const uint32_t uFlags : {uint32_t{tile::WriteUndo}, uint32_t{tile::WritePlain | tile::WriteFinal}})
    {
        const TileState state = world.tile.write(uFlags);
        TileWorld other;
        ASSERT_TRUE(readInto(other, state.bytes()));
        EXPECT_EQ(other.host.iReinitialised, 1);
        EXPECT_TRUE(std::ranges::equal(other.surface.heights(), world.surface.heights()));
        EXPECT_TRUE(std::ranges::equal(other.surface.texels0(), world.surface.texels0()));
        EXPECT_TRUE(std::ranges::equal(other.surface.texels1(), world.surface.texels1()));
        for (int i = 0; i < 6; ++i)
            EXPECT_TRUE(
                std::ranges::equal(other.clutter.samples(i % 3, i / 3), world.clutter.samples(i % 3, i / 3)));
        const TileState again = other.tile.write(uFlags);
        EXPECT_EQ(copyOf(again), copyOf(state)) << uFlags;
        EXPECT_EQ(again.hash, state.hash);
    }
}

TEST_F(TileImageTest, finalQualityIsSmallerAndLeavesUndoImagesAlone)
{
    TileWorld world(2, 2);
    world.paintEverything();
    const auto fast = copyOf(world.tile.write(tile::WriteUndo));
    const TileState final = world.tile.write(tile::WritePlain | tile::WriteFinal);
    EXPECT_LT(final.size, fast.size());
    EXPECT_EQ(copyOf(world.tile.write(tile::WriteUndo)), fast);
}

/// Changes each kind of data in one cell or on a shared edge; what the cache gives must be what
/// a document without a cache gives.
TEST_F(TileImageTest, anImageAfterASmallChangeIsThatOfAFullRewrite)
{
    TileWorld world(4, 3);
    world.paintEverything();
    static_cast<void>(world.tile.write(tile::WriteUndo));
    static_cast<void>(world.tile.write(tile::WriteFinal));
    const std::function<void()> arrChanges[] = {
        [&] { world.surface.raise(world.dab(100.0f, 90.0f, 9.0f, 0.5f), 1.0f); },
        [&] { world.surface.raise(world.dab(128.0f, 64.0f, 1.0f, 0.5f), -1.0f); }, // one vertex of four cells
        [&] { world.surface.smooth(world.dab(192.0f, 128.0f, 30.0f, 1.0f)); },
        [&] {
            world.surface.paintColor({0.9f, 0.1f, 0.3f, 1.0f}, world.dab(0.0f, 0.0f, 5.0f, 1.0f));
        },
        [&] { world.surface.paintMaterial(6, false, world.dab(64.0f, 64.0f, 0.5f, 1.0f)); },
        [&] { world.clutter.setSamples(3, 2, std::vector<uint8_t>(tile::SamplesPerPatch, 2)); },
        [&] {}};
    for (size_t i = 0; i < std::size(arrChanges); ++i)
    {
        arrChanges[i]();
        for (const uint32_t uFlags : {uint32_t{tile::WriteUndo}, uint32_t{tile::WriteFinal}})
        {
            const auto cached = copyOf(world.tile.write(uFlags));
            world.tile.clearCache();
            EXPECT_EQ(cached, copyOf(world.tile.write(uFlags))) << "change " << i << " flags " << uFlags;
        }
    }
}

/// Image with shorter cell headers, as old files have them.
std::vector<std::byte> withHeaderSize(std::span<const std::byte> spanImage, uint32_t uSize, uint32_t uVersion)
{
    const uint32_t uOld = at<uint32_t>(spanImage, 44);
    const auto uCells = static_cast<uint32_t>(at<int32_t>(spanImage, 32) * at<int32_t>(spanImage, 36));
    std::vector<std::byte> vecResult(spanImage.begin(), spanImage.begin() + 60);
    const uint32_t uShift = uCells * uSize - uCells * uOld; // modulo 2^32
    for (uint32_t uCell = 0; uCell < uCells; ++uCell)
    {
        std::vector<std::byte> vecHeader(spanImage.begin() + 60 + uCell * uOld,
                                         spanImage.begin() + 60 + (uCell + 1) * uOld);
        for (size_t uIndex : {0, 4, 8, 12, 16, 20, 72})
        {
            const uint32_t uMoved = at<uint32_t>(vecHeader, uIndex) + uShift;
            std::memcpy(vecHeader.data() + uIndex, &uMoved, 4);
        }
        vecHeader.resize(uSize);
        vecResult.insert(vecResult.end(), vecHeader.begin(), vecHeader.end());
    }
    vecResult.insert(vecResult.end(), spanImage.begin() + 60 + uCells * uOld, spanImage.end());
    const uint32_t uDataOffset = 60 + uCells * uSize;
    std::memcpy(vecResult.data() + 4, &uVersion, 4);
    std::memcpy(vecResult.data() + 44, &uSize, 4);
    std::memcpy(vecResult.data() + 48, &uDataOffset, 4);
    return vecResult;
}

TEST_F(TileImageTest, everyHeaderSizeAndVersionIsRead)
{
    TileWorld world(2, 1);
    world.paintEverything();
    const TileState state = world.tile.write(tile::WriteFinal);
    for (uint32_t uSize = 84; uSize <= 400; uSize += 4)
    {
        const uint32_t uVersion = 2 + uSize % 13;
        TileWorld other;
        ASSERT_TRUE(readInto(other, withHeaderSize(state.bytes(), uSize, uVersion))) << uSize << log.dump();
        EXPECT_TRUE(std::ranges::equal(other.surface.heights(), world.surface.heights())) << uSize;
        EXPECT_TRUE(std::ranges::equal(other.clutter.samples(1, 0), world.clutter.samples(1, 0))) << uSize;
    }
    EXPECT_EQ(log.errors(), 0u) << log.dump();
}

TEST_F(TileImageTest, clutterOfTheFirstVersionsIsTakenAsItStands)
{
    TileWorld world;
    auto image = copyOf(world.tile.write(tile::WriteFinal));
    std::vector<std::byte> vecSamples(tile::SamplesPerPatch, std::byte{1});
    ResizeableBuffer scratch;
    const auto spanSection = lz4Compress(vecSamples, Lz4Quality::Fast, scratch);
    const auto uIndex = static_cast<uint32_t>(image.size());
    const auto uCompressed = static_cast<uint32_t>(spanSection.size());
    const uint32_t uSize = tile::SamplesPerPatch;
    const uint32_t uVersion = 1;
    std::memcpy(image.data() + 60 + 72, &uIndex, 4);
    std::memcpy(image.data() + 60 + 76, &uCompressed, 4);
    std::memcpy(image.data() + 60 + 80, &uSize, 4);
    std::memcpy(image.data() + 4, &uVersion, 4);
    image.insert(image.end(), spanSection.begin(), spanSection.end());
    TileWorld other;
    ASSERT_TRUE(readInto(other, image)) << log.dump();
    EXPECT_EQ(other.clutter.samples(0, 0)[77], 1);
}

/// A file that is cut anywhere, or that has a field or byte changed, is refused with a line and
/// leaves the open document as it was, or it is read; it never does harm.
TEST_F(TileImageTest, aCutFileIsRefusedAtEveryBoundary)
{
    TileWorld source(2, 1);
    source.paintEverything();
    const auto image = copyOf(source.tile.write(tile::WriteFinal));
    std::vector<size_t> vecCuts{0,           3,  4,  7,  8,  24, 32,  36,  40,  44,
                                48,          52, 56, 59, 60, 61, 447, 448, 449, 60 + 2 * 388 - 1,
                                60 + 2 * 388};
    for (size_t uCell = 0; uCell < 2; ++uCell)
        for (const size_t uField : {0, 72}) // mip 0 and clutter are what reading needs
        {
            const size_t uStart = at<uint32_t>(image, 60 + uCell * 388 + uField);
            vecCuts.insert(vecCuts.end(), {uStart - 1, uStart, uStart + 1});
        }
    vecCuts.push_back(image.size() - 1);
    TileWorld world;
    world.paintEverything();
    const auto before = copyOf(world.tile.write(tile::WriteUndo));
    for (const size_t uCut : vecCuts)
    {
        log.clear();
        EXPECT_FALSE(readInto(world, std::span(image).first(uCut))) << uCut;
        EXPECT_FALSE(log.lines().empty()) << uCut;
    }
    EXPECT_EQ(world.host.iReinitialised, 0);
    EXPECT_EQ(world.tile.width(), 1);
    EXPECT_EQ(copyOf(world.tile.write(tile::WriteUndo)), before);
    EXPECT_TRUE(readInto(world, image));
}

struct Refusal
{
    size_t uOffset;
    uint32_t uValue;
    const char* pText;
};

TEST_F(TileImageTest, everyLieIsRefusedWithItsText)
{
    TileWorld source(2, 1);
    source.paintEverything();
    const auto image = copyOf(source.tile.write(tile::WriteFinal));
    const std::string sLight = " $TEST_DATA/x.tile";
    const Refusal arrRefusals[] = {
        {0, 0x454C4955, "Wrong magicnumber: $TEST_DATA/x.tile"},
        {32, 0, "Failed to read header: $TEST_DATA/x.tile"},
        {36, 0xFFFFFFFF, "Failed to read header: $TEST_DATA/x.tile"},
        {32, 0x7FFFFFFF, "Failed to read header: $TEST_DATA/x.tile"},
        {44, 0xFFFFFFF0, "Failed to read header: $TEST_DATA/x.tile"},
        {60, 0xFFFFFFFF, "ASSERT: 'uReadSize == h.mipSize[i]'"},          // past the end
        {60, 4, "ASSERT: 'uReadSize == h.mipSize[i]'"},                   // in the header
        {60 + 24, 0xFFFFFFFF, "ASSERT: 'uReadSize == h.mipSize[i]'"},     // compressed size
        {60 + 48, 42511, "ASSERT: 'uReadSize == h.mipSize[i]'"},          // another size
        {60 + 24, 500, "ASSERT: 'uDebugSize == uUncompressedSize'"},      // a part of the bytes
        {60 + 388 + 80, 1 << 30, "ASSERT: 'uReadSize == h.clutterSize'"}, // more than can be
        {60 + 388 + 80, 16386, "ASSERT: 'uDebugSize == uUncompressedSize'"},
        {60 + 164, 3, ""}, // nodes without an index are no nodes
    };
    for (const Refusal& refusal : arrRefusals)
    {
        log.clear();
        auto changed = image;
        std::memcpy(changed.data() + refusal.uOffset, &refusal.uValue, 4);
        TileWorld world;
        EXPECT_EQ(readInto(world, changed), *refusal.pText == 0) << refusal.uOffset;
        EXPECT_TRUE(log.has(refusal.pText)) << refusal.uOffset << '\n' << log.dump();
        EXPECT_EQ(world.host.iReinitialised, *refusal.pText == 0 ? 1 : 0);
    }
    // A count, with an index and sizes that don't fit.
    for (const auto& [uOffset, pText] : {std::pair{size_t{84}, "assetListSize[i]"},
                                         {148, "blueprintListSize"},
                                         {164, "nodeSize"},
                                         {196, "prefabSize"},
                                         {212, "decalSize"},
                                         {228, "harvestableListSize[i]"},
                                         {292, "kinematicListSize[i]"},
                                         {356, "voxelMeshSize"},
                                         {372, "voxelTerrainSize"}})
    {
        log.clear();
        auto changed = image;
        const size_t uBlock = std::string_view(pText).ends_with("[i]") ? 16 : 4;
        const std::array arrFields{uint32_t{1}, static_cast<uint32_t>(image.size() - 4), uint32_t{8},
                                   uint32_t{100}};
        for (size_t i = 0; i < 4; ++i)
            std::memcpy(changed.data() + 60 + uOffset + i * uBlock, &arrFields[i], 4);
        TileWorld world;
        EXPECT_FALSE(readInto(world, changed)) << pText;
        EXPECT_TRUE(log.has(std::string("ASSERT: 'uReadSize == h.") + pText)) << log.dump();
    }
    TileWorld world;
    log.clear();
    EXPECT_FALSE(readInto(world, std::span(image).first(2)));
    EXPECT_TRUE(log.has("Failed to read magicnumber: $TEST_DATA/x.tile"));
    EXPECT_FALSE(readInto(world, std::span(image).first(500)));
    EXPECT_TRUE(log.has("Failed to read cell header: 1 - $TEST_DATA/x.tile")) << log.dump();
}

TEST_F(TileImageTest, mutatedFilesAreReadOrRefused)
{
    TileWorld source(2, 2);
    source.paintEverything();
    const auto image = copyOf(source.tile.write(tile::WriteFinal));
    TileWorld world;
    uint64_t uSeed = 12345;
    const auto next = [&]
    { return uSeed = uSeed * 6364136223846793005ull + 1442695040888963407ull, uSeed >> 33; };
    int iRefused = 0;
    for (int i = 0; i < 400; ++i)
    {
        auto changed = image;
        for (uint64_t n = next() % 4 + 1; n > 0; --n)
            changed[next() % (next() % 2 ? changed.size() : 60 + 4 * 388)] ^=
                static_cast<std::byte>(1u << next() % 8);
        iRefused += !readInto(world, changed);
    }
    EXPECT_GT(iRefused, 20);
    EXPECT_TRUE(readInto(world, image));
}

} // namespace
