#include "KestrelCommon/renderer/InstanceGather.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <glm/common.hpp>
#include <glm/geometric.hpp>

namespace rend
{

namespace
{

// Sizes from 2^-12 to 2^4 of the distance, four steps to a doubling.
constexpr int s_iSteps = 64;

size_t stepOf(float fSeen)
{
    return static_cast<size_t>(std::clamp((std::log2(fSeen) + 12.0f) * 4.0f, 0.0f, s_iSteps - 1.0f));
}

float sizeOfStep(size_t uStep)
{
    return std::exp2(static_cast<float>(uStep) / 4.0f - 12.0f);
}

/// Most runs are of one or two: their copies are a few moves, where the general one costs a call.
void copyRun(const InstanceData* pFrom, uint32_t uCount, InstanceData* pTo)
{
    if (uCount == 1)
        *pTo = *pFrom;
    else if (uCount == 2)
        std::memcpy(pTo, pFrom, 2 * sizeof(InstanceData));
    else
        std::copy_n(pFrom, uCount, pTo);
}

float distanceTo(const Aabb& box, const glm::vec3& eye)
{
    return glm::length(glm::max(glm::max(box.lowest - eye, eye - box.highest), 0.0f));
}

} // namespace

void InstanceGather::gather(const InstanceWorld& world, const Frustum& frustum, const glm::vec3& eye,
                            const InstanceLimits& limits, std::span<const uint32_t> spanTriangles)
{
    m_vecViews.clear();
    for (const auto& pCell : world.cells())
        if (!pCell->vecBatches.empty() && frustum.touches(pCell->box))
            m_vecViews.push_back({pCell.get(), distanceTo(pCell->box, eye)});
    const float fSmallest = smallestFor(limits, spanTriangles);
    m_bThinned = fSmallest > limits.fSmallest;

    m_vecCounts.assign(world.kinds().size(), 0);
    for (const View& view : m_vecViews)
        for (const InstanceCell::Batch& batch : view.pCell->vecBatches)
            if (batch.fSize >= fSmallest * view.fAway)
                m_vecCounts[batch.uKind] += batch.uCount;
    m_vecBatches.clear();
    uint32_t uNext = 0;
    for (uint32_t uKind = 0; uKind < m_vecCounts.size(); ++uKind)
        if (const uint32_t uCount = std::exchange(m_vecCounts[uKind], uNext); uCount > 0)
        {
            m_vecBatches.push_back({uKind, uNext, uCount});
            uNext += uCount;
        }
    m_uCount = uNext;
    if (m_uCount > m_uCapacity)
    {
        m_uCapacity = std::max(m_uCount, m_uCapacity + m_uCapacity / 2);
        m_pInstances = std::make_unique_for_overwrite<InstanceData[]>(m_uCapacity);
    }
    for (const View& view : m_vecViews)
    {
        const InstanceData* pData = view.pCell->vecData.data();
        for (const InstanceCell::Batch& batch : view.pCell->vecBatches)
            if (batch.fSize >= fSmallest * view.fAway)
            {
                uint32_t& uPlace = m_vecCounts[batch.uKind];
                copyRun(pData + batch.uFirst, batch.uCount, &m_pInstances[uPlace]);
                uPlace += batch.uCount;
            }
    }
}

float InstanceGather::smallestFor(const InstanceLimits& limits, std::span<const uint32_t> spanTriangles) const
{
    if (limits.uTriangles == 0)
        return limits.fSmallest;
    std::array<uint64_t, s_iSteps> arrTriangles{};
    for (const View& view : m_vecViews)
        for (const InstanceCell::Batch& batch : view.pCell->vecBatches)
            if (batch.uKind < spanTriangles.size() && batch.fSize >= limits.fSmallest * view.fAway)
                arrTriangles[stepOf(batch.fSize / std::max(view.fAway, 0.01f))] +=
                    uint64_t{batch.uCount} * spanTriangles[batch.uKind];
    uint64_t uSum = 0;
    for (size_t uStep = s_iSteps; uStep-- > 0;)
    {
        uSum += arrTriangles[uStep];
        if (uSum > limits.uTriangles) // the nearest things are drawn, whatever they cost
            return std::max(limits.fSmallest, sizeOfStep(std::min<size_t>(uStep + 1, s_iSteps - 2)));
    }
    return limits.fSmallest;
}

} // namespace rend
