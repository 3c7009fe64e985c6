#pragma once // What the outliner shows: everything on the tile, by kind. No GUI.

#include "TileEditorCommon/Contracts/Entity.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace tilebuilder
{

class EditorActionsI;
class EntityListI;

/// A line of the tree: the title of a kind, or an entity below it.
struct OutlinerRow
{
    EntityTypeId eKind = EntityTypeId_COUNT;
    Entity entity; ///< the null entity in a title

    [[nodiscard]] bool isTitle() const { return !entity; }
};

/// What an update changed.
struct OutlinerChange
{
    bool bRows = false;      ///< other lines, or other texts in them
    bool bSelection = false; ///< other marks
};

/// Entities by kind, in the order of the list, whose names hold all words of the search. Follows
/// the list by difference: a move costs a comparison of ids, an addition or removal asks for the
/// names of what is new and lays out the lines again; names of the rest are kept.
class OutlinerModel
{
public:
    explicit OutlinerModel(EditorActionsI& actions);

    /// Looks at the list and the selection again; bits of ChangeMask.
    OutlinerChange update(uint32_t uMask);
    /// True when the lower-case text differs from the last one.
    bool setSearch(std::string_view sText);

    [[nodiscard]] size_t rowCount() const { return m_vecRows.size(); }
    [[nodiscard]] const OutlinerRow& row(size_t uRow) const { return m_vecRows[uRow]; }
    /// An array's name, or an entity's present name, unescaped.
    [[nodiscard]] std::string label(size_t uRow) const;
    /// Keyed path of the picture before the label; empty: none.
    [[nodiscard]] std::string icon(size_t uRow) const;
    /// Entities below a title.
    [[nodiscard]] size_t countOf(EntityTypeId eKind) const { return m_arrKinds[eKind].vecItems.size(); }
    [[nodiscard]] bool isOpen(EntityTypeId eKind) const { return m_arrKinds[eKind].bOpen; }
    [[nodiscard]] bool isMarked(size_t uRow) const;
    /// Shown dim: out of the view for a while.
    [[nodiscard]] bool isDim(size_t uRow) const;
    /// "5 things", or "2 of 5 things".
    [[nodiscard]] std::string countText() const;
    [[nodiscard]] std::string emptyText() const;

    /// Whether clicks and icons in the view may take an entity while the outliner is visible.
    [[nodiscard]] bool isListed(uint32_t uId) const;

    void setOpen(EntityTypeId eKind, bool bOpen);
    /// A click on a line: a title opens or closes, an entity becomes the selection; with Ctrl it
    /// joins or leaves it, with Shift all from the last click on are selected.
    void click(size_t uRow, bool bControl, bool bShift);
    /// Selects the entity so many lines from the active one; bExtend: as with Shift.
    void step(int iLines, bool bExtend);
    /// The line of the active entity; nothing when it has none.
    [[nodiscard]] std::optional<size_t> activeRow() const;

private:
    struct Item
    {
        uint32_t uId = 0;
        EntityTypeId eKind = EntityTypeId_COUNT;
        bool bOutlined = true;
        bool bPasses = true;
        std::string sName; ///< lower case
    };
    struct Kind
    {
        std::vector<uint32_t> vecItems; ///< places in m_vecItems that pass
        bool bOpen = true;
    };

    bool followList();
    bool renameAll();
    bool renameSelected();
    bool rename(Item& item, const Entity& entity) const;
    [[nodiscard]] Item makeItem(const Entity& entity) const;
    [[nodiscard]] bool passes(const Item& item) const;
    void layOut();
    bool followSelection();
    [[nodiscard]] std::optional<size_t> rowOf(uint32_t uId) const;
    void selectRange(size_t uFrom, size_t uTo);

    EntityListI* m_pList;
    std::string m_sSearch; ///< lower case
    std::vector<std::string> m_vecWords;
    std::vector<Item> m_vecItems; ///< in step with the list
    uint64_t m_uGeneration = 0;   ///< of the list
    std::array<Kind, EntityTypeId_COUNT> m_arrKinds;
    std::vector<OutlinerRow> m_vecRows;
    std::vector<bool> m_vecListed; ///< by id
    size_t m_uShown = 0;
    std::vector<uint32_t> m_vecSelected; ///< ids, in the order of selecting
    std::unordered_set<uint32_t> m_setSelected;
    uint32_t m_uAnchor = 0; ///< id that a click with Shift starts from
};

} // namespace tilebuilder
