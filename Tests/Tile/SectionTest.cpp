#include "KestrelCommon/Tile/ClutterDatabase.h"
#include "KestrelCommon/Tile/SectionTable.h"
#include "KestrelCommon/Tile/SurfaceSection.h"
#include "Tests/Support/LogCapture.h"

#include <gtest/gtest.h>

namespace
{

/// A grid of 2 x 1 cells whose samples tell their place.
struct NumberedGrids
{
    NumberedGrids()
    {
        for (size_t i = 0; i < vecHeights.size(); ++i)
        {
            vecHeights[i] = static_cast<float>(i);
            vecColors[i] = {static_cast<float>(i % 256) / 255.0f + 1e-5f, 0.5f, 0.25f, 1.0f};
        }
        for (size_t i = 0; i < vecTexels0.size(); ++i)
        {
            vecTexels0[i] = static_cast<uint32_t>(i);
            vecTexels1[i] = static_cast<uint32_t>(i) * 3 + 1;
        }
    }
    [[nodiscard]] tile::SurfaceGridView view() const
    {
        return {2, 1, vecHeights, vecColors, vecTexels0, vecTexels1};
    }

    std::vector<float> vecHeights = std::vector<float>(65 * 33);
    std::vector<tile::ColorValue> vecColors = std::vector<tile::ColorValue>(65 * 33);
    std::vector<uint32_t> vecTexels0 = std::vector<uint32_t>(129 * 65);
    std::vector<uint32_t> vecTexels1 = std::vector<uint32_t>(129 * 65);
};

template <class T>
T at(const std::vector<std::byte>& vecBytes, size_t uOffset)
{
    T value;
    std::memcpy(&value, vecBytes.data() + uOffset, sizeof(value));
    return value;
}

struct MipTest : testing::TestWithParam<int>
{
};

TEST_P(MipTest, dropsSamplesWithoutFilteringAndKeepsTheFarEdge)
{
    constexpr size_t arrSizes[] = {42512, 11024, 2960, 848, 272, 104};
    const NumberedGrids grids;
    const size_t uStep = size_t{1} << GetParam();
    std::vector<std::byte> vecSection(arrSizes[GetParam()]);
    ASSERT_TRUE(tile::writeSurfaceSection(grids.view(), 1, 0, GetParam(), vecSection));
    const size_t uSide = 32 / uStep + 1;
    const size_t uGround = 64 / uStep + 1;
    for (size_t j = 0; j < uSide; ++j)
        for (size_t i = 0; i < uSide; ++i)
        {
            const size_t uPlace = j * uStep * 65 + 32 + i * uStep;
            ASSERT_EQ(at<float>(vecSection, (j * uSide + i) * 8), static_cast<float>(uPlace));
            ASSERT_EQ(at<uint32_t>(vecSection, (j * uSide + i) * 8 + 4), 0xFF3F7F00u | uPlace % 256);
        }
    for (size_t j = 0; j < uGround; ++j)
        for (size_t i = 0; i < uGround; ++i)
        {
            const auto uPlace = static_cast<uint32_t>(j * uStep * 129 + 64 + i * uStep);
            ASSERT_EQ(at<uint32_t>(vecSection, (uSide * uSide + j * uGround + i) * 8), uPlace);
            ASSERT_EQ(at<uint32_t>(vecSection, (uSide * uSide + j * uGround + i) * 8 + 4), uPlace * 3 + 1);
        }
    EXPECT_FALSE(tile::writeSurfaceSection(grids.view(), 2, 0, GetParam(), vecSection));
    EXPECT_FALSE(tile::writeSurfaceSection(grids.view(), 0, 0, GetParam(), std::span(vecSection).subspan(1)));
}

INSTANTIATE_TEST_SUITE_P(All, MipTest, testing::Range(0, 6));

TEST(ColorPack, everyByteComesBackAndHighValuesAreMasked)
{
    for (uint32_t i = 0; i < 256; ++i)
    {
        const uint32_t uWord = i | (255 - i) << 8 | (i ^ 0x55) << 16 | i << 24;
        EXPECT_EQ(tile::packColor(tile::unpackColor(uWord)), uWord);
    }
    EXPECT_EQ(tile::packColor({1.1f, 0.999f, -0.1f, 2.0f}), 0xFEu << 24 | 0xE7u << 16 | 254u << 8 | 24u);
}

TEST(SectionTable, namesEveryFieldOfACellHeaderOnce)
{
    std::array<int, 97> arrSeen{};
    for (const tile::SectionGroupInfo& group : tile::sectionGroups())
    {
        EXPECT_EQ(&tile::sectionGroup(group.eGroup), &group);
        for (uint32_t i = 0; i < group.uElements; ++i)
        {
            tile::CellHeader header{};
            tile::setSection(header, group, i, {1, 2, 3, 4});
            uint32_t arrWords[97];
            std::memcpy(arrWords, &header, sizeof(arrWords));
            for (size_t k = 0; k < 97; ++k)
                arrSeen[k] += arrWords[k] != 0;
            const tile::Section section = tile::section(header, group, i);
            EXPECT_EQ(section.uCount + section.uIndex * 10 + section.uCompressedSize * 100 +
                          section.uSize * 1000,
                      4321u)
                << group.pName;
            tile::setSection(header, group, i, {0, 2, 3, 4});
            const tile::CellHeader empty{};
            EXPECT_EQ(std::memcmp(&header, &empty, sizeof(header)), 0) << group.pName;
        }
    }
    EXPECT_EQ(std::ranges::count(arrSeen, 1), 97);
}

struct ClutterSectionTest : testing::Test
{
    ClutterSectionTest()
    {
        database.loadText(R"({"clutterList":[{"uuid":"00000000-0000-4000-8000-000000000001"},
        {"uuid":"00000000-0000-4000-8000-000000000002"}]})",
                          "two");
    }

    LogCapture log;
    tile::ClutterDatabase database;
    std::vector<uint8_t> vecSamples = std::vector<uint8_t>(tile::SamplesPerPatch, tile::EmptyClutter);
    tile::ClutterSamples samples{std::span(vecSamples).first<tile::SamplesPerPatch>()};
    bool bNoTypes = false;
};

