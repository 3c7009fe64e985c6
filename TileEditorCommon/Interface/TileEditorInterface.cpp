#include "TileEditorCommon/Interface/TileEditorInterface.h"

#include "KestrelCommon/Core/Console.h"
#include "MyGuiCommon/GuiMetrics.h"
#include "MyGuiCommon/PopUpManager.h"
#include "TileEditorCommon/Contracts/EditorActionsI.h"
#include "TileEditorCommon/Interface/BarModels.h"
#include "TileEditorCommon/Interface/EditorBindings.h"
#include "TileEditorCommon/Interface/FileNameRule.h"
#include "TileEditorCommon/Interface/InterfaceFace.h"
#include "TileEditorCommon/Interface/KeyBindings.h"
#include "TileEditorCommon/Interface/StatusText.h"
#include "TileEditorCommon/Interface/ToolPanels.h"

#include <MyGUI_InputManager.h>
#include <MyGUI_LayerManager.h>
#include <MyGUI_TextBox.h>
#include <MyGUI_Widget.h>
#include <utility>

using GuiMetrics::px;

namespace tilebuilder
{

namespace
{

constexpr size_t s_uNameLimit = 100;
constexpr int s_iInfoPadding = 10;

} // namespace

TileEditorInterface::TileEditorInterface(const InterfaceParts& parts) : m_parts(parts)
{
    bindEditorActions(m_parts.keys, m_parts.actions, *this);
    m_parts.gui.addListener(this);
    createWidgets();
}

TileEditorInterface::~TileEditorInterface()
{
    m_parts.gui.removeListener(this);
    m_pFace.reset();
}

void TileEditorInterface::destroyWidgets()
{
    m_pFace.reset();
}

void TileEditorInterface::createWidgets()
{
    m_pFace = std::make_unique<Face>(m_parts, *this);
    hidePopups();
    showToolPanels(m_parts.actions.toolState().tool);
    showTileSettingsWindow(m_bTileSettings);
    refresh(~0u);
}

void TileEditorInterface::placeWidgets()
{
    if (m_pFace)
        m_pFace->place();
}

bool TileEditorInterface::isPointerFree() const
{
    return !m_parts.gui.isMouseOverWidget() && !m_parts.gui.hasKeyFocus();
}

bool TileEditorInterface::isMouseFree() const
{
    return !m_parts.gui.isMouseOverWidget() && !m_parts.gui.isEditing();
}

bool TileEditorInterface::hasNoKeyFocus() const
{
    return !m_parts.gui.hasKeyFocus();
}

bool TileEditorInterface::isMouseOverWidget() const
{
    return m_parts.gui.isMouseOverWidget();
}

bool TileEditorInterface::isOverWindow() const
{
    const MyGUI::IntPoint& mouse = MyGUI::InputManager::getInstance().getMousePosition();
    return MyGUI::LayerManager::getInstance().getWidgetFromPoint(mouse.left, mouse.top) != nullptr;
}

bool TileEditorInterface::isEditing() const
{
    return m_parts.gui.isEditing();
}

void TileEditorInterface::showToolPanels(uint8_t uTool)
{
    m_uTool = uTool;
    if (!m_pFace)
        return;
    const ToolPanels panels = panelsOf(uTool);
    if (m_pFace->pBrushWindow)
        m_pFace->pBrushWindow->setVisible(panels.bBrush);
    if (m_pFace->pHeightPanel)
        m_pFace->pHeightPanel->setVisible(panels.bTerrainBrush);
    if (m_pFace->pGroundMaterialWindow)
        m_pFace->pGroundMaterialWindow->setVisible(panels.bGroundMaterial);
    if (m_pFace->pClutterPanel)
        m_pFace->pClutterPanel->setVisible(panels.bClutter);
    if (m_pFace->pPropertiesWindow)
        m_pFace->pPropertiesWindow->setVisible(panels.bProperties);
    if (m_pFace->pAssetLibraryWindow)
        m_pFace->pAssetLibraryWindow->setVisible(panels.bAssetLibrary);
    if (m_pFace->pOutlinerWindow)
        m_pFace->pOutlinerWindow->setVisible(panels.bOutliner && m_bOutliner);
    showColorEditor();
}

/// With its tool, and with the entity tool while a colour of the properties is edited.
void TileEditorInterface::showColorEditor()
{
    if (!m_pFace->pColorEditor)
        return;
    const ToolPanels panels = panelsOf(m_uTool);
    m_pFace->pColorEditor->setVisible(
        panels.bColorEditor ||
        (panels.bProperties && m_pFace->pPropertiesWindow && m_pFace->pPropertiesWindow->isColorOpen()));
}

void TileEditorInterface::toggleOutliner()
{
    m_bOutliner = !m_bOutliner;
    showToolPanels(m_uTool);
    m_parts.actions.markInterfaceDirty(0);
}

bool TileEditorInterface::isListed(uint32_t uEntityId) const
{
    return !m_pFace || !m_pFace->pOutlinerWindow || !m_pFace->pOutlinerWindow->isVisible() ||
           m_pFace->pOutlinerWindow->isListed(uEntityId);
}

void TileEditorInterface::onContentChanged()
{
    if (m_pFace && m_pFace->pAssetLibraryWindow)
        m_pFace->pAssetLibraryWindow->onContentChanged();
}

void TileEditorInterface::hidePopups()
{
    if (!m_pFace)
        return;
    m_pFace->tips.hide();
    m_pFace->pOverlay->setVisible(false);
    for (MyGUI::Widget* pWidget : m_pFace->vecPopupWidgets)
        pWidget->setVisible(false);
    MyGUI::InputManager::getInstance().resetKeyFocusWidget();
}

void TileEditorInterface::showNewWindow()
{
    if (!m_pFace || !m_pFace->pNewWindow)
        return;
    hidePopups();
    m_pFace->pOverlay->setVisible(true);
    m_pFace->pNewWindow->show();
}

void TileEditorInterface::showOpenWindow()
{
    if (!m_pFace || !m_pFace->pOpenTileWindow)
        return;
    hidePopups();
    m_pFace->pOverlay->setVisible(true);
    m_pFace->pOpenTileWindow->show();
}

void TileEditorInterface::showHelpWindow()
{
    if (!m_pFace || !m_pFace->pHelpWindow)
        return;
    hidePopups();
    m_pFace->pOverlay->setVisible(true);
    m_pFace->pHelpWindow->show();
}

std::array<float, 4> TileEditorInterface::editorColor() const
{
    return m_pFace && m_pFace->pColorEditor ? m_pFace->pColorEditor->color()
                                            : std::array{1.0f, 1.0f, 1.0f, 1.0f};
}

void TileEditorInterface::showSaveAsWindow()
{
    hidePopups();
    m_parts.popUps.askText("Save Tile", s_uNameLimit, m_parts.actions.documentName(),
                           [this](const std::string& sName) { saveUnder(sName); });
}

void TileEditorInterface::saveUnder(const std::string& sName)
{
    if (!m_parts.actions.isDocumentOpen())
        QM_LOG_WARNING("Tile Save Error");
    else if (!isValidFileName(sName))
        m_parts.popUps.showMessage("ERROR_MESSAGE", "Invalid file name!");
    else
        m_parts.actions.saveAs(sName, sName == m_parts.actions.documentName()
                                          ? m_parts.actions.documentDirectory()
                                          : std::string());
}

void TileEditorInterface::toggleStatusOverlay()
{
    m_bInfoHidden = !m_bInfoHidden;
}

void TileEditorInterface::showTileSettingsWindow(bool bShow)
{
    const bool bChanged = std::exchange(m_bTileSettings, bShow) != bShow;
    if (m_pFace && m_pFace->pTileSettingsWindow)
        m_pFace->pTileSettingsWindow->setVisible(bShow);
    if (bChanged)
        m_parts.actions.markInterfaceDirty(0);
}

void TileEditorInterface::updateOverlay(uint32_t uFrames, double fCpuMs, double fGpuMs)
{
    if (!m_pFace)
        return;
    m_pFace->worldLabels.show(m_parts.actions.worldLabels());
    if (m_pFace->pAssetLibraryWindow)
        m_pFace->pAssetLibraryWindow->update();
    if (m_pFace->pPropertiesWindow)
        m_pFace->pPropertiesWindow->update();
    if (!m_pFace->pInfoBox)
        return;
    std::string sText;
    if (!m_bInfoHidden)
        sText = statusText({.uFrames = uFrames,
                            .fCpuMs = fCpuMs,
                            .fGpuMs = fGpuMs,
                            .camera = m_parts.actions.cameraStatus().position,
                            .cursor = m_parts.actions.cursorHit().value_or(std::array<float, 3>{}),
                            .gridSpacing = m_parts.actions.gridSpacing()});
    if (m_pFace->pInfoBox->getCaption() == MyGUI::UString(sText))
        return;
    m_pFace->pInfoBox->setCaption(sText);
    m_pFace->pInfoBox->setVisible(!sText.empty());
    // Grows with its text, but never shrinks: figures that change don't make it tremble.
    const MyGUI::IntSize text = m_pFace->pInfoBox->getTextSize();
    m_pFace->pInfoBox->setSize(std::max(m_pFace->pInfoBox->getWidth(), text.width + px(2 * s_iInfoPadding)),
                               text.height + px(2 * s_iInfoPadding - 4));
}

void TileEditorInterface::showEntityMenu(int iX, int iY)
{
    if (m_pFace)
        m_pFace->pEntityMenu->show(iX, iY);
}

MyGUI::PopupMenu* TileEditorInterface::entityMenu() const
{
    return m_pFace ? m_pFace->pEntityMenu->menu() : nullptr;
}

void TileEditorInterface::refresh(uint32_t uMask)
{
    if (!m_pFace)
        return;
    if (m_pFace->pLeftMenuBar)
        for (const EntryState& state : leftBarStates(m_parts.actions, *this))
        {
            m_pFace->pLeftMenuBar->setEnabled(state.sId, state.bEnabled);
            m_pFace->pLeftMenuBar->setChecked(state.sId, state.bChecked);
        }
    if (m_pFace->pCenterMenuBar)
        for (const MenuEntry& button : buildToolButtons(m_parts.actions, m_parts.keys))
        {
            m_pFace->pCenterMenuBar->setColour(button.sId, *button.colour);
            m_pFace->pCenterMenuBar->setChecked(button.sId, button.bChecked);
            m_pFace->pCenterMenuBar->setIcon(button.sId, button.sIcon);
        }
    if (m_pFace->pRightMenuBar && m_pFace->pRightMenuBar->replace(buildRightBar(m_parts.actions)))
        m_pFace->placeRightBar();
    if (m_pFace->pPropertiesWindow && panelsOf(m_uTool).bProperties)
        m_pFace->pPropertiesWindow->refresh();
    if (m_pFace->pGroundMaterialWindow)
        m_pFace->pGroundMaterialWindow->refresh();
    if (m_pFace->pOutlinerWindow)
        m_pFace->pOutlinerWindow->update(uMask);
    showColorEditor();
    if (m_pFace->pColorEditor)
        m_pFace->pColorEditor->refresh();
    if (m_pFace->pBrushWindow)
        m_pFace->pBrushWindow->refresh();
    if (m_pFace->pHeightPanel)
        m_pFace->pHeightPanel->refresh();
    if (m_pFace->pClutterPanel)
        m_pFace->pClutterPanel->refresh();
    if (m_pFace->pTileSettingsWindow)
        m_pFace->pTileSettingsWindow->refresh();
}

void TileEditorInterface::showMessage(std::string_view sTitle, std::string_view sText)
{
    m_parts.popUps.showMessage(sTitle, sText);
}

void TileEditorInterface::askYesNo(std::string_view sTitle, std::string_view sText,
                                   std::function<void()> onYes)
{
    m_parts.popUps.askYesNo(sTitle, sText, std::move(onYes));
}

void TileEditorInterface::showProgress(std::string_view sName, float fDone)
{
    m_parts.popUps.showProgress(sName, fDone);
    if (m_parts.fnDrawFrame)
        m_parts.fnDrawFrame();
}

void TileEditorInterface::hideProgress()
{
    m_parts.popUps.hideProgress();
}

void TileEditorInterface::setBusy(bool bBusy)
{
    m_parts.gui.setBusy(bBusy);
}

} // namespace tilebuilder
