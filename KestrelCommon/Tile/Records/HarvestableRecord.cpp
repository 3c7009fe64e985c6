#include "KestrelCommon/Tile/Records/HarvestableRecord.h"

namespace tile
{

namespace
{

constexpr const char* s_pKind = "Harvestable";
constexpr size_t s_uMinBytes = TransformSize + sizeof(Uuid) + sizeof(uint32_t);

// What the versions of both forms differ in.
struct Layout
{
    bool bParameters;
    bool bTags;
};

template <class Reader>
bool readFields(Reader& reader, const Layout& layout, HarvestableRecord& record)
{
    uint32_t uRedLowest;
    if (!reader.transform(record.transform) || !reader.uuid(record.uuid) || !reader.cellColor(uRedLowest))
        return false;
    record.uColor = __builtin_bswap32(uRedLowest);
    return (!layout.bParameters || reader.blob(record.vecParameters)) &&
           (!layout.bTags || reader.tags(record.setTags));
}

bool readCell(CellFieldReader& reader, uint32_t uVersion, HarvestableRecord& record)
{
    return readFields(reader, {uVersion >= VersionKinematics, uVersion >= VersionTags}, record);
}

bool readPrefab(PrefabFieldReader& reader, uint32_t uVersion, HarvestableRecord& record)
{
    return readFields(reader, {uVersion >= PrefabVersionParameters, uVersion >= PrefabVersionTags}, record);
}

} // namespace

bool HarvestableRecord::operator==(const HarvestableRecord& other) const
{
    return equal(transform, other.transform) && uuid == other.uuid && uColor == other.uColor &&
           vecParameters == other.vecParameters && setTags == other.setTags;
}

void writeRecord(ByteStream& stream, const HarvestableRecord& record, const CellPlace& place)
{
    CellFieldWriter writer(stream, TransformSize + sizeof(Uuid) + sizeof(uint32_t) * 2 +
                                       record.vecParameters.size() + MaxTagBytes);
    writer.transform(record.transform, place.origin);
    writer.value(record.uuid);
    writer.cellColor(__builtin_bswap32(record.uColor));
    writer.blob(record.vecParameters);
    writer.tags({&record.setTags, place.pInheritedTags});
}

void writeRecord(BitStream& stream, const HarvestableRecord& record)
{
    PrefabFieldWriter writer(stream);
    writer.transform(record.transform);
    writer.uuid(record.uuid);
    writer.cellColor(__builtin_bswap32(record.uColor));
    writer.blob(record.vecParameters);
    writer.tags({&record.setTags});
}

bool readRecords(ByteCursor& cursor, const CellList& list, std::vector<HarvestableRecord>& vecOut)
{
    return detail::readCellList(s_pKind, cursor, list, s_uMinBytes, vecOut, readCell);
}

bool readRecords(BitStream& stream, const PrefabList& list, std::vector<HarvestableRecord>& vecOut)
{
    return detail::readPrefabList(s_pKind, stream, list, s_uMinBytes, vecOut, readPrefab);
}

template <>
bool checkRecords<HarvestableRecord>(ByteCursor& cursor, const CellList& list, RecordEnds* pEnds)
{
    return detail::checkCellList<HarvestableRecord>(s_pKind, cursor, list, pEnds, readCell);
}

} // namespace tile
