#pragma once // A document with its grids and a host that remembers, without an editor.

#include "KestrelCommon/Services/DirectoryManager.h"
#include "Tests/Support/TempFolder.h"
#include "TileEditorCommon/Clutter/EditorTerrainClutter.h"
#include "TileEditorCommon/Document/Tile.h"
#include "TileEditorCommon/Ground/Brush.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

#include <memory>

/// Stands in for the editor object.
struct FakeHost : tilebuilder::DocumentHostI, tilebuilder::EditorSinkI
{
    void reinitialise(int32_t iWidth, int32_t iHeight, uint32_t uType, const std::string&) override
    {
        ++iReinitialised;
        if (fnReinitialise)
            fnReinitialise(iWidth, iHeight, uType);
    }
    bool keepsForeignNames() const override { return bKeepsNames; }
    void skipPendingChanges() override { ++iSkips; }
    void markInterfaceDirty(uint32_t) override {}
    uint64_t cachedUndoMemory() const override { return uCachedMemory; }
    uint64_t evictOldestCachedTile() override
    {
        const uint64_t uFreed = std::min<uint64_t>(uCachedMemory, uEvictStep);
        uCachedMemory -= uFreed;
        return uFreed;
    }
    bool hasContext() const override { return !sContext.empty(); }
    std::string contextDirectory() override { return sContext; }
    std::string findUserTile(std::string_view) const override
    {
        ++iSearches;
        return sUserTile;
    }
    std::string createTileItem(std::string_view sName) override
    {
        sItemName = sName;
        return sNewItem;
    }
    void discardTileItem(std::string_view sDirectory) override { sDiscarded = sDirectory; }
    void markChanged(uint32_t uMask) override { uChanges |= uMask; }

    std::function<void(int32_t, int32_t, uint32_t)> fnReinitialise;
    int iReinitialised = 0;
    mutable int iSearches = 0;
    int iSkips = 0;
    bool bKeepsNames = true;
    uint64_t uCachedMemory = 0;
    uint64_t uEvictStep = 0;
    uint32_t uChanges = 0;
    std::string sContext;
    std::string sUserTile;
    std::string sNewItem;
    std::string sItemName;
    std::string sDiscarded;
};

/// Folder keys "$TEST_DATA" and "$OTHER_DATA", three clutter types, an open tile.
struct TileWorld
{
    explicit TileWorld(int iWidth = 1, int iHeight = 1, uint32_t uType = tile::TypeGround)
        : surface(host, nullptr),
          clutter(host, surface, database),
          tile(services())
    {
        if (!DirectoryManager::ms_pInstance)
        {
            directories.emplace(DirectoryPlaces{
                folder.path() / "roaming", folder.path() / "local", folder.path() / "game/Release", {}, 7});
            for (const char* pName : {"test", "other"})
                std::filesystem::create_directories(folder.path() / pName);
            directories->addKey("$TEST_DATA", folder.text() + "/test");
            directories->addKey("$OTHER_DATA", folder.text() + "/other");
        }
        database.loadText(R"({"clutterList":[
            {"uuid":"00000000-0000-4000-8000-000000000001","name":"Grass"},
            {"uuid":"00000000-0000-4000-8000-000000000002","name":"Moss"},
            {"uuid":"00000000-0000-4000-8000-000000000003","name":"Fern"}]})",
                          "clutter");
        host.fnReinitialise = [this](int32_t iNewWidth, int32_t iNewHeight, uint32_t uNewType)
        { makeGrids(iNewWidth, iNewHeight, uNewType); };
        makeGrids(iWidth, iHeight, uType);
        tile.create(*Uuid::parse("0123abcd-4567-49ef-8123-456789abcdef"), 0, iWidth, iHeight, uType);
    }

    tilebuilder::TileServices services() { return {host, surface, clutter}; }

    void makeGrids(int32_t iWidth, int32_t iHeight, uint32_t uType)
    {
        surface.release();
        clutter.release();
        if (uType != tile::TypeGround)
            return;
        surface.init(static_cast<uint32_t>(iWidth) * 64, static_cast<uint32_t>(iHeight) * 64);
        clutter.init(static_cast<uint32_t>(iWidth) * 64, static_cast<uint32_t>(iHeight) * 64);
    }

    tilebuilder::BrushDab dab(float fX, float fY, float fRadius, float fStrength) const
    {
        return {fX, fY, fRadius, fStrength, tilebuilder::brush(1)};
    }

    /// Heights, colours, weights and clutter that differ in every cell.
    void paintEverything()
    {
        for (int iY = 0; iY < tile.height(); ++iY)
            for (int iX = 0; iX < tile.width(); ++iX)
            {
                const auto fX = static_cast<float>(iX * 64);
                const auto fY = static_cast<float>(iY * 64);
                surface.raise(dab(fX + 30.0f, fY + 25.0f, 20.0f + static_cast<float>(iX), 0.9f), 1.0f);
                surface.paintColor({0.2f, 0.5f, 0.1f * static_cast<float>(iY), 1.0f},
                                   dab(fX + 40.0f, fY + 40.0f, 15.0f, 0.7f));
                surface.paintMaterial((iX + iY) % 8, false, dab(fX + 20.0f, fY + 50.0f, 12.0f, 0.8f));
                std::vector<uint8_t> vecSamples(tile::SamplesPerPatch, tile::EmptyClutter);
                for (size_t i = 0; i < vecSamples.size(); i += 7)
                    vecSamples[i] = static_cast<uint8_t>((i / 7 + static_cast<size_t>(iX)) % 3);
                clutter.setSamples(iX, iY, vecSamples);
            }
    }

    TempFolder folder;
    std::optional<DirectoryManager> directories; ///< of the first world of a test
    FakeHost host;
    tile::ClutterDatabase database;
    tilebuilder::EditorTerrainSurface surface;
    tilebuilder::EditorTerrainClutter clutter;
    tilebuilder::Tile tile;
};
