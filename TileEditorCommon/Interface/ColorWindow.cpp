#include "TileEditorCommon/Interface/ColorWindow.h"

#include "MyGuiCommon/EditorButton.h"
#include "MyGuiCommon/GuiMetrics.h"
#include "MyGuiCommon/GuiTips.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Contracts/EditorActionsI.h"
#include "TileEditorCommon/Interface/ColorPanel.h"
#include "TileEditorCommon/Interface/LayoutWidgets.h"

#include <MyGUI_TextBox.h>

using GuiMetrics::px;

namespace tilebuilder
{

namespace
{

constexpr int s_iButtonHeight = 28;
constexpr int s_iResetWidth = 48;
constexpr int s_iPickWidth = 24;
constexpr int s_iGap = 8;
constexpr int s_iPadding = 12;

} // namespace

ColorWindow::ColorWindow(MyGUI::Widget* pWindow, EditorActionsI& actions, GuiTips& tips)
    : m_pWindow(pWindow),
      m_actions(actions),
      m_pTitle(findIn<MyGUI::TextBox>(pWindow, "ColorTitle")),
      m_pView(findIn<MyGUI::Widget>(pWindow, "ColorView")),
      m_pButtonArea(findIn<MyGUI::Widget>(pWindow, "ButtonArea")),
      m_editor(m_pView ? m_pView : pWindow, tips)
{
    m_editor.setHandler([this] { m_actions.markInterfaceDirty(ChangeColorPicked); });
    if (m_pButtonArea)
        fillButtons(tips);
    refresh();
    place();
}

void ColorWindow::fillButtons(GuiTips& tips)
{
    auto* pReset = m_pButtonArea->createWidget<EditorButton>(
        "QM_SmallButton", MyGUI::IntCoord(0, 0, px(s_iResetWidth), px(s_iButtonHeight)),
        MyGUI::Align::Default, "RESET_COLOR_ID");
    pReset->setCaption("Reset");
    pReset->setNeedKeyFocus(false);
    pReset->eventMouseButtonClick += MyGUI::newDelegate(this, &ColorWindow::onReset);
    tips.set(pReset, "Back to white");
    m_pPick = m_pButtonArea->createWidget<EditorButton>(
        "QM_Button", MyGUI::IntCoord(px(s_iResetWidth + s_iGap), 0, px(s_iPickWidth), px(s_iButtonHeight)),
        MyGUI::Align::Default, "PickColor");
    m_pPick->setIcon("$GAME_DATA/Gui/Editor/pickcolor.png");
    m_pPick->setNeedKeyFocus(false);
    m_pPick->eventMouseButtonClick += MyGUI::newDelegate(this, &ColorWindow::onPick);
    tips.set(m_pPick, "Pick a color: the next click in the view takes it");
}

void ColorWindow::setVisible(bool bVisible)
{
    m_pWindow->setVisible(bVisible);
}

void ColorWindow::refresh()
{
    const ColorPanel panel = colorPanel(m_actions.toolState());
    if (m_pTitle && m_pTitle->getCaption() != MyGUI::UString(panel.pTitle))
        m_pTitle->setCaption(panel.pTitle);
    m_editor.setAlphaShown(panel.bAlpha);
    m_editor.setColor(panel.color);
    if (m_pView && m_pView->getHeight() != m_editor.neededHeight())
        place();
    if (!m_pPick)
        return;
    m_pPick->setStateSelected(panel.bArmed);
    m_pPick->setIconColour(panel.bArmed ? MyGUI::Colour(1.0f, 0.8156863f, 0.26666668f)
                                        : MyGUI::Colour(0.75f, 0.78f, 0.82f));
}

/// The window is as high as what it shows.
void ColorWindow::place()
{
    if (!m_pView || !m_pButtonArea)
        return;
    m_pView->setSize(m_pView->getWidth(), m_editor.neededHeight());
    m_pButtonArea->setPosition(m_pButtonArea->getLeft(), m_pView->getBottom() + px(s_iGap));
    m_pWindow->setSize(m_pWindow->getWidth(), m_pButtonArea->getBottom() + px(s_iPadding));
}

void ColorWindow::onReset(MyGUI::Widget*)
{
    resetColor(m_actions);
}

void ColorWindow::onPick(MyGUI::Widget*)
{
    toggleEyedropper(m_actions);
}

} // namespace tilebuilder
