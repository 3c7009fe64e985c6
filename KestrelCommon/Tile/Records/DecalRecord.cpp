#include "KestrelCommon/Tile/Records/DecalRecord.h"

namespace tile
{

namespace
{

constexpr const char* s_pKind = "Decal";
constexpr size_t s_uMinBytes = UniformTransformSize + sizeof(Uuid) + sizeof(uint32_t) * 2;

template <class Reader>
bool readFields(Reader& reader, TransformForm eForm, bool bTags, DecalRecord& record)
{
    return reader.transform(record.transform, eForm) && reader.uuid(record.decalId) &&
           reader.cellColor(record.uColor) && reader.value(record.uLayer) &&
           (!bTags || reader.tags(record.setTags));
}

bool readCell(CellFieldReader& reader, uint32_t uVersion, DecalRecord& record)
{
    return readFields(reader, TransformForm::Full, uVersion >= VersionTags, record);
}

bool readPrefab(PrefabFieldReader& reader, uint32_t uVersion, DecalRecord& record)
{
    return readFields(
        reader, uVersion < PrefabVersionScalePerAxis ? TransformForm::UniformScale : TransformForm::Full,
        uVersion >= PrefabVersionTags, record);
}

} // namespace

bool DecalRecord::operator==(const DecalRecord& other) const
{
    return equal(transform, other.transform) && decalId == other.decalId && uColor == other.uColor &&
           uLayer == other.uLayer && setTags == other.setTags;
}

void writeRecord(ByteStream& stream, const DecalRecord& record, const CellPlace& place)
{
    CellFieldWriter writer(stream, TransformSize + sizeof(Uuid) + sizeof(uint32_t) * 2 + MaxTagBytes);
    writer.transform(record.transform, place.origin);
    writer.value(record.decalId);
    writer.cellColor(record.uColor);
    writer.value(record.uLayer);
    writer.tags({&record.setTags, place.pInheritedTags});
}

void writeRecord(BitStream& stream, const DecalRecord& record)
{
    PrefabFieldWriter writer(stream);
    writer.transform(record.transform);
    writer.uuid(record.decalId);
    writer.cellColor(record.uColor);
    writer.value(record.uLayer);
    writer.tags({&record.setTags});
}

bool readRecords(ByteCursor& cursor, const CellList& list, std::vector<DecalRecord>& vecOut)
{
    return detail::readCellList(s_pKind, cursor, list, s_uMinBytes, vecOut, readCell);
}

bool readRecords(BitStream& stream, const PrefabList& list, std::vector<DecalRecord>& vecOut)
{
    return detail::readPrefabList(s_pKind, stream, list, s_uMinBytes, vecOut, readPrefab);
}

template <>
bool checkRecords<DecalRecord>(ByteCursor& cursor, const CellList& list, RecordEnds* pEnds)
{
    return detail::checkCellList<DecalRecord>(s_pKind, cursor, list, pEnds, readCell);
}

} // namespace tile
