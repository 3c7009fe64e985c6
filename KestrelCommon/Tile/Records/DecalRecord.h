#pragma once // A placed decal as it is stored.

#include "KestrelCommon/Tile/Records/RecordList.h"

namespace tile
{

struct DecalRecord
{
    Transform transform;
    Uuid decalId;
    uint32_t uColor = 0xFFFFFFFF; ///< red in the lowest byte
    uint32_t uLayer = 0;
    TagSet setTags;

    bool operator==(const DecalRecord&) const;
};

void writeRecord(ByteStream& stream, const DecalRecord& record, const CellPlace& place);
void writeRecord(BitStream& stream, const DecalRecord& record);
[[nodiscard]] bool readRecords(ByteCursor& cursor, const CellList& list, std::vector<DecalRecord>& vecOut);
[[nodiscard]] bool readRecords(BitStream& stream, const PrefabList& list, std::vector<DecalRecord>& vecOut);
template <>
bool checkRecords<DecalRecord>(ByteCursor& cursor, const CellList& list, RecordEnds* pEnds);

} // namespace tile
