// What the records of a kind mean, and what all share.

#include "KestrelCommon/Tile/Records/AssetRecord.h"
#include "KestrelCommon/Tile/Records/BlueprintRecord.h"
#include "KestrelCommon/Tile/Records/DecalRecord.h"
#include "KestrelCommon/Tile/Records/HarvestableRecord.h"
#include "KestrelCommon/Tile/Records/NodeRecord.h"
#include "KestrelCommon/Tile/Records/SortedRecords.h"
#include "KestrelCommon/Tile/Records/VoxelMeshRecord.h"
#include "Tests/Records/CodecTable.h"
#include "Tests/Support/LogCapture.h"

#include <gtest/gtest.h>
#include <random>

namespace
{

using namespace tile;

template <class Record>
std::vector<Record> read(std::span<const std::byte> spanBytes, const CellList& list)
{
    std::vector<Record> vecRecords;
    ByteCursor cursor(spanBytes);
    EXPECT_TRUE(readRecords(cursor, list, vecRecords));
    EXPECT_EQ(cursor.remaining(), 0u);
    return vecRecords;
}

std::string sample(std::string_view sCodec, uint32_t uVersion)
{
    const Packed packed = codec(sCodec).fnSample(uVersion, uVersion);
    return {reinterpret_cast<const char*>(packed.vecBytes.data()), packed.vecBytes.size()};
}

template <class Record>
std::vector<Record> readSample(std::string_view sCodec, uint32_t uVersion)
{
    const std::string sBytes = sample(sCodec, uVersion);
    return read<Record>(std::as_bytes(std::span(sBytes)), {SampleCount, uVersion, {}});
}

TEST(Records, coloursKeepTheOrderOfTheirKind)
{
    EXPECT_EQ(readSample<HarvestableRecord>("Harvestable", 13)[0].uColor, 0x11223344u);
    EXPECT_EQ(readSample<DecalRecord>("Decal", 13)[0].uColor, 0x44332211u);
    EXPECT_EQ(readSample<AssetRecord>("Asset", 13)[1].mapColors.find("Bark")->second, 0xFF332211u);
    const std::string sPrefab = sample("PrefabHarvestable", 10);
    BitStream stream(sPrefab.data(), sPrefab.size(), false);
    std::vector<HarvestableRecord> vecRecords;
    ASSERT_TRUE(readRecords(stream, {SampleCount, 10, stream.bitsUsed()}, vecRecords));
    EXPECT_EQ(vecRecords[1].uColor, 0x11223344u);
}

TEST(Records, oldAssetsKeepTheirNames)
{
    const auto vecAssets = readSample<AssetRecord>("Asset", 3);
    EXPECT_EQ(vecAssets[0].sOldName, "Birch_01");
    EXPECT_TRUE(vecAssets[0].uuid.isNil());
    EXPECT_EQ(vecAssets[0].transform.scale, glm::vec3(2.0f));
}

TEST(Records, positionsInACellComeBackExactly)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<float> place(0.0f, 64.0f);
    for (int i = 0; i < 500; ++i)
    {
        AssetRecord asset;
        const glm::vec3 origin(static_cast<float>(random() % 16 * 64), static_cast<float>(random() % 16 * 64),
                               0.0f);
        asset.transform.position = origin + glm::vec3(place(random), place(random), place(random));
        ByteStream stream;
        writeRecord(stream, asset, CellPlace{origin});
        EXPECT_EQ(read<AssetRecord>(stream.bytes(), {1, VersionCurrent, origin})[0], asset);
    }
    // What is read must be written as the same bytes again.
    AssetRecord asset;
    asset.transform.position = glm::vec3(-0.0f);
    ByteStream first;
    writeRecord(first, asset, {});
    ByteStream second;
    writeRecord(second, read<AssetRecord>(first.bytes(), {1})[0], {});
    EXPECT_TRUE(std::ranges::equal(first.bytes(), second.bytes()));
}

TEST(Records, inheritedTagsJoinTheOwnOnes)
{
    DecalRecord decal;
    decal.setTags = {"b", "d", "own"};
    const TagSet setInherited = {"a", "b", "", "z"};
    ByteStream stream;
    writeRecord(stream, decal, {glm::vec3(0.0f), &setInherited});
    EXPECT_EQ(read<DecalRecord>(stream.bytes(), {1})[0].setTags, (TagSet{"a", "b", "d", "own", "z"}));
}

TEST(Records, whatHasNoStoredFormIsLeftOut)
{
    AssetRecord asset;
    asset.setTags = {"", std::string(255, 'm'), std::string(256, 'n')};
    asset.mapColors = {{"", 1}, {std::string(256, 'c'), 2}};
    for (int i = 0; i < 300; ++i)
    {
        asset.setTags.insert(std::to_string(i));
        asset.mapColors.emplace(std::to_string(i), i);
    }
    ByteStream stream;
    writeRecord(stream, asset, {});
    BitStream bits;
    writeRecord(bits, asset);
    std::vector<AssetRecord> vecRecords = read<AssetRecord>(stream.bytes(), {1});
    ASSERT_TRUE(readRecords(bits, {1, PrefabVersionCurrent, bits.bitsUsed()}, vecRecords));
    EXPECT_EQ(vecRecords[0], vecRecords[1]);
    EXPECT_EQ(vecRecords[0].setTags.size(), 255u);
    EXPECT_EQ(vecRecords[0].mapColors.size(), 255u);
    EXPECT_EQ(vecRecords[0].mapColors.count(""), 1u);
    EXPECT_EQ(vecRecords[0].setTags.count(std::string(256, 'n')), 0u);

    LogCapture log;
    NodeRecord node;
    node.vecTags.assign(asset.setTags.begin(), asset.setTags.end());
    ByteStream nodes;
    writeNodeSection(nodes, std::span(&node, 1), {});
    EXPECT_EQ(read<NodeRecord>(nodes.bytes(), {1})[0].vecTags.size(), 255u);
    EXPECT_EQ(log.warnings(), 1u);
}

