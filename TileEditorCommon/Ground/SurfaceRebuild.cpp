// Normals and triangles of EditorTerrainSurface.

#include "KestrelCommon/Core/Hash.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"
#include "TileEditorCommon/Ground/RowMath.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

namespace tilebuilder
{

namespace
{

constexpr int s_iSerialVertices = 16'384;
constexpr size_t s_uRowGrain = 16;

template <class Function>
void forRows(const GridRect& rect, const Function& fnRow)
{
    if (int64_t{rect.width()} * rect.height() < s_iSerialVertices)
    {
        for (int j = rect.y0; j < rect.y1; ++j)
            fnRow(j);
        return;
    }
    tbb::parallel_for(tbb::blocked_range<int>(rect.y0, rect.y1, s_uRowGrain),
                      [&](const auto& range)
                      {
                          for (int j = range.begin(); j < range.end(); ++j)
                              fnRow(j);
                      });
}

} // namespace

// Central differences over 4 m. The rim keeps its normals.
void EditorTerrainSurface::rebuildNormals(const GridRect& rect)
{
    const size_t uColumns = m_verticesX;
    forRows(rect,
            [&](int j)
            {
                thread_local std::vector<float> s_vecScratch;
                const auto uCount = static_cast<size_t>(rect.width());
                s_vecScratch.resize(uCount * 3);
                float* pDx = s_vecScratch.data();
                float* pDy = pDx + uCount;
                float* pScale = pDy + uCount;
                const size_t uPlace = static_cast<size_t>(j) * uColumns + static_cast<size_t>(rect.x0);
                const float* pRow = m_heights.data() + uPlace;
                for (size_t i = 0; i < uCount; ++i)
                    pDx[i] = pRow[i + 1] - pRow[static_cast<ptrdiff_t>(i) - 1];
                const float* pAbove = pRow - uColumns;
                const float* pBelow = pRow + uColumns;
                for (size_t i = 0; i < uCount; ++i)
                    pDy[i] = pBelow[i] - pAbove[i];
                rowInverseLengths(pDx, pDy, pScale, uCount);
                Vertex* pVertices = m_vertices.data() + uPlace;
                for (size_t i = 0; i < uCount; ++i)
                    pVertices[i].normal = {-4.0f * pDx[i] * pScale[i], -4.0f * pDy[i] * pScale[i],
                                           16.0f * pScale[i]};
            });
}

// Only the first and the last index of a quad depend on its diagonal. True when one changed.
bool EditorTerrainSurface::triangulateRow(int iRow, int iFirst, int iLast)
{
    const size_t uTop = static_cast<size_t>(iRow) * m_verticesX;
    const float* pTop = m_heights.data() + uTop;
    const float* pBottom = pTop + m_verticesX;
    uint32_t* pIndices =
        m_indices.data() + (static_cast<size_t>(iRow) * m_quadsX + static_cast<size_t>(iFirst)) * 6;
    uint32_t uChanged = 0;
    for (int i = iFirst; i < iLast; ++i, pIndices += 6)
    {
        const uint32_t a = static_cast<uint32_t>(uTop) + static_cast<uint32_t>(i);
        const uint32_t uAcross =
            std::abs(pTop[i] - pBottom[i + 1]) >= std::abs(pTop[i + 1] - pBottom[i]) ? 0 : 1;
        const uint32_t uFirst = a + m_verticesX + uAcross;
        uChanged |= pIndices[0] ^ uFirst;
        pIndices[0] = uFirst;
        pIndices[5] = a + 1 - uAcross;
    }
    return uChanged != 0;
}

void EditorTerrainSurface::triangulate(const GridRect& quads)
{
    std::vector<uint8_t> vecChanged(static_cast<size_t>(quads.height()), 0);
    forRows(quads,
            [&](int j)
            {
                uint64_t& uHash = m_vecRowHashes[static_cast<size_t>(j)];
                const bool bChanged = triangulateRow(j, quads.x0, quads.x1);
                if (!bChanged && uHash != 0)
                    return;
                vecChanged[static_cast<size_t>(j - quads.y0)] = bChanged;
                const size_t uRowIndices = size_t{m_quadsX} * 6;
                uHash = xxh3(std::as_bytes(
                    std::span(m_indices).subspan(static_cast<size_t>(j) * uRowIndices, uRowIndices)));
            });
    for (int j = quads.y0; j < quads.y1; ++j)
        if (vecChanged[static_cast<size_t>(j - quads.y0)])
            m_pending.quads.unite({quads.x0, j, quads.x1, j + 1});
    m_indexHash = xxh3(std::as_bytes(std::span(m_vecRowHashes)));
}

bool EditorTerrainSurface::rebuild()
{
    if (!m_dirty)
        return false;
    m_dirty = false;
    if (m_dirtyHeights.empty())
        return true;
    const GridRect heights = std::exchange(m_dirtyHeights, {});
    const GridRect interior{1, 1, static_cast<int>(m_quadsX), static_cast<int>(m_quadsY)};
    const GridRect normals = heights.grown(1).clipped(interior);
    const GridRect quads{heights.x0 - 1, heights.y0 - 1, heights.x1, heights.y1};
    rebuildNormals(normals);
    triangulate(quads.clipped({0, 0, static_cast<int>(m_quadsX), static_cast<int>(m_quadsY)}));
    m_pending.vertices.unite(normals);
    // The collision shape reads the heights in place.
    m_ray.updateBounds({m_heights, m_indices, static_cast<int>(m_quadsX), static_cast<int>(m_quadsY)},
                       heights);
    return true;
}

} // namespace tilebuilder
