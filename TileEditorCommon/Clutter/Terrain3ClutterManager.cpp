#include "TileEditorCommon/Clutter/Terrain3ClutterManager.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Tile/TileFormat.h"

#include <cmath>
#include <tbb/parallel_for.h>

namespace tilebuilder
{

namespace
{

constexpr int s_iLevels = 4;

/// floor(f / 32), exactly: the divisor is a power of two.
int16_t groupOf(float f)
{
    return static_cast<int16_t>(std::floor(f * (1.0f / rend::StaticCullingGroup::s_fSide)));
}

} // namespace

Terrain3ClutterManager::Terrain3ClutterManager(rend::CullingGroups& groups, const rend::ClutterTypes& types,
                                               SampleFunction fnSample, CellFunction fnCell, int iPatchSize,
                                               int iDensity)
    : m_groups(groups),
      m_types(types),
      m_fnSample(std::move(fnSample)),
      m_fnCell(std::move(fnCell)),
      m_iPatchSize(iPatchSize),
      m_arrPositions(makeClutterPositions(iPatchSize, iDensity))
{
    for (size_t uLevel = 0; uLevel < m_arrPositions.size(); ++uLevel)
        for (const glm::vec2& place : m_arrPositions[uLevel])
            m_arrSampleOf[uLevel].push_back(
                static_cast<uint16_t>(tile::ClutterTileSamples * static_cast<int>(2.0f * place.y) +
                                      static_cast<int>(2.0f * place.x)));
}

Terrain3ClutterManager::~Terrain3ClutterManager()
{
    clear();
}

std::span<const ClutterRecord> Terrain3ClutterManager::records(const ClutterKey& key) const
{
    const auto it = m_mapRecords.find(key);
    return it == m_mapRecords.end() ? std::span<const ClutterRecord>() : it->second.vec;
}

void Terrain3ClutterManager::clear()
{
    for (auto& [key, records] : m_mapRecords)
        remove(records);
    m_mapRecords.clear();
}

void Terrain3ClutterManager::remove(Records& records) const
{
    if (!records.bPlaced)
    {
        records.vec.clear();
        return;
    }
    records.bPlaced = false;
    rend::StaticCullingGroup* pGroup = nullptr;
    rend::GroupKey last;
    for (const ClutterRecord& record : records.vec)
    {
        if (record.slot == ClutterRecord::s_uNoSlot)
            continue;
        if (!pGroup || record.groupKey != last)
            pGroup = m_groups.find(last = record.groupKey);
        if (pGroup)
            pGroup->removeClutter(record.slot);
    }
    records.vec.clear();
}

void Terrain3ClutterManager::generate(const ClutterKey& key, std::vector<ClutterRecord>& vecRecords) const
{
    const glm::vec2 corner(key.iCellX * m_iPatchSize, key.iCellY * m_iPatchSize);
    const auto uLevel = static_cast<size_t>(key.iLevel);
    const std::span<const uint8_t> spanSamples =
        m_fnCell ? m_fnCell(key.iCellX, key.iCellY) : std::span<const uint8_t>();
    const bool bKnown = spanSamples.size() == tile::SamplesPerPatch;
    for (size_t u = 0; u < m_arrPositions[uLevel].size(); ++u)
    {
        if (bKnown && spanSamples[m_arrSampleOf[uLevel][u]] == tile::EmptyClutter)
            continue;
        const glm::vec2& local = m_arrPositions[uLevel][u];
        float fHeight = 0.0f;
        uint32_t uColor = 0;
        glm::vec3 normal(0.0f, 0.0f, 1.0f);
        const uint8_t uIndex = m_fnSample(key.iCellX, key.iCellY, local, fHeight, uColor, normal);
        if (uIndex == tile::EmptyClutter)
            continue;
        if (uIndex >= m_types.size())
        {
            QM_LOG_ERROR("Clutter index out of bounds: ", int{uIndex}, " (max ",
                         static_cast<int>(m_types.size()) - 1, ")");
            continue;
        }
        const glm::vec2 place = corner + local;
        vecRecords.push_back({uIndex,
                              &m_types.mesh(uIndex),
                              {place.x, place.y, fHeight},
                              normal,
                              __builtin_bswap32(uColor),
                              m_types.size(uIndex),
                              {groupOf(place.x), groupOf(place.y)},
                              ClutterRecord::s_uNoSlot});
    }
}

void Terrain3ClutterManager::add(Records& records) const
{
    records.bPlaced = true;
    rend::StaticCullingGroup* pGroup = nullptr;
    rend::GroupKey last;
    for (ClutterRecord& record : records.vec)
    {
        if (!pGroup || record.groupKey != last)
            pGroup = m_groups.find(last = record.groupKey);
        if (pGroup)
            record.slot = pGroup->addClutter(*record.mesh, static_cast<uint8_t>(record.index),
                                             record.position, record.normal, record.color, record.size);
    }
}

/// Stops at the first group that can't be made: the others couldn't either.
void Terrain3ClutterManager::makeGroups(std::span<const CellRecords> spanCells) const
{
    for (const CellRecords& arrLevels : spanCells)
        for (const Records* pRecords : arrLevels)
        {
            const rend::GroupKey* pLast = nullptr;
            for (const ClutterRecord& record : pRecords->vec)
                if ((!pLast || record.groupKey != *pLast) &&
                    !m_groups.findOrCreate(*(pLast = &record.groupKey)))
                    return;
        }
}

std::vector<Terrain3ClutterManager::CellRecords>
Terrain3ClutterManager::makeRecords(std::span<const ClutterCellPos> spanCells)
{
    // A place of a cell lies in that cell's own groups, so cells share none and can go in parallel, once
    // the maps have their entries.
    std::vector<CellRecords> vecRecords;
    for (const ClutterCellPos& cell : spanCells)
    {
        auto& arrLevels = vecRecords.emplace_back();
        for (int iLevel = 0; iLevel < s_iLevels; ++iLevel)
            arrLevels[static_cast<size_t>(iLevel)] = &m_mapRecords[{cell.iX, cell.iY, iLevel}];
    }
    tbb::parallel_for(size_t{0}, spanCells.size(),
                      [&](size_t u)
                      {
                          for (int iLevel = 0; iLevel < s_iLevels; ++iLevel)
                          {
                              Records& records = *vecRecords[u][static_cast<size_t>(iLevel)];
                              remove(records);
                              generate({spanCells[u].iX, spanCells[u].iY, iLevel}, records.vec);
                          }
                      });
    return vecRecords;
}

void Terrain3ClutterManager::regenerate(std::span<const ClutterCellPos> spanCells)
{
    const std::vector<CellRecords> vecRecords = makeRecords(spanCells);
    makeGroups(vecRecords);
    tbb::parallel_for(size_t{0}, spanCells.size(),
                      [&](size_t u)
                      {
                          for (Records* pRecords : vecRecords[u])
                              add(*pRecords);
                      });
}

} // namespace tilebuilder
