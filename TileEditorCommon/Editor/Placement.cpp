#include "TileEditorCommon/Editor/Placement.h"

#include <cmath>
#include <glm/common.hpp>
#include <glm/geometric.hpp>

namespace tilebuilder
{

namespace
{

constexpr float s_fHalfTurnPerStep = 9.587673e-5f; ///< radians of a half angle: pi over 32767
constexpr float s_fScalePerStep = 6.103702e-6f;    ///< from 0.15 to 0.35
constexpr float s_fLeastScale = 0.15f;
constexpr float s_fLeastSlope = 0.001f; ///< radians
constexpr float s_fSnapSteps = 4.0f;    ///< a metre

} // namespace

glm::vec3 placedAt(const glm::vec3& hit, bool bSnap)
{
    return bSnap ? glm::round(hit * s_fSnapSteps) / s_fSnapSteps : hit;
}

Transform placeUpright(const glm::vec3& hit, const glm::vec3& normal, const PlacementWish& wish,
                       const std::function<uint32_t()>& fnRandom)
{
    const glm::vec3 up(0.0f, 0.0f, 1.0f);
    Transform result{placedAt(hit, wish.bSnap), UprightRotation, glm::vec3(UnitScale)};
    if (wish.bRandomTurn)
    {
        const float fHalf = static_cast<float>(fnRandom()) * s_fHalfTurnPerStep;
        result.rotation = glm::quat(std::cos(fHalf), 0.0f, 0.0f, std::sin(fHalf)) * result.rotation;
    }
    if (wish.bVaryAndAlign)
    {
        result.scale = glm::vec3(static_cast<float>(fnRandom()) * s_fScalePerStep + s_fLeastScale);
        const float fSlope = std::acos(glm::clamp(glm::dot(normal, up), -1.0f, 1.0f));
        const glm::vec3 axis = glm::cross(up, normal);
        if (fSlope > s_fLeastSlope && glm::dot(axis, axis) > 0.0f)
            result.rotation = glm::angleAxis(fSlope, glm::normalize(axis)) * result.rotation;
    }
    return result;
}

} // namespace tilebuilder
