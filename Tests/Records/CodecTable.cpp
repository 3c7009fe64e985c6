#include "Tests/Records/CodecTable.h"

#include "KestrelCommon/Tile/Records/AssetRecord.h"
#include "KestrelCommon/Tile/Records/BlueprintRecord.h"
#include "KestrelCommon/Tile/Records/DecalRecord.h"
#include "KestrelCommon/Tile/Records/HarvestableRecord.h"
#include "KestrelCommon/Tile/Records/NodeRecord.h"
#include "KestrelCommon/Tile/Records/PrefabRecord.h"
#include "KestrelCommon/Tile/Records/VoxelMeshRecord.h"
#include "KestrelCommon/Tile/Records/VoxelTerrainRecord.h"

#include <cstdlib>

namespace
{

using namespace tile;

void require(bool bHolds)
{
    if (!bHolds)
        std::abort();
}

template <class Record>
void writeList(ByteStream& stream, const std::vector<Record>& vecRecords)
{
    if constexpr (std::is_same_v<Record, NodeRecord>)
        writeNodeSection(stream, vecRecords, {});
    else
        for (const Record& record : vecRecords)
            writeRecord(stream, record, CellPlace{});
}

template <class Record>
void writeList(BitStream& stream, const std::vector<Record>& vecRecords)
{
    if constexpr (std::is_same_v<Record, NodeRecord>)
        writeNodeSection(stream, vecRecords);
    else
        for (const Record& record : vecRecords)
            writeRecord(stream, record);
}

using Sample = void (*)(Layout&, uint32_t uLayout, uint32_t uContent);

template <class Record>
Codec cellCodec(const char* pName, uint32_t uFirstVersion, Sample fnSample)
{
    Codec codec{pName, false, uFirstVersion, {}, {}, {}};
    codec.fnSample = [fnSample](uint32_t uLayout, uint32_t uContent)
    {
        Layout layout(false);
        fnSample(layout, uLayout, uContent);
        return layout;
    };
    codec.fnRewrite = [](const Packed& packed, uint32_t uVersion, uint32_t uCount) -> std::optional<Packed>
    {
        std::vector<Record> vecRecords(1);
        ByteCursor cursor(packed.vecBytes);
        if (!readRecords(cursor, {uCount, uVersion, {}}, vecRecords))
        {
            require(vecRecords.size() == 1 && cursor.position() == 0);
            return std::nullopt;
        }
        vecRecords.erase(vecRecords.begin());
        ByteStream stream;
        writeList(stream, vecRecords);
        return Packed(stream.bytes());
    };
    codec.fnCheck = [](const Packed& packed, uint32_t uVersion, uint32_t uCount)
    {
        ByteCursor cursor(packed.vecBytes);
        RecordEnds vecEnds;
        const bool bGood = checkRecords<Record>(cursor, {uCount, uVersion, {}}, &vecEnds);
        require(bGood ? vecEnds.size() == uCount && (vecEnds.empty() || vecEnds.back() == cursor.position())
                      : cursor.position() == 0);
        return bGood;
    };
    return codec;
}

template <class Record>
Codec prefabCodec(const char* pName, uint32_t uFirstVersion, Sample fnSample)
{
    Codec codec{pName, true, uFirstVersion, {}, {}, {}};
    codec.fnSample = [fnSample](uint32_t uLayout, uint32_t uContent)
    {
        Layout layout(true);
        fnSample(layout, uLayout, uContent);
        return layout;
    };
    codec.fnRewrite = [](const Packed& packed, uint32_t uVersion, uint32_t uCount) -> std::optional<Packed>
    {
        std::vector<Record> vecRecords(1);
        BitStream in(packed.vecBytes.data(), packed.vecBytes.size(), false);
        if (!readRecords(in, {uCount, uVersion, packed.uBits}, vecRecords))
        {
            require(vecRecords.size() == 1 && in.readOffset() == 0);
            return std::nullopt;
        }
        vecRecords.erase(vecRecords.begin());
        BitStream out;
        writeList(out, vecRecords);
        Packed written(out.bytes());
        written.uBits = out.bitsUsed();
        return written;
    };
    return codec;
}

constexpr std::initializer_list<float> s_listPlace = {1.5f, -2.0f, 3.25f, 0.1f, 0.2f, 0.3f, 0.9f};

// A layout writes three scales, one or none; the content knows as many.
enum class Scales : uint8_t
{
    None,
    One,
    Three,
};

void transform(Layout& layout, Scales eLayout, Scales eContent)
{
    layout.floats(s_listPlace);
    const bool bOne = eContent == Scales::One;
    if (eLayout == Scales::One)
        layout.floats({2.0f});
    else if (eLayout == Scales::Three && eContent == Scales::None)
        layout.floats({1.0f, 1.0f, 1.0f});
    else if (eLayout == Scales::Three)
        layout.floats({2.0f, bOne ? 2.0f : 4.0f, bOne ? 2.0f : 8.0f});
}

void full(Layout& layout)
{
    transform(layout, Scales::Three, Scales::Three);
}

void tags(Layout& layout, bool bLayout, bool bContent)
{
    if (bLayout)
        bContent ? layout.tags({"a", "tree"}) : layout.tags({});
}

void asset(Layout& layout, uint32_t uLayout, uint32_t uContent)
{
    const bool bPrefab = layout.isBig();
    const auto scales = [](uint32_t uVersion) { return uVersion >= 5 ? Scales::Three : Scales::One; };
    const auto id = [&](uint8_t uFirst)
    {
        if (!bPrefab && uLayout < 4)
            layout.text8("Birch_01");
        else if (!bPrefab && uContent < 4)
            layout.text(std::string(16, '\0'));
        else
            layout.uuid(uFirst);
    };
    const uint32_t uTags = bPrefab ? 9 : 12;
    transform(layout, scales(uLayout), scales(uContent));
    id(0x10);
    layout.value(uint8_t{0});
    tags(layout, uLayout >= uTags, false);
    transform(layout, scales(uLayout), scales(uContent));
    id(0x80);
    layout.value(uint8_t{2}).text8("Bark").value(0xFF332211u).text8("Leaf").value(0x80AABBCCu);
    tags(layout, uLayout >= uTags, uContent >= uTags);
}

void blueprint(Layout& layout, uint32_t uLayout, uint32_t uContent)
{
    for (const char* pText : {"?JB:{}", "$GAME_DATA/Blueprints/Hut.blueprint"})
    {
        if (layout.isBig())
        {
            layout.text32(pText).floats(s_listPlace).value(int32_t{-7});
            tags(layout, uLayout >= 10, uContent >= 10);
            continue;
        }
        layout.floats(s_listPlace);
        uLayout >= 7 ? layout.text32(pText) : layout.text8(pText);
        tags(layout, uLayout >= 13, uContent >= 13);
    }
}

void prefab(Layout& layout, uint32_t uLayout, uint32_t uContent)
{
    const bool bPrefab = layout.isBig();
    const auto scales = [&](uint32_t uVersion)
    {
        if (bPrefab)
            return uVersion >= 5 ? Scales::Three : Scales::One;
        return uVersion >= 9 ? Scales::Three : Scales::None;
    };
    for (const uint32_t uFlags : {0u, 0x80000002u})
    {
        if (!bPrefab)
            transform(layout, scales(uLayout), scales(uContent));
        layout.text32("$GAME_DATA/Prefabs/House.prefab");
        if (bPrefab)
            transform(layout, scales(uLayout), scales(uContent));
        if (uLayout >= (bPrefab ? 10 : 13))
            layout.tags({"a", "tree"});
        else
            bPrefab ? layout.text32("tree, a;tree ") : layout.text8("tree, a;tree ");
        layout.value(uFlags);
    }
}

void harvestable(Layout& layout, uint32_t uLayout, uint32_t uContent)
{
    const uint32_t uParameters = layout.isBig() ? 7 : 10;
    const uint32_t uTags = layout.isBig() ? 9 : 12;
    for (uint8_t i = 0; i < 2; ++i)
    {
        full(layout);
        layout.uuid(i).raw(0x11).raw(0x22).raw(0x33).raw(0x44);
        if (uLayout >= uParameters)
            layout.text32(uContent >= uParameters && i == 0 ? "LUA and more" : "");
        tags(layout, uLayout >= uTags, uContent >= uTags);
    }
}

void decal(Layout& layout, uint32_t uLayout, uint32_t uContent)
{
    const auto scales = [&](uint32_t uVersion)
    { return layout.isBig() && uVersion < 5 ? Scales::One : Scales::Three; };
    const uint32_t uTags = layout.isBig() ? 9 : 12;
    for (uint8_t i = 0; i < 2; ++i)
    {
        transform(layout, scales(uLayout), scales(uContent));
        layout.uuid(i).raw(0x11).raw(0x22).raw(0x33).raw(0x44).value(uint32_t{5});
        tags(layout, uLayout >= uTags, uContent >= uTags);
    }
}

void node(Layout& layout, uint32_t, uint32_t)
{
    layout.tags({"CAMERA", "Connectable"});
    full(layout);
    layout.value(uint8_t{1}).value(uint8_t{0}).text32("");
    full(layout);
    layout.value(uint8_t{2}).value(uint8_t{1}).value(uint8_t{0}).text32("LUA");
}

void voxelMesh(Layout& layout, uint32_t, uint32_t)
{
    for (uint8_t i = 0; i < 2; ++i)
    {
        full(layout);
        layout.uuid(i).value(int32_t{-1000}).value(uint32_t{2});
        layout.isBig() ? layout.bit(i == 1) : layout.raw(i);
        layout.value(uint32_t{3});
    }
}

void voxelTerrain(Layout& layout, uint32_t, uint32_t)
{
    for (const char c : {'a', 'b'})
        layout.value(int32_t{-3}).value(int32_t{2}).value(int32_t{-9}).text(std::string(4096, c));
}

} // namespace

