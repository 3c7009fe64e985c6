#pragma once // What is true of a whole kind of entities: the one table that everybody asks.

#include "KestrelCommon/Tile/SectionTable.h"
#include "TileEditorCommon/Contracts/EntityTypeId.h"

#include <array>
#include <span>
#include <string_view>

namespace tilebuilder
{

/// Which of an entity's two pivots decides its cell.
enum class TestPoint : uint8_t
{
    Origin, ///< where the model's own origin lies
    Centre, ///< the middle of its bounds
};

/// One list of a cell that holds a kind. Lists with levels have one section for each of the four.
struct StoredList
{
    tile::SectionGroup eGroup = tile::SectionGroup::Assets;
    bool bLevels = false;
};

struct EntityTraits
{
    EntityTypeId eId = EntityTypeId_COUNT;
    std::string_view sName;       ///< as menus and the outliner write it
    std::string_view sPluralName; ///< as "Select All" writes it; empty: it has no entry
    std::string_view sArrayName;  ///< of its branch in the outliner
    std::string_view sNullName;   ///< display name of an id without an instance
    uint32_t uFilterFlag = 512;   ///< bit of EditorToolState::viewMask and collision group
    std::string_view sGizmo;      ///< icon, by its name; empty: the fallback ring
    std::array<StoredList, 2> arrLists{};
    uint8_t uLists = 0; ///< how many of them the kind has
    TestPoint ePlain = TestPoint::Origin;
    TestPoint eExport = TestPoint::Origin;
    bool bTags = false;         ///< its records hold tags
    bool bCentreBounds = false; ///< out of bounds is tested at the centre
    bool bNeverOutside = false; ///< stands outside of the tile's box as it likes

    [[nodiscard]] std::span<const StoredList> lists() const { return {arrLists.data(), uLists}; }
};

/// All kinds, in the order of their ids.
[[nodiscard]] std::span<const EntityTraits, EntityTypeId_COUNT> entityTraits();
/// Any id below EntityTypeId_COUNT; else asserts and yields that of assets.
[[nodiscard]] const EntityTraits& entityTraits(EntityTypeId eId);

/// An entity is shown when its flag has no bit outside of the mask. The flag that grids, characters
/// and selectors share has no entry in the menu and counts as set unless the mask is 0.
[[nodiscard]] constexpr bool isShown(uint32_t uFilterFlag, uint32_t uViewMask)
{
    constexpr uint32_t uUnnamed = 512;
    return uViewMask != 0 && (uFilterFlag & ~(uViewMask | uUnnamed)) == 0;
}

} // namespace tilebuilder
