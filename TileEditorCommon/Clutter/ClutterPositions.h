#pragma once // Where on a patch clutter may stand.

#include <array>
#include <vector>

#include <glm/vec2.hpp>

namespace tilebuilder
{

/// Four lists, one a level, in metres from the patch's corner. Shared by all patches.
using ClutterPositions = std::array<std::vector<glm::vec2>, 4>;

/// iPatchSize: metres on a side. iDensity: 0 (none) to 4, clamped.
///
/// The places are the crossings of circles around two points: a lattice in the two distances, which on
/// the plane has no rows that the eye can follow.
[[nodiscard]] ClutterPositions makeClutterPositions(int iPatchSize, int iDensity);

} // namespace tilebuilder
