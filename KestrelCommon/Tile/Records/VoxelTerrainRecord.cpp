#include "KestrelCommon/Tile/Records/VoxelTerrainRecord.h"

namespace tile
{

namespace
{

constexpr const char* s_pKind = "Voxel terrain";
constexpr size_t s_uMinBytes = sizeof(VoxelTerrainRecord);
static_assert(sizeof(VoxelTerrainRecord) == 3 * sizeof(int32_t) + VoxelChunkSize);

bool readCell(CellFieldReader& reader, uint32_t, VoxelTerrainRecord& record)
{
    return reader.value(record);
}

} // namespace

void writeRecord(ByteStream& stream, const VoxelTerrainRecord& record, const CellPlace&)
{
    stream.write(record);
}

bool readRecords(ByteCursor& cursor, const CellList& list, std::vector<VoxelTerrainRecord>& vecOut)
{
    return detail::readCellList(s_pKind, cursor, list, s_uMinBytes, vecOut, readCell);
}

template <>
bool checkRecords<VoxelTerrainRecord>(ByteCursor& cursor, const CellList& list, RecordEnds* pEnds)
{
    return detail::checkCellList<VoxelTerrainRecord>(s_pKind, cursor, list, pEnds, readCell);
}

} // namespace tile