TEST_F(ClutterSectionTest, holdsATableOfWhatOccursAndTheSamples)
{
    ByteStream empty;
    tile::writeClutterSection(empty, samples, database.lookUp());
    EXPECT_EQ(empty.size(), 16385u);
    EXPECT_EQ(empty.data()[0], std::byte{0});

    vecSamples[5] = 1;
    vecSamples[9] = 200; // beyond the table
    ByteStream stream;
    tile::writeClutterSection(stream, samples, database.lookUp());
    ASSERT_EQ(stream.size(), 1u + 2 * 17 + 16384);
    EXPECT_EQ(stream.data()[0], std::byte{2});
    EXPECT_EQ(stream.data()[1], std::byte{1});
    EXPECT_EQ(std::memcmp(stream.data() + 2, &database.types()[1].uuid, 16), 0);
    EXPECT_EQ(stream.data()[18], std::byte{200});
    EXPECT_EQ(stream.data()[35 + 5], std::byte{1});
    EXPECT_EQ(stream.data()[35 + 6], std::byte{255});

    std::vector<uint8_t> vecBack(tile::SamplesPerPatch);
    ASSERT_TRUE(tile::readClutterSection(
        stream.bytes(), 13, database.lookUp(),
        tile::ClutterSamples(std::span(vecBack).first<tile::SamplesPerPatch>()), bNoTypes));
    EXPECT_EQ(vecBack, vecSamples);
}

TEST_F(ClutterSectionTest, typesAreFoundByIdentityWhateverTheirIndexWas)
{
    tile::ClutterDatabase other;
    other.loadText(R"({"clutterList":[{"uuid":"00000000-0000-4000-8000-0000000000ff"},
        {"uuid":"00000000-0000-4000-8000-000000000002"},{"uuid":"00000000-0000-4000-8000-000000000001"}]})",
                   "other");
    vecSamples[3] = 0;
    vecSamples[4] = 1;
    ByteStream stream;
    tile::writeClutterSection(stream, samples, database.lookUp());
    ASSERT_TRUE(tile::readClutterSection(stream.bytes(), 13, other.lookUp(), samples, bNoTypes));
    EXPECT_EQ(vecSamples[3], 2);
    EXPECT_EQ(vecSamples[4], 1);
    EXPECT_EQ(vecSamples[5], 255);
    EXPECT_EQ(log.errors(), 0u);
}

