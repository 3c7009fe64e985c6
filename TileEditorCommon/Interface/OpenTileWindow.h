#pragma once // The window that opens a tile.

#include "TileEditorCommon/Interface/TileBrowserModel.h"

#include <MyGUI_IBItemInfo.h>
#include <MyGUI_KeyCode.h>
#include <MyGUI_Prerequest.h>
#include <MyGUI_Types.h>
#include <functional>
#include <memory>
#include <string>

class EditorMenu;
class GuiTips;

namespace tilebuilder
{

/// A browser of tiles with their pictures in "OpenTileWindow". A press on an item opens the tile and
/// closes the window; Enter in the search box opens the first item, or the one chosen by the arrow
/// keys. A picture is read when its item comes into view.
class OpenTileWindow
{
public:
    /// All are borrowed; the window's children come from the layout.
    OpenTileWindow(MyGUI::Window* pWindow, EditorActionsI& actions, GuiTips& tips,
                   std::function<void()> fnClose);
    ~OpenTileWindow();

    [[nodiscard]] MyGUI::Window* window() const { return m_pWindow; }

    /// Looks the tiles up anew, with an empty search. The chosen categories stay.
    void show();

    /// Sizes the window for the screen and centres it.
    void place();

private:
    struct Item;

    void showItems();
    void open(size_t uItem);
    void select(size_t uItem);
    [[nodiscard]] MyGUI::IntSize itemSize() const;
    [[nodiscard]] size_t columns() const;
    void onCategory(const std::string& sCategory);
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
    TileBrowserModel m_model;
    GuiTips& m_tips;
    std::function<void()> m_fnClose;
    MyGUI::ItemBox* m_pList = nullptr;
    MyGUI::EditBox* m_pSearch = nullptr;
    MyGUI::TextBox* m_pCount = nullptr;
    MyGUI::TextBox* m_pEmpty = nullptr;
    std::unique_ptr<EditorMenu> m_pOptions;
};

} // namespace tilebuilder
