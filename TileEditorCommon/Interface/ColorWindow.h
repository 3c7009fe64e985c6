#pragma once // The colour editor window.

#include "MyGuiCommon/ColorEditor.h"

class EditorButton;

namespace tilebuilder
{

class EditorActionsI;

/// A colour editor in "ColorView" and the buttons in "ButtonArea". A change raises the interface's
/// dirty mask; the frame then hands the colour to its target.
class ColorWindow
{
public:
    /// All are borrowed.
    ColorWindow(MyGUI::Widget* pWindow, EditorActionsI& actions, GuiTips& tips);

    void setVisible(bool bVisible);
    void refresh();
    [[nodiscard]] const ColorModel::Rgba& color() const { return m_editor.color(); }
    [[nodiscard]] MyGUI::Widget* widget() const { return m_pWindow; }

private:
    void fillButtons(GuiTips& tips);
    void place();
    void onReset(MyGUI::Widget* pSender);
    void onPick(MyGUI::Widget* pSender);

    MyGUI::Widget* m_pWindow;
    EditorActionsI& m_actions;
    MyGUI::TextBox* m_pTitle;
    MyGUI::Widget* m_pView;
    MyGUI::Widget* m_pButtonArea;
    ColorEditor m_editor;
    EditorButton* m_pPick = nullptr;
};

} // namespace tilebuilder
