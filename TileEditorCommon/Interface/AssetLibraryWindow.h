#pragma once // The asset library: everything that can be placed, as a grid of pictures.

#include "TileEditorCommon/Interface/LibraryModel.h"

#include <MyGUI_KeyCode.h>
#include <MyGUI_Prerequest.h>
#include <MyGUI_Types.h>

class EditorButton;
class GuiTips;
class VirtualList;

namespace tilebuilder
{

/// Fills "AssetList" and the check boxes of "AssetFilters", which "Options" shows. Dragging an item
/// out begins its placement; a right click opens what its kind offers.
class AssetLibraryWindow
{
public:
    /// All are borrowed.
    AssetLibraryWindow(MyGUI::Widget* pWindow, EditorActionsI& actions, GuiTips& tips);
    ~AssetLibraryWindow();
    AssetLibraryWindow(const AssetLibraryWindow&) = delete;
    AssetLibraryWindow& operator=(const AssetLibraryWindow&) = delete;

    void setVisible(bool bVisible);
    [[nodiscard]] MyGUI::Widget* widget() const { return m_pWindow; }
    /// Lays the parts out for the window's size.
    void place();

    /// Each frame: shows what the sources found meanwhile.
    void update();
    /// Builds the item list anew.
    void refresh();
    void rebuildFilters();
    /// Other contents are there, or fewer.
    void onContentChanged();

private:
    struct Item;
    struct Filter;

    void makeList();
    void makeFilters();
    void createItem(MyGUI::Button& cell);
    void drawItem(MyGUI::Button& cell, size_t uIndex);
    void drawFilter(MyGUI::Button& cell, size_t uIndex);
    void openMenu(size_t uIndex, int iX, int iY);
    void onMenu(MyGUI::MenuControl* pSender, MyGUI::MenuItem* pItem);
    void onSearch(MyGUI::EditBox* pSender);
    void onSearchKey(MyGUI::Widget* pSender, MyGUI::KeyCode key, MyGUI::Char uChar);
    void onOptions(MyGUI::Widget* pSender);

    MyGUI::Widget* m_pWindow;
    LibraryModel m_model;
    GuiTips& m_tips;
    VirtualList* m_pList;
    VirtualList* m_pFilters;
    MyGUI::EditBox* m_pSearch;
    EditorButton* m_pOptions;
    MyGUI::TextBox* m_pCount;
    MyGUI::TextBox* m_pEmpty;
    MyGUI::PopupMenu* m_pMenu = nullptr;
    std::vector<LibraryMenuEntry> m_vecMenu; ///< of the open menu
    bool m_bFilters = false;
};

} // namespace tilebuilder
