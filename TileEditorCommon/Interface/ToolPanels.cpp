#include "TileEditorCommon/Interface/ToolPanels.h"

#include "TileEditorCommon/Contracts/EditorActionsI.h"

namespace tilebuilder
{

ToolPanels panelsOf(uint8_t uTool)
{
    return {.bBrush = uTool <= ToolClutter,
            .bTerrainBrush = uTool == ToolHeight,
            .bGroundMaterial = uTool == ToolMaterial,
            .bColorEditor = uTool == ToolColor,
            .bClutter = uTool == ToolClutter,
            .bProperties = uTool == ToolPlace,
            .bAssetLibrary = uTool == ToolPlace,
            .bOutliner = uTool == ToolPlace};
}

const std::array<BrushRow, 2>& brushRows()
{
    static constexpr std::array<BrushRow, 2> s_arrRows{BrushRow{"Strength",
                                                                "Ctrl + wheel",
                                                                &EditorToolState::strength,
                                                                {0, 100, 0, EditorToolState::s_iMaxStrength}},
                                                       BrushRow{"Size",
                                                                "Diameter in metres; wheel",
                                                                &EditorToolState::size,
                                                                {0, 100, 0, EditorToolState::s_iMaxSize}}};
    return s_arrRows;
}

std::vector<FalloffButton> falloffButtons(EditorActionsI& actions)
{
    std::vector<FalloffButton> vecButtons;
    for (const BrushChoice& choice : actions.brushes())
    {
        std::string sPicture = choice.sName;
        for (char& c : sPicture)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        vecButtons.push_back({.pBrush = choice.pBrush,
                              .sIcon = "$GAME_DATA/Gui/Editor/ed_falloff_" + sPicture + ".png",
                              .sTip = choice.sName + " falloff",
                              .bChecked = choice.pBrush == actions.toolState().pBrush});
    }
    return vecButtons;
}

const std::array<HeightEntry, 3>& heightEntries()
{
    static constexpr std::array<HeightEntry, 3> s_arrEntries{
        HeightEntry{"Height", HeightRaise}, {"Flatten", HeightFlatten}, {"Smooth", HeightSmooth}};
    return s_arrEntries;
}

} // namespace tilebuilder
