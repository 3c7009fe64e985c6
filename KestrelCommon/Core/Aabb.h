#pragma once // An axis-aligned box.

#include <glm/vec3.hpp>

/// Metres, or the units of the thing that it bounds. The default is the null box at the origin.
struct Aabb
{
    glm::vec3 lowest{0.0f};
    glm::vec3 highest{0.0f};

    [[nodiscard]] glm::vec3 centre() const { return lowest + (highest - lowest) * 0.5f; }
    [[nodiscard]] glm::vec3 size() const { return highest - lowest; }
    [[nodiscard]] bool isEmpty() const { return lowest == highest; }

    bool operator==(const Aabb&) const = default;
};
