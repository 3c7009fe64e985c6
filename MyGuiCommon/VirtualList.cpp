#include "MyGuiCommon/VirtualList.h"

#include "MyGuiCommon/GuiMetrics.h"

#include <MyGUI_Button.h>
#include <MyGUI_Gui.h>
#include <MyGUI_InputManager.h>
#include <MyGUI_ScrollBar.h>

namespace
{

constexpr int s_iDragStart = 4;   ///< units of movement that tell a drag from a click
constexpr int s_iWheelRows = 3;   ///< a notch, of low rows
constexpr int s_iWheelUnits = 96; ///< a notch, at most
constexpr int s_iNotch = 120;

} // namespace

void VirtualList::initialiseOverride()
{
    Widget::initialiseOverride();
    assignWidget(m_pClient, "Client");
    assignWidget(m_pScroll, "VScroll");
    if (m_pClient)
        m_pClient->eventMouseWheel += MyGUI::newDelegate(this, &VirtualList::onWheel);
    if (m_pScroll)
        m_pScroll->eventScrollChangePosition += MyGUI::newDelegate(this, &VirtualList::onScroll);
}

void VirtualList::shutdownOverride()
{
    m_vecCells.clear();
    m_pClient = nullptr;
    m_pScroll = nullptr;
    Widget::shutdownOverride();
}

void VirtualList::setContent(VirtualListContent content)
{
    for (const Cell& cell : m_vecCells)
        MyGUI::Gui::getInstance().destroyWidget(cell.pButton);
    m_vecCells.clear();
    m_content = std::move(content);
    layOut(true);
}

void VirtualList::setCount(size_t uCount)
{
    m_uCount = uCount;
    layOut(true);
}

void VirtualList::redraw()
{
    layOut(true);
}

void VirtualList::setSize(const MyGUI::IntSize& size)
{
    Widget::setSize(size);
    layOut(true);
}

void VirtualList::setCoord(const MyGUI::IntCoord& coord)
{
    Widget::setCoord(coord);
    layOut(true);
}

void VirtualList::setOffset(int iOffset)
{
    m_iOffset = iOffset;
    layOut(false);
}

void VirtualList::showCell(size_t uIndex)
{
    if (uIndex >= m_uCount || !m_pClient)
        return;
    const int iTop = static_cast<int>(uIndex / columns()) * m_content.iCellHeight;
    setOffset(std::min(iTop, std::max(m_iOffset, iTop + m_content.iCellHeight - m_pClient->getHeight())));
}

size_t VirtualList::columns() const
{
    if (m_content.iCellWidth <= 0 || !m_pClient)
        return 1;
    return static_cast<size_t>(std::max(1, m_pClient->getWidth() / m_content.iCellWidth));
}

size_t VirtualList::pageRows() const
{
    return m_pClient ? static_cast<size_t>(std::max(1, m_pClient->getHeight() / m_content.iCellHeight)) : 1;
}

int VirtualList::contentHeight() const
{
    return static_cast<int>((m_uCount + columns() - 1) / columns()) * m_content.iCellHeight;
}

MyGUI::Button* VirtualList::cell(size_t uIndex) const
{
    if (m_vecCells.empty())
        return nullptr;
    const Cell& cell = m_vecCells[uIndex % m_vecCells.size()];
    return cell.uIndex == uIndex ? cell.pButton : nullptr;
}

size_t VirtualList::indexOf(const MyGUI::Widget* pCell) const
{
    for (const Cell& cell : m_vecCells)
        if (cell.pButton == pCell)
            return cell.uIndex;
    return s_uNone;
}

void VirtualList::makeCells(size_t uNeeded)
{
    // Another number of cells would show other items in all of them.
    for (Cell& cell : m_vecCells)
    {
        cell.uIndex = s_uNone;
        cell.pButton->setVisible(false);
    }
    while (m_vecCells.size() < uNeeded)
    {
        Cell cell;
        cell.pButton = m_pClient->createWidget<MyGUI::Button>(
            m_content.sCellSkin,
            MyGUI::IntCoord(0, 0, m_pClient->getWidth() / static_cast<int>(columns()), m_content.iCellHeight),
            MyGUI::Align::Default);
        cell.pButton->setNeedKeyFocus(false);
        cell.pButton->setVisible(false);
        cell.pButton->eventMouseWheel += MyGUI::newDelegate(this, &VirtualList::onWheel);
        cell.pButton->eventMouseButtonPressed += MyGUI::newDelegate(this, &VirtualList::onPress);
        cell.pButton->eventMouseDrag += MyGUI::newDelegate(this, &VirtualList::onDrag);
        cell.pButton->eventMouseButtonReleased += MyGUI::newDelegate(this, &VirtualList::onRelease);
        cell.pButton->eventMouseButtonDoubleClick += MyGUI::newDelegate(this, &VirtualList::onDoubleClick);
        if (m_content.fnCreate)
            m_content.fnCreate(*cell.pButton);
        m_vecCells.push_back(cell);
    }
}

