#include "KestrelCommon/renderer/ClutterGather.h"

#include <cmath>
#include <cstring>
#include <tbb/parallel_for.h>

#include <glm/common.hpp>
#include <glm/geometric.hpp>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace rend
{

namespace
{

constexpr size_t s_uGroupsInTask = 64;

uint32_t shareOf(uint32_t uCount, float fShare)
{
    return fShare >= 1.0f ? uCount : static_cast<uint32_t>(std::lround(static_cast<float>(uCount) * fShare));
}

/// From the camera to the nearest place of the box, in X and Y.
float distanceTo(const Aabb& box, const glm::vec2& camera)
{
    const glm::vec2 beside =
        glm::max(glm::max(glm::vec2(box.lowest) - camera, camera - glm::vec2(box.highest)), 0.0f);
    return glm::length(beside);
}

/// Past the caches: what is gathered is read once, by the device.
void copyStreaming(void* pTo, const void* pFrom, size_t uBytes)
{
#ifdef __SSE2__
    auto* pOut = static_cast<std::byte*>(pTo);
    const auto* pIn = static_cast<const std::byte*>(pFrom);
    const size_t uHead = std::min((16 - reinterpret_cast<uintptr_t>(pOut) % 16) % 16, uBytes);
    std::memcpy(pOut, pIn, uHead);
    size_t uDone = uHead;
    for (; uDone + 64 <= uBytes; uDone += 64)
    {
        const auto load = [&](size_t u)
        { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(pIn + uDone + u)); };
        const __m128i a = load(0), b = load(16), c = load(32), d = load(48);
        auto* pBlock = reinterpret_cast<__m128i*>(pOut + uDone);
        _mm_stream_si128(pBlock, a);
        _mm_stream_si128(pBlock + 1, b);
        _mm_stream_si128(pBlock + 2, c);
        _mm_stream_si128(pBlock + 3, d);
    }
    std::memcpy(pOut + uDone, pIn + uDone, uBytes - uDone);
    _mm_sfence();
#else
    std::memcpy(pTo, pFrom, uBytes);
#endif
}

} // namespace

ClutterInstance* ClutterList::resize(size_t uCount)
{
    if (uCount > m_uCapacity)
    {
        m_uCapacity = std::max(uCount, m_uCapacity + m_uCapacity / 2);
        m_pInstances = std::make_unique_for_overwrite<ClutterInstance[]>(m_uCapacity);
    }
    m_uCount = uCount;
    return m_pInstances.get();
}

void ClutterGather::gather(const CullingGroups& groups, const Frustum& frustum, const glm::vec2& camera,
                           const ClutterDensity& density)
{
    m_vecNear.clear();
    m_vecFar.clear();
    for (const auto& pGroup : groups.all())
    {
        if (pGroup->flags() == 0 || !frustum.touches(pGroup->box()))
            continue;
        const bool bNear = pGroup->isNear(camera);
        if ((pGroup->flags() & (bNear ? GroupHasClutter : GroupHasImpostors)) == 0)
            continue;
        const float fAway = distanceTo(pGroup->box(), camera);
        const float fBeyond = std::max(fAway - density.fFullRange, 0.0f);
        (bNear ? m_vecNear : m_vecFar)
            .push_back({pGroup.get(), fAway, 1.0f / (1.0f + 0.0025f * fBeyond * fBeyond)});
    }
    // What is in front is drawn first, so that little is shaded twice.
    std::sort(m_vecNear.begin(), m_vecNear.end(),
              [](const View& a, const View& b) { return a.fAway < b.fAway; });
    m_bThinned = false;
    share(m_vecNear, density.fNearBudget, true);
    share(m_vecFar, density.fFarBudget, false);
    gatherNear();
    gatherFar();
}

