#pragma once // All widgets of the interface, made and destroyed together.

#include "MyGuiCommon/EditorMenu.h"
#include "MyGuiCommon/GuiTips.h"
#include "TileEditorCommon/Interface/AssetLibraryWindow.h"
#include "TileEditorCommon/Interface/BrushWindow.h"
#include "TileEditorCommon/Interface/ClutterPanel.h"
#include "TileEditorCommon/Interface/ColorWindow.h"
#include "TileEditorCommon/Interface/EntityContextMenu.h"
#include "TileEditorCommon/Interface/GroundMaterialWindow.h"
#include "TileEditorCommon/Interface/HeightPanel.h"
#include "TileEditorCommon/Interface/HelpWindow.h"
#include "TileEditorCommon/Interface/OpenTileWindow.h"
#include "TileEditorCommon/Interface/OutlinerWindow.h"
#include "TileEditorCommon/Interface/PropertiesWindow.h"
#include "TileEditorCommon/Interface/TileCreateWindow.h"
#include "TileEditorCommon/Interface/TileEditorInterface.h"
#include "TileEditorCommon/Interface/TileSettingsWindow.h"
#include "TileEditorCommon/Interface/WorldLabels.h"

#include <MyGUI_Prerequest.h>
#include <MyGUI_WidgetDefines.h>

namespace tilebuilder
{

/// Pointers to widgets and windows that a layout lacks are null.
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

} // namespace tilebuilder
