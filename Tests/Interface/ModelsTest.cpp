#include "KestrelCommon/Services/InputManager.h"
#include "Tests/Interface/FakeActions.h"
#include "Tests/Interface/FakeWindows.h"
#include "TileEditorCommon/Interface/BarModels.h"
#include "TileEditorCommon/Interface/EditorBindings.h"
#include "TileEditorCommon/Interface/FileNameRule.h"
#include "TileEditorCommon/Interface/KeyBindings.h"
#include "TileEditorCommon/Interface/SideLayout.h"
#include "TileEditorCommon/Interface/StatusText.h"
#include "TileEditorCommon/Interface/TileBrowserModel.h"
#include "TileEditorCommon/Interface/TileSearch.h"
#include "TileEditorCommon/Interface/TileSettingsModel.h"
#include "TileEditorCommon/Interface/ToolPanels.h"

#include <gtest/gtest.h>

namespace
{

using namespace tilebuilder;

TEST(FileNameRuleTest, takesAndRefuses)
{
    for (const char* pName : {"Hill", "Hill 2", ".", "..", ".hidden", "H\xC3\xBCgel", "a*b?c"})
        EXPECT_TRUE(isValidFileName(pName)) << pName;
    for (const char* pName : {"", " Hill", "Hill ", "Hill.", "...", "a/b", "a\\b", "a:b", "a\"b", "a<b",
                              "a>b", "a|b", "a\tb", "a\x1f"})
        EXPECT_FALSE(isValidFileName(pName)) << pName;
}

TEST(StatusTextTest, fourSignificantDigitsAndTheGridOnlyWithOne)
{
    StatusFigures figures{.uFrames = 61,
                          .fCpuMs = 4.32167,
                          .fGpuMs = 0.0,
                          .camera = {1234.567f, -0.0125f, 32.0f},
                          .cursor = {0.0f, 12345.6f, 3.0f}};
    EXPECT_EQ(statusText(figures), "FPS: 61\nRendering Time CPU 4.322\nRendering Time GPU 0\n\n"
                                   "Camera Position 1235 -0.0125 32\nCursor Position 0 1.235e+04 3");
    figures.gridSpacing = 0.25f;
    EXPECT_TRUE(statusText(figures).ends_with("\nGrid Spacing 0.25"));
}

TEST(TileSearchTest, everyWordMustOccurInAnyOrder)
{
    const std::vector<TileFile> vecFiles{
        {.sName = "River Valley"}, {.sName = "Valley of Stone"}, {.sName = "Dunes"}};
    const auto find = [&](const char* pText) { return filterTiles(vecFiles, searchWords(pText)); };
    using Found = std::vector<size_t>;
    EXPECT_EQ(find("VALLEY"), (Found{0, 1}));
    EXPECT_EQ(find("  stone  val "), (Found{1}));
    EXPECT_EQ(find(""), (Found{0, 1, 2}));
    EXPECT_EQ(find("valley dunes"), Found{});
}

struct TileBrowserTest : testing::Test
{
    TileBrowserTest()
    {
        m_actions.vecCategories = {"My Game", "User", "Creative", "Survival"};
        for (const std::string& sCategory : m_actions.vecCategories)
            m_actions.vecFiles.push_back({.sName = "Hill of " + sCategory, .sCategory = sCategory});
    }

    /// The categories of what is left over, in their order.
    static std::string shown(const TileBrowserModel& model)
    {
        std::string sShown;
        for (size_t i = 0; i < model.count(); ++i)
            sShown += model.shown(i).sCategory + ";";
        return sShown;
    }

