#pragma once // The panel of the clutter tool.

#include "TileEditorCommon/Interface/ClutterModel.h"

#include <MyGUI_Prerequest.h>

namespace tilebuilder
{

/// A check box for each clutter type in "ClutterView", which scrolls.
class ClutterPanel
{
public:
    /// Both are borrowed.
    ClutterPanel(MyGUI::Widget* pWindow, EditorActionsI& actions);

    void setVisible(bool bVisible);
    void refresh();

private:
    void onToggle(MyGUI::Widget* pSender);

    MyGUI::Widget* m_pWindow;
    ClutterModel m_model;
    std::vector<MyGUI::Button*> m_vecBoxes;
};

} // namespace tilebuilder
