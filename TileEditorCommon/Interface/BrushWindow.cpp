#include "TileEditorCommon/Interface/BrushWindow.h"

#include "MyGuiCommon/AdvanceEditBox.h"
#include "MyGuiCommon/EditorButton.h"
#include "MyGuiCommon/GuiMetrics.h"
#include "MyGuiCommon/GuiTips.h"
#include "TileEditorCommon/Contracts/EditorActionsI.h"
#include "TileEditorCommon/Interface/LayoutWidgets.h"
#include "TileEditorCommon/Interface/ToolPanels.h"

#include <MyGUI_TextBox.h>

using GuiMetrics::px;

namespace tilebuilder
{

namespace
{

constexpr int s_iRowHeight = 24;
constexpr int s_iGap = 8;
constexpr int s_iLabelWidth = 64;

} // namespace

BrushWindow::BrushWindow(MyGUI::Widget* pWindow, EditorActionsI& actions, GuiTips& tips)
    : m_pWindow(pWindow),
      m_actions(actions)
{
    auto* pView = findIn<MyGUI::Widget>(pWindow, "BrushView");
    if (!pView)
        return;
    addFalloffs(pView, addRows(pView, tips), tips);
    refresh();
}

int BrushWindow::addRows(MyGUI::Widget* pView, GuiTips& tips)
{
    int iTop = 0;
    for (const BrushRow& row : brushRows())
    {
        auto* pLabel = pView->createWidget<MyGUI::TextBox>(
            "QM_TextDim", MyGUI::IntCoord(0, iTop, px(s_iLabelWidth), px(s_iRowHeight)),
            MyGUI::Align::Default);
        pLabel->setCaption(row.pLabel);
        auto* pBox = pView->createWidget<AdvanceEditBox>(
            "AdvanceEditBox",
            MyGUI::IntCoord(px(s_iLabelWidth), iTop, pView->getWidth() - px(s_iLabelWidth), px(s_iRowHeight)),
            MyGUI::Align::Default, row.pLabel);
        pBox->setRange(row.range);
        pBox->setHandler([this, pField = row.pField](int32_t iValue)
                         { m_actions.toolState().*pField = iValue; });
        tips.set(pLabel, row.pTip);
        m_vecRows.push_back(pBox);
        iTop += px(s_iRowHeight + s_iGap);
    }
    return iTop;
}

void BrushWindow::addFalloffs(MyGUI::Widget* pView, int iTop, GuiTips& tips)
{
    auto* pLabel = pView->createWidget<MyGUI::TextBox>(
        "QM_TextDim", MyGUI::IntCoord(0, iTop, pView->getWidth(), px(s_iRowHeight)), MyGUI::Align::Default);
    pLabel->setCaption("Falloff");
    iTop += px(s_iRowHeight);

    const std::vector<FalloffButton> vecButtons = falloffButtons(m_actions);
    const int iCount = static_cast<int>(vecButtons.size());
    const int iGap = px(4);
    for (int i = 0; i < iCount; ++i)
    {
        // The buttons share the width to the pixel.
        const int iLeft = (pView->getWidth() + iGap) * i / iCount;
        const int iRight = (pView->getWidth() + iGap) * (i + 1) / iCount - iGap;
        auto* pButton = pView->createWidget<EditorButton>(
            "QM_Button", MyGUI::IntCoord(iLeft, iTop, iRight - iLeft, px(28)), MyGUI::Align::Default,
            "Falloff" + std::to_string(i));
        pButton->setIcon(vecButtons[static_cast<size_t>(i)].sIcon);
        pButton->setNeedKeyFocus(false);
        pButton->eventMouseButtonClick += MyGUI::newDelegate(this, &BrushWindow::onFalloff);
        tips.set(pButton, vecButtons[static_cast<size_t>(i)].sTip);
        m_vecFalloffs.push_back(pButton);
    }
}

void BrushWindow::setVisible(bool bVisible)
{
    m_pWindow->setVisible(bVisible);
}

void BrushWindow::refresh()
{
    const EditorToolState& state = m_actions.toolState();
    for (size_t i = 0; i < m_vecRows.size(); ++i)
        m_vecRows[i]->setValue(state.*brushRows()[i].pField);
    const std::vector<FalloffButton> vecButtons = falloffButtons(m_actions);
    for (size_t i = 0; i < std::min(vecButtons.size(), m_vecFalloffs.size()); ++i)
    {
        m_vecFalloffs[i]->setStateSelected(vecButtons[i].bChecked);
        m_vecFalloffs[i]->setIconColour(vecButtons[i].bChecked ? MyGUI::Colour(1.0f, 0.8156863f, 0.26666668f)
                                                               : MyGUI::Colour(0.75f, 0.78f, 0.82f));
    }
}

void BrushWindow::onFalloff(MyGUI::Widget* pSender)
{
    const std::vector<FalloffButton> vecButtons = falloffButtons(m_actions);
    for (size_t i = 0; i < std::min(vecButtons.size(), m_vecFalloffs.size()); ++i)
        if (m_vecFalloffs[i] == pSender)
            m_actions.toolState().pBrush = vecButtons[i].pBrush;
    m_actions.markInterfaceDirty(0);
    refresh();
}

} // namespace tilebuilder
