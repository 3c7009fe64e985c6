#pragma once // What the colour editor window shows and does. No GUI.

#include "TileEditorCommon/Contracts/EditorToolState.h"

namespace tilebuilder
{

class EditorActionsI;

struct ColorPanel
{
    const char* pTitle = "Color";
    ColorRgba color{1.0f, 1.0f, 1.0f, 1.0f};
    bool bTarget = false; ///< there is something to colour
    bool bAlpha = false;  ///< alpha can be chosen
    bool bArmed = false;  ///< the next click picks

    bool operator==(const ColorPanel&) const = default;
};

[[nodiscard]] ColorPanel colorPanel(const EditorToolState& state);

/// White and opaque.
void resetColor(EditorActionsI& actions);
/// Arms the eyedropper; a second time lets it go.
void toggleEyedropper(EditorActionsI& actions);

} // namespace tilebuilder
