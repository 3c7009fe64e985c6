#pragma once // Compressed sections of a document's cells, by revision.

#include "KestrelCommon/Io/Lz4Section.h"
#include "KestrelCommon/Tile/SectionTable.h"

#include <functional>
#include <span>
#include <vector>

namespace tilebuilder
{

/// One compressed section.
struct CachedSection
{
    OwnedBytes pBytes;
    uint32_t uCount = 0; ///< records, for objects; else 1
    uint32_t uSize = 0;  ///< bytes before compression
    uint32_t uCompressedSize = 0;
    uint64_t uRevision = 0; ///< of the cell when the bytes were made; 0: not filled
    uint64_t uRawHash = 0;  ///< XXH3 of the bytes before compression, final quality only

    [[nodiscard]] std::span<const std::byte> bytes() const { return {pBytes.get(), uCompressedSize}; }
    [[nodiscard]] bool isCurrent(uint64_t uCellRevision) const
    {
        return uCellRevision != 0 && uRevision == uCellRevision;
    }
};

/// Keeps for each cell and section the fast form that undo images hold and, apart from it, the
/// final form of files. A stale final form whose content turns out to be the same is kept too.
///
/// Threads: different cells may be used at the same time; resize() and clear() alone.
class CellCache
{
public:
    static constexpr size_t s_uSlots = 25; ///< all elements of all groups that are written

    /// The slot of a section; groups stand in the order of the section table.
    [[nodiscard]] static size_t slot(const tile::SectionGroupInfo& group, uint32_t uElement);

    /// Makes room for a document's cells; drops everything when their number changes.
    void resize(size_t uCells);
    void clear() { m_vecSections.clear(); }
    [[nodiscard]] size_t bytesUsed() const;

    [[nodiscard]] CachedSection& section(size_t uCell, size_t uSlot, Lz4Quality eQuality)
    {
        return m_vecSections[(uCell * s_uSlots + uSlot) * 2 + static_cast<size_t>(eQuality)];
    }

    /// Appends a section's bytes and tells its number of records.
    using Serialise = std::function<uint32_t(ByteStream&)>;

    /// Serialises and compresses a section that isn't current.
    static void refresh(CachedSection& section, uint64_t uRevision, Lz4Quality eQuality,
                        const Serialise& fnSerialise);

    /// Takes bytes that are known to be the section's fast form at a revision.
    static void adopt(CachedSection& section, uint64_t uRevision, const tile::Section& described,
                      std::span<const std::byte> spanBytes);

private:
    std::vector<CachedSection> m_vecSections;
};

} // namespace tilebuilder
