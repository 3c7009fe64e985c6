#pragma once // Shapes of entities that rays can meet.

#include <cstdint>
#include <glm/vec3.hpp>
#include <optional>

namespace tilebuilder
{

struct RayHit
{
    glm::vec3 position{0.0f};
    glm::vec3 normal{0.0f, 0.0f, 1.0f}; ///< of unit length, on the side that the ray came from
    float fraction = 1.0f;              ///< of the way from the start of the ray to its end
};

/// For kinds whose models have surfaces to place things on. Main thread only.
class EntityShapesI
{
public:
    virtual ~EntityShapesI() = default;

    /// The first hit of a ray of the world with an entity; nothing for one without a shape.
    [[nodiscard]] virtual std::optional<RayHit> castRay(uint32_t uId, const glm::vec3& from,
                                                        const glm::vec3& to) const = 0;
};

} // namespace tilebuilder
