#pragma once // The ground of the open tile.

#include "KestrelCommon/Io/ByteStream.h"
#include "KestrelCommon/Tile/SurfaceSection.h"
#include "TileEditorCommon/Contracts/BrushDab.h"
#include "TileEditorCommon/Contracts/EditorSinkI.h"
#include "TileEditorCommon/Ground/GridRect.h"
#include "TileEditorCommon/Ground/GroundRay.h"
#include "TileEditorCommon/Ground/HeightAverage.h"

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>
#include <memory>
#include <optional>
#include <span>
#include <vector>

class btCollisionObject;
class btCollisionWorld;
class btHeightfieldTerrainShape;

namespace tilebuilder
{

/// A cell's mip-0 section, for loading several at once.
struct CellSection
{
    int iCellX = 0;
    int iCellY = 0;
    std::span<const std::byte> spanBytes;
};

/// What the GPU copy lacks, since clearPending(). Rows are whole rows of the tile.
struct SurfaceUploads
{
    uint64_t uLayout = 0; ///< goes up when the grids were made anew: everything must be sent
    GridRect vertices;    ///< vertices whose normal, height or colour changed
    GridRect quads;       ///< quads whose triangles changed
    GridRect texels;      ///< ground samples
};

/// The height, colour and ground material grids of a tile of type 0, the triangles and normals
/// over them, and the shape that the collision world holds.
///
/// Shape:   (32W + 1) x (32H + 1) vertices 2 m apart, (64W + 1) x (64H + 1) ground samples 1 m
///          apart, rows along X, sample (0, 0) at the world's origin. Metres.
/// Changes: strokes and loading change the grids in place, raise the revision of the surface and
///          of the cells concerned, and tell the sink. rebuild() then renews normals, triangles
///          and collision where they were touched.
/// Threads: main thread; const operations from any thread while nothing changes.
class EditorTerrainSurface
{
public:
    struct Vertex
    {
        glm::vec3 normal{0.0f, 0.0f, 1.0f};
        float height = 0.0f;
        uint32_t color = 0; ///< display colour: red highest, alpha lowest
    };
    static_assert(sizeof(Vertex) == 20);

    static constexpr float s_fLowest = -95.0f; ///< below which raise() doesn't dig

    /// The world may be null; else it must outlive the surface.
    EditorTerrainSurface(EditorSinkI& sink, btCollisionWorld* pCollisionWorld);
    ~EditorTerrainSurface();
    EditorTerrainSurface(const EditorTerrainSurface&) = delete;
    EditorTerrainSurface& operator=(const EditorTerrainSurface&) = delete;

    /// A flat white surface of that size in metres, 64 for each cell.
    void init(uint32_t texelsX, uint32_t texelsY);
    /// Without grids, as for a tile of type 1.
    void release();
    [[nodiscard]] bool isInitialised() const { return !m_heights.empty(); }

    // Sampling, in world metres

    [[nodiscard]] bool isInside(float x, float y) const;
    [[nodiscard]] float getHeight(float x, float y) const;
    [[nodiscard]] glm::vec3 getNormal(float x, float y) const;
    /// The tint for clutter, red lowest.
    [[nodiscard]] uint32_t getColor(float x, float y) const;
    /// Against the triangles as of the last rebuild.
    [[nodiscard]] std::optional<GroundHit> castRay(const glm::vec3& from, const glm::vec3& to) const;

    // Strokes. A radius that isn't above 0 makes no dab.

    /// By the weight times the sign, +1 or -1; not below s_fLowest.
    void raise(const BrushDab& dab, float fSign);
    void flatten(const BrushDab& dab);
    void smooth(const BrushDab& dab);
    /// Adds to or takes from one of the eight weights; another index changes nothing.
    void paintMaterial(int32_t index, bool erase, const BrushDab& dab);
    /// Towards the colour, whose channels go through bytes first.
    void paintColor(const glm::vec4& color, const BrushDab& dab);

    // Cells

    void writeCell(ByteStream& stream, int iCellX, int iCellY, int iMip) const;
    /// Takes a mip-0 section. False: no such cell, or a section of another size.
    bool readCell(std::span<const std::byte> spanData, int iCellX, int iCellY);
    /// The same for several cells at once, as if read in cell index order. Of an edge that two of
    /// them share, the later cell's samples stay; the edge to a cell that isn't among them is left
    /// as it is, except at the tile's rim.
    bool readCells(std::span<const CellSection> spanCells);

    /// Raised by every change of data; never goes back, not even through init().
    [[nodiscard]] uint64_t revision() const { return m_revision; }
    /// The revision at which a cell's section last may have changed.
    [[nodiscard]] uint64_t cellRevision(int iCellX, int iCellY) const;

