#include "MyGuiCommon/VirtualList.h"

#include "Tests/MyGui/GuiFixture.h"

#include <MyGUI_Button.h>

namespace
{

struct VirtualListTest : GuiFixture
{
    void SetUp() override
    {
        GuiFixture::SetUp();
        m_pList = MyGUI::Gui::getInstance().createWidget<VirtualList>(
            "QM_VirtualList", MyGUI::IntCoord(100, 100, 216, 206), MyGUI::Align::Default, "Main");
        VirtualListContent content;
        content.iCellHeight = 20;
        content.fnDraw = [this](MyGUI::Button& cell, size_t uIndex)
        {
            ++m_iDrawn;
            cell.setUserData(MyGUI::Any(uIndex));
        };
        content.fnPress = [this](size_t uIndex) { m_sTold += "press" + std::to_string(uIndex) + ";"; };
        content.fnDrag = [this](size_t uIndex) { m_sTold += "drag" + std::to_string(uIndex) + ";"; };
        m_pList->setContent(std::move(content));
    }

    /// Every item in view is shown by exactly one cell, at its place.
    void expectWhole(size_t uColumns = 1)
    {
        const int iClient = 200;
        for (size_t i = 0; i < m_pList->count(); ++i)
        {
            const int iTop = static_cast<int>(i / uColumns) * 20 - m_pList->offset();
            const MyGUI::Button* pCell = m_pList->cell(i);
            if (iTop + 20 <= 0 || iTop >= iClient)
                continue;
            ASSERT_TRUE(pCell) << i;
            EXPECT_EQ(*pCell->getUserData<size_t>(), i);
            EXPECT_TRUE(pCell->getVisible());
            EXPECT_EQ(pCell->getTop(), iTop) << i;
        }
    }

    VirtualList* m_pList = nullptr;
    int m_iDrawn = 0;
    std::string m_sTold;
};

TEST_F(VirtualListTest, everyPlaceOfALongListIsShown)
{
    m_pList->setCount(1000);
    for (const int iOffset : {0, 7, 20, 399, 19800, 500, 1000000, -5})
    {
        m_pList->setOffset(iOffset);
        expectWhole();
    }
    EXPECT_EQ(m_pList->offset(), 0);
    m_pList->showCell(999);
    EXPECT_EQ(m_pList->offset(), 1000 * 20 - 200);
    m_pList->setCount(30);
    EXPECT_EQ(m_pList->offset(), 30 * 20 - 200);
    expectWhole();
    m_pList->setSize(216, 306);
    m_pList->setCount(3);
    EXPECT_EQ(m_pList->offset(), 0);
    expectWhole();
    EXPECT_EQ(m_pList->cell(3), nullptr);
    m_pList->setCount(0);
    EXPECT_EQ(m_pList->cell(0), nullptr);
}

TEST_F(VirtualListTest, scrollingDrawsOnlyWhatComesIntoView)
{
    m_pList->setCount(1000);
    m_iDrawn = 0;
    m_pList->setOffset(40);
    EXPECT_EQ(m_iDrawn, 2);
    m_pGui->mouseMove(150, 150, 0);
    m_pGui->mouseMove(150, 150, -120);
    EXPECT_EQ(m_pList->offset(), 100);
    expectWhole();
}

TEST_F(VirtualListTest, pressesAndDragsNameTheItemThatIsThere)
{
    m_pList->setCount(1000);
    m_pList->setOffset(410);
    m_pGui->mouseMove(150, 115, 0);
    m_pGui->mouseDown(150, 115, 0);
    m_pGui->mouseMove(160, 115, 0);
    m_pGui->mouseMove(190, 115, 0);
    m_pGui->mouseUp(190, 115, 0);
    EXPECT_EQ(m_sTold, "press21;drag21;");
}

TEST_F(VirtualListTest, gridCellsShareTheWidth)
{
    VirtualListContent content;
    content.iCellWidth = 60;
    content.iCellHeight = 20;
    content.fnDraw = [](MyGUI::Button& cell, size_t uIndex) { cell.setUserData(MyGUI::Any(uIndex)); };
    m_pList->setContent(std::move(content));
    m_pList->setCount(100);
    ASSERT_EQ(m_pList->columns(), 3u);
    expectWhole(3);
    EXPECT_EQ(m_pList->cell(2)->getRight(), 200);
    m_pList->setOffset(333);
    expectWhole(3);
    m_pList->setSize(316, 206);
    ASSERT_EQ(m_pList->columns(), 5u);
    expectWhole(5);
}

} // namespace
