#pragma once // A placed harvestable or kinematic as it is stored; both have the same layout.

#include "KestrelCommon/Tile/Records/RecordList.h"

namespace tile
{

struct HarvestableRecord
{
    Transform transform;
    Uuid uuid;
    uint32_t uColor = 0xFFFFFFFF;         ///< 0xRRGGBBAA
    std::vector<std::byte> vecParameters; ///< as they are stored; empty: the defaults
    TagSet setTags;

    bool operator==(const HarvestableRecord&) const;
};

void writeRecord(ByteStream& stream, const HarvestableRecord& record, const CellPlace& place);
void writeRecord(BitStream& stream, const HarvestableRecord& record);
[[nodiscard]] bool readRecords(ByteCursor& cursor, const CellList& list,
                               std::vector<HarvestableRecord>& vecOut);
[[nodiscard]] bool readRecords(BitStream& stream, const PrefabList& list,
                               std::vector<HarvestableRecord>& vecOut);
template <>
bool checkRecords<HarvestableRecord>(ByteCursor& cursor, const CellList& list, RecordEnds* pEnds);

} // namespace tile
