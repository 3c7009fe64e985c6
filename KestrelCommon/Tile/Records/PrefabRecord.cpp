#include "KestrelCommon/Tile/Records/PrefabRecord.h"

namespace tile
{

namespace
{

constexpr const char* s_pKind = "Prefab";
constexpr size_t s_uMinBytes = PlaceSize + sizeof(uint32_t) + 1 + sizeof(uint32_t);

bool readCell(CellFieldReader& reader, uint32_t uVersion, PrefabRecord& record)
{
    const bool bText = uVersion < VersionBlueprintTags;
    std::string sTags;
    if (!reader.transform(record.transform,
                          uVersion < VersionPrefabScale ? TransformForm::NoScale : TransformForm::Full) ||
        !reader.text32(record.sPath) || !(bText ? reader.text8(sTags) : reader.tags(record.setTags)) ||
        !reader.value(record.uFlags))
        return false;
    if (bText)
        record.setTags = splitTagText(sTags);
    return true;
}

bool readPrefab(PrefabFieldReader& reader, uint32_t uVersion, PrefabRecord& record)
{
    const bool bText = uVersion < PrefabVersionAllTags;
    std::string sTags;
    if (!reader.text32(record.sPath) ||
        !reader.transform(record.transform, uVersion < PrefabVersionScalePerAxis ? TransformForm::UniformScale
                                                                                 : TransformForm::Full) ||
        !(bText ? reader.text32(sTags) : reader.tags(record.setTags)) || !reader.value(record.uFlags))
        return false;
    if (bText)
        record.setTags = splitTagText(sTags);
    return true;
}

} // namespace

bool PrefabRecord::operator==(const PrefabRecord& other) const
{
    return equal(transform, other.transform) && sPath == other.sPath && setTags == other.setTags &&
           uFlags == other.uFlags;
}

void writeRecord(ByteStream& stream, const PrefabRecord& record, const CellPlace& place)
{
    CellFieldWriter writer(stream, TransformSize + sizeof(uint32_t) * 2 + record.sPath.size() + MaxTagBytes);
    writer.transform(record.transform, place.origin);
    writer.text32(record.sPath);
    writer.tags({&record.setTags, place.pInheritedTags});
    writer.value(record.uFlags);
}

void writeRecord(BitStream& stream, const PrefabRecord& record)
{
    PrefabFieldWriter writer(stream);
    writer.text32(record.sPath);
    writer.transform(record.transform);
    writer.tags({&record.setTags});
    writer.value(record.uFlags);
}

bool readRecords(ByteCursor& cursor, const CellList& list, std::vector<PrefabRecord>& vecOut)
{
    return detail::readCellList(s_pKind, cursor, list, s_uMinBytes, vecOut, readCell);
}

bool readRecords(BitStream& stream, const PrefabList& list, std::vector<PrefabRecord>& vecOut)
{
    return detail::readPrefabList(s_pKind, stream, list, s_uMinBytes, vecOut, readPrefab);
}

template <>
bool checkRecords<PrefabRecord>(ByteCursor& cursor, const CellList& list, RecordEnds* pEnds)
{
    return detail::checkCellList<PrefabRecord>(s_pKind, cursor, list, pEnds, readCell);
}

} // namespace tile
