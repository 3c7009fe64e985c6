// Each room includes only itself and the rooms that its link list names, and a library stays
// in the rooms that it belongs to.

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace
{

namespace fs = std::filesystem;

using Rooms = std::map<std::string, std::set<std::string>>;

// "room: other other" a line, written by the build.
Rooms readRooms()
{
    Rooms mapRooms;
    std::ifstream file(QM_BINARY_DIR "/rooms.txt");
    for (std::string sLine; std::getline(file, sLine);)
    {
        const size_t uColon = sLine.find(':');
        if (uColon == std::string::npos)
            continue;
        std::istringstream words(sLine.substr(uColon + 1));
        std::set<std::string>& setMay = mapRooms[sLine.substr(0, uColon)];
        for (std::string sRoom; words >> sRoom;)
            setMay.insert(sRoom);
    }
    // What a room's own rooms may include comes with them: their headers do.
    for (bool bGrown = true; bGrown;)
    {
        bGrown = false;
        for (auto& [sRoom, setMay] : mapRooms)
            for (const std::string& sOther : std::set<std::string>(setMay))
                for (const std::string& sFurther : mapRooms[sOther])
                    bGrown |= setMay.insert(sFurther).second;
    }
    return mapRooms;
}

struct Include
{
    std::string sFile;
    std::string sTarget; ///< with its quotes or brackets
};

std::vector<Include> includesOf(const std::string& sRoom)
{
    std::vector<Include> vecIncludes;
    for (const auto& entry : fs::directory_iterator(QM_SOURCE_DIR "/" + sRoom))
    {
        const std::string sEnding = entry.path().extension().string();
        if (sEnding != ".h" && sEnding != ".cpp")
            continue;
        std::ifstream file(entry.path());
        for (std::string sLine; std::getline(file, sLine);)
            if (sLine.starts_with("#include "))
                vecIncludes.push_back({entry.path().filename().string(), sLine.substr(9)});
    }
    return vecIncludes;
}

TEST(House, roomsIncludeOnlyDownwards)
{
    const Rooms mapRooms = readRooms();
    ASSERT_GT(mapRooms.size(), 5u);
    for (const auto& [sRoom, setMay] : mapRooms)
    {
        EXPECT_FALSE(setMay.contains(sRoom)) << sRoom << " includes itself through another room";
        for (const Include& include : includesOf(sRoom))
        {
            if (!include.sTarget.starts_with('"'))
                continue;
            const std::string sPath = include.sTarget.substr(1, include.sTarget.find('"', 1) - 1);
            const std::string sTarget = sPath.substr(0, std::min(sPath.rfind('/'), sPath.size()));
            EXPECT_TRUE(sTarget == sRoom || setMay.contains(sTarget))
                << sRoom << "/" << include.sFile << " includes " << sPath;
        }
    }
}

TEST(House, librariesStayInTheirRooms)
{
    // The start of a system header, and the starts of the rooms that may include it.
    const std::map<std::string, std::vector<std::string>> mapFences = {
        {"<MYGUI/", {"MyGuiCommon", "TileEditorCommon/Interface", "TileEditor"}},
        {"<MyGUI", {"MyGuiCommon", "TileEditorCommon/Interface", "TileEditor"}},
        {"<epoxy/", {"KestrelCommon/Device"}},
        {"<EGL/", {"KestrelCommon/Device"}},
        {"<SDL", {"KestrelCommon/Platform"}},
        {"<bt", {"TileEditorCommon/Ground"}},
        {"<Bullet", {"TileEditorCommon/Ground"}},
        {"<lz4", {"KestrelCommon/Io"}},
        {"<lua", {"KestrelCommon/Data"}},
        {"<FreeImage", {"KestrelCommon/Resources"}},
        {"<assimp/", {"KestrelCommon/Resources"}},
        {"<cxxopts", {"TileEditor"}},
    };
    for (const auto& [sRoom, setMay] : readRooms())
        for (const Include& include : includesOf(sRoom))
            for (const auto& [sStart, vecRooms] : mapFences)
                if (include.sTarget.starts_with(sStart))
                {
                    EXPECT_TRUE(std::find(vecRooms.begin(), vecRooms.end(), sRoom) != vecRooms.end())
                        << sRoom << "/" << include.sFile << " includes " << include.sTarget;
                }
}

} // namespace
