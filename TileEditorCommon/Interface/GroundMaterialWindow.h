#pragma once // The window in which a ground material set and a material are chosen.

#include "TileEditorCommon/Interface/GroundMaterialModel.h"

#include <MyGUI_KeyCode.h>
#include <MyGUI_Prerequest.h>
#include <MyGUI_Types.h>

class GuiTips;

namespace MyGUI
{
struct IBDrawItemInfo;
}

namespace tilebuilder
{

/// Fills "GroundMaterialSet" and "GroundMaterialList". Pictures are read at the first showing.
class GroundMaterialWindow
{
public:
    /// All are borrowed.
    GroundMaterialWindow(MyGUI::Widget* pWindow, EditorActionsI& actions, GuiTips& tips);

    void setVisible(bool bVisible);
    void refresh();

private:
    struct Item;

    void rebuild();
    void showSelection();
    void onSet(MyGUI::ComboBox* pSender, size_t uIndex);
    void onKey(MyGUI::Widget* pSender, MyGUI::KeyCode key, MyGUI::Char uChar);
    void onItemSize(MyGUI::ItemBox* pSender, MyGUI::IntCoord& coord, bool bDrag);
    void onItemWidget(MyGUI::ItemBox* pSender, MyGUI::Widget* pItem);
    void onItemDraw(MyGUI::ItemBox* pSender, MyGUI::Widget* pItem, const MyGUI::IBDrawItemInfo& info);
    void onItem(MyGUI::ItemBox* pSender, size_t uIndex);

    MyGUI::Widget* m_pWindow;
    GuiTips& m_tips;
    GroundMaterialModel m_model;
    MyGUI::ComboBox* m_pSets;
    MyGUI::ItemBox* m_pList;
};

} // namespace tilebuilder
