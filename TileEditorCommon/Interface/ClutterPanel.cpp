#include "TileEditorCommon/Interface/ClutterPanel.h"

#include "MyGuiCommon/GuiMetrics.h"
#include "TileEditorCommon/Interface/LayoutWidgets.h"

#include <MyGUI_Button.h>
#include <MyGUI_ScrollView.h>

using GuiMetrics::px;

namespace tilebuilder
{

namespace
{

constexpr int s_iRowHeight = 24;
constexpr int s_iScrollWidth = 14;

} // namespace

ClutterPanel::ClutterPanel(MyGUI::Widget* pWindow, EditorActionsI& actions)
    : m_pWindow(pWindow),
      m_model(actions)
{
    auto* pView = findIn<MyGUI::ScrollView>(pWindow, "ClutterView");
    if (!pView)
        return;
    const std::vector<ClutterEntry> vecEntries = m_model.entries();
    const int iWidth = pView->getWidth() - px(s_iScrollWidth);
    for (const ClutterEntry& entry : vecEntries)
    {
        const auto iRow = static_cast<int>(m_vecBoxes.size());
        auto* pBox = pView->createWidget<MyGUI::Button>(
            "QM_CheckBox", MyGUI::IntCoord(0, iRow * px(s_iRowHeight), iWidth, px(s_iRowHeight)),
            MyGUI::Align::Default, "Clutter" + std::to_string(iRow));
        pBox->setCaption(entry.sLabel);
        pBox->setNeedKeyFocus(false);
        pBox->eventMouseButtonClick += MyGUI::newDelegate(this, &ClutterPanel::onToggle);
        m_vecBoxes.push_back(pBox);
    }
    pView->setCanvasSize(iWidth, static_cast<int>(m_vecBoxes.size()) * px(s_iRowHeight));
    refresh();
}

void ClutterPanel::setVisible(bool bVisible)
{
    m_pWindow->setVisible(bVisible);
}

void ClutterPanel::refresh()
{
    m_model.update();
    const std::vector<ClutterEntry> vecEntries = m_model.entries();
    for (size_t i = 0; i < std::min(vecEntries.size(), m_vecBoxes.size()); ++i)
        m_vecBoxes[i]->setStateSelected(vecEntries[i].bChecked);
}

void ClutterPanel::onToggle(MyGUI::Widget* pSender)
{
    for (size_t i = 0; i < m_vecBoxes.size(); ++i)
        if (m_vecBoxes[i] == pSender)
            m_model.toggle(i);
    refresh();
}

} // namespace tilebuilder
