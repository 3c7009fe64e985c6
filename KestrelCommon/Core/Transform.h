#pragma once // Place, turn and size of a thing in the world.

#include <glm/gtc/quaternion.hpp>
#include <glm/vec3.hpp>

/// Metres; rotation a unit quaternion, stored x, y, z, w; scale per axis.
struct Transform
{
    glm::vec3 position{0.0f};
    glm::quat rotation{1.0f, 0.0f, 0.0f, 0.0f};
    glm::vec3 scale{1.0f};
};
