#pragma once // The window with the lists of tile categories.

#include "TileEditorCommon/Interface/TileSettingsModel.h"

#include <MyGUI_KeyCode.h>
#include <MyGUI_Prerequest.h>
#include <MyGUI_Types.h>
#include <functional>

namespace tilebuilder
{

/// Fills "TileSettingsView": a box of the categories above the list of the chosen one.
class TileSettingsWindow
{
public:
    /// All are borrowed; fnClose runs when the user closes the window.
    TileSettingsWindow(MyGUI::Window* pWindow, EditorActionsI& actions, std::function<void()> fnClose);

    [[nodiscard]] MyGUI::Window* window() const { return m_pWindow; }
    void setVisible(bool bVisible);
    void refresh();

private:
    void showAll();
    void onCategory(MyGUI::ComboBox* pSender, size_t uIndex);
    void onEntry(MyGUI::ListBox* pSender, size_t uIndex);
    void onKey(MyGUI::Widget* pSender, MyGUI::KeyCode key, MyGUI::Char uChar);
    void onWindowButton(MyGUI::Window* pSender, const std::string& sName);

    MyGUI::Window* m_pWindow;
    TileSettingsModel m_model;
    std::function<void()> m_fnClose;
    MyGUI::ComboBox* m_pCategories;
    MyGUI::ListBox* m_pEntries;
    MyGUI::TextBox* m_pEmpty;
};

} // namespace tilebuilder
