#pragma once // The clutter grid of the open tile.

#include "KestrelCommon/Tile/ClutterDatabase.h"
#include "TileEditorCommon/Contracts/BrushDab.h"
#include "TileEditorCommon/Contracts/EditorSinkI.h"

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <memory>
#include <span>
#include <vector>

namespace rend
{
class ClutterTypes;
class CullingGroups;
} // namespace rend

namespace tilebuilder
{

class EditorTerrainSurface;
class Terrain3ClutterManager;

/// A cell's clutter section, for loading several at once.
struct ClutterCell
{
    int iCellX = 0;
    int iCellY = 0;
    std::span<const std::byte> spanBytes;
};

/// 128 x 128 samples a cell, half a metre apart; each a global clutter index or
/// tile::EmptyClutter.
///
/// Threads: main thread; const operations from any thread while nothing changes.
class EditorTerrainClutter
{
public:
    static constexpr size_t s_uCellsInFrame = 64;

    /// All three must outlive the grid.
    EditorTerrainClutter(EditorSinkI& sink, const EditorTerrainSurface& surface,
                         const tile::ClutterDatabase& database);
    ~EditorTerrainClutter();

    /// Has the plants stand in these groups from now on; both outlive the grid. Without it the grid is
    /// only data.
    void attach(rend::CullingGroups& groups, const rend::ClutterTypes& types);

    /// Empty samples for a tile of that size in metres.
    void init(uint32_t sizeX, uint32_t sizeY);
    /// Without cells.
    void release();

    void writeCell(ByteStream& stream, int iCellX, int iCellY) const;
    /// False: no such cell, or not a section of that version.
    bool readCell(std::span<const std::byte> spanData, int iCellX, int iCellY, uint32_t uVersion);
    /// The same for several cells at once.
    bool readCells(std::span<const ClutterCell> spanCells, uint32_t uVersion);

    /// The global index at a position in metres from the cell's corner, with the ground there;
    /// empty and untouched outputs when there is no such cell.
    /// An empty sample leaves the outputs untouched too.
    [[nodiscard]] uint8_t sampleAt(int iCellX, int iCellY, const glm::vec2& localPosition, float& height,
                                   uint32_t& color, glm::vec3& normal) const;

    /// A tick of a stroke. spanTypes: the global indices that are painted, each as likely as the other,
    /// or erased, leaving other types alone. A sample is hit with a chance of about the dab's weight
    /// there; with a weight of 1 or more, always. Without types nothing happens.
    void paint(std::span<const uint8_t> spanTypes, const BrushDab& dab, bool bErase);

    /// Once a frame, when the surface is rebuilt: renews the plants of at most s_uCellsInFrame cells that
    /// changed, those near the camera first. With bFollow, cells whose ground changed count as well.
    void update(const glm::vec2& camera, bool bFollow);
    /// Renews all that changed, at once.
    void finishUpdate();
    [[nodiscard]] size_t queuedCells() const { return m_uQueued; }
    /// Null until attach().
    [[nodiscard]] const Terrain3ClutterManager* manager() const { return m_pManager.get(); }

    /// The samples of a cell, row by row; empty when there is no such cell.
    [[nodiscard]] std::span<const uint8_t> samples(int iCellX, int iCellY) const;
    /// Replaces the samples of a cell; as many as it has.
    void setSamples(int iCellX, int iCellY, std::span<const uint8_t> spanSamples);

    /// Raised by every change; never goes back.
    [[nodiscard]] uint64_t revision() const { return m_revision; }
    [[nodiscard]] uint64_t cellRevision(int iCellX, int iCellY) const;
    [[nodiscard]] int cellsX() const { return m_cellsX; }
    [[nodiscard]] int cellsY() const { return m_cellsY; }

private:
    [[nodiscard]] bool hasCell(int iCellX, int iCellY) const;
    [[nodiscard]] size_t cellIndex(int iCellX, int iCellY) const;
    [[nodiscard]] std::span<uint8_t> cellData(int iCellX, int iCellY);
    void reportNoTypes(bool bNoTypes);
    void queueCell(size_t uCell);
    void queueChangedGround();
    void regenerate(const glm::vec2& camera, size_t uMost);

    EditorSinkI& m_sink;
    const EditorTerrainSurface& m_surface;
    const tile::ClutterDatabase& m_database;
    int m_cellsX = 0;
    int m_cellsY = 0;
    std::vector<uint8_t> m_tileData; ///< the cells' samples in cell index order
    std::vector<uint64_t> m_vecCellRevisions;
    uint64_t m_revision = 0;
    bool m_bToldNoTypes = false; ///< since init()

    std::unique_ptr<Terrain3ClutterManager> m_pManager;
    std::vector<uint8_t> m_vecQueued; ///< by cell: its plants are out of date
    size_t m_uQueued = 0;
    uint64_t m_uLastSurfaceRevision = 0; ///< that the queue has taken account of
};

} // namespace tilebuilder