    // Frame

    [[nodiscard]] bool isDirty() const { return m_dirty; }
    /// Renews what the changes since the last call touched; the result is that of a full rebuild.
    /// False when nothing had changed.
    bool rebuild();

    /// What changed since the last clearPending(); call after rebuild().
    [[nodiscard]] const SurfaceUploads& pending() const { return m_pending; }
    void clearPending() { m_pending = {m_pending.uLayout, {}, {}, {}}; }

    // Grids

    [[nodiscard]] tile::SurfaceGridView grids() const;
    [[nodiscard]] int cellsX() const { return m_cellsX; }
    [[nodiscard]] int cellsY() const { return m_cellsY; }
    [[nodiscard]] uint32_t quadsX() const { return m_quadsX; }
    [[nodiscard]] uint32_t quadsY() const { return m_quadsY; }
    [[nodiscard]] uint32_t verticesX() const { return m_verticesX; }
    [[nodiscard]] uint32_t verticesY() const { return m_verticesY; }
    [[nodiscard]] uint32_t texelsX() const { return m_texelsX; }
    [[nodiscard]] uint32_t texelsY() const { return m_texelsY; }
    [[nodiscard]] std::span<const Vertex> vertices() const { return m_vertices; }
    [[nodiscard]] std::span<const uint32_t> indices() const { return m_indices; }
    [[nodiscard]] std::span<const uint32_t> texels0() const { return m_texels0; }
    [[nodiscard]] std::span<const uint32_t> texels1() const { return m_texels1; }
    [[nodiscard]] std::span<const float> heights() const { return m_heights; }
    [[nodiscard]] std::span<const tile::ColorValue> colors() const { return m_colors; }
    /// XXH3 over the hashes of the rows of the index array, as of the last rebuild.
    [[nodiscard]] uint64_t indexHash() const { return m_indexHash; }
    [[nodiscard]] const btHeightfieldTerrainShape* heightfieldShape() const
    {
        return m_heightfieldShape.get();
    }

    bool m_lockEdges = true; ///< the rim vertices of the tile can't be painted

private:
    struct DabArea;
    template <class Function>
    void forDabRows(const DabArea& area, const BrushDab& dab, float fSpacing, const Function& fnRow) const;
    [[nodiscard]] GridRect heightArea(const BrushDab& dab) const;
    void pullHeights(const GridRect& rect, const BrushDab& dab, std::span<const float> spanTargets,
                     float fTarget);

    [[nodiscard]] GridRect allVertices() const;
    [[nodiscard]] float* weights(size_t uTexture);
    void makeWeights();
    void unpackCell(const CellSection& cell, const GridRect& vertices, const GridRect& texels);
    void markVertices(const GridRect& rect, bool bHeights);
    void markTexels(const GridRect& rect);
    void raiseRevision(const GridRect& cells);

    void rebuildNormals(const GridRect& rect);
    [[nodiscard]] bool triangulateRow(int iRow, int iFirst, int iLast);
    void triangulate(const GridRect& quads);
    void makeCollision();
    void removeCollision();

    EditorSinkI& m_sink;
    btCollisionWorld* m_pCollisionWorld;
    int m_cellsX = 0;
    int m_cellsY = 0;
    uint32_t m_quadsX = 0;
    uint32_t m_quadsY = 0;
    uint32_t m_verticesX = 0;
    uint32_t m_verticesY = 0;
    uint32_t m_texelsX = 0;
    uint32_t m_texelsY = 0;
    std::vector<Vertex> m_vertices;
    std::vector<uint32_t> m_indices;
    std::vector<uint32_t> m_texels0;
    std::vector<uint32_t> m_texels1;
    // The same weights as floats, finer than the bytes. Made by the first stroke that needs them.
    std::vector<glm::vec4> m_texelFloats0;
    std::vector<glm::vec4> m_texelFloats1;
    std::vector<float> m_heights;
    std::vector<tile::ColorValue> m_colors;
    std::vector<uint64_t> m_vecRowHashes; ///< of the index array, a row of quads each
    uint64_t m_indexHash = 0;
    bool m_dirty = false;
    uint64_t m_revision = 0;
    std::vector<uint64_t> m_vecCellRevisions;
    GridRect m_dirtyHeights; ///< vertices whose height changed since the last rebuild
    SurfaceUploads m_pending;
    GroundRay m_ray;
    HeightAverager m_averager;
    std::unique_ptr<btCollisionObject> m_collisionObject;
    std::unique_ptr<btHeightfieldTerrainShape> m_heightfieldShape;
};

} // namespace tilebuilder
