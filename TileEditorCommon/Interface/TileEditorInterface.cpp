#include "TileEditorCommon/Interface/TileEditorInterface.h"

#include "KestrelCommon/Core/Console.h"
#include "MyGuiCommon/EditorMenu.h"
#include "MyGuiCommon/GuiMetrics.h"
#include "MyGuiCommon/GuiTips.h"
#include "MyGuiCommon/PopUpManager.h"
#include "TileEditorCommon/Contracts/EditorActionsI.h"
#include "TileEditorCommon/Interface/AssetLibraryWindow.h"
#include "TileEditorCommon/Interface/BarModels.h"
#include "TileEditorCommon/Interface/BrushWindow.h"
#include "TileEditorCommon/Interface/ClutterPanel.h"
#include "TileEditorCommon/Interface/ColorWindow.h"
#include "TileEditorCommon/Interface/EditorBindings.h"
#include "TileEditorCommon/Interface/EntityContextMenu.h"
#include "TileEditorCommon/Interface/FileNameRule.h"
#include "TileEditorCommon/Interface/GroundMaterialWindow.h"
#include "TileEditorCommon/Interface/HeightPanel.h"
#include "TileEditorCommon/Interface/HelpWindow.h"
#include "TileEditorCommon/Interface/KeyBindings.h"
#include "TileEditorCommon/Interface/LayoutWidgets.h"
#include "TileEditorCommon/Interface/OpenTileWindow.h"
#include "TileEditorCommon/Interface/OutlinerWindow.h"
#include "TileEditorCommon/Interface/PropertiesWindow.h"
#include "TileEditorCommon/Interface/SideLayout.h"
#include "TileEditorCommon/Interface/StatusText.h"
#include "TileEditorCommon/Interface/TileCreateWindow.h"
#include "TileEditorCommon/Interface/TileSettingsWindow.h"
#include "TileEditorCommon/Interface/ToolPanels.h"
#include "TileEditorCommon/Interface/WorldLabels.h"

#include <MyGUI_Gui.h>
#include <MyGUI_InputManager.h>
#include <MyGUI_LayerManager.h>
#include <MyGUI_LayoutManager.h>
#include <MyGUI_MenuBar.h>
#include <MyGUI_MenuItem.h>
#include <MyGUI_RenderManager.h>
#include <MyGUI_TextBox.h>
#include <MyGUI_Window.h>
#include <utility>

using GuiMetrics::px;

namespace tilebuilder
{

namespace
{

constexpr size_t s_uNameLimit = 100;
constexpr int s_iRightBarWidth = 800;
constexpr int s_iBarMargin = 8;
constexpr int s_iSideMargin = 12; ///< between the side windows and the edges of the view
constexpr int s_iPanelGap = 8;
constexpr int s_iInfoPadding = 10;

/// The top widget of a loaded layout with that name.
template <class T>
T* findTop(const MyGUI::VectorWidgetPtr& vecTops, const std::string& sName)
{
    for (MyGUI::Widget* pTop : vecTops)
        if (pTop->getName() == sName)
            return pTop->castType<T>(false);
    QM_LOG_ERROR("The layout has no widget '", sName, "'");
    return nullptr;
}

} // namespace

/// All widgets, made and destroyed together.
struct TileEditorInterface::Face
{
    GuiTips tips;
    MyGUI::Widget* pOverlay = nullptr; ///< the modal backdrop
    MyGUI::VectorWidgetPtr vecMainWidgets;
    MyGUI::VectorWidgetPtr vecPopupWidgets;
    MyGUI::Widget* pBar = nullptr;
    MyGUI::Widget* pCenter = nullptr;
    MyGUI::Widget* pRight = nullptr;
    MyGUI::TextBox* pInfoBox = nullptr;
    std::unique_ptr<EditorMenu> pLeftMenuBar;
    std::unique_ptr<EditorMenu> pCenterMenuBar;
    std::unique_ptr<EditorMenu> pRightMenuBar;
    std::unique_ptr<TileCreateWindow> pNewWindow;
    std::unique_ptr<OpenTileWindow> pOpenTileWindow;
    std::unique_ptr<HelpWindow> pHelpWindow;
    std::unique_ptr<AssetLibraryWindow> pAssetLibraryWindow;
    std::unique_ptr<GroundMaterialWindow> pGroundMaterialWindow;
    std::unique_ptr<PropertiesWindow> pPropertiesWindow;
    std::unique_ptr<OutlinerWindow> pOutlinerWindow;
    std::unique_ptr<ColorWindow> pColorEditor;
    std::unique_ptr<BrushWindow> pBrushWindow;
    std::unique_ptr<HeightPanel> pHeightPanel;
    std::unique_ptr<ClutterPanel> pClutterPanel;
    std::unique_ptr<TileSettingsWindow> pTileSettingsWindow;
    std::unique_ptr<EntityContextMenu> pEntityMenu;
    WorldLabels worldLabels;

    explicit Face(const InterfaceParts& parts, TileEditorInterface& owner);
    ~Face();
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;

