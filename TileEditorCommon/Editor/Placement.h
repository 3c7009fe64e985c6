#pragma once // How a thing stands that is placed by hand.

#include "KestrelCommon/Core/Transform.h"

#include <functional>
#include <glm/vec3.hpp>

namespace tilebuilder
{

/// What the user wants of a placed thing.
struct PlacementWish
{
    bool bRandomTurn = true;    ///< about the world's Z
    bool bVaryAndAlign = false; ///< a random size too, and along the ground's slope
    bool bSnap = false;
};

/// Models have +Y up: upright is a quarter turn about X. A quarter of a metre is their unit.
constexpr glm::quat UprightRotation{0.70710677f, 0.70710677f, 0.0f, 0.0f};
constexpr float UnitScale = 0.25f;

/// To steps of 0.25 m when snapping.
[[nodiscard]] glm::vec3 placedAt(const glm::vec3& hit, bool bSnap);

/// Upright at a hit. The numbers come from fnRandom, 0 to 32767.
[[nodiscard]] Transform placeUpright(const glm::vec3& hit, const glm::vec3& normal, const PlacementWish& wish,
                                     const std::function<uint32_t()>& fnRandom);

} // namespace tilebuilder
