#include "MyGuiCommon/EditorMenu.h"

#include "KestrelCommon/Core/Hash.h"
#include "MyGuiCommon/EditorButton.h"
#include "MyGuiCommon/GuiMetrics.h"
#include "MyGuiCommon/GuiText.h"
#include "MyGuiCommon/GuiTips.h"

#include <MyGUI_Gui.h>
#include <MyGUI_MenuBar.h>
#include <MyGUI_MenuItem.h>
#include <MyGUI_PopupMenu.h>
#include <MyGUI_TextIterator.h>
#include <deque>

namespace
{

constexpr int s_iButtonSize = 28;
constexpr int s_iButtonGap = 4;
constexpr int s_iSeparatorWidth = 9;
constexpr int s_iMaxTextButton = 320;

/// Makes a button as wide as its text, and shortens the text when that is too wide.
void fitText(EditorButton& button, int iHeight)
{
    const int iMost = GuiMetrics::px(s_iMaxTextButton);
    const int iNeeded = button.neededWidth();
    if (iNeeded > iMost)
    {
        const std::string sPlain = MyGUI::TextIterator::getOnlyText(button.getCaption());
        GuiText::fitCaption(button, sPlain, iMost - (iNeeded - button.getTextSize().width));
    }
    button.setSize(std::min(button.neededWidth(), iMost), iHeight);
}

MyGUI::Colour toColour(const std::array<float, 4>& colour)
{
    return {colour[0], colour[1], colour[2], colour[3]};
}

} // namespace

struct EditorMenu::Impl
{
    /// What stands behind an entry; exactly one of the two widgets is set.
    struct Slot
    {
        MyGUI::MenuItem* pItem = nullptr;
        EditorButton* pButton = nullptr;
        MyGUI::MenuControl* pChildren = nullptr;
        std::function<void()> fnAction;
    };

    MyGUI::Widget* pBar = nullptr;
    MyGUI::MenuBar* pMenuBar = nullptr; ///< the bar when it is a menu bar
    GuiTips* pTips = nullptr;
    std::deque<Slot> slots; ///< a deque: the widgets keep pointers to their slots
    std::unordered_map<uint64_t, Slot*> mapById;
    std::vector<MyGUI::PopupMenu*> vecPopups; ///< drop-downs of buttons; owned by the GUI's root
    std::vector<MyGUI::Widget*> vecParts;     ///< buttons and separators of a row
    int iWidth = 0;
    uint64_t uHash = 0;
    bool bFilled = false;

    Slot* find(std::string_view sId) const
    {
        const auto it = mapById.find(fnv1a64(sId));
        return it == mapById.end() ? nullptr : it->second;
    }
    Slot& newSlot(const MenuEntry& entry)
    {
        Slot& slot = slots.emplace_back();
        slot.fnAction = entry.fnAction;
        if (!entry.sId.empty())
            mapById[fnv1a64(entry.sId)] = &slot;
        return slot;
    }

    void addItem(MyGUI::MenuControl* pMenu, const MenuEntry& entry);
    void addButton(const MenuEntry& entry);
    void onItem(MyGUI::Widget* pSender);
    void onButton(MyGUI::Widget* pSender);
    void clear();
};

void EditorMenu::Impl::addItem(MyGUI::MenuControl* pMenu, const MenuEntry& entry)
{
    if (entry.eKind == MenuEntry::Kind::Separator)
    {
        pMenu->addItem("", MyGUI::MenuItemType::Separator);
        return;
    }
    Slot& slot = newSlot(entry);
    const bool bMenu = entry.eKind == MenuEntry::Kind::Menu;
    slot.pItem =
        pMenu->addItem(entry.sLabel, bMenu ? MyGUI::MenuItemType::Popup : MyGUI::MenuItemType::Normal);
    slot.pItem->setUserData(MyGUI::Any(&slot));
    slot.pItem->setItemChecked(entry.bChecked);
    slot.pItem->setEnabled(entry.bEnabled);
    if (entry.colour)
        slot.pItem->setTextColour(toColour(*entry.colour));
    if (!entry.sTip.empty())
        pTips->set(slot.pItem, entry.sTip);
    slot.pItem->eventMouseButtonClick += MyGUI::newDelegate(this, &Impl::onItem);
    if (!bMenu)
        return;
    slot.pChildren = pMenu->createItemChild(slot.pItem);
    for (const MenuEntry& child : entry.vecChildren)
        addItem(slot.pChildren, child);
}

