#pragma once // How a kind of object gets its sections into a tile image and back.

#include "KestrelCommon/Io/ByteStream.h"
#include "KestrelCommon/Tile/SectionTable.h"

#include <glm/vec3.hpp>
#include <span>
#include <string>

namespace tilebuilder
{

/// The cell that a section belongs to.
struct ObjectCell
{
    size_t uIndex = 0;
    glm::vec3 origin{0.0f}; ///< (64 cx, 64 cy, 0), subtracted from stored positions
    /// False: no test of positions, all objects belong to this cell (tiles without ground).
    bool bBounded = true;
};

/// One for each group of sections whose objects the editor understands. Groups without a provider
/// are carried from file to file as they are.
///
/// Threads: appendRecords() and revision() from many threads between prepareWrite() and
///          releaseWrite(), checkRecords() from many at any time, all else on the main thread.
///          appendRecords() must not wait for tasks of its own: its thread would take up another
///          cell with the stream half filled.
class CellObjectProviderI
{
public:
    virtual ~CellObjectProviderI() = default;

    [[nodiscard]] virtual tile::SectionGroup group() const = 0;

    /// Before and after an image is written. Paths are stored relative to the tile's path.
    virtual void prepareWrite(uint32_t /*uFlags*/, const std::string& /*sPath*/) {}
    virtual void releaseWrite() {}

    /// Raised whenever the section of this cell and level may change; 0: never reuse it.
    [[nodiscard]] virtual uint64_t revision(const ObjectCell& /*cell*/, uint32_t /*uLevel*/,
                                            uint32_t /*uFlags*/) const
    {
        return 0;
    }

    /// Appends the records of the objects in a cell, of one level for level lists; their number.
    virtual uint32_t appendRecords(ByteStream& stream, const ObjectCell& cell, uint32_t uLevel,
                                   uint32_t uFlags) = 0;

    /// Checks records without keeping anything; the number of bytes that they take, which must be
    /// all. Called before the open document goes.
    [[nodiscard]] virtual size_t checkRecords(std::span<const std::byte> spanRecords, uint32_t uCount,
                                              uint32_t uVersion) const = 0;

    /// All objects of the group go; then readRecords() brings the new ones, cell by cell.
    virtual void beginRead(bool bRestoring, bool bClearSelection, bool bKeepIds) = 0;
    virtual void readRecords(std::span<const std::byte> spanRecords, uint32_t uCount, const ObjectCell& cell,
                             uint32_t uVersion) = 0;
    virtual void endRead() = 0;
};

} // namespace tilebuilder
