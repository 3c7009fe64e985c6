#include "TileEditorCommon/Interface/AssetLibraryWindow.h"

#include "MyGuiCommon/EditorButton.h"
#include "MyGuiCommon/GuiMetrics.h"
#include "MyGuiCommon/GuiPixels.h"
#include "MyGuiCommon/GuiText.h"
#include "MyGuiCommon/GuiTips.h"
#include "MyGuiCommon/MenuEntry.h"
#include "MyGuiCommon/VirtualList.h"
#include "TileEditorCommon/Interface/LayoutWidgets.h"

#include <MyGUI_EditBox.h>
#include <MyGUI_Gui.h>
#include <MyGUI_ImageBox.h>
#include <MyGUI_InputManager.h>
#include <MyGUI_LayoutManager.h>
#include <MyGUI_MenuItem.h>
#include <MyGUI_PopupMenu.h>
#include <MyGUI_RenderManager.h>

using GuiMetrics::px;

namespace tilebuilder
{

namespace
{

constexpr int s_iItemWidth = 84;
constexpr int s_iItemHeight = 84;
constexpr int s_iFilterHeight = 24;
constexpr int s_iIndent = 10;
constexpr int s_iGap = 8;
constexpr const char* s_pItemLayout = "$GAME_DATA/Gui/Layouts/TileEditor/AssetLibraryItem.layout";

const MyGUI::Colour s_dim(0.6f, 0.64f, 0.68f);

} // namespace

/// The widgets of an item, from its layout.
struct AssetLibraryWindow::Item
{
    MyGUI::Widget* pIcon = nullptr; ///< of all kinds but shapes
    MyGUI::ImageBox* pTextureIcon = nullptr;
    MyGUI::ImageBox* pTextureTypeIcon = nullptr;
    MyGUI::Widget* pItemIcon = nullptr; ///< of shapes
    MyGUI::ImageBox* pShapeIcon = nullptr;
    MyGUI::ImageBox* pShapeTypeIcon = nullptr;
    MyGUI::TextBox* pLabel = nullptr;
};

/// A line of the check boxes.
struct AssetLibraryWindow::Filter
{
    MyGUI::Button* pBox = nullptr;
    MyGUI::TextBox* pTitle = nullptr;
};

AssetLibraryWindow::AssetLibraryWindow(MyGUI::Widget* pWindow, EditorActionsI& actions, GuiTips& tips)
    : m_pWindow(pWindow),
      m_model(actions),
      m_tips(tips),
      m_pList(findIn<VirtualList>(pWindow, "AssetList")),
      m_pFilters(findIn<VirtualList>(pWindow, "AssetFilters")),
      m_pSearch(findIn<MyGUI::EditBox>(pWindow, "AssetSearchBox")),
      m_pOptions(findIn<EditorButton>(pWindow, "AssetOptions")),
      m_pCount(findIn<MyGUI::TextBox>(pWindow, "AssetCount")),
      m_pEmpty(findIn<MyGUI::TextBox>(pWindow, "AssetListEmpty"))
{
    makeList();
    makeFilters();
    if (m_pSearch)
    {
        m_pSearch->eventEditTextChange += MyGUI::newDelegate(this, &AssetLibraryWindow::onSearch);
        m_pSearch->eventKeyButtonPressed += MyGUI::newDelegate(this, &AssetLibraryWindow::onSearchKey);
    }
    if (m_pOptions)
    {
        m_pOptions->setNeedKeyFocus(false);
        m_pOptions->setSize(m_pOptions->neededWidth(), m_pOptions->getHeight());
        m_pOptions->eventMouseButtonClick += MyGUI::newDelegate(this, &AssetLibraryWindow::onOptions);
        tips.set(m_pOptions, "Choose categories and where things come from");
    }
    place();
}

AssetLibraryWindow::~AssetLibraryWindow()
{
    if (m_pMenu)
        MyGUI::Gui::getInstance().destroyWidget(m_pMenu);
}

void AssetLibraryWindow::makeList()
{
    if (!m_pList)
        return;
    VirtualListContent content;
    content.sCellSkin = "QM_TileCell";
    content.iCellWidth = px(s_iItemWidth);
    content.iCellHeight = px(s_iItemHeight);
    content.fnCreate = [this](MyGUI::Button& cell) { createItem(cell); };
    content.fnDraw = [this](MyGUI::Button& cell, size_t uIndex) { drawItem(cell, uIndex); };
    content.fnDrag = [this](size_t uIndex)
    {
        m_tips.hide();
        if (uIndex < m_model.count())
            m_model.beginDrag(uIndex);
    };
    content.fnMenu = [this](size_t uIndex, int iX, int iY) { openMenu(uIndex, iX, iY); };
    m_pList->setContent(std::move(content));
    m_pList->setNeedKeyFocus(false);
}

void AssetLibraryWindow::makeFilters()
{
    if (!m_pFilters)
        return;
    VirtualListContent content;
    content.iCellHeight = px(s_iFilterHeight);
    content.fnCreate = [](MyGUI::Button& cell)
    {
        Filter filter;
        const MyGUI::IntCoord coord(0, 0, cell.getWidth(), cell.getHeight());
        filter.pBox = cell.createWidget<MyGUI::Button>("QM_CheckBox", coord, MyGUI::Align::Default);
        filter.pTitle = cell.createWidget<MyGUI::TextBox>("QM_TextDim", coord, MyGUI::Align::Default);
        filter.pBox->setNeedMouseFocus(false);
        filter.pTitle->setNeedMouseFocus(false);
        cell.setUserData(MyGUI::Any(filter));
    };
    content.fnDraw = [this](MyGUI::Button& cell, size_t uIndex) { drawFilter(cell, uIndex); };
    content.fnPress = [this](size_t uIndex)
    {
        m_model.toggleFilter(LibraryFilterRow(m_model.filterRows()[uIndex]));
        refresh();
    };
    m_pFilters->setContent(std::move(content));
    m_pFilters->setNeedKeyFocus(false);
}

void AssetLibraryWindow::setVisible(bool bVisible)
{
    m_pWindow->setVisible(bVisible);
}

void AssetLibraryWindow::place()
{
    if (!m_pList || !m_pFilters)
        return;
    const int iFull = m_pFilters->getLeft();
    const int iLeft = m_bFilters ? m_pFilters->getRight() + px(s_iGap) : iFull;
    const MyGUI::IntCoord coord(iLeft, m_pList->getTop(), m_pWindow->getWidth() - iLeft - iFull,
                                m_pList->getHeight());
    m_pFilters->setVisible(m_bFilters);
    m_pList->setCoord(coord);
    if (m_pEmpty)
        m_pEmpty->setCoord(coord);
    if (m_pOptions)
        m_pOptions->setStateSelected(m_bFilters);
    refresh();
}

void AssetLibraryWindow::update()
{
    if (m_model.refresh())
        refresh();
}

void AssetLibraryWindow::refresh()
{
    m_model.refresh();
    if (m_pList)
        m_pList->setCount(m_model.count());
    if (m_pFilters && m_bFilters)
        m_pFilters->setCount(m_model.filterRows().size());
    if (m_pOptions)
        m_pOptions->setIconColour(m_model.isFiltered() ? MyGUI::Colour(1.0f, 0.8156863f, 0.26666668f)
                                                       : s_dim);
    if (m_pCount)
        m_pCount->setCaption(m_model.countText());
    if (m_pEmpty)
    {
        m_pEmpty->setVisible(m_model.count() == 0);
        m_pEmpty->setCaption(m_model.emptyText());
    }
}

void AssetLibraryWindow::rebuildFilters()
{
    m_model.rebuildFilters();
    refresh();
}

void AssetLibraryWindow::onContentChanged()
{
    rebuildFilters();
}

void AssetLibraryWindow::createItem(MyGUI::Button& cell)
{
    MyGUI::LayoutManager::getInstance().loadLayout(s_pItemLayout, "", &cell);
    Item item;
    item.pIcon = findIn<MyGUI::Widget>(&cell, "Icon");
    item.pTextureIcon = findIn<MyGUI::ImageBox>(&cell, "TextureIcon");
    item.pTextureTypeIcon = findIn<MyGUI::ImageBox>(&cell, "TextureTypeIcon");
    item.pItemIcon = findIn<MyGUI::Widget>(&cell, "ItemIcon");
    item.pShapeIcon = findIn<MyGUI::ImageBox>(&cell, "ShapeIcon");
    item.pShapeTypeIcon = findIn<MyGUI::ImageBox>(&cell, "ShapeTypeIcon");
    item.pLabel = findIn<MyGUI::TextBox>(&cell, "Label");
    cell.setUserData(MyGUI::Any(item));
}

void AssetLibraryWindow::drawItem(MyGUI::Button& cell, size_t uIndex)
{
    const Item& widgets = *cell.getUserData<Item>();
    const LibraryItem& item = m_model.item(uIndex);
    const bool bShape = item.eKind == LibraryItemKind::Shape;
    MyGUI::ImageBox* pPicture = bShape ? widgets.pShapeIcon : widgets.pTextureIcon;
    MyGUI::ImageBox* pType = bShape ? widgets.pShapeTypeIcon : widgets.pTextureTypeIcon;
    if (!widgets.pIcon || !widgets.pItemIcon || !pPicture || !pType || !widgets.pLabel)
        return;
    widgets.pIcon->setVisible(!bShape);
    widgets.pItemIcon->setVisible(bShape);
    // The parts stand in the middle of a cell that takes its share of the width.
    for (MyGUI::Widget* pPart : {widgets.pIcon, widgets.pItemIcon})
        pPart->setSize(cell.getWidth(), pPart->getHeight());
    widgets.pLabel->setSize(cell.getWidth() - 2 * widgets.pLabel->getLeft(), widgets.pLabel->getHeight());

    const std::string& sPicture = m_model.iconPath(uIndex);
    const std::string sType = LibraryModel::typeIcon(item.eKind);
    // Without a picture the kind's own stands in its place.
    pPicture->setImageTexture(sPicture.empty()
                                  ? sType
                                  : GuiPixels::thumbnail(sPicture, pPicture->getWidth(),
                                                         pPicture->getHeight(), GuiPixels::s_fWhole, true));
    pPicture->setColour(sPicture.empty() ? s_dim : MyGUI::Colour::White);
    pPicture->setAlpha(sPicture.empty() ? 0.5f : 1.0f);
    pType->setImageTexture(sType);
    pType->setVisible(!sPicture.empty());
    GuiText::fitCaption(*widgets.pLabel, item.sName, widgets.pLabel->getWidth(), true);
    m_tips.set(&cell, m_model.tip(uIndex));
}

void AssetLibraryWindow::drawFilter(MyGUI::Button& cell, size_t uIndex)
{
    const Filter& filter = *cell.getUserData<Filter>();
    const LibraryFilterRow& row = m_model.filterRows()[uIndex];
    const bool bGroup = row.eKind == LibraryFilterRow::Kind::Group;
    const int iLeft = px(8 + row.iDepth * s_iIndent);
    const MyGUI::IntCoord coord(iLeft, 0, cell.getWidth() - iLeft - px(4), cell.getHeight());
    filter.pBox->setVisible(!bGroup);
    filter.pBox->setCoord(coord);
    filter.pBox->setStateSelected(row.bChecked);
    filter.pTitle->setVisible(bGroup);
    filter.pTitle->setCoord(coord);
    MyGUI::TextBox& text = bGroup ? *filter.pTitle : *filter.pBox;
    const bool bShortened = GuiText::fitCaption(text, row.sLabel, coord.width - px(bGroup ? 0 : 26));
    m_tips.set(&cell, bShortened ? escapeCaption(row.sLabel) : std::string());
    cell.setEnabled(!bGroup);
}

void AssetLibraryWindow::openMenu(size_t uIndex, int iX, int iY)
{
    m_vecMenu = uIndex < m_model.count() ? m_model.menu(uIndex) : std::vector<LibraryMenuEntry>();
    if (m_vecMenu.empty())
        return;
    m_tips.hide();
    if (!m_pMenu)
    {
        m_pMenu = MyGUI::Gui::getInstance().createWidget<MyGUI::PopupMenu>(
            "QM_PopupMenu", MyGUI::IntCoord(0, 0, 100, 24), MyGUI::Align::Default, "Menu", "AssetMenu");
        m_pMenu->eventMenuCtrlAccept += MyGUI::newDelegate(this, &AssetLibraryWindow::onMenu);
    }
    m_pMenu->removeAllItems();
    for (const LibraryMenuEntry& entry : m_vecMenu)
        m_pMenu->addItem(escapeCaption(entry.sLabel));
    const MyGUI::IntSize& view = MyGUI::RenderManager::getInstance().getViewSize();
    m_pMenu->setPosition(std::min(iX, view.width - m_pMenu->getWidth()),
                         std::min(iY, view.height - m_pMenu->getHeight()));
    m_pMenu->setVisible(true);
}

void AssetLibraryWindow::onMenu(MyGUI::MenuControl* pSender, MyGUI::MenuItem* pItem)
{
    const size_t uEntry = pSender->getItemIndex(pItem);
    if (uEntry < m_vecMenu.size())
        m_model.runCommand(LibraryMenuEntry(m_vecMenu[uEntry]));
}

void AssetLibraryWindow::onSearch(MyGUI::EditBox* pSender)
{
    m_model.setSearch(std::string(pSender->getOnlyText()));
    if (m_pList)
        m_pList->setOffset(0);
    refresh();
}

void AssetLibraryWindow::onSearchKey(MyGUI::Widget* pSender, MyGUI::KeyCode key, MyGUI::Char)
{
    if (key == MyGUI::KeyCode::Escape && m_pSearch->getTextLength() > 0)
    {
        m_pSearch->setOnlyText("");
        onSearch(m_pSearch);
    }
    if (key == MyGUI::KeyCode::Escape || key == MyGUI::KeyCode::Return)
        MyGUI::InputManager::getInstance().resetKeyFocusWidget(pSender);
}

void AssetLibraryWindow::onOptions(MyGUI::Widget*)
{
    m_bFilters = !m_bFilters;
    place();
}

} // namespace tilebuilder