    void makeBars(const InterfaceParts& parts, TileEditorInterface& owner);
    void makeWindows(const InterfaceParts& parts, TileEditorInterface& owner);
    void place();
    void placeSideWindows(const MyGUI::IntSize& view);
    void placeRightBar();
    [[nodiscard]] int menusEnd() const;
};

TileEditorInterface::Face::Face(const InterfaceParts& parts, TileEditorInterface& owner)
{
    pOverlay = MyGUI::Gui::getInstance().createWidgetT(
        "Widget", "WhiteSkin", MyGUI::IntCoord(0, 0, parts.gui.width(), parts.gui.height()),
        MyGUI::Align::Stretch, "Popup", "Popup");
    pOverlay->setColour(MyGUI::Colour::Black);
    pOverlay->setAlpha(0.6f);
    pOverlay->setVisible(false);

    MyGUI::LayoutManager& layouts = MyGUI::LayoutManager::getInstance();
    vecMainWidgets = layouts.loadLayout("$GAME_DATA/Gui/Layouts/TileEditor/TileEditor.layout");
    vecPopupWidgets =
        layouts.loadLayout("$GAME_DATA/Gui/Layouts/TileEditor/TileEditorPopups.layout", "", pOverlay);
    for (MyGUI::Widget* pWidget : vecPopupWidgets)
        pWidget->setInheritsAlpha(false);

    makeWindows(parts, owner);
    if (parts.bInfoBox)
        pInfoBox = findTop<MyGUI::TextBox>(vecMainWidgets, "InfoBox");
    makeBars(parts, owner);
    pEntityMenu = std::make_unique<EntityContextMenu>(parts.actions, parts.keys);
    place();
}

TileEditorInterface::Face::~Face()
{
    pEntityMenu.reset();
    pLeftMenuBar.reset();
    pCenterMenuBar.reset();
    pRightMenuBar.reset();
    pOpenTileWindow.reset();
    pAssetLibraryWindow.reset();
    pPropertiesWindow.reset();
    pOutlinerWindow.reset();
    MyGUI::LayoutManager::getInstance().unloadLayout(vecPopupWidgets);
    MyGUI::LayoutManager::getInstance().unloadLayout(vecMainWidgets);
    MyGUI::Gui::getInstance().destroyWidget(pOverlay);
}

void TileEditorInterface::Face::makeWindows(const InterfaceParts& parts, TileEditorInterface& owner)
{
    const auto fnClose = [&owner] { owner.hidePopups(); };
    if (auto* pWindow = findTop<MyGUI::Window>(vecPopupWidgets, "NewWindow"))
        pNewWindow = std::make_unique<TileCreateWindow>(pWindow, parts.actions, tips, fnClose);
    if (auto* pWindow = findTop<MyGUI::Window>(vecPopupWidgets, "OpenTileWindow"))
        pOpenTileWindow = std::make_unique<OpenTileWindow>(pWindow, parts.actions, tips, fnClose);
    if (auto* pWindow = findTop<MyGUI::Window>(vecPopupWidgets, "HelpWindow"))
        pHelpWindow = std::make_unique<HelpWindow>(pWindow, fnClose);
    if (auto* pWidget = findTop<MyGUI::Widget>(vecMainWidgets, "GroundMaterialWindow"))
        pGroundMaterialWindow = std::make_unique<GroundMaterialWindow>(pWidget, parts.actions, tips);
    if (auto* pWidget = findTop<MyGUI::Widget>(vecMainWidgets, "AssetLibraryWindow"))
        pAssetLibraryWindow = std::make_unique<AssetLibraryWindow>(pWidget, parts.actions, tips);
    if (auto* pWidget = findTop<MyGUI::Widget>(vecMainWidgets, "PropertiesWindow"))
        pPropertiesWindow = std::make_unique<PropertiesWindow>(pWidget, parts.actions, tips);
    if (auto* pWidget = findTop<MyGUI::Widget>(vecMainWidgets, "OutlinerWindow"))
        pOutlinerWindow = std::make_unique<OutlinerWindow>(pWidget, parts.actions, tips,
                                                           [&owner] { owner.toggleOutliner(); });
    if (auto* pWidget = findTop<MyGUI::Widget>(vecMainWidgets, "ColorEditor"))
        pColorEditor = std::make_unique<ColorWindow>(pWidget, parts.actions, tips);
    if (auto* pWidget = findTop<MyGUI::Widget>(vecMainWidgets, "BrushWindow"))
        pBrushWindow = std::make_unique<BrushWindow>(pWidget, parts.actions, tips);
    if (auto* pWidget = findTop<MyGUI::Widget>(vecMainWidgets, "TerrainBrushWindow"))
        pHeightPanel = std::make_unique<HeightPanel>(pWidget, parts.actions);
    if (auto* pWidget = findTop<MyGUI::Widget>(vecMainWidgets, "ClutterWindow"))
        pClutterPanel = std::make_unique<ClutterPanel>(pWidget, parts.actions);
    if (auto* pWindow = findTop<MyGUI::Window>(vecMainWidgets, "TileSettingsWindow"))
        pTileSettingsWindow = std::make_unique<TileSettingsWindow>(
            pWindow, parts.actions, [&owner] { owner.showTileSettingsWindow(false); });
}

void TileEditorInterface::Face::makeBars(const InterfaceParts& parts, TileEditorInterface& owner)
{
    pBar = findTop<MyGUI::Widget>(vecMainWidgets, "MenuBarContainer");
    if (auto* pLeft = findIn<MyGUI::Widget>(pBar, "LeftMenuBar"))
    {
        pLeftMenuBar = std::make_unique<EditorMenu>(pLeft, tips);
        pLeftMenuBar->replace(
            buildLeftBar(parts.actions, owner, parts.keys, [&owner] { owner.showHelpWindow(); }));
    }
    pRight = findIn<MyGUI::Widget>(pBar, "RightMenuBar");
    if (pRight)
        pRightMenuBar = std::make_unique<EditorMenu>(pRight, tips);
    pCenter = findIn<MyGUI::Widget>(pBar, "CenterMenuBar");
    if (pCenter)
    {
        pCenterMenuBar = std::make_unique<EditorMenu>(pCenter, tips);
        pCenterMenuBar->replace(buildToolButtons(parts.actions, parts.keys));
    }
}

void TileEditorInterface::Face::place()
{
    const MyGUI::IntSize view(MyGUI::Gui::getInstancePtr() ? MyGUI::RenderManager::getInstance().getViewSize()
                                                           : MyGUI::IntSize());
    pOverlay->setCoord(0, 0, view.width, view.height);
    if (pOpenTileWindow)
        pOpenTileWindow->place();
    for (MyGUI::Widget* pWidget : vecPopupWidgets)
        pWidget->setPosition((view.width - pWidget->getWidth()) / 2,
                             (view.height - pWidget->getHeight()) / 2);
    if (!pBar)
        return;
    pBar->setSize(view.width, pBar->getHeight());
    if (pColorEditor)
        pColorEditor->widget()->setPosition(view.width - pColorEditor->widget()->getWidth() -
                                                px(s_iSideMargin),
                                            pBar->getBottom() + px(s_iSideMargin));
    placeSideWindows(view);
    if (pTileSettingsWindow)
    {
        // Below the place of the colour editor, or as low as the view lets it.
        MyGUI::Window& window = *pTileSettingsWindow->window();
        const int iBelow = pColorEditor ? pColorEditor->widget()->getBottom() + px(s_iPanelGap) : 0;
        window.setPosition(view.width - window.getWidth() - px(s_iSideMargin),
                           std::max(pBar->getBottom(),
                                    std::min(iBelow, view.height - window.getHeight() - px(s_iSideMargin))));
    }
    if (pCenter && pCenterMenuBar)
    {
        // In the middle, but in a narrow window never over the menus.
        const int iWidth = pCenterMenuBar->contentWidth();
        const int iLeft = std::max((view.width - iWidth) / 2, menusEnd() + px(s_iBarMargin));
        pCenter->setCoord(iLeft, pCenter->getTop(), iWidth, pCenter->getHeight());
    }
    placeRightBar();
}

void TileEditorInterface::Face::placeSideWindows(const MyGUI::IntSize& view)
{
    SideFrame frame{.iWidth = view.width,
                    .iHeight = view.height,
                    .iBarBottom = pBar->getBottom(),
                    .fScale = GuiMetrics::scale()};
    if (pColorEditor)
    {
        const MyGUI::IntCoord color = pColorEditor->widget()->getCoord();
        frame.colorEditor = {color.left, color.top, color.width, color.height};
    }
    const SideLayout layout = sideLayout(frame);
    const auto setCoord = [](MyGUI::Widget* pWidget, const SideCoord& coord)
    { pWidget->setCoord(coord.iLeft, coord.iTop, coord.iWidth, coord.iHeight); };
    if (pAssetLibraryWindow)
    {
        setCoord(pAssetLibraryWindow->widget(), layout.library);
        pAssetLibraryWindow->place();
    }
    if (pPropertiesWindow)
    {
        setCoord(pPropertiesWindow->widget(), layout.properties);
        pPropertiesWindow->place();
    }
    if (pOutlinerWindow)
        setCoord(pOutlinerWindow->widget(), layout.outliner);
}

/// The right edge of the last menu's label.
int TileEditorInterface::Face::menusEnd() const
{
    auto* pMenus = findIn<MyGUI::MenuBar>(pBar, "LeftMenuBar");
    if (!pMenus || pMenus->getItemCount() == 0)
        return 0;
    return pMenus->getItemAt(pMenus->getItemCount() - 1)->getAbsoluteCoord().right();
}

void TileEditorInterface::Face::placeRightBar()
{
    if (!pRight || !pRightMenuBar)
        return;
    const int iWidth = std::min(pRightMenuBar->contentWidth(), px(s_iRightBarWidth));
    const int iFree = pBar->getWidth() - (pCenter ? pCenter->getRight() : 0) - px(2 * s_iBarMargin);
    pRight->setVisible(iWidth > 0 && iWidth <= iFree);
    pRight->setCoord(pBar->getWidth() - iWidth - px(s_iBarMargin), pRight->getTop(), iWidth,
                     pRight->getHeight());
}

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

} // namespace tilebuilder
