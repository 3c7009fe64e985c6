#include "KestrelCommon/renderer/InstanceWorld.h"

#include "KestrelCommon/Core/Assert.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <glm/common.hpp>
#include <glm/geometric.hpp>
#include <numeric>
#include <tbb/parallel_for_each.h>

namespace rend
{

namespace
{

constexpr uint32_t s_uWhite = 0xFFFFFFFF;
constexpr size_t s_uMaxChanges = 4096;

Aabb joined(const Aabb& a, const Aabb& b)
{
    return {glm::min(a.lowest, b.lowest), glm::max(a.highest, b.highest)};
}

std::array<uint32_t, 4> pageColours(std::span<const uint32_t> spanColours, uint32_t uPage)
{
    std::array<uint32_t, 4> arrColours{};
    for (size_t u = 0; u < 4; ++u)
        arrColours[u] = uPage * 4 + u < spanColours.size() ? spanColours[uPage * 4 + u] : s_uWhite;
    return arrColours;
}

int16_t keyPart(float f)
{
    const float fCell = std::floor(f / InstanceWorld::s_fCellSize);
    return fCell >= -32768.0f ? static_cast<int16_t>(std::min(fCell, 32767.0f)) : int16_t{-32768};
}

} // namespace

std::array<glm::vec4, 3> instanceRows(const Transform& transform)
{
    const glm::mat3 turn = glm::mat3_cast(transform.rotation);
    std::array<glm::vec4, 3> arrRows{};
    for (int i = 0; i < 3; ++i)
        arrRows[static_cast<size_t>(i)] = {turn[0][i] * transform.scale.x, turn[1][i] * transform.scale.y,
                                           turn[2][i] * transform.scale.z, transform.position[i]};
    return arrRows;
}

Aabb movedBox(const Aabb& box, const std::array<glm::vec4, 3>& arrRows)
{
    const glm::vec3 centre = box.centre();
    const glm::vec3 half = box.size() * 0.5f;
    Aabb moved;
    for (int i = 0; i < 3; ++i)
    {
        const glm::vec4& row = arrRows[static_cast<size_t>(i)];
        const float fMiddle = row.x * centre.x + row.y * centre.y + row.z * centre.z + row.w;
        const float fReach = std::abs(row.x) * half.x + std::abs(row.y) * half.y + std::abs(row.z) * half.z;
        moved.lowest[i] = fMiddle - fReach;
        moved.highest[i] = fMiddle + fReach;
    }
    return moved;
}

uint32_t InstanceWorld::uniqueNumber()
{
    static std::atomic<uint32_t> s_uLast = 0;
    return ++s_uLast;
}

uint32_t InstanceWorld::addRenderable(std::shared_ptr<const resource::Renderable> pRenderable)
{
    uint32_t uRenderable = static_cast<uint32_t>(m_vecRenderables.size());
    if (m_vecFreeRenderables.empty())
        m_vecRenderables.emplace_back();
    else
    {
        uRenderable = m_vecFreeRenderables.back();
        m_vecFreeRenderables.pop_back();
    }
    RenderableEntry& entry = m_vecRenderables[uRenderable];
    entry.pRenderable = std::move(pRenderable);
    entry.uGeneration = uniqueNumber();
    return uRenderable;
}

void InstanceWorld::removeRenderable(uint32_t uRenderable)
{
    if (!renderable(uRenderable))
        return;
    RenderableEntry& entry = m_vecRenderables[uRenderable];
    if (!QM_ASSERT(entry.uInstances == 0 && entry.vecHighlights.empty()))
        return;
    // The kinds stay behind, unused: they are few.
    entry = {};
    m_vecFreeRenderables.push_back(uRenderable);
}

const resource::Renderable* InstanceWorld::renderable(uint32_t uRenderable) const
{
    return uRenderable < m_vecRenderables.size() ? m_vecRenderables[uRenderable].pRenderable.get() : nullptr;
}

uint32_t InstanceWorld::generation(uint32_t uRenderable) const
{
    return uRenderable < m_vecRenderables.size() ? m_vecRenderables[uRenderable].uGeneration : 0;
}

void InstanceWorld::ensureKinds(RenderableEntry& entry, uint32_t uRenderable)
{
    if (entry.uFirstKind != s_uNone)
        return;
    entry.box = entry.pRenderable->model().box;
    entry.uPages = std::max(1u, static_cast<uint32_t>(entry.pRenderable->colorSlots().size() + 3) / 4);
    entry.uFirstKind = static_cast<uint32_t>(m_vecKinds.size());
    for (uint32_t uPage = 0; uPage < entry.uPages; ++uPage)
        m_vecKinds.push_back({uRenderable, uPage});
}

uint32_t InstanceWorld::cellAt(const glm::vec3& position)
{
    const GroupKey key{keyPart(position.x), keyPart(position.y)};
    const auto [it, bNew] = m_mapCells.try_emplace(key, static_cast<uint32_t>(m_vecCells.size()));
    if (bNew)
        m_vecCells.push_back(std::make_unique<InstanceCell>());
    return it->second;
}

uint32_t InstanceWorld::takeRecord()
{
    if (m_vecFreeRecords.empty())
    {
        m_vecRecords.emplace_back();
        return static_cast<uint32_t>(m_vecRecords.size() - 1);
    }
    const uint32_t uRecord = m_vecFreeRecords.back();
    m_vecFreeRecords.pop_back();
    return uRecord;
}

void InstanceWorld::insert(uint32_t uRecord, uint32_t uKind, const InstanceData& data, uint32_t uCell,
                           const Aabb& box)
{
    InstanceCell& cell = *m_vecCells[uCell];
    m_vecRecords[uRecord].uCell = uCell;
    m_vecRecords[uRecord].uPlace = static_cast<uint32_t>(cell.vecData.size());
    cell.box = cell.vecData.empty() ? box : joined(cell.box, box);
    cell.vecData.push_back(data);
    cell.vecInfo.push_back({uKind, uRecord});
    cell.bDirty = true;
}

void InstanceWorld::takeOut(const Record& record)
{
    InstanceCell& cell = *m_vecCells[record.uCell];
    cell.vecData[record.uPlace] = cell.vecData.back();
    cell.vecInfo[record.uPlace] = cell.vecInfo.back();
    m_vecRecords[cell.vecInfo[record.uPlace].uRecord].uPlace = record.uPlace;
    cell.vecData.pop_back();
    cell.vecInfo.pop_back();
    cell.bDirty = true;
}

uint32_t InstanceWorld::addInstance(uint32_t uRenderable, const Transform& transform,
                                    std::span<const uint32_t> spanColours)
{
    if (!QM_ASSERT(renderable(uRenderable) != nullptr))
        return s_uNone;
    RenderableEntry& entry = m_vecRenderables[uRenderable];
    ensureKinds(entry, uRenderable);
    InstanceData data{instanceRows(transform), {}};
    const Aabb box = movedBox(entry.box, data.arrRows);
    const uint32_t uCell = cellAt(transform.position);
    uint32_t uNext = s_uNone;
    for (uint32_t uPage = entry.uPages; uPage-- > 0;)
    {
        const uint32_t uRecord = takeRecord();
        m_vecRecords[uRecord].uRenderable = uRenderable;
        m_vecRecords[uRecord].uNextPage = uNext;
        data.arrColours = pageColours(spanColours, uPage);
        insert(uRecord, entry.uFirstKind + uPage, data, uCell, box);
        uNext = uRecord;
    }
    ++entry.uInstances;
    ++m_uInstances;
    ++m_uRevision;
    noteChange(box);
    return uNext;
}

void InstanceWorld::removeInstance(uint32_t uSlot)
{
    if (!instance(uSlot))
        return;
    RenderableEntry& entry = m_vecRenderables[m_vecRecords[uSlot].uRenderable];
    --entry.uInstances;
    --m_uInstances;
    noteChange(movedBox(entry.box, instance(uSlot)->arrRows));
    while (uSlot != s_uNone)
    {
        takeOut(m_vecRecords[uSlot]);
        const uint32_t uNext = m_vecRecords[uSlot].uNextPage;
        m_vecRecords[uSlot] = {};
        m_vecFreeRecords.push_back(uSlot);
        uSlot = uNext;
    }
    ++m_uRevision;
}

void InstanceWorld::setTransform(uint32_t uSlot, const Transform& transform)
{
    if (!instance(uSlot))
        return;
    const auto arrRows = instanceRows(transform);
    const Aabb& local = m_vecRenderables[m_vecRecords[uSlot].uRenderable].box;
    const Aabb box = movedBox(local, arrRows);
    noteChange(movedBox(local, instance(uSlot)->arrRows));
    noteChange(box);
    const uint32_t uCell = cellAt(transform.position);
    for (; uSlot != s_uNone; uSlot = m_vecRecords[uSlot].uNextPage)
    {
        const Record record = m_vecRecords[uSlot];
        InstanceCell& cell = *m_vecCells[record.uCell];
        cell.vecData[record.uPlace].arrRows = arrRows;
        if (record.uCell == uCell)
        {
            cell.box = joined(cell.box, box);
            cell.bDirty = true;
            continue;
        }
        const InstanceData data = cell.vecData[record.uPlace];
        const uint32_t uKind = cell.vecInfo[record.uPlace].uKind;
        takeOut(record);
        insert(uSlot, uKind, data, uCell, box);
    }
    ++m_uRevision;
}

void InstanceWorld::setColours(uint32_t uSlot, std::span<const uint32_t> spanColours)
{
    if (!instance(uSlot))
        return;
    for (uint32_t uPage = 0; uSlot != s_uNone; ++uPage, uSlot = m_vecRecords[uSlot].uNextPage)
        m_vecCells[m_vecRecords[uSlot].uCell]->vecData[m_vecRecords[uSlot].uPlace].arrColours =
            pageColours(spanColours, uPage);
    ++m_uRevision;
}

const InstanceData* InstanceWorld::instance(uint32_t uSlot) const
{
    if (uSlot >= m_vecRecords.size() || m_vecRecords[uSlot].uCell == s_uNone)
        return nullptr;
    return &m_vecCells[m_vecRecords[uSlot].uCell]->vecData[m_vecRecords[uSlot].uPlace];
}

size_t InstanceWorld::instanceCount(uint32_t uRenderable) const
{
    return uRenderable < m_vecRenderables.size() ? m_vecRenderables[uRenderable].uInstances : 0;
}

uint32_t InstanceWorld::addHighlight(uint32_t uRenderable, const Transform& transform)
{
    if (!QM_ASSERT(renderable(uRenderable) != nullptr))
        return s_uNone;
    std::vector<InstanceData>& vecHighlights = m_vecRenderables[uRenderable].vecHighlights;
    vecHighlights.push_back({instanceRows(transform), {s_uWhite, s_uWhite, s_uWhite, s_uWhite}});
    ++m_uHighlights;
    ++m_uRevision;
    return static_cast<uint32_t>(vecHighlights.size() - 1);
}

void InstanceWorld::removeHighlight(uint32_t uRenderable, uint32_t uPlace)
{
    if (uPlace >= highlights(uRenderable).size())
        return;
    std::vector<InstanceData>& vecHighlights = m_vecRenderables[uRenderable].vecHighlights;
    vecHighlights[uPlace] = vecHighlights.back();
    vecHighlights.pop_back();
    --m_uHighlights;
    ++m_uRevision;
}

void InstanceWorld::moveHighlight(uint32_t uRenderable, uint32_t uPlace, const Transform& transform)
{
    if (uPlace >= highlights(uRenderable).size())
        return;
    m_vecRenderables[uRenderable].vecHighlights[uPlace].arrRows = instanceRows(transform);
    ++m_uRevision;
}

std::span<const InstanceData> InstanceWorld::highlights(uint32_t uRenderable) const
{
    if (uRenderable >= m_vecRenderables.size())
        return {};
    return m_vecRenderables[uRenderable].vecHighlights;
}

void InstanceWorld::noteChange(const Aabb& box)
{
    if (m_bManyChanges)
        return;
    m_vecChanges.push_back(box);
    if (m_vecChanges.size() > s_uMaxChanges)
    {
        m_bManyChanges = true;
        m_vecChanges.clear();
    }
}

bool InstanceWorld::takeChanges(std::vector<Aabb>& vecBoxes)
{
    vecBoxes = std::exchange(m_vecChanges, {});
    return !std::exchange(m_bManyChanges, false);
}

void InstanceWorld::sortCells()
{
    std::vector<InstanceCell*> vecDirty;
    for (const auto& pCell : m_vecCells)
        if (pCell->bDirty)
            vecDirty.push_back(pCell.get());
    // Each cell's instances have records of their own.
    if (vecDirty.size() == 1)
        sortCell(*vecDirty[0]);
    else
        tbb::parallel_for_each(vecDirty.begin(), vecDirty.end(),
                               [this](InstanceCell* pCell) { sortCell(*pCell); });
}

void InstanceWorld::sortCell(InstanceCell& cell)
{
    const auto bByKind = [](const InstanceCell::Info& a, const InstanceCell::Info& b)
    { return a.uKind < b.uKind; };
    if (!std::is_sorted(cell.vecInfo.begin(), cell.vecInfo.end(), bByKind))
    {
        std::vector<uint32_t> vecOrder(cell.vecInfo.size());
        std::iota(vecOrder.begin(), vecOrder.end(), 0u);
        std::stable_sort(vecOrder.begin(), vecOrder.end(),
                         [&](uint32_t a, uint32_t b) { return bByKind(cell.vecInfo[a], cell.vecInfo[b]); });
        std::vector<InstanceData> vecData;
        std::vector<InstanceCell::Info> vecInfo;
        vecData.reserve(vecOrder.size());
        vecInfo.reserve(vecOrder.size());
        for (const uint32_t u : vecOrder)
        {
            m_vecRecords[cell.vecInfo[u].uRecord].uPlace = static_cast<uint32_t>(vecInfo.size());
            vecData.push_back(cell.vecData[u]);
            vecInfo.push_back(cell.vecInfo[u]);
        }
        cell.vecData.swap(vecData);
        cell.vecInfo.swap(vecInfo);
    }
    cell.vecBatches.clear();
    for (uint32_t u = 0; u < cell.vecInfo.size(); ++u)
    {
        const uint32_t uKind = cell.vecInfo[u].uKind;
        const Aabb box =
            movedBox(m_vecRenderables[m_vecKinds[uKind].uRenderable].box, cell.vecData[u].arrRows);
        cell.box = u == 0 ? box : joined(cell.box, box);
        if (cell.vecBatches.empty() || cell.vecBatches.back().uKind != uKind)
            cell.vecBatches.push_back({uKind, u, 0, 0.0f});
        InstanceCell::Batch& batch = cell.vecBatches.back();
        ++batch.uCount;
        const glm::vec3 size = box.size();
        batch.fSize = std::max(batch.fSize, std::max({size.x, size.y, size.z}));
    }
    cell.bDirty = false;
}

} // namespace rend
