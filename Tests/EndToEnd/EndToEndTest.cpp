#include "KestrelCommon/Io/Lz4Section.h"
#include "KestrelCommon/Io/SafeFile.h"
#include "KestrelCommon/Tile/SurfaceSection.h"
#include "KestrelCommon/Tile/TileImage.h"
#include "Tests/EndToEnd/Desktop.h"

#include <fstream>
#include <gtest/gtest.h>

namespace
{

// Where things stand in a window of 1280 x 720.
constexpr int s_iFileMenuX = 27, s_iFileMenuY = 18;
constexpr int s_iExitX = 51, s_iExitY = 244;
constexpr int s_iHillX = 640, s_iHillY = 400;
/// The part of the view that panels and overlay leave free, around the hill.
constexpr int s_iViewX = 400, s_iViewY = 260, s_iViewWide = 480, s_iViewHigh = 300;
/// Over neither the ground nor a window.
constexpr const char *s_pAsideX = "1150", *s_pAsideY = "150";

// The highest vertex of a tile file's first cell, metres.
float highestVertex(const std::string& sFile)
{
    const auto vecImage = readFile(sFile);
    if (!vecImage)
        return 0.0f;
    const auto image = tile::TileImage::open(*vecImage, sFile);
    if (!image)
        return 0.0f;
    const tile::Section section =
        tile::section(image->cellHeader(0), tile::sectionGroup(tile::SectionGroup::Mips), 0);
    const auto spanBytes = image->sectionBytes(section);
    std::vector<std::byte> vecSection(section.uSize);
    if (!spanBytes || !lz4Decompress(*spanBytes, vecSection))
        return 0.0f;
    float fHighest = 0.0f;
    for (int i = 0; i < tile::vertexSide(0) * tile::vertexSide(0); ++i)
    {
        tile::VertexRecord record;
        std::memcpy(&record, vecSection.data() + static_cast<size_t>(i) * sizeof(record), sizeof(record));
        fHighest = std::max(fHighest, record.height);
    }
    return fHighest;
}

TEST(EndToEnd, aHillIsSculptedSavedAndFoundAgainAfterARestart)
{
    Desktop desktop;
    ASSERT_TRUE(desktop.isUp()) << "Xvfb doesn't start";
    ASSERT_TRUE(desktop.startEditor()) << desktop.editorOutput();
    const auto view = [&] { return desktop.lookWhenCalm(s_iViewX, s_iViewY, s_iViewWide, s_iViewHigh); };
    const auto change = [](const Screenshot& a, const Screenshot& b)
    { return a.difference(b, s_iViewX, s_iViewY, s_iViewWide, s_iViewHigh); };
    desktop.act({"mousemove", s_pAsideX, s_pAsideY});
    desktop.act({"key", "2"}); // a tool without windows over the hill
    const Screenshot flat = view();

    // Sculpt
    desktop.act({"mousemove", std::to_string(s_iHillX), std::to_string(s_iHillY)});
    desktop.act({"mousedown", "1"});
    desktop.act({"sleep", "2"});
    desktop.act({"mouseup", "1"});
    desktop.act({"mousemove", s_pAsideX, s_pAsideY});
    const Screenshot hill = view();
    EXPECT_GT(change(flat, hill), 2.0) << "the hill doesn't show";

    // Save under a name
    desktop.act({"key", "ctrl+s"});
    desktop.act({"sleep", "1"});
    desktop.type("Barrow");
    desktop.act({"key", "Return"});
    std::string sFile;
    for (int iTry = 0; iTry < 40 && sFile.empty(); ++iTry)
    {
        desktop.act({"sleep", "0.25"});
        sFile = desktop.findTile("Barrow.tile");
    }
    ASSERT_FALSE(sFile.empty()) << desktop.editorOutput();
    EXPECT_TRUE(std::filesystem::exists(sFile + ".export"));
    const float fHighest = highestVertex(sFile);
    EXPECT_GT(fHighest, 0.5f);

    // Quit by the menu; everything is saved, so nothing is asked
    desktop.act({"sleep", "1"});
    desktop.click(s_iFileMenuX, s_iFileMenuY);
    desktop.act({"sleep", "1"});
    desktop.click(s_iExitX, s_iExitY);
    ASSERT_EQ(desktop.waitForExit(), 0) << desktop.editorOutput();

    // Start again and open it by its name
    ASSERT_TRUE(desktop.startEditor()) << desktop.editorOutput();
    desktop.act({"mousemove", s_pAsideX, s_pAsideY});
    desktop.act({"key", "ctrl+o"});
    desktop.act({"sleep", "1"});
    desktop.type("barrow");
    desktop.act({"sleep", "1"});
    desktop.act({"key", "Return"});
    desktop.act({"sleep", "1"});
    desktop.act({"key", "2"});
    desktop.act({"mousemove", s_pAsideX, s_pAsideY});
    const Screenshot again = view();
    EXPECT_LT(change(hill, again), 0.5 * change(flat, hill)) << "the hill isn't back";
    EXPECT_EQ(highestVertex(sFile), fHighest);
}

/// The batch with no display at all, on a game folder of its own beside links to the content.
TEST(EndToEnd, theBatchNeedsNoDisplay)
{
    TempFolder folder;
    const std::string sGame = folder.text() + "/game";
    std::filesystem::create_directories(sGame + "/Data/Terrain");
    for (const char* pPart :
         {"Gui", "Shaders", "Textures", "Terrain/Materials", "Terrain/Database", "Environment"})
        std::filesystem::copy(std::string(QM_GAME_DIR "/Data/") + pPart, sGame + "/Data/" + pPart,
                              std::filesystem::copy_options::recursive);
    const std::string sTile = sGame + "/Data/Meadow.tile";
    std::filesystem::copy(QM_GAME_DIR "/Data/Terrain/Tiles/CreativeTiles/Meadow.tile", sTile);
    std::ofstream(sGame + "/list.txt") << "$GAME_DATA/Meadow.tile\n$GAME_DATA/none.tile";

    const std::vector<std::pair<std::string, std::string>> vecVariables = {
        {"DISPLAY", ""},
        {"WAYLAND_DISPLAY", ""},
        {"QUILLMERE_GAME_DIR", sGame},
        {"XDG_DATA_HOME", folder.text() + "/data"},
        {"XDG_CACHE_HOME", folder.text() + "/cache"}};
    const std::string sOutput = folder.text() + "/output.txt";
    const int iStatus = runCommand({QM_EDITOR, "--process", sGame + "/list.txt"}, vecVariables, sOutput);
    const std::string sBatch = readTextFile(sOutput).value_or("");
    ASSERT_EQ(iStatus, 0) << sBatch;
    EXPECT_NE(sBatch.find("Done processing 1 tiles"), std::string::npos) << sBatch;
    EXPECT_TRUE(std::filesystem::exists(sTile + ".export"));
    size_t uPictures = 0;
    for (const auto& entry : std::filesystem::directory_iterator(sGame + "/Data"))
        uPictures += entry.path().extension() == ".png";
    EXPECT_EQ(uPictures, 1u) << "the preview";
    EXPECT_EQ(readFile(sTile), readFile(QM_GAME_DIR "/Data/Terrain/Tiles/CreativeTiles/Meadow.tile"));

    // Without a display and without a list the program says so.
    EXPECT_GT(runCommand({QM_EDITOR}, vecVariables, sOutput), 0);
    const std::string sRefusal = readTextFile(sOutput).value_or("");
    EXPECT_EQ(std::count(sRefusal.begin(), sRefusal.end(), '\n'), 1) << sRefusal;
}

} // namespace
