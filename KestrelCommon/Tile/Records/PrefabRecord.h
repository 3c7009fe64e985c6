#pragma once // A placed prefab as it is stored; its content stands in its file.

#include "KestrelCommon/Tile/Records/RecordList.h"

namespace tile
{

enum PrefabFlags : uint32_t
{
    PrefabBake = 1, ///< an export also holds the content as one blueprint
    PrefabKeep = 2, ///< an export holds the prefab itself instead of its content
    PrefabWater = 8,
};

struct PrefabRecord
{
    Transform transform;
    std::string sPath; ///< keyed
    TagSet setTags;
    uint32_t uFlags = 0; ///< bits of PrefabFlags; others are kept

    bool operator==(const PrefabRecord&) const;
};

void writeRecord(ByteStream& stream, const PrefabRecord& record, const CellPlace& place);
void writeRecord(BitStream& stream, const PrefabRecord& record);
[[nodiscard]] bool readRecords(ByteCursor& cursor, const CellList& list, std::vector<PrefabRecord>& vecOut);
[[nodiscard]] bool readRecords(BitStream& stream, const PrefabList& list, std::vector<PrefabRecord>& vecOut);
template <>
bool checkRecords<PrefabRecord>(ByteCursor& cursor, const CellList& list, RecordEnds* pEnds);

} // namespace tile
