// The plants of EditorTerrainClutter: which cells are out of date, and their renewal.

#include "TileEditorCommon/Clutter/EditorTerrainClutter.h"
#include "TileEditorCommon/Clutter/Terrain3ClutterManager.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

#include <glm/geometric.hpp>

namespace tilebuilder
{

void EditorTerrainClutter::attach(rend::CullingGroups& groups, const rend::ClutterTypes& types)
{
    m_pManager = std::make_unique<Terrain3ClutterManager>(
        groups, types,
        [this](int iCellX, int iCellY, const glm::vec2& localPosition, float& height, uint32_t& color,
               glm::vec3& normal) { return sampleAt(iCellX, iCellY, localPosition, height, color, normal); },
        [this](int iCellX, int iCellY) { return samples(iCellX, iCellY); });
    for (size_t uCell = 0; uCell < m_vecQueued.size(); ++uCell)
        queueCell(uCell);
}

void EditorTerrainClutter::queueCell(size_t uCell)
{
    if (!m_pManager || m_vecQueued[uCell])
        return;
    m_vecQueued[uCell] = 1;
    ++m_uQueued;
}

/// A cell's normals depend on the vertices one beyond its edge, so its neighbours' changes count.
void EditorTerrainClutter::queueChangedGround()
{
    if (m_surface.revision() == m_uLastSurfaceRevision)
        return;
    for (int iY = 0; iY < m_cellsY; ++iY)
        for (int iX = 0; iX < m_cellsX; ++iX)
        {
            if (m_surface.cellRevision(iX, iY) <= m_uLastSurfaceRevision)
                continue;
            for (int j = iY - 1; j <= iY + 1; ++j)
                for (int i = iX - 1; i <= iX + 1; ++i)
                    if (hasCell(i, j))
                        queueCell(cellIndex(i, j));
        }
    m_uLastSurfaceRevision = m_surface.revision();
}

void EditorTerrainClutter::update(const glm::vec2& camera, bool bFollow)
{
    if (!m_pManager)
        return;
    if (bFollow)
        queueChangedGround();
    regenerate(camera, s_uCellsInFrame);
}

void EditorTerrainClutter::finishUpdate()
{
    if (!m_pManager)
        return;
    queueChangedGround();
    regenerate({}, m_uQueued);
}

void EditorTerrainClutter::regenerate(const glm::vec2& camera, size_t uMost)
{
    if (m_uQueued == 0)
        return;
    struct Entry
    {
        float fDistance;
        size_t uCell;
    };
    std::vector<Entry> vecEntries;
    for (size_t uCell = 0; uCell < m_vecQueued.size(); ++uCell)
    {
        if (!m_vecQueued[uCell])
            continue;
        const auto uWidth = static_cast<size_t>(m_cellsX);
        const glm::vec2 centre = (glm::vec2(uCell % uWidth, uCell / uWidth) + 0.5f) * float{tile::CellSize};
        vecEntries.push_back({glm::distance(centre, camera), uCell});
    }
    if (vecEntries.size() > uMost)
    {
        const auto itEnd = vecEntries.begin() + static_cast<std::ptrdiff_t>(uMost);
        std::nth_element(vecEntries.begin(), itEnd, vecEntries.end(),
                         [](const Entry& a, const Entry& b) { return a.fDistance < b.fDistance; });
        vecEntries.erase(itEnd, vecEntries.end());
    }
    std::vector<ClutterCellPos> vecCells;
    for (const Entry& entry : vecEntries)
    {
        const auto iCell = static_cast<int>(entry.uCell);
        vecCells.push_back({iCell % m_cellsX, iCell / m_cellsX});
        m_vecQueued[entry.uCell] = 0;
    }
    m_uQueued -= vecCells.size();
    m_pManager->regenerate(vecCells);
}

} // namespace tilebuilder
