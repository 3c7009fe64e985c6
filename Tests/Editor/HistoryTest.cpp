#include "KestrelCommon/Platform/VirtualKeys.h"
#include "Tests/Editor/EditorWorld.h"

#include <gtest/gtest.h>

namespace tilebuilder
{
namespace
{

struct HistoryTest : testing::Test
{
    HistoryTest() { m_editor.setTool(ToolHeight); }

    void key(uint32_t uVk, bool bDown)
    {
        PlatformEvent event;
        event.eType = PlatformEventType::Key;
        event.uVirtualKey = uVk;
        event.iScanCode = scanCodeOf(uVk);
        event.bDown = bDown;
        m_world.input.queue(event);
    }

    void chord(std::vector<uint32_t> vecKeys)
    {
        for (const uint32_t uVk : vecKeys)
            key(uVk, true);
        m_world.frames(1, 0.016f);
        for (const uint32_t uVk : vecKeys)
            key(uVk, false);
        m_world.frames(2, 0.016f);
    }
    void pressUndo() { chord({KeyControl, 'Z'}); }
    void pressRedo() { chord({KeyControl, KeyShift, 'Z'}); }

    float step()
    {
        m_world.stroke(4);
        m_world.waitForQuiet();
        return m_world.middleHeight();
    }

    EditorWorld m_world;
    TileEditor& m_editor = *m_world.pEditor;
};

TEST_F(HistoryTest, undoAndRedoWalkTheStepsAndANewStepCutsTheBranch)
{
    const float fFirst = step();
    const float fSecond = step();
    pressUndo();
    EXPECT_FLOAT_EQ(m_world.middleHeight(), fFirst);
    pressUndo();
    EXPECT_FLOAT_EQ(m_world.middleHeight(), 0.0f);
    pressUndo();
    EXPECT_EQ(m_editor.tile()->stateIndex(), 0u) << "nothing before the first state";
    pressRedo();
    pressRedo();
    EXPECT_FLOAT_EQ(m_world.middleHeight(), fSecond);
    pressUndo();
    step();
    EXPECT_EQ(m_editor.tile()->states().size(), 3u);
    pressRedo();
    EXPECT_EQ(m_editor.tile()->stateIndex(), 2u) << "the branch is gone";
    m_world.waitForQuiet();
    EXPECT_EQ(m_editor.tile()->states().size(), 3u) << "reading states makes none";
}

TEST_F(HistoryTest, undoRightAfterAStrokeTakesBackThatStroke)
{
    const float fFirst = step();
    m_world.stroke(4);
    EXPECT_GT(m_world.middleHeight(), fFirst);
    pressUndo();
    EXPECT_FLOAT_EQ(m_world.middleHeight(), fFirst);
    pressRedo();
    EXPECT_GT(m_world.middleHeight(), fFirst) << "and nothing is lost";
}

TEST_F(HistoryTest, aDocumentThatWasLeftComesBackWithStepsCameraAndUnsavedMark)
{
    m_editor.saveAs("One.tile", "$GAME_DATA");
    const float fFirst = step();
    step();
    pressUndo();
    m_world.camera.position = {1.0f, 2.0f, 33.0f};
    m_editor.newTile(2);
    EXPECT_EQ(m_editor.history().vecCached.size(), 1u);
    EXPECT_TRUE(m_editor.history().vecCached[0].bUnsaved);
    EXPECT_GT(m_editor.undoMemoryInUse(), m_editor.tile()->stateMemory());
    m_editor.requestExit();
    EXPECT_TRUE(m_editor.isRunning());
    EXPECT_NE(m_world.windows.sQuestion.find("One.tile"), std::string::npos)
        << "leaving names what was left unsaved: " << m_world.windows.sQuestion;

    ASSERT_TRUE(m_editor.openTile("$GAME_DATA/One.tile", false));
    EXPECT_FLOAT_EQ(m_world.middleHeight(), fFirst);
    EXPECT_EQ(m_world.camera.position, glm::vec3(1.0f, 2.0f, 33.0f));
    EXPECT_TRUE(m_editor.isUnsaved());
    EXPECT_TRUE(m_editor.history().vecCached.empty());
    m_world.frames(3, 0.016f);
    pressRedo();
    EXPECT_GT(m_world.middleHeight(), fFirst);

    m_editor.restoreFromDisk();
    m_world.windows.fnOnYes();
    EXPECT_FLOAT_EQ(m_world.middleHeight(), 0.0f);
    EXPECT_EQ(m_editor.tile()->states().size(), 1u);
    EXPECT_FALSE(m_editor.history().bHasCached);
}

TEST_F(HistoryTest, theTerrainCategoryIsAStepThatIsUndoneAndSaved)
{
    m_editor.saveAs("One.tile", "$GAME_DATA");
    m_editor.setTerrainCategory({0, 0}); // as it is
    m_world.waitForQuiet();
    EXPECT_FALSE(m_editor.isUnsaved());
    m_editor.setTerrainCategory({1, 69});
    m_world.waitForQuiet();
    m_editor.setTerrainCategory({3, 0});
    m_world.waitForQuiet();
    EXPECT_TRUE(m_editor.isUnsaved());
    EXPECT_EQ(m_editor.tile()->states().size(), 3u);
    pressUndo();
    EXPECT_EQ(m_editor.terrainCategory(), (TerrainCategory{1, 69}));
    pressUndo();
    EXPECT_EQ(m_editor.terrainCategory(), TerrainCategory{});
    pressRedo();
    EXPECT_EQ(m_editor.terrainCategory(), (TerrainCategory{1, 69}));
    m_editor.save();
    m_editor.newTile(1);
    EXPECT_EQ(m_editor.terrainCategory(), TerrainCategory{});
    ASSERT_TRUE(m_editor.openTile("$GAME_DATA/One.tile", true));
    EXPECT_EQ(m_editor.terrainCategory(), (TerrainCategory{1, 69}));
}

TEST_F(HistoryTest, theDocumentLeftLongestAgoGoesFirst)
{
    for (const char* pName : {"B.tile", "A.tile", "C.tile"})
    {
        m_editor.newTile(1);
        m_editor.saveAs(pName, "$GAME_DATA");
    }
    m_editor.newTile(1);
    ASSERT_EQ(m_editor.history().vecCached.size(), 3u);
    EXPECT_GT(m_editor.evictOldestCachedTile(), 0u);
    const auto vecLeft = m_editor.history().vecCached;
    ASSERT_EQ(vecLeft.size(), 2u);
    EXPECT_EQ(vecLeft[0].sPath, "$GAME_DATA/A.tile");
    EXPECT_EQ(vecLeft[1].sPath, "$GAME_DATA/C.tile");
    m_editor.resetUndoHistory();
    EXPECT_EQ(m_editor.evictOldestCachedTile(), 0u);
}

TEST_F(HistoryTest, savingMovesTheMarkAndKeepsTheSteps)
{
    m_editor.saveAs("One.tile", "$GAME_DATA");
    step();
    EXPECT_TRUE(m_editor.isUnsaved());
    m_editor.save();
    EXPECT_FALSE(m_editor.isUnsaved());
    EXPECT_EQ(m_editor.tile()->states().size(), 2u);
    pressUndo();
    EXPECT_TRUE(m_editor.isUnsaved());
    pressRedo();
    EXPECT_FALSE(m_editor.isUnsaved());
}

TEST_F(HistoryTest, sizesAreWrittenInWholeUnits)
{
    EXPECT_EQ(memoryText(1024), "1024b");
    EXPECT_EQ(memoryText(1025), "1kb");
    EXPECT_EQ(memoryText(0x100000), "1024kb");
    EXPECT_EQ(memoryText(0x100001), "1mb");
    EXPECT_EQ(memoryText(m_editor.history().uBytesLimit), "512mb");
}

} // namespace
} // namespace tilebuilder
