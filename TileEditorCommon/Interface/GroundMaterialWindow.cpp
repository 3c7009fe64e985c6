#include "TileEditorCommon/Interface/GroundMaterialWindow.h"

#include "MyGuiCommon/GuiMetrics.h"
#include "MyGuiCommon/GuiPixels.h"
#include "MyGuiCommon/GuiText.h"
#include "MyGuiCommon/GuiTips.h"
#include "MyGuiCommon/MenuEntry.h"
#include "TileEditorCommon/Interface/LayoutWidgets.h"

#include <MyGUI_Button.h>
#include <MyGUI_ComboBox.h>
#include <MyGUI_ImageBox.h>
#include <MyGUI_InputManager.h>
#include <MyGUI_ItemBox.h>
#include <MyGUI_LayoutManager.h>
#include <MyGUI_TextBox.h>

using GuiMetrics::px;

namespace tilebuilder
{

namespace
{

constexpr int s_iColumns = 2;
constexpr int s_iItemHeight = 80;
constexpr const char* s_pItemLayout = "$GAME_DATA/Gui/Layouts/TileEditor/GroundMaterialItem.layout";

size_t toIndex(size_t uModel)
{
    return uModel == GroundMaterialModel::s_uNone ? MyGUI::ITEM_NONE : uModel;
}

} // namespace

/// The widgets of an item, from its layout.
struct GroundMaterialWindow::Item
{
    MyGUI::Button* pFrame = nullptr;
    MyGUI::ImageBox* pIcon = nullptr;
    MyGUI::TextBox* pName = nullptr;
};

GroundMaterialWindow::GroundMaterialWindow(MyGUI::Widget* pWindow, EditorActionsI& actions, GuiTips& tips)
    : m_pWindow(pWindow),
      m_tips(tips),
      m_model(actions),
      m_pSets(findIn<MyGUI::ComboBox>(pWindow, "GroundMaterialSet")),
      m_pList(findIn<MyGUI::ItemBox>(pWindow, "GroundMaterialList"))
{
    if (m_pSets)
    {
        for (const MaterialSetChoice& choice : m_model.sets())
            m_pSets->addItem(escapeCaption(choice.sName));
        m_pSets->eventComboAccept += MyGUI::newDelegate(this, &GroundMaterialWindow::onSet);
        m_pSets->eventKeyButtonPressed += MyGUI::newDelegate(this, &GroundMaterialWindow::onKey);
    }
    if (m_pList)
    {
        m_pList->requestCoordItem = MyGUI::newDelegate(this, &GroundMaterialWindow::onItemSize);
        m_pList->requestCreateWidgetItem = MyGUI::newDelegate(this, &GroundMaterialWindow::onItemWidget);
        m_pList->requestDrawItem = MyGUI::newDelegate(this, &GroundMaterialWindow::onItemDraw);
        m_pList->eventChangeItemPosition += MyGUI::newDelegate(this, &GroundMaterialWindow::onItem);
        m_pList->setNeedKeyFocus(false);
    }
    rebuild();
}

void GroundMaterialWindow::setVisible(bool bVisible)
{
    m_pWindow->setVisible(bVisible);
}

void GroundMaterialWindow::refresh()
{
    if (m_model.update())
        rebuild();
    else
        showSelection();
}

void GroundMaterialWindow::rebuild()
{
    if (m_pList)
    {
        m_pList->removeAllItems();
        for (size_t i = 0; i < m_model.materials().size(); ++i)
            m_pList->addItem(MyGUI::Any(i));
    }
    showSelection();
}

void GroundMaterialWindow::showSelection()
{
    // A set that couldn't be bound doesn't stay chosen.
    if (m_pSets && m_pSets->getIndexSelected() != toIndex(m_model.boundSet()))
        m_pSets->setIndexSelected(toIndex(m_model.boundSet()));
    if (m_pList && m_pList->getIndexSelected() != toIndex(m_model.selected()))
        m_pList->setIndexSelected(toIndex(m_model.selected()));
}

void GroundMaterialWindow::onSet(MyGUI::ComboBox* pSender, size_t uIndex)
{
    m_model.chooseSet(uIndex);
    MyGUI::InputManager::getInstance().resetKeyFocusWidget(pSender);
}

/// Escape closes the list and, once it is closed, gives the keyboard back.
void GroundMaterialWindow::onKey(MyGUI::Widget* pSender, MyGUI::KeyCode key, MyGUI::Char)
{
    if (key == MyGUI::KeyCode::Escape)
        MyGUI::InputManager::getInstance().resetKeyFocusWidget(pSender);
}

void GroundMaterialWindow::onItemSize(MyGUI::ItemBox* pSender, MyGUI::IntCoord& coord, bool)
{
    coord.set(0, 0, pSender->getClientCoord().width / s_iColumns, px(s_iItemHeight));
}

void GroundMaterialWindow::onItemWidget(MyGUI::ItemBox*, MyGUI::Widget* pItem)
{
    MyGUI::LayoutManager::getInstance().loadLayout(s_pItemLayout, "", pItem);
    Item item;
    item.pFrame = findIn<MyGUI::Button>(pItem, "ItemFrame");
    item.pIcon = findIn<MyGUI::ImageBox>(pItem, "ItemIcon");
    item.pName = findIn<MyGUI::TextBox>(pItem, "ItemName");
    pItem->setUserData(MyGUI::Any(item));
}

void GroundMaterialWindow::onItemDraw(MyGUI::ItemBox*, MyGUI::Widget* pItem,
                                      const MyGUI::IBDrawItemInfo& info)
{
    const Item& item = *pItem->getUserData<Item>();
    if (info.update && info.index < m_model.materials().size())
    {
        const MaterialChoice& material = m_model.materials()[info.index];
        if (item.pIcon)
            item.pIcon->setImageTexture(
                GuiPixels::thumbnail(material.sPicture, item.pIcon->getWidth(), item.pIcon->getHeight()));
        const bool bShortened =
            item.pName && GuiText::fitCaption(*item.pName, material.sName, item.pName->getWidth());
        m_tips.set(pItem, bShortened ? escapeCaption(material.sName) : std::string());
    }
    if (item.pFrame)
    {
        item.pFrame->setStateSelected(info.select);
        item.pFrame->_setMouseFocus(info.active);
    }
    if (item.pName)
        item.pName->setTextColour(info.select ? MyGUI::Colour(1.0f, 0.8156863f, 0.26666668f)
                                              : MyGUI::Colour(0.902f, 0.91f, 0.922f));
}

void GroundMaterialWindow::onItem(MyGUI::ItemBox*, size_t uIndex)
{
    if (uIndex != MyGUI::ITEM_NONE)
        m_model.chooseMaterial(uIndex);
    showSelection(); // a click beside the items takes nothing away
}

} // namespace tilebuilder
