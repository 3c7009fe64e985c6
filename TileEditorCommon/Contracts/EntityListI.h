#pragma once // What the windows ask about the things that stand on the tile.

#include "KestrelCommon/Core/Transform.h"
#include "TileEditorCommon/Contracts/Entity.h"

#include <cstdint>
#include <span>
#include <string>

namespace tilebuilder
{

class PropertyPanelI;

/// How a list shows an entity.
struct EntityLabel
{
    std::string sName;
    std::string sIcon;    ///< keyed path of its picture; empty: none
    bool bListed = true;  ///< false: it stays out of the outliner, but counts as shown
    bool bHidden = false; ///< taken out of the view for a while
};

/// The selected one of the two pivots of an entity, with what the switch "Transform around origin"
/// says; metres in the world. Main thread only; spans are good until the next change.
class EntityListI
{
public:
    virtual ~EntityListI() = default;

    // List

    /// Top-level entities. Additions go to its end; a removal moves the last one into the hole.
    [[nodiscard]] virtual std::span<const Entity> all() const = 0;
    [[nodiscard]] virtual bool exists(const Entity& entity) const = 0;
    [[nodiscard]] virtual EntityTypeId kind(const Entity& entity) const = 0;
    [[nodiscard]] virtual EntityLabel label(const Entity& entity) const = 0;

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
