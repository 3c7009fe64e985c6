#pragma once // A clutter instance as the GPU takes it.

#include <array>
#include <cstdint>

#include <glm/vec3.hpp>

namespace rend
{

/// The bits of a half float. Rounds by adding half a unit of the last place, without ties to even; what
/// is too small becomes a zero of its sign, what is too large an infinity.
[[nodiscard]] uint16_t toHalf(float fValue);

struct ClutterInstance
{
    float x = 0.0f; ///< metres in the world
    float y = 0.0f;
    std::array<uint16_t, 3> normal{}; ///< half floats
    uint16_t z = 0;                   ///< half float, metres
    uint32_t colorIndex = 0; ///< red highest; in the lowest byte the global index or the impostor index
};
static_assert(sizeof(ClutterInstance) == 20);

/// color: red highest; its lowest byte gives way to the index.
[[nodiscard]] ClutterInstance makeClutterInstance(uint8_t uIndex, const glm::vec3& position,
                                                  const glm::vec3& normal, uint32_t color);

/// Half floats of a clutter mesh's vertex.
struct ClutterVertex
{
    std::array<uint16_t, 4> position{}; ///< quarter metres, Z in quarters of the type's height; w is 1
    std::array<uint16_t, 2> texCoord{}; ///< row 0 of the picture is 0
    std::array<uint16_t, 4> normal{};   ///< w is 0
};
static_assert(sizeof(ClutterVertex) == 20);

} // namespace rend
