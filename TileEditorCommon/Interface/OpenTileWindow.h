#pragma once // The window that opens a tile.

#include "TileEditorCommon/Contracts/EditorActionsI.h"

#include <MyGUI_IBItemInfo.h>
#include <MyGUI_KeyCode.h>
#include <MyGUI_Prerequest.h>
#include <MyGUI_Types.h>
#include <functional>
#include <string>
#include <vector>

class GuiTips;

namespace tilebuilder
{

/// A searched list of tiles in "OpenTileWindow". A press on a row opens the tile and closes the
/// window; Enter in the search box opens the first row, or the one chosen by the arrow keys.
class OpenTileWindow
{
public:
    /// All are borrowed; the window's children come from the layout.
    OpenTileWindow(MyGUI::Window* pWindow, EditorActionsI& actions, GuiTips& tips,
                   std::function<void()> fnClose);

    [[nodiscard]] MyGUI::Window* window() const { return m_pWindow; }

    /// Looks the tiles up anew, with an empty search.
    void show();

    /// Sizes the window for the screen and centres it.
    void place();

private:
    void applyFilter();
    void open(size_t uRow);
    void select(size_t uRow);
    void onItemSize(MyGUI::ItemBox* pSender, MyGUI::IntCoord& coord, bool bDrag);
    void onItemWidget(MyGUI::ItemBox* pSender, MyGUI::Widget* pItem);
    void onItemDraw(MyGUI::ItemBox* pSender, MyGUI::Widget* pItem, const MyGUI::IBDrawItemInfo& info);
    void onItemPress(MyGUI::ItemBox* pSender, const MyGUI::IBNotifyItemData& info);
    void onSearch(MyGUI::EditBox* pSender);
    void onAccept(MyGUI::EditBox* pSender);
    void onKey(MyGUI::Widget* pSender, MyGUI::KeyCode key, MyGUI::Char uChar);
    void onWindowButton(MyGUI::Window* pSender, const std::string& sName);

    MyGUI::Window* m_pWindow;
    EditorActionsI& m_actions;
    GuiTips& m_tips;
    std::function<void()> m_fnClose;
    MyGUI::ItemBox* m_pList = nullptr;
    MyGUI::EditBox* m_pSearch = nullptr;
    MyGUI::TextBox* m_pCount = nullptr;
    MyGUI::TextBox* m_pEmpty = nullptr;
    std::vector<TileFile> m_vecFiles;
    std::vector<size_t> m_vecShown; ///< places in m_vecFiles
};

} // namespace tilebuilder
