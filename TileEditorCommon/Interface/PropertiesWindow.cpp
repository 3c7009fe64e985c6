#include "TileEditorCommon/Interface/PropertiesWindow.h"

#include "TileEditorCommon/Contracts/EditorActionsI.h"
#include "TileEditorCommon/Contracts/EntityListI.h"
#include "TileEditorCommon/Interface/LayoutWidgets.h"

#include <MyGUI_EditBox.h>
#include <MyGUI_InputManager.h>
#include <MyGUI_ScrollView.h>

namespace tilebuilder
{

PropertiesWindow::PropertiesWindow(MyGUI::Widget* pWindow, EditorActionsI& actions, GuiTips& tips)
    : m_pWindow(pWindow),
      m_actions(actions),
      m_model(actions),
      m_pEmpty(findIn<MyGUI::EditBox>(pWindow, "PropertiesEmpty"))
{
    if (auto* pView = findIn<MyGUI::ScrollView>(pWindow, "PropertiesView"))
        m_pPanel =
            std::make_unique<PropertyPanel>(pView, tips,
                                            [this](const ColorRgba& color, bool bAlpha, ColorEdit onEdit)
                                            { openColor(color, bAlpha, std::move(onEdit)); });
    refresh();
}

PropertiesWindow::~PropertiesWindow()
{
    closeColor();
}

void PropertiesWindow::setVisible(bool bVisible)
{
    m_pWindow->setVisible(bVisible);
    if (!bVisible)
        closeColor();
}

void PropertiesWindow::place()
{
    if (m_pPanel)
        m_pPanel->place();
}

void PropertiesWindow::refresh()
{
    m_model.update();
    if (m_bColorOpen && !isColorWanted())
        closeColor();
    if (m_pPanel)
        m_model.fill(*m_pPanel);
    if (m_pEmpty)
        m_pEmpty->setVisible(!m_model.shown());
}

/// A thing that isn't selected any more stays in the panel, but its colour tool is put away.
bool PropertiesWindow::isColorWanted() const
{
    EntityListI* pList = m_actions.entities();
    return pList && !pList->selected().empty() && pList->selected().back() == m_colorEntity;
}

void PropertiesWindow::update()
{
    if (m_pPanel)
        m_pPanel->update();
    // A drag in the colour editor ends when the mouse lets go.
    if (m_bColorChanged && !MyGUI::InputManager::getInstance().isCaptureMouse())
    {
        m_bColorChanged = false;
        const ColorEdit onColor = m_onColor;
        if (onColor)
            onColor(m_color, EditPhase::Finished);
    }
}

/// The owner of the swatch hears of its colour first: a kind with a colour tool of its own then has
/// made itself the target. For any other the colour is kept here.
void PropertiesWindow::openColor(const ColorRgba& color, bool bAlpha, ColorEdit onEdit)
{
    closeColor();
    m_bColorOpen = true;
    m_colorEntity = m_model.shown();
    m_color = color;
    const EditorToolState& tools = m_actions.toolState();
    onEdit(color, EditPhase::Finished);
    if (!tools.pColorTarget || tools.colorTargetKind != ColorTargetEntity)
    {
        m_onColor = std::move(onEdit);
        const ColorCallback fnChanged = [this](const ColorRgba& changed)
        {
            m_color = changed;
            m_bColorChanged = true;
            const ColorEdit onColor = m_onColor;
            if (onColor)
                onColor(changed, EditPhase::Changing);
        };
        m_actions.setColorTarget(&m_color, bAlpha ? ColorTargetEntity : ColorTargetGround, fnChanged,
                                 fnChanged);
    }
    m_actions.markInterfaceDirty(0);
}

void PropertiesWindow::closeColor()
{
    m_bColorOpen = false;
    m_bColorChanged = false;
    m_onColor = {};
    if (m_pPanel)
        m_pPanel->closeColor();
    if (m_actions.toolState().pColorTarget == &m_color)
        m_actions.setColorTarget(nullptr, ColorTargetNone, {}, {});
}

} // namespace tilebuilder
