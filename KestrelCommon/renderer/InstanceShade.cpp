#include "KestrelCommon/renderer/InstanceShade.h"

#include "KestrelCommon/renderer/InstanceDraw.h"

#include <algorithm>
#include <cmath>
#include <glm/common.hpp>

namespace rend
{

namespace
{

constexpr int s_iMostTexels = 8; ///< a metre
constexpr int s_iMaxSide = 4096;
constexpr int s_iMaxSoftwareSide = 2048;
constexpr uint64_t s_uTrianglesAFrame = 4000000;
constexpr uint64_t s_uSoftwareTrianglesAFrame = 25000;
constexpr float s_fLowestSun = 0.15f; ///< shadows get no longer than with a sun of that height

} // namespace

InstanceShade::~InstanceShade()
{
    m_device.destroyTarget(m_target);
}

std::array<glm::vec2, 2> InstanceShade::reachOf(const Aabb& box, const glm::vec3& sunDirection)
{
    const glm::vec2 low(box.lowest);
    const glm::vec2 high(box.highest);
    const float fHigh = box.highest.z - box.lowest.z;
    const glm::vec2 shift = glm::vec2(sunDirection) * (-fHigh / std::max(sunDirection.z, s_fLowestSun));
    return {glm::min(low, low + shift), glm::max(high, high + shift)};
}

void InstanceShade::resize(const glm::vec2& tileSize)
{
    const float fSide = std::max(tileSize.x, tileSize.y);
    const int iSquares = static_cast<int>(std::ceil(fSide / InstanceWorld::s_fCellSize));
    if (iSquares == m_iSquares)
        return;
    m_device.destroyTarget(m_target);
    m_target = {};
    m_iSquares = iSquares;
    m_fReach = static_cast<float>(iSquares) * InstanceWorld::s_fCellSize;
    if (iSquares == 0)
        return;
    int iTexels = s_iMostTexels;
    while (iTexels > 1 &&
           iTexels * static_cast<int>(m_fReach) > (m_device.isSoftware() ? s_iMaxSoftwareSide : s_iMaxSide))
        iTexels /= 2;
    m_iTexels = iTexels * static_cast<int>(InstanceWorld::s_fCellSize);
    m_target = m_device.createTarget({.sName = "Instance shade",
                                      .iWidth = m_iTexels * iSquares,
                                      .iHeight = m_iTexels * iSquares,
                                      .bDepth = false});
    m_vecStale.assign(static_cast<size_t>(iSquares) * static_cast<size_t>(iSquares), true);
    m_uStale = m_vecStale.size();
}

void InstanceShade::markStale(const Aabb& box)
{
    const auto [low, high] = reachOf(box, m_sunDirection);
    const auto square = [this](float f)
    {
        const float fSquare = std::floor(f / InstanceWorld::s_fCellSize);
        return static_cast<int>(std::clamp(fSquare, -1.0f, static_cast<float>(m_iSquares)));
    };
    if (!(low.x <= high.x && low.y <= high.y)) // a place that is none
        return;
    for (int iY = std::max(square(low.y), 0); iY <= std::min(square(high.y), m_iSquares - 1); ++iY)
        for (int iX = std::max(square(low.x), 0); iX <= std::min(square(high.x), m_iSquares - 1); ++iX)
        {
            auto bStale = m_vecStale[static_cast<size_t>(iY * m_iSquares + iX)];
            m_uStale += !bStale;
            bStale = true;
        }
}

void InstanceShade::update(InstanceDraw& draw, InstanceWorld& world, const glm::vec2& tileSize,
                           const glm::vec3& sunDirection, bool bWhole)
{
    world.sortCells();
    m_bEmpty = world.instanceCount() == 0;
    const bool bAnew = world.id() != m_uWorld || sunDirection != m_sunDirection;
    m_uWorld = world.id();
    m_sunDirection = sunDirection;
    resize(tileSize);
    std::vector<Aabb> vecChanged;
    const bool bKnown = world.takeChanges(vecChanged);
    if (!m_target)
        return;
    if (bAnew || !bKnown)
    {
        m_vecStale.assign(m_vecStale.size(), true);
        m_uStale = m_vecStale.size();
    }
    else
        for (const Aabb& box : vecChanged)
            markStale(box);
    if (m_uStale == 0)
        return;

    const uint64_t uMost = bWhole                  ? ~uint64_t{0}
                           : m_device.isSoftware() ? s_uSoftwareTrianglesAFrame
                                                   : s_uTrianglesAFrame;
    uint64_t uTriangles = 0;
    draw.beginShade(m_target, m_fReach, m_sunDirection, s_fLowestSun);
    while (m_uStale > 0 && uTriangles < uMost)
    {
        m_uNext = (m_uNext + 1) % m_vecStale.size();
        if (!m_vecStale[m_uNext])
            continue;
        m_vecStale[m_uNext] = false;
        --m_uStale;
        const int iX = static_cast<int>(m_uNext) % m_iSquares;
        const int iY = static_cast<int>(m_uNext) / m_iSquares;
        const glm::vec2 low = glm::vec2(iX, iY) * InstanceWorld::s_fCellSize;
        m_device.setScissor(iX * m_iTexels, iY * m_iTexels, m_iTexels, m_iTexels);
        uTriangles += 500 + draw.drawShade(world, low, low + InstanceWorld::s_fCellSize, m_sunDirection);
    }
    m_device.clearScissor();
    m_device.endPass();
    ++m_uRevision;
}

} // namespace rend