    FakeActions m_actions;
};

TEST_F(TileBrowserTest, clicksChooseOneCategoryAndControlJoinsAndTakesAway)
{
    TileBrowserModel model(m_actions);
    model.refreshItems();
    EXPECT_EQ(shown(model), "My Game;User;Creative;Survival;");
    model.clickCategory("User", false);
    EXPECT_EQ(shown(model), "User;") << "unchecked among several, it stays alone";
    model.clickCategory("Survival", true);
    EXPECT_EQ(shown(model), "User;Survival;");
    model.clickCategory("Creative", false);
    EXPECT_EQ(shown(model), "Creative;");
    model.clickCategory("Creative", false);
    EXPECT_EQ(shown(model), "") << "the only one goes";
    model.clickCategory("Nowhere", true);
    model.clickCategory("User", true);
    model.clickCategory("User", true);
    EXPECT_EQ(shown(model), "");
    EXPECT_FALSE(model.emptyText().empty());
}

TEST_F(TileBrowserTest, wordsAndCategoriesFilterTogetherAndOutliveARefresh)
{
    TileBrowserModel model(m_actions);
    model.setSearch("HILL");
    model.clickCategory("User", false);
    model.clickCategory("Creative", true);
    m_actions.vecFiles.push_back({.sName = "Dale", .sCategory = "User"});
    model.refreshItems();
    EXPECT_EQ(shown(model), "User;Creative;");
    EXPECT_EQ(model.countText(), "2 of 5 tiles");
    model.setSearch("dale");
    EXPECT_EQ(shown(model), "User;");
    EXPECT_EQ(previewPicture(model.shown(0)), "$GAME_DATA/Gui/Editor/ed_error_tile.png");
    EXPECT_EQ(previewPicture({.sPreviewPath = "$A_DATA/x.png"}), "$A_DATA/x.png");
}

TEST_F(TileBrowserTest, menuHasTheRunsCategoriesInTheirOrder)
{
    const auto labels = [&]
    {
        std::string sLabels;
        for (const MenuEntry& entry : TileBrowserModel(m_actions).categoryMenu({}).vecChildren)
            sLabels += entry.eKind == MenuEntry::Kind::Separator ? "|" : entry.sLabel + ";";
        return sLabels;
    };
    EXPECT_EQ(labels(), "My Game;User;|Creative;Survival;");
    m_actions.vecCategories = {"#1", "User"};
    EXPECT_EQ(labels(), "##1;User;");
}

TEST(TileSettingsModelTest, anotherCategoryStartsAtItsFirstEntry)
{
    FakeActions actions;
    actions.category = {1, 69};
    TileSettingsModel model(actions);
    EXPECT_EQ(model.category(), 1u);
    EXPECT_EQ(model.entry(), 69u);
    EXPECT_EQ(model.entries().size(), 70u);
    model.chooseEntry(70);
    model.chooseCategory(1);
    model.chooseCategory(4);
    EXPECT_EQ(actions.sCalls, "") << "what is there already or doesn't exist";
    model.chooseCategory(3);
    EXPECT_EQ(actions.sCalls, "category 3/0;");
    ASSERT_TRUE(model.update());
    EXPECT_FALSE(model.update());
    model.chooseEntry(5);
    EXPECT_EQ(actions.sCalls, "category 3/0;category 3/5;");

    actions.category = {9, 4000}; // as a file may have it
    model.update();
    EXPECT_EQ(model.category(), TileSettingsModel::s_uNone);
    EXPECT_EQ(model.entry(), TileSettingsModel::s_uNone);
    actions.bOpen = false;
    actions.category = {};
    model.update();
    model.chooseCategory(2);
    EXPECT_EQ(actions.category, TerrainCategory{});
}

struct BarModelsTest : testing::Test
{
    BarModelsTest() { bindEditorActions(m_keys, m_actions, m_windows); }

    static const MenuEntry* find(const std::vector<MenuEntry>& vecEntries, const std::string& sLabel)
    {
        for (const MenuEntry& entry : vecEntries)
        {
            if (entry.sLabel.starts_with(sLabel) || entry.sId == sLabel)
                return &entry;
            if (const MenuEntry* pFound = find(entry.vecChildren, sLabel))
                return pFound;
        }
        return nullptr;
    }

