#pragma once // What the windows ask about the things that stand on the tile.

#include "KestrelCommon/Core/Transform.h"
#include "TileEditorCommon/Contracts/Entity.h"

#include <cstdint>
#include <span>
#include <string>

namespace tilebuilder
{

class PropertyPanelI;

/// Pivots are those that the switch "Transform around origin" says, in the world, metres. Unknown
/// entities yield empty results. Main thread only; spans are good until the next change.
class EntityListI
{
public:
    virtual ~EntityListI() = default;

    // List

    /// Top-level entities. Additions go to its end; a removal moves the last one into the hole.
    [[nodiscard]] virtual std::span<const Entity> all() const = 0;
    /// Another number once ids are given out anew, so that equal ids name other entities.
    [[nodiscard]] virtual uint64_t generation() const = 0;
    [[nodiscard]] virtual bool exists(const Entity& entity) const = 0;
    [[nodiscard]] virtual EntityTypeId kind(const Entity& entity) const = 0;
    [[nodiscard]] virtual std::string name(const Entity& entity) const = 0;
    /// Keyed path of the picture that stands for it in lists; empty: none.
    [[nodiscard]] virtual std::string icon(const Entity& entity) const = 0;
    /// False: it stays out of the outliner's tree, but counts as listed while nothing is searched.
    [[nodiscard]] virtual bool isOutlined(const Entity& entity) const = 0;
    /// Taken out of the view for a while.
    [[nodiscard]] virtual bool isHidden(const Entity& entity) const = 0;

    // Selection, in the order of selecting; the last one is active

    [[nodiscard]] virtual std::span<const Entity> selected() const = 0;
    /// What can't be selected is left out.
    virtual void select(std::span<const Entity> spanEntities) = 0;

    // Values

    [[nodiscard]] virtual Transform pivot(const Entity& entity) const = 0;
    virtual void setPivot(const Entity& entity, const Transform& transform) = 0;
    /// Bits of ScaleFlags.
    [[nodiscard]] virtual uint8_t scaleFlags(const Entity& entity) const = 0;
    /// Adds the rows of the entity's kind to a panel that the caller begins and ends.
    virtual void displayProperties(const Entity& entity, PropertyPanelI& panel) = 0;
};

} // namespace tilebuilder
