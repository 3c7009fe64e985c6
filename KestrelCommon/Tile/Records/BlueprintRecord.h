#pragma once // A placed blueprint as it is stored.

#include "KestrelCommon/Tile/Records/PrefabRecord.h"

namespace tile
{

struct BlueprintRecord
{
    Transform transform;       ///< the scale isn't stored and reads as 1
    std::string sPathOrJson;   ///< a keyed path, or "?JB:" and a text
    int32_t iSortingIndex = 0; ///< in prefabs only
    TagSet setTags;

    bool operator==(const BlueprintRecord&) const;
};

void writeRecord(ByteStream& stream, const BlueprintRecord& record, const CellPlace& place);
void writeRecord(BitStream& stream, const BlueprintRecord& record);
[[nodiscard]] bool readRecords(ByteCursor& cursor, const CellList& list,
                               std::vector<BlueprintRecord>& vecOut);
[[nodiscard]] bool readRecords(BitStream& stream, const PrefabList& list,
                               std::vector<BlueprintRecord>& vecOut);
template <>
bool checkRecords<BlueprintRecord>(ByteCursor& cursor, const CellList& list, RecordEnds* pEnds);

/// Takes out the blueprints of VersionPrefabsAmongBlueprints that are prefabs; other versions
/// have none. Both lists keep their order.
void separatePrefabs(uint32_t uVersion, std::vector<BlueprintRecord>& vecBlueprints,
                     std::vector<PrefabRecord>& vecPrefabs);

} // namespace tile
