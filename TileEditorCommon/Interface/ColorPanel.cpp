#include "TileEditorCommon/Interface/ColorPanel.h"

#include "TileEditorCommon/Contracts/EditorActionsI.h"

namespace tilebuilder
{

namespace
{

constexpr ColorRgba s_white{1.0f, 1.0f, 1.0f, 1.0f};

} // namespace

ColorPanel colorPanel(const EditorToolState& state)
{
    return {.pTitle = state.colorTargetKind == ColorTargetGround ? "Ground Color" : "Color",
            .color = state.pColorTarget ? *state.pColorTarget : s_white,
            .bTarget = state.pColorTarget != nullptr,
            .bAlpha = state.colorTargetKind != ColorTargetGround,
            .bArmed = state.pickState == PickArmed};
}

void resetColor(EditorActionsI& actions)
{
    actions.changeColor(s_white);
    actions.markInterfaceDirty(0);
}

void toggleEyedropper(EditorActionsI& actions)
{
    uint8_t& uPickState = actions.toolState().pickState;
    uPickState = uPickState == PickArmed ? PickNormal : PickArmed;
    actions.markInterfaceDirty(0);
}

} // namespace tilebuilder
