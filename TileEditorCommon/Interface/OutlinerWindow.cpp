#include "TileEditorCommon/Interface/OutlinerWindow.h"

#include "MyGuiCommon/GuiMetrics.h"
#include "MyGuiCommon/GuiText.h"
#include "MyGuiCommon/GuiTips.h"
#include "MyGuiCommon/MenuEntry.h"
#include "MyGuiCommon/VirtualList.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Contracts/EditorActionsI.h"
#include "TileEditorCommon/Interface/LayoutWidgets.h"

#include <MyGUI_Button.h>
#include <MyGUI_EditBox.h>
#include <MyGUI_ImageBox.h>
#include <MyGUI_InputManager.h>
#include <MyGUI_LayoutManager.h>

using GuiMetrics::px;

namespace tilebuilder
{

namespace
{

constexpr int s_iLineHeight = 24;
constexpr int s_iTitleLeft = 20;
constexpr int s_iNameLeft = 40;
constexpr int s_iCountWidth = 48;
constexpr const char* s_pLineLayout = "$GAME_DATA/Gui/Layouts/TileEditor/OutlinerLine.layout";
/// Changes that no line shows.
constexpr uint32_t s_uUnseen = ChangeEntitySet | ChangeGrid | ChangeSurface | ChangeClutter;

const MyGUI::Colour s_bright(0.902f, 0.91f, 0.922f);
const MyGUI::Colour s_dim(0.42f, 0.447f, 0.486f);
const MyGUI::Colour s_accent(1.0f, 0.8156863f, 0.26666668f);

} // namespace

/// The widgets of a line, from its layout.
struct OutlinerWindow::Line
{
    MyGUI::Button* pFold = nullptr;
    MyGUI::ImageBox* pPicture = nullptr;
    MyGUI::TextBox* pName = nullptr;
    MyGUI::TextBox* pCount = nullptr;
};

OutlinerWindow::OutlinerWindow(MyGUI::Widget* pWindow, EditorActionsI& actions, GuiTips& tips,
                               std::function<void()> fnClose)
    : m_pWindow(pWindow),
      m_actions(actions),
      m_tips(tips),
      m_fnClose(std::move(fnClose)),
      m_model(actions),
      m_pList(findIn<VirtualList>(pWindow, "OutlinerList")),
      m_pSearch(findIn<MyGUI::EditBox>(pWindow, "OutlinerSearchBox")),
      m_pCount(findIn<MyGUI::TextBox>(pWindow, "OutlinerCount")),
      m_pEmpty(findIn<MyGUI::TextBox>(pWindow, "OutlinerEmpty"))
{
    if (m_pList)
    {
        VirtualListContent content;
        content.iCellHeight = px(s_iLineHeight);
        content.fnCreate = [this](MyGUI::Button& cell) { createLine(cell); };
        content.fnDraw = [this](MyGUI::Button& cell, size_t uRow) { drawLine(cell, uRow); };
        content.fnPress = [this](size_t uRow) { takeClick(uRow); };
        content.fnDoubleClick = [this](size_t uRow)
        {
            if (uRow < m_model.rowCount() && !m_model.row(uRow).isTitle())
                m_actions.focusSelection(true);
        };
        content.fnKey = [this](MyGUI::KeyCode key) { return takeKey(key); };
        m_pList->setContent(std::move(content));
        m_pList->setNeedKeyFocus(true);
    }
    if (m_pSearch)
    {
        m_pSearch->eventEditTextChange += MyGUI::newDelegate(this, &OutlinerWindow::onSearch);
        m_pSearch->eventKeyButtonPressed += MyGUI::newDelegate(this, &OutlinerWindow::onSearchKey);
    }
    if (auto* pClose = findIn<MyGUI::Button>(pWindow, "OutlinerClose"))
    {
        pClose->eventMouseButtonClick += MyGUI::newDelegate(this, &OutlinerWindow::onClose);
        tips.set(pClose, "Close");
    }
    showAll();
}

void OutlinerWindow::setVisible(bool bVisible)
{
    m_pWindow->setVisible(bVisible);
    if (std::exchange(m_bVisible, bVisible) != bVisible && bVisible)
        update(0);
}

void OutlinerWindow::update(uint32_t uMask)
{
    m_uMissed |= uMask;
    if (!m_bVisible)
        return;
    const OutlinerChange change = m_model.update(m_uMissed);
    if (change.bRows)
        showAll();
    else if (m_pList && (change.bSelection || (m_uMissed & ~s_uUnseen)))
        m_pList->redraw();
    m_uMissed = 0;
    if (const auto row = m_model.activeRow(); change.bSelection && row && m_pList)
        m_pList->showCell(*row);
}

void OutlinerWindow::showAll()
{
    if (m_pList)
        m_pList->setCount(m_model.rowCount());
    if (m_pCount)
        m_pCount->setCaption(m_model.countText());
    if (m_pEmpty)
    {
        m_pEmpty->setVisible(m_model.rowCount() == 0);
        m_pEmpty->setCaption(m_model.emptyText());
    }
}

void OutlinerWindow::createLine(MyGUI::Button& cell)
{
    MyGUI::LayoutManager::getInstance().loadLayout(s_pLineLayout, "", &cell);
    Line line;
    line.pFold = findIn<MyGUI::Button>(&cell, "Fold");
    line.pPicture = findIn<MyGUI::ImageBox>(&cell, "Picture");
    line.pName = findIn<MyGUI::TextBox>(&cell, "Name");
    line.pCount = findIn<MyGUI::TextBox>(&cell, "Count");
    cell.setUserData(MyGUI::Any(line));
}

void OutlinerWindow::drawLine(MyGUI::Button& cell, size_t uRow)
{
    const Line& line = *cell.getUserData<Line>();
    if (!line.pFold || !line.pPicture || !line.pName || !line.pCount)
        return;
    const OutlinerRow& row = m_model.row(uRow);
    const bool bTitle = row.isTitle();
    const std::string sPicture = m_model.icon(uRow);
    const int iRight = cell.getWidth() - px(bTitle ? s_iCountWidth + 8 : 6);
    const int iLeft = px(bTitle ? s_iTitleLeft : s_iNameLeft);
    line.pFold->setVisible(bTitle);
    line.pFold->setStateSelected(m_model.isOpen(row.eKind));
    line.pPicture->setVisible(!sPicture.empty());
    if (!sPicture.empty())
        line.pPicture->setImageTexture(sPicture);
    line.pCount->setVisible(bTitle);
    if (bTitle)
    {
        line.pCount->setCoord(iRight, 0, px(s_iCountWidth), cell.getHeight());
        line.pCount->setCaption(std::to_string(m_model.countOf(row.eKind)));
    }
    line.pName->setCoord(iLeft, 0, iRight - iLeft, cell.getHeight());
    const bool bMarked = m_model.isMarked(uRow);
    const MyGUI::Colour& colour = m_model.isDim(uRow) ? s_dim : bMarked ? s_accent : s_bright;
    line.pName->setTextColour(colour);
    line.pPicture->setColour(colour);
    const std::string sName = m_model.label(uRow);
    const bool bShortened = GuiText::fitCaption(*line.pName, sName, line.pName->getWidth(), true);
    m_tips.set(&cell, bShortened ? escapeCaption(sName) : std::string());
    cell.setStateSelected(bMarked);
}

void OutlinerWindow::takeClick(size_t uRow)
{
    const MyGUI::InputManager& input = MyGUI::InputManager::getInstance();
    m_model.click(uRow, input.isControlPressed(), input.isShiftPressed());
    followOwnSelection();
}

/// At once, and without scrolling away from what was clicked.
void OutlinerWindow::followOwnSelection()
{
    m_model.update(ChangeSelection);
    showAll();
}

bool OutlinerWindow::takeKey(MyGUI::KeyCode key)
{
    const bool bShift = MyGUI::InputManager::getInstance().isShiftPressed();
    const auto iPage = static_cast<int>(m_pList->pageRows());
    if (key == MyGUI::KeyCode::ArrowDown || key == MyGUI::KeyCode::ArrowUp)
        m_model.step(key == MyGUI::KeyCode::ArrowDown ? 1 : -1, bShift);
    else if (key == MyGUI::KeyCode::PageDown || key == MyGUI::KeyCode::PageUp)
        m_model.step(key == MyGUI::KeyCode::PageDown ? iPage : -iPage, bShift);
    else
        return false;
    followOwnSelection();
    if (const auto row = m_model.activeRow())
        m_pList->showCell(*row);
    return true;
}

void OutlinerWindow::onSearch(MyGUI::EditBox* pSender)
{
    if (!m_model.setSearch(std::string(pSender->getOnlyText())))
        return;
    if (m_pList)
        m_pList->setOffset(0);
    showAll();
}

void OutlinerWindow::onSearchKey(MyGUI::Widget* pSender, MyGUI::KeyCode key, MyGUI::Char)
{
    if (key == MyGUI::KeyCode::Escape && m_pSearch->getTextLength() > 0)
    {
        m_pSearch->setOnlyText("");
        onSearch(m_pSearch);
    }
    if (key == MyGUI::KeyCode::Escape || key == MyGUI::KeyCode::Return)
        MyGUI::InputManager::getInstance().resetKeyFocusWidget(pSender);
    else if (key == MyGUI::KeyCode::ArrowDown && m_pList)
        MyGUI::InputManager::getInstance().setKeyFocusWidget(m_pList);
}

void OutlinerWindow::onClose(MyGUI::Widget*)
{
    m_fnClose();
}

} // namespace tilebuilder
