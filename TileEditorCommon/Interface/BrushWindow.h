#pragma once // The panel with the brush's strength, size and falloff.

#include <MyGUI_Prerequest.h>
#include <vector>

class AdvanceEditBox;
class EditorButton;
class GuiTips;

namespace tilebuilder
{

class EditorActionsI;

/// Fills "BrushView". A row writes straight into the tool state.
class BrushWindow
{
public:
    /// All are borrowed.
    BrushWindow(MyGUI::Widget* pWindow, EditorActionsI& actions, GuiTips& tips);

    void setVisible(bool bVisible);
    /// Shows the tool state's values.
    void refresh();

private:
    int addRows(MyGUI::Widget* pView, GuiTips& tips);
    void addFalloffs(MyGUI::Widget* pView, int iTop, GuiTips& tips);
    void onFalloff(MyGUI::Widget* pSender);

    MyGUI::Widget* m_pWindow;
    EditorActionsI& m_actions;
    std::vector<AdvanceEditBox*> m_vecRows;
    std::vector<EditorButton*> m_vecFalloffs;
};

} // namespace tilebuilder
