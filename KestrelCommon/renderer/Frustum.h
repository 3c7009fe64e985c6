#pragma once // What of the world a view can see.

#include "KestrelCommon/renderer/ClutterMesh.h"

#include <array>

#include <glm/mat4x4.hpp>
#include <glm/vec4.hpp>

namespace rend
{

/// Six half spaces, from a matrix to clip space with depth 0 to 1.
class Frustum
{
public:
    explicit Frustum(const glm::mat4& viewProjection)
    {
        const glm::mat4 rows = glm::transpose(viewProjection);
        m_arrPlanes = {rows[3] + rows[0], rows[3] - rows[0], rows[3] + rows[1],
                       rows[3] - rows[1], rows[2],           rows[3] - rows[2]};
    }

    /// False only when the whole box is beyond one of the planes.
    [[nodiscard]] bool touches(const Aabb& box) const
    {
        for (const glm::vec4& plane : m_arrPlanes)
        {
            const glm::vec3 corner(plane.x > 0.0f ? box.highest.x : box.lowest.x,
                                   plane.y > 0.0f ? box.highest.y : box.lowest.y,
                                   plane.z > 0.0f ? box.highest.z : box.lowest.z);
            if (plane.x * corner.x + plane.y * corner.y + plane.z * corner.z + plane.w < 0.0f)
                return false;
        }
        return true;
    }

private:
    std::array<glm::vec4, 6> m_arrPlanes;
};

} // namespace rend
