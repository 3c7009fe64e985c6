#pragma once // The triangles by which the handles of the transform tool are taken.

#include <array>
#include <cstdint>
#include <glm/vec3.hpp>
#include <span>
#include <vector>

namespace tilebuilder
{

using ToolTriangle = std::array<glm::vec3, 3>;

/// Lengths in the tool's own space, where an arrow is 1 long.
namespace ToolShape
{
inline constexpr float barStart = 0.14f;
inline constexpr float barEnd = 0.8f;
inline constexpr float barRadius = 0.018f;
inline constexpr float coneRadius = 0.065f;
inline constexpr float planeNear = 0.3f; ///< a plane's square begins here on both axes
inline constexpr float planeFar = 0.54f;
inline constexpr float ringRadius = 0.86f;
inline constexpr float ringWidth = 0.036f;
inline constexpr float cubeMiddle = 0.88f;
inline constexpr float cubeHalf = 0.06f;
inline constexpr float grip = 0.055f; ///< half the thickness of what the mouse can take
} // namespace ToolShape

/// A handle as the mouse meets it: thicker than it is drawn.
struct ToolMesh
{
    uint8_t uHandle;
    std::vector<ToolTriangle> vecTriangles;
};

/// Of a mode; none for a mode that isn't there.
[[nodiscard]] std::span<const ToolMesh> toolMeshes(uint8_t uMode);

} // namespace tilebuilder
