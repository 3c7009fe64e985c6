// Saves, undo images and reading.

#include "Benchmarks/BenchTile.h"
#include "Benchmarks/Harness.h"
#include "KestrelCommon/Core/Hash.h"

#include <lz4.h>
#include <lz4hc.h>
#include <tbb/global_control.h>
#include <tbb/parallel_for.h>

namespace
{

using namespace bench;
using Sections = std::vector<std::array<std::vector<std::byte>, 7>>;

int compress(const std::vector<std::byte>& vecRaw, std::vector<char>& vecOut, bool bFinal)
{
    const int iSize = static_cast<int>(vecRaw.size());
    vecOut.resize(static_cast<size_t>(LZ4_compressBound(iSize)));
    const auto* pRaw = reinterpret_cast<const char*>(vecRaw.data());
    return bFinal ? LZ4_compress_HC(pRaw, vecOut.data(), iSize, static_cast<int>(vecOut.size()), 9)
                  : LZ4_compress_default(pRaw, vecOut.data(), iSize, static_cast<int>(vecOut.size()));
}

/// An image put together by hand.
struct PlainImage
{
    std::vector<std::vector<char>> vecCells = std::vector<std::vector<char>>(TileCells * TileCells);
    std::vector<tile::CellHeader> vecHeaders = std::vector<tile::CellHeader>(TileCells * TileCells);
    std::vector<std::byte> vecImage; ///< being assembled
    std::vector<std::byte> vecCopy;  ///< of exactly its size
    uint64_t uHash = 0;

    void compressCell(const std::array<std::vector<std::byte>, 7>& arrRaw, size_t uCell)
    {
        thread_local std::vector<char> s_vecOut;
        vecCells[uCell].clear();
        tile::CellHeader& header = vecHeaders[uCell] = {};
        for (size_t i = 0; i < 7; ++i)
        {
            const int iSize = compress(arrRaw[i], s_vecOut, false);
            (i < 6 ? header.mipIndex[i] : header.clutterIndex) =
                static_cast<uint32_t>(vecCells[uCell].size());
            (i < 6 ? header.mipCompressedSize[i] : header.clutterCompressedSize) =
                static_cast<uint32_t>(iSize);
            (i < 6 ? header.mipSize[i] : header.clutterSize) = static_cast<uint32_t>(arrRaw[i].size());
            vecCells[uCell].insert(vecCells[uCell].end(), s_vecOut.begin(), s_vecOut.begin() + iSize);
        }
    }

