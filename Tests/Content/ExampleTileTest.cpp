// The scenes of the example tiles: of what the database holds, and standing on their ground.

#include "KestrelCommon/Io/Lz4Section.h"
#include "KestrelCommon/Tile/Records/AssetRecord.h"
#include "KestrelCommon/Tile/SurfaceSection.h"
#include "KestrelCommon/Tile/TileFormat.h"
#include "KestrelCommon/Tile/TileImage.h"
#include "Tests/Content/StarterAssets.h"
#include "Tests/Support/LogCapture.h"

#include <cstring>
#include <fstream>
#include <glm/geometric.hpp>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <unordered_map>

namespace
{

struct ExampleTileTest : testing::TestWithParam<const char*>
{
    std::vector<std::byte> unpack(const tile::TileImage& image, const tile::Section& section)
    {
        std::vector<std::byte> vecBytes(section.uSize);
        const auto spanPacked = image.sectionBytes(section);
        EXPECT_TRUE(spanPacked && lz4Decompress(*spanPacked, vecBytes));
        return vecBytes;
    }
    LogCapture m_log;
};

TEST_P(ExampleTileTest, objectsAreKnownAndStandOnTheGround)
{
    const auto path =
        starterPath(std::string("$GAME_DATA/Terrain/Tiles/CreativeTiles/") + GetParam() + ".tile");
    std::ifstream file(path, std::ios::binary);
    if (!file)
        GTEST_SKIP() << "no example tiles";
    const std::string sBytes{std::istreambuf_iterator<char>(file), {}};
    const auto image = tile::TileImage::open(std::as_bytes(std::span(sBytes)), GetParam());
    ASSERT_TRUE(image);
    std::unordered_map<Uuid, StarterAsset> mapAssets;
    for (StarterAsset& asset : starterAssets())
        mapAssets.emplace(asset.entry.uuid, std::move(asset));

    constexpr size_t s_uSide = 33; // heights of a cell, 2 m apart
    constexpr std::array<float, 5> s_arrLevels{0.0f, 8.0f, 24.0f, 72.0f, 1.0e9f};
    size_t uCount = 0;
    std::set<std::string> setNames;
    for (size_t uCell = 0; uCell < image->cellCount(); ++uCell)
    {
        const tile::CellHeader header = image->cellHeader(uCell);
        const auto vecGround =
            unpack(*image, tile::section(header, tile::sectionGroup(tile::SectionGroup::Mips), 0));
        ASSERT_GE(vecGround.size(), s_uSide * s_uSide * sizeof(tile::VertexRecord));
        const auto groundAt = [&](const glm::vec3& at)
        {
            const size_t uX = static_cast<size_t>(std::clamp(at.x * 0.5f + 0.5f, 0.0f, 32.0f));
            const size_t uY = static_cast<size_t>(std::clamp(at.y * 0.5f + 0.5f, 0.0f, 32.0f));
            float fHeight = 0.0f;
            std::memcpy(&fHeight, vecGround.data() + (uY * s_uSide + uX) * sizeof(tile::VertexRecord),
                        sizeof(fHeight));
            return fHeight;
        };
        for (uint32_t uLevel = 0; uLevel < 4; ++uLevel)
        {
            const tile::Section section =
                tile::section(header, tile::sectionGroup(tile::SectionGroup::Assets), uLevel);
            if (section.uCount == 0)
                continue;
            const auto vecBytes = unpack(*image, section);
            ByteCursor cursor(vecBytes);
            std::vector<tile::AssetRecord> vecRecords;
            ASSERT_TRUE(tile::readRecords(cursor, {.uCount = section.uCount}, vecRecords));
            uCount += vecRecords.size();
            for (const tile::AssetRecord& record : vecRecords)
            {
                const auto it = mapAssets.find(record.uuid);
                ASSERT_NE(it, mapAssets.end()) << record.uuid.text();
                const std::string& sName = it->second.entry.sName;
                setNames.insert(sName);
                for (const auto& [sSlot, uColour] : it->second.entry.mapDefaultColors)
                    EXPECT_TRUE(record.mapColors.contains(sSlot)) << sName << ", " << sSlot;
                EXPECT_EQ(record.mapColors.size(), it->second.entry.mapDefaultColors.size()) << sName;
                const glm::vec3& at = record.transform.position;
                EXPECT_TRUE(at.x >= 0.0f && at.y >= 0.0f && at.x < 64.0f && at.y < 64.0f) << sName;
                // Roofs stand on walls, piers in brooks, cliffs in slopes.
                EXPECT_NEAR(at.z, groundAt(at), 8.0f) << sName;
                const float fSize =
                    glm::length(it->second.pRenderable->model().box.size() * record.transform.scale);
                EXPECT_GE(fSize, s_arrLevels[uLevel]) << sName;
                EXPECT_LT(fSize, s_arrLevels[uLevel + 1]) << sName;
                if (sName.starts_with("env_tree"))
                    EXPECT_NEAR(at.z, groundAt(at), 1.5f) << sName;
            }
        }
    }
    EXPECT_GE(uCount, 150u);
    EXPECT_LE(uCount, 600u);
    EXPECT_GE(setNames.size(), 15u);
    EXPECT_EQ(m_log.errors() + m_log.warnings(), 0u) << m_log.dump();
}

INSTANTIATE_TEST_SUITE_P(Tiles, ExampleTileTest, testing::Values("Meadow", "Eroded Hills", "Cliff Coast"),
                         [](const auto& tile)
                         {
                             std::string sName = tile.param;
                             std::erase(sName, ' ');
                             return sName;
                         });

} // namespace
