// Writes the example tiles below a game folder: TileForge GAME_FOLDER LIST_FILE. The list names
// what was written, for the editor's own batch, which adds export files and previews.

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "TileEditorCommon/Clutter/EditorTerrainClutter.h"
#include "TileEditorCommon/Contracts/DocumentHostI.h"
#include "TileEditorCommon/Document/Tile.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"
#include "Tools/TileForge/Landscape.h"
#include "Tools/TileForge/Planting.h"
#include "Tools/TileForge/SceneObjects.h"

#include <cstdio>
#include <fstream>

namespace
{

constexpr const char* s_pFolder = "$GAME_DATA/Terrain/Tiles/CreativeTiles";

/// Nobody watches a tile being forged.
struct Host : tilebuilder::DocumentHostI, tilebuilder::EditorSinkI
{
    void reinitialise(int32_t, int32_t, uint32_t, const std::string&) override {}
    bool keepsForeignNames() const override { return true; }
    void skipPendingChanges() override {}
    void markChanged(uint32_t) override {}
    void markInterfaceDirty(uint32_t) override {}
    bool hasContext() const override { return false; }
    std::string contextDirectory() override { return {}; }
    std::string findUserTile(std::string_view) const override { return {}; }
    std::string createTileItem(std::string_view) override { return {}; }
    void discardTileItem(std::string_view) override {}
};

// Hands a landscape to the surface, cell by cell.
void fill(tilebuilder::EditorTerrainSurface& surface, const forge::Landscape& land)
{
    std::vector<tile::ColorValue> vecColors;
    for (const uint32_t uWord : land.vecTint)
        vecColors.push_back(tile::unpackColor(uWord));
    std::vector<uint32_t> vecTexels0;
    std::vector<uint32_t> vecTexels1;
    for (const auto& weights : land.vecWeights)
    {
        uint32_t arrWords[2];
        static_assert(sizeof(arrWords) == sizeof(weights));
        std::memcpy(arrWords, weights.data(), sizeof(arrWords));
        vecTexels0.push_back(arrWords[0]);
        vecTexels1.push_back(arrWords[1]);
    }
    const tile::SurfaceGridView view{land.iCells, land.iCells, land.heights.vecValues,
                                     vecColors,   vecTexels0,  vecTexels1};
    std::vector<std::byte> vecSection(tile::surfaceSectionSize(0));
    for (int iY = 0; iY < land.iCells; ++iY)
        for (int iX = 0; iX < land.iCells; ++iX)
            if (tile::writeSurfaceSection(view, iX, iY, 0, vecSection))
                surface.readCell(vecSection, iX, iY);
}

} // namespace

int main(int iCount, char** ppArguments)
{
    if (iCount != 3)
    {
        std::fputs("usage: TileForge GAME_FOLDER LIST_FILE\n", stderr);
        return 1;
    }
    UTILS::ConsoleSettings settings;
    settings.uListenerMask = UTILS::LogError | UTILS::LogWarning;
    settings.fnListener = [](std::string_view sText, uint32_t)
    { std::fprintf(stderr, "%s\n", std::string(sText).c_str()); };
    UTILS::Console console(settings);
    DirectoryManager directories({});
    const std::string sGame = std::filesystem::absolute(ppArguments[1]).string();
    directories.addKey("$GAME_DATA", sGame + "/Data");
    directories.addKey("$SURVIVAL_DATA", sGame + "/Survival");
    std::filesystem::create_directories(directories.resolvePath(s_pFolder));

    Host host;
    tilebuilder::EditorTerrainSurface surface(host, nullptr);
    tile::ClutterDatabase database;
    database.loadGameDatabases();
    tilebuilder::EditorTerrainClutter clutter(host, surface, database);
    forge::AssetCatalogue catalogue;
    if (!catalogue.load())
        return 1;
    std::ofstream list(ppArguments[2], std::ios::binary);
    bool bGood = true;
    for (const forge::Recipe& recipe : forge::recipes())
    {
        forge::Landscape land = recipe.fnMake();
        forge::Scene scene(land, recipe.uSceneSeed);
        if (recipe.fnFurnish)
            recipe.fnFurnish(scene);
        forge::SceneObjects objects;
        bGood &= objects.take(scene, catalogue);
        const auto uMetres = static_cast<uint32_t>(land.iCells * tile::CellSize);
        surface.init(uMetres, uMetres);
        clutter.init(uMetres, uMetres);
        fill(surface, land);
        std::vector<uint8_t> vecSamples;
        for (int iCell = 0; iCell < land.iCells * land.iCells; ++iCell)
        {
            forge::plantCell(land, database, iCell % land.iCells, iCell / land.iCells, vecSamples);
            clutter.setSamples(iCell % land.iCells, iCell / land.iCells, vecSamples);
        }
        tilebuilder::Tile document({host, surface, clutter});
        document.addProvider(objects);
        document.create(*Uuid::parse(recipe.pUuid), 0, land.iCells, land.iCells, tile::TypeGround);
        const std::string sName = land.sName + ".tile";
        bGood &= document.writeFile(sName, s_pFolder, tile::WritePlain);
        list << (list.tellp() > 0 ? "\n" : "") << s_pFolder << "/" << sName;
    }
    return bGood ? 0 : 1;
}
