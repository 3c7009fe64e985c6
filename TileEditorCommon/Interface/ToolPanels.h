#pragma once // Which panels a tool shows, and what the brush and height panels show. No GUI.

#include "MyGuiCommon/NumberBoxModel.h"
#include "TileEditorCommon/Contracts/EditorToolState.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace tilebuilder
{

class EditorActionsI;

struct ToolPanels
{
    bool bBrush = false;
    bool bTerrainBrush = false;
    bool bGroundMaterial = false;
    bool bColorEditor = false;
    bool bClutter = false;
    bool bProperties = false;
    bool bAssetLibrary = false;
    bool bOutliner = false; ///< unless it is switched off

    bool operator==(const ToolPanels&) const = default;
};

[[nodiscard]] ToolPanels panelsOf(uint8_t uTool);

/// A row of the brush window: a label and a number that is written straight into the tool state.
struct BrushRow
{
    const char* pLabel;
    const char* pTip;
    int32_t EditorToolState::*pField;
    NumberRange range;
};
[[nodiscard]] const std::array<BrushRow, 2>& brushRows();

/// A button of the brush window that chooses a falloff.
struct FalloffButton
{
    const Brush* pBrush = nullptr;
    std::string sIcon;
    std::string sTip;
    bool bChecked = false;
};
[[nodiscard]] std::vector<FalloffButton> falloffButtons(EditorActionsI& actions);

/// A radio entry of the height panel.
struct HeightEntry
{
    const char* pLabel;
    uint32_t uMode;
};
[[nodiscard]] const std::array<HeightEntry, 3>& heightEntries();

} // namespace tilebuilder
