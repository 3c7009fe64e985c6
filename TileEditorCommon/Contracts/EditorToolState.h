#pragma once // The state of the tools.

#include "KestrelCommon/Core/Uuid.h"
#include "TileEditorCommon/Contracts/Entity.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

namespace tilebuilder
{

struct Brush;

enum EditorTool : uint8_t
{
    ToolHeight = 0,
    ToolMaterial = 1,
    ToolColor = 2,
    ToolClutter = 3,
    ToolPlace = 4,
};

enum HeightMode : uint32_t
{
    HeightRaise = 0,
    HeightFlatten = 1,
    HeightSmooth = 2,
};

enum PickState : uint8_t
{
    PickArmed = 0,    ///< the next left click picks a colour
    PickConsumed = 1, ///< a click was taken, nothing paints until the button is up
    PickNormal = 2,
};

/// What kind of value a colour target is.
enum ColorTargetKind : uint8_t
{
    ColorTargetNone = 0,
    ColorTargetEntity = 1, ///< with alpha
    ColorTargetGround = 2, ///< no alpha to choose
};

/// Red, green, blue and alpha, 0 to 1.
using ColorRgba = std::array<float, 4>;
using ColorCallback = std::function<void(const ColorRgba&)>;

/// Plain values; owned by the editor object, read and written by the windows.
struct EditorToolState
{
    static constexpr int s_iMaxStrength = 100;
    static constexpr int s_iMaxSize = 10000;
    static constexpr uint32_t s_uDefaultViewMask = 1020;
    static constexpr uint32_t s_uAllKindsMask = 0x1FC; ///< of "Show All"

    uint8_t transformMode = 0; ///< 0 translate, 1 rotate, 2 scale
    uint8_t tool = ToolHeight;
    uint8_t pickState = PickNormal;
    uint8_t selectMode = 1; ///< 1 normal; 0 connect mode
    uint32_t heightMode = HeightRaise;
    const Brush* pBrush = nullptr;
    int32_t strength = 50;                     ///< 0 to 100
    int32_t size = 25;                         ///< diameter in metres, 0 to 10000
    bool noPlacement = true;                   ///< no placement drag is under way
    uint8_t placementType = 0;                 ///< EntityTypeId of what is placed
    std::string placementPath;                 ///< keyed path of the prefab or blueprint to place
    Uuid placementUuid;                        ///< of what is placed, for kinds that are named by one
    Entity placementHandle;                    ///< what the drag moves; the null entity until it is made
    std::unordered_set<uint32_t> placementIds; ///< moved by the drag, so that its rays pass through
    bool randomZRotation = true;               ///< placed things are turned at random
    std::vector<uint8_t> clutterSelection;
    ColorRgba entityColor{1.0f, 1.0f, 1.0f, 1.0f};
    ColorRgba groundColor{1.0f, 1.0f, 1.0f, 1.0f};
    std::string colorSlotName;         ///< slot of an asset that the eyedropper reads
    ColorRgba* pColorTarget = nullptr; ///< what the eyedropper and the colour editor write to; borrowed
    uint8_t colorTargetKind = ColorTargetNone;
    ColorCallback onColorChanged; ///< after the colour editor wrote the target
    ColorCallback onColorPicked;  ///< after the eyedropper wrote the target
    uint32_t groundMaterial = 0;
    uint32_t viewMask = s_uDefaultViewMask;
};

} // namespace tilebuilder
