#include "TileEditorCommon/Interface/InterfaceFace.h"

#include "KestrelCommon/Core/Console.h"
#include "MyGuiCommon/GuiMetrics.h"
#include "TileEditorCommon/Contracts/EditorActionsI.h"
#include "TileEditorCommon/Interface/BarModels.h"
#include "TileEditorCommon/Interface/LayoutWidgets.h"
#include "TileEditorCommon/Interface/SideLayout.h"

#include <MyGUI_Gui.h>
#include <MyGUI_LayoutManager.h>
#include <MyGUI_MenuBar.h>
#include <MyGUI_MenuItem.h>
#include <MyGUI_RenderManager.h>
#include <MyGUI_TextBox.h>
#include <MyGUI_Window.h>

using GuiMetrics::px;

namespace tilebuilder
{

namespace
{

constexpr int s_iRightBarWidth = 800;
constexpr int s_iBarMargin = 8;
constexpr int s_iSideMargin = 12; ///< between the side windows and the edges of the view
constexpr int s_iPanelGap = 8;

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

} // namespace tilebuilder
