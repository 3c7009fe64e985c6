#pragma once // The bits that tell the interface what changed.

#include <cstdint>

namespace tilebuilder
{

/// Bits of TileEditor::markChanged and of the interface refresh.
enum ChangeMask : uint32_t
{
    ChangeEntitySet = 0x01,    ///< an entity was added, removed or moved
    ChangeGrid = 0x02,         ///< the grid entity
    ChangeEntityValues = 0x08, ///< an entity's own values
    ChangeSurface = 0x10,      ///< ground heights, colours or materials
    ChangeClutter = 0x20,
    ChangeParameters = 0x40,
    ChangeColorPicked = 0x80,
    ChangeSelection = 0x100, ///< refresh only, no undo step
    ChangeVoxelMesh = 0x200,
    ChangeNodeList = 0x800, ///< refresh only, no undo step
};

} // namespace tilebuilder
