#pragma once // Turns as three angles, the way people type them.

#include <algorithm>
#include <array>
#include <cmath>
#include <glm/gtc/quaternion.hpp>
#include <glm/mat3x3.hpp>

/// Degrees around X, then Y, then Z, all axes standing still; counterclockwise seen against an axis.
using EulerAngles = std::array<float, 3>;

/// Around Y -90 to 90, around the others -180 to 180. Where Y is upright X and Z turn alike: X is 0.
[[nodiscard]] inline EulerAngles eulerAngles(const glm::quat& rotation)
{
    constexpr float s_fDegrees = 57.29578f;
    constexpr float s_fUpright = 0.999999f;
    const glm::mat3 m = glm::mat3_cast(glm::normalize(rotation));
    const float fSine = std::clamp(-m[0][2], -1.0f, 1.0f);
    if (std::abs(fSine) > s_fUpright)
        return {0.0f, std::copysign(90.0f, fSine), std::atan2(-m[1][0], m[1][1]) * s_fDegrees};
    return {std::atan2(m[1][2], m[2][2]) * s_fDegrees, std::asin(fSine) * s_fDegrees,
            std::atan2(m[0][1], m[0][0]) * s_fDegrees};
}

[[nodiscard]] inline glm::quat rotationFrom(const EulerAngles& degrees)
{
    constexpr float s_fRadians = 0.017453292f;
    return glm::angleAxis(degrees[2] * s_fRadians, glm::vec3(0.0f, 0.0f, 1.0f)) *
           glm::angleAxis(degrees[1] * s_fRadians, glm::vec3(0.0f, 1.0f, 0.0f)) *
           glm::angleAxis(degrees[0] * s_fRadians, glm::vec3(1.0f, 0.0f, 0.0f));
}
