#pragma once // The fixed records and constants of a tile image.

#include "KestrelCommon/Core/Uuid.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace tile
{

static_assert(std::endian::native == std::endian::little, "records are copied as they lie in memory");

constexpr uint32_t Magic = 0x454C4954; ///< "TILE"
constexpr int CellSize = 64;           ///< metres on a side
constexpr int CellQuads = 32;          ///< quads of the vertex grid on a cell's side, 2 m each
constexpr int CellTexels = 64;         ///< ground samples on a cell's side, 1 m apart, less the far edge
constexpr int MipCount = 6;
constexpr int LevelCount = 4; ///< levels of asset, harvestable and kinematic lists
constexpr int ClutterTileSamples = 128;
constexpr int SamplesPerPatch = ClutterTileSamples * ClutterTileSamples;
constexpr uint8_t EmptyClutter = 255;
constexpr float CellBottom = -8192.0f; ///< Z range of a cell's volume when objects are sorted into cells
constexpr float CellTop = 8192.0f;
constexpr std::array<int, MipCount> MipStep{1, 2, 4, 8, 16, 32};

constexpr uint32_t TypeGround = 0;
constexpr uint32_t TypeObjects = 1; ///< no ground and no clutter

/// Bits of Tile::write.
enum WriteFlags : uint32_t
{
    WritePlain = 1,
    WriteExport = 2, ///< prefabs are flattened into their objects
    WriteFinal = 4,  ///< LZ4 HC at level 9
    WriteUndo = 8,   ///< voxel terrain is left out
};

#pragma pack(push, 4) // creatorId stands at a multiple of 4 only

/// Stands behind the magic, at offset 4 of an image.
struct Header
{
    uint32_t version;
    Uuid uuid;
    uint64_t creatorId;
    int32_t width;  ///< cells along X
    int32_t height; ///< cells along Y
    uint32_t uCellHeadersOffset;
    uint32_t uCellHeaderSize; ///< bytes of one cell header in this file
    uint32_t uDataOffset;
    uint32_t uTotalDataSize;
    uint32_t uPacked; ///< type << 24 | category << 12 | index in the category
};

/// Index fields are absolute offsets in the image, size fields bytes before compression.
struct CellHeader
{
    uint32_t mipIndex[MipCount];
    uint32_t mipCompressedSize[MipCount];
    uint32_t mipSize[MipCount];
    uint32_t clutterIndex;
    uint32_t clutterCompressedSize;
    uint32_t clutterSize;
    uint32_t assetListCount[LevelCount];
    uint32_t assetListIndex[LevelCount];
    uint32_t assetListCompressedSize[LevelCount];
    uint32_t assetListSize[LevelCount];
    uint32_t blueprintListCount;
    uint32_t blueprintListIndex;
    uint32_t blueprintListCompressedSize;
    uint32_t blueprintListSize;
    uint32_t nodeCount;
    uint32_t nodeIndex;
    uint32_t nodeCompressedSize;
    uint32_t nodeSize;
    uint32_t scriptCount;
    uint32_t scriptIndex;
    uint32_t scriptCompressedSize;
    uint32_t scriptSize;
    uint32_t prefabCount;
    uint32_t prefabIndex;
    uint32_t prefabCompressedSize;
    uint32_t prefabSize;
    uint32_t decalCount;
    uint32_t decalIndex;
    uint32_t decalCompressedSize;
    uint32_t decalSize;
    uint32_t harvestableListCount[LevelCount];
    uint32_t harvestableListIndex[LevelCount];
    uint32_t harvestableListCompressedSize[LevelCount];
    uint32_t harvestableListSize[LevelCount];
    uint32_t kinematicListCount[LevelCount];
    uint32_t kinematicListIndex[LevelCount];
    uint32_t kinematicListCompressedSize[LevelCount];
    uint32_t kinematicListSize[LevelCount];
    uint32_t voxelMeshCount;
    uint32_t voxelMeshIndex;
    uint32_t voxelMeshCompressedSize;
    uint32_t voxelMeshSize;
    uint32_t voxelTerrainCount;
    uint32_t voxelTerrainIndex;
    uint32_t voxelTerrainCompressedSize;
    uint32_t voxelTerrainSize;
};

#pragma pack(pop)

constexpr size_t HeaderOffset = 4;
constexpr size_t CellHeadersOffset = HeaderOffset + sizeof(Header);

static_assert(sizeof(Header) == 56 && CellHeadersOffset == 60);
static_assert(offsetof(Header, creatorId) == 20 && offsetof(Header, uCellHeadersOffset) == 36);
static_assert(offsetof(Header, uPacked) == 52);
static_assert(sizeof(CellHeader) == 388);
static_assert(offsetof(CellHeader, clutterIndex) == 72 && offsetof(CellHeader, assetListCount) == 84);
static_assert(offsetof(CellHeader, blueprintListCount) == 148 && offsetof(CellHeader, nodeCount) == 164);
static_assert(offsetof(CellHeader, scriptCount) == 180 && offsetof(CellHeader, prefabCount) == 196);
static_assert(offsetof(CellHeader, decalCount) == 212 && offsetof(CellHeader, harvestableListCount) == 228);
static_assert(offsetof(CellHeader, kinematicListCount) == 292 && offsetof(CellHeader, voxelMeshCount) == 356);
static_assert(offsetof(CellHeader, voxelTerrainCount) == 372);

/// The header's packed word. The category parts are written only when the category is not 0.
[[nodiscard]] constexpr uint32_t packTypeWord(uint32_t uType, uint32_t uCategory, uint32_t uCategoryIndex)
{
    const uint32_t uLow = uCategory ? (uCategory & 0xF) << 12 | (uCategoryIndex & 0xFFF) : 0;
    return uType << 24 | uLow;
}
[[nodiscard]] constexpr uint32_t typeOf(const Header& header)
{
    return header.uPacked >> 24;
}
[[nodiscard]] constexpr uint32_t categoryOf(const Header& header)
{
    return header.uPacked >> 12 & 0xF;
}
[[nodiscard]] constexpr uint32_t categoryIndexOf(const Header& header)
{
    return header.uPacked & 0xFFF;
}

} // namespace tile
