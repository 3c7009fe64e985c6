#include "KestrelCommon/Tile/Records/BlueprintRecord.h"

namespace tile
{

namespace
{

constexpr const char* s_pKind = "Blueprint";
constexpr size_t s_uMinBytes = PlaceSize + 1;

bool readCell(CellFieldReader& reader, uint32_t uVersion, BlueprintRecord& record)
{
    return reader.transform(record.transform, TransformForm::NoScale) &&
           (uVersion < VersionPrefabs ? reader.text8(record.sPathOrJson)
                                      : reader.text32(record.sPathOrJson)) &&
           (uVersion < VersionBlueprintTags || reader.tags(record.setTags));
}

bool readPrefab(PrefabFieldReader& reader, uint32_t uVersion, BlueprintRecord& record)
{
    return reader.text32(record.sPathOrJson) && reader.transform(record.transform, TransformForm::NoScale) &&
           reader.value(record.iSortingIndex) &&
           (uVersion < PrefabVersionAllTags || reader.tags(record.setTags));
}

} // namespace

bool BlueprintRecord::operator==(const BlueprintRecord& other) const
{
    return equal(transform, other.transform) && sPathOrJson == other.sPathOrJson &&
           iSortingIndex == other.iSortingIndex && setTags == other.setTags;
}

void writeRecord(ByteStream& stream, const BlueprintRecord& record, const CellPlace& place)
{
    CellFieldWriter writer(stream, PlaceSize + sizeof(uint32_t) + record.sPathOrJson.size() + MaxTagBytes);
    writer.place(record.transform, place.origin);
    writer.text32(record.sPathOrJson);
    writer.tags({&record.setTags, place.pInheritedTags});
}

void writeRecord(BitStream& stream, const BlueprintRecord& record)
{
    PrefabFieldWriter writer(stream);
    writer.text32(record.sPathOrJson);
    writer.place(record.transform);
    writer.value(record.iSortingIndex);
    writer.tags({&record.setTags});
}

bool readRecords(ByteCursor& cursor, const CellList& list, std::vector<BlueprintRecord>& vecOut)
{
    return detail::readCellList(s_pKind, cursor, list, s_uMinBytes, vecOut, readCell);
}

bool readRecords(BitStream& stream, const PrefabList& list, std::vector<BlueprintRecord>& vecOut)
{
    return detail::readPrefabList(s_pKind, stream, list, s_uMinBytes, vecOut, readPrefab);
}

template <>
bool checkRecords<BlueprintRecord>(ByteCursor& cursor, const CellList& list, RecordEnds* pEnds)
{
    return detail::checkCellList<BlueprintRecord>(s_pKind, cursor, list, pEnds, readCell);
}

void separatePrefabs(uint32_t uVersion, std::vector<BlueprintRecord>& vecBlueprints,
                     std::vector<PrefabRecord>& vecPrefabs)
{
    if (uVersion != VersionPrefabsAmongBlueprints)
        return;
    std::erase_if(vecBlueprints,
                  [&](BlueprintRecord& record)
                  {
                      if (!record.sPathOrJson.ends_with(".prefab"))
                          return false;
                      vecPrefabs.push_back({record.transform, std::move(record.sPathOrJson), {}, 0});
                      return true;
                  });
}

} // namespace tile
