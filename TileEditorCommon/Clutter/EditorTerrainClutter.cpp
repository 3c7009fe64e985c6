#include "TileEditorCommon/Clutter/EditorTerrainClutter.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "TileEditorCommon/Clutter/Terrain3ClutterManager.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

#include <tbb/parallel_for.h>

namespace tilebuilder
{

EditorTerrainClutter::EditorTerrainClutter(EditorSinkI& sink, const EditorTerrainSurface& surface,
                                           const tile::ClutterDatabase& database)
    : m_sink(sink),
      m_surface(surface),
      m_database(database)
{
}

EditorTerrainClutter::~EditorTerrainClutter() = default;

void EditorTerrainClutter::init(uint32_t sizeX, uint32_t sizeY)
{
    m_cellsX = static_cast<int>(sizeX >> 6);
    m_cellsY = static_cast<int>(sizeY >> 6);
    const size_t uCells = static_cast<size_t>(m_cellsX) * static_cast<size_t>(m_cellsY);
    m_tileData.assign(uCells * tile::SamplesPerPatch, tile::EmptyClutter);
    ++m_revision;
    m_vecCellRevisions.assign(uCells, m_revision);
    m_bToldNoTypes = false;
    if (m_pManager)
        m_pManager->clear();
    m_vecQueued.assign(uCells, 0);
    m_uQueued = 0;
    m_uLastSurfaceRevision = m_surface.revision();
}

void EditorTerrainClutter::release()
{
    if (m_pManager)
        m_pManager->clear();
    m_vecQueued = {};
    m_uQueued = 0;
    m_cellsX = m_cellsY = 0;
    m_tileData = {};
    m_vecCellRevisions = {};
    ++m_revision;
}

bool EditorTerrainClutter::hasCell(int iCellX, int iCellY) const
{
    return iCellX >= 0 && iCellY >= 0 && iCellX < m_cellsX && iCellY < m_cellsY;
}

size_t EditorTerrainClutter::cellIndex(int iCellX, int iCellY) const
{
    return static_cast<size_t>(iCellY) * static_cast<size_t>(m_cellsX) + static_cast<size_t>(iCellX);
}

std::span<uint8_t> EditorTerrainClutter::cellData(int iCellX, int iCellY)
{
    return std::span(m_tileData)
        .subspan(cellIndex(iCellX, iCellY) * tile::SamplesPerPatch, tile::SamplesPerPatch);
}

std::span<const uint8_t> EditorTerrainClutter::samples(int iCellX, int iCellY) const
{
    if (!hasCell(iCellX, iCellY))
        return {};
    return std::span(m_tileData)
        .subspan(cellIndex(iCellX, iCellY) * tile::SamplesPerPatch, tile::SamplesPerPatch);
}

void EditorTerrainClutter::setSamples(int iCellX, int iCellY, std::span<const uint8_t> spanSamples)
{
    if (!hasCell(iCellX, iCellY) || !QM_ASSERT(spanSamples.size() == tile::SamplesPerPatch))
        return;
    std::ranges::copy(spanSamples, cellData(iCellX, iCellY).begin());
    m_vecCellRevisions[cellIndex(iCellX, iCellY)] = ++m_revision;
    queueCell(cellIndex(iCellX, iCellY));
    m_sink.markChanged(ChangeClutter);
}

uint64_t EditorTerrainClutter::cellRevision(int iCellX, int iCellY) const
{
    return hasCell(iCellX, iCellY) ? m_vecCellRevisions[cellIndex(iCellX, iCellY)] : 0;
}

void EditorTerrainClutter::writeCell(ByteStream& stream, int iCellX, int iCellY) const
{
    if (!hasCell(iCellX, iCellY))
        return;
    const tile::ConstClutterSamples cell(samples(iCellX, iCellY).first<tile::SamplesPerPatch>());
    tile::writeClutterSection(stream, cell, m_database.lookUp());
}

void EditorTerrainClutter::reportNoTypes(bool bNoTypes)
{
    if (!bNoTypes || m_bToldNoTypes)
        return;
    m_bToldNoTypes = true;
    QM_LOG_ERROR("The tile holds clutter but no clutter types are known. Its samples are left empty.");
}

bool EditorTerrainClutter::readCell(std::span<const std::byte> spanData, int iCellX, int iCellY,
                                    uint32_t uVersion)
{
    const ClutterCell cell{iCellX, iCellY, spanData};
    return readCells({&cell, 1}, uVersion);
}

bool EditorTerrainClutter::readCells(std::span<const ClutterCell> spanCells, uint32_t uVersion)
{
    for (const ClutterCell& cell : spanCells)
        if (!hasCell(cell.iCellX, cell.iCellY) || !tile::isClutterSection(cell.spanBytes, uVersion))
            return false;
    if (spanCells.empty())
        return true;
    const tile::ClutterTypes types = m_database.lookUp();
    std::atomic<bool> bNoTypes = false;
    tbb::parallel_for(size_t{0}, spanCells.size(),
                      [&](size_t uCell)
                      {
                          const ClutterCell& cell = spanCells[uCell];
                          const tile::ClutterSamples target(
                              cellData(cell.iCellX, cell.iCellY).first<tile::SamplesPerPatch>());
                          bool bNone = false;
                          if (tile::readClutterSection(cell.spanBytes, uVersion, types, target, bNone) &&
                              bNone)
                              bNoTypes = true;
                      });
    ++m_revision;
    for (const ClutterCell& cell : spanCells)
    {
        m_vecCellRevisions[cellIndex(cell.iCellX, cell.iCellY)] = m_revision;
        queueCell(cellIndex(cell.iCellX, cell.iCellY));
    }
    reportNoTypes(bNoTypes);
    m_sink.markChanged(ChangeClutter);
    return true;
}

uint8_t EditorTerrainClutter::sampleAt(int iCellX, int iCellY, const glm::vec2& localPosition, float& height,
                                       uint32_t& color, glm::vec3& normal) const
{
    if (!hasCell(iCellX, iCellY))
        return tile::EmptyClutter;
    const auto trunc = [](float fValue)
    { return static_cast<int>(std::clamp(2.0f * fValue, -1.0e6f, 1.0e6f)); };
    const int idx = tile::ClutterTileSamples * trunc(localPosition.y) + trunc(localPosition.x);
    if (!QM_ASSERT_TEXT(idx >= 0 && idx < tile::SamplesPerPatch, "idx >= 0 && idx < tile::SamplesPerPatch"))
        return tile::EmptyClutter;
    const uint8_t uSample =
        m_tileData[cellIndex(iCellX, iCellY) * tile::SamplesPerPatch + static_cast<size_t>(idx)];
    if (uSample == tile::EmptyClutter)
        return uSample;
    const float fX = static_cast<float>(iCellX * tile::CellSize) + localPosition.x;
    const float fY = static_cast<float>(iCellY * tile::CellSize) + localPosition.y;
    height = m_surface.getHeight(fX, fY);
    normal = m_surface.getNormal(fX, fY);
    color = m_surface.getColor(fX, fY);
    return uSample;
}

} // namespace tilebuilder
