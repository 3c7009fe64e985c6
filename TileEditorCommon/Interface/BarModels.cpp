#include "TileEditorCommon/Interface/BarModels.h"

#include "TileEditorCommon/Contracts/EditorActionsI.h"
#include "TileEditorCommon/Contracts/EditorInterfaceI.h"
#include "TileEditorCommon/Contracts/EntityTraits.h"
#include "TileEditorCommon/Interface/KeyBindings.h"

namespace tilebuilder
{

namespace
{

using Kind = MenuEntry::Kind;
using Action = std::function<void()>;

/// A label that ends in a blank takes the shortcut behind it.
std::string withShortcut(const KeyBindings& keys, std::string_view sLabel, uint32_t uAction)
{
    return std::string(sLabel) + keys.text(uAction);
}

MenuEntry entry(std::string sLabel, std::string sId, Action fnAction, Kind eKind = Kind::Action)
{
    return {
        .eKind = eKind, .sLabel = std::move(sLabel), .sId = std::move(sId), .fnAction = std::move(fnAction)};
}

/// An entry for what the editor can't do yet: there, and greyed out.
MenuEntry later(std::string sLabel, std::string sId = {}, Kind eKind = Kind::Action)
{
    MenuEntry made = entry(std::move(sLabel), std::move(sId), {}, eKind);
    made.bEnabled = false;
    return made;
}

MenuEntry menu(std::string sLabel, std::vector<MenuEntry> vecChildren)
{
    return {.eKind = Kind::Menu, .sLabel = std::move(sLabel), .vecChildren = std::move(vecChildren)};
}

MenuEntry separator()
{
    return {.eKind = Kind::Separator};
}

std::string fileName(const std::string& sPath)
{
    return sPath.substr(sPath.rfind('/') + 1);
}

ToolColours::Colour dimmed(ToolColours::Colour colour)
{
    for (size_t i = 0; i < 3; ++i)
        colour[i] *= 0.55f;
    return colour;
}

/// The kinds that the view menu shows and hides, in its order.
constexpr std::array<EntityTypeId, 6> s_arrViewKinds{EntityTypeId_Asset,     EntityTypeId_Harvestable,
                                                     EntityTypeId_Blueprint, EntityTypeId_Prefab,
                                                     EntityTypeId_Node,      EntityTypeId_Decal};

std::string viewId(EntityTypeId eKind)
{
    return "View/" + std::string(entityTraits(eKind).sName);
}

MenuEntry buildViewMenu(EditorActionsI& actions)
{
    const auto setMask = [&actions](uint32_t uMask)
    {
        actions.toolState().viewMask = uMask;
        actions.markInterfaceDirty(0);
    };
    MenuEntry made = menu("View", {entry("Show All", "Show All",
                                         [&actions, setMask]
                                         {
                                             actions.showHidden();
                                             setMask(EditorToolState::s_uAllKindsMask);
                                         }),
                                   entry("Hide All", "Hide All", [setMask] { setMask(0); }), separator()});
    for (const EntityTypeId eKind : s_arrViewKinds)
        made.vecChildren.push_back(entry(
            std::string(entityTraits(eKind).sName), viewId(eKind),
            [&actions, setMask, uFlag = entityTraits(eKind).uFilterFlag]
            { setMask(actions.toolState().viewMask ^ uFlag); },
            Kind::Check));
    return made;
}

} // namespace

std::vector<MenuEntry> buildLeftBar(EditorActionsI& actions, EditorInterfaceI& windows,
                                    const KeyBindings& keys, std::function<void()> fnHelp)
{
    return {
        menu("File",
             {entry(withShortcut(keys, "New ", ActionNew), {}, [&windows] { windows.showNewWindow(); }),
              entry(withShortcut(keys, "Open ", ActionOpen), {}, [&windows] { windows.showOpenWindow(); }),
              separator(),
              entry(withShortcut(keys, "Save ", ActionSave), "Save", [&actions] { actions.save(); }),
              entry(withShortcut(keys, "Save As ", ActionSaveAs), "SaveAs",
                    [&windows] { windows.showSaveAsWindow(); }),
              separator(), entry("Delete Tile", "Delete Tile", [&actions] { actions.deleteTile(); }),
              separator(), entry("Exit", "Exit", [&actions] { actions.requestExit(); })}),
        menu("Editor",
             {entry(
                  withShortcut(keys, "Show Grid ", ActionToggleGrid), "Show Grid",
                  [&actions] { actions.toggleGrid(); }, Kind::Check),
              entry(
                  "Show Origin", "Show Origin", [&actions] { actions.toggleOrigin(); }, Kind::Check),
              separator(),
              entry(
                  "Random Z Rotation", "Random Z Rotation",
                  [&actions]
                  {
                      actions.toolState().randomZRotation = !actions.toolState().randomZRotation;
                      actions.markInterfaceDirty(0);
                  },
                  Kind::Check)}),
        buildViewMenu(actions),
        menu("Window", {entry(
                            withShortcut(keys, "Outliner ", ActionOutliner), "Outliner",
                            [&windows] { windows.toggleOutliner(); }, Kind::Check),
                        entry(
                            "Tile Settings", "Tile Settings",
                            [&windows] { windows.showTileSettingsWindow(!windows.isTileSettingsVisible()); },
                            Kind::Check),
                        separator(), later("Share", "Share")}),
        entry("Help", "Help", std::move(fnHelp)),
    };
}

std::vector<EntryState> leftBarStates(EditorActionsI& actions, const EditorInterfaceI& windows)
{
    const bool bOpen = actions.isDocumentOpen();
    const bool bDelete = bOpen && actions.canDeleteTile();
    std::vector<EntryState> vecStates{
        {.sId = "Show Grid", .bEnabled = bOpen, .bChecked = actions.hasGrid()},
        {.sId = "Show Origin", .bChecked = actions.isOriginShown()},
        {.sId = "Random Z Rotation", .bChecked = actions.toolState().randomZRotation},
        {.sId = "Outliner", .bChecked = windows.isOutlinerVisible()},
        {.sId = "Save", .bEnabled = bOpen},
        {.sId = "SaveAs", .bEnabled = bOpen},
        {.sId = "Tile Settings", .bEnabled = bOpen, .bChecked = windows.isTileSettingsVisible()},
        {.sId = "Delete Tile",
         .bEnabled = bDelete,
         .sLabel = bDelete ? "#ff5566Delete Tile" : "Delete Tile"}};
    for (const EntityTypeId eKind : s_arrViewKinds)
        vecStates.push_back(
            {.sId = viewId(eKind),
             .bChecked = (actions.toolState().viewMask & entityTraits(eKind).uFilterFlag) != 0});
    return vecStates;
}

std::vector<MenuEntry> buildToolButtons(EditorActionsI& actions, const KeyBindings& keys)
{
    const EditorToolState& state = actions.toolState();
    std::vector<MenuEntry> vecButtons;
    const auto add = [&](const char* pId, const char* pIcon, const char* pTip, EditorAction eAction,
                         const ToolColours::Colour& colour, bool bChecked, Action fnAction)
    {
        vecButtons.push_back({.sId = pId,
                              .sIcon = std::string("$GAME_DATA/Gui/Editor/") + pIcon,
                              .sTip = withShortcut(keys, pTip, eAction),
                              .bEnabled = static_cast<bool>(fnAction),
                              .bChecked = bChecked,
                              .colour = colour,
                              .fnAction = std::move(fnAction)});
    };
    const auto addMode = [&](const char* pId, const char* pIcon, const char* pTip, EditorAction eAction,
                             const ToolColours::Colour& bright, uint8_t uMode)
    {
        const bool bOn = state.transformMode == uMode;
        add(pId, pIcon, pTip, eAction, bOn ? bright : dimmed(bright), false,
            [&actions, uMode]
            {
                actions.toolState().transformMode = uMode;
                actions.markInterfaceDirty(0);
            });
    };
    const auto addTool =
        [&](const char* pId, const char* pIcon, const char* pTip, EditorAction eAction, uint8_t uTool)
    {
        const bool bOn = state.tool == uTool;
        add(pId, pIcon, pTip, eAction, bOn ? ToolColours::active : ToolColours::inactive, bOn,
            [&actions, uTool] { actions.setTool(uTool); });
    };

    const bool bSnap = actions.isSnapping();
    add("Snap", bSnap ? "ed_icon_snap.png" : "ed_icon_snapoff.png", "Snap to grid ", ActionSnap,
        bSnap ? ToolColours::active : ToolColours::inactive, false, [&actions] { actions.toggleSnapping(); });
    const bool bOrigin = actions.transformsAroundOrigin();
    add("TransformMode", bOrigin ? "ed_icon_pivotexport.png" : "ed_icon_pivotcenter.png",
        "Transform around origin ", ActionPivot, bOrigin ? ToolColours::xBright : ToolColours::active, false,
        [&actions] { actions.toggleTransformOrigin(); });
    addMode("Translate", "ed_icon_translate.png", "Translate ", ActionTranslate, ToolColours::xBright, 0);
    addMode("Rotate", "ed_icon_rotate.png", "Rotate ", ActionRotate, ToolColours::yBright, 1);
    addMode("Scale", "ed_icon_scale.png", "Scale ", ActionScale, ToolColours::zBright, 2);
    addTool("Asset", "ed_icon_place_tool.png", "Place Assets ", ActionToolPlace, ToolPlace);
    addTool("Height", "ed_icon_height_tool.png", "Paint Ground Height ", ActionToolHeight, ToolHeight);
    addTool("Texture", "ed_icon_ground_texture_tool.png", "Paint Ground Texture ", ActionToolMaterial,
            ToolMaterial);
    addTool("Color", "ed_icon_ground_color_tool.png", "Paint Ground Color ", ActionToolColor, ToolColor);
    addTool("Clutter", "ed_icon_clutter_tool.png", "Paint Grass & Clutter ", ActionToolClutter, ToolClutter);
    return vecButtons;
}

MenuEntry buildHistoryMenu(EditorActionsI& actions)
{
    const HistoryStatus history = actions.history();
    const std::string sUsed = memoryText(history.uBytesUsed);
    const std::string sStep =
        history.uStateIndex == history.steps()
            ? std::to_string(history.steps())
            : std::to_string(history.uStateIndex) + "/" + std::to_string(history.steps());
    MenuEntry made = menu(" ( " + sUsed + " " + sStep + ")", {});
    made.sId = "History";
    const auto add = [&](std::string sLabel, const char* pId, bool bEnabled, Action fnAction)
    {
        made.vecChildren.push_back(entry(std::move(sLabel), pId, std::move(fnAction)));
        made.vecChildren.back().bEnabled = bEnabled;
    };
    add("Undo #BBBBBB(ctrl+z)", "Undo", history.steps() > 1 && history.uStateIndex > 0,
        [&actions] { actions.undo(); });
    add("Redo #BBBBBB(ctrl+shift+z)", "Redo", history.steps() > history.uStateIndex,
        [&actions] { actions.redo(); });
    add("Restore from disk", "Restore", !actions.pathStack().empty(),
        [&actions] { actions.restoreFromDisk(); });
    add("Reset Undo History ( " + sUsed + " / " + memoryText(history.uBytesLimit) + " )", "ResetHistory",
        history.steps() > 1 || history.bHasCached, [&actions] { actions.resetUndoHistory(); });
    if (history.bHasCached)
        made.vecChildren.push_back(separator());
    for (const CachedDocument& cached : history.vecCached)
        made.vecChildren.push_back(
            {.sLabel = escapeCaption(fileName(cached.sPath)) + (cached.bUnsaved ? "*" : "") + " ( " +
                       memoryText(cached.uBytes) + " )",
             .sTip = escapeCaption(cached.sPath),
             .fnAction = [&actions, sPath = cached.sPath] { actions.openDocument(sPath); }});
    return made;
}

std::vector<MenuEntry> buildRightBar(EditorActionsI& actions)
{
    const std::vector<std::string> vecStack = actions.pathStack();
    if (!actions.isDocumentOpen())
        return {};
    if (vecStack.empty())
        return {buildHistoryMenu(actions)};
    std::vector<MenuEntry> vecBar;
    vecBar.push_back(
        {.sId = "Back",
         .sIcon = "$GAME_DATA/Gui/Editor/ed_icon_arrowleft.png",
         .sTip = "Back",
         .bEnabled = vecStack.size() >= 2,
         .fnAction = [&actions, uLevel = vecStack.size() - 2] { actions.openStackLevel(uLevel); }});
    MenuEntry name{.eKind = Kind::Menu,
                   .sLabel = escapeCaption(fileName(vecStack.back())) + (actions.isUnsaved() ? "*" : ""),
                   .sId = "Name",
                   .sTip =
                       escapeCaption(vecStack.back()) + " #CCAACC { " + actions.documentUuid().text() + " }"};
    for (size_t i = vecStack.size() - 1; i-- > 0;)
        name.vecChildren.push_back({.sLabel = escapeCaption(fileName(vecStack[i])),
                                    .sTip = escapeCaption(vecStack[i]),
                                    .fnAction = [&actions, i] { actions.openStackLevel(i); }});
    vecBar.push_back(std::move(name));
    vecBar.push_back(buildHistoryMenu(actions));
    return vecBar;
}

} // namespace tilebuilder
