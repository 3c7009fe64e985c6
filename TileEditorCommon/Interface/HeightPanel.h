#pragma once // The panel of the height tool.

#include <MyGUI_Prerequest.h>
#include <vector>

namespace tilebuilder
{

class EditorActionsI;

/// Three radio entries in "TerrainBrushView".
class HeightPanel
{
public:
    /// Both are borrowed.
    HeightPanel(MyGUI::Widget* pWindow, EditorActionsI& actions);

    void setVisible(bool bVisible);
    void refresh();

private:
    void onMode(MyGUI::Widget* pSender);

    MyGUI::Widget* m_pWindow;
    EditorActionsI& m_actions;
    std::vector<MyGUI::Button*> m_vecModes;
};

} // namespace tilebuilder
