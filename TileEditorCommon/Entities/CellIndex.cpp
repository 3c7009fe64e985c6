#include "TileEditorCommon/Entities/CellIndex.h"

#include "KestrelCommon/Core/Assert.h"

#include <cmath>

namespace tilebuilder
{

namespace
{

constexpr float s_fHalfHeight = 8192.0f; ///< metres that a cell reaches up and down

} // namespace

void CellIndex::reset(int iCellsX, int iCellsY, bool bBounded)
{
    m_iCellsX = iCellsX;
    m_iCellsY = iCellsY;
    m_uCells = static_cast<uint32_t>(iCellsX) * static_cast<uint32_t>(iCellsY);
    m_bBounded = bBounded;
    ++m_uRevision;
    const size_t uSections = tile::SectionGroupCount * (m_uCells + 1) * s_uLevels;
    for (std::vector<Section>& vecSections : m_arrSections)
        vecSections.assign(uSections, Section{{}, m_uRevision});
    m_mapPlaces.clear();
}

uint32_t CellIndex::cellAt(const glm::vec3& point) const
{
    if (!m_bBounded)
        return 0;
    const float fX = std::floor(point.x / tile::CellSize);
    const float fY = std::floor(point.y / tile::CellSize);
    // Written so that a place that is no number is outside.
    const bool bInside = fX >= 0.0f && fX < static_cast<float>(m_iCellsX) && fY >= 0.0f &&
                         fY < static_cast<float>(m_iCellsY) && point.z >= -s_fHalfHeight &&
                         point.z < s_fHalfHeight;
    if (!bInside)
        return outside();
    return static_cast<uint32_t>(fY) * static_cast<uint32_t>(m_iCellsX) + static_cast<uint32_t>(fX);
}

glm::vec3 CellIndex::origin(uint32_t uCell) const
{
    if (uCell >= m_uCells)
        return glm::vec3(0.0f);
    const auto uWidth = static_cast<uint32_t>(m_iCellsX);
    return {static_cast<float>(uCell % uWidth) * tile::CellSize,
            static_cast<float>(uCell / uWidth) * tile::CellSize, 0.0f};
}

uint32_t CellIndex::sectionOf(const SectionKey& key) const
{
    if (!QM_ASSERT(key.uCell <= m_uCells && key.uLevel < s_uLevels))
        return 0;
    return (static_cast<uint32_t>(key.eGroup) * (m_uCells + 1) + key.uCell) * s_uLevels + key.uLevel;
}

void CellIndex::place(uint32_t uId, StoredForm eForm, const SectionKey& key)
{
    const auto uForm = static_cast<size_t>(eForm);
    const uint32_t uSection = sectionOf(key);
    Place& place = m_mapPlaces[uId];
    Section& section = m_arrSections[uForm][uSection];
    if (place.arrSection[uForm] != uSection)
    {
        leave(place, uForm);
        place.arrSection[uForm] = uSection;
        place.arrSlot[uForm] = static_cast<uint32_t>(section.vecIds.size());
        section.vecIds.push_back(uId);
    }
    section.uRevision = ++m_uRevision;
}

void CellIndex::remove(uint32_t uId)
{
    const auto itPlace = m_mapPlaces.find(uId);
    if (itPlace == m_mapPlaces.end())
        return;
    for (size_t uForm = 0; uForm < m_arrSections.size(); ++uForm)
        leave(itPlace->second, uForm);
    m_mapPlaces.erase(itPlace);
}

void CellIndex::leave(Place& place, size_t uForm)
{
    if (place.arrSection[uForm] == s_uNone)
        return;
    Section& section = m_arrSections[uForm][place.arrSection[uForm]];
    const uint32_t uSlot = place.arrSlot[uForm];
    const uint32_t uLast = section.vecIds.back();
    section.vecIds[uSlot] = uLast;
    section.vecIds.pop_back();
    if (uSlot < section.vecIds.size())
        m_mapPlaces.find(uLast)->second.arrSlot[uForm] = uSlot;
    section.uRevision = ++m_uRevision;
    place.arrSection[uForm] = s_uNone;
}

std::span<const uint32_t> CellIndex::ids(StoredForm eForm, const SectionKey& key) const
{
    return m_arrSections[static_cast<size_t>(eForm)][sectionOf(key)].vecIds;
}

uint64_t CellIndex::revision(StoredForm eForm, const SectionKey& key) const
{
    return m_arrSections[static_cast<size_t>(eForm)][sectionOf(key)].uRevision;
}

} // namespace tilebuilder
