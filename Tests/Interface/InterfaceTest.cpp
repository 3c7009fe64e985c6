// The real windows on a recording device: layouts load without a word, and clicks arrive.

#include "KestrelCommon/Services/InputManager.h"
#include "MyGuiCommon/EditorButton.h"
#include "MyGuiCommon/PopUpManager.h"
#include "Tests/Interface/FakeActions.h"
#include "Tests/MyGui/GuiFixture.h"
#include "TileEditorCommon/Interface/HelpWindow.h"
#include "TileEditorCommon/Interface/KeyBindings.h"
#include "TileEditorCommon/Interface/TileEditorInterface.h"

#include <MyGUI_Button.h>
#include <MyGUI_ComboBox.h>
#include <MyGUI_ItemBox.h>
#include <MyGUI_ListBox.h>
#include <MyGUI_MenuBar.h>
#include <MyGUI_MenuItem.h>
#include <MyGUI_PopupMenu.h>
#include <MyGUI_ScrollView.h>
#include <MyGUI_Window.h>

namespace
{

using namespace tilebuilder;

constexpr int s_iEnter = 28;
constexpr int s_iDown = 0xD0;
constexpr int s_iControl = 29;

struct InterfaceTest : GuiFixture
{
    void SetUp() override
    {
        GuiFixture::SetUp();
        m_actions.vecSets = {{"Standard", "$GAME_DATA/a.json"}, {"Autumn", "$SURVIVAL_DATA/b.json"}};
        m_actions.bound = {7, "$GAME_DATA/a.json", materials("Standard")};
        m_actions.setColorTarget(&m_actions.state.groundColor, ColorTargetGround, {}, {});
        m_pPopUps = std::make_unique<PopUpManager>(*m_pGui);
        m_pInterface = std::make_unique<TileEditorInterface>(
            InterfaceParts{*m_pGui, *m_pPopUps, m_actions, m_keys, true, {}});
        m_pInterface->showToolPanels(ToolHeight);
        settle(2);
    }
    void TearDown() override
    {
        m_pInterface.reset();
        m_pPopUps.reset();
        GuiFixture::TearDown();
    }

    static std::vector<MaterialChoice> materials(const std::string& sSet)
    {
        std::vector<MaterialChoice> vecMaterials;
        for (int i = 0; i < 8; ++i)
            vecMaterials.push_back({sSet + std::to_string(i), "$GAME_DATA/Gui/Editor/ed_icon_size.png"});
        return vecMaterials;
    }

    static TileFile tile(const std::string& sName, const std::string& sCategory)
    {
        return {.sName = sName,
                .sPath = "$CONTENT_DATA/" + sName + ".tile",
                .sCategory = sCategory,
                .sPreviewPath = "ed_error_tile.png"};
    }

    /// The middle of an item of the material list.
    void clickMaterial(int iItem)
    {
        const MyGUI::IntCoord list = widget("GroundMaterialList")->getAbsoluteCoord();
        click(list.left + 50 + iItem % 2 * 106, list.top + 40 + iItem / 2 * 80);
    }

