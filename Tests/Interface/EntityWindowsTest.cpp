// The windows of the entity tool on a recording device: many things, few widgets, and what clicks do.

#include "KestrelCommon/Services/InputManager.h"
#include "MyGuiCommon/FloatEditBox.h"
#include "MyGuiCommon/PopUpManager.h"
#include "MyGuiCommon/VirtualList.h"
#include "Tests/Interface/FakeActions.h"
#include "Tests/Interface/FakeSource.h"
#include "Tests/MyGui/GuiFixture.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Interface/KeyBindings.h"
#include "TileEditorCommon/Interface/TileEditorInterface.h"

#include <MyGUI_Button.h>
#include <MyGUI_ComboBox.h>
#include <MyGUI_EditBox.h>
#include <MyGUI_MenuItem.h>
#include <MyGUI_PopupMenu.h>

namespace
{

using namespace tilebuilder;

constexpr int s_iEnter = 28;
constexpr int s_iEscape = 1;
constexpr int s_iTab = 15;
constexpr int s_iDown = 0xD0;
constexpr int s_iControl = 29;

struct EntityWindowsTest : GuiFixture
{
    void SetUp() override
    {
        GuiFixture::SetUp();
        for (int i = 0; i < 5000; ++i)
            m_source.add(LibraryItemKind::Asset, "rock" + std::to_string(i), "$GAME_DATA",
                         {i % 2 ? "Odd" : "Even"});
        m_actions.vecSources = {&m_source};
        m_actions.vecContents = {{"$GAME_DATA", "Creative", false}};
        for (int i = 0; i < 20000; ++i)
            m_things.add(i % 2 ? EntityTypeId_Asset : EntityTypeId_Node, "thing" + std::to_string(i));
        m_actions.state.tool = ToolPlace;
        m_pPopUps = std::make_unique<PopUpManager>(*m_pGui);
        m_pInterface = std::make_unique<TileEditorInterface>(
            InterfaceParts{*m_pGui, *m_pPopUps, m_actions, m_keys, true, {}});
        settle(2);
    }
    void TearDown() override
    {
        m_pInterface.reset();
        m_pPopUps.reset();
        GuiFixture::TearDown();
    }

    void refresh(uint32_t uMask = ChangeSelection)
    {
        m_pInterface->refresh(uMask);
        m_pInterface->updateOverlay(60, 4.0, 2.0);
        settle(1);
    }
    static size_t widgetsBelow(MyGUI::Widget* pWidget)
    {
        size_t uCount = 1;
        for (size_t i = 0; i < pWidget->getChildCount(); ++i)
            uCount += widgetsBelow(pWidget->getChildAt(i));
        return uCount;
    }
    /// A number box of the properties by its row from the top, the kind's own rows behind the rest.
    FloatEditBox* box(const std::string& sLabel, size_t uBox)
    {
        return findBox(widget("PropertiesView"), sLabel, uBox);
    }
    static FloatEditBox* findBox(MyGUI::Widget* pParent, const std::string& sLabel, size_t uBox)
    {
        bool bRow = false;
        std::vector<FloatEditBox*> vecBoxes;
        for (size_t i = 0; i < pParent->getChildCount(); ++i)
        {
            MyGUI::Widget* pChild = pParent->getChildAt(i);
            if (auto* pText = pChild->castType<MyGUI::TextBox>(false))
                bRow |= pText->getCaption() == MyGUI::UString(sLabel);
            if (auto* pBox = pChild->castType<FloatEditBox>(false))
                vecBoxes.push_back(pBox);
            else if (FloatEditBox* pFound = findBox(pChild, sLabel, uBox))
                return pFound;
        }
        return bRow && uBox < vecBoxes.size() ? vecBoxes[uBox] : nullptr;
    }
    const Transform& transform(uint32_t uId) { return m_things.mapThings[uId].transform; }

