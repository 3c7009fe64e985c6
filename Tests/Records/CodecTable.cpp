#include "Tests/Records/CodecTable.h"

#include "KestrelCommon/Tile/Records/AssetRecord.h"

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
void writeCell(ByteStream& stream, const std::vector<Record>& vecRecords)
{
    for (const Record& record : vecRecords)
        writeRecord(stream, record, CellPlace{});
}

template <class Record>
void writePrefab(BitStream& stream, const std::vector<Record>& vecRecords)
{
    for (const Record& record : vecRecords)
        writeRecord(stream, record);
}

template <class Record>
Codec cellCodec(const char* pName, uint32_t uFirstVersion, Layout (*fnSample)(Layout, uint32_t, uint32_t))
{
    Codec codec{pName, false, uFirstVersion, {}, {}, {}};
    codec.fnSample = [fnSample](uint32_t uLayout, uint32_t uContent)
    { return fnSample(Layout(false), uLayout, uContent); };
    codec.fnRewrite = [](std::span<const std::byte> spanBytes, uint32_t uVersion,
                         uint32_t uCount) -> std::optional<Bytes>
    {
        std::vector<Record> vecRecords(1);
        ByteCursor cursor(spanBytes);
        if (!readRecords(cursor, {uCount, uVersion, {}}, vecRecords))
        {
            require(vecRecords.size() == 1 && cursor.position() == 0);
            return std::nullopt;
        }
        vecRecords.erase(vecRecords.begin());
        ByteStream stream;
        writeCell(stream, vecRecords);
        return Bytes(stream.bytes().begin(), stream.bytes().end());
    };
    codec.fnCheck = [](std::span<const std::byte> spanBytes, uint32_t uVersion, uint32_t uCount)
    {
        ByteCursor cursor(spanBytes);
        RecordEnds vecEnds;
        const bool bGood =
            checkRecords(cursor, {uCount, uVersion, {}}, static_cast<const Record*>(nullptr), &vecEnds);
        require(bGood ? vecEnds.size() == uCount && (vecEnds.empty() || vecEnds.back() == cursor.position())
                      : cursor.position() == 0);
        return bGood;
    };
    return codec;
}

template <class Record>
Codec prefabCodec(const char* pName, uint32_t uFirstVersion, Layout (*fnSample)(Layout, uint32_t, uint32_t))
{
    Codec codec{pName, true, uFirstVersion, {}, {}, {}};
    codec.fnSample = [fnSample](uint32_t uLayout, uint32_t uContent)
    { return fnSample(Layout(true), uLayout, uContent); };
    codec.fnRewrite = [](std::span<const std::byte> spanBytes, uint32_t uVersion,
                         uint32_t uCount) -> std::optional<Bytes>
    {
        std::vector<Record> vecRecords(1);
        BitStream in(spanBytes.data(), spanBytes.size(), false);
        if (!readRecords(in, {uCount, uVersion, in.bitsUsed()}, vecRecords))
        {
            require(vecRecords.size() == 1 && in.readOffset() == 0);
            return std::nullopt;
        }
        vecRecords.erase(vecRecords.begin());
        BitStream out;
        writePrefab(out, vecRecords);
        return Bytes(out.bytes().begin(), out.bytes().end());
    };
    return codec;
}

// In both forms, with versions told by what they bring.
struct Brings
{
    bool bScales; ///< three of them
    bool bTags;
};

Layout& transform(Layout& layout, bool bScales, bool bContentScales)
{
    layout.floats({1.5f, -2.0f, 3.25f, 0.1f, 0.2f, 0.3f, 0.9f, 2.0f});
    if (bScales)
        bContentScales ? layout.floats({4.0f, 8.0f}) : layout.floats({2.0f, 2.0f});
    return layout;
}

Layout asset(Layout layout, uint32_t uLayout, uint32_t uContent)
{
    const bool bPrefab = layout.isBig();
    const auto brings = [&](uint32_t uVersion) -> Brings {
        return bPrefab ? Brings{uVersion >= 5, uVersion >= 9} : Brings{uVersion >= 5, uVersion >= 12};
    };
    const auto id = [&](uint8_t uFirst)
    {
        if (!bPrefab && uLayout < 4)
            layout.text8("Birch_01");
        else if (!bPrefab && uContent < 4)
            for (int i = 0; i < 16; ++i)
                layout.raw(0);
        else
            layout.uuid(uFirst);
    };
    transform(layout, brings(uLayout).bScales, brings(uContent).bScales);
    id(0x10);
    layout.value(uint8_t{2}).text8("Bark").value(0xFF332211u).text8("Leaf").value(0x80AABBCCu);
    if (brings(uLayout).bTags)
        brings(uContent).bTags ? layout.tags({"a", "tree"}) : layout.tags({});
    transform(layout, brings(uLayout).bScales, brings(uContent).bScales);
    id(0x80);
    layout.value(uint8_t{0});
    if (brings(uLayout).bTags)
        layout.tags({});
    return layout;
}

} // namespace

const std::vector<Codec>& codecs()
{
    static const std::vector<Codec> s_vecCodecs = {
        cellCodec<AssetRecord>("Asset", 1, asset),
        prefabCodec<AssetRecord>("PrefabAsset", 3, asset),
    };
    return s_vecCodecs;
}
