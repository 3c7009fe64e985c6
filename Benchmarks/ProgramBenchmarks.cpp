// The whole program: time to the first frame, memory of a batch.

#include "Benchmarks/BenchTile.h"
#include "Benchmarks/Harness.h"
#include "KestrelCommon/Io/SafeFile.h"
#include "Tests/Support/ChildProcess.h"
#include "Tests/Support/TempFolder.h"

#include <chrono>
#include <cstdio>
#include <fstream>
#include <thread>
#include <unistd.h>

namespace bench
{
namespace
{

namespace fs = std::filesystem;
using Variables = std::vector<std::pair<std::string, std::string>>;

void pause(int iMilliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(iMilliseconds));
}

/// A game folder of its own with the content that the program needs, and a home.
struct Game
{
    Game()
    {
        fs::create_directories(folder.path() / "game/Data/Terrain");
        for (const char* pPart : {"Gui", "Shaders", "Textures", "Terrain/Materials", "Terrain/Database"})
            fs::copy(std::string(QM_GAME_DIR "/Data/") + pPart, folder.path() / "game/Data" / pPart,
                     fs::copy_options::recursive);
    }

    [[nodiscard]] Variables variables(const std::string& sDisplay) const
    {
        return {{"QUILLMERE_GAME_DIR", folder.text() + "/game"},
                {"XDG_DATA_HOME", folder.text() + "/data"},
                {"XDG_CACHE_HOME", folder.text() + "/cache"},
                {"WAYLAND_DISPLAY", ""},
                {"DISPLAY", sDisplay}};
    }

    TempFolder folder;
};

// The newest log of the program; they lie beside its folder.
fs::path newestLog()
{
    fs::path pathNewest;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(fs::path(QM_EDITOR).parent_path() / "../Logs", error))
        if (entry.path().filename().string().starts_with("editor-2") &&
            (pathNewest.empty() || entry.last_write_time() > fs::last_write_time(pathNewest)))
            pathNewest = entry.path();
    return pathNewest;
}

// Milliseconds that the program itself names; below 0: it never drew.
double timeToFirstFrame(const Game& game, const std::string& sDisplay)
{
    pause(1100); // logs are named by the second
    const fs::path pathBefore = newestLog();
    ChildProcess editor({QM_EDITOR}, game.variables(sDisplay), game.folder.text() + "/output.txt");
    for (int iTry = 0; iTry < 300 && editor.isRunning(); ++iTry, pause(100))
    {
        const fs::path pathLog = newestLog();
        const std::string sLog = pathLog == pathBefore ? "" : readTextFile(pathLog).value_or("");
        const size_t uPlace = sLog.find("FIRST FRAME - ");
        if (uPlace != std::string::npos)
            return std::atof(sLog.c_str() + uPlace + 14);
    }
    return -1.0;
}

int report(const char* pName, double fValue, const char* pUnit, double fLimit)
{
    const bool bGood = fValue >= 0.0 && fValue <= fLimit;
    std::printf("%-46s %10.1f %s, limit %.0f%s\n", pName, fValue, pUnit, fLimit, bGood ? "" : "  MISSED");
    return bGood ? 0 : 1;
}

int startTimes()
{
    if (!isWanted("start to first frame"))
        return 0;
    const std::string sDisplay = ":" + std::to_string(500 + ::getpid() % 100);
    ChildProcess server({"Xvfb", sDisplay, "-screen", "0", "1280x720x24", "-nolisten", "tcp"});
    for (int iTry = 0; iTry < 100 && !fs::exists("/tmp/.X11-unix/X" + sDisplay.substr(1)); ++iTry)
        pause(50);
    const Game game;
    const double fFresh = timeToFirstFrame(game, sDisplay);
    const double fCached = timeToFirstFrame(game, sDisplay);
    return report("start to first frame, no shader cache", fFresh, "ms", 3000.0) +
           report("start to first frame, with shader cache", fCached, "ms", 1500.0);
}

// The most memory of a batch over one tile, in MB; below 0: it failed.
double batchMemory(const Game& game, const std::string& sTile)
{
    const std::string sData = game.folder.text() + "/game/Data/";
    std::ofstream(sData + "list.txt") << "$GAME_DATA/" << sTile;
    const std::string sOutput = game.folder.text() + "/output.txt";
    ChildProcess editor({QM_EDITOR, "--process", "$GAME_DATA/list.txt"}, game.variables(""), sOutput);
    if (editor.wait(120.0) != 0 ||
        readTextFile(sOutput).value_or("").find("Done processing 1 tiles") == std::string::npos)
        return -1.0;
    return static_cast<double>(editor.peakMemoryKb()) / 1024.0;
}

int batch()
{
    if (!isWanted("batch memory"))
        return 0;
    const Game game;
    const auto place = [&](TileWorld& world, const std::string& sName)
    {
        if (world.tile.writeFile(sName, "$TEST_DATA", tile::WritePlain))
            fs::copy(DirectoryManager::ms_pInstance->resolvePath("$TEST_DATA/" + sName),
                     game.folder.path() / "game/Data" / sName);
    };
    {
        // Without plants: their instances are the picture's, not the document's.
        BenchTile big;
        const std::vector<uint8_t> vecBare(tile::SamplesPerPatch, tile::EmptyClutter);
        for (int iCell = 0; iCell < TileCells * TileCells; ++iCell)
            big.clutter.setSamples(iCell % TileCells, iCell / TileCells, vecBare);
        place(big, "Big.tile");
    }
    {
        TileWorld small;
        place(small, "Small.tile");
    }
    const double fSmall = batchMemory(game, "Small.tile");
    const double fBig = batchMemory(game, "Big.tile");
    return report("batch memory, 16 x 16 less an empty tile", fSmall < 0 || fBig < 0 ? -1.0 : fBig - fSmall,
                  "MB", 150.0);
}

const Registration s_startTimes(&startTimes);
const Registration s_batch(&batch);

} // namespace
} // namespace bench
