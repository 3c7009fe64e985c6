#pragma once // Brings what stands in a scene into a tile image.

#include "KestrelCommon/Assets/AssetSets.h"
#include "KestrelCommon/Tile/Records/AssetRecord.h"
#include "TileEditorCommon/Document/CellObjectProviderI.h"
#include "Tools/TileForge/Scene.h"

namespace forge
{

/// What the records need to know of the game's assets.
class AssetCatalogue
{
public:
    /// Reads the list of sets below "$GAME_DATA". False, reported, when it can't be read.
    bool load();

    struct Known
    {
        terrain::AssetEntry entry;
        glm::vec3 size{0.0f}; ///< of its model, in its own units
    };
    /// Null for an unknown name.
    [[nodiscard]] const Known* find(const std::string& sName) const;

private:
    std::map<std::string, Known> m_mapAssets;
};

/// The assets of a scene, for one tile. Serves writing only.
class SceneObjects final : public tilebuilder::CellObjectProviderI
{
public:
    /// False, reported, when the catalogue lacks one.
    bool take(const Scene& scene, const AssetCatalogue& catalogue);

    [[nodiscard]] tile::SectionGroup group() const override { return tile::SectionGroup::Assets; }
    uint32_t appendRecords(ByteStream& stream, const tilebuilder::ObjectCell& cell, uint32_t uLevel,
                           uint32_t uFlags) override;
    [[nodiscard]] size_t checkRecords(std::span<const std::byte> spanRecords, uint32_t uCount,
                                      uint32_t uVersion) const override;
    void beginRead(const tilebuilder::ObjectReadMode& mode) override;
    void readRecords(const tilebuilder::ObjectSection& section) override;
    void endRead() override;

private:
    struct Object
    {
        tile::AssetRecord record;
        uint32_t uLevel = 0;
    };
    std::vector<Object> m_vecObjects;
};

} // namespace forge
