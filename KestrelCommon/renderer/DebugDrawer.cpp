#include "KestrelCommon/renderer/DebugDrawer.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/renderer/BillboardBatch.h"

namespace rend
{

void DebugDrawer::addLine(const glm::vec3& start, const glm::vec3& end, const glm::vec4& colour,
                          bool bDepthTest)
{
    if (m_added.uCounted >= m_uMaxLines)
    {
        if (UTILS::g_pConsole)
            UTILS::g_pConsole->logOnce("Too many debug lines in a frame, the rest is left out",
                                       UTILS::AttributeYellow, UTILS::LogRender | UTILS::LogWarning);
        return;
    }
    ++m_added.uCounted;
    (bDepthTest ? m_added.vecTested : m_added.vecUntested).push_back({start, end, packColour(colour)});
}

void DebugDrawer::addLoop(std::span<const glm::vec3> spanPoints, const glm::vec4& colour, bool bDepthTest)
{
    for (size_t u = 0; u < spanPoints.size(); ++u)
        addLine(spanPoints[u], spanPoints[(u + 1) % spanPoints.size()], colour, bDepthTest);
}

void DebugDrawer::addBox(const glm::vec3& lowest, const glm::vec3& highest, const glm::vec4& colour,
                         bool bDepthTest)
{
    const auto corner = [&](int i)
    {
        return glm::vec3(i & 1 ? highest.x : lowest.x, i & 2 ? highest.y : lowest.y,
                         i & 4 ? highest.z : lowest.z);
    };
    for (int i = 0; i < 8; ++i)
        for (const int iBit : {1, 2, 4})
            if (!(i & iBit))
                addLine(corner(i), corner(i | iBit), colour, bDepthTest);
}

void DebugDrawer::addOrientedBox(const Transform& transform, const Aabb& box, const glm::vec4& colour)
{
    const uint32_t uColour = packColour(colour);
    const auto corner = [&](int i)
    {
        return transform.apply({i & 1 ? box.highest.x : box.lowest.x, i & 2 ? box.highest.y : box.lowest.y,
                                i & 4 ? box.highest.z : box.lowest.z});
    };
    for (int i = 0; i < 8; ++i)
        for (const int iBit : {1, 2, 4})
            if (!(i & iBit))
                m_added.vecTested.push_back({corner(i), corner(i | iBit), uColour});
}

void DebugDrawer::addTriangles(std::span<const glm::vec3> spanPoints, const glm::vec4& colour)
{
    const uint32_t uColour = packColour(colour);
    for (const glm::vec3& point : spanPoints.first(spanPoints.size() / 3 * 3))
        m_added.vecSolids.push_back({point, uColour});
}

void DebugDrawer::swap()
{
    std::swap(m_added, m_shown);
    m_added.vecTested.clear();
    m_added.vecUntested.clear();
    m_added.vecSolids.clear();
    m_added.uCounted = 0;
}

} // namespace rend
