#include "TileEditorCommon/Interface/TileSettingsWindow.h"

#include "MyGuiCommon/MenuEntry.h"
#include "TileEditorCommon/Interface/LayoutWidgets.h"
#include "TileEditorCommon/Interface/TerrainCategories.h"

#include <MyGUI_ComboBox.h>
#include <MyGUI_InputManager.h>
#include <MyGUI_ListBox.h>
#include <MyGUI_TextBox.h>
#include <MyGUI_Window.h>

namespace tilebuilder
{

namespace
{

size_t toIndex(size_t uModel)
{
    return uModel == TileSettingsModel::s_uNone ? MyGUI::ITEM_NONE : uModel;
}

} // namespace

TileSettingsWindow::TileSettingsWindow(MyGUI::Window* pWindow, EditorActionsI& actions,
                                       std::function<void()> fnClose)
    : m_pWindow(pWindow),
      m_model(actions),
      m_fnClose(std::move(fnClose)),
      m_pCategories(findIn<MyGUI::ComboBox>(pWindow, "TerrainCategory")),
      m_pEntries(findIn<MyGUI::ListBox>(pWindow, "TerrainCategoryList")),
      m_pEmpty(findIn<MyGUI::TextBox>(pWindow, "TerrainCategoryEmpty"))
{
    pWindow->eventWindowButtonPressed += MyGUI::newDelegate(this, &TileSettingsWindow::onWindowButton);
    if (m_pCategories)
    {
        for (const std::string_view sName : TerrainCategoryNames)
            m_pCategories->addItem(std::string(sName));
        m_pCategories->eventComboAccept += MyGUI::newDelegate(this, &TileSettingsWindow::onCategory);
        m_pCategories->eventKeyButtonPressed += MyGUI::newDelegate(this, &TileSettingsWindow::onKey);
    }
    if (m_pEntries)
    {
        m_pEntries->eventListChangePosition += MyGUI::newDelegate(this, &TileSettingsWindow::onEntry);
        m_pEntries->eventKeyButtonPressed += MyGUI::newDelegate(this, &TileSettingsWindow::onKey);
    }
    showAll();
}

void TileSettingsWindow::setVisible(bool bVisible)
{
    m_pWindow->setVisible(bVisible);
}

void TileSettingsWindow::refresh()
{
    if (m_model.update())
        showAll();
}

void TileSettingsWindow::showAll()
{
    if (m_pCategories)
    {
        m_pCategories->setEnabled(m_model.isOpen());
        m_pCategories->setIndexSelected(toIndex(m_model.category()));
    }
    const std::vector<std::string>& vecEntries = m_model.entries();
    if (m_pEntries)
    {
        // The same list stays where it is scrolled to.
        const bool bSame = m_pEntries->getItemCount() == vecEntries.size() &&
                           (vecEntries.empty() ||
                            m_pEntries->getItemNameAt(0) == MyGUI::UString(escapeCaption(vecEntries[0])));
        if (!bSame)
        {
            m_pEntries->removeAllItems();
            for (const std::string& sEntry : vecEntries)
                m_pEntries->addItem(escapeCaption(sEntry));
        }
        const size_t uEntry = toIndex(m_model.entry());
        m_pEntries->setIndexSelected(uEntry);
        if (uEntry != MyGUI::ITEM_NONE && !m_pEntries->isItemVisibleAt(uEntry))
            m_pEntries->beginToItemAt(uEntry);
        m_pEntries->setEnabled(!vecEntries.empty());
    }
    if (m_pEmpty)
        m_pEmpty->setVisible(vecEntries.empty());
}

void TileSettingsWindow::onCategory(MyGUI::ComboBox* pSender, size_t uIndex)
{
    m_model.chooseCategory(uIndex);
    MyGUI::InputManager::getInstance().resetKeyFocusWidget(pSender);
    refresh();
}

void TileSettingsWindow::onEntry(MyGUI::ListBox*, size_t uIndex)
{
    if (uIndex != MyGUI::ITEM_NONE)
        m_model.chooseEntry(uIndex);
    // A click below the last entry takes nothing away.
    if (!m_model.update())
    {
        m_pEntries->setIndexSelected(toIndex(m_model.entry()));
        return;
    }
    showAll();
}

/// Escape and Enter give the keyboard back.
void TileSettingsWindow::onKey(MyGUI::Widget* pSender, MyGUI::KeyCode key, MyGUI::Char)
{
    if (key == MyGUI::KeyCode::Escape || (key == MyGUI::KeyCode::Return && pSender == m_pEntries))
        MyGUI::InputManager::getInstance().resetKeyFocusWidget(pSender);
}

void TileSettingsWindow::onWindowButton(MyGUI::Window*, const std::string&)
{
    m_fnClose();
}

} // namespace tilebuilder