TEST(Records, tagTextsAreSplitAtBlanksCommasAndSemicolons)
{
    EXPECT_EQ(splitTagText(" one,two;;three  two "), (TagSet{"one", "three", "two"}));
    EXPECT_TRUE(splitTagText(" ,;").empty());
}

TEST(Records, prefabsAmongTheBlueprintsOfOneVersionAreTakenOut)
{
    for (const uint32_t uVersion : {5u, 6u, 7u})
    {
        std::vector<BlueprintRecord> vecBlueprints(3);
        vecBlueprints[0].sPathOrJson = "$GAME_DATA/A.prefab";
        vecBlueprints[1].sPathOrJson = "$GAME_DATA/A.blueprint";
        vecBlueprints[2].sPathOrJson = "$GAME_DATA/B.prefab";
        std::vector<PrefabRecord> vecPrefabs;
        separatePrefabs(uVersion, vecBlueprints, vecPrefabs);
        EXPECT_EQ(vecBlueprints.size(), uVersion == 6 ? 1u : 3u);
        ASSERT_EQ(vecPrefabs.size(), uVersion == 6 ? 2u : 0u);
        if (uVersion == 6)
            EXPECT_EQ(vecPrefabs[1].sPath, "$GAME_DATA/B.prefab");
    }
}

/// A voxel mesh section behind other bits of its file.
struct VoxelFlagTest : testing::TestWithParam<std::tuple<int, bool>>
{
};

TEST_P(VoxelFlagTest, hasOneBitOrEightAsTheSectionsSizeSays)
{
    const auto [iBitsBefore, bByte] = GetParam();
    Layout layout(true);
    for (int i = 0; i < iBitsBefore; ++i)
        layout.bit(true);
    const uint32_t uStart = layout.bits();
    for (uint8_t i = 0; i < 3; ++i)
    {
        layout.floats({1, 2, 3, 0, 0, 0, 1, 1, 1, 1}).uuid(i).value(int32_t{i}).value(uint32_t{1});
        bByte ? layout.raw(i == 1) : layout.bit(i == 1);
        layout.value(uint32_t{4});
    }
    const uint32_t uBits = layout.bits() - uStart;
    BitStream stream(layout.bytes().data(), layout.bytes().size(), false);
    ASSERT_TRUE(stream.setReadOffset(uStart));
    std::vector<VoxelMeshRecord> vecRecords;
    ASSERT_TRUE(readRecords(stream, {3, PrefabVersionCurrent, uBits}, vecRecords));
    EXPECT_EQ(stream.readOffset(), uStart + uBits);
    for (uint8_t i = 0; i < 3; ++i)
    {
        EXPECT_EQ(vecRecords[i].uuid.bytes[0], i);
        EXPECT_EQ(vecRecords[i].bSubtractive, i == 1);
        EXPECT_EQ(vecRecords[i].uBlurMode, 4u);
    }
    LogCapture log;
    ASSERT_TRUE(stream.setReadOffset(uStart));
    EXPECT_FALSE(readRecords(stream, {3, PrefabVersionCurrent, uBits - 1}, vecRecords));
    EXPECT_EQ(log.errors(), 1u);
    EXPECT_EQ(vecRecords.size(), 3u);
}

INSTANTIATE_TEST_SUITE_P(All, VoxelFlagTest, testing::Combine(testing::Values(0, 3, 8), testing::Bool()));

TEST(SortedRecords, equalContentGivesEqualBytesInAnyOrder)
{
    std::mt19937 random(4);
    std::vector<std::string> vecRecords = {"", "a", "ab", "abcdefgh", "abcdefgh", "abcdefghi", "abcdefgz"};
    for (int i = 0; i < 200; ++i)
        vecRecords.push_back("record" + std::to_string(random() % 100));
    std::vector<std::string> vecWanted = vecRecords;
    std::ranges::sort(vecWanted);
    std::string sWanted = "before";
    for (const std::string& sRecord : vecWanted)
        sWanted += sRecord;
    for (int iRun = 0; iRun < 20; ++iRun)
    {
        ByteStream stream;
        stream.write("before", 6);
        SortedRecords records(stream);
        for (const std::string& sRecord : iRun == 0 ? vecWanted : vecRecords)
        {
            stream.write(sRecord.data(), sRecord.size());
            records.end();
        }
        EXPECT_EQ(records.finish(), vecRecords.size());
        EXPECT_EQ(std::string(reinterpret_cast<const char*>(stream.data()), stream.size()), sWanted);
        std::ranges::shuffle(vecRecords, random);
    }
}

TEST(SortedRecords, nodesAreWrittenInTheOrderOfTheirBytes)
{
    std::vector<NodeRecord> vecNodes(5);
    for (size_t i = 0; i < vecNodes.size(); ++i)
    {
        vecNodes[i].transform.position.x = static_cast<float>(i * 7 % 5);
        vecNodes[i].vecTags = {"t" + std::to_string(i * 3 % 5), "all"};
    }
    ByteStream first;
    writeNodeSection(first, vecNodes, {});
    std::ranges::reverse(vecNodes);
    ByteStream second;
    writeNodeSection(second, vecNodes, {});
    EXPECT_TRUE(std::ranges::equal(first.bytes(), second.bytes()));
    const auto vecRead = read<NodeRecord>(first.bytes(), {5});
    for (const NodeRecord& node : vecRead)
        EXPECT_NE(std::ranges::find(vecNodes, node), vecNodes.end());
}

} // namespace
