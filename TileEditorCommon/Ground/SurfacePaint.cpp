// The strokes of EditorTerrainSurface.

#include "TileEditorCommon/Ground/Brush.h"
#include "TileEditorCommon/Ground/DisplayColor.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"
#include "TileEditorCommon/Ground/RowMath.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

namespace tilebuilder
{

/// The samples that a dab may reach, clipped to what its operation may change.
struct EditorTerrainSurface::DabArea
{
    GridRect rect;
};

namespace
{

// Above this many samples a dab is spread over the cores.
constexpr int s_iSerialSamples = 16'384;

int gridFloor(float fValue)
{
    return static_cast<int>(std::floor(std::clamp(fValue, -1.0e9f, 1.0e9f)));
}

// The bounding rectangle of a dab, with a sample of slack, in samples of the given spacing.
GridRect dabRect(const BrushDab& dab, float fSpacing, const GridRect& bounds)
{
    if (!dab.pBrush || !(dab.radius > 0.0f) || !std::isfinite(dab.x) || !std::isfinite(dab.y))
        return {};
    const GridRect rect{
        gridFloor((dab.x - dab.radius) / fSpacing), gridFloor((dab.y - dab.radius) / fSpacing),
        gridFloor((dab.x + dab.radius) / fSpacing) + 2, gridFloor((dab.y + dab.radius) / fSpacing) + 2};
    return rect.clipped(bounds);
}

} // namespace

// Calls fnRow(row, first sample, weights) for each row of samples within the circle.
template <class Function>
void EditorTerrainSurface::forDabRows(const DabArea& area, const BrushDab& dab, float fSpacing,
                                      const Function& fnRow) const
{
    const GridRect& rect = area.rect;
    const auto rows = [&](int iFirst, int iLast)
    {
        thread_local std::vector<float> s_vecRow;
        s_vecRow.resize(static_cast<size_t>(rect.width()));
        for (int j = iFirst; j < iLast; ++j)
        {
            const float fDy = static_cast<float>(j) * fSpacing - dab.y;
            const float fHalf = std::sqrt(std::max(dab.radius * dab.radius - fDy * fDy, 0.0f));
            int iLow = std::max(gridFloor((dab.x - fHalf) / fSpacing), rect.x0);
            int iHigh = std::min(gridFloor((dab.x + fHalf) / fSpacing) + 2, rect.x1);
            if (iLow >= iHigh)
                continue;
            const std::span<float> spanDistances(s_vecRow.data(), static_cast<size_t>(iHigh - iLow));
            rowDistances(spanDistances, static_cast<float>(iLow) * fSpacing - dab.x, fSpacing, fDy);
            // The chord was rounded outwards: what lies past the radius is at its ends.
            size_t uFirst = 0;
            size_t uLast = spanDistances.size();
            while (uFirst < uLast && spanDistances[uFirst] > dab.radius)
                ++uFirst;
            while (uFirst < uLast && spanDistances[uLast - 1] > dab.radius)
                --uLast;
            if (uFirst == uLast)
                continue;
            const std::span<float> spanWeights = spanDistances.subspan(uFirst, uLast - uFirst);
            for (float& fValue : spanWeights)
                fValue = std::max(1.0f - fValue / dab.radius, 0.0f);
            dab.pBrush->falloffRow(spanWeights);
            for (float& fValue : spanWeights)
                fValue *= dab.strength;
            fnRow(j, iLow + static_cast<int>(uFirst), std::span<const float>(spanWeights));
        }
    };
    if (int64_t{rect.width()} * rect.height() < s_iSerialSamples)
        rows(rect.y0, rect.y1);
    else
        tbb::parallel_for(tbb::blocked_range<int>(rect.y0, rect.y1, 16),
                          [&](const auto& range) { rows(range.begin(), range.end()); });
}

// The last vertex row and column are never reached; with locked edges the first neither.
GridRect EditorTerrainSurface::heightArea(const BrushDab& dab) const
{
    const int iFirst = m_lockEdges ? 1 : 0;
    return dabRect(dab, 2.0f, {iFirst, iFirst, static_cast<int>(m_quadsX), static_cast<int>(m_quadsY)});
}

void EditorTerrainSurface::raise(const BrushDab& dab, float fSign)
{
    const DabArea area{heightArea(dab)};
    if (area.rect.empty())
        return;
    forDabRows(area, dab, 2.0f,
               [&](int iRow, int iFirst, std::span<const float> spanWeights)
               {
                   const size_t uPlace =
                       static_cast<size_t>(iRow) * m_verticesX + static_cast<size_t>(iFirst);
                   float* pHeights = m_heights.data() + uPlace;
                   for (size_t i = 0; i < spanWeights.size(); ++i)
                       pHeights[i] = std::max(pHeights[i] + spanWeights[i] * fSign, s_fLowest);
                   Vertex* pVertices = m_vertices.data() + uPlace;
                   for (size_t i = 0; i < spanWeights.size(); ++i)
                       pVertices[i].height = pHeights[i];
               });
    markVertices(area.rect, true);
}

// Targets either a grid of the rectangle's size or, when that is empty, one value for all.
void EditorTerrainSurface::pullHeights(const GridRect& rect, const BrushDab& dab,
                                       std::span<const float> spanTargets, float fTarget)
{
    forDabRows({rect}, dab, 2.0f,
               [&](int iRow, int iFirst, std::span<const float> spanWeights)
               {
                   const size_t uPlace =
                       static_cast<size_t>(iRow) * m_verticesX + static_cast<size_t>(iFirst);
                   float* pHeights = m_heights.data() + uPlace;
                   Vertex* pVertices = m_vertices.data() + uPlace;
                   const float* pTargets = spanTargets.empty() ? nullptr
                                                               : spanTargets.data() +
                                                                     static_cast<size_t>(iRow - rect.y0) *
                                                                         static_cast<size_t>(rect.width()) +
                                                                     static_cast<size_t>(iFirst - rect.x0);
                   for (size_t i = 0; i < spanWeights.size(); ++i)
                   {
                       const float fPull = pTargets ? pTargets[i] : fTarget;
                       pHeights[i] = (1.0f - spanWeights[i]) * pHeights[i] + spanWeights[i] * fPull;
                       pVertices[i].height = pHeights[i];
                   }
               });
    markVertices(rect, true);
}

void EditorTerrainSurface::flatten(const BrushDab& dab)
{
    const GridRect rect = heightArea(dab);
    if (rect.empty())
        return;
    const HeightGrid grid{m_heights, static_cast<int>(m_verticesX), static_cast<int>(m_verticesY)};
    const auto centre = [](float fWorld, uint32_t uVertices)
    {
        return std::clamp(static_cast<int>(std::clamp((fWorld + 1.0f) / 2.0f, -1.0e9f, 1.0e9f)), 0,
                          static_cast<int>(uVertices) - 1);
    };
    pullHeights(rect, dab, {},
                weightedAverage(grid, centre(dab.x, m_verticesX), centre(dab.y, m_verticesY), 0.5f));
}

void EditorTerrainSurface::smooth(const BrushDab& dab)
{
    const GridRect rect = heightArea(dab);
    if (rect.empty())
        return;
    const HeightGrid grid{m_heights, static_cast<int>(m_verticesX), static_cast<int>(m_verticesY)};
    // Below that the average is the vertex itself.
    const float fRadius = std::max(dab.radius * 0.25f, 1.0e-3f);
    // All averages are taken before any height changes.
    pullHeights(rect, dab, m_averager.run(grid, rect, fRadius), 0.0f);
}

void EditorTerrainSurface::makeWeights()
{
    if (!m_texelFloats0.empty())
        return;
    m_texelFloats0.resize(m_texels0.size());
    m_texelFloats1.resize(m_texels1.size());
    tbb::parallel_for(tbb::blocked_range<size_t>(0, m_texels0.size(), 16'384),
                      [&](const auto& range)
                      {
                          for (size_t i = range.begin(); i < range.end(); ++i)
                          {
                              tile::unpackBytes(m_texels0[i], &m_texelFloats0[i].x);
                              tile::unpackBytes(m_texels1[i], &m_texelFloats1[i].x);
                          }
                      });
}

void EditorTerrainSurface::paintMaterial(int32_t index, bool erase, const BrushDab& dab)
{
    const DabArea area{dabRect(dab, 1.0f, {0, 0, static_cast<int>(m_texelsX), static_cast<int>(m_texelsY)})};
    if (area.rect.empty() || index < 0 || index >= 8)
        return;
    makeWeights();
    glm::vec4* pFloats = index < 4 ? m_texelFloats0.data() : m_texelFloats1.data();
    uint32_t* pTexels = index < 4 ? m_texels0.data() : m_texels1.data();
    const int iChannel = index & 3;
    const int iShift = iChannel * 8;
    forDabRows(area, dab, 1.0f,
               [&](int iRow, int iFirst, std::span<const float> spanWeights)
               {
                   const size_t uPlace = static_cast<size_t>(iRow) * m_texelsX + static_cast<size_t>(iFirst);
                   for (size_t i = 0; i < spanWeights.size(); ++i)
                   {
                       float& fValue = pFloats[uPlace + i][iChannel];
                       fValue = erase ? std::max(fValue - spanWeights[i], 0.0f)
                                      : std::min(fValue + spanWeights[i], 1.0f);
                       const auto uByte = static_cast<uint32_t>(std::lround(fValue * 255.0f));
                       pTexels[uPlace + i] = (pTexels[uPlace + i] & ~(255u << iShift)) | uByte << iShift;
                   }
               });
    markTexels(area.rect);
}

void EditorTerrainSurface::paintColor(const glm::vec4& color, const BrushDab& dab)
{
    const DabArea area{dabRect(dab, 2.0f, allVertices())};
    if (area.rect.empty())
        return;
    const tile::ColorValue target = tile::unpackColor(tile::packColor({color.r, color.g, color.b, color.a}));
    forDabRows(area, dab, 2.0f,
               [&](int iRow, int iFirst, std::span<const float> spanWeights)
               {
                   const size_t uPlace =
                       static_cast<size_t>(iRow) * m_verticesX + static_cast<size_t>(iFirst);
                   for (size_t i = 0; i < spanWeights.size(); ++i)
                   {
                       const float w = spanWeights[i];
                       tile::ColorValue& value = m_colors[uPlace + i];
                       value.r = w * target.r + (1.0f - w) * value.r;
                       value.g = w * target.g + (1.0f - w) * value.g;
                       value.b = w * target.b + (1.0f - w) * value.b;
                       value.a = w * target.a + (1.0f - w) * value.a;
                       m_vertices[uPlace + i].color = displayColor(
                           tile::packColor(value), static_cast<uint32_t>(iFirst) + static_cast<uint32_t>(i),
                           static_cast<uint32_t>(iRow));
                   }
               });
    markVertices(area.rect, false);
}

} // namespace tilebuilder
