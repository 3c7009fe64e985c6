#pragma once // Everything that stands on the open tile and isn't ground or clutter.

#include "TileEditorCommon/Contracts/Entity.h"
#include "TileEditorCommon/Contracts/EntityTraits.h"
#include "TileEditorCommon/Contracts/LibrarySourceI.h"
#include "TileEditorCommon/Entities/CellIndex.h"
#include "TileEditorCommon/Entities/EntityColorsI.h"
#include "TileEditorCommon/Entities/EntityHostI.h"
#include "TileEditorCommon/Entities/EntityRecordsI.h"
#include "TileEditorCommon/Entities/EntityShapesI.h"
#include "TileEditorCommon/Entities/EntityTypeI.h"
#include "TileEditorCommon/Entities/PickList.h"
#include "TileEditorCommon/Entities/UniqueIdProvider.h"

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tilebuilder
{

class EntityRenderI;

/// A kind of entities with all that the container needs of it.
struct EntityKind
{
    std::unique_ptr<EntityTypeI> pType;
    std::vector<std::unique_ptr<EntityRecordsI>> vecRecords; ///< one for each stored list, in their order
    const EntityShapesI* pShapes = nullptr;                  ///< null: no ray meets it; often the type itself
    EntityColorsI* pColors = nullptr; ///< null: its instances have none; often the type itself
    /// Fills in what a drag from a list places; false: nothing can be placed, reported. Empty: never.
    std::function<bool(const EditorToolState&, EntityCreateArgs&)> fnFillPlacement;
    /// The content item that provides what an entity shows; nil: the game's own.
    std::function<Uuid(uint32_t uId)> fnContent;
    std::function<bool(uint32_t uId)> fnLocked;              ///< empty: all can be picked and selected
    std::function<void(uint32_t uId, bool bShow)> fnShow;    ///< takes its look out of the view and back
    std::vector<std::unique_ptr<LibrarySourceI>> vecLibrary; ///< what of it can be placed, in order
};

/// What the container must know of the open document.
struct OpenTile
{
    int32_t iCellsX = 1;
    int32_t iCellsY = 1;
    uint32_t uType = 0; ///< 0: with ground
    std::string sPath;  ///< keyed; empty for a tile that was never saved
};

/// Owns the kinds, the list of top-level entities, the selection, and what is kept beside the list:
/// places for picking and for the sections of the tile's image.
///
/// Threads: main thread, but for the const operations that EntityHostI and CellIndex name.
class Entities : public EntityHostI
{
public:
    Entities(EditorSinkI& sink, EditorToolState& tools);
    ~Entities() override;
    Entities(const Entities&) = delete;
    Entities& operator=(const Entities&) = delete;

    // Kinds

    /// Takes a kind into its slot; each kind once, before any document is open.
    void addKind(EntityKind&& kind);
    /// What can be placed, in the order of the asset library.
    [[nodiscard]] std::vector<LibrarySourceI*> librarySources() const;
    /// Null for a kind that isn't there.
    [[nodiscard]] EntityTypeI* type(EntityTypeId eId) const { return m_arrKinds[eId].pType.get(); }
    [[nodiscard]] const EntityRecordsI* records(tile::SectionGroup eGroup) const;
    /// The type by its class, which names its id as s_eTypeId; must be there.
    template <typename Type>
    [[nodiscard]] Type& typed() const
    {
        return static_cast<Type&>(*m_arrKinds[Type::s_eTypeId].pType);
    }

    // Document

    /// An empty document; all entities go.
    void openTile(const OpenTile& tile);
    void closeTile();
    [[nodiscard]] bool isTileOpen() const { return m_bTileOpen; }
    [[nodiscard]] const OpenTile& tile() const { return m_tile; }
    void setTilePath(const std::string& sPath) { m_tile.sPath = sPath; }
    /// Removes all entities and starts the ids again at 1.
    void clear();
    /// Removes what images hold, to read all of it anew; the grid and the character stay.
    void clearStored();
    void beginLoad();
    void afterLoad();

    // Life

    /// Null when no document is open or the type refuses; an id is used up all the same.
    Entity createEntity(EntityCreateArgs args) override;
    /// From stored data; how many of them came to be.
    size_t createEntities(std::vector<EntityCreateArgs>&& vecArgs);
    Entity spawn(EntityCreateArgs args, std::span<const uint64_t> spanStack) override;
    /// Nothing for an id that isn't in the list.
    void removeEntity(const Entity& entity, bool bRemoveLinks);
    void removeSelected();

    [[nodiscard]] std::span<const Entity> all() const { return m_vecEntities; }
    [[nodiscard]] size_t count() const { return m_vecEntities.size(); }
    [[nodiscard]] size_t countOf(EntityTypeId eId) const { return m_arrCounts[eId]; }
    /// The null entity for an id that isn't in the list.
    [[nodiscard]] Entity find(uint32_t uId) const;
    [[nodiscard]] bool exists(const Entity& entity) const;
    [[nodiscard]] bool isSelectable(const Entity& entity) const;
    /// Those of a kind, in their order. Into prefabs: what stands within those that aren't kept as
    /// references, too.
    [[nodiscard]] std::vector<Entity> entitiesOfType(std::span<const Entity> spanEntities, EntityTypeId eId,
                                                     bool bIntoPrefabs) const;
    /// Raised when ids start again at 1.
    [[nodiscard]] uint64_t generation() const { return m_uGeneration; }
    /// Raised by every addition, removal and change; tells lists whether to look again.
    [[nodiscard]] uint64_t revision() const { return m_uRevision; }

    // Pivots

    [[nodiscard]] bool transformsAroundOrigin() const { return m_bTransformAroundOrigin; }
    /// All places for picking move to the other pivot.
    void setTransformAroundOrigin(bool bAroundOrigin);
    [[nodiscard]] Transform pivot(const Entity& entity) const;
    void setPivot(const Entity& entity, const Transform& transform);
    /// On a tile with ground: past its edges or too far up or down.
    [[nodiscard]] bool isOutOfBounds(const Entity& entity) const;
    /// The world's box of the entity's own box; a point when it has none.
    [[nodiscard]] Aabb worldBox(const Entity& entity) const;

    /// Moves and turns go to whole steps.
    [[nodiscard]] bool isSnapping() const { return m_bSnapping; }
    void setSnapping(bool bSnapping) { m_bSnapping = bSnapping; }

    // The two helpers of a tile, each the null entity while there is none

    [[nodiscard]] Entity grid() const { return exists(m_grid) ? m_grid : NullEntity; }
    [[nodiscard]] Entity character() const { return exists(m_character) ? m_character : NullEntity; }
    /// Made when there is none, else moved.
    void placeGrid(const Transform& transform);
    void placeCharacter(const Transform& transform);

    // Hiding single entities from the view and from picking; never stored

    void hideSelected();
    void showHidden();
    [[nodiscard]] bool isHidden(uint32_t uId) const { return m_setHidden.contains(uId); }
    [[nodiscard]] bool anyHidden() const { return !m_setHidden.empty(); }

    // Selection, in the order of selecting; the last one is active

    void select(const Entity& entity, bool bAdd);
    void selectMany(std::span<const Entity> spanEntities);
    void selectAllOfType(EntityTypeId eId);
    void selectAll();
    void deselect(const Entity& entity);
    void clearSelection();
    [[nodiscard]] std::span<const Entity> selected() const { return m_vecSelected; }
    [[nodiscard]] bool isSelected(uint32_t uId) const { return m_setSelected.contains(uId); }
    [[nodiscard]] Entity active() const { return m_vecSelected.empty() ? NullEntity : m_vecSelected.back(); }
    /// Calls with the pivot of each that exists and writes back what changed. One that can't be
    /// scaled keeps its scale, whatever is asked.
    void forEachSelected(const std::function<void(Transform& pivot)>& fnChange);
    void forEachSelectedWithEntity(const std::function<void(Transform& pivot, const Entity&)>& fnChange);
    /// Called when another entity is selected: windows empty their search there.
    void onSelecting(std::function<void()> fnSelecting) { m_fnSelecting = std::move(fnSelecting); }

    // Colours; nothing for kinds without any

    [[nodiscard]] tile::ColorMap colors(const Entity& entity) const;
    void setColors(const Entity& entity, const tile::ColorMap& mapColors);

    /// The content items that provide what stands on the tile.
    [[nodiscard]] std::set<Uuid> usedContent() const;

    // Placing

    /// What the drag that the tools describe places; false when its kind can't be placed.
    bool fillPlacement(EntityCreateArgs& args) const;

    // Picking

    /// What a click on this ray means; locked things are not passed over but yield the null entity.
    [[nodiscard]] Entity pick(const PickRay& ray) const;
    /// The first shape that a ray meets, but those of some entities.
    [[nodiscard]] std::optional<RayHit> castShapes(const glm::vec3& from, const glm::vec3& to,
                                                   const std::unordered_set<uint32_t>& setIgnored) const;

    // Frame

    /// Lets every kind do its work; seconds.
    void update(float dt);
    /// Around all that is selected; red what stands out of bounds.
    void drawBoxes(EntityRenderI& render) const;
    /// An icon at the pivot of all that is shown and not selected, while the entity tool is on. Of
    /// those the filter lets pass, if there is one.
    void drawIcons(EntityRenderI& render, const glm::vec3& eye,
                   const std::function<bool(uint32_t uId)>& fnListed) const;

    // Stored form

    [[nodiscard]] const CellIndex& index() const { return m_index; }
    /// Before the first cell of an image is written.
    void prepareForSave(bool bExport);
    /// After the last cell of an image.
    void releaseSave();

    // Restoring a state: what is the same lives on. Sections that aren't named stay as they are, and
    // what stands outside of all cells goes, since no state holds it.

    void beginRestore();
    /// The section as the state holds it, perhaps without records; the bytes are borrowed until
    /// endRestore().
    void restoreSection(const SectionKey& key, std::span<const std::byte> spanRecords, uint32_t uCount,
                        uint32_t uVersion);
    /// bSelect: what had to be made anew becomes the selection.
    void endRestore(bool bSelect);
    [[nodiscard]] std::span<const Entity> restored() const { return m_vecRestored; }

    // EntityHostI

    void onInstanceChanged(uint32_t uId, uint32_t uMask) override;
    [[nodiscard]] const tile::TagSet& inheritedTags(uint32_t uId) const override;
    [[nodiscard]] EditorSinkI& sink() override { return m_sink; }
    [[nodiscard]] EditorToolState& tools() override { return m_tools; }

private:
    /// What rays and the view ask of an entity in every frame.
    struct Place
    {
        glm::vec3 centre{0.0f}; ///< of the sphere around its shape
        float radius = -1.0f;   ///< negative when it has none
        bool outside = false;   ///< out of bounds
    };
    struct PendingSection
    {
        SectionKey key;
        std::span<const std::byte> spanRecords;
        uint32_t uCount = 0;
        uint32_t uVersion = 0;
    };
    struct SectionDifference
    {
        std::vector<uint32_t> vecGone;
        std::vector<EntityCreateArgs> vecNew;
    };

    void append(const Entity& entity);
    void markSetChanged(const EntityTypeI& type);
    Entity placeHelper(const Entity& helper, EntityTypeId eId, const Transform& transform);
    void refreshPlace(size_t uIndex);
    [[nodiscard]] Place placeOf(const Entity& entity) const;
    void unselect(const Entity& entity);
    [[nodiscard]] SectionDifference difference(const PendingSection& state) const;

    EditorSinkI& m_sink;
    EditorToolState& m_tools;
    UniqueIdProvider m_uniqueIds;

    uint32_t m_uNextEntityId = 1;
    uint64_t m_uGeneration = 1;
    uint32_t m_uNextPrefabSlot = 1;
    std::array<EntityKind, EntityTypeId_COUNT> m_arrKinds;
    std::array<size_t, EntityTypeId_COUNT> m_arrCounts{};
    std::array<const EntityRecordsI*, tile::SectionGroupCount> m_arrRecords{};

    bool m_bTileOpen = false;
    OpenTile m_tile;
    std::vector<Entity> m_vecEntities; ///< order isn't kept: removal moves the last into the hole
    std::unordered_map<uint32_t, size_t> m_mapEntityIndex;
    PickList m_pickList;            ///< in step with m_vecEntities
    std::vector<Place> m_vecPlaces; ///< in step with m_vecEntities
    size_t m_uOutside = 0;          ///< of them out of bounds
    CellIndex m_index;
    uint64_t m_uRevision = 1;

    std::vector<Entity> m_vecSelected;
    std::unordered_set<uint32_t> m_setSelected;
    std::function<void()> m_fnSelecting;
    bool m_bTransformAroundOrigin = false;
    bool m_bSnapping = false;
    std::unordered_set<uint32_t> m_setHidden;
    Entity m_grid;
    Entity m_character;

    std::vector<PendingSection> m_vecPending; ///< of the state that is being restored
    std::vector<Entity> m_vecRestored;
};

} // namespace tilebuilder
