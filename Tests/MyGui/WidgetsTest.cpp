#include "MyGuiCommon/AdvanceEditBox.h"
#include "MyGuiCommon/EditorButton.h"
#include "MyGuiCommon/EditorMenu.h"
#include "MyGuiCommon/GuiTips.h"
#include "Tests/MyGui/GuiFixture.h"

#include <MyGUI_MenuBar.h>
#include <MyGUI_MenuItem.h>

namespace
{

struct WidgetsTest : GuiFixture
{
    AdvanceEditBox* makeBox()
    {
        auto* pBox = MyGUI::Gui::getInstance().createWidget<AdvanceEditBox>(
            "AdvanceEditBox", MyGUI::IntCoord(100, 100, 202, 24), MyGUI::Align::Default, "Main");
        pBox->setRange({0, 100, 0, 10000});
        pBox->setHandler([this](int32_t iValue) { m_vecValues.push_back(iValue); });
        return pBox;
    }

    std::vector<int32_t> m_vecValues;
};

TEST_F(WidgetsTest, numberBoxSlidesStepsAndTakesTypedNumbers)
{
    AdvanceEditBox* pBox = makeBox();
    pBox->setValue(50);
    EXPECT_TRUE(m_vecValues.empty());

    m_pGui->mouseMove(150, 110, 0);
    m_pGui->mouseDown(150, 110, 0);
    m_pGui->mouseMove(201, 110, 0);
    m_pGui->mouseMove(226, 110, 0);
    m_pGui->mouseUp(226, 110, 0);
    EXPECT_EQ(pBox->value(), 63);
    EXPECT_FALSE(m_pGui->hasKeyFocus());

    click(294, 112); // the arrow at the right end
    EXPECT_EQ(pBox->value(), 64);
    click(106, 112);
    click(106, 112);
    EXPECT_EQ(pBox->value(), 62);

    click(200, 112);
    ASSERT_TRUE(m_pGui->isEditing());
    type("2500");
    key(28); // enter
    EXPECT_EQ(pBox->value(), 2500);
    EXPECT_FALSE(m_pGui->isEditing());

    click(200, 112);
    type("7");
    key(1); // escape
    EXPECT_EQ(pBox->value(), 2500);
    settle(3);
    EXPECT_EQ(m_vecValues.back(), 2500);
}

TEST_F(WidgetsTest, menuFindsEntriesByIdAndIgnoresUnknownOnes)
{
    auto* pBar = MyGUI::Gui::getInstance().createWidget<MyGUI::MenuBar>(
        "QM_MenuBar", MyGUI::IntCoord(0, 0, 400, 28), MyGUI::Align::Default, "Bar");
    GuiTips tips;
    EditorMenu menu(pBar, tips);
    int iSaves = 0;
    menu.add({.eKind = MenuEntry::Kind::Menu, .sLabel = "File", .sId = "File"});
    menu.addEntry(
        "Save", [&] { ++iSaves; }, "Save", "File");
    menu.addSeparator("File");
    menu.addCheck("Grid", {}, "Grid", "File");
    menu.setEnabled("nothing", false);
    menu.setText("nothing", "x");
    menu.setChecked("Grid", true);
    menu.setText("Grid", "Show Grid");
    menu.setEnabled("Save", false);
    settle(2);

    click(menu.find("File"));
    settle();
    click(menu.find("Save"));
    EXPECT_EQ(iSaves, 0) << "a disabled entry acted";
    menu.setEnabled("Save", true);
    settle();
    if (!menu.find("Save")->getInheritedVisible())
        click(menu.find("File"));
    settle();
    click(menu.find("Save"));
    EXPECT_EQ(iSaves, 1);
    EXPECT_TRUE(menu.find("Grid")->castType<MyGUI::MenuItem>()->getItemChecked());
    settle();
}

TEST_F(WidgetsTest, rowOfButtonsIsRebuiltOnlyWhenItLooksDifferent)
{
    auto* pRow = MyGUI::Gui::getInstance().createWidgetT("Widget", "Default", MyGUI::IntCoord(0, 0, 400, 28),
                                                         MyGUI::Align::Default, "Bar");
    GuiTips tips;
    EditorMenu menu(pRow, tips);
    int iClicks = 0;
    std::vector<MenuEntry> vecList{
        {.sLabel = "Hill.tile", .sId = "Name", .sTip = "a tip", .fnAction = [&] { ++iClicks; }}};
    EXPECT_TRUE(menu.replace(vecList));
    EXPECT_GT(menu.contentWidth(), 40);
    EXPECT_FALSE(menu.replace(vecList));
    EXPECT_TRUE(menu.replace(vecList, true));
    click(menu.find("Name"));
    EXPECT_EQ(iClicks, 1);
    m_pGui->mouseMove(11, 11, 0);
    settle(20); // the tip appears

    vecList[0].sLabel += "*";
    EXPECT_TRUE(menu.replace(vecList));
    menu.clear();
    EXPECT_EQ(menu.contentWidth(), 0);
    EXPECT_FALSE(menu.find("Name"));
}

TEST_F(WidgetsTest, dropDownOfAButtonOpensAndActs)
{
    auto* pRow = MyGUI::Gui::getInstance().createWidgetT(
        "Widget", "Default", MyGUI::IntCoord(300, 0, 400, 28), MyGUI::Align::Default, "Bar");
    GuiTips tips;
    EditorMenu menu(pRow, tips);
    int iChosen = 0;
    menu.replace(std::vector<MenuEntry>{
        {.eKind = MenuEntry::Kind::Menu,
         .sLabel = "Name",
         .sId = "Name",
         .vecChildren = {{.sLabel = "One", .sId = "One", .fnAction = [&] { iChosen = 1; }}}}});
    click(menu.find("Name"));
    settle();
    click(menu.find("One"));
    EXPECT_EQ(iChosen, 1);
    settle();
    EXPECT_FALSE(menu.find("One")->getInheritedVisible());
}

} // namespace
