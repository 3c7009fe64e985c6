#pragma once // What the asset library shows. No GUI.

#include "TileEditorCommon/Contracts/EditorActionsI.h"
#include "TileEditorCommon/Contracts/LibrarySourceI.h"

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace tilebuilder
{

/// A line of the filter's tree: a group's title or a check box.
struct LibraryFilterRow
{
    enum class Kind : uint8_t
    {
        Group,
        AllCategories,
        Category,
        Content,
    };
    Kind eKind = Kind::Group;
    int iDepth = 0;
    std::string sLabel;
    std::string sId; ///< for toggleFilter()
    bool bChecked = false;

    bool operator==(const LibraryFilterRow&) const = default;
};

/// All items of all sources, and those of them that the search and the check boxes leave over. At
/// first everything is chosen; categories and contents that come later are chosen as well, unless
/// only some are.
class LibraryModel
{
public:
    explicit LibraryModel(EditorActionsI& actions);

    /// Looks at the sources again; true when anything that is shown may have changed. Cheap while
    /// their revisions stay.
    bool refresh();
    /// The contents of the run changed.
    void rebuildFilters();

    // Filter

    [[nodiscard]] const std::vector<LibraryFilterRow>& filterRows() const { return m_vecFilterRows; }
    void toggleFilter(const LibraryFilterRow& row);
    /// Something is left out.
    [[nodiscard]] bool isFiltered() const;
    /// Words that a name must hold, or one uuid.
    void setSearch(std::string_view sText);

    // Items

    [[nodiscard]] size_t total() const { return m_vecItems.size(); }
    [[nodiscard]] size_t count() const { return m_vecShown.size(); }
    [[nodiscard]] const LibraryItem& item(size_t uShown) const { return entry(uShown).item; }
    /// "5 items", or "2 of 5 items".
    [[nodiscard]] std::string countText() const;
    /// Why the list is empty and what to do; empty while it isn't.
    [[nodiscard]] std::string emptyText() const;

    /// Keyed path; empty: none, or none yet. Asks the source once for each item.
    [[nodiscard]] const std::string& iconPath(size_t uShown);
    /// Keyed path of the small picture of a kind.
    [[nodiscard]] static std::string typeIcon(LibraryItemKind eKind);
    /// Rich text.
    [[nodiscard]] std::string tip(size_t uShown) const;
    [[nodiscard]] std::vector<LibraryMenuEntry> menu(size_t uShown) const;
    void runCommand(const LibraryMenuEntry& entry);
    /// A drag of the item began. False: it can't be placed.
    bool beginDrag(size_t uShown);

private:
    struct Entry
    {
        LibraryItem item;
        LibrarySourceI* pSource = nullptr;
        uint32_t uName = 0; ///< place and length of the lower-case name in m_sNames
        uint32_t uNameLength = 0;
    };
    struct Icon
    {
        std::string sPath;
        uint64_t uRevision = 0; ///< of the source's icons when it was asked
    };
    using IconKey = std::tuple<LibrarySourceI*, Uuid, uint64_t>;

    [[nodiscard]] const Entry& entry(size_t uShown) const { return m_vecItems[m_vecShown[uShown]]; }
    [[nodiscard]] bool passes(const LibraryItem& item) const;
    void gather();
    void gatherCategories();
    void applyFilters();
    void applySearch();
    void findWords();
    void buildFilterRows();

    EditorActionsI& m_actions;
    std::vector<uint64_t> m_vecRevisions; ///< of the sources, as they were gathered
    std::vector<uint64_t> m_vecIconRevisions;
    std::map<IconKey, Icon> m_mapIcons; ///< outlives the items, so that no file is looked for twice
    std::vector<Entry> m_vecItems;
    std::string m_sNames;          ///< all lower-case names, each with a null behind it
    std::vector<bool> m_vecPasses; ///< what the check boxes let through, in step with m_vecItems
    std::vector<uint32_t> m_vecShown;
    std::vector<std::string> m_vecWords; ///< lower case

    std::set<std::string> m_setCategories;
    std::set<std::string> m_setChosenCategories;
    std::vector<LibraryContent> m_vecContents;
    std::set<std::string> m_setChosenContents; ///< keys
    std::vector<LibraryFilterRow> m_vecFilterRows;
};

} // namespace tilebuilder
