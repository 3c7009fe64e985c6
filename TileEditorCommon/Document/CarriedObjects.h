#pragma once // Keeps the objects of a kind that no type of object serves yet.

#include "TileEditorCommon/Document/CellObjectProviderI.h"

#include <map>
#include <unordered_map>
#include <vector>

namespace tilebuilder
{

/// The records of one group of sections. What is read, of any version, is brought to the current
/// one and stays in the cell and level it came in; without bounds all goes to the first cell.
/// Positions stay as they are stored, relative to their cell, so that nothing is rounded.
///
/// Export: prefabs without the keep flag are left out, since their content is not at hand.
/// Threads: as CellObjectProviderI says.
class CarriedObjects final : public CellObjectProviderI
{
public:
    /// Any group of objects but scripts.
    explicit CarriedObjects(tile::SectionGroup eGroup) : m_eGroup(eGroup) {}

    [[nodiscard]] tile::SectionGroup group() const override { return m_eGroup; }
    void prepareWrite(uint32_t uFlags, const std::string& sPath) override;
    [[nodiscard]] uint64_t revision(const ObjectCell& cell, uint32_t uLevel, uint32_t uFlags) const override;
    uint32_t appendRecords(ByteStream& stream, const ObjectCell& cell, uint32_t uLevel,
                           uint32_t uFlags) override;
    [[nodiscard]] size_t checkRecords(std::span<const std::byte> spanRecords, uint32_t uCount,
                                      uint32_t uVersion) const override;
    /// Assets that are stored by name: which they are can't be told here.
    [[nodiscard]] bool losesRecords(uint32_t uVersion) const override;
    void beginRead(const ObjectReadMode& mode) override;
    void readRecords(const ObjectSection& section) override;
    void endRead() override;

    void clear();
    [[nodiscard]] uint64_t count() const;

private:
    /// A cell's section of the current version, as it is written.
    struct Slot
    {
        std::vector<std::byte> vecRecords;
        uint32_t uCount = 0;
        uint64_t uRevision = 0;
    };

    [[nodiscard]] static uint64_t slotOf(const ObjectCell& cell, uint32_t uLevel);

    tile::SectionGroup m_eGroup;
    std::unordered_map<uint64_t, Slot> m_mapSlots;
    std::map<uint64_t, std::vector<ObjectSection>> m_mapPending; ///< between beginRead() and endRead()
    uint64_t m_uRevision = 1;
    uint64_t m_uEmptyRevision = 1; ///< of cells without a slot
    bool m_bRestoring = false;
};

} // namespace tilebuilder
