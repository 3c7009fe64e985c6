#pragma once // A placed asset as it is stored.

#include "KestrelCommon/Tile/Records/RecordList.h"

namespace tile
{

struct AssetRecord
{
    Transform transform;
    Uuid uuid; ///< nil when the record has a name instead
    ColorMap mapColors;
    TagSet setTags;
    std::string sOldName; ///< of records before VersionAssetUuid, to be looked up

    bool operator==(const AssetRecord&) const;
};

/// What the writer needs of an asset, wherever it is kept. Borrowed.
struct AssetView
{
    AssetView(const Transform& transform_, const Uuid& uuid_, const ColorMap& mapColors_,
              const TagSet& setTags_)
        : transform(transform_),
          uuid(uuid_),
          mapColors(mapColors_),
          setTags(setTags_)
    {
    }
    // NOLINTNEXTLINE(google-explicit-constructor)
    AssetView(const AssetRecord& record)
        : AssetView(record.transform, record.uuid, record.mapColors, record.setTags)
    {
    }

    const Transform& transform;
    const Uuid& uuid;
    const ColorMap& mapColors;
    const TagSet& setTags;
};

void writeRecord(ByteStream& stream, const AssetView& asset, const CellPlace& place);
void writeRecord(BitStream& stream, const AssetView& asset);
[[nodiscard]] bool readRecords(ByteCursor& cursor, const CellList& list, std::vector<AssetRecord>& vecOut);
[[nodiscard]] bool readRecords(BitStream& stream, const PrefabList& list, std::vector<AssetRecord>& vecOut);
template <>
bool checkRecords<AssetRecord>(ByteCursor& cursor, const CellList& list, RecordEnds* pEnds);

} // namespace tile
