#pragma once // Where a ray meets a model.

#include "KestrelCommon/Resources/Model.h"

namespace resource
{

struct ModelHit
{
    float fraction = 1.0f;              ///< of the way from the start to the end
    glm::vec3 normal{0.0f, 1.0f, 0.0f}; ///< of the triangle, of length 1
};

/// The first triangle between two points of the model's own space, seen from either side. Any thread.
[[nodiscard]] std::optional<ModelHit> castRayAt(const Model& model, const glm::vec3& from,
                                                const glm::vec3& to);

} // namespace resource
