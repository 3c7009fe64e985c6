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

/// What an image is read for.
struct ObjectReadMode
{
    /// The open document goes back to one of its own states; else another document comes.
    bool bRestoring = false;
    bool bClearSelection = true;
    /// What objects are made of has changed: all are made anew, and those that stay keep their ids.
    bool bKeepIds = false;
};

/// The records of a section in an image. Without records the cell has none in the image.
struct ObjectSection
{
    std::span<const std::byte> spanRecords; ///< stay until endRead() returns
    uint32_t uCount = 0;
    uint32_t uVersion = 0; ///< of the tile file
    ObjectCell cell;
    uint32_t uLevel = 0;
};

/// One for each group of sections. The document caches a section by the revision of its cell and
/// level, so that an edit costs the sections that it touches and an undo reads only those that
/// differ. Groups that no type of object serves are served by CarriedObjects.
///
/// Order:   the records of a section stand in the order of their bytes (tile::SortedRecords), so
///          that equal content gives equal images.
/// Threads: appendRecords() and revision() from many threads between prepareWrite() and
///          releaseWrite(), checkRecords() from many at any time, all else on the main thread.
///          appendRecords() must not wait for tasks of its own: its thread would take up another
///          cell with the stream half filled.
class CellObjectProviderI
{
public:
    virtual ~CellObjectProviderI() = default;

    [[nodiscard]] virtual tile::SectionGroup group() const = 0;

    // Writing

    /// Before and after an image is written; bits of tile::WriteFlags. Paths are stored relative
    /// to the tile's path.
    virtual void prepareWrite(uint32_t /*uFlags*/, const std::string& /*sPath*/) {}
    virtual void releaseWrite() {}

    /// Another number whenever the section of this cell and level may have changed; 0: never
    /// reuse it. Sections of the export form are never reused. Also asked while an image is
    /// compared with the document.
    [[nodiscard]] virtual uint64_t revision(const ObjectCell& /*cell*/, uint32_t /*uLevel*/,
                                            uint32_t /*uFlags*/) const
    {
        return 0;
    }

    /// Appends the records of the objects in a cell, of one level for level lists; their number.
    virtual uint32_t appendRecords(ByteStream& stream, const ObjectCell& cell, uint32_t uLevel,
                                   uint32_t uFlags) = 0;

    // Reading

    /// Checks records without keeping anything; the number of bytes that they take, which must be
    /// all. Called before the open document goes.
    [[nodiscard]] virtual size_t checkRecords(std::span<const std::byte> spanRecords, uint32_t uCount,
                                              uint32_t uVersion) const = 0;

    /// Whether writing would lose something of what records of that version tell.
    [[nodiscard]] virtual bool losesRecords(uint32_t /*uVersion*/) const { return false; }

    /// A document comes: all objects of the group go, then readRecords() brings the new ones, a
    /// section at a time, only those that have any. Restoring: readRecords() brings each section
    /// that differs from what stands in its cell and level, also those that have no records now,
    /// to take the place of what stands there; cells and levels that aren't named stay as they
    /// are, and objects outside every cell are in no image. With bKeepIds every section is named.
    /// What is read this way must be written again as the same bytes; its revision is asked for
    /// after endRead().
    virtual void beginRead(const ObjectReadMode& mode) = 0;
    virtual void readRecords(const ObjectSection& section) = 0;
    virtual void endRead() = 0;
    /// How many objects of the document that was read last could not be made.
    [[nodiscard]] virtual size_t lostObjects() const { return 0; }
};

} // namespace tilebuilder
