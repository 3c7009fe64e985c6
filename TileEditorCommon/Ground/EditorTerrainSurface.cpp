#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Ground/DisplayColor.h"

#include <BulletCollision/CollisionShapes/btHeightfieldTerrainShape.h>
#include <btBulletCollisionCommon.h>
#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

namespace tilebuilder
{

namespace
{

/// The place of a world coordinate between two grid samples.
struct Sample
{
    uint32_t uLow;
    uint32_t uHigh;
    float fPart;
};

Sample sampleAt(float fWorld, uint32_t uQuads)
{
    const float fAt = fWorld * 0.5f;
    // Written so that what isn't a number counts as 0.
    const float fClamped = fAt > 0.0f ? std::min(fAt, static_cast<float>(uQuads)) : 0.0f;
    const auto uLow = static_cast<uint32_t>(fClamped);
    return {uLow, std::min(uLow + 1, uQuads), fClamped - static_cast<float>(uLow)};
}

template <class T>
T bilinear(const T& a, const T& b, const T& c, const T& d, float fX, float fY)
{
    return (a * (1.0f - fX) + b * fX) * (1.0f - fY) + (c * (1.0f - fX) + d * fX) * fY;
}

} // namespace

EditorTerrainSurface::EditorTerrainSurface(EditorSinkI& sink, btCollisionWorld* pCollisionWorld)
    : m_sink(sink),
      m_pCollisionWorld(pCollisionWorld)
{
}

EditorTerrainSurface::~EditorTerrainSurface()
{
    removeCollision();
}

void EditorTerrainSurface::init(uint32_t texelsX, uint32_t texelsY)
{
    removeCollision();
    m_cellsX = static_cast<int>(texelsX / tile::CellSize);
    m_cellsY = static_cast<int>(texelsY / tile::CellSize);
    m_quadsX = texelsX / 2;
    m_quadsY = texelsY / 2;
    m_verticesX = m_quadsX + 1;
    m_verticesY = m_quadsY + 1;
    m_texelsX = texelsX + 1;
    m_texelsY = texelsY + 1;

    const size_t uVertices = size_t{m_verticesX} * m_verticesY;
    const size_t uTexels = size_t{m_texelsX} * m_texelsY;
    m_heights.assign(uVertices, 0.0f);
    m_colors.assign(uVertices, {});
    m_vertices.resize(uVertices);
    m_indices.resize(size_t{m_quadsX} * m_quadsY * 6);
    m_texels0.assign(uTexels, 0);
    m_texels1.assign(uTexels, 0);
    m_texelFloats0 = {};
    m_texelFloats1 = {};
    m_vecRowHashes.assign(m_quadsY, 0);

    tbb::parallel_for(tbb::blocked_range<uint32_t>(0, m_verticesY, 16),
                      [&](const auto& range)
                      {
                          for (uint32_t j = range.begin(); j < range.end(); ++j)
                          {
                              Vertex* pVertices = m_vertices.data() + size_t{j} * m_verticesX;
                              for (uint32_t i = 0; i < m_verticesX; ++i)
                                  pVertices[i] = {{0.0f, 0.0f, 1.0f}, 0.0f, displayColor(0xFFFFFFFF, i, j)};
                              if (j == m_quadsY)
                                  continue;
                              uint32_t* pIndices = m_indices.data() + size_t{j} * m_quadsX * 6;
                              for (uint32_t i = 0; i < m_quadsX; ++i, pIndices += 6)
                              {
                                  const uint32_t a = j * m_verticesX + i;
                                  const uint32_t b = a + 1;
                                  const uint32_t c = a + m_verticesX;
                                  const uint32_t d = c + 1;
                                  pIndices[0] = c;
                                  pIndices[1] = b;
                                  pIndices[2] = a;
                                  pIndices[3] = c;
                                  pIndices[4] = d;
                                  pIndices[5] = b;
                              }
                          }
                      });

    m_vecCellRevisions.assign(static_cast<size_t>(m_cellsX) * static_cast<size_t>(m_cellsY), 0);
    m_dirtyHeights = {};
    m_pending = {m_pending.uLayout + 1, {}, {}, {}};
    markVertices(allVertices(), true);
    m_pending.texels = {0, 0, static_cast<int>(m_texelsX), static_cast<int>(m_texelsY)};
    m_pending.quads = {0, 0, static_cast<int>(m_quadsX), static_cast<int>(m_quadsY)};
    makeCollision();
}

void EditorTerrainSurface::release()
{
    removeCollision();
    m_cellsX = m_cellsY = 0;
    m_quadsX = m_quadsY = m_verticesX = m_verticesY = m_texelsX = m_texelsY = 0;
    m_vertices = {};
    m_indices = {};
    m_texels0 = {};
    m_texels1 = {};
    m_texelFloats0 = {};
    m_texelFloats1 = {};
    m_heights = {};
    m_colors = {};
    m_vecRowHashes = {};
    m_vecCellRevisions = {};
    m_dirtyHeights = {};
    m_pending = {m_pending.uLayout + 1, {}, {}, {}};
    m_dirty = false;
    m_indexHash = 0;
    ++m_revision;
    m_ray = {};
}

bool EditorTerrainSurface::isInside(float x, float y) const
{
    return x >= 0.0f && y >= 0.0f && x * 0.5f < static_cast<float>(m_quadsX) &&
           y * 0.5f < static_cast<float>(m_quadsY);
}

float EditorTerrainSurface::getHeight(float x, float y) const
{
    if (!isInitialised())
        return 0.0f;
    const Sample u = sampleAt(x, m_quadsX);
    const Sample v = sampleAt(y, m_quadsY);
    const float* pLow = m_heights.data() + size_t{v.uLow} * m_verticesX;
    const float* pHigh = m_heights.data() + size_t{v.uHigh} * m_verticesX;
    return bilinear(pLow[u.uLow], pLow[u.uHigh], pHigh[u.uLow], pHigh[u.uHigh], u.fPart, v.fPart);
}

glm::vec3 EditorTerrainSurface::getNormal(float x, float y) const
{
    if (!isInitialised())
        return {0.0f, 0.0f, 1.0f};
    const Sample u = sampleAt(x, m_quadsX);
    const Sample v = sampleAt(y, m_quadsY);
    const Vertex* pLow = m_vertices.data() + size_t{v.uLow} * m_verticesX;
    const Vertex* pHigh = m_vertices.data() + size_t{v.uHigh} * m_verticesX;
    return bilinear(pLow[u.uLow].normal, pLow[u.uHigh].normal, pHigh[u.uLow].normal, pHigh[u.uHigh].normal,
                    u.fPart, v.fPart);
}

uint32_t EditorTerrainSurface::getColor(float x, float y) const
{
    if (!isInitialised())
        return 0xFFFFFFFF;
    const Sample u = sampleAt(x, m_quadsX);
    const Sample v = sampleAt(y, m_quadsY);
    const auto colorAt = [&](uint32_t i, uint32_t j)
    {
        const tile::ColorValue& color = m_colors[size_t{j} * m_verticesX + i];
        return glm::vec4(color.r, color.g, color.b, color.a);
    };
    const glm::vec4 color = bilinear(colorAt(u.uLow, v.uLow), colorAt(u.uHigh, v.uLow),
                                     colorAt(u.uLow, v.uHigh), colorAt(u.uHigh, v.uHigh), u.fPart, v.fPart);
    const uint32_t uPacked = tile::packColor({color.r, color.g, color.b, color.a});
    return tintColor(uPacked, NoiseImage::factor(v.uLow / 4, u.uLow / 4));
}

std::optional<GroundHit> EditorTerrainSurface::castRay(const glm::vec3& from, const glm::vec3& to) const
{
    if (!isInitialised())
        return std::nullopt;
    return m_ray.cast({m_heights, m_indices, static_cast<int>(m_quadsX), static_cast<int>(m_quadsY)}, from,
                      to);
}

uint64_t EditorTerrainSurface::cellRevision(int iCellX, int iCellY) const
{
    if (iCellX < 0 || iCellY < 0 || iCellX >= m_cellsX || iCellY >= m_cellsY)
        return 0;
    return m_vecCellRevisions[static_cast<size_t>(iCellY) * static_cast<size_t>(m_cellsX) +
                              static_cast<size_t>(iCellX)];
}

tile::SurfaceGridView EditorTerrainSurface::grids() const
{
    return {m_cellsX, m_cellsY, m_heights, m_colors, m_texels0, m_texels1};
}

GridRect EditorTerrainSurface::allVertices() const
{
    return {0, 0, static_cast<int>(m_verticesX), static_cast<int>(m_verticesY)};
}

void EditorTerrainSurface::raiseRevision(const GridRect& cells)
{
    ++m_revision;
    const GridRect inside = cells.clipped({0, 0, m_cellsX, m_cellsY});
    for (int iCellY = inside.y0; iCellY < inside.y1; ++iCellY)
        for (int iCellX = inside.x0; iCellX < inside.x1; ++iCellX)
            m_vecCellRevisions[static_cast<size_t>(iCellY) * static_cast<size_t>(m_cellsX) +
                               static_cast<size_t>(iCellX)] = m_revision;
    m_dirty = true;
    m_sink.markChanged(ChangeSurface);
}

// Edge samples belong to both neighbours, so the cells before the first sample count too.
void EditorTerrainSurface::markVertices(const GridRect& rect, bool bHeights)
{
    if (rect.empty())
        return;
    if (bHeights)
        m_dirtyHeights.unite(rect);
    m_pending.vertices.unite(rect);
    constexpr int iQuads = tile::CellQuads;
    raiseRevision({(rect.x0 - 1) / iQuads, (rect.y0 - 1) / iQuads, (rect.x1 - 1) / iQuads + 1,
                   (rect.y1 - 1) / iQuads + 1});
}

void EditorTerrainSurface::markTexels(const GridRect& rect)
{
    if (rect.empty())
        return;
    m_pending.texels.unite(rect);
    constexpr int iTexels = tile::CellTexels;
    raiseRevision({(rect.x0 - 1) / iTexels, (rect.y0 - 1) / iTexels, (rect.x1 - 1) / iTexels + 1,
                   (rect.y1 - 1) / iTexels + 1});
}

void EditorTerrainSurface::makeCollision()
{
    m_heightfieldShape = std::make_unique<btHeightfieldTerrainShape>(
        static_cast<int>(m_verticesX), static_cast<int>(m_verticesY), m_heights.data(), 1.0f, -1024.0f,
        1024.0f, 2, PHY_FLOAT, false);
    m_heightfieldShape->setLocalScaling({2.0f, 2.0f, 1.0f});
    m_collisionObject = std::make_unique<btCollisionObject>();
    m_collisionObject->setCollisionShape(m_heightfieldShape.get());
    m_collisionObject->setCollisionFlags(m_collisionObject->getCollisionFlags() |
                                         btCollisionObject::CF_DISABLE_VISUALIZE_OBJECT);
    btTransform transform = btTransform::getIdentity();
    transform.setOrigin({static_cast<float>(m_quadsX), static_cast<float>(m_quadsY), 0.0f});
    m_collisionObject->setWorldTransform(transform);
    if (m_pCollisionWorld)
        m_pCollisionWorld->addCollisionObject(m_collisionObject.get(), 1, -1);
}

void EditorTerrainSurface::removeCollision()
{
    if (m_pCollisionWorld && m_collisionObject)
        m_pCollisionWorld->removeCollisionObject(m_collisionObject.get());
    m_collisionObject.reset();
    m_heightfieldShape.reset();
}

} // namespace tilebuilder
