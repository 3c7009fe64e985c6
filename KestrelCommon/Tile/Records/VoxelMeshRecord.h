#pragma once // A placed voxel mesh as it is stored.

#include "KestrelCommon/Tile/Records/RecordList.h"

namespace tile
{

struct VoxelMeshRecord
{
    Transform transform;
    Uuid uuid;
    int32_t iPriority = 0;
    uint32_t uMaterial = 0;
    bool bSubtractive = false;
    uint32_t uBlurMode = 0;

    bool operator==(const VoxelMeshRecord&) const;
};

void writeRecord(ByteStream& stream, const VoxelMeshRecord& record, const CellPlace& place);
void writeRecord(BitStream& stream, const VoxelMeshRecord& record);
[[nodiscard]] bool readRecords(ByteCursor& cursor, const CellList& list,
                               std::vector<VoxelMeshRecord>& vecOut);
/// The flag has one bit, or eight in prefabs of old writers; the section's size tells which.
[[nodiscard]] bool readRecords(BitStream& stream, const PrefabList& list,
                               std::vector<VoxelMeshRecord>& vecOut);
template <>
bool checkRecords<VoxelMeshRecord>(ByteCursor& cursor, const CellList& list, RecordEnds* pEnds);

} // namespace tile
