// Reading and writing the cells of EditorTerrainSurface.

#include "TileEditorCommon/Ground/DisplayColor.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

#include <cfloat>
#include <tbb/parallel_for.h>

namespace tilebuilder
{

namespace
{

constexpr int s_iVertices = tile::CellQuads + 1;
constexpr int s_iTexels = tile::CellTexels + 1;

// Nothing in the editor can stand a height that isn't a number.
float usableHeight(float fHeight)
{
    return std::abs(fHeight) <= FLT_MAX ? fHeight : 0.0f;
}

} // namespace

void EditorTerrainSurface::writeCell(ByteStream& stream, int iCellX, int iCellY, int iMip) const
{
    if (iMip < 0 || iMip >= tile::MipCount || iCellX < 0 || iCellY < 0 || iCellX >= m_cellsX ||
        iCellY >= m_cellsY)
        return;
    const uint32_t uSize = tile::surfaceSectionSize(iMip);
    std::byte* pOut = stream.extend(uSize);
    static_cast<void>(tile::writeSurfaceSection(grids(), iCellX, iCellY, iMip, {pOut, uSize}));
}

// Takes the part of a section that lies in the two rectangles, in samples of the tile.
void EditorTerrainSurface::unpackCell(const CellSection& cell, const GridRect& vertices,
                                      const GridRect& texels)
{
    const std::byte* pBytes = cell.spanBytes.data();
    for (int j = vertices.y0; j < vertices.y1; ++j)
    {
        const int iInCell =
            (j - cell.iCellY * tile::CellQuads) * s_iVertices + vertices.x0 - cell.iCellX * tile::CellQuads;
        const std::byte* pRecord = pBytes + static_cast<size_t>(iInCell) * sizeof(tile::VertexRecord);
        const size_t uRow = static_cast<size_t>(j) * m_verticesX;
        const float* pFactors = NoiseImage::factors().data() +
                                (static_cast<size_t>(j) / 2 % NoiseImage::s_uSide) * NoiseImage::s_uSide;
        for (int i = vertices.x0; i < vertices.x1; ++i, pRecord += sizeof(tile::VertexRecord))
        {
            tile::VertexRecord record;
            std::memcpy(&record, pRecord, sizeof(record));
            const size_t uPlace = uRow + static_cast<size_t>(i);
            const float fHeight = usableHeight(record.height);
            m_heights[uPlace] = fHeight;
            m_vertices[uPlace].height = fHeight;
            m_vertices[uPlace].color =
                displayColor(record.color, pFactors[static_cast<size_t>(i) / 2 % NoiseImage::s_uSide]);
            m_colors[uPlace] = tile::unpackColor(record.color);
        }
    }
    pBytes += static_cast<size_t>(s_iVertices * s_iVertices) * sizeof(tile::VertexRecord);
    for (int j = texels.y0; j < texels.y1; ++j)
    {
        const int iInCell =
            (j - cell.iCellY * tile::CellTexels) * s_iTexels + texels.x0 - cell.iCellX * tile::CellTexels;
        const std::byte* pRecord = pBytes + static_cast<size_t>(iInCell) * sizeof(tile::GroundRecord);
        const size_t uFirst = static_cast<size_t>(j) * m_texelsX + static_cast<size_t>(texels.x0);
        tile::splitGroundRecords(pRecord, static_cast<size_t>(texels.width()), m_texels0.data() + uFirst,
                                 m_texels1.data() + uFirst);
        if (m_texelFloats0.empty())
            continue;
        for (size_t i = uFirst; i < uFirst + static_cast<size_t>(texels.width()); ++i)
        {
            tile::unpackBytes(m_texels0[i], &m_texelFloats0[i].x);
            tile::unpackBytes(m_texels1[i], &m_texelFloats1[i].x);
        }
    }
}

bool EditorTerrainSurface::readCell(std::span<const std::byte> spanData, int iCellX, int iCellY)
{
    if (iCellX < 0 || iCellY < 0 || iCellX >= m_cellsX || iCellY >= m_cellsY ||
        spanData.size() != tile::surfaceSectionSize(0))
        return false;
    const int iX = iCellX * tile::CellQuads;
    const int iY = iCellY * tile::CellQuads;
    const GridRect vertices{iX, iY, iX + s_iVertices, iY + s_iVertices};
    const GridRect texels{iX * 2, iY * 2, iX * 2 + s_iTexels, iY * 2 + s_iTexels};
    unpackCell({iCellX, iCellY, spanData}, vertices, texels);
    m_pending.texels.unite(texels);
    markVertices(vertices, true);
    return true;
}

bool EditorTerrainSurface::readCells(std::span<const CellSection> spanCells)
{
    for (const CellSection& cell : spanCells)
        if (cell.iCellX < 0 || cell.iCellY < 0 || cell.iCellX >= m_cellsX || cell.iCellY >= m_cellsY ||
            cell.spanBytes.size() != tile::surfaceSectionSize(0))
            return false;
    if (spanCells.empty())
        return true;
    // The next material stroke makes the floats of a tile anew, for less than all cells cost here.
    if (spanCells.size() * 4 > m_vecCellRevisions.size())
    {
        m_texelFloats0 = {};
        m_texelFloats1 = {};
    }

    // The cell to the right and the one below are read later, so the far edges are theirs: each
    // cell writes samples of its own and the cells can be read in any order.
    tbb::parallel_for(
        size_t{0}, spanCells.size(),
        [&](size_t uCell)
        {
            const CellSection& cell = spanCells[uCell];
            const int iRightEdge = cell.iCellX == m_cellsX - 1 ? 1 : 0;
            const int iFarEdge = cell.iCellY == m_cellsY - 1 ? 1 : 0;
            const int iX = cell.iCellX * tile::CellQuads;
            const int iY = cell.iCellY * tile::CellQuads;
            unpackCell(cell, {iX, iY, iX + tile::CellQuads + iRightEdge, iY + tile::CellQuads + iFarEdge},
                       {iX * 2, iY * 2, iX * 2 + tile::CellTexels + iRightEdge,
                        iY * 2 + tile::CellTexels + iFarEdge});
        });

    GridRect vertices;
    for (const CellSection& cell : spanCells)
    {
        const int iX = cell.iCellX * tile::CellQuads;
        const int iY = cell.iCellY * tile::CellQuads;
        vertices.unite({iX, iY, iX + s_iVertices, iY + s_iVertices});
    }
    m_pending.texels.unite({vertices.x0 * 2, vertices.y0 * 2, vertices.x1 * 2 - 1, vertices.y1 * 2 - 1});
    m_pending.vertices.unite(vertices);
    m_dirtyHeights.unite(vertices);
    raiseRevision({});
    for (const CellSection& cell : spanCells)
        m_vecCellRevisions[static_cast<size_t>(cell.iCellY) * static_cast<size_t>(m_cellsX) +
                           static_cast<size_t>(cell.iCellX)] = m_revision;
    return true;
}

} // namespace tilebuilder
