#pragma once // A game folder with a few assets, and entities without an editor.

#include "KestrelCommon/Services/DirectoryManager.h"
#include "Tests/Support/LogCapture.h"
#include "Tests/Support/TempFolder.h"
#include "TileEditorCommon/Contracts/EditorSinkI.h"
#include "TileEditorCommon/Contracts/EditorToolState.h"
#include "TileEditorCommon/Entities/Asset/AssetArgs.h"
#include "TileEditorCommon/Entities/Asset/AssetEntityType.h"
#include "TileEditorCommon/Entities/Entities.h"

#include <fstream>

namespace tilebuilder
{

/// Rock (uuid 1; slots "moss" and "stone"), Post (uuid 2; no slots, 4 x 8 x 2 units), Ghost (uuid 3; hidden).
class AssetWorld : public EditorSinkI
{
public:
    AssetWorld()
    {
        m_directories.addKey("$GAME_DATA", (m_folder.path() / "Data").string());
        m_directories.addKey("$SURVIVAL_DATA", (m_folder.path() / "Survival").string());
        m_directories.addKey("$CHALLENGE_DATA", (m_folder.path() / "Challenge").string());
        write("Data/Terrain/Database/assetsets.json",
              R"({"iconDirectory": "$GAME_DATA/Icons", "assetSetList": [
                  {"assetSet": "$GAME_DATA/rocks.json", "categories": ["Nature", "Rocks"]},
                  {"assetSet": "$GAME_DATA/posts.json", "category": "Nature"},
                  {"assetSet": "$GAME_DATA/gone.json", "categories": ["Lost"]},
                  {"assetSet": "$GAME_DATA/ghosts.json", "hidden": true, "categories": ["Ghosts"]}]})");
        write("Data/rocks.json", R"({"assetListRenderable": [
            {"uuid": ")" + text(1) + R"(", "name": "Rock", "renderable": "$GAME_DATA/rock.rend",
             "defaultColors": {"stone": "#102030", "moss": "40506070"}}]})");
        write("Data/rock.rend",
              R"({"mesh": "$GAME_DATA/none.obj", "materials": {"": {"colorSlot": "stone"}}})");
        write("Data/posts.json",
              R"({"assetListRenderable": [
            {"uuid": ")" +
                  text(2) + R"(", "name": "Post", "renderable": {"mesh": "$GAME_DATA/post.obj"}}]})");
        write("Data/post.obj", "v 0 0 0\nv 4 0 0\nv 0 8 0\nv 0 0 2\nf 1 3 2\nf 1 2 4\nf 1 4 3\nf 2 3 4\n");
        write("Data/ghosts.json",
              R"({"assetListRenderable": [
            {"uuid": ")" +
                  text(3) + R"(", "name": "Ghost", "renderable": {"mesh": "$GAME_DATA/post.obj"}}]})");
        write("Survival/Terrain/Database/assetsets.json", R"({"assetSetList": []})");
        write("Challenge/Terrain/Database/assetsets.json", R"({"assetSetList": []})");
    }

    /// Reads the databases and opens a tile of two cells a side.
    void start()
    {
        auto pType = std::make_unique<AssetEntityType>(m_entities, m_instances, AssetLists{});
        m_pType = pType.get();
        m_entities.addKind(AssetEntityType::makeKind(std::move(pType)));
        m_entities.openTile({.iCellsX = 2, .iCellsY = 2, .uType = 0, .sPath = ""});
    }

    void write(const std::string& sFile, const std::string& sText)
    {
        std::filesystem::create_directories((m_folder.path() / sFile).parent_path());
        std::ofstream(m_folder.path() / sFile) << sText;
    }

    [[nodiscard]] static Uuid uuid(uint8_t u) { return Uuid{{u}}; }
    [[nodiscard]] static std::string text(uint8_t u) { return uuid(u).text(); }

    Entity place(uint8_t uAsset, const Transform& transform = {}, const tile::ColorMap& mapColors = {},
                 const tile::TagSet& setTags = {})
    {
        auto pPayload = std::make_shared<EntityCreateArgs::Asset>();
        pPayload->uuid = uuid(uAsset);
        pPayload->mapColors = mapColors;
        pPayload->setTags = setTags;
        EntityCreateArgs args;
        args.eTypeId = EntityTypeId_Asset;
        args.transform = transform;
        args.pPayload = std::move(pPayload);
        return m_entities.createEntity(std::move(args));
    }

    void markChanged(uint32_t uMask) override { m_uChanged |= uMask; }
    void markInterfaceDirty(uint32_t /*uMask*/) override {}

    LogCapture m_log;
    TempFolder m_folder;
    DirectoryManager m_directories{DirectoryPlaces{}};
    EditorToolState m_tools;
    uint32_t m_uChanged = 0;
    rend::InstanceWorld m_instances;
    Entities m_entities{*this, m_tools};
    AssetEntityType* m_pType = nullptr;
};

} // namespace tilebuilder