void EditorMenu::Impl::addButton(const MenuEntry& entry)
{
    const int iHeight = GuiMetrics::px(s_iButtonSize);
    const int iTop = (pBar->getHeight() - iHeight) / 2;
    if (entry.eKind == MenuEntry::Kind::Separator)
    {
        const int iWide = GuiMetrics::px(s_iSeparatorWidth);
        vecParts.push_back(pBar->createWidgetT("Widget", "QM_SeparatorV",
                                               MyGUI::IntCoord(iWidth, iTop, iWide, iHeight),
                                               MyGUI::Align::Left | MyGUI::Align::Top));
        iWidth += iWide + GuiMetrics::px(s_iButtonGap);
        return;
    }
    Slot& slot = newSlot(entry);
    const bool bText = !entry.sLabel.empty();
    slot.pButton = pBar->createWidget<EditorButton>(bText ? "QM_BarButton" : "QM_ToolButton",
                                                    MyGUI::IntCoord(iWidth, iTop, iHeight, iHeight),
                                                    MyGUI::Align::Left | MyGUI::Align::Top, entry.sId);
    vecParts.push_back(slot.pButton);
    slot.pButton->setUserData(MyGUI::Any(&slot));
    slot.pButton->setNeedKeyFocus(false);
    slot.pButton->setIcon(entry.sIcon);
    slot.pButton->setCaption(entry.sLabel);
    slot.pButton->setEnabled(entry.bEnabled);
    slot.pButton->setStateSelected(entry.bChecked);
    if (entry.colour && !entry.sIcon.empty())
        slot.pButton->setIconColour(toColour(*entry.colour));
    if (bText)
        fitText(*slot.pButton, iHeight);
    iWidth += slot.pButton->getWidth() + GuiMetrics::px(s_iButtonGap);
    if (!entry.sTip.empty())
        pTips->set(slot.pButton, entry.sTip);
    slot.pButton->eventMouseButtonClick += MyGUI::newDelegate(this, &Impl::onButton);
    if (entry.eKind != MenuEntry::Kind::Menu)
        return;
    auto* pPopup = MyGUI::Gui::getInstance().createWidget<MyGUI::PopupMenu>(
        "QM_PopupMenu", MyGUI::IntCoord(0, 0, 100, 24), MyGUI::Align::Default, "Menu");
    pPopup->setVisible(false);
    vecPopups.push_back(pPopup);
    slot.pChildren = pPopup;
    for (const MenuEntry& child : entry.vecChildren)
        addItem(pPopup, child);
}

void EditorMenu::Impl::onItem(MyGUI::Widget* pSender)
{
    Slot* pSlot = *pSender->getUserData<Slot*>();
    // The handler may rebuild the menu, and this slot with it.
    const std::function<void()> fnAction = pSlot->fnAction;
    if (!pSlot->pChildren && fnAction)
        fnAction();
}

void EditorMenu::Impl::onButton(MyGUI::Widget* pSender)
{
    Slot* pSlot = *pSender->getUserData<Slot*>();
    if (pSlot->pChildren && pSlot->pChildren->getItemCount() > 0)
    {
        pTips->hide();
        const MyGUI::IntCoord button = pSender->getAbsoluteCoord();
        const int iLeft = std::max(0, button.right() - pSlot->pChildren->getWidth());
        pSlot->pChildren->setPosition(std::min(iLeft, button.left), button.bottom() + GuiMetrics::px(2));
        pSlot->pChildren->setVisible(true);
        return;
    }
    const std::function<void()> fnAction = pSlot->fnAction;
    if (fnAction)
        fnAction();
}

void EditorMenu::Impl::clear()
{
    if (pMenuBar)
        pMenuBar->removeAllItems();
    for (MyGUI::Widget* pPart : vecParts)
        MyGUI::Gui::getInstance().destroyWidget(pPart);
    for (MyGUI::PopupMenu* pPopup : vecPopups)
        MyGUI::Gui::getInstance().destroyWidget(pPopup);
    vecParts.clear();
    vecPopups.clear();
    mapById.clear();
    slots.clear();
    iWidth = 0;
    bFilled = false;
}

EditorMenu::EditorMenu(MyGUI::Widget* pBar, GuiTips& tips) : m_pImpl(std::make_unique<Impl>())
{
    m_pImpl->pBar = pBar;
    m_pImpl->pMenuBar = pBar->castType<MyGUI::MenuBar>(false);
    m_pImpl->pTips = &tips;
}

