#include "TileEditorCommon/Interface/EntityContextMenu.h"

#include "MyGuiCommon/MenuEntry.h"
#include "TileEditorCommon/Contracts/EditorActionsI.h"
#include "TileEditorCommon/Interface/EntityBindings.h"

#include <MyGUI_Gui.h>
#include <MyGUI_MenuItem.h>
#include <MyGUI_PopupMenu.h>
#include <MyGUI_RenderManager.h>

namespace tilebuilder
{

EntityContextMenu::~EntityContextMenu()
{
    destroy();
}

void EntityContextMenu::destroy()
{
    if (m_pMenu)
        MyGUI::Gui::getInstance().destroyWidget(m_pMenu);
    m_pMenu = nullptr;
}

bool EntityContextMenu::isVisible() const
{
    return m_pMenu && m_pMenu->getVisible();
}

void EntityContextMenu::show(int iX, int iY)
{
    destroy();
    m_pMenu = MyGUI::Gui::getInstance().createWidget<MyGUI::PopupMenu>(
        "QM_PopupMenu", MyGUI::IntCoord(0, 0, 100, 24), MyGUI::Align::Default, "Menu");
    m_pMenu->setVisible(false);
    fill(m_pMenu, m_actions.entityMenu());
    const MyGUI::IntSize view = MyGUI::RenderManager::getInstance().getViewSize();
    m_pMenu->setPosition(std::max(0, std::min(iX, view.width - m_pMenu->getWidth())),
                         std::max(0, std::min(iY, view.height - m_pMenu->getHeight())));
    m_pMenu->setVisible(true);
}

void EntityContextMenu::fill(MyGUI::MenuControl* pMenu, std::span<const EntityMenuItem> spanItems)
{
    for (const EntityMenuItem& item : spanItems)
    {
        if (item.bSeparator)
        {
            pMenu->addItem("", MyGUI::MenuItemType::Separator);
            continue;
        }
        const bool bMenu = !item.vecChildren.empty();
        MyGUI::MenuItem* pItem =
            pMenu->addItem(entityMenuCaption(item, m_keys),
                           bMenu ? MyGUI::MenuItemType::Popup : MyGUI::MenuItemType::Normal);
        pItem->setUserData(MyGUI::Any(item.uCommand));
        pItem->setEnabled(item.bEnabled);
        if (item.uCommand != 0)
            pItem->eventMouseButtonClick += MyGUI::newDelegate(this, &EntityContextMenu::onClick);
        if (bMenu)
            fill(pMenu->createItemChild(pItem), item.vecChildren);
    }
}

/// With all that it has opened.
void EntityContextMenu::hide(MyGUI::MenuControl* pMenu)
{
    for (size_t i = 0; i < pMenu->getItemCount(); ++i)
        if (MyGUI::MenuControl* pChild = pMenu->getItemChildAt(i))
            hide(pChild);
    pMenu->setVisible(false);
}

void EntityContextMenu::onClick(MyGUI::Widget* pSender)
{
    const uint32_t uCommand = *pSender->getUserData<uint32_t>();
    hide(m_pMenu);
    m_actions.runEntityMenu(uCommand);
}

} // namespace tilebuilder
