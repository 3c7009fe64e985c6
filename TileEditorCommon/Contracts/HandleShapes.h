#pragma once // The shapes that the handles of the transform tool are made of.

#include "TileEditorCommon/Contracts/EntityRenderI.h"

namespace tilebuilder
{

/// All lengths in metres; shapes are shaded by their facets, so that their form reads.

/// From the middle of its base to the tip.
void drawCone(EntityRenderI& render, const glm::vec3& base, const glm::vec3& tip, float fRadius,
              const glm::vec4& color);

/// A bar with a round cross-section.
void drawBar(EntityRenderI& render, const glm::vec3& start, const glm::vec3& end, float fRadius,
             const glm::vec4& color);

void drawCube(EntityRenderI& render, const glm::vec3& middle, const glm::quat& rotation, float fHalfSide,
              const glm::vec4& color);

/// Filled, from a corner along two sides, with an outline of full alpha.
void drawQuad(EntityRenderI& render, const glm::vec3& corner, const glm::vec3& sideA, const glm::vec3& sideB,
              const glm::vec4& color);

/// A circle around an axis of length 1; its cross-section is a square, so that it shows from all sides.
void drawRing(EntityRenderI& render, const glm::vec3& middle, const glm::vec3& axis, float fRadius,
              float fWidth, const glm::vec4& color);

/// A filled part of a circle around an axis of length 1: from a direction, turned by an angle (radians,
/// counter-clockwise about the axis).
void drawSector(EntityRenderI& render, const glm::vec3& middle, const glm::vec3& axis, const glm::vec3& from,
                float fAngle, float fRadius, const glm::vec4& color);

} // namespace tilebuilder