    InputManager m_input;
    KeyBindings m_keys{m_input};
    FakeActions m_actions;
    FakeEntities& m_things = m_actions.things;
    FakeSource m_source;
    std::unique_ptr<PopUpManager> m_pPopUps;
    std::unique_ptr<TileEditorInterface> m_pInterface;
};

TEST_F(EntityWindowsTest, onlyWhatIsInViewHasWidgetsAndEverythingCanBeReached)
{
    auto* pLibrary = widget<VirtualList>("AssetList");
    auto* pOutliner = widget<VirtualList>("OutlinerList");
    EXPECT_EQ(pLibrary->count(), 5000u);
    EXPECT_EQ(pOutliner->count(), 20002u);
    EXPECT_LT(widgetsBelow(pLibrary), 400u);
    EXPECT_LT(widgetsBelow(pOutliner), 200u);
    pLibrary->showCell(4999);
    pOutliner->showCell(20001);
    settle(1);
    ASSERT_TRUE(pLibrary->cell(4999));
    ASSERT_TRUE(pOutliner->cell(20001));
    EXPECT_EQ(pOutliner->cell(0), nullptr);
    click(pOutliner->cell(20001));
    EXPECT_EQ(m_things.vecSelected.size(), 1u);
    EXPECT_EQ(m_things.vecSelected[0].uId, 19999u);

    // The place stays when the list grows, and isn't past the end when it shrinks.
    const int iOffset = pOutliner->offset();
    m_things.add(EntityTypeId_Node, "last");
    refresh(ChangeEntitySet);
    EXPECT_EQ(pOutliner->offset(), iOffset);
    click(widget("OutlinerSearchBox"));
    type("thing19999");
    EXPECT_EQ(pOutliner->count(), 2u);
    EXPECT_EQ(pOutliner->offset(), 0);
    EXPECT_FALSE(m_pInterface->isListed(5));
    key(s_iEscape);
    EXPECT_EQ(pOutliner->count(), 20003u);
    EXPECT_FALSE(m_pGui->hasKeyFocus());
    m_pInterface->toggleOutliner();
    m_pInterface->toggleOutliner();
    EXPECT_TRUE(m_pInterface->isListed(5));
}

TEST_F(EntityWindowsTest, aDragOutOfTheLibraryPlacesOnce)
{
    auto* pLibrary = widget<VirtualList>("AssetList");
    const MyGUI::IntCoord cell = pLibrary->cell(1)->getAbsoluteCoord();
    m_actions.sCalls.clear();
    m_pGui->mouseMove(cell.left + 20, cell.top + 20, 0);
    m_pGui->mouseDown(cell.left + 20, cell.top + 20, 0);
    m_pGui->mouseMove(cell.left + 22, cell.top + 20, 0);
    EXPECT_EQ(m_actions.sCalls, "") << "a click that trembles";
    m_pGui->mouseMove(cell.left + 40, cell.top + 20, 0);
    m_pGui->mouseMove(cell.left + 80, cell.top - 200, 0);
    m_pGui->mouseUp(cell.left + 80, cell.top - 200, 0);
    EXPECT_EQ(m_actions.sCalls, "place 0 1;");

    m_pGui->mouseMove(cell.left + 20, cell.top + 20, 0);
    m_pGui->mouseDown(cell.left + 20, cell.top + 20, 1);
    m_pGui->mouseUp(cell.left + 20, cell.top + 20, 1);
    settle(20);
    auto* pMenu = widget<MyGUI::PopupMenu>("AssetMenu");
    ASSERT_EQ(pMenu->getItemCount(), 4u);
    m_actions.sCalls.clear();
    click(pMenu->getItemAt(1));
    EXPECT_EQ(m_actions.sCalls, "outside $GAME_DATA/a;");
}

TEST_F(EntityWindowsTest, checkBoxesAndWordsFilterTheLibrary)
{
    auto* pLibrary = widget<VirtualList>("AssetList");
    auto* pFilters = widget<VirtualList>("AssetFilters");
    EXPECT_FALSE(pFilters->getVisible());
    click(widget("AssetOptions"));
    ASSERT_TRUE(pFilters->getVisible());
    EXPECT_GE(pLibrary->getLeft(), pFilters->getRight());
    click(pFilters->cell(3)); // "Even"
    EXPECT_EQ(pLibrary->count(), 2500u);
    click(pFilters->cell(0)); // a group's title
    EXPECT_EQ(pLibrary->count(), 2500u);
    click(widget("AssetSearchBox"));
    type("99 ROCK");
    EXPECT_EQ(widget<MyGUI::TextBox>("AssetCount")->getCaption(), MyGUI::UString("70 of 5000 items"));
    m_source.vecItems.resize(99);
    ++m_source.uRevision;
    refresh();
    EXPECT_EQ(pLibrary->count(), 0u);
    EXPECT_EQ(widget<MyGUI::TextBox>("AssetListEmpty")->getCaption(),
              MyGUI::UString("No chosen item matches the search."));
}

TEST_F(EntityWindowsTest, outlinerTakesKeysAndFollowsTheSelection)
{
    auto* pOutliner = widget<VirtualList>("OutlinerList");
    click(pOutliner->cell(1));
    EXPECT_EQ(m_things.vecSelected[0].uId, 2u);
    key(s_iDown);
    EXPECT_EQ(m_things.vecSelected[0].uId, 4u);
    m_pGui->keyDown(s_iControl, 0);
    click(pOutliner->cell(1));
    m_pGui->keyUp(s_iControl);
    EXPECT_EQ(m_things.vecSelected.size(), 2u);
    EXPECT_TRUE(pOutliner->cell(1)->getStateSelected());

    m_things.select(std::array{m_things.vecAll[0]});
    refresh();
    ASSERT_TRUE(pOutliner->cell(10002)) << "a selection made in the view is brought before the eye";
    EXPECT_TRUE(pOutliner->cell(10002)->getStateSelected());
    m_pInterface->showToolPanels(ToolHeight);
    EXPECT_FALSE(widget("OutlinerWindow")->getVisible());
}

TEST_F(EntityWindowsTest, numbersAreTypedDraggedAndTabbedThrough)
{
    m_things.select(std::array{m_things.vecAll[1]});
    refresh();
    ASSERT_TRUE(box("Position", 0));
    click(box("Position", 0));
    type("12.5");
    m_things.mapThings[2].transform.position.z = 3.0f; // moved meanwhile, by whatever
    refresh();
    EXPECT_EQ(transform(2).position.x, 0.0f) << "a number counts when it is done";
    key(s_iTab);
    EXPECT_EQ(transform(2).position, glm::vec3(12.5f, 0.0f, 3.0f));
    type("-7");
    key(s_iEscape);
    EXPECT_EQ(transform(2).position.y, 0.0f);
    EXPECT_FALSE(m_pGui->hasKeyFocus());

    const MyGUI::IntCoord coord = box("Position", 1)->getAbsoluteCoord();
    m_pGui->mouseMove(coord.left + 10, coord.top + 10, 0);
    m_pGui->mouseDown(coord.left + 10, coord.top + 10, 0);
    m_pGui->mouseMove(coord.left + 30, coord.top + 10, 0);
    EXPECT_NEAR(transform(2).position.y, 1.0f, 1e-4f);
    refresh();
    m_pGui->mouseMove(coord.left + 50, coord.top + 10, 0);
    EXPECT_NEAR(transform(2).position.y, 2.0f, 1e-4f) << "a refresh ends the drag";
    m_pGui->mouseUp(coord.left + 50, coord.top + 10, 0);

    // The box is gone while something is typed into it: nothing comes of it.
    click(box("Scale", 2));
    type("5");
    m_things.select(std::array{m_things.vecAll[3]});
    refresh();
    EXPECT_EQ(transform(2).scale.z, 1.0f);
    EXPECT_EQ(transform(4).scale.z, 1.0f);
}

TEST_F(EntityWindowsTest, allKindsOfRowsTellTheirEdits)
{
    std::string sTold;
    bool bChecked = false;
    m_things.fnRows = [&](uint32_t, PropertyPanelI& panel)
    {
        const PanelGroup group(panel, "own", "Own", true,
                               [&](bool bInside) { sTold += bInside ? "in;" : "out;"; });
        panel.check("Check", bChecked, [&](bool bValue) { bChecked = bValue; });
        panel.text("Text", "old",
                   [&](const std::string& sText, EditPhase ePhase)
                   { sTold += sText + (ePhase == EditPhase::Finished ? "!;" : ";"); });
        panel.intNumber("Int", 7, {.min = 0, .max = 10},
                        [&](int32_t iValue, EditPhase) { sTold += std::to_string(iValue) + ";"; });
        panel.choice("Choice", {"a", "b"}, 0,
                     [&](size_t uIndex) { sTold += "choice" + std::to_string(uIndex) + ";"; });
        const PanelLine line(panel);
        panel.button("One", [&] { sTold += "one;"; });
        panel.button("Two", [&] { sTold += "two;"; });
    };
    m_things.select(std::array{m_things.vecAll[1]});
    refresh();
    const auto find = [this](const std::string& sCaption) -> MyGUI::Widget*
    {
        MyGUI::Widget* pFound = nullptr;
        const std::function<void(MyGUI::Widget*)> fnLook = [&](MyGUI::Widget* pParent)
        {
            for (size_t i = 0; i < pParent->getChildCount(); ++i)
            {
                auto* pText = pParent->getChildAt(i)->castType<MyGUI::TextBox>(false);
                if (pText && pText->getCaption() == MyGUI::UString(sCaption))
                    pFound = pText;
                fnLook(pParent->getChildAt(i));
            }
        };
        fnLook(widget("PropertiesView"));
        return pFound;
    };
    const auto clickValue = [&](const char* pLabel)
    {
        ASSERT_TRUE(find(pLabel)) << pLabel;
        const MyGUI::IntCoord label = find(pLabel)->getAbsoluteCoord();
        click(label.right() + 12, label.top + 12);
    };
    click(find("Check"));
    EXPECT_TRUE(bChecked) << "its words do as the box does";
    refresh();
    EXPECT_EQ(sTold, "in;");
    clickValue("Text");
    key(0xCF); // end
    type("er");
    key(s_iEnter);
    clickValue("Int");
    type("99");
    key(s_iEnter);
    click(find("Two"));
    EXPECT_EQ(sTold, "in;olde;older;older!;10;two;") << "a number beyond its range is the end of the range";
    EXPECT_EQ(find("One")->getAbsoluteTop(), find("Two")->getAbsoluteTop());

    click(find("Own")); // folds
    refresh();
    EXPECT_FALSE(find("Check")->getInheritedVisible());
    m_things.select(std::array{m_things.vecAll[3]});
    refresh();
    EXPECT_FALSE(find("Check")->getInheritedVisible()) << "what was closed stays closed for another subject";
    m_pGui->mouseMove(640, 300, 0);
    refresh();
    EXPECT_TRUE(sTold.ends_with("out;"));
}

TEST_F(EntityWindowsTest, aLongPanelScrollsByTheWheelAndStaysThere)
{
    m_things.fnRows = [](uint32_t, PropertyPanelI& panel)
    {
        for (int i = 0; i < 60; ++i)
            panel.floatNumber("Number" + std::to_string(i), 0.0f, {}, [](float, EditPhase) {});
    };
    m_things.select(std::array{m_things.vecAll[1]});
    refresh();
    const MyGUI::IntCoord first = box("Position", 0)->getAbsoluteCoord();
    m_pGui->mouseMove(first.left + 8, first.top + 8, 0);
    m_pGui->mouseMove(first.left + 8, first.top + 8, -120);
    const int iTop = box("Position", 0)->getAbsoluteTop();
    EXPECT_LT(iTop, first.top);
    refresh();
    EXPECT_EQ(box("Position", 0)->getAbsoluteTop(), iTop) << "a refresh jumps back to the top";
}

TEST_F(EntityWindowsTest, theViewKeepsItsShareOfASmallWindow)
{
    int iTaken = widget("MenuBarContainer")->getWidth() * widget("MenuBarContainer")->getHeight();
    for (const char* pName : {"AssetLibraryWindow", "PropertiesWindow", "OutlinerWindow"})
    {
        EXPECT_TRUE(widget(pName)->getVisible());
        iTaken += widget(pName)->getWidth() * widget(pName)->getHeight();
    }
    EXPECT_LE(iTaken, 1280 * 720 * 4 / 10);
    EXPECT_GE(widget("InfoBox")->getLeft(), widget("PropertiesWindow")->getRight());
}

TEST_F(EntityWindowsTest, aSwatchOpensTheColorEditorUntilAnotherThingIsShown)
{
    std::string sTold;
    m_things.fnRows = [&](uint32_t, PropertyPanelI& panel)
    {
        panel.swatch("", {0.5f, 0.5f, 0.5f, 1.0f}, true,
                     [&](const ColorRgba& color, EditPhase ePhase)
                     {
                         sTold += (ePhase == EditPhase::Finished ? "F" : "C") +
                                  std::to_string(static_cast<int>(color[0] * 100)) + ";";
                     });
    };
    m_actions.setColorTarget(nullptr, ColorTargetNone, {}, {});
    m_things.select(std::array{m_things.vecAll[1]});
    refresh();
    EXPECT_FALSE(widget("ColorEditor")->getVisible());
    const MyGUI::IntCoord view = widget("PropertiesView")->getAbsoluteCoord();
    click(view.left + 100, widget("PropertiesView")->getAbsoluteTop() + 145);
    refresh();
    ASSERT_TRUE(widget("ColorEditor")->getVisible());
    EXPECT_EQ(sTold, "F50;");
    ASSERT_TRUE(m_actions.state.onColorChanged);
    m_actions.state.onColorChanged({0.25f, 0.0f, 0.0f, 1.0f});
    EXPECT_EQ(sTold, "F50;C25;");
    refresh();
    EXPECT_EQ(sTold, "F50;C25;F25;");
    m_things.select(std::array{m_things.vecAll[3]});
    refresh();
    EXPECT_FALSE(widget("ColorEditor")->getVisible());
    EXPECT_EQ(m_actions.state.pColorTarget, nullptr) << "the editor writes to what isn't shown";
}

} // namespace
