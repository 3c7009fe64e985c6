#pragma once // Light and air of a scene, and where it is seen from.

#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

#include <array>
#include <cstdint>

namespace rend
{

/// Defaults: late morning with the sun from +X, +Y. Colours are linear and may pass 1.
struct RenderSettings
{
    glm::vec3 sunDirection{0.55f, 0.42f, 0.52f}; ///< towards the sun; any length but 0
    glm::vec3 sunColour{2.62f, 2.36f, 1.97f};
    glm::vec3 skyZenith{0.10f, 0.30f, 0.86f};
    glm::vec3 skyHorizon{0.60f, 0.80f, 1.06f};
    glm::vec3 skyNadir{0.22f, 0.30f, 0.40f};       ///< below the horizon
    glm::vec3 plainColour{0.120f, 0.128f, 0.088f}; ///< of what lies around a tile
    // Fog is measured by the distance to the far plane, where nothing is seen any more.
    float fogStart = 0.25f;   ///< clear air, as a part of it
    float fogHalvings = 1.2f; ///< how often a colour is halved over the whole of it
    float exposure = 0.9f;
    bool operator==(const RenderSettings&) const = default;
};

/// Where the eye is and what of the scene it sees.
struct SceneView
{
    glm::mat4 view{1.0f};       ///< world to view space; view space looks along -z
    glm::mat4 projection{1.0f}; ///< clip depth 1 (near) to 0 (far)
    bool bOrthographic = false;
    bool bLines = true; ///< debug lines
    /// Flat quads of this size (metres) at these corners; x, y of the smallest corner. At most 8.
    glm::vec2 quadSize{0.0f};
    std::array<glm::vec2, 8> arrQuads{};
    uint32_t uQuads = 0;
    bool operator==(const SceneView&) const = default;
};

} // namespace rend
