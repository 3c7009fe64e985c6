#include "TileEditorCommon/Interface/OpenTileWindow.h"

#include "MyGuiCommon/EditorMenu.h"
#include "MyGuiCommon/GuiMetrics.h"
#include "MyGuiCommon/GuiPixels.h"
#include "MyGuiCommon/GuiText.h"
#include "MyGuiCommon/GuiTips.h"
#include "MyGuiCommon/MenuEntry.h"
#include "TileEditorCommon/Interface/LayoutWidgets.h"

#include <MyGUI_Button.h>
#include <MyGUI_EditBox.h>
#include <MyGUI_IBItemInfo.h>
#include <MyGUI_ImageBox.h>
#include <MyGUI_InputManager.h>
#include <MyGUI_ItemBox.h>
#include <MyGUI_LayoutManager.h>
#include <MyGUI_MenuBar.h>
#include <MyGUI_RenderManager.h>
#include <MyGUI_Window.h>
#include <cmath>

using GuiMetrics::px;

namespace tilebuilder
{

namespace
{

// What an item takes of the content sizes that place() gives the window.
constexpr int s_iItemWidth = 152;
constexpr int s_iItemHeight = 144;
constexpr int s_iListFrame = 22; ///< the list's rim and its scroll bar
constexpr const char* s_pItemLayout = "$GAME_DATA/Gui/Layouts/TileEditor/TileBrowserItem.layout";

} // namespace

/// The widgets of an item, from its layout.
struct OpenTileWindow::Item
{
    MyGUI::Button* pFrame = nullptr;
    MyGUI::ImageBox* pIcon = nullptr;
    MyGUI::Widget* pShared = nullptr;
    MyGUI::TextBox* pName = nullptr;
    MyGUI::TextBox* pCategory = nullptr;
};

OpenTileWindow::OpenTileWindow(MyGUI::Window* pWindow, EditorActionsI& actions, GuiTips& tips,
                               std::function<void()> fnClose)
    : m_pWindow(pWindow),
      m_actions(actions),
      m_model(actions),
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
    if (auto* pBar = findIn<MyGUI::MenuBar>(pWindow, "OptionsBar"))
    {
        m_pOptions = std::make_unique<EditorMenu>(pBar, tips);
        m_pOptions->add(
            m_model.categoryMenu([this](const std::string& sCategory) { onCategory(sCategory); }));
    }
    place();
}

OpenTileWindow::~OpenTileWindow() = default;

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
    if (m_pSearch)
        m_pSearch->setOnlyText("");
    m_model.setSearch({});
    m_model.refreshItems();
    m_pWindow->setVisible(true);
    showItems();
    if (m_pSearch)
        MyGUI::InputManager::getInstance().setKeyFocusWidget(m_pSearch);
}

void OpenTileWindow::showItems()
{
    if (!m_pList)
        return;
    const MyGUI::IntPoint offset = m_pList->getViewOffset();
    while (m_pList->getItemCount() > m_model.count())
        m_pList->removeItemAt(m_pList->getItemCount() - 1);
    while (m_pList->getItemCount() < m_model.count())
        m_pList->addItem(m_pList->getItemCount());
    m_pList->clearIndexSelected();
    m_pList->redrawAllItems();
    m_pList->setViewOffset(offset);
    if (m_pCount)
        m_pCount->setCaption(m_model.countText());
    if (m_pEmpty)
    {
        m_pEmpty->setVisible(m_model.count() == 0);
        m_pEmpty->setCaption(m_model.emptyText());
    }
}

void OpenTileWindow::open(size_t uItem)
{
    if (uItem >= m_model.count())
        return;
    const std::string sPath = m_model.shown(uItem).sPath;
    m_fnClose();
    m_actions.openDocument(sPath);
}

void OpenTileWindow::select(size_t uItem)
{
    if (!m_pList || uItem >= m_model.count())
        return;
    m_pList->setIndexSelected(uItem);
    // Scrolls the item's row into view.
    const int iHeight = itemSize().height;
    const int iTop = static_cast<int>(uItem / columns()) * iHeight;
    MyGUI::IntPoint offset = m_pList->getViewOffset();
    offset.top = std::clamp(offset.top, iTop + iHeight - m_pList->getClientCoord().height, iTop);
    m_pList->setViewOffset(offset);
}

