#include "Tests/Editor/EditorWorld.h"

#include "TileEditorCommon/Contracts/ChangeMask.h"

#include <gtest/gtest.h>

namespace tilebuilder
{
namespace
{

struct TileEditorTest : testing::Test
{
    EditorWorld m_world;
    TileEditor& m_editor = *m_world.pEditor;
};

TEST_F(TileEditorTest, aStrokeRaisesTheGroundAndIsOneStepOnceItIsQuiet)
{
    m_editor.setTool(ToolHeight);
    EXPECT_EQ(m_world.windows.uPanels, ToolHeight);
    m_world.stroke(10);
    EXPECT_GT(m_world.middleHeight(), 1.0f);
    EXPECT_EQ(m_editor.tile()->states().size(), 1u) << "not before it is quiet";
    m_world.waitForQuiet();
    EXPECT_EQ(m_editor.tile()->states().size(), 2u);
    EXPECT_TRUE(m_editor.isUnsaved());
    EXPECT_EQ(m_editor.surface().getHeight(0.0f, 0.0f), 0.0f) << "the rim stays";
}

TEST_F(TileEditorTest, aPressOverAWindowPaintsNothingEvenWhenItLeaves)
{
    m_editor.setTool(ToolHeight);
    m_world.windows.bOverWidget = true;
    m_world.stroke(5);
    EXPECT_EQ(m_world.middleHeight(), 0.0f);
}

TEST_F(TileEditorTest, aBrushOfNoSizeMakesNoDab)
{
    m_editor.setTool(ToolHeight);
    m_editor.toolState().size = 0;
    m_world.stroke(5);
    EXPECT_EQ(m_world.middleHeight(), 0.0f);
    m_world.waitForQuiet();
    EXPECT_EQ(m_editor.tile()->states().size(), 1u);
}

TEST_F(TileEditorTest, savingMakesTheUsersItemAndOpeningBringsTheGroundBack)
{
    m_editor.setTool(ToolHeight);
    m_world.stroke(10);
    const float fHeight = m_world.middleHeight();
    m_editor.save();
    EXPECT_EQ(m_world.windows.iSaveAs, 1) << "a tile without a name asks for one";
    m_editor.saveAs("Hill", "");

    const std::string sDirectory = m_editor.documentDirectory();
    EXPECT_TRUE(sDirectory.starts_with("$CONTENT_")) << sDirectory;
    for (const char* pFile : {"/Hill.tile", "/Hill.tile.export", "/description.json"})
        EXPECT_TRUE(m_world.directories.exists(sDirectory + pFile)) << pFile;
    EXPECT_EQ(m_editor.pathStack(), std::vector<std::string>{sDirectory + "/Hill.tile"});
    EXPECT_FALSE(m_editor.isUnsaved());
    const auto vecFiles = m_editor.tileFiles();
    ASSERT_EQ(vecFiles.size(), 1u);
    EXPECT_EQ(vecFiles[0].sName, "Hill");
    EXPECT_EQ(vecFiles[0].sCategory, "User");

    m_editor.requestNewTile(2);
    EXPECT_EQ(m_world.middleHeight(), 0.0f);
    m_editor.openDocument(vecFiles[0].sPath);
    EXPECT_NEAR(m_world.middleHeight(), fHeight, 1e-6f);
    EXPECT_EQ(m_editor.tile()->width(), 1);
    EXPECT_FALSE(m_editor.isUnsaved());
    m_world.frames(3, 0.016f);
    m_world.waitForQuiet();
    EXPECT_EQ(m_editor.tile()->states().size(), 1u) << "reading is no step";
    EXPECT_EQ(m_world.windows.sMessage, "");
}

TEST_F(TileEditorTest, longWorkShowsItselfAndThePointerIsFreeAfterwards)
{
    FakeInterface& windows = m_world.windows;
    m_editor.newTile(8);
    EXPECT_EQ(windows.iBusyTimes, 1);
    EXPECT_EQ(windows.iProgress, 0);
    m_editor.saveAs("Wide", "");
    EXPECT_EQ(windows.iBusyTimes, 2);
    EXPECT_GT(windows.iProgress, 0) << "a save of 64 cells is long";
    const std::string sWide = m_editor.pathStack().front();
    m_editor.newTile(1);
    const int iProgress = windows.iProgress;
    m_editor.saveAs("Small", "");
    EXPECT_EQ(windows.iProgress, iProgress) << "a box for a blink would only flicker";
    EXPECT_FALSE(m_editor.openTile("$GAME_DATA/none.tile", false));
    EXPECT_TRUE(m_editor.openTile(sWide, false));
    EXPECT_GT(windows.iBusyTimes, 4);
    EXPECT_EQ(windows.iBusy, 0);
}

TEST_F(TileEditorTest, tilesAreListedWithTheirPictureWhereThereIsOne)
{
    m_editor.saveAs("Hill", "");
    const std::string sPicture = m_editor.documentDirectory() + "/" + m_editor.documentUuid().text() + ".png";
    const auto preview = [&] { return m_editor.tileFiles().at(0).sPreviewPath; };
    EXPECT_EQ(m_editor.tileFiles().at(0).uuid, m_editor.documentUuid());
    EXPECT_EQ(preview(), "ed_error_tile.png");
    std::ofstream(m_world.directories.resolvePath(sPicture)) << "x";
    EXPECT_EQ(preview(), sPicture);

    const std::string sTile = m_world.directories.resolvePath(m_editor.pathStack()[0]);
    std::filesystem::resize_file(sTile, 10);
    EXPECT_EQ(preview(), "ed_error_tile.png");
    EXPECT_EQ(m_editor.tileFiles().at(0).uuid, Uuid{});
    EXPECT_EQ(m_editor.tileCategories(), (std::vector<std::string>{"User", "Creative"}));
}

TEST_F(TileEditorTest, cornersAreNamedWhileTheTileSettingsShow)
{
    m_editor.newTile(2);
    m_world.camera.position = {64.0f, 64.0f, 300.0f};
    m_world.camera.lookAlong({0.0f, -0.001f, -1.0f}); // the top of the picture is -Y
    m_world.frames(1, 0.016f);
    EXPECT_TRUE(m_editor.worldLabels().empty());
    m_world.windows.bTileSettings = true;
    m_world.frames(2, 0.016f);
    const auto vecLabels = m_editor.worldLabels();
    ASSERT_EQ(vecLabels.size(), 4u);
    for (const WorldLabel& label : vecLabels)
    {
        EXPECT_EQ(label.sText[0] == 'N', label.pixel[1] < 360.0f) << label.sText;
        EXPECT_GT(std::abs(label.pixel[0] - 640.0f), 50.0f) << label.sText;
    }
    EXPECT_NEAR(vecLabels[0].pixel[0], vecLabels[2].pixel[0], 1.0f) << "both in the west";
    m_world.windows.bTileSettings = false;
    m_world.frames(1, 0.016f);
    EXPECT_TRUE(m_editor.worldLabels().empty());
}

TEST_F(TileEditorTest, deletingTakesTheUsersOwnFolderAfterAQuestionAndNothingElse)
{
    m_editor.saveAs("Game.tile", "$GAME_DATA");
    EXPECT_FALSE(m_editor.canDeleteTile());
    m_editor.deleteTile();
    EXPECT_EQ(m_world.windows.sMessage, "Error deleting tile.");
    EXPECT_EQ(m_world.windows.sQuestion, "");

    m_editor.newTile(1);
    m_editor.saveAs("Hill", "");
    const auto pathFolder = m_world.directories.resolvePath(m_editor.documentDirectory());
    ASSERT_TRUE(m_editor.canDeleteTile());
    m_editor.deleteTile();
    EXPECT_EQ(m_world.windows.sQuestion,
              "This action will delete your local tile.\nAny tile on workshop will stay.");
    m_world.windows.fnOnYes();
    EXPECT_TRUE(std::filesystem::exists(pathFolder)) << "one frame later";
    m_world.pUgc->updateRemoved();
    EXPECT_FALSE(std::filesystem::exists(pathFolder));
    EXPECT_EQ(m_editor.documentName(), "");
    EXPECT_TRUE(m_editor.tileFiles().empty());
    EXPECT_EQ(m_editor.history().vecCached.size(), 1u) << "the game's tile can still be returned to";
    EXPECT_TRUE(m_world.directories.exists("$GAME_DATA/Game.tile"));
}

TEST_F(TileEditorTest, unsavedChangesAreAskedAboutBeforeTheyGo)
{
    m_editor.setTool(ToolHeight);
    m_world.stroke(4);
    m_world.waitForQuiet();
    m_editor.requestNewTile(2);
    EXPECT_EQ(m_world.windows.sQuestion, "Are you sure you want leave this tile? There are unsaved changes.");
    EXPECT_EQ(m_editor.tile()->width(), 1);
    m_world.windows.fnOnYes();
    EXPECT_EQ(m_editor.tile()->width(), 2);
    m_editor.requestExit();
    EXPECT_FALSE(m_editor.isRunning()) << "a new tile has nothing to lose";
}

TEST_F(TileEditorTest, aBrokenFileLeavesTheOpenDocument)
{
    m_editor.setTool(ToolHeight);
    m_world.stroke(4);
    const float fHeight = m_world.middleHeight();
    Tile* const pBefore = m_editor.tile();
    std::ofstream(m_world.directories.resolvePath("$GAME_DATA/bad.tile")) << "TILE and nothing behind it";
    EXPECT_FALSE(m_editor.openTile("$GAME_DATA/bad.tile", false));
    EXPECT_TRUE(m_world.log.has("Failed to read header: $GAME_DATA/bad.tile"));
    EXPECT_FALSE(m_editor.openTile("$GAME_DATA/none.tile", false));
    EXPECT_TRUE(m_world.log.has("Failed to open tile '$GAME_DATA/none.tile' is not a valid path"));
    EXPECT_EQ(m_editor.tile(), pBefore);
    EXPECT_EQ(m_world.middleHeight(), fHeight);
    EXPECT_TRUE(m_editor.isDocumentOpen());
}

TEST_F(TileEditorTest, aSaveThatFailsTellsTheUserAndLeavesNothing)
{
    m_editor.saveAs("Hill", "$GAME_DATA/none/such/folder");
    EXPECT_EQ(m_world.windows.sMessage,
              "Could not open file '$GAME_DATA/none/such/folder/Hill' for writing.");
    EXPECT_EQ(m_editor.documentName(), "");
    EXPECT_TRUE(m_editor.pathStack().empty());
}

TEST_F(TileEditorTest, theBatchComesToItsEndOnEveryLine)
{
    const std::string sGame = m_world.directories.gameRoot() + "/Data";
    m_editor.saveAs("One.tile", "$GAME_DATA");
    m_editor.saveAs("Two.tile", "$GAME_DATA");
    ASSERT_TRUE(m_world.directories.exists("$GAME_DATA/Two.tile")) << m_world.log.dump();
    std::ofstream(sGame + "/bad.tile") << "TILE";
    std::ofstream(sGame + "/list.txt") << "$GAME_DATA/One.tile\r\n"
                                       << sGame << "/Two.tile\n"
                                       << "$GAME_DATA/bad.tile\n"
                                       << "$GAME_DATA/none.tile\n"
                                       << "/nowhere/x.tile\n"
                                       << "$NOWHERE_DATA/x.tile\n"
                                       << std::string(300, 'x') << "\n"
                                       << "$GAME_DATA/One.tile\n";
    EXPECT_EQ(m_editor.processTiles("$GAME_DATA/list.txt"), 3u);
    EXPECT_EQ(m_world.log.count("Done.. $GAME_DATA/One.tile"), 2u);
    EXPECT_TRUE(m_world.log.has("Failed to load.. '$GAME_DATA/bad.tile'"));
    EXPECT_TRUE(m_world.log.has("Failed to load.. '$GAME_DATA/none.tile'"));
    EXPECT_EQ(m_world.log.count("not a valid path"), 5u) << "nowhere, unknown key, too long, empty, and none";
    EXPECT_EQ(m_editor.processTiles("$GAME_DATA/no such list"), 0u);
}

TEST_F(TileEditorTest, replacingAnotherTilesFileIsAskedFirst)
{
    m_editor.saveAs("One.tile", "$GAME_DATA");
    m_editor.requestNewTile(1);
    m_editor.saveAs("One.tile", "$GAME_DATA");
    EXPECT_NE(m_world.windows.sQuestion, "");
    EXPECT_EQ(m_editor.documentName(), "");
    m_world.windows.fnOnYes();
    EXPECT_EQ(m_editor.documentName(), "One.tile");
}

} // namespace
} // namespace tilebuilder
