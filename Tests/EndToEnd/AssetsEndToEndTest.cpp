#include "KestrelCommon/Io/Lz4Section.h"
#include "KestrelCommon/Io/SafeFile.h"
#include "KestrelCommon/Tile/Records/AssetRecord.h"
#include "KestrelCommon/Tile/TileImage.h"
#include "Tests/EndToEnd/Desktop.h"

#include <glm/geometric.hpp>
#include <gtest/gtest.h>

namespace
{

struct Pixel
{
    int iX;
    int iY;
};

// Where things stand in a window of 1280 x 720 with an empty tile.
constexpr std::array<Pixel, 3> s_arrItems{{{250, 560}, {340, 560}, {430, 560}}}; ///< of the library
constexpr std::array<Pixel, 3> s_arrPlaces{{{760, 300}, {560, 330}, {660, 360}}};
constexpr Pixel s_handleX{700, 317}; ///< of the thing that was placed last
constexpr Pixel s_handleXEnd{745, 285};
constexpr Pixel s_ringZ{712, 374}; ///< of the same thing where it then stands
constexpr Pixel s_ringZEnd{785, 345};
constexpr Pixel s_pastePlace{500, 400};

/// All assets of a tile of one cell.
std::vector<tile::AssetRecord> assetsOf(const std::string& sFile)
{
    std::vector<tile::AssetRecord> vecAssets;
    const auto vecImage = readFile(sFile);
    const auto image = vecImage ? tile::TileImage::open(*vecImage, sFile) : std::nullopt;
    if (!image)
        return vecAssets;
    const tile::SectionGroupInfo& group = tile::sectionGroup(tile::SectionGroup::Assets);
    for (uint32_t uLevel = 0; uLevel < group.uElements; ++uLevel)
    {
        const tile::Section section = tile::section(image->cellHeader(0), group, uLevel);
        if (section.uCount == 0)
            continue;
        const auto spanBytes = image->sectionBytes(section);
        std::vector<std::byte> vecRecords(section.uSize);
        if (!spanBytes || !lz4Decompress(*spanBytes, vecRecords))
            continue;
        ByteCursor cursor(vecRecords);
        EXPECT_TRUE(tile::readRecords(cursor, {.uCount = section.uCount}, vecAssets));
    }
    return vecAssets;
}

class AssetsEndToEnd : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_desktop.isUp()) << "Xvfb doesn't start";
        ASSERT_TRUE(m_desktop.startEditor()) << m_desktop.editorOutput();
        m_desktop.act({"sleep", "1"});
    }

    void drag(const Pixel& from, const Pixel& to)
    {
        move(from);
        m_desktop.act({"sleep", "0.3", "mousedown", "1", "sleep", "0.3"});
        move({(from.iX + to.iX) / 2, (from.iY + to.iY) / 2});
        m_desktop.act({"sleep", "0.3"});
        move(to);
        m_desktop.act({"sleep", "0.5"});
        move({to.iX + 1, to.iY});
        m_desktop.act({"sleep", "0.5", "mouseup", "1", "sleep", "0.8"});
    }

    void move(const Pixel& to) { m_desktop.act({"mousemove", std::to_string(to.iX), std::to_string(to.iY)}); }

    void key(const char* pKey) { m_desktop.act({"key", pKey, "sleep", "0.8"}); }

    /// Saves the tile, the first time under a name, and reads the file once it is another.
    std::vector<tile::AssetRecord> save()
    {
        const auto vecBefore = m_sFile.empty() ? std::nullopt : readFile(m_sFile);
        key("ctrl+s");
        if (m_sFile.empty())
        {
            m_desktop.type("Camp");
            key("Return");
        }
        for (int iTry = 0; iTry < 40; ++iTry)
        {
            m_desktop.act({"sleep", "0.25"});
            m_sFile = m_desktop.findTile("Camp.tile");
            if (!m_sFile.empty() && readFile(m_sFile) != vecBefore)
                break;
        }
        return assetsOf(m_sFile);
    }

    Desktop m_desktop;
    std::string m_sFile;
};

/// The road of a user who furnishes a tile: library, view, handles, keys, file, and back.
TEST_F(AssetsEndToEnd, assetsArePlacedMovedTurnedCopiedAndFoundAgainAfterARestart)
{
    for (size_t i = 0; i < s_arrItems.size(); ++i)
        drag(s_arrItems[i], s_arrPlaces[i]);
    const auto vecPlaced = save();
    ASSERT_EQ(vecPlaced.size(), 3u) << m_desktop.editorOutput();

    drag(s_handleX, s_handleXEnd);
    key("s");
    key("w");
    drag(s_ringZ, s_ringZEnd);
    const auto vecMoved = save();
    ASSERT_EQ(vecMoved.size(), 3u);
    size_t uChanged = 0;
    for (const tile::AssetRecord& before : vecPlaced)
        for (const tile::AssetRecord& after : vecMoved)
        {
            if (before.uuid != after.uuid || tile::equal(before.transform, after.transform))
                continue;
            ++uChanged;
            const glm::vec3 way = after.transform.position - before.transform.position;
            EXPECT_GT(std::abs(way.x), 2.0f) << "along the handle";
            const glm::quat turn = after.transform.rotation * glm::inverse(before.transform.rotation);
            const float fDegrees = glm::degrees(2.0f * std::acos(std::min(1.0f, std::abs(turn.w))));
            EXPECT_GT(fDegrees, 40.0f);
            EXPECT_NEAR(std::remainder(fDegrees, 45.0f), 0.0f, 0.1f) << "snapped";
        }
    EXPECT_EQ(uChanged, 1u) << "the others stay as they are";

    key("ctrl+c");
    move(s_pastePlace);
    key("ctrl+v");
    EXPECT_EQ(save().size(), 4u);
    key("ctrl+z");
    EXPECT_EQ(save().size(), 3u);
    key("ctrl+shift+z");
    ASSERT_EQ(save().size(), 4u);
    const auto vecFile = readFile(m_sFile);

    // Start again: what is read and written again is the same file.
    m_desktop.click(27, 18);
    m_desktop.act({"sleep", "1"});
    m_desktop.click(51, 244);
    ASSERT_EQ(m_desktop.waitForExit(), 0) << m_desktop.editorOutput();
    ASSERT_TRUE(m_desktop.startEditor()) << m_desktop.editorOutput();
    key("ctrl+o");
    m_desktop.type("camp");
    m_desktop.act({"sleep", "1"});
    key("Return");
    m_desktop.act({"sleep", "2"});
    EXPECT_EQ(assetsOf(m_sFile).size(), 4u);
    std::filesystem::remove(m_sFile + ".export");
    key("ctrl+s");
    for (int iTry = 0; iTry < 40 && !std::filesystem::exists(m_sFile + ".export"); ++iTry)
        m_desktop.act({"sleep", "0.25"});
    EXPECT_TRUE(std::filesystem::exists(m_sFile + ".export"));
    EXPECT_EQ(readFile(m_sFile), vecFile);
}

} // namespace
