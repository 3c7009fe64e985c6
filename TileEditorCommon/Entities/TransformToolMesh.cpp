#include "TileEditorCommon/Entities/TransformToolMesh.h"

#include "TileEditorCommon/Entities/TransformTool.h"

#include <cmath>
#include <numbers>

namespace tilebuilder
{

namespace
{

constexpr int s_iRingSteps = 48;

/// A point by its parts along an axis and the two that follow it.
glm::vec3 around(int iAxis, float fAlong, float fU, float fV)
{
    glm::vec3 point;
    point[iAxis] = fAlong;
    point[(iAxis + 1) % 3] = fU;
    point[(iAxis + 2) % 3] = fV;
    return point;
}

void addFacet(ToolMesh& mesh, const glm::vec3& a, const glm::vec3& b, const glm::vec3& c, const glm::vec3& d)
{
    mesh.vecTriangles.push_back({a, b, c});
    mesh.vecTriangles.push_back({a, c, d});
}

/// A box along an axis with a square cross-section.
void addBox(ToolMesh& mesh, int iAxis, float fStart, float fEnd, float fHalf)
{
    constexpr float s_arrCorners[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
    const auto point = [&](int iCorner, float fAlong) {
        return around(iAxis, fAlong, s_arrCorners[iCorner % 4][0] * fHalf,
                      s_arrCorners[iCorner % 4][1] * fHalf);
    };
    for (int i = 0; i < 4; ++i)
        addFacet(mesh, point(i, fStart), point(i + 1, fStart), point(i + 1, fEnd), point(i, fEnd));
    for (const float fAlong : {fStart, fEnd})
        addFacet(mesh, point(0, fAlong), point(1, fAlong), point(2, fAlong), point(3, fAlong));
}

void addSquare(ToolMesh& mesh, int iAxis)
{
    using namespace ToolShape;
    addFacet(mesh, around(iAxis, 0, planeNear, planeNear), around(iAxis, 0, planeFar, planeNear),
             around(iAxis, 0, planeFar, planeFar), around(iAxis, 0, planeNear, planeFar));
}

void addRing(ToolMesh& mesh, int iAxis)
{
    constexpr float s_arrCorners[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
    const auto point = [&](int iStep, int iCorner)
    {
        const float fAngle = static_cast<float>(iStep % s_iRingSteps) * 2.0f * std::numbers::pi_v<float> /
                             static_cast<float>(s_iRingSteps);
        const float fRadius = ToolShape::ringRadius + s_arrCorners[iCorner % 4][0] * ToolShape::grip;
        return around(iAxis, s_arrCorners[iCorner % 4][1] * ToolShape::grip, fRadius * std::cos(fAngle),
                      fRadius * std::sin(fAngle));
    };
    for (int i = 0; i < s_iRingSteps; ++i)
        for (int iCorner = 0; iCorner < 4; ++iCorner)
            addFacet(mesh, point(i, iCorner), point(i + 1, iCorner), point(i + 1, iCorner + 1),
                     point(i, iCorner + 1));
}

std::vector<ToolMesh> makeMeshes(uint8_t uMode)
{
    using namespace ToolShape;
    std::vector<ToolMesh> vecMeshes;
    for (int iAxis = 0; iAxis < 3; ++iAxis)
    {
        const auto uAxis = static_cast<uint8_t>(iAxis);
        if (uMode == ModeTranslate)
        {
            addBox(vecMeshes.emplace_back(ToolMesh{static_cast<uint8_t>(HandleMove + uAxis), {}}), iAxis,
                   barStart, 1.0f, grip);
            addSquare(vecMeshes.emplace_back(ToolMesh{static_cast<uint8_t>(HandlePlane + uAxis), {}}), iAxis);
        }
        else if (uMode == ModeRotate)
            addRing(vecMeshes.emplace_back(ToolMesh{static_cast<uint8_t>(HandleRing + uAxis), {}}), iAxis);
        else
        {
            ToolMesh& mesh = vecMeshes.emplace_back(ToolMesh{static_cast<uint8_t>(HandleScale + uAxis), {}});
            addBox(mesh, iAxis, barStart, cubeMiddle, grip);
            addBox(mesh, iAxis, cubeMiddle - cubeHalf, cubeMiddle + cubeHalf, cubeHalf * 1.2f);
        }
    }
    return vecMeshes;
}

} // namespace

std::span<const ToolMesh> toolMeshes(uint8_t uMode)
{
    static const std::array s_arrMeshes{makeMeshes(ModeTranslate), makeMeshes(ModeRotate),
                                        makeMeshes(ModeScale)};
    if (uMode >= s_arrMeshes.size())
        return {};
    return s_arrMeshes[uMode];
}

} // namespace tilebuilder