const std::vector<Codec>& codecs()
{
    static const std::vector<Codec> s_vecCodecs = {
        cellCodec<AssetRecord>("Asset", 1, asset),
        cellCodec<BlueprintRecord>("Blueprint", 1, blueprint),
        cellCodec<PrefabRecord>("Prefab", 7, prefab),
        cellCodec<HarvestableRecord>("Harvestable", 1, harvestable),
        cellCodec<DecalRecord>("Decal", 8, decal),
        cellCodec<NodeRecord>("Node", 6, node),
        cellCodec<VoxelMeshRecord>("VoxelMesh", 12, voxelMesh),
        cellCodec<VoxelTerrainRecord>("VoxelTerrain", 12, voxelTerrain),
        prefabCodec<AssetRecord>("PrefabAsset", 3, asset),
        prefabCodec<BlueprintRecord>("PrefabBlueprint", 1, blueprint),
        prefabCodec<PrefabRecord>("PrefabPrefab", 1, prefab),
        prefabCodec<HarvestableRecord>("PrefabHarvestable", 6, harvestable),
        prefabCodec<DecalRecord>("PrefabDecal", 4, decal),
        prefabCodec<NodeRecord>("PrefabNode", 1, node),
        prefabCodec<VoxelMeshRecord>("PrefabVoxelMesh", 8, voxelMesh),
    };
    return s_vecCodecs;
}

const Codec& codec(std::string_view sName)
{
    const auto it = std::ranges::find(codecs(), sName, &Codec::sName);
    require(it != codecs().end());
    return *it;
}