TEST_F(ClutterSectionTest, unknownTypesFallBackWithTheirTexts)
{
    tile::ClutterDatabase other;
    other.loadText(R"({"clutterList":[{"uuid":"00000000-0000-4000-8000-0000000000ff"}]})", "other");
    vecSamples[3] = 1;
    ByteStream stream;
    tile::writeClutterSection(stream, samples, database.lookUp());
    ASSERT_TRUE(tile::readClutterSection(stream.bytes(), 13, other.lookUp(), samples, bNoTypes));
    EXPECT_EQ(vecSamples[3], 0);
    EXPECT_FALSE(bNoTypes);
    EXPECT_TRUE(log.has("ASSERT: 'false && \"Uuid dosen't exist in the clutter manager, defaulting to 0.\"'"))
        << log.dump();

    log.clear();
    ASSERT_TRUE(
        tile::readClutterSection(stream.bytes(), 13, tile::ClutterDatabase().lookUp(), samples, bNoTypes));
    EXPECT_EQ(vecSamples[3], 255);
    EXPECT_TRUE(bNoTypes);
    EXPECT_TRUE(log.lines().empty());

    stream.data()[18 + 40] = std::byte{77}; // a sample without an entry
    ASSERT_TRUE(tile::readClutterSection(stream.bytes(), 13, database.lookUp(), samples, bNoTypes));
    EXPECT_EQ(vecSamples[40], 255);
    EXPECT_TRUE(log.has(
        "find_it != mapLocalToGlobalIdx.end() && \"This should never happend, problem in the exporter?\""));
    EXPECT_FALSE(
        tile::readClutterSection(stream.bytes().first(1000), 13, database.lookUp(), samples, bNoTypes));
    EXPECT_FALSE(tile::readClutterSection({}, 13, database.lookUp(), samples, bNoTypes));
}

TEST(ClutterDatabase, readsItsEntriesAndSkipsBadOnes)
{
    LogCapture log;
    tile::ClutterDatabase database;
    ASSERT_TRUE(database.loadText(R"({"clutterList":[
        {"uuid":"00000000-0000-4000-8000-000000000001","name":"Grass","height":0.5,"scaleVariance":0.25,
         "groundNormal":true,"wind":true,"slope":"skew","rotate":"rotate","mesh":"a.mesh","texture":"a.png","impostor_texture":"i.png"},
        {"uuid":"not one","name":"Bad"}, 17,
        {"uuid":"00000000-0000-4000-8000-000000000002","slope":"no","mesh":"b.mesh"},
        {"uuid":"00000000-0000-4000-8000-000000000003","rotate":"rotate","mesh":"a.mesh"}]})",
                                  "clutter"));
    ASSERT_EQ(database.types().size(), 3u);
    EXPECT_EQ(database.types()[0].flags, 15u);
    EXPECT_EQ(database.types()[0].height, 0.5f);
    EXPECT_EQ(database.types()[1].flags, 0u);
    EXPECT_EQ(database.types()[2].flags, 8u);
    EXPECT_EQ(database.types()[2].meshIndex, 0);
    EXPECT_EQ(database.types()[2].textureIndex, 2);
    EXPECT_EQ(database.meshes().size(), 2u);
    EXPECT_TRUE(log.has("Invalid UUID {not one}"));
    EXPECT_TRUE(log.has("Invalid UUID {}"));
    EXPECT_FALSE(database.loadText("{", "broken"));
    EXPECT_TRUE(log.has("Failed to parse file 'broken':\n"));

    std::string sMany = R"({"clutterList":[)";
    for (int i = 0; i < 300; ++i)
        sMany += std::string(i ? "," : "") + "{\"uuid\":\"" + Uuid::random().text() + "\"}";
    database.loadText(sMany + "]}", "many");
    EXPECT_EQ(database.types().size(), 254u);
    EXPECT_TRUE(log.has("s_vecGrassInfo.size() < 255"));
}

} // namespace
