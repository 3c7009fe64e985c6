#include "TileEditorCommon/Ground/BrushOutline.h"

#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

#include <numbers>

namespace tilebuilder
{

std::array<glm::vec3, BrushOutlinePoints> brushOutline(const EditorTerrainSurface& surface,
                                                       const glm::vec3& centre, float fRadius)
{
    std::array<glm::vec3, BrushOutlinePoints> arrPoints;
    for (size_t i = 0; i < BrushOutlinePoints; ++i)
    {
        const float fAngle = static_cast<float>(i) * (2.0f * std::numbers::pi_v<float> / BrushOutlinePoints);
        const float fX = centre.x + std::cos(fAngle) * fRadius;
        const float fY = centre.y + std::sin(fAngle) * fRadius;
        arrPoints[i] = {fX, fY, surface.isInside(fX, fY) ? surface.getHeight(fX, fY) : centre.z};
    }
    return arrPoints;
}

} // namespace tilebuilder
