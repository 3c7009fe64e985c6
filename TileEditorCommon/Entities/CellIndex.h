#pragma once // Which entities stand in which section of a tile.

#include "TileEditorCommon/Contracts/EntityTraits.h"

#include <array>
#include <cstdint>
#include <glm/vec3.hpp>
#include <span>
#include <unordered_map>
#include <vector>

namespace tilebuilder
{

/// The two forms in which a tile is stored.
enum class StoredForm : uint8_t
{
    Plain,  ///< .tile files and undo images: top-level entities
    Export, ///< .export files: what stands within prefabs too
};

/// A section: a stored list, a cell and a level.
struct SectionKey
{
    tile::SectionGroup eGroup = tile::SectionGroup::Assets;
    uint32_t uCell = 0;  ///< CellIndex::outside() for what no cell holds
    uint32_t uLevel = 0; ///< 0 to 3
};

/// Keeps every entity under the sections that it belongs to in both forms, so that writing a cell
/// asks for its entities alone, and a revision for each section, raised by all that may change
/// its bytes.
///
/// Threads: const operations from many at once while nothing changes; changes on the main thread.
class CellIndex
{
public:
    static constexpr uint32_t s_uLevels = 4;

    /// Starts anew for a tile of that many cells. A tile without bounds has all in its first cell.
    void reset(int iCellsX, int iCellsY, bool bBounded);

    [[nodiscard]] uint32_t cells() const { return m_uCells; }
    /// The place of entities that stand in no cell, which no file holds.
    [[nodiscard]] uint32_t outside() const { return m_uCells; }
    /// What records of a cell count from: (64 x, 64 y, 0); outside of all cells the world's origin.
    [[nodiscard]] glm::vec3 origin(uint32_t uCell) const;
    /// Minimum inclusive, maximum exclusive on each axis; z from -8192 to 8192.
    [[nodiscard]] uint32_t cellAt(const glm::vec3& point) const;

    /// Puts an entity into a section, out of the one it was in. Both count as changed, also when
    /// they are the same: the entity's bytes may be others.
    void place(uint32_t uId, StoredForm eForm, const SectionKey& key);
    /// Takes an entity out of both forms.
    void remove(uint32_t uId);

    [[nodiscard]] std::span<const uint32_t> ids(StoredForm eForm, const SectionKey& key) const;
    /// Never 0; never the same for two states of a section.
    [[nodiscard]] uint64_t revision(StoredForm eForm, const SectionKey& key) const;

private:
    static constexpr uint32_t s_uNone = UINT32_MAX;

    struct Section
    {
        std::vector<uint32_t> vecIds;
        uint64_t uRevision = 1;
    };
    struct Place
    {
        std::array<uint32_t, 2> arrSection{s_uNone, s_uNone}; ///< by form
        std::array<uint32_t, 2> arrSlot{};
    };

    [[nodiscard]] uint32_t sectionOf(const SectionKey& key) const;
    void leave(Place& place, size_t uForm);

    int m_iCellsX = 0;
    int m_iCellsY = 0;
    uint32_t m_uCells = 0;
    bool m_bBounded = true;
    uint64_t m_uRevision = 1;                          ///< the last that was given
    std::array<std::vector<Section>, 2> m_arrSections; ///< by form
    std::unordered_map<uint32_t, Place> m_mapPlaces;
};

} // namespace tilebuilder
