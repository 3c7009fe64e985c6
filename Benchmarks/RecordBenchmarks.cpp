// The records of placed objects.

#include "Benchmarks/Harness.h"
#include "KestrelCommon/Tile/Records/AssetRecord.h"
#include "KestrelCommon/Tile/Records/SortedRecords.h"

#include <algorithm>
#include <random>

namespace
{

using namespace bench;
using tile::AssetRecord;

constexpr uint32_t s_uAssets = 50000;
constexpr glm::vec3 s_origin{64.0f, 128.0f, 0.0f};

std::vector<AssetRecord> someAssets()
{
    static constexpr const char* s_arrSlots[] = {"Bark", "Leaf", "Trim"};
    static constexpr const char* s_arrTags[] = {"spawn", "cave_entrance"};
    std::mt19937 random(7);
    std::uniform_real_distribution<float> place(0.0f, 64.0f);
    std::vector<AssetRecord> vecAssets(s_uAssets);
    for (AssetRecord& asset : vecAssets)
    {
        asset.transform.position = s_origin + glm::vec3(place(random), place(random), place(random));
        asset.transform.rotation = glm::quat(place(random), place(random), place(random), place(random));
        for (uint8_t& uByte : asset.uuid.bytes)
            uByte = static_cast<uint8_t>(random() % 4);
        for (uint32_t i = random() % 4; i > 0; --i)
            asset.mapColors.emplace(s_arrSlots[i - 1], random());
        for (uint32_t i = random() % 3; i > 0; --i)
            asset.setTags.emplace(s_arrTags[i - 1]);
    }
    return vecAssets;
}

/// Copies fields to where there is room.
struct Append
{
    std::byte* pPlace;

    template <class T>
    void value(const T& value)
    {
        bytes(&value, sizeof(T));
    }
    void bytes(const void* pData, size_t uBytes)
    {
        std::memcpy(pPlace, pData, uBytes);
        pPlace += uBytes;
    }
    void text(const std::string& sText)
    {
        value(static_cast<uint8_t>(sText.size()));
        bytes(sText.data(), sText.size());
    }
};

size_t appendAll(const std::vector<AssetRecord>& vecAssets, std::vector<std::byte>& vecOut)
{
    Append append{vecOut.data()};
    for (const AssetRecord& asset : vecAssets)
    {
        append.value(asset.transform.position - s_origin);
        append.value(asset.transform.rotation);
        append.value(asset.transform.scale);
        append.value(asset.uuid);
        append.value(static_cast<uint8_t>(asset.mapColors.size()));
        for (const auto& [sName, uColor] : asset.mapColors)
        {
            append.text(sName);
            append.value(uColor);
        }
        append.value(static_cast<uint8_t>(asset.setTags.size()));
        for (const std::string& sTag : asset.setTags)
            append.text(sTag);
    }
    return static_cast<size_t>(append.pPlace - vecOut.data());
}

void writeSorted(const std::vector<AssetRecord>& vecAssets, ByteStream& stream)
{
    stream.setPosition(0);
    tile::SortedRecords records(stream);
    for (const AssetRecord& asset : vecAssets)
    {
        tile::writeRecord(stream, asset, {s_origin});
        records.end();
    }
    records.finish();
}

int writing(std::vector<AssetRecord>& vecAssets)
{
    std::vector<std::byte> vecFloor(s_uAssets * 160);
    size_t uFloor = 0;
    ByteStream stream(s_uAssets * 160);
    const auto equal = [&] { return std::ranges::equal(std::span(vecFloor).first(uFloor), stream.bytes()); };
    const auto floorWork = [&] { uFloor = appendAll(vecAssets, vecFloor); };

    int iMissed = 0;
    const auto compare = [&](const char* pName, double fLimit, const std::function<void()>& fnProduct)
    {
        Comparison comparison;
        comparison.sName = pName;
        comparison.fLimit = fLimit;
        comparison.fnFloor = floorWork;
        comparison.fnProduct = fnProduct;
        if (fLimit > 0.0)
            comparison.fnEqual = equal;
        comparison.iRepeat = 5;
        iMissed += !run(comparison);
    };
    compare("writing 50,000 assets out of order", 0.0, [&] { writeSorted(vecAssets, stream); });
    compare("writing the records of 50,000 assets", 2.0,
            [&]
            {
                stream.setPosition(0);
                for (const AssetRecord& asset : vecAssets)
                    tile::writeRecord(stream, asset, {s_origin});
            });
    // Put in the order of their records, which is the one that they are read in.
    writeSorted(vecAssets, stream);
    vecAssets.clear();
    ByteCursor cursor(stream.bytes());
    iMissed += !tile::readRecords(cursor, {s_uAssets, tile::VersionCurrent, s_origin}, vecAssets);
    compare("writing 50,000 assets in order", 2.0, [&] { writeSorted(vecAssets, stream); });
    return iMissed;
}

/// An asset's values, ready to be put together.
struct Ready
{
    Transform transform;
    Uuid uuid;
    std::vector<std::pair<std::string_view, uint32_t>> vecColors;
    std::vector<std::string_view> vecTags;
};

int reading(const std::vector<AssetRecord>& vecAssets)
{
    ByteStream stream;
    std::vector<Ready> vecReady;
    vecReady.reserve(vecAssets.size());
    for (const AssetRecord& asset : vecAssets)
    {
        tile::writeRecord(stream, asset, {s_origin});
        vecReady.push_back({asset.transform,
                            asset.uuid,
                            {asset.mapColors.begin(), asset.mapColors.end()},
                            {asset.setTags.begin(), asset.setTags.end()}});
    }
    std::vector<AssetRecord> vecFloor;
    std::vector<AssetRecord> vecProduct;
    const tile::CellList list{s_uAssets, tile::VersionCurrent, s_origin};

    Comparison comparison;
    comparison.sName = "reading the records of 50,000 assets";
    comparison.fLimit = 2.0;
    comparison.fnBeforeFloor = [&] { vecFloor = {}; };
    comparison.fnFloor = [&]
    {
        vecFloor.reserve(vecReady.size());
        for (const Ready& ready : vecReady)
        {
            AssetRecord& asset = vecFloor.emplace_back();
            asset.transform = ready.transform;
            asset.uuid = ready.uuid;
            for (const auto& [sName, uColor] : ready.vecColors)
                asset.mapColors.emplace_hint(asset.mapColors.end(), sName, uColor);
            for (const std::string_view sTag : ready.vecTags)
                asset.setTags.emplace_hint(asset.setTags.end(), sTag);
        }
    };
    comparison.fnBeforeProduct = [&] { vecProduct = {}; };
    comparison.fnProduct = [&]
    {
        ByteCursor cursor(stream.bytes());
        if (!tile::readRecords(cursor, list, vecProduct))
            vecProduct.clear();
    };
    comparison.fnEqual = [&] { return vecFloor == vecProduct; };
    int iMissed = !run(comparison);

    Comparison check;
    check.sName = "checking the records of 50,000 assets";
    check.fnProduct = [&]
    {
        ByteCursor cursor(stream.bytes());
        const bool bGood = tile::checkRecords<AssetRecord>(cursor, list);
        keep(bGood);
    };
    check.iRepeat = 5;
    iMissed += !run(check);
    return iMissed;
}

const Registration s_registration(
    []
    {
        if (!isWanted("writing the records of 50,000 assets") &&
            !isWanted("reading the records of 50,000 assets"))
            return 0;
        std::vector<AssetRecord> vecAssets = someAssets();
        return writing(vecAssets) + reading(vecAssets);
    });

} // namespace
