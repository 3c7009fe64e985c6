#pragma once // The circle that shows a brush on the ground.

#include <array>
#include <glm/vec3.hpp>

namespace tilebuilder
{

class EditorTerrainSurface;

constexpr size_t BrushOutlinePoints = 128;

/// Points of a closed line at equal angles, each on the ground or, off the tile, at the height of
/// the centre. Draw nothing when the centre isn't inside the surface.
[[nodiscard]] std::array<glm::vec3, BrushOutlinePoints> brushOutline(const EditorTerrainSurface& surface,
                                                                     const glm::vec3& centre, float fRadius);

} // namespace tilebuilder