EditorMenu::~EditorMenu()
{
    m_pImpl->clear();
}

void EditorMenu::add(const MenuEntry& entry, std::string_view sMenuId)
{
    m_pImpl->bFilled = false;
    if (!sMenuId.empty())
    {
        if (Impl::Slot* pSlot = m_pImpl->find(sMenuId); pSlot && pSlot->pChildren)
            m_pImpl->addItem(pSlot->pChildren, entry);
    }
    else if (m_pImpl->pMenuBar)
        m_pImpl->addItem(m_pImpl->pMenuBar, entry);
    else
        m_pImpl->addButton(entry);
}

void EditorMenu::addEntry(std::string_view sLabel, std::function<void()> fnAction, std::string_view sId,
                          std::string_view sMenuId)
{
    add({.sLabel = std::string(sLabel), .sId = std::string(sId), .fnAction = std::move(fnAction)}, sMenuId);
}

void EditorMenu::addCheck(std::string_view sLabel, std::function<void()> fnAction, std::string_view sId,
                          std::string_view sMenuId)
{
    add({.eKind = MenuEntry::Kind::Check,
         .sLabel = std::string(sLabel),
         .sId = std::string(sId),
         .fnAction = std::move(fnAction)},
        sMenuId);
}

void EditorMenu::addSeparator(std::string_view sMenuId)
{
    add({.eKind = MenuEntry::Kind::Separator}, sMenuId);
}

void EditorMenu::setEnabled(std::string_view sId, bool bEnabled)
{
    Impl::Slot* pSlot = m_pImpl->find(sId);
    if (pSlot && pSlot->pItem)
        pSlot->pItem->setEnabled(bEnabled);
    else if (pSlot)
        pSlot->pButton->setEnabled(bEnabled);
}

void EditorMenu::setChecked(std::string_view sId, bool bChecked)
{
    Impl::Slot* pSlot = m_pImpl->find(sId);
    if (pSlot && pSlot->pItem)
        pSlot->pItem->setItemChecked(bChecked);
    else if (pSlot)
        pSlot->pButton->setStateSelected(bChecked);
}

void EditorMenu::setText(std::string_view sId, std::string_view sLabel)
{
    Impl::Slot* pSlot = m_pImpl->find(sId);
    if (!pSlot)
        return;
    MyGUI::TextBox* pText = pSlot->pItem ? static_cast<MyGUI::TextBox*>(pSlot->pItem) : pSlot->pButton;
    if (std::string sText(sLabel); pText->getCaption() != MyGUI::UString(sText))
        pText->setCaption(sText);
}

void EditorMenu::setColour(std::string_view sId, const std::array<float, 4>& colour)
{
    Impl::Slot* pSlot = m_pImpl->find(sId);
    if (pSlot && pSlot->pItem)
        pSlot->pItem->setTextColour(toColour(colour));
    else if (pSlot)
        pSlot->pButton->setIconColour(toColour(colour));
}

void EditorMenu::setIcon(std::string_view sId, std::string_view sTexture)
{
    if (Impl::Slot* pSlot = m_pImpl->find(sId); pSlot && pSlot->pButton)
        pSlot->pButton->setIcon(std::string(sTexture));
}

void EditorMenu::setTip(std::string_view sId, std::string_view sTip)
{
    if (MyGUI::Widget* pWidget = find(sId))
        m_pImpl->pTips->set(pWidget, std::string(sTip));
}

void EditorMenu::clear()
{
    m_pImpl->clear();
}

bool EditorMenu::replace(std::span<const MenuEntry> spanEntries, bool bForce)
{
    const uint64_t uHash = hashMenu(spanEntries);
    if (!bForce && m_pImpl->bFilled && uHash == m_pImpl->uHash)
        return false;
    m_pImpl->clear();
    for (const MenuEntry& entry : spanEntries)
        add(entry);
    m_pImpl->uHash = uHash;
    m_pImpl->bFilled = true;
    return true;
}

int EditorMenu::contentWidth() const
{
    return std::max(0, m_pImpl->iWidth - GuiMetrics::px(s_iButtonGap));
}

MyGUI::Widget* EditorMenu::find(std::string_view sId) const
{
    const Impl::Slot* pSlot = m_pImpl->find(sId);
    if (!pSlot)
        return nullptr;
    return pSlot->pItem ? static_cast<MyGUI::Widget*>(pSlot->pItem) : pSlot->pButton;
}
