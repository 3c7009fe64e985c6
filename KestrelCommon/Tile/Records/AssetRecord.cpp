#include "KestrelCommon/Tile/Records/AssetRecord.h"

namespace tile
{

namespace
{

constexpr const char* s_pKind = "Asset";
constexpr size_t s_uMinBytes = UniformTransformSize + 1 + 1; ///< with an empty name and no colours

// What the versions of both forms differ in.
struct Layout
{
    bool bUniformScale;
    bool bNamed;
    bool bTags;
};

template <class Reader>
bool readFields(Reader& reader, const Layout& layout, AssetRecord& record)
{
    return reader.transform(record.transform,
                            layout.bUniformScale ? TransformForm::UniformScale : TransformForm::Full) &&
           (layout.bNamed ? reader.text8(record.sOldName) : reader.uuid(record.uuid)) &&
           reader.colors(record.mapColors) && (!layout.bTags || reader.tags(record.setTags));
}

bool readCell(CellFieldReader& reader, uint32_t uVersion, AssetRecord& record)
{
    return readFields(reader,
                      {uVersion < VersionScalePerAxis, uVersion < VersionAssetUuid, uVersion >= VersionTags},
                      record);
}

} // namespace

bool AssetRecord::operator==(const AssetRecord& other) const
{
    return equal(transform, other.transform) && uuid == other.uuid && mapColors == other.mapColors &&
           setTags == other.setTags && sOldName == other.sOldName;
}

void writeRecord(ByteStream& stream, const AssetView& asset, const CellPlace& place)
{
    CellFieldWriter writer(stream, TransformSize + sizeof(Uuid) + MaxColorBytes + MaxTagBytes);
    writer.transform(asset.transform, place.origin);
    writer.value(asset.uuid);
    writer.colors(asset.mapColors);
    writer.tags({&asset.setTags, place.pInheritedTags});
}

void writeRecord(BitStream& stream, const AssetView& asset)
{
    PrefabFieldWriter writer(stream);
    writer.transform(asset.transform);
    writer.uuid(asset.uuid);
    writer.colors(asset.mapColors);
    writer.tags({&asset.setTags});
}

bool readRecords(ByteCursor& cursor, const CellList& list, std::vector<AssetRecord>& vecOut)
{
    return detail::readCellList(s_pKind, cursor, list, s_uMinBytes, vecOut, readCell);
}

bool readRecords(BitStream& stream, const PrefabList& list, std::vector<AssetRecord>& vecOut)
{
    return detail::readPrefabList(
        s_pKind, stream, list, s_uMinBytes, vecOut,
        [](PrefabFieldReader& reader, uint32_t uVersion, AssetRecord& record)
        {
            return readFields(
                reader, {uVersion < PrefabVersionScalePerAxis, false, uVersion >= PrefabVersionTags}, record);
        });
}

template <>
bool checkRecords<AssetRecord>(ByteCursor& cursor, const CellList& list, RecordEnds* pEnds)
{
    return detail::checkCellList<AssetRecord>(s_pKind, cursor, list, pEnds, readCell);
}

} // namespace tile
