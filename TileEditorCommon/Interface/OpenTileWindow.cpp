#include "TileEditorCommon/Interface/OpenTileWindow.h"

#include "KestrelCommon/Core/Text.h"
#include "MyGuiCommon/GuiMetrics.h"
#include "MyGuiCommon/GuiText.h"
#include "MyGuiCommon/GuiTips.h"
#include "MyGuiCommon/MenuEntry.h"
#include "TileEditorCommon/Interface/LayoutWidgets.h"
#include "TileEditorCommon/Interface/TileSearch.h"

#include <MyGUI_Button.h>
#include <MyGUI_EditBox.h>
#include <MyGUI_IBItemInfo.h>
#include <MyGUI_InputManager.h>
#include <MyGUI_ItemBox.h>
#include <MyGUI_RenderManager.h>
#include <MyGUI_Window.h>

using GuiMetrics::px;

namespace tilebuilder
{

namespace
{

constexpr int s_iRowHeight = 28;
constexpr int s_iRowPadding = 40; ///< around and between the two texts of a row

/// The two texts of a row, kept with its widget.
struct Row
{
    MyGUI::Button* pBack = nullptr;
    MyGUI::TextBox* pCategory = nullptr;
};

} // namespace

OpenTileWindow::OpenTileWindow(MyGUI::Window* pWindow, EditorActionsI& actions, GuiTips& tips,
                               std::function<void()> fnClose)
    : m_pWindow(pWindow),
      m_actions(actions),
      m_tips(tips),
      m_fnClose(std::move(fnClose)),
      m_pList(findIn<MyGUI::ItemBox>(pWindow, "TileList")),
      m_pSearch(findIn<MyGUI::EditBox>(pWindow, "SearchBox")),
      m_pCount(findIn<MyGUI::TextBox>(pWindow, "TileCount")),
      m_pEmpty(findIn<MyGUI::TextBox>(pWindow, "TileListEmpty"))
{
    pWindow->eventWindowButtonPressed += MyGUI::newDelegate(this, &OpenTileWindow::onWindowButton);
    if (m_pList)
    {
        m_pList->requestCoordItem = MyGUI::newDelegate(this, &OpenTileWindow::onItemSize);
        m_pList->requestCreateWidgetItem = MyGUI::newDelegate(this, &OpenTileWindow::onItemWidget);
        m_pList->requestDrawItem = MyGUI::newDelegate(this, &OpenTileWindow::onItemDraw);
        m_pList->eventNotifyItem += MyGUI::newDelegate(this, &OpenTileWindow::onItemPress);
    }
    if (m_pSearch)
    {
        m_pSearch->eventEditTextChange += MyGUI::newDelegate(this, &OpenTileWindow::onSearch);
        m_pSearch->eventEditSelectAccept += MyGUI::newDelegate(this, &OpenTileWindow::onAccept);
        m_pSearch->eventKeyButtonPressed += MyGUI::newDelegate(this, &OpenTileWindow::onKey);
    }
    place();
}

void OpenTileWindow::place()
{
    const MyGUI::IntSize& view = MyGUI::RenderManager::getInstance().getViewSize();
    const int iContentWidth = view.width > px(1400) ? px(1064) : px(608);
    const int iContentHeight = view.height > px(800) ? px(576) : px(432);
    const int iMarginX = std::max(0, (view.width - iContentWidth) / 2 - px(12));
    const int iMarginY = std::max(0, (view.height - iContentHeight) / 2 - px(30));
    m_pWindow->setCoord(iMarginX, iMarginY, view.width - 2 * iMarginX, view.height - 2 * iMarginY);
}

void OpenTileWindow::show()
{
    m_vecFiles = m_actions.tileFiles();
    if (m_pSearch)
        m_pSearch->setOnlyText("");
    m_pWindow->setVisible(true);
    applyFilter();
    if (m_pSearch)
        MyGUI::InputManager::getInstance().setKeyFocusWidget(m_pSearch);
}

void OpenTileWindow::applyFilter()
{
    if (!m_pList)
        return;
    m_vecShown = filterTiles(m_vecFiles,
                             searchWords(m_pSearch ? std::string(m_pSearch->getOnlyText()) : std::string()));
    const MyGUI::IntPoint offset = m_pList->getViewOffset();
    while (m_pList->getItemCount() > m_vecShown.size())
        m_pList->removeItemAt(m_pList->getItemCount() - 1);
    while (m_pList->getItemCount() < m_vecShown.size())
        m_pList->addItem(m_pList->getItemCount());
    m_pList->clearIndexSelected();
    m_pList->redrawAllItems();
    m_pList->setViewOffset(offset);
    if (m_pCount)
        m_pCount->setCaption(
            m_vecShown.size() == m_vecFiles.size()
                ? UTILS::concat(m_vecFiles.size(), m_vecFiles.size() == 1 ? " tile" : " tiles")
                : UTILS::concat(m_vecShown.size(), " of ", m_vecFiles.size(), " tiles"));
    if (m_pEmpty)
    {
        m_pEmpty->setVisible(m_vecShown.empty());
        m_pEmpty->setCaption(m_vecFiles.empty() ? "There are no tiles yet. Make one with File > New."
                                                : "No tile matches the search.");
    }
}

void OpenTileWindow::open(size_t uRow)
{
    if (uRow >= m_vecShown.size())
        return;
    const std::string sPath = m_vecFiles[m_vecShown[uRow]].sPath;
    m_fnClose();
    m_actions.openDocument(sPath);
}

void OpenTileWindow::select(size_t uRow)
{
    if (!m_pList || uRow >= m_vecShown.size())
        return;
    m_pList->setIndexSelected(uRow);
    // Scrolls the row into view.
    const int iTop = static_cast<int>(uRow) * px(s_iRowHeight);
    MyGUI::IntPoint offset = m_pList->getViewOffset();
    const int iView = m_pList->getClientCoord().height;
    offset.top = std::clamp(offset.top, iTop + px(s_iRowHeight) - iView, iTop);
    m_pList->setViewOffset(offset);
}

void OpenTileWindow::onItemSize(MyGUI::ItemBox* pSender, MyGUI::IntCoord& coord, bool)
{
    coord.set(0, 0, pSender->getClientCoord().width, px(s_iRowHeight));
}

void OpenTileWindow::onItemWidget(MyGUI::ItemBox*, MyGUI::Widget* pItem)
{
    const MyGUI::IntCoord whole(0, 0, pItem->getWidth(), pItem->getHeight());
    Row row;
    row.pBack = pItem->createWidget<MyGUI::Button>("QM_ListLine", whole, MyGUI::Align::Stretch);
    row.pBack->setNeedMouseFocus(false);
    row.pCategory = pItem->createWidget<MyGUI::TextBox>(
        "QM_NoteRight", MyGUI::IntCoord(whole.width / 2, 0, whole.width / 2 - px(12), whole.height),
        MyGUI::Align::Right | MyGUI::Align::VStretch);
    row.pCategory->setNeedMouseFocus(false);
    pItem->setUserData(MyGUI::Any(row));
}

void OpenTileWindow::onItemDraw(MyGUI::ItemBox*, MyGUI::Widget* pItem, const MyGUI::IBDrawItemInfo& info)
{
    const Row& row = *pItem->getUserData<Row>();
    if (info.update && info.index < m_vecShown.size())
    {
        const TileFile& file = m_vecFiles[m_vecShown[info.index]];
        GuiText::fitCaption(*row.pCategory, file.sCategory, row.pCategory->getWidth());
        const int iRest = row.pBack->getWidth() - row.pCategory->getTextSize().width - px(s_iRowPadding);
        const bool bShortened = GuiText::fitCaption(*row.pBack, file.sName, iRest);
        m_tips.set(pItem, bShortened ? escapeCaption(file.sName) : std::string());
    }
    row.pBack->setStateSelected(info.select);
    row.pBack->_setMouseFocus(info.active);
}

void OpenTileWindow::onItemPress(MyGUI::ItemBox*, const MyGUI::IBNotifyItemData& info)
{
    if (info.notify == MyGUI::IBNotifyItemData::MousePressed && info.id == MyGUI::MouseButton::Left)
        open(info.index);
}

void OpenTileWindow::onSearch(MyGUI::EditBox*)
{
    applyFilter();
}

void OpenTileWindow::onAccept(MyGUI::EditBox*)
{
    const size_t uSelected = m_pList ? m_pList->getIndexSelected() : MyGUI::ITEM_NONE;
    open(uSelected == MyGUI::ITEM_NONE ? 0 : uSelected);
}

void OpenTileWindow::onKey(MyGUI::Widget*, MyGUI::KeyCode key, MyGUI::Char)
{
    const size_t uSelected = m_pList ? m_pList->getIndexSelected() : MyGUI::ITEM_NONE;
    if (key == MyGUI::KeyCode::Escape)
        m_fnClose();
    else if (key == MyGUI::KeyCode::ArrowDown)
        select(uSelected == MyGUI::ITEM_NONE ? 0 : std::min(uSelected + 1, m_vecShown.size() - 1));
    else if (key == MyGUI::KeyCode::ArrowUp && uSelected != MyGUI::ITEM_NONE && uSelected > 0)
        select(uSelected - 1);
}

void OpenTileWindow::onWindowButton(MyGUI::Window*, const std::string&)
{
    m_fnClose();
}

} // namespace tilebuilder