/// Scales the weights until the sum of what they let through meets the budget.
void ClutterGather::share(std::vector<View>& vecViews, float fBudget, bool bNear)
{
    if (fBudget <= 0.0f)
        return;
    const auto countOf = [bNear](const View& view)
    {
        const StaticCullingGroup::Clutter& clutter = view.pGroup->clutter();
        return static_cast<float>(bNear ? clutter.vecSorted.size() : clutter.vecImpostors.size());
    };
    float fTotal = 0.0f;
    for (const View& view : vecViews)
        fTotal += countOf(view);
    if (fTotal <= fBudget)
        return;
    m_bThinned = true;
    float fScale = 1.0f;
    // No group can take more than all it has, so what is left over goes to the others.
    for (int iPass = 0; iPass < 4; ++iPass)
    {
        float fSum = 0.0f;
        for (View& view : vecViews)
        {
            view.fShare = std::min(view.fWeight * fScale, 1.0f);
            fSum += countOf(view) * view.fShare;
        }
        fScale *= fBudget / std::max(fSum, 1.0f);
    }
}

void ClutterGather::gatherNear()
{
    m_vecNearBatches.clear();
    m_vecRuns.resize(s_uMaxBatches);
    std::atomic<size_t> uRuns = 0;
    tbb::parallel_for(tbb::blocked_range<size_t>(0, m_vecNear.size(), s_uGroupsInTask),
                      [&](const auto& range)
                      {
                          for (auto u = static_cast<uint32_t>(range.begin()); u < range.end(); ++u)
                          {
                              const StaticCullingGroup::Clutter& clutter = m_vecNear[u].pGroup->clutter();
                              size_t uRun = uRuns.fetch_add(clutter.vecBatches.size());
                              for (const ClutterBatch& batch : clutter.vecBatches)
                              {
                                  if (uRun >= s_uMaxBatches)
                                      break;
                                  m_vecRuns[uRun++] = {batch.uType, u,
                                                       shareOf(batch.uCount, m_vecNear[u].fShare),
                                                       clutter.vecSorted.data() + batch.uFirst};
                              }
                          }
                      });
    if (uRuns > s_uMaxBatches)
    {
        static_cast<void>(m_nearList.resize(0));
        return;
    }
    m_vecRuns.resize(uRuns);
    std::sort(m_vecRuns.begin(), m_vecRuns.end(),
              [](const Run& a, const Run& b)
              { return a.uType != b.uType ? a.uType < b.uType : a.uView < b.uView; });
    size_t uTotal = 0;
    for (Run& run : m_vecRuns)
    {
        run.uTo = uTotal;
        uTotal += run.uCount;
        if (run.uCount == 0)
            continue;
        if (m_vecNearBatches.empty() || m_vecNearBatches.back().uType != run.uType)
            m_vecNearBatches.push_back({run.uType, static_cast<uint32_t>(run.uTo), 0});
        m_vecNearBatches.back().uCount += run.uCount;
    }
    copyRuns(m_vecRuns, m_nearList.resize(uTotal));
}

void ClutterGather::gatherFar()
{
    size_t uRuns = 0;
    for (const View& view : m_vecFar)
        uRuns += view.fShare >= 1.0f ? 1 : view.pGroup->clutter().vecImpostorBatches.size();
    m_vecRuns.clear();
    if (uRuns > s_uMaxBatches)
    {
        static_cast<void>(m_farList.resize(0));
        return;
    }
    size_t uTotal = 0;
    const auto add = [&](uint32_t uCount, const ClutterInstance* pFrom)
    {
        m_vecRuns.push_back({0, 0, uCount, pFrom, uTotal});
        uTotal += uCount;
    };
    for (const View& view : m_vecFar)
    {
        const StaticCullingGroup::Clutter& clutter = view.pGroup->clutter();
        if (view.fShare >= 1.0f)
            add(static_cast<uint32_t>(clutter.vecImpostors.size()), clutter.vecImpostors.data());
        else
            for (const ClutterBatch& batch : clutter.vecImpostorBatches)
                add(shareOf(batch.uCount, view.fShare), clutter.vecImpostors.data() + batch.uFirst);
    }
    copyRuns(m_vecRuns, m_farList.resize(uTotal));
}

void ClutterGather::copyRuns(std::span<Run> spanRuns, ClutterInstance* pTo)
{
    tbb::parallel_for(tbb::blocked_range<size_t>(0, spanRuns.size(), s_uGroupsInTask),
                      [&](const auto& range)
                      {
                          for (const Run& run : spanRuns.subspan(range.begin(), range.size()))
                              if (run.uCount > 0)
                                  copyStreaming(pTo + run.uTo, run.pFrom,
                                                run.uCount * sizeof(ClutterInstance));
                      });
}

} // namespace rend