    InputManager m_input;
    KeyBindings m_keys{m_input};
    FakeActions m_actions;
    std::unique_ptr<PopUpManager> m_pPopUps;
    std::unique_ptr<TileEditorInterface> m_pInterface;
};

TEST_F(InterfaceTest, allSizeClassesLoadWithoutAWordAndKeepTheViewClear)
{
    for (const auto& [iWidth, iHeight] :
         {std::pair{1920, 1080}, {2560, 1440}, {3840, 2160}, {320, 240}, {1280, 720}})
    {
        m_pGui->resize(iWidth, iHeight);
        m_pInterface->refresh(~0u);
        m_pInterface->updateOverlay(60, 4.0, 2.0);
        settle(2);
        EXPECT_EQ(widget("MenuBarContainer")->getWidth(), iWidth);
    }
    m_pGui->mouseMove(640, 400, 0);
    EXPECT_TRUE(m_pInterface->isPointerFree());
    EXPECT_TRUE(m_pInterface->isMouseFree());
    m_pGui->mouseMove(100, 100, 0);
    EXPECT_FALSE(m_pInterface->isMouseFree());
}

TEST_F(InterfaceTest, menuOpensAndItsEntryActs)
{
    auto* pBar = widget<MyGUI::MenuBar>("LeftMenuBar");
    click(pBar->getItemAt(0));
    settle();
    MyGUI::MenuControl* pFile = pBar->getItemChildAt(0);
    ASSERT_TRUE(pFile->getInheritedVisible());
    click(pFile->getItemAt(3));
    EXPECT_EQ(m_actions.sCalls, "save;");
    settle();
    EXPECT_FALSE(pFile->getInheritedVisible());
    EXPECT_FALSE(m_pGui->hasKeyFocus()) << "a closed menu keeps the keyboard from the keys";

    click(pBar->getItemAt(0));
    settle();
    click(900, 500); // beside it
    settle();
    EXPECT_FALSE(pFile->getInheritedVisible());
    EXPECT_FALSE(m_pGui->hasKeyFocus());

    click(pBar->getItemAt(0));
    settle();
    EXPECT_TRUE(pFile->getInheritedVisible());
    key(1); // escape
    settle();
    EXPECT_FALSE(pFile->getInheritedVisible());
}

TEST_F(InterfaceTest, entityMenuRunsEntriesAndBracketedMenusAlike)
{
    m_actions.vecEntityMenu = {{.sLabel = "Transform",
                                .vecChildren = {{.sLabel = "[Reset ",
                                                 .uAction = 53,
                                                 .uCommand = 1,
                                                 .vecChildren = {{.sLabel = "Rotation", .uCommand = 2}}}}},
                               {.bSeparator = true},
                               {.sLabel = "Open Prefab (a#b)", .uCommand = 8, .bEnabled = false},
                               {.sLabel = "Delete ", .uAction = 6, .uCommand = 9}};
    const auto open = [this]
    {
        m_pInterface->showEntityMenu(700, 300);
        settle();
        return m_pInterface->entityMenu();
    };
    MyGUI::PopupMenu* pMenu = open();
    ASSERT_TRUE(pMenu && pMenu->getInheritedVisible());
    EXPECT_EQ(pMenu->getAbsolutePosition(), MyGUI::IntPoint(700, 300));
    ASSERT_EQ(pMenu->getItemCount(), 4u);
    EXPECT_EQ(pMenu->getItemNameAt(2), "Open Prefab (a##b)");
    EXPECT_EQ(pMenu->getItemNameAt(3), "Delete #BBBBBB(delete)");
    click(pMenu->getItemAt(2));
    EXPECT_EQ(m_actions.sCalls, "") << "greyed out";

    const auto openReset = [&]
    {
        const MyGUI::IntCoord item = pMenu->getItemAt(0)->getAbsoluteCoord();
        m_pGui->mouseMove(item.left + 20, item.top + 10, 0);
        settle();
        MyGUI::MenuControl* pTransform = pMenu->getItemChildAt(0);
        EXPECT_TRUE(pTransform->getInheritedVisible());
        EXPECT_TRUE(pTransform->getItemNameAt(0).asUTF8().starts_with("[Reset #BBBBBB(ctrl+r)]"));
        return pTransform;
    };
    click(openReset()->getItemAt(0));
    settle();
    EXPECT_EQ(m_actions.sCalls, "command 1;");
    EXPECT_FALSE(pMenu->getInheritedVisible());

    m_actions.sCalls.clear();
    pMenu = open();
    MyGUI::MenuControl* pTransform = openReset();
    const MyGUI::IntCoord reset = pTransform->getItemAt(0)->getAbsoluteCoord();
    m_pGui->mouseMove(reset.left + 20, reset.top + 10, 0);
    settle();
    click(pTransform->getItemChildAt(0)->getItemAt(0));
    settle();
    EXPECT_EQ(m_actions.sCalls, "command 2;");
    EXPECT_FALSE(pMenu->getInheritedVisible());
    EXPECT_FALSE(m_pGui->hasKeyFocus());

    m_pInterface->showEntityMenu(1275, 715); // all of it shows
    settle();
    pMenu = m_pInterface->entityMenu();
    EXPECT_LE(pMenu->getAbsoluteCoord().right(), 1280);
    EXPECT_LE(pMenu->getAbsoluteCoord().bottom(), 720);
    click(640, 500); // beside it
    settle();
    EXPECT_FALSE(pMenu->getInheritedVisible());
    EXPECT_EQ(m_actions.sCalls, "command 2;");
}

TEST_F(InterfaceTest, toolButtonsAndPanelsWriteThrough)
{
    click(widget("Texture"));
    EXPECT_EQ(m_actions.sCalls, "tool 1;");
    click(widget("HeightModeSmooth"));
    EXPECT_EQ(m_actions.state.heightMode, HeightSmooth);
    EXPECT_TRUE(widget<MyGUI::Button>("HeightModeSmooth")->getStateSelected());
    click(widget("Falloff4"));
    EXPECT_EQ(m_actions.state.pBrush, FakeActions::brush(4));

    // A value that changed elsewhere shows at the next refresh.
    m_actions.state.heightMode = HeightFlatten;
    m_pInterface->refresh(0);
    EXPECT_TRUE(widget<MyGUI::Button>("HeightModeFlatten")->getStateSelected());
    EXPECT_FALSE(widget<MyGUI::Button>("HeightModeSmooth")->getStateSelected());
    m_pInterface->showToolPanels(ToolPlace);
    EXPECT_FALSE(widget("BrushWindow")->getVisible());
}

TEST_F(InterfaceTest, materialsAreChosenFromTheListAndSetsFromTheBox)
{
    m_pInterface->showToolPanels(ToolMaterial);
    settle(2);
    auto* pList = widget<MyGUI::ItemBox>("GroundMaterialList");
    ASSERT_EQ(pList->getItemCount(), 8u);
    EXPECT_EQ(pList->getIndexSelected(), 0u);
    clickMaterial(5);
    EXPECT_EQ(m_actions.state.groundMaterial, 5u);
    EXPECT_EQ(pList->getIndexSelected(), 5u);
    EXPECT_FALSE(m_pGui->hasKeyFocus()) << "the next press paints";

    auto* pSets = widget<MyGUI::ComboBox>("GroundMaterialSet");
    EXPECT_EQ(pSets->getOnlyText(), "Standard");
    m_actions.sCalls.clear();
    click(pSets);
    settle();
    const MyGUI::IntCoord box = pSets->getAbsoluteCoord();
    click(box.left + 30, box.bottom() + 4 + 26 + 13); // the second line
    EXPECT_EQ(m_actions.sCalls, "bind $SURVIVAL_DATA/b.json;dirty;");
    EXPECT_FALSE(m_pGui->hasKeyFocus());
    m_pInterface->refresh(0);
    EXPECT_EQ(pSets->getOnlyText(), "Standard") << "as long as it isn't bound";

    m_actions.bound = {8, "$SURVIVAL_DATA/b.json", materials("Autumn")};
    m_pInterface->refresh(0);
    EXPECT_EQ(pSets->getOnlyText(), "Autumn");
    EXPECT_EQ(m_actions.state.groundMaterial, 0u);
    EXPECT_EQ(pList->getIndexSelected(), 0u);
    settle(2);
    EXPECT_EQ(widget<MyGUI::TextBox>("ItemName")->getCaption(), MyGUI::UString("Autumn0"));
}

TEST_F(InterfaceTest, colorEditorMarksItsChangesAndShowsTheTarget)
{
    m_pInterface->showToolPanels(ToolColor);
    m_actions.state.groundColor = {0.0f, 0.0f, 0.0f, 1.0f};
    m_pInterface->refresh(0);
    m_actions.sCalls.clear();
    click(widget("ColorArea"));
    EXPECT_EQ(m_actions.sCalls, "dirty;");
    EXPECT_NEAR(m_pInterface->editorColor()[0], 0.5f, 0.01f);
    EXPECT_EQ(m_actions.state.groundColor[0], 0.0f) << "the frame hands it over";

    m_actions.sCalls.clear();
    click(widget("RESET_COLOR_ID"));
    EXPECT_EQ(m_actions.sCalls, "color;dirty;");
    EXPECT_EQ(m_actions.state.groundColor[0], 1.0f);
    click(widget("PickColor"));
    m_pInterface->refresh(0);
    EXPECT_TRUE(widget<MyGUI::Button>("PickColor")->getStateSelected());
    EXPECT_EQ(m_pInterface->editorColor()[0], 1.0f);
    m_actions.state.pickState = PickNormal;
    m_pInterface->refresh(0);
    EXPECT_FALSE(widget<MyGUI::Button>("PickColor")->getStateSelected());

    for (const auto& [iWidth, iHeight] : {std::pair{1920, 1080}, {3840, 2160}, {1280, 720}})
    {
        m_pGui->resize(iWidth, iHeight);
        m_pInterface->showToolPanels(ToolColor);
        settle(2);
        const MyGUI::IntCoord window = widget("ColorEditor")->getAbsoluteCoord();
        EXPECT_EQ(window.right() + widget("BrushWindow")->getLeft(), iWidth);
        EXPECT_EQ(window.top, widget("BrushWindow")->getTop());
        EXPECT_EQ(widget("ButtonArea")->getBottom() + widget("ButtonArea")->getLeft(), window.height);
    }
}

TEST_F(InterfaceTest, tabWalksThroughTheBrushNumbers)
{
    click(widget("Strength"));
    type("70");
    key(15); // tab
    EXPECT_EQ(m_actions.state.strength, 70);
    type("400");
    key(15);
    EXPECT_EQ(m_actions.state.size, 400);
    type("80");
    key(s_iEnter);
    EXPECT_EQ(m_actions.state.strength, 80);
    EXPECT_FALSE(m_pGui->hasKeyFocus());
}

TEST_F(InterfaceTest, newWindowMakesTheChosenSizeAndGoes)
{
    m_pInterface->showNewWindow();
    settle(2);
    EXPECT_FALSE(m_pInterface->isMouseFree() && !m_pGui->mouseMove(640, 650, 0))
        << "the backdrop keeps the view";
    auto* pWindow = widget<MyGUI::Window>("NewWindow");
    EXPECT_EQ(pWindow->getHeight(), 320);
    MyGUI::Widget* pClient = pWindow->getClientWidget();
    ASSERT_EQ(pClient->getChildCount(), 5u);
    EXPECT_EQ(pClient->getChildAt(4)->getPosition(), MyGUI::IntPoint(20, 220));
    click(pClient->getChildAt(4));
    EXPECT_EQ(m_actions.sCalls, "new 16;");
    EXPECT_FALSE(widget("Popup")->getVisible());

    m_pInterface->showNewWindow();
    key(s_iDown);
    key(s_iEnter);
    EXPECT_EQ(m_actions.sCalls, "new 16;new 2;");
}

TEST_F(InterfaceTest, openWindowSearchesAndOpensByEnterOrClick)
{
    m_actions.vecFiles = {tile("Dunes", "Creative"), tile("North #1", "User"), tile("North Hill", "User")};
    m_pInterface->showOpenWindow();
    settle(2);
    ASSERT_TRUE(m_pGui->isEditing());
    type("nor");
    EXPECT_EQ(widget<MyGUI::ItemBox>("TileList")->getItemCount(), 2u);
    settle(2);
    key(s_iEnter);
    EXPECT_EQ(m_actions.sCalls, "open $CONTENT_DATA/North #1.tile;");
    EXPECT_FALSE(widget("OpenTileWindow")->getVisible());

    m_pInterface->showOpenWindow();
    key(s_iDown);
    key(s_iDown);
    key(s_iDown);
    key(s_iDown);
    key(s_iEnter);
    EXPECT_EQ(m_actions.sCalls, "open $CONTENT_DATA/North #1.tile;open $CONTENT_DATA/North Hill.tile;");

    m_pInterface->showOpenWindow();
    settle(2);
    const MyGUI::IntCoord list = widget("TileList")->getAbsoluteCoord();
    click(list.left + 60, list.top + 70);
    EXPECT_TRUE(m_actions.sCalls.ends_with("open $CONTENT_DATA/Dunes.tile;"));

    m_pInterface->showOpenWindow();
    type("zzz");
    key(s_iDown);
    key(s_iEnter); // nothing to open
    EXPECT_TRUE(widget("OpenTileWindow")->getVisible());
}

TEST_F(InterfaceTest, longListScrollsByWheelAndKeepsItsPlaceWhenRefreshed)
{
    for (int i = 0; i < 200; ++i)
        m_actions.vecFiles.push_back(tile("Tile " + std::to_string(i), "User"));
    m_pInterface->showOpenWindow();
    settle(2);
    auto* pList = widget<MyGUI::ItemBox>("TileList");
    const MyGUI::IntCoord list = pList->getAbsoluteCoord();
    m_pGui->mouseMove(list.left + 60, list.top + 60, 0);
    m_pGui->mouseMove(list.left + 60, list.top + 60, -360);
    settle(2);
    const int iOffset = pList->getViewOffset().top;
    EXPECT_GT(iOffset, 0);
    m_pInterface->refresh(~0u);
    EXPECT_EQ(pList->getViewOffset().top, iOffset);
    type("t");
    EXPECT_EQ(pList->getViewOffset().top, iOffset) << "a search that leaves all over moves nothing";
    for (int i = 0; i < 60; ++i)
        key(s_iDown);
    settle(2);
    EXPECT_EQ(pList->getIndexSelected(), 199u);
    EXPECT_GT(pList->getViewOffset().top, 49 * 144 - list.height) << "the chosen row is in view";
}

TEST_F(InterfaceTest, categoriesOfTheOpenWindowAreChosenFromItsMenu)
{
    m_actions.vecFiles = {tile("Dunes", "Creative"), tile("Hill", "User"), tile("Lake", "User")};
    m_pInterface->showOpenWindow();
    settle(2);
    auto* pBar = widget<MyGUI::MenuBar>("OptionsBar");
    auto* pList = widget<MyGUI::ItemBox>("TileList");
    const auto choose = [&](size_t uEntry)
    {
        click(pBar->getItemAt(0));
        settle();
        click(pBar->getItemChildAt(0)->getItemAt(uEntry));
        settle();
    };
    choose(2); // behind "User" and the separator
    EXPECT_EQ(pList->getItemCount(), 1u);
    EXPECT_TRUE(pBar->getItemChildAt(0)->getItemAt(2)->getItemChecked());
    EXPECT_FALSE(pBar->getItemChildAt(0)->getItemAt(0)->getItemChecked());
    EXPECT_TRUE(m_pGui->isEditing()) << "typing goes on";
    choose(2);
    EXPECT_EQ(pList->getItemCount(), 0u);
    EXPECT_TRUE(widget("TileListEmpty")->getVisible());
    choose(0);
    settle(2);
    EXPECT_EQ(pList->getItemCount(), 2u);
    EXPECT_EQ(widget<MyGUI::TextBox>("ItemName")->getCaption(), MyGUI::UString("Hill"));
    m_pGui->keyDown(s_iControl, 0);
    choose(2);
    EXPECT_EQ(pList->getItemCount(), 3u);
    m_pGui->keyUp(s_iControl);
}

TEST_F(InterfaceTest, tileSettingsShowAndWriteTheCategoryWhileTheyAreVisible)
{
    EXPECT_FALSE(widget("TileSettingsWindow")->getVisible());
    m_actions.category = {2, 17};
    m_pInterface->showTileSettingsWindow(true);
    m_pInterface->refresh(0);
    settle(2);
    auto* pEntries = widget<MyGUI::ListBox>("TerrainCategoryList");
    auto* pCategories = widget<MyGUI::ComboBox>("TerrainCategory");
    EXPECT_EQ(pCategories->getOnlyText(), "Ravines");
    EXPECT_EQ(pEntries->getIndexSelected(), 17u);
    EXPECT_TRUE(pEntries->isItemVisibleAt(17));
    const MyGUI::IntCoord list = pEntries->getAbsoluteCoord();
    click(list.left + 40, list.bottom() - 20); // the last entry in view
    EXPECT_EQ(m_actions.category, (TerrainCategory{2, 17})) << "it is the chosen one already";
    click(list.left + 40, list.bottom() - 48);
    EXPECT_EQ(m_actions.category, (TerrainCategory{2, 16}));

    click(pCategories);
    settle();
    const MyGUI::IntCoord box = pCategories->getAbsoluteCoord();
    click(box.left + 30, box.bottom() + 4 + 13); // "Standard"
    EXPECT_EQ(m_actions.category, (TerrainCategory{0, 0}));
    EXPECT_EQ(pEntries->getItemCount(), 0u);
    EXPECT_TRUE(widget("TerrainCategoryEmpty")->getVisible());

    m_actions.vecLabels = {{"NW", {640.0f, 360.0f}}, {"SE", {700.0f, 1e9f}}};
    m_pInterface->updateOverlay(60, 4.0, 2.0);
    m_pGui->resize(3840, 2160); // all widgets anew
    m_pInterface->updateOverlay(60, 4.0, 2.0);
    EXPECT_TRUE(widget("TileSettingsWindow")->getVisible());
    m_pInterface->showTileSettingsWindow(false);
    EXPECT_FALSE(widget("TileSettingsWindow")->getVisible());
}

TEST_F(InterfaceTest, helpShowsEveryPage)
{
    auto* pBar = widget<MyGUI::MenuBar>("LeftMenuBar");
    click(pBar->getItemAt(4));
    ASSERT_TRUE(widget("HelpWindow")->getVisible());
    auto* pPage = widget<MyGUI::ScrollView>("HelpPage");
    for (size_t i = 0; i < s_arrHelpPages.size(); ++i)
    {
        EXPECT_GE(pPage->getChildCount(), 2u) << s_arrHelpPages[i].pFile;
        EXPECT_TRUE(widget<MyGUI::Button>(std::string("Help ") + s_arrHelpPages[i].pTab)->getStateSelected());
        key(s_iDown);
        settle(1);
    }
    key(1); // escape
    EXPECT_FALSE(widget("HelpWindow")->getVisible());
}

TEST_F(InterfaceTest, saveAsKeepsTheFolderOnlyUnderTheSameName)
{
    m_actions.sName = "Hill";
    m_actions.sDirectory = "$CONTENT_DATA/Tiles/x";
    const auto save = [&](const char* pName)
    {
        m_actions.sCalls.clear();
        m_pInterface->showSaveAsWindow();
        if (pName)
            type(pName);
        key(s_iEnter);
        m_pPopUps->update();
        return m_actions.sCalls;
    };
    EXPECT_EQ(save(nullptr), "saveAs Hill|$CONTENT_DATA/Tiles/x;");
    EXPECT_EQ(save("Valley"), "saveAs Valley|;");
    EXPECT_EQ(save("bad/name"), "");
    EXPECT_TRUE(m_pPopUps->isOpen()) << "the message about the name";
    key(s_iEnter);
    m_pPopUps->update();
    EXPECT_FALSE(m_pPopUps->isOpen());
}

TEST_F(InterfaceTest, savingWithNothingOpenOnlyWarns)
{
    m_actions.bOpen = false;
    m_pInterface->showSaveAsWindow();
    type("Hill");
    key(s_iEnter);
    m_pPopUps->update();
    EXPECT_EQ(m_actions.sCalls, "");
    EXPECT_TRUE(m_log.has("Tile Save Error"));
    m_uExpectedWarnings = 1;
}

} // namespace
