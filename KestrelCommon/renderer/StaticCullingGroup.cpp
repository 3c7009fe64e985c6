#include "KestrelCommon/renderer/StaticCullingGroup.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"

#include <bit>

#include <glm/common.hpp>

namespace rend
{

namespace
{

/// Visits 0 to uCount - 1 in an order whose every beginning is spread over the whole: steps of the
/// golden section through the next power of two.
template <class Function>
void forStrewn(uint32_t uCount, const Function& fnVisit)
{
    const uint32_t uRound = std::bit_ceil(std::max(uCount, 1u));
    const auto uStep = static_cast<uint32_t>(static_cast<double>(uRound) * 0.6180339887) | 1u;
    uint32_t uPlace = 0;
    for (uint32_t u = 0; u < uRound; ++u)
    {
        if (uPlace < uCount)
            fnVisit(uPlace);
        uPlace = (uPlace + uStep) & (uRound - 1);
    }
}

} // namespace

bool StaticCullingGroup::isLive(uint32_t uSlot) const
{
    return (m_clutter.vecLive[uSlot / 64] >> (uSlot % 64) & 1) != 0;
}

void StaticCullingGroup::reserveClutter(size_t uMore)
{
    const size_t uTotal = m_clutter.vecAabb.size() + uMore - std::min(uMore, m_clutter.vecFree.size());
    if (uTotal <= m_clutter.vecAabb.capacity())
        return;
    m_clutter.vecLive.reserve(uTotal / 64 + 1);
    m_clutter.vecAabb.reserve(uTotal);
    m_clutter.vecInstances.reserve(uTotal);
    m_clutter.vecTypes.reserve(uTotal);
}

uint32_t StaticCullingGroup::addClutter(const ClutterMesh& mesh, uint8_t uType, const glm::vec3& position,
                                        const glm::vec3& normal, uint32_t color, float fSize)
{
    uint32_t uSlot = 0;
    if (!m_clutter.vecFree.empty())
    {
        uSlot = m_clutter.vecFree.back();
        m_clutter.vecFree.pop_back();
    }
    else
    {
        uSlot = static_cast<uint32_t>(m_clutter.vecAabb.size());
        m_clutter.vecAabb.emplace_back();
        m_clutter.vecInstances.emplace_back();
        m_clutter.vecTypes.emplace_back();
        if (uSlot % 64 == 0)
            m_clutter.vecLive.push_back(0);
    }
    const glm::vec3 scale(0.25f, 0.25f, fSize * 0.25f);
    m_clutter.vecAabb[uSlot] = {position + mesh.box.lowest * scale, position + mesh.box.highest * scale};
    m_clutter.vecInstances[uSlot] = makeClutterInstance(uType, position, normal, color);
    m_clutter.vecTypes[uSlot] = uType;
    m_clutter.vecLive[uSlot / 64] |= uint64_t{1} << (uSlot % 64);
    ++m_arrCounts[uType];
    ++m_clutter.uCount;
    m_clutter.bDirty = true;
    return uSlot;
}

void StaticCullingGroup::removeClutter(uint32_t uSlot)
{
    const auto uIndex = uSlot;
    if (!QM_ASSERT_TEXT(uIndex < m_clutter.vecAabb.size(), "uIndex < m_clutter.vecAabb.size()"))
        return;
    if (!isLive(uSlot))
    {
        QM_LOG_ERROR("Double freed clutter! ");
        return;
    }
    m_clutter.vecLive[uSlot / 64] &= ~(uint64_t{1} << (uSlot % 64));
    m_clutter.vecFree.push_back(uSlot);
    --m_arrCounts[m_clutter.vecTypes[uSlot]];
    --m_clutter.uCount;
    m_clutter.bDirty = true;
}

void StaticCullingGroup::rebuildClutter(const std::array<uint8_t, 256>& impostorOf)
{
    Clutter& clutter = m_clutter;
    if (!clutter.bDirty)
        return;
    clutter.bDirty = false;
    clutter.vecBatches.clear();
    clutter.vecImpostorBatches.clear();

    std::array<uint32_t, 256> arrNext{};
    std::array<uint32_t, 256> arrImpostorNext{};
    uint32_t uTotal = 0;
    uint32_t uImpostors = 0;
    for (uint32_t uType = 0; uType < 256; ++uType)
    {
        const uint32_t uCount = m_arrCounts[uType];
        arrNext[uType] = uTotal;
        arrImpostorNext[uType] = uImpostors;
        if (uCount == 0)
            continue;
        clutter.vecBatches.push_back({uType, uTotal, uCount});
        uTotal += uCount;
        if (impostorOf[uType] == 255)
            continue;
        clutter.vecImpostorBatches.push_back({uType, uImpostors, uCount});
        uImpostors += uCount;
    }
    clutter.vecSorted.resize(uTotal);
    clutter.vecImpostors.resize(uImpostors);

    glm::vec3 lowest(std::numeric_limits<float>::max());
    glm::vec3 highest(-std::numeric_limits<float>::max());
    forStrewn(static_cast<uint32_t>(clutter.vecAabb.size()),
              [&](uint32_t uSlot)
              {
                  if (!isLive(uSlot))
                      return;
                  const uint8_t uType = clutter.vecTypes[uSlot];
                  const ClutterInstance& instance = clutter.vecInstances[uSlot];
                  clutter.vecSorted[arrNext[uType]++] = instance;
                  if (impostorOf[uType] != 255)
                  {
                      ClutterInstance& impostor = clutter.vecImpostors[arrImpostorNext[uType]++];
                      impostor = instance;
                      impostor.colorIndex = (instance.colorIndex & 0xFFFFFF00u) | impostorOf[uType];
                  }
                  lowest = glm::min(lowest, clutter.vecAabb[uSlot].lowest);
                  highest = glm::max(highest, clutter.vecAabb[uSlot].highest);
              });
    m_box = uTotal > 0 ? Aabb{lowest, highest} : Aabb{};
    m_uFlags = (uTotal > 0 ? GroupHasClutter : 0u) | (uImpostors > 0 ? GroupHasImpostors : 0u);
    m_rectLowest = glm::vec2(m_box.lowest) - s_fNearMargin;
    m_rectHighest = glm::vec2(m_box.highest) + s_fNearMargin;
}

bool StaticCullingGroup::isNear(const glm::vec2& camera) const
{
    return camera.x > m_rectLowest.x && camera.x < m_rectHighest.x && camera.y > m_rectLowest.y &&
           camera.y < m_rectHighest.y;
}

} // namespace rend
