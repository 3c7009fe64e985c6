#include "KestrelCommon/Resources/ModelRay.h"

#include <cmath>
#include <glm/geometric.hpp>

namespace resource
{

namespace
{

bool meetsBox(const Aabb& box, const glm::vec3& from, const glm::vec3& way)
{
    float fIn = 0.0f;
    float fOut = 1.0f;
    for (int i = 0; i < 3; ++i)
    {
        if (std::abs(way[i]) < 1.0e-12f)
        {
            if (from[i] < box.lowest[i] || from[i] > box.highest[i])
                return false;
            continue;
        }
        const float fA = (box.lowest[i] - from[i]) / way[i];
        const float fB = (box.highest[i] - from[i]) / way[i];
        fIn = std::max(fIn, std::min(fA, fB));
        fOut = std::min(fOut, std::max(fA, fB));
    }
    return fIn <= fOut + 1.0e-5f;
}

} // namespace

std::optional<ModelHit> castRayAt(const Model& model, const glm::vec3& from, const glm::vec3& to)
{
    const glm::vec3 way = to - from;
    if (!meetsBox(model.box, from, way))
        return std::nullopt;
    std::optional<ModelHit> nearest;
    for (size_t u = 0; u + 2 < model.vecIndices.size(); u += 3)
    {
        const glm::vec3& corner = model.vecPositions[model.vecIndices[u]];
        const glm::vec3 edgeA = model.vecPositions[model.vecIndices[u + 1]] - corner;
        const glm::vec3 edgeB = model.vecPositions[model.vecIndices[u + 2]] - corner;
        const glm::vec3 across = glm::cross(way, edgeB);
        const float fVolume = glm::dot(edgeA, across);
        if (std::abs(fVolume) < 1.0e-12f)
            continue;
        const glm::vec3 offset = from - corner;
        const float fA = glm::dot(offset, across) / fVolume;
        const glm::vec3 side = glm::cross(offset, edgeA);
        const float fB = glm::dot(way, side) / fVolume;
        const float fAlong = glm::dot(edgeB, side) / fVolume;
        if (fA < 0.0f || fB < 0.0f || fA + fB > 1.0f || fAlong < 0.0f ||
            fAlong > (nearest ? nearest->fraction : 1.0f))
            continue;
        nearest = ModelHit{fAlong, glm::cross(edgeA, edgeB)};
    }
    if (nearest)
        nearest->normal = glm::normalize(nearest->normal);
    return nearest;
}

} // namespace resource
