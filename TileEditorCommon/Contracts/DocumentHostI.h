#pragma once // What a tile asks of the one who hosts it.

#include "KestrelCommon/Core/Uuid.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tilebuilder
{

/// Main thread only.
class DocumentHostI
{
public:
    virtual ~DocumentHostI() = default;

    /// A document of this size (in cells) and type replaces the open one: grids are made anew.
    virtual void reinitialise(int32_t iWidth, int32_t iHeight, uint32_t uType, const std::string& sPath) = 0;

    /// Whether Tile::load keeps the name of a file outside of content items.
    [[nodiscard]] virtual bool keepsForeignNames() const = 0;

    /// After undo, redo and loads: pending changes of the next frames are dropped.
    virtual void skipPendingChanges() = 0;

    virtual void markInterfaceDirty(uint32_t uMask) = 0;

    // History

    /// Bytes of all states of the documents that were left and can be returned to.
    [[nodiscard]] virtual uint64_t cachedUndoMemory() const { return 0; }
    /// Drops the one that was left longest ago; the bytes freed, 0 when there is none.
    virtual uint64_t evictOldestCachedTile() { return 0; }

    // Content items

    /// True when the run works within a content item.
    [[nodiscard]] virtual bool hasContext() const = 0;
    /// The folder of that item, made if missing; keyed.
    virtual std::string contextDirectory() = 0;
    /// The sub-folder of the user's tile folder that holds a file of that name; empty: none.
    [[nodiscard]] virtual std::string findUserTile(std::string_view sFileName) const = 0;
    /// A new tile item with its "name" set; its folder as a keyed path, empty on failure.
    virtual std::string createTileItem(std::string_view sName) = 0;
    /// Takes back an item that createTileItem() made in this save, when the save failed.
    virtual void discardTileItem(std::string_view sDirectory) = 0;
};

} // namespace tilebuilder
