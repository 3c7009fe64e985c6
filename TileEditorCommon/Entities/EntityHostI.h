#pragma once // What an entity type asks of the container that it lives in.

#include "KestrelCommon/Tile/Records/TagList.h"
#include "TileEditorCommon/Contracts/Entity.h"

#include <cstdint>
#include <span>

namespace tilebuilder
{

struct EntityCreateArgs;
class EditorSinkI;
struct EditorToolState;

/// Main thread only, but for inheritedTags(), which any thread may call while a tile is written.
class EntityHostI
{
public:
    virtual ~EntityHostI() = default;

    virtual Entity createEntity(EntityCreateArgs args) = 0;
    /// Without a place in the list: how prefabs make their children. The stack holds the hashes of
    /// the paths of the prefabs around it.
    virtual Entity spawn(EntityCreateArgs args, std::span<const uint64_t> spanStack) = 0;

    /// An instance came to hold other values, or stands elsewhere: its place for picking and for the
    /// cells follows, and the cells that it was and is in count as changed. Bits of ChangeMask; 0
    /// when only a look changed that isn't stored. Called by InstanceEdit; rarely by hand.
    virtual void onInstanceChanged(uint32_t uId, uint32_t uMask) = 0;

    /// Tags of the prefabs around an entity; empty but while an export is written.
    [[nodiscard]] virtual const tile::TagSet& inheritedTags(uint32_t uId) const = 0;

    [[nodiscard]] virtual EditorSinkI& sink() = 0;
    [[nodiscard]] virtual EditorToolState& tools() = 0;
};

} // namespace tilebuilder
