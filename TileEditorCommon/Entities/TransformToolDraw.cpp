// How the handles of the transform tool look.

#include "TileEditorCommon/Contracts/HandleShapes.h"
#include "TileEditorCommon/Entities/TransformTool.h"
#include "TileEditorCommon/Entities/TransformToolMesh.h"

#include <cmath>
#include <glm/geometric.hpp>
#include <numbers>

namespace tilebuilder
{

namespace
{

using namespace ToolShape;

constexpr std::array s_arrAxisColors{glm::vec3(0.55f, 1.0f, 0.55f), glm::vec3(0.55f, 0.55f, 1.0f),
                                     glm::vec3(1.0f, 1.0f, 0.55f)};
constexpr glm::vec3 s_highlight(1.0f, 0.8156863f, 0.26666668f);
constexpr glm::vec3 s_rimColor(0.09f, 0.1f, 0.11f);
constexpr float s_fRim = 0.014f;        ///< sizes of the tool around a handle, so that it reads on any ground
constexpr float s_fRimDistance = 1.06f; ///< so much farther from the eye lies the rim
constexpr float s_fPlaneAlpha = 0.35f;
constexpr float s_fHighlitPlaneAlpha = 0.7f;
constexpr float s_fFarRingAlpha = 0.22f;
constexpr float s_fSectorAlpha = 0.3f;
constexpr float s_fHighlitThickness = 1.6f;
constexpr int s_iRingSteps = 96;
constexpr float s_fGuideLength = 60.0f; ///< times the size of the tool

} // namespace

struct TransformTool::Look
{
    glm::vec3 color{1.0f};
    float thickness = 1.0f; ///< times what a handle has at rest
    float rim = 0.0f;       ///< added on all sides, sizes of the tool
};

void TransformTool::draw(EntityRenderI& render, uint8_t uMode, uint8_t uHighlit) const
{
    // The rims are the handles again, thicker, dark, and as seen from the eye right behind them.
    TransformTool behind(*this);
    behind.m_pose.centre = m_pose.eye + (m_pose.centre - m_pose.eye) * s_fRimDistance;
    behind.m_pose.size *= s_fRimDistance;
    for (const ToolMesh& mesh : toolMeshes(uMode))
    {
        const bool bHighlit = mesh.uHandle == uHighlit;
        if (!isUsable(mesh.uHandle) && !bHighlit)
            continue;
        Look look;
        look.color = bHighlit ? s_highlight : s_arrAxisColors[mesh.uHandle % 3];
        look.thickness = bHighlit ? s_fHighlitThickness : 1.0f;
        drawHandle(render, mesh.uHandle, look);
        look.color = s_rimColor;
        look.rim = s_fRim;
        if (mesh.uHandle < HandlePlane || mesh.uHandle >= HandleRing)
            behind.drawHandle(render, mesh.uHandle, look);
    }
}

void TransformTool::drawHandle(EntityRenderI& render, uint8_t uHandle, const Look& look) const
{
    const int iAxis = uHandle % 3;
    const glm::vec4 solid(look.color, 1.0f);
    const auto at = [&](float fAlong) { return m_pose.centre + m_pose.axis(iAxis) * (fAlong * m_pose.size); };
    const auto thick = [&](float fRadius, float fMost)
    { return (fRadius * std::min(look.thickness, fMost) + look.rim) * m_pose.size; };
    if (uHandle < HandlePlane)
    {
        drawBar(render, at(barStart - look.rim), at(barEnd), thick(barRadius, 2.0f), solid);
        drawCone(render, at(barEnd - look.rim), at(1.0f + 2.0f * look.rim), thick(coneRadius, 1.2f), solid);
    }
    else if (uHandle < HandleRing)
    {
        const glm::vec3 sideA = m_pose.axis((iAxis + 1) % 3) * m_pose.size;
        const glm::vec3 sideB = m_pose.axis((iAxis + 2) % 3) * m_pose.size;
        drawQuad(render, m_pose.centre + (sideA + sideB) * planeNear, sideA * (planeFar - planeNear),
                 sideB * (planeFar - planeNear),
                 {look.color, look.thickness > 1.0f ? s_fHighlitPlaneAlpha : s_fPlaneAlpha});
    }
    else if (uHandle < HandleScale)
        drawRingHandle(render, iAxis, look);
    else
    {
        drawBar(render, at(barStart - look.rim), at(cubeMiddle), thick(barRadius, 2.0f), solid);
        drawCube(render, at(cubeMiddle), m_pose.rotation, thick(cubeHalf, 1.25f), solid);
    }
}

/// The half that can be taken as a band, the other as a thin line.
void TransformTool::drawRingHandle(EntityRenderI& render, int iAxis, const Look& look) const
{
    const glm::vec3 axis = m_pose.axis(iAxis);
    const glm::vec3 u = m_pose.axis((iAxis + 1) % 3);
    const glm::vec3 v = m_pose.axis((iAxis + 2) % 3);
    const glm::vec3 toEye = m_pose.eye - m_pose.centre;
    const float fHalf = (ringWidth * 0.5f * look.thickness + look.rim) * m_pose.size;
    const glm::vec3 up = axis * fHalf;
    // The whole ring counts where its band turns toward the eye.
    const float fFace = std::abs(glm::dot(axis, toEye)) * grip;
    std::vector<glm::vec3> vecBand;
    for (int i = 0; i < s_iRingSteps; ++i)
    {
        const auto direction = [&](int iStep)
        {
            const float fAngle = static_cast<float>(iStep) * 2.0f * std::numbers::pi_v<float> / s_iRingSteps;
            return u * std::cos(fAngle) + v * std::sin(fAngle);
        };
        const glm::vec3 a = direction(i);
        const glm::vec3 b = direction(i + 1);
        const float fRadius = ringRadius * m_pose.size;
        if (glm::dot(a + b, toEye) * 0.5f * ringRadius + fFace <= 0.0f)
        {
            if (look.rim == 0.0f)
                render.drawLine(m_pose.centre + a * fRadius, m_pose.centre + b * fRadius,
                                {look.color, s_fFarRingAlpha}, true);
            continue;
        }
        const auto facet = [&](const glm::vec3& p, const glm::vec3& q, const glm::vec3& r, const glm::vec3& s)
        {
            vecBand.insert(vecBand.end(), {p, q, r, p, r, s});
        };
        const auto point = [&](const glm::vec3& way, float fOut, float fUp)
        { return m_pose.centre + way * (fRadius + fOut * fHalf) + up * fUp; };
        facet(point(a, -1, 1), point(b, -1, 1), point(b, 1, 1), point(a, 1, 1));
        facet(point(a, -1, -1), point(b, -1, -1), point(b, 1, -1), point(a, 1, -1));
        facet(point(a, 1, -1), point(b, 1, -1), point(b, 1, 1), point(a, 1, 1));
        facet(point(a, -1, -1), point(b, -1, -1), point(b, -1, 1), point(a, -1, 1));
    }
    if (!vecBand.empty())
        render.drawTriangles(vecBand, {look.color, 1.0f});
}

void TransformTool::drawDrag(EntityRenderI& render, uint8_t uHandle, const glm::vec3& dragPoint,
                             const TransformDelta& delta) const
{
    const int iAxis = uHandle % 3;
    const glm::vec3 axis = m_pose.axis(iAxis);
    const glm::vec4 color(s_arrAxisColors[static_cast<size_t>(iAxis)], 0.6f);
    if (uHandle < HandlePlane || (uHandle >= HandleScale && uHandle < HandleNone))
    {
        const glm::vec3 reach = axis * (m_pose.size * s_fGuideLength);
        render.drawLine(m_pose.centre - reach, m_pose.centre + reach, color, true);
        return;
    }
    if (uHandle < HandleRing)
    {
        render.drawLine(m_pose.centre - m_pose.rotation * delta.translation, m_pose.centre, color, true);
        return;
    }
    const glm::vec3 offset = dragPoint - m_pose.centre;
    const glm::vec3 from = offset - axis * glm::dot(offset, axis);
    if (uHandle >= HandleScale || !(glm::length(from) > 0.0f))
        return;
    // About the axis, from -pi to pi.
    const glm::quat& turn = delta.rotation;
    const float fAngle = 2.0f * std::atan2(glm::vec3(turn.x, turn.y, turn.z)[iAxis], turn.w);
    const float fWrapped = std::remainder(fAngle, 2.0f * std::numbers::pi_v<float>);
    if (std::abs(fWrapped) > 1e-3f)
        drawSector(render, m_pose.centre, axis, from, fWrapped, ringRadius * m_pose.size,
                   {s_highlight, s_fSectorAlpha});
}

} // namespace tilebuilder
