#pragma once // The audio engine's place: remembers where the ears are.

#include <glm/vec3.hpp>

namespace platform
{

/// Metres and unit vectors in world space.
struct AudioListener
{
    glm::vec3 position{0.0f};
    glm::vec3 forward{0.0f, 1.0f, 0.0f};
    glm::vec3 up{0.0f, 0.0f, 1.0f};
};

} // namespace platform
