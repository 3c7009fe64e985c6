#include "TileEditorCommon/Interface/HeightPanel.h"

#include "MyGuiCommon/GuiMetrics.h"
#include "TileEditorCommon/Contracts/EditorActionsI.h"
#include "TileEditorCommon/Interface/LayoutWidgets.h"
#include "TileEditorCommon/Interface/ToolPanels.h"

#include <MyGUI_Button.h>

using GuiMetrics::px;

namespace tilebuilder
{

namespace
{

constexpr int s_iRowHeight = 24;

} // namespace

HeightPanel::HeightPanel(MyGUI::Widget* pWindow, EditorActionsI& actions)
    : m_pWindow(pWindow),
      m_actions(actions)
{
    auto* pView = findIn<MyGUI::Widget>(pWindow, "TerrainBrushView");
    if (!pView)
        return;
    int iTop = 0;
    for (const HeightEntry& entry : heightEntries())
    {
        auto* pButton = pView->createWidget<MyGUI::Button>(
            "QM_RadioButton", MyGUI::IntCoord(0, iTop, pView->getWidth(), px(s_iRowHeight)),
            MyGUI::Align::Default, std::string("HeightMode") + entry.pLabel);
        pButton->setCaption(entry.pLabel);
        pButton->setNeedKeyFocus(false);
        pButton->eventMouseButtonClick += MyGUI::newDelegate(this, &HeightPanel::onMode);
        m_vecModes.push_back(pButton);
        iTop += px(s_iRowHeight + 2);
    }
    refresh();
}

void HeightPanel::setVisible(bool bVisible)
{
    m_pWindow->setVisible(bVisible);
}

void HeightPanel::refresh()
{
    for (size_t i = 0; i < m_vecModes.size(); ++i)
        m_vecModes[i]->setStateSelected(m_actions.toolState().heightMode == heightEntries()[i].uMode);
}

void HeightPanel::onMode(MyGUI::Widget* pSender)
{
    for (size_t i = 0; i < m_vecModes.size(); ++i)
        if (m_vecModes[i] == pSender)
            m_actions.toolState().heightMode = heightEntries()[i].uMode;
    m_actions.markInterfaceDirty(0);
    refresh();
}

} // namespace tilebuilder
