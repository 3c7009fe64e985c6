#include "TileEditorCommon/Contracts/HandleShapes.h"

#include <array>
#include <cmath>
#include <glm/geometric.hpp>
#include <numbers>

namespace tilebuilder
{

namespace
{

constexpr int s_iSides = 16;
constexpr int s_iRingSteps = 64;

/// Light from above and from one side; never dark.
glm::vec4 shaded(const glm::vec4& color, const glm::vec3& normal)
{
    const float fLight = 0.78f + 0.22f * glm::dot(normal, glm::vec3(0.36f, 0.48f, 0.8f));
    return {glm::vec3(color) * fLight, color.a};
}

/// Two directions that stand upright on a third and on each other.
struct Across
{
    explicit Across(const glm::vec3& axis)
        : x(glm::normalize(
              glm::cross(axis, std::abs(axis.z) < 0.9f ? glm::vec3(0, 0, 1) : glm::vec3(1, 0, 0)))),
          y(glm::cross(axis, x))
    {
    }
    [[nodiscard]] glm::vec3 at(float fTurn) const
    {
        const float fAngle = fTurn * 2.0f * std::numbers::pi_v<float>;
        return x * std::cos(fAngle) + y * std::sin(fAngle);
    }
    glm::vec3 x;
    glm::vec3 y;
};

void drawFacet(EntityRenderI& render, const glm::vec3& a, const glm::vec3& b, const glm::vec3& c,
               const glm::vec3& d, const glm::vec4& color)
{
    render.drawTriangles(std::array{a, b, c, a, c, d}, color);
}

} // namespace

void drawCone(EntityRenderI& render, const glm::vec3& base, const glm::vec3& tip, float fRadius,
              const glm::vec4& color)
{
    const glm::vec3 axis = glm::normalize(tip - base);
    const Across across(axis);
    for (int i = 0; i < s_iSides; ++i)
    {
        const auto place = [&](float f) { return across.at(f / static_cast<float>(s_iSides)); };
        const auto f = static_cast<float>(i);
        const glm::vec3 a = base + place(f) * fRadius;
        const glm::vec3 b = base + place(f + 1.0f) * fRadius;
        render.drawTriangles(std::array{a, b, tip}, shaded(color, place(f + 0.5f)));
        render.drawTriangles(std::array{b, a, base}, shaded(color, -axis));
    }
}

void drawBar(EntityRenderI& render, const glm::vec3& start, const glm::vec3& end, float fRadius,
             const glm::vec4& color)
{
    const Across across(glm::normalize(end - start));
    constexpr int s_iBarSides = 8;
    for (int i = 0; i < s_iBarSides; ++i)
    {
        const auto place = [&](float f) { return across.at(f / static_cast<float>(s_iBarSides)); };
        const auto f = static_cast<float>(i);
        const glm::vec3 a = place(f) * fRadius;
        const glm::vec3 b = place(f + 1.0f) * fRadius;
        drawFacet(render, start + a, start + b, end + b, end + a, shaded(color, place(f + 0.5f)));
    }
}

void drawCube(EntityRenderI& render, const glm::vec3& middle, const glm::quat& rotation, float fHalfSide,
              const glm::vec4& color)
{
    for (int iAxis = 0; iAxis < 3; ++iAxis)
        for (const float fSide : {-1.0f, 1.0f})
        {
            glm::vec3 normal(0.0f);
            glm::vec3 u(0.0f);
            glm::vec3 v(0.0f);
            normal[iAxis] = fSide;
            u[(iAxis + 1) % 3] = 1.0f;
            v[(iAxis + 2) % 3] = 1.0f;
            const auto corner = [&](float fU, float fV)
            { return middle + rotation * ((normal + u * fU + v * fV) * fHalfSide); };
            drawFacet(render, corner(-1, -1), corner(1, -1), corner(1, 1), corner(-1, 1),
                      shaded(color, rotation * normal));
        }
}

void drawQuad(EntityRenderI& render, const glm::vec3& corner, const glm::vec3& sideA, const glm::vec3& sideB,
              const glm::vec4& color)
{
    const std::array arrCorners{corner, corner + sideA, corner + sideA + sideB, corner + sideB};
    drawFacet(render, arrCorners[0], arrCorners[1], arrCorners[2], arrCorners[3], color);
    for (size_t u = 0; u < 4; ++u)
        render.drawLine(arrCorners[u], arrCorners[(u + 1) % 4], {glm::vec3(color), 1.0f}, true);
}

void drawRing(EntityRenderI& render, const glm::vec3& middle, const glm::vec3& axis, float fRadius,
              float fWidth, const glm::vec4& color)
{
    const Across across(axis);
    const glm::vec3 up = axis * (fWidth * 0.5f);
    for (int i = 0; i < s_iRingSteps; ++i)
    {
        const glm::vec3 a = across.at(static_cast<float>(i) / s_iRingSteps);
        const glm::vec3 b = across.at(static_cast<float>(i + 1) / s_iRingSteps);
        const auto point = [&](const glm::vec3& direction, float fOut, float fUp)
        { return middle + direction * (fRadius + fOut * fWidth * 0.5f) + up * fUp; };
        drawFacet(render, point(a, -1, 1), point(b, -1, 1), point(b, 1, 1), point(a, 1, 1), color);
        drawFacet(render, point(a, -1, -1), point(b, -1, -1), point(b, 1, -1), point(a, 1, -1), color);
        drawFacet(render, point(a, 1, -1), point(b, 1, -1), point(b, 1, 1), point(a, 1, 1), color);
        drawFacet(render, point(a, -1, -1), point(b, -1, -1), point(b, -1, 1), point(a, -1, 1), color);
    }
}

void drawSector(EntityRenderI& render, const glm::vec3& middle, const glm::vec3& axis, const glm::vec3& from,
                float fAngle, float fRadius, const glm::vec4& color)
{
    constexpr float s_fStep = 0.1f; // radians
    const int iSteps = std::clamp(static_cast<int>(std::ceil(std::abs(fAngle) / s_fStep)), 1, 256);
    const glm::vec3 start = glm::normalize(from - axis * glm::dot(from, axis)) * fRadius;
    const glm::vec3 side = glm::cross(axis, start);
    const auto point = [&](int i)
    {
        const float f = fAngle * static_cast<float>(i) / static_cast<float>(iSteps);
        return middle + start * std::cos(f) + side * std::sin(f);
    };
    for (int i = 0; i < iSteps; ++i)
        render.drawTriangles(std::array{middle, point(i), point(i + 1)}, color);
}

} // namespace tilebuilder
