#pragma once // Place, turn and size of a thing in the world.

#include <glm/gtc/quaternion.hpp>
#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>

/// Metres; rotation a unit quaternion, stored x, y, z, w; scale per axis.
struct Transform
{
    glm::vec3 position{0.0f};
    glm::quat rotation{1.0f, 0.0f, 0.0f, 0.0f};
    glm::vec3 scale{1.0f};

    bool operator==(const Transform&) const = default;

    /// A point of the thing's own space, placed in the world.
    [[nodiscard]] glm::vec3 apply(const glm::vec3& point) const
    {
        return position + rotation * (scale * point);
    }

    [[nodiscard]] glm::mat4 matrix() const
    {
        glm::mat4 result = glm::mat4_cast(rotation);
        result[0] *= scale.x;
        result[1] *= scale.y;
        result[2] *= scale.z;
        result[3] = glm::vec4(position, 1.0f);
        return result;
    }
};

/// The inner one placed by the outer one. Scales multiply axis by axis, so a turned thing within one
/// of unequal scales isn't sheared.
[[nodiscard]] inline Transform operator*(const Transform& outer, const Transform& inner)
{
    return {outer.apply(inner.position), outer.rotation * inner.rotation, outer.scale * inner.scale};
}
