// What a tile costs in memory when it is loaded and saved, without a device.

#include "Benchmarks/BenchTile.h"
#include "Benchmarks/Harness.h"

#include <cstdio>
#include <fstream>
#include <spawn.h>
#include <sys/wait.h>

extern char** environ;

namespace bench
{

int loadAndSave(const std::string& sFolder)
{
    TileWorld world;
    world.directories->addKey("$BENCH_DATA", sFolder);
    const bool bGood = world.tile.load("$BENCH_DATA/tile.tile") &&
                       world.tile.save("tile", "$BENCH_DATA", 0, false) == tilebuilder::SaveResult::Saved;
    // The usage that a parent is told counts the parent's own memory before the exec.
    std::ifstream status("/proc/self/status");
    std::ofstream result(sFolder + "/peak.txt");
    for (std::string sLine; std::getline(status, sLine);)
        if (sLine.starts_with("VmHWM:"))
            result << sLine.substr(6);
    return bGood ? 0 : 1;
}

namespace
{

constexpr double s_fMaxMegabytes = 150.0;

/// Peak megabytes of this program as it loads and saves the tile of a folder; negative on failure.
double peakOf(const std::string& sFolder)
{
    std::string sProgram = "/proc/self/exe";
    std::string sMode = "--load-and-save";
    std::string sArgument = sFolder;
    char* arrArguments[] = {sProgram.data(), sMode.data(), sArgument.data(), nullptr};
    pid_t process = 0;
    if (posix_spawn(&process, sProgram.c_str(), nullptr, nullptr, arrArguments, environ) != 0)
        return -1.0;
    int iStatus = 0;
    if (waitpid(process, &iStatus, 0) < 0 || iStatus != 0)
        return -1.0;
    double fKilobytes = -1.0;
    std::ifstream(sFolder + "/peak.txt") >> fKilobytes;
    return fKilobytes / 1024.0;
}

int memory()
{
    constexpr const char* pName = "peak memory of load and save, 16 x 16 less 1 x 1";
    if (!isWanted(pName))
        return 0;
    const auto save = [](TileWorld& world)
    {
        static_cast<void>(world.tile.save("tile", "$TEST_DATA", 0, false));
        return peakOf(world.folder.text() + "/test");
    };
    double fSmall = 0.0;
    double fLarge = 0.0;
    {
        TileWorld world;
        fSmall = save(world);
    }
    {
        BenchTile world;
        fLarge = save(world);
    }
    const bool bGood = fSmall > 0.0 && fLarge > 0.0 && fLarge - fSmall <= s_fMaxMegabytes;
    std::printf("%-52s %.1f MB - %.1f MB = %.1f MB  limit %.0f MB  %s\n", pName, fLarge, fSmall,
                fLarge - fSmall, s_fMaxMegabytes, bGood ? "ok" : "MISSED");
    return !bGood;
}

const Registration s_memory(&memory);

} // namespace

} // namespace bench
