#pragma once // The outliner: a tree of everything that stands on the tile.

#include "TileEditorCommon/Interface/OutlinerModel.h"

#include <MyGUI_KeyCode.h>
#include <MyGUI_Prerequest.h>
#include <MyGUI_Types.h>
#include <functional>

class GuiTips;
class VirtualList;

namespace tilebuilder
{

/// Fills "OutlinerList" and searches by "OutlinerSearchBox". A click selects, with Ctrl and Shift as
/// in any list; a double click brings the thing before the eye; the arrow keys walk.
class OutlinerWindow
{
public:
    /// All are borrowed.
    OutlinerWindow(MyGUI::Widget* pWindow, EditorActionsI& actions, GuiTips& tips,
                   std::function<void()> fnClose);

    void setVisible(bool bVisible);
    [[nodiscard]] bool isVisible() const { return m_bVisible; }
    [[nodiscard]] MyGUI::Widget* widget() const { return m_pWindow; }
    /// Follows the list and the selection while it is visible; bits of ChangeMask.
    void update(uint32_t uMask);
    [[nodiscard]] bool isListed(uint32_t uId) const { return m_model.isListed(uId); }

private:
    struct Line;

    void showAll();
    void createLine(MyGUI::Button& cell);
    void drawLine(MyGUI::Button& cell, size_t uRow);
    void takeClick(size_t uRow);
    bool takeKey(MyGUI::KeyCode key);
    void followOwnSelection();
    void onSearch(MyGUI::EditBox* pSender);
    void onSearchKey(MyGUI::Widget* pSender, MyGUI::KeyCode key, MyGUI::Char uChar);
    void onClose(MyGUI::Widget* pSender);

    MyGUI::Widget* m_pWindow;
    EditorActionsI& m_actions;
    GuiTips& m_tips;
    std::function<void()> m_fnClose;
    OutlinerModel m_model;
    VirtualList* m_pList;
    MyGUI::EditBox* m_pSearch;
    MyGUI::TextBox* m_pCount;
    MyGUI::TextBox* m_pEmpty;
    bool m_bVisible = true;
    uint32_t m_uMissed = 0; ///< changes while it was hidden
};

} // namespace tilebuilder
