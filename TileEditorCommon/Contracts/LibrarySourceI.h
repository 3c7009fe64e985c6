#pragma once // What the asset library lists: items of one kind of thing that can be placed.

#include "KestrelCommon/Core/Uuid.h"
#include "TileEditorCommon/Contracts/EntityTypeId.h"

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tilebuilder
{

/// Decides the small picture in an item's corner.
enum class LibraryItemKind : uint8_t
{
    Asset = 0,
    Harvestable = 1,
    Kinematic = 2,
    Decal = 3,
    Shape = 4,
    Node = 5,
    Blueprint = 6,
    Prefab = 7,
    AssetPrefab = 8, ///< a prefab whose name begins "ap_"
    Count = 9,
};

struct LibraryItem
{
    LibraryItemKind eKind = LibraryItemKind::Asset;
    std::string sName; ///< as it is shown and searched, without the prefixes that the kind drops
    Uuid uuid;         ///< nil for items that have none
    uint64_t uKey = 0; ///< the source's own: place in its table, hash of a file
    /// Key of the keyed paths of the content that it comes from: "$GAME_DATA", "$SURVIVAL_DATA",
    /// "$CONTENT_" and an item's id; empty: shown whatever content is chosen.
    std::string sContent;
    bool bFiltersCategory = true; ///< false: its kind knows no categories, the choice doesn't concern it
    std::vector<std::string> vecCategories;
};

/// A line of an item's tip: the tag is shown as it stands, with its colours, the value behind it as
/// plain text. Tags are literals.
struct LibraryTipLine
{
    std::string_view sTag;
    std::string sValue;
};

/// What dragging an item places.
struct LibraryPlacement
{
    EntityTypeId eType = EntityTypeId_COUNT; ///< COUNT: the item can't be placed
    Uuid uuid;
    std::string sPath;   ///< keyed, of a prefab or blueprint
    uint32_t uIndex = 0; ///< a decal's global index, a node's place in the node list
};

enum class LibraryCommand : uint8_t
{
    OpenFile,   ///< with the program that the desktop has for it
    OpenFolder, ///< that the file lies in
    CopyText,
    OpenDocument, ///< in the editor
};

struct LibraryMenuEntry
{
    std::string sLabel;
    LibraryCommand eCommand = LibraryCommand::OpenFile;
    std::string sPath; ///< keyed; the text to copy
};

/// Items of one kind, or of kinds that lie in the same lists. An item that a caller hands back is one
/// of listItems(), maybe of an earlier revision: unknown ones yield empty results.
///
/// Threads: main thread only.
class LibrarySourceI
{
public:
    virtual ~LibrarySourceI() = default;

    /// Another number after every change of what listItems() or categories() would give.
    [[nodiscard]] virtual uint64_t revision() const = 0;
    /// Adds all items, in the order of the list.
    virtual void listItems(std::vector<LibraryItem>& vecItems) const = 0;
    /// Adds the names that the filter offers.
    virtual void listCategories(std::set<std::string>& /*setCategories*/) const {}

    /// Keyed path of the item's picture; empty: it has none, or none yet. Asked once for an item that
    /// comes into view, and again for those without a picture when iconRevision() changes.
    [[nodiscard]] virtual std::string iconPath(const LibraryItem& item) = 0;
    [[nodiscard]] virtual uint64_t iconRevision() const { return 0; }

    /// From the type's line on, without that of the content.
    [[nodiscard]] virtual std::vector<LibraryTipLine> tip(const LibraryItem& item) const = 0;
    /// Of a right click; empty: no menu.
    [[nodiscard]] virtual std::vector<LibraryMenuEntry> menu(const LibraryItem& /*item*/) const { return {}; }
    [[nodiscard]] virtual LibraryPlacement placement(const LibraryItem& item) const = 0;
};

} // namespace tilebuilder
