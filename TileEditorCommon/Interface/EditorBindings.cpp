#include "TileEditorCommon/Interface/EditorBindings.h"

#include "KestrelCommon/Platform/VirtualKeys.h"
#include "TileEditorCommon/Contracts/EditorActionsI.h"
#include "TileEditorCommon/Contracts/EditorInterfaceI.h"
#include "TileEditorCommon/Interface/EntityBindings.h"
#include "TileEditorCommon/Interface/KeyBindings.h"

namespace tilebuilder
{

namespace
{

constexpr float s_fMetresPerStep = 2.0f;
constexpr float s_fFlySpeedPerStep = 0.2f;
constexpr float s_fMinFlySpeed = 0.3f;
constexpr float s_fMaxFlySpeed = 6.0f;

/// An action that also works while a widget other than an edit box has the keyboard.
KeyBinding always(uint32_t uVk, uint32_t uMods, std::function<void()> fnHandler)
{
    return {.uVk = uVk, .uMods = uMods, .bNeedsNoKeyFocus = false, .fnHandler = std::move(fnHandler)};
}

KeyBinding whenFree(uint32_t uVk, uint32_t uMods, std::function<void()> fnHandler)
{
    return {.uVk = uVk, .uMods = uMods, .fnHandler = std::move(fnHandler)};
}

void bindTools(KeyBindings& keys, EditorActionsI& actions)
{
    constexpr std::pair<EditorAction, uint8_t> s_arrTools[] = {{ActionToolPlace, ToolPlace},
                                                               {ActionToolHeight, ToolHeight},
                                                               {ActionToolMaterial, ToolMaterial},
                                                               {ActionToolColor, ToolColor},
                                                               {ActionToolClutter, ToolClutter}};
    uint32_t uKey = '1';
    for (const auto& [eAction, uTool] : s_arrTools)
        keys.bind(eAction, always(uKey++, 0, [&actions, uTool = uTool] { actions.setTool(uTool); }));

    uint8_t uMode = 0;
    for (const auto& [eAction, uVk] :
         {std::pair{ActionTranslate, 'Q'}, {ActionRotate, 'W'}, {ActionScale, 'E'}})
        keys.bind(eAction, always(static_cast<uint32_t>(uVk), 0,
                                  [&actions, uThis = uMode++]
                                  {
                                      actions.toolState().transformMode = uThis;
                                      actions.markInterfaceDirty(0);
                                  }));
}

void bindWheels(KeyBindings& keys, EditorActionsI& actions)
{
    const auto isPainting = [&actions]
    { return actions.toolState().tool <= ToolClutter && !actions.cameraStatus().flying; };
    keys.bindWheel(WheelMoveCamera,
                   {.fnHandler = [&actions](int32_t iSteps)
                    {
                        if (actions.toolState().tool == ToolPlace && !actions.cameraStatus().flying)
                            actions.moveCameraForward(s_fMetresPerStep * static_cast<float>(iSteps));
                    }});
    // While the view flies the cursor is hidden, so what lies under it doesn't matter.
    keys.bindWheel(WheelFlySpeed,
                   {.fnHandler = [&actions](int32_t iSteps)
                    {
                        const CameraStatus camera = actions.cameraStatus();
                        if (camera.flying)
                            actions.setFlySpeed(
                                std::clamp(camera.flySpeed - s_fFlySpeedPerStep * static_cast<float>(iSteps),
                                           s_fMinFlySpeed, s_fMaxFlySpeed));
                    }});
    keys.bindWheel(WheelStrength, {.uMods = ModControl,
                                   .fnHandler = [&actions, isPainting](int32_t iSteps)
                                   {
                                       if (!isPainting())
                                           return;
                                       EditorToolState& state = actions.toolState();
                                       state.strength = std::clamp(state.strength - iSteps, 0,
                                                                   EditorToolState::s_iMaxStrength);
                                       actions.markInterfaceDirty(0);
                                   }});
    keys.bindWheel(WheelSize, {.fnHandler = [&actions, isPainting](int32_t iSteps)
                               {
                                   if (!isPainting())
                                       return;
                                   EditorToolState& state = actions.toolState();
                                   state.size =
                                       std::clamp(state.size - iSteps, 0, EditorToolState::s_iMaxSize);
                                   actions.markInterfaceDirty(0);
                               }});
}

} // namespace

void bindEditorActions(KeyBindings& keys, EditorActionsI& actions, EditorInterfaceI& windows)
{
    keys.bind(ActionNew, whenFree('N', ModControl, [&windows] { windows.showNewWindow(); }));
    keys.bind(ActionSave, always('S', ModControl, [&actions] { actions.save(); }));
    keys.bind(ActionSaveAs, whenFree('S', ModControl | ModShift, [&windows] { windows.showSaveAsWindow(); }));
    keys.bind(ActionOpen, whenFree('O', ModControl, [&windows] { windows.showOpenWindow(); }));
    keys.bind(ActionInfo, whenFree('I', 0,
                                   [&actions, &windows]
                                   {
                                       windows.toggleStatusOverlay();
                                       actions.markInterfaceDirty(0);
                                   }));
    keys.bind(ActionFocus, always('F', 0, [&actions] { actions.focusSelection(false); }));
    keys.bind(ActionFocusLast, always('F', ModShift, [&actions] { actions.focusSelection(true); }));
    const auto bindInView = [&](EditorAction eAction, uint32_t uVk, std::function<void()> fnHandler)
    { keys.bind(eAction, {.uVk = uVk, .bNeedsPointerFree = false, .fnHandler = std::move(fnHandler)}); };
    bindInView(ActionCharacter, KeySpace, [&actions] { actions.placeCharacterAtCursor(); });
    bindInView(ActionMoveGrid, 'G', [&actions] { actions.placeGridAtCursor(); });
    keys.bind(ActionToggleGrid, whenFree('G', ModShift, [&actions] { actions.toggleGrid(); }));
    keys.bind(ActionOutliner, whenFree('O', ModShift, [&windows] { windows.toggleOutliner(); }));
    keys.bind(ActionHide, whenFree('H', 0, [&actions] { actions.hideSelection(); }));
    bindEntityActions(keys, actions);
    bindTools(keys, actions);
    bindWheels(keys, actions);
}

} // namespace tilebuilder
