#pragma once // Assets as entities: static models whose colours can be chosen.

#include "TileEditorCommon/Contracts/Entity.h"
#include "TileEditorCommon/Entities/Asset/AssetInstance.h"
#include "TileEditorCommon/Entities/EntityColorsI.h"
#include "TileEditorCommon/Entities/EntityShapesI.h"
#include "TileEditorCommon/Entities/EntityTypeI.h"
#include "TileEditorCommon/Entities/InstanceMap.h"

#include <array>
#include <map>
#include <set>

namespace terrain
{
struct AssetEntry;
struct AssetSetRef;
} // namespace terrain

namespace tilebuilder
{

struct EntityKind;

/// Which of the game's databases are read besides the one of "$GAME_DATA".
struct AssetLists
{
    bool bSurvival = true;
    bool bChallenge = true;
};

/// The asset database with what is placed of it.
///
/// Lookups by uuid log what isn't known, as their comments say; those by entity id follow EntityTypeI.
/// Threads: as EntityTypeI.
class AssetEntityType : public EntityTypeI,
                        public EntityColorsI,
                        public EntityShapesI,
                        public terrain::AssetRendering
{
public:
    static constexpr EntityTypeId s_eTypeId = EntityTypeId_Asset;
    static constexpr size_t s_uMaxColors = 100; ///< of one asset
    static int s_iColorEditIndex;               ///< the slot under edit; -1: none

    /// Reads the databases. World and host must outlive it.
    AssetEntityType(EntityHostI& host, rend::InstanceWorld& world, const AssetLists& lists);
    ~AssetEntityType() override;

    /// The kind with its records, shapes and hiding, for Entities::addKind().
    [[nodiscard]] static EntityKind makeKind(std::unique_ptr<AssetEntityType> pType);

    // Database

    /// Adds the sets of a list file; those that were read before are passed over. origin: the content item
    /// that they belong to. False: the list can't be read, reported.
    bool addSets(const std::string& sListPath, const Uuid& origin);

    /// Whether an asset of a content item is there.
    [[nodiscard]] bool knowsOrigin(const Uuid& origin) const;
    /// The content item that an asset comes from; nil for the game's own and unknown ones.
    [[nodiscard]] Uuid originOf(const Uuid& uuid) const;
    /// Takes a content item's assets out of the library. What is placed of them stays.
    void removeSets(const Uuid& origin);

    /// In the order of loading, hidden ones too.
    [[nodiscard]] std::span<const Uuid> getAssetUuids() const { return m_vecUuids; }
    [[nodiscard]] const std::map<std::string, size_t>& categoryCounts() const { return m_mapCategoryCount; }
    /// Paths of the set files of each category.
    [[nodiscard]] const std::map<std::string, std::vector<std::string>>& categorySets() const
    {
        return m_mapCategorySets;
    }
    /// The assets of each set file.
    [[nodiscard]] const std::map<std::string, std::vector<Uuid>>& setAssets() const { return m_mapSetAssets; }
    /// Raised by every change of the database.
    [[nodiscard]] uint64_t databaseRevision() const { return m_uDatabaseRevision; }

    /// "Failed to find asset uuid: {" uuid "}" and null for an unknown one.
    [[nodiscard]] const EditorAsset* findAsset(const Uuid& uuid) const;
    /// "Asset named '" name "' not found!" and nil for an unknown one; for records of old tiles.
    [[nodiscard]] Uuid findByName(std::string_view sName) const;
    /// False with a line when there is no such asset.
    bool defaultColors(const Uuid& uuid, tile::ColorMap& mapOut) const;
    /// Keys that the asset no longer has go, new ones come with their defaults. Nothing for an unknown one.
    void normalizeColors(const Uuid& uuid, tile::ColorMap& mapColors) const;
    /// Keyed; empty when the list names none; logs an unknown uuid.
    [[nodiscard]] std::string getIconDirectory(const Uuid& uuid) const;
    /// The null box with a line for an unknown one.
    [[nodiscard]] Aabb localBox(const Uuid& uuid) const;

    // Instances

    [[nodiscard]] const EditorAssetInstance* instance(uint32_t uId) const;
    [[nodiscard]] const EditorAsset* assetOf(uint32_t uId) const;
    /// Changes made through it are drawn by refreshInstanceColors() and setOriginTransform() alone.
    [[nodiscard]] InstanceEdit<EditorAssetInstance> edit(uint32_t uId, uint32_t uMask);
    /// Draws the instance with its colour map.
    void refreshInstanceColors(uint32_t uId);
    void setColor(uint32_t uId, const std::string& sSlot, uint32_t uColor);
    /// The slot under edit takes the colour of the same slot of another asset. False: it has none.
    bool pickColor(uint32_t uId, uint32_t uPickedId);
    void setTags(uint32_t uId, const tile::TagSet& setTags);

    // EntityTypeI

    [[nodiscard]] EntityTypeId getTypeId() const override { return s_eTypeId; }
    bool create(EntityCreateArgs& args, std::span<const uint64_t> spanStack) override;
    [[nodiscard]] bool exists(uint32_t uId) const override { return findInstance(uId) != nullptr; }
    void remove(uint32_t uId, bool bRemoveLinks) override;
    [[nodiscard]] std::string getDisplayName(uint32_t uId) const override;
    [[nodiscard]] Transform getCenterTransform(uint32_t uId) const override;
    void setCenterTransform(uint32_t uId, const Transform& transform) override;
    [[nodiscard]] Transform getOriginTransform(uint32_t uId) const override;
    void setOriginTransform(uint32_t uId, const Transform& transform) override;
    [[nodiscard]] Transform getLocalCenterTransform(uint32_t uId) const override;
    [[nodiscard]] Transform getLocalTransform(uint32_t uId) const override;
    bool getBounds(uint32_t uId, Aabb& box) const override;
    void onSelect(uint32_t uId) override;
    void onDeselect(uint32_t uId) override;
    [[nodiscard]] const void* getInstance(uint32_t uId) const override { return instance(uId); }
    void displayProperties(uint32_t uId, PropertyPanelI& panel) override;
    bool getCloneArgs(uint32_t uId, EntityCreateArgs& args) const override;
    [[nodiscard]] uint8_t getScaleFlags(uint32_t uId) const override;
    [[nodiscard]] uint32_t getGizmo(uint32_t uId) const override;

    // EntityColorsI

    [[nodiscard]] tile::ColorMap colors(uint32_t uId) const override;
    void setColors(uint32_t uId, const tile::ColorMap& mapColors) override;

    // EntityShapesI

    [[nodiscard]] std::optional<RayHit> castRay(uint32_t uId, const glm::vec3& from,
                                                const glm::vec3& to) const override;

protected:
    /// The box may be another one.
    void onAssetReplaced(AssetInstance& instance) override;

private:
    void readSet(const terrain::AssetSetRef& ref, const std::string& sIconDirectory, const Uuid& origin);
    void addEntry(const terrain::AssetEntry& entry, const terrain::AssetSetRef& ref,
                  const std::string& sIconDirectory, const Uuid& origin);
    [[nodiscard]] EditorAssetInstance* mutableInstance(uint32_t uId) const;
    void chooseSlot(const EditorAssetInstance& instance, int iIndex);

    EntityHostI& m_host;
    std::vector<Uuid> m_vecUuids;
    std::map<std::string, std::vector<Uuid>> m_mapSetAssets;
    std::map<std::string, Uuid, std::less<>> m_mapUuidOfName;
    std::map<std::string, size_t> m_mapCategoryCount;
    std::map<std::string, std::vector<std::string>> m_mapCategorySets;
    std::set<std::string> m_setReadFiles;
    uint64_t m_uDatabaseRevision = 1;
    mutable std::optional<uint32_t> m_gizmo; ///< found at the first question
};

} // namespace tilebuilder
