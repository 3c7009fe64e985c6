#pragma once // A chunk of voxel terrain as a cell stores it. Prefabs hold none.

#include "KestrelCommon/Tile/Records/RecordList.h"

namespace tile
{

constexpr size_t VoxelChunkSize = 4096; ///< 16 x 16 x 16 voxels of a byte, z running fastest

struct VoxelTerrainRecord
{
    int32_t x = 0; ///< chunk within the cell, modulo 4 with the sign of the operand
    int32_t y = 0;
    int32_t z = 0; ///< chunk in full
    std::array<uint8_t, VoxelChunkSize> arrVoxels{};

    bool operator==(const VoxelTerrainRecord&) const = default;
};

/// Positions don't depend on the place.
void writeRecord(ByteStream& stream, const VoxelTerrainRecord& record, const CellPlace& place);
[[nodiscard]] bool readRecords(ByteCursor& cursor, const CellList& list,
                               std::vector<VoxelTerrainRecord>& vecOut);
template <>
bool checkRecords<VoxelTerrainRecord>(ByteCursor& cursor, const CellList& list, RecordEnds* pEnds);

} // namespace tile