    InputManager m_input;
    FakeActions m_actions;
    FakeWindows m_windows;
    KeyBindings m_keys{m_input};
};

TEST_F(BarModelsTest, menuEntriesActAndNameTheirKeys)
{
    const auto vecBar = buildLeftBar(m_actions, m_windows, m_keys, {});
    std::string sMenus;
    for (const MenuEntry& menu : vecBar)
        sMenus += menu.sLabel + " ";
    EXPECT_EQ(sMenus, "File Editor View Window Help ");
    EXPECT_EQ(find(vecBar, "Save ")->sLabel, "Save #BBBBBB(ctrl+s)");
    for (const char* pLabel : {"New ", "Open ", "Save ", "Save As ", "Exit"})
        find(vecBar, pLabel)->fnAction();
    EXPECT_EQ(m_windows.sCalls, "newWindow;openWindow;saveAsWindow;");
    EXPECT_EQ(m_actions.sCalls, "save;exit;");
    find(vecBar, "Tile Settings")->fnAction();
    EXPECT_TRUE(m_windows.bTileSettings);
    find(vecBar, "Tile Settings")->fnAction();
    EXPECT_FALSE(m_windows.bTileSettings);
}

TEST_F(BarModelsTest, viewEntriesShowAndHideKindsByTheirBits)
{
    const auto vecBar = buildLeftBar(m_actions, m_windows, m_keys, {});
    const auto checked = [this]
    {
        std::string sChecked;
        for (const EntryState& state : leftBarStates(m_actions, m_windows))
            sChecked += state.bChecked && state.sId.starts_with("View/") ? state.sId.substr(5) + ";" : "";
        return sChecked;
    };
    EXPECT_EQ(checked(), "Asset;Harvestable;Blueprint;Prefab;Node;Decal;");
    find(vecBar, "View/Harvestable")->fnAction();
    EXPECT_EQ(m_actions.state.viewMask, 1020u & ~128u);
    EXPECT_EQ(checked(), "Asset;Blueprint;Prefab;Node;Decal;");
    find(vecBar, "Hide All")->fnAction();
    EXPECT_EQ(m_actions.state.viewMask, 0u);
    find(vecBar, "View/Decal")->fnAction();
    EXPECT_EQ(checked(), "Decal;");
    m_actions.sCalls.clear();
    find(vecBar, "Show All")->fnAction();
    EXPECT_EQ(m_actions.state.viewMask, 0x1FCu);
    EXPECT_EQ(m_actions.sCalls, "showHidden;dirty;");

    m_actions.sCalls.clear();
    for (const char* pId : {"Show Grid", "Show Origin", "Random Z Rotation", "Outliner"})
        find(vecBar, pId)->fnAction();
    EXPECT_EQ(m_actions.sCalls, "grid;origin;dirty;");
    EXPECT_FALSE(m_actions.state.randomZRotation);
    EXPECT_FALSE(m_windows.bOutliner);
    EXPECT_EQ(find(vecBar, "Outliner")->sLabel, "Outliner #BBBBBB(shift+o)");
}

TEST_F(BarModelsTest, withNothingOpenSavingIsGreyAndTheRightBarEmpty)
{
    m_actions.bOpen = false;
    m_actions.vecStack = {"$X_DATA/a.tile"};
    std::string sGrey;
    for (const EntryState& state : leftBarStates(m_actions, m_windows))
        sGrey += state.bEnabled ? "" : state.sId + ";";
    EXPECT_EQ(sGrey, "Show Grid;Save;SaveAs;Tile Settings;Delete Tile;");
    EXPECT_TRUE(buildRightBar(m_actions).empty());
    m_actions.bOpen = true;
    for (const EntryState& state : leftBarStates(m_actions, m_windows))
        EXPECT_TRUE(state.bEnabled) << state.sId;
    m_actions.vecStack.clear();
    ASSERT_EQ(buildRightBar(m_actions).size(), 1u);
    EXPECT_EQ(buildRightBar(m_actions)[0].sId, "History") << "a document without a path has a history";
}

TEST_F(BarModelsTest, historyMenuTellsStepAndMemoryAndListsWhatWasLeft)
{
    m_actions.vecStack = {"$A_DATA/a.tile"};
    m_actions.status = {.uStates = 2, .uStateIndex = 1, .uBytesUsed = 2048, .uBytesLimit = 0x20000000};
    MenuEntry made = buildHistoryMenu(m_actions);
    EXPECT_EQ(made.sLabel, " ( 2kb 1)");
    EXPECT_FALSE(find(made.vecChildren, "Undo")->bEnabled) << "greyed out for a history of one step";
    EXPECT_FALSE(find(made.vecChildren, "Redo")->bEnabled);
    EXPECT_EQ(find(made.vecChildren, "ResetHistory")->sLabel, "Reset Undo History ( 2kb / 512mb )");
    EXPECT_FALSE(find(made.vecChildren, "ResetHistory")->bEnabled);

    m_actions.status.uStates = 4;
    m_actions.status.bHasCached = true;
    m_actions.status.vecCached = {{"$A_DATA/#b.tile", true, 3 << 20}};
    made = buildHistoryMenu(m_actions);
    EXPECT_EQ(made.sLabel, " ( 2kb 1/3)");
    for (const char* pId : {"Undo", "Redo", "Restore", "ResetHistory"})
    {
        EXPECT_TRUE(find(made.vecChildren, pId)->bEnabled) << pId;
        find(made.vecChildren, pId)->fnAction();
    }
    EXPECT_EQ(m_actions.sCalls, "undo;redo;restore;reset;");
    EXPECT_EQ(made.vecChildren.back().sLabel, "##b.tile* ( 3mb )");
}

TEST_F(BarModelsTest, toolButtonsShowTheToolInUse)
{
    m_actions.state.tool = ToolHeight;
    m_actions.state.transformMode = 1;
    auto vecButtons = buildToolButtons(m_actions, m_keys);
    ASSERT_EQ(vecButtons.size(), 10u);
    EXPECT_EQ(*find(vecButtons, "Height")->colour, ToolColours::active);
    EXPECT_EQ(*find(vecButtons, "Asset")->colour, ToolColours::inactive);
    EXPECT_EQ(*find(vecButtons, "Rotate")->colour, ToolColours::yBright);
    EXPECT_FLOAT_EQ((*find(vecButtons, "Scale")->colour)[0], 0.55f);
    EXPECT_FLOAT_EQ((*find(vecButtons, "Scale")->colour)[2], 0.55f * 0.55f);
    EXPECT_EQ(find(vecButtons, "Height")->sTip, "Paint Ground Height #BBBBBB(2)");
    find(vecButtons, "Clutter")->fnAction();
    find(vecButtons, "Translate")->fnAction();
    EXPECT_EQ(m_actions.sCalls, "tool 3;dirty;");
    EXPECT_EQ(m_actions.state.transformMode, 0);
}

TEST_F(BarModelsTest, snapAndPivotButtonsShowTheirState)
{
    auto vecButtons = buildToolButtons(m_actions, m_keys);
    EXPECT_EQ(*find(vecButtons, "Snap")->colour, ToolColours::inactive);
    EXPECT_TRUE(find(vecButtons, "Snap")->sIcon.ends_with("/ed_icon_snapoff.png"));
    EXPECT_EQ(*find(vecButtons, "TransformMode")->colour, ToolColours::active);
    EXPECT_TRUE(find(vecButtons, "TransformMode")->sIcon.ends_with("/ed_icon_pivotcenter.png"));
    find(vecButtons, "Snap")->fnAction();
    find(vecButtons, "TransformMode")->fnAction();
    vecButtons = buildToolButtons(m_actions, m_keys);
    EXPECT_EQ(*find(vecButtons, "Snap")->colour, ToolColours::active);
    EXPECT_TRUE(find(vecButtons, "Snap")->sIcon.ends_with("/ed_icon_snap.png"));
    EXPECT_EQ(*find(vecButtons, "TransformMode")->colour, ToolColours::xBright);
    EXPECT_TRUE(find(vecButtons, "TransformMode")->sIcon.ends_with("/ed_icon_pivotexport.png"));
    EXPECT_EQ(find(vecButtons, "Snap")->sTip, "Snap to grid #BBBBBB(s)");
}

TEST_F(BarModelsTest, rightBarNamesTheDocumentAndLeadsBack)
{
    m_actions.vecStack = {"$CONTENT_DATA/Tiles/My #1.tile"};
    auto vecBar = buildRightBar(m_actions);
    EXPECT_FALSE(find(vecBar, "Back")->bEnabled);
    EXPECT_EQ(find(vecBar, "Name")->sLabel, "My ##1.tile");
    EXPECT_EQ(find(vecBar, "Name")->sTip,
              "$CONTENT_DATA/Tiles/My ##1.tile #CCAACC { 00000000-0000-0000-0000-000000000000 }");
    EXPECT_TRUE(find(vecBar, "Name")->vecChildren.empty());

    const uint64_t uSaved = hashMenu(vecBar);
    m_actions.bUnsaved = true;
    vecBar = buildRightBar(m_actions);
    EXPECT_EQ(find(vecBar, "Name")->sLabel, "My ##1.tile*");
    EXPECT_NE(hashMenu(vecBar), uSaved);

    m_actions.vecStack = {"$A_DATA/a.tile", "$A_DATA/b.prefab", "$A_DATA/c.prefab"};
    vecBar = buildRightBar(m_actions);
    EXPECT_TRUE(find(vecBar, "Back")->bEnabled);
    find(vecBar, "Back")->fnAction();
    ASSERT_EQ(find(vecBar, "Name")->vecChildren.size(), 2u);
    EXPECT_EQ(find(vecBar, "Name")->vecChildren[0].sLabel, "b.prefab");
    find(vecBar, "Name")->vecChildren[1].fnAction();
    EXPECT_EQ(m_actions.sCalls, "level 1;level 0;");
}

TEST_F(BarModelsTest, panelsFollowTheTool)
{
    EXPECT_EQ(panelsOf(ToolHeight), (ToolPanels{true, true}));
    EXPECT_EQ(panelsOf(ToolMaterial), (ToolPanels{.bBrush = true, .bGroundMaterial = true}));
    EXPECT_EQ(panelsOf(ToolColor), (ToolPanels{.bBrush = true, .bColorEditor = true}));
    EXPECT_EQ(panelsOf(ToolPlace),
              (ToolPanels{.bProperties = true, .bAssetLibrary = true, .bOutliner = true}));
    const auto vecButtons = falloffButtons(m_actions);
    ASSERT_EQ(vecButtons.size(), 6u);
    EXPECT_TRUE(vecButtons[1].bChecked);
    EXPECT_FALSE(vecButtons[0].bChecked);
    EXPECT_TRUE(vecButtons[5].sIcon.ends_with("ed_falloff_gauss.png"));
}

TEST(SideLayoutTest, theViewKeepsItsShareAndNothingOverlaps)
{
    for (const auto& [iWidth, iHeight, fScale] :
         {std::tuple{1280, 720, 1.0f}, {1920, 1080, 1.0f}, {3840, 2160, 2.0f}})
    {
        const auto px = [&, fBy = fScale](int iUnits)
        { return static_cast<int>(static_cast<float>(iUnits) * fBy); };
        const SideFrame frame{iWidth, iHeight, px(36), {iWidth - px(244), px(48), px(232), px(332)}, fScale};
        const SideLayout layout = sideLayout(frame);
        const auto area = [](const SideCoord& coord) { return coord.iWidth * coord.iHeight; };
        const int iTaken =
            iWidth * px(36) + area(layout.library) + area(layout.properties) + area(layout.outliner);
        EXPECT_GE(iWidth * iHeight - iTaken, iWidth * iHeight * 6 / 10) << iWidth;
        EXPECT_LE(layout.properties.bottom(), layout.library.iTop);
        EXPECT_EQ(layout.library.bottom(), iHeight - px(12));
        EXPECT_EQ(layout.outliner.bottom(), iHeight - px(12));
        EXPECT_GT(layout.outliner.iTop, frame.colorEditor.bottom());
        EXPECT_GT(layout.outliner.iLeft, layout.library.right());
    }
    const SideLayout tiny = sideLayout({.iWidth = 320, .iHeight = 240});
    EXPECT_GE(tiny.library.iTop, 36);
    EXPECT_GT(tiny.properties.iHeight, 0);
}

} // namespace
