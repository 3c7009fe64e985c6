#include "KestrelCommon/renderer/DebugDrawer.h"

#include "KestrelCommon/Core/Console.h"

namespace rend
{

void DebugDrawer::addLine(const glm::vec3& start, const glm::vec3& end, const glm::vec4& colour,
                          bool bDepthTest)
{
    if (m_added.vecTested.size() + m_added.vecUntested.size() >= m_uMaxLines)
    {
        if (UTILS::g_pConsole)
            UTILS::g_pConsole->logOnce("Too many debug lines in a frame, the rest is left out",
                                       UTILS::AttributeYellow, UTILS::LogRender | UTILS::LogWarning);
        return;
    }
    uint32_t uColour = 0;
    for (int i = 0; i < 4; ++i)
        uColour |= static_cast<uint32_t>(std::clamp(colour[i], 0.0f, 1.0f) * 255.0f + 0.5f) << (8 * i);
    (bDepthTest ? m_added.vecTested : m_added.vecUntested).push_back({start, end, uColour});
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

void DebugDrawer::swap()
{
    std::swap(m_added, m_shown);
    m_added.vecTested.clear();
    m_added.vecUntested.clear();
}

} // namespace rend