size_t OpenTileWindow::columns() const
{
    const float fWidth = static_cast<float>(m_pList->getWidth() - px(s_iListFrame));
    return static_cast<size_t>(std::max(1L, std::lround(fWidth / static_cast<float>(px(s_iItemWidth)))));
}

/// The same with and without a scroll bar, so that nothing moves when it comes.
MyGUI::IntSize OpenTileWindow::itemSize() const
{
    const int iWidth = m_pList->getWidth() - px(s_iListFrame);
    return {std::max(1, iWidth / static_cast<int>(columns())), px(s_iItemHeight)};
}

void OpenTileWindow::onCategory(const std::string& sCategory)
{
    MyGUI::InputManager& input = MyGUI::InputManager::getInstance();
    m_model.clickCategory(sCategory, input.isControlPressed());
    for (const std::string& sKnown : m_actions.tileCategories())
        m_pOptions->setChecked(sKnown, m_model.isSelected(sKnown));
    showItems();
    if (m_pSearch)
        input.setKeyFocusWidget(m_pSearch);
}

void OpenTileWindow::onItemSize(MyGUI::ItemBox*, MyGUI::IntCoord& coord, bool)
{
    const MyGUI::IntSize size = itemSize();
    coord.set(0, 0, size.width, size.height);
}

void OpenTileWindow::onItemWidget(MyGUI::ItemBox*, MyGUI::Widget* pItem)
{
    MyGUI::LayoutManager::getInstance().loadLayout(s_pItemLayout, "", pItem);
    Item item;
    item.pFrame = findIn<MyGUI::Button>(pItem, "ItemFrame");
    item.pIcon = findIn<MyGUI::ImageBox>(pItem, "ItemIcon");
    item.pShared = findIn<MyGUI::Widget>(pItem, "SteamIcon");
    item.pName = findIn<MyGUI::TextBox>(pItem, "ItemName");
    item.pCategory = findIn<MyGUI::TextBox>(pItem, "ItemCategory");
    if (item.pFrame)
        item.pFrame->setCoord(0, 0, pItem->getWidth(), pItem->getHeight());
    pItem->setUserData(MyGUI::Any(item));
}

void OpenTileWindow::onItemDraw(MyGUI::ItemBox*, MyGUI::Widget* pItem, const MyGUI::IBDrawItemInfo& info)
{
    const Item& item = *pItem->getUserData<Item>();
    if (info.update && info.index < m_model.count())
    {
        const TileFile& file = m_model.shown(info.index);
        if (item.pIcon)
            item.pIcon->setImageTexture(GuiPixels::thumbnail(previewPicture(file), item.pIcon->getWidth(),
                                                             item.pIcon->getHeight(), GuiPixels::s_fWhole));
        if (item.pShared)
            item.pShared->setVisible(file.bWorkshop);
        if (item.pName)
            GuiText::fitCaption(*item.pName, file.sName, item.pName->getWidth());
        if (item.pCategory)
            GuiText::fitCaption(*item.pCategory, file.sCategory, item.pCategory->getWidth());
        m_tips.set(pItem, escapeCaption(file.sPath));
    }
    if (item.pFrame)
    {
        item.pFrame->setStateSelected(info.select);
        item.pFrame->_setMouseFocus(info.active);
    }
}

void OpenTileWindow::onItemPress(MyGUI::ItemBox*, const MyGUI::IBNotifyItemData& info)
{
    if (info.notify == MyGUI::IBNotifyItemData::MousePressed && info.id == MyGUI::MouseButton::Left)
        open(info.index);
}

void OpenTileWindow::onSearch(MyGUI::EditBox* pSender)
{
    m_model.setSearch(std::string(pSender->getOnlyText()));
    showItems();
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
    else if (key == MyGUI::KeyCode::ArrowDown && m_model.count() > 0)
        select(uSelected == MyGUI::ITEM_NONE ? 0 : std::min(uSelected + columns(), m_model.count() - 1));
    else if (uSelected == MyGUI::ITEM_NONE)
        return;
    else if (key == MyGUI::KeyCode::ArrowUp && uSelected >= columns())
        select(uSelected - columns());
    else if (key == MyGUI::KeyCode::ArrowRight)
        select(uSelected + 1);
    else if (key == MyGUI::KeyCode::ArrowLeft && uSelected > 0)
        select(uSelected - 1);
}

void OpenTileWindow::onWindowButton(MyGUI::Window*, const std::string&)
{
    m_fnClose();
}

} // namespace tilebuilder