    void assemble(const Uuid& uuid)
    {
        constexpr uint32_t uDataOffset = 60 + 388 * TileCells * TileCells;
        vecImage.resize(uDataOffset);
        std::vector<tile::CellHeader> vecPlaced = vecHeaders;
        for (size_t uCell = 0; uCell < vecCells.size(); ++uCell)
        {
            for (uint32_t& uIndex : vecPlaced[uCell].mipIndex)
                uIndex += static_cast<uint32_t>(vecImage.size());
            vecPlaced[uCell].clutterIndex += static_cast<uint32_t>(vecImage.size());
            const auto* pCell = reinterpret_cast<const std::byte*>(vecCells[uCell].data());
            vecImage.insert(vecImage.end(), pCell, pCell + vecCells[uCell].size());
        }
        const tile::Header header{tile::VersionCurrent,
                                  uuid,
                                  0,
                                  TileCells,
                                  TileCells,
                                  60,
                                  388,
                                  uDataOffset,
                                  static_cast<uint32_t>(vecImage.size()) - uDataOffset,
                                  0};
        std::memcpy(vecImage.data(), "TILE", 4);
        std::memcpy(vecImage.data() + 4, &header, sizeof(header));
        std::memcpy(vecImage.data() + 60, vecPlaced.data(), vecPlaced.size() * sizeof(tile::CellHeader));
        vecCopy = std::vector<std::byte>(vecImage.begin(), vecImage.end());
        uHash = xxh3(vecCopy);
    }
};

std::array<std::vector<std::byte>, 7> serialise(const BenchTile& world, size_t uCell)
{
    std::array<std::vector<std::byte>, 7> arrRaw;
    const int iX = static_cast<int>(uCell) % TileCells;
    const int iY = static_cast<int>(uCell) / TileCells;
    for (int iMip = 0; iMip < 6; ++iMip)
    {
        arrRaw[static_cast<size_t>(iMip)].resize(tile::surfaceSectionSize(iMip));
        static_cast<void>(tile::writeSurfaceSection(world.surface.grids(), iX, iY, iMip,
                                                    arrRaw[static_cast<size_t>(iMip)]));
    }
    ByteStream stream;
    world.clutter.writeCell(stream, iX, iY);
    arrRaw[6].assign(stream.bytes().begin(), stream.bytes().end());
    return arrRaw;
}

int finalSaves(BenchTile& world)
{
    const Sections vecRaw = world.rawSections();
    std::vector<uint64_t> vecSizes(vecRaw.size());
    const auto floor = [&]
    {
        tbb::parallel_for(size_t{0}, vecRaw.size(),
                          [&](size_t uCell)
                          {
                              thread_local std::vector<char> s_vecOut;
                              vecSizes[uCell] = 0;
                              for (const auto& raw : vecRaw[uCell])
                                  vecSizes[uCell] += static_cast<uint64_t>(compress(raw, s_vecOut, true));
                          });
    };
    tilebuilder::TileState stateExport;
    tilebuilder::TileState statePlain;
    const auto save = [&]
    {
        stateExport = world.tile.write(tile::WriteExport | tile::WriteFinal);
        statePlain = world.tile.write(tile::WritePlain | tile::WriteFinal);
    };
    const auto equal = [&]
    {
        uint64_t uTotal = 60 + 388 * vecRaw.size();
        for (const uint64_t uSize : vecSizes)
            uTotal += uSize;
        return uTotal == statePlain.size && statePlain.hash == stateExport.hash;
    };
    int iMissed = !run({.sName = "final-quality save of both files",
                        .fLimit = 1.2,
                        .fnFloor = floor,
                        .fnProduct = save,
                        .fnEqual = equal,
                        .fnBeforeProduct = [&] { world.tile.clearCache(); }});

    float fSign = 1.0f;
    const auto change = [&]
    {
        world.surface.raise(world.dab(480.0f, 480.0f, 12.5f, 0.5f), fSign);
        fSign = -fSign;
    };
    iMissed += !run({.sName = "final-quality save after a change in one cell",
                     .fLimit = 0.15,
                     .fnFloor = save,
                     .fnProduct = save,
                     .fnBeforeFloor = [&] { world.tile.clearCache(); },
                     .fnBeforeProduct = change});
    iMissed += !run({.sName = "final-quality save, one thread to two",
                     .fLimit = 1.0 / 1.6,
                     .fnFloor =
                         [&]
                     {
                         tbb::global_control control(tbb::global_control::max_allowed_parallelism, 1);
                         save();
                     },
                     .fnProduct = save,
                     .fnBeforeFloor = [&] { world.tile.clearCache(); },
                     .fnBeforeProduct = [&] { world.tile.clearCache(); }});
    return iMissed;
}

int undoImages(BenchTile& world)
{
    PlainImage plain;
    tilebuilder::TileState state;
    const auto all = [&]
    {
        tbb::parallel_for(size_t{0}, plain.vecCells.size(),
                          [&](size_t uCell) { plain.compressCell(serialise(world, uCell), uCell); });
        plain.assemble(world.tile.uuid());
    };
    const auto write = [&] { state = world.tile.write(tile::WriteUndo); };
    const auto equal = [&]
    { return state.hash == plain.uHash && std::ranges::equal(state.bytes(), plain.vecCopy); };
    int iMissed = !run({.sName = "undo image, everything stale",
                        .fLimit = 1.25,
                        .fnFloor = all,
                        .fnProduct = write,
                        .fnEqual = equal,
                        .fnBeforeProduct = [&] { world.tile.clearCache(); }});
    iMissed += !run({.sName = "undo image, one thread to two",
                     .fLimit = 1.0 / 1.6,
                     .fnFloor =
                         [&]
                     {
                         tbb::global_control control(tbb::global_control::max_allowed_parallelism, 1);
                         write();
                     },
                     .fnProduct = write,
                     .fnBeforeFloor = [&] { world.tile.clearCache(); },
                     .fnBeforeProduct = [&] { world.tile.clearCache(); }});
    constexpr size_t uCell = 7 * TileCells + 7;
    const auto one = [&]
    {
        plain.compressCell(serialise(world, uCell), uCell);
        plain.assemble(world.tile.uuid());
    };
    float fSign = 1.0f;
    const auto change = [&]
    {
        world.surface.raise(world.dab(480.0f, 480.0f, 12.5f, 0.5f), fSign);
        fSign = -fSign;
    };
    iMissed += !run({.sName = "undo image, one cell changed",
                     .fLimit = 2.0,
                     .fnFloor = one,
                     .fnProduct = write,
                     .fnEqual =
                         [&]
                     {
                         one();
                         return equal();
                     },
                     .fnBeforeProduct = change});
    return iMissed;
}

/// What an undo costs beside the rebuild of the surface.
int undoing(BenchTile& world)
{
    world.tile.pushState(true);
    world.surface.raise(world.dab(480.0f, 480.0f, 12.5f, 0.5f), 1.0f);
    world.tile.pushState(false);
    bool bBack = false;
    const auto step = [&]
    {
        bBack = !bBack;
        bBack ? world.tile.undo() : world.tile.redo();
    };
    // The floor takes the same state in whole.
    const auto whole = [&]
    {
        world.tile.clearCache();
        world.tile.restoreState(true, false);
    };
    // Each step leaves the world as a full restore of the same state does.
    const auto equal = [&]
    {
        bool bEqual = true;
        for (int i = 0; i < 2; ++i)
        {
            step();
            bEqual = bEqual && world.tile.write(tile::WriteUndo).hash ==
                                   world.tile.states()[world.tile.stateIndex()].hash;
        }
        return bEqual;
    };
    return !run({.sName = "undo and redo of a change in one cell",
                 .fLimit = 0.15,
                 .fnFloor = whole,
                 .fnProduct = step,
                 .fnEqual = equal}) +
           !run({.sName = "push after an undo",
                 .fnProduct = [&] { world.tile.pushState(false); },
                 .fnBeforeProduct = step});
}

int reading(BenchTile& world)
{
    const tilebuilder::TileState state = world.tile.write(tile::WritePlain | tile::WriteFinal);
    const auto image = tile::TileImage::open(state.bytes(), "bench");
    const size_t uVertices = 513 * 513;
    const size_t uTexels = 1025 * 1025;
    std::vector<float> vecHeights(uVertices);
    std::vector<tile::ColorValue> vecColors(uVertices);
    std::vector<uint32_t> vecTexels0(uTexels);
    std::vector<uint32_t> vecTexels1(uTexels);
    std::vector<uint8_t> vecClutter(TileCells * TileCells * tile::SamplesPerPatch);
    const auto floor = [&]
    {
        std::vector<std::byte> vecRaw(tile::surfaceSectionSize(0));
        std::vector<std::byte> vecRawClutter(32768);
        for (size_t uCell = 0; uCell < image->cellCount(); ++uCell)
        {
            const tile::CellHeader header = image->cellHeader(uCell);
            LZ4_decompress_safe(reinterpret_cast<const char*>(state.data.get()) + header.mipIndex[0],
                                reinterpret_cast<char*>(vecRaw.data()),
                                static_cast<int>(header.mipCompressedSize[0]),
                                static_cast<int>(vecRaw.size()));
            const size_t uX = uCell % TileCells;
            const size_t uY = uCell / TileCells;
            const std::byte* pIn = vecRaw.data();
            for (size_t j = 0; j < 33; ++j)
                for (size_t i = 0; i < 33; ++i, pIn += 8)
                {
                    const size_t uPlace = (uY * 32 + j) * 513 + uX * 32 + i;
                    uint32_t uColor;
                    std::memcpy(&vecHeights[uPlace], pIn, 4);
                    std::memcpy(&uColor, pIn + 4, 4);
                    vecColors[uPlace] = tile::unpackColor(uColor);
                }
            for (size_t j = 0; j < 65; ++j)
                for (size_t i = 0; i < 65; ++i, pIn += 8)
                {
                    const size_t uPlace = (uY * 64 + j) * 1025 + uX * 64 + i;
                    std::memcpy(&vecTexels0[uPlace], pIn, 4);
                    std::memcpy(&vecTexels1[uPlace], pIn + 4, 4);
                }
            LZ4_decompress_safe(reinterpret_cast<const char*>(state.data.get()) + header.clutterIndex,
                                reinterpret_cast<char*>(vecRawClutter.data()),
                                static_cast<int>(header.clutterCompressedSize),
                                static_cast<int>(header.clutterSize));
            std::memcpy(vecClutter.data() + uCell * tile::SamplesPerPatch,
                        vecRawClutter.data() + header.clutterSize - tile::SamplesPerPatch,
                        tile::SamplesPerPatch);
        }
    };
    const auto equal = [&]
    {
        return std::ranges::equal(vecHeights, world.surface.heights()) &&
               std::ranges::equal(vecTexels0, world.surface.texels0()) &&
               std::ranges::equal(vecTexels1, world.surface.texels1()) &&
               std::equal(vecClutter.begin(), vecClutter.begin() + tile::SamplesPerPatch,
                          world.clutter.samples(0, 0).begin());
    };
    const auto makeGrids = std::exchange(world.host.fnReinitialise, nullptr);
    const auto read = [&] { world.tile.read(state.bytes(), "$TEST_DATA", "x.tile", false, true, false); };
    int iMissed = !run(
        {.sName = "Tile::read alone", .fLimit = 1.5, .fnFloor = floor, .fnProduct = read, .fnEqual = equal});
    world.host.fnReinitialise = makeGrids;
    iMissed += !run({.sName = "Tile::read with new grids", .fnFloor = floor, .fnProduct = read});
    iMissed +=
        !run({.sName = "Tile::read of a state, all cells changed",
              .fnFloor = floor,
              .fnProduct = [&] { world.tile.read(state.bytes(), "$TEST_DATA", "x.tile", true, true, false); },
              .fnBeforeProduct = [&] { world.tile.clearCache(); }});
    return iMissed;
}

int images()
{
    BenchTile world;
    return finalSaves(world) + undoImages(world) + undoing(world) + reading(world);
}

const Registration s_images(&images);

} // namespace
