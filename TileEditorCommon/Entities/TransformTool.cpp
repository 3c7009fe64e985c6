#include "TileEditorCommon/Entities/TransformTool.h"

#include "TileEditorCommon/Entities/TransformToolMesh.h"

#include <cmath>
#include <glm/geometric.hpp>
#include <glm/trigonometric.hpp>
#include <numbers>

namespace tilebuilder
{

namespace
{

constexpr float s_fPartOfView = 0.3f;   ///< an arrow's length to half the height of the view
constexpr float s_fLeastSize = 0.01f;   ///< metres
constexpr float s_fEndOnAxis = 0.985f;  ///< cosine to the view from which an axis is seen end-on
constexpr float s_fEdgeOnPlane = 0.12f; ///< cosine of its normal below which a plane is seen edge-on
constexpr float s_fEdgeOnRing = 0.15f;  ///< same for the plane in which a ring's angle is measured
constexpr float s_fParallel = 1e-4f;    ///< squared sine of ray and line below which they have no measure
constexpr float s_fLeastDistance =
    1e-3f; ///< sizes of the tool from the centre at which a ratio has a meaning

float snapped(float fValue, float fStep)
{
    return std::round(fValue / fStep) * fStep;
}

glm::vec3 unit(int iAxis)
{
    glm::vec3 axis(0.0f);
    axis[iAxis] = 1.0f;
    return axis;
}

/// The ray of the same eye and length through a point.
ToolRay rayThrough(const glm::vec3& point, const ToolRay& ray)
{
    return {ray.start, ray.start + glm::normalize(point - ray.start) * glm::length(ray.end - ray.start)};
}

/// Where a ray meets a triangle, seen from either side, as a part of the ray; nothing when it misses.
std::optional<float> meetTriangle(const glm::vec3& from, const glm::vec3& along, const ToolTriangle& triangle)
{
    const glm::vec3 sideA = triangle[1] - triangle[0];
    const glm::vec3 sideB = triangle[2] - triangle[0];
    const glm::vec3 across = glm::cross(along, sideB);
    const float fScale = glm::dot(sideA, across);
    if (std::abs(fScale) < 1e-12f)
        return std::nullopt;
    const glm::vec3 offset = from - triangle[0];
    const float fU = glm::dot(offset, across) / fScale;
    const glm::vec3 turned = glm::cross(offset, sideA);
    const float fV = glm::dot(along, turned) / fScale;
    const float fPart = glm::dot(sideB, turned) / fScale;
    if (!(fU >= 0.0f && fV >= 0.0f && fU + fV <= 1.0f && fPart >= 0.0f && fPart <= 1.0f))
        return std::nullopt;
    return fPart;
}

} // namespace

float ToolPose::sizeFor(const glm::vec3& centre, const glm::vec3& eye, float fTanHalfFov)
{
    return std::max(s_fLeastSize, glm::length(centre - eye) * fTanHalfFov * s_fPartOfView);
}

glm::vec3 ToolPose::axis(int iAxis) const
{
    return rotation * unit(iAxis);
}

bool TransformTool::isUsable(uint8_t uHandle) const
{
    const glm::vec3 toEye = m_pose.eye - m_pose.centre;
    const float fDistance = glm::length(toEye);
    if (!(fDistance > 0.0f))
        return false;
    const float fCosine = std::abs(glm::dot(m_pose.axis(uHandle % 3), toEye)) / fDistance;
    if (uHandle < HandlePlane || (uHandle >= HandleScale && uHandle < HandleNone))
        return fCosine < s_fEndOnAxis;
    return uHandle >= HandleRing || fCosine > s_fEdgeOnPlane;
}

std::optional<HandleHit> TransformTool::hit(const ToolRay& ray, uint8_t uMode) const
{
    // In the tool's own space, where an arrow is 1 long.
    const glm::quat back = glm::conjugate(m_pose.rotation);
    const glm::vec3 from = back * (ray.start - m_pose.centre) / m_pose.size;
    const glm::vec3 along = back * (ray.end - ray.start) / m_pose.size;
    const glm::vec3 eye = back * (m_pose.eye - m_pose.centre);

    std::optional<HandleHit> nearest;
    float fNearest = 2.0f;
    for (const ToolMesh& mesh : toolMeshes(uMode))
    {
        if (!isUsable(mesh.uHandle))
            continue;
        for (const ToolTriangle& triangle : mesh.vecTriangles)
        {
            const auto fPart = meetTriangle(from, along, triangle);
            if (!fPart || *fPart >= fNearest)
                continue;
            if (uMode == ModeRotate && glm::dot(from + along * *fPart, eye) <= 0.0f)
                continue;
            fNearest = *fPart;
            const glm::vec3 point = ray.start + (ray.end - ray.start) * *fPart;
            nearest = HandleHit{mesh.uHandle, point, glm::length(point - ray.start)};
        }
    }
    return nearest;
}

/// How far from its origin the line comes closest to the ray, metres.
std::optional<float> TransformTool::alongLine(const glm::vec3& origin, const glm::vec3& direction,
                                              const ToolRay& ray) const
{
    const glm::vec3 along = glm::normalize(ray.end - ray.start);
    const glm::vec3 offset = origin - ray.start;
    const float fCosine = glm::dot(along, direction);
    const float fSquaredSine = 1.0f - fCosine * fCosine;
    if (!(fSquaredSine > s_fParallel))
        return std::nullopt;
    const float fOnLine = (fCosine * glm::dot(along, offset) - glm::dot(direction, offset)) / fSquaredSine;
    const float fOnRay = glm::dot(offset + direction * fOnLine, along);
    if (!(fOnRay > 0.0f && fOnRay <= glm::length(ray.end - ray.start)))
        return std::nullopt;
    return fOnLine;
}

std::optional<glm::vec3> TransformTool::onPlane(const glm::vec3& origin, const glm::vec3& normal,
                                                const ToolRay& ray) const
{
    const glm::vec3 along = ray.end - ray.start;
    const float fFall = glm::dot(along, normal);
    if (std::abs(fFall) < 1e-6f * glm::length(along))
        return std::nullopt;
    const float fPart = glm::dot(origin - ray.start, normal) / fFall;
    if (!(fPart > 0.0f && fPart <= 1.0f))
        return std::nullopt;
    return ray.start + along * fPart;
}

/// How far along an axis the mouse went since it took the handle, from where and to where, metres from
/// the centre.
std::optional<std::pair<float, float>> TransformTool::alongAxis(int iAxis, const glm::vec3& dragPoint,
                                                                const ToolRay& ray) const
{
    const auto fFrom = alongLine(m_pose.centre, m_pose.axis(iAxis), rayThrough(dragPoint, ray));
    const auto fTo = alongLine(m_pose.centre, m_pose.axis(iAxis), ray);
    if (!fFrom || !fTo)
        return std::nullopt;
    return std::pair(*fFrom, *fTo);
}

/// The angle between the two places of a ring, radians. A ring that is seen edge-on is measured
/// along its tangent.
std::optional<float> TransformTool::aroundAxis(int iAxis, const glm::vec3& dragPoint,
                                               const ToolRay& ray) const
{
    const glm::vec3 axis = m_pose.axis(iAxis);
    const glm::vec3 offset = dragPoint - m_pose.centre;
    if (std::abs(glm::dot(glm::normalize(ray.start - dragPoint), axis)) < s_fEdgeOnRing)
    {
        const glm::vec3 radius = offset - axis * glm::dot(offset, axis);
        const float fRadius = glm::length(radius);
        if (!(fRadius > s_fLeastDistance * m_pose.size))
            return std::nullopt;
        const auto fWay = alongLine(dragPoint, glm::cross(axis, radius) / fRadius, ray);
        return fWay ? std::optional(*fWay / fRadius) : std::nullopt;
    }
    const auto start = onPlane(m_pose.centre, axis, rayThrough(dragPoint, ray));
    const auto end = onPlane(m_pose.centre, axis, ray);
    if (!start || !end)
        return std::nullopt;
    const glm::vec3 from = *start - m_pose.centre;
    const glm::vec3 to = *end - m_pose.centre;
    if (!(glm::length(from) > s_fLeastDistance * m_pose.size &&
          glm::length(to) > s_fLeastDistance * m_pose.size))
        return std::nullopt;
    return std::atan2(glm::dot(axis, glm::cross(from, to)), glm::dot(from, to));
}

std::optional<TransformDelta> TransformTool::delta(uint8_t uHandle, const glm::vec3& dragPoint,
                                                   const ToolRay& ray, const Snap& snap) const
{
    if (uHandle >= HandleScale + 3 || ray.start == ray.end || ray.start == dragPoint)
        return std::nullopt;
    const int iAxis = uHandle % 3;
    TransformDelta result;
    if (uHandle < HandlePlane)
    {
        const auto ways = alongAxis(iAxis, dragPoint, ray);
        if (!ways)
            return std::nullopt;
        result.translation[iAxis] = ways->second - ways->first;
    }
    else if (uHandle < HandleRing)
    {
        const auto point = onPlane(dragPoint, m_pose.axis(iAxis), ray);
        if (!point)
            return std::nullopt;
        result.translation = glm::conjugate(m_pose.rotation) * (*point - dragPoint);
        result.translation[iAxis] = 0.0f;
    }
    else if (uHandle < HandleScale)
    {
        auto fAngle = aroundAxis(iAxis, dragPoint, ray);
        if (!fAngle)
            return std::nullopt;
        if (snap.bOn)
            fAngle =
                glm::radians(snapped(glm::degrees(*fAngle), snap.bForceGrid ? s_fGridTurnStep : s_fTurnStep));
        if (*fAngle != 0.0f)
            result.rotation = glm::angleAxis(*fAngle, unit(iAxis));
    }
    else
    {
        const auto ways = alongAxis(iAxis, dragPoint, ray);
        if (!ways || std::abs(ways->first) < s_fLeastDistance * m_pose.size)
            return std::nullopt;
        float fFactor = std::max(0.0f, ways->second / ways->first);
        if (snap.bOn)
            fFactor = std::round(fFactor * s_fScaleSteps) / s_fScaleSteps;
        result.scale[iAxis] = fFactor;
    }
    if (snap.bOn)
        for (int i = 0; i < 3; ++i)
            result.translation[i] = snapped(result.translation[i], s_fMoveStep);
    return result;
}

} // namespace tilebuilder