void VirtualList::layOut(bool bRedraw)
{
    if (!m_pClient || !m_content.fnDraw)
        return;
    const int iHeight = m_pClient->getHeight();
    const int iRow = m_content.iCellHeight;
    const int iMost = std::max(0, contentHeight() - iHeight);
    m_iOffset = std::clamp(m_iOffset, 0, iMost);

    const size_t uColumns = columns();
    const size_t uNeeded = static_cast<size_t>(iHeight / iRow + 2) * uColumns;
    if (uNeeded > m_vecCells.size())
        makeCells(uNeeded);

    const size_t uFirst = static_cast<size_t>(m_iOffset / iRow) * uColumns;
    const size_t uEnd = std::min(m_uCount, uFirst + uNeeded);
    for (Cell& cell : m_vecCells)
        if (cell.uIndex != s_uNone && (cell.uIndex < uFirst || cell.uIndex >= uEnd))
        {
            cell.uIndex = s_uNone;
            cell.pButton->setVisible(false);
        }
    for (size_t i = uFirst; i < uEnd; ++i)
    {
        Cell& cell = m_vecCells[i % m_vecCells.size()];
        const int iColumns = static_cast<int>(uColumns);
        const int iColumn = static_cast<int>(i % uColumns);
        const int iLeft = m_pClient->getWidth() * iColumn / iColumns;
        const MyGUI::IntCoord coord(iLeft, static_cast<int>(i / uColumns) * iRow - m_iOffset,
                                    m_pClient->getWidth() * (iColumn + 1) / iColumns - iLeft, iRow);
        if (cell.pButton->getCoord() != coord)
            cell.pButton->setCoord(coord);
        if (cell.uIndex == i && !bRedraw)
            continue;
        cell.uIndex = i;
        cell.pButton->setVisible(true);
        m_content.fnDraw(*cell.pButton, i);
    }

    if (!m_pScroll)
        return;
    m_pScroll->setVisible(iMost > 0);
    m_pScroll->setScrollRange(static_cast<size_t>(iMost) + 1);
    m_pScroll->setScrollPage(static_cast<size_t>(iRow));
    m_pScroll->setScrollViewPage(static_cast<size_t>(std::max(iHeight - iRow, iRow)));
    m_pScroll->setScrollPosition(static_cast<size_t>(m_iOffset));
    if (iMost > 0)
        m_pScroll->setTrackSize(std::max(1, m_pScroll->getLineSize() * iHeight / contentHeight()));
}

void VirtualList::onScroll(MyGUI::ScrollBar*, size_t uPosition)
{
    setOffset(static_cast<int>(uPosition));
}

void VirtualList::onWheel(MyGUI::Widget*, int iDelta)
{
    const int iNotch = std::min(s_iWheelRows * m_content.iCellHeight,
                                std::max(GuiMetrics::px(s_iWheelUnits), m_content.iCellHeight));
    setOffset(m_iOffset - iDelta * iNotch / s_iNotch);
}

void VirtualList::onMouseWheel(int iDelta)
{
    Widget::onMouseWheel(iDelta);
    onWheel(this, iDelta);
}

void VirtualList::onPress(MyGUI::Widget* pSender, int iX, int iY, MyGUI::MouseButton button)
{
    if (getNeedKeyFocus())
        MyGUI::InputManager::getInstance().setKeyFocusWidget(this);
    if (button != MyGUI::MouseButton::Left)
        return;
    m_bPressed = true;
    m_press.set(iX, iY);
    if (const size_t uIndex = indexOf(pSender); uIndex < m_uCount && m_content.fnPress)
        m_content.fnPress(uIndex);
}

void VirtualList::onDrag(MyGUI::Widget* pSender, int iX, int iY, MyGUI::MouseButton button)
{
    if (!m_bPressed || button != MyGUI::MouseButton::Left ||
        std::max(std::abs(iX - m_press.left), std::abs(iY - m_press.top)) < GuiMetrics::px(s_iDragStart))
        return;
    m_bPressed = false;
    if (const size_t uIndex = indexOf(pSender); uIndex < m_uCount && m_content.fnDrag)
        m_content.fnDrag(uIndex);
}

void VirtualList::onRelease(MyGUI::Widget* pSender, int iX, int iY, MyGUI::MouseButton button)
{
    if (button == MyGUI::MouseButton::Left)
        m_bPressed = false;
    else if (const size_t uIndex = indexOf(pSender);
             button == MyGUI::MouseButton::Right && uIndex < m_uCount && m_content.fnMenu)
        m_content.fnMenu(uIndex, iX, iY);
}

void VirtualList::onDoubleClick(MyGUI::Widget* pSender)
{
    if (const size_t uIndex = indexOf(pSender); uIndex < m_uCount && m_content.fnDoubleClick)
        m_content.fnDoubleClick(uIndex);
}

void VirtualList::onKeyButtonPressed(MyGUI::KeyCode key, MyGUI::Char uChar)
{
    if (key == MyGUI::KeyCode::Escape)
        MyGUI::InputManager::getInstance().resetKeyFocusWidget(this);
    else if (!m_content.fnKey || !m_content.fnKey(key))
        Widget::onKeyButtonPressed(key, uChar);
}

void VirtualList::onKeySetFocus(MyGUI::Widget* pOld)
{
    Widget::onKeySetFocus(pOld);
    _setWidgetState("pushed");
}

void VirtualList::onKeyLostFocus(MyGUI::Widget* pNew)
{
    Widget::onKeyLostFocus(pNew);
    _setWidgetState("normal");
}
