// Walks over real folders on the real task pools.

#include "TileEditorCommon/Catalogue/DataLibrary.h"

#include "KestrelCommon/Services/DirectoryManager.h"
#include "KestrelCommon/Services/TaskManager.h"
#include "Tests/Support/LogCapture.h"
#include "Tests/Support/TempFolder.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <json/value.h>

namespace
{

using tilebuilder::DataLibrary;

struct DataLibraryTest : testing::Test
{
    void SetUp() override
    {
        m_tasks.start();
        m_directories.addKey("$GAME_DATA", m_folder.text() + "/Data");
        m_directories.addKey("$SURVIVAL_DATA", m_folder.text() + "/Survival");
        for (const char* pFile :
             {"Data/Prefabs/b.prefab", "Data/a.prefab", "Data/c.blueprint", "Data/Tiles/t.tile",
              "Data/Tiles/t.tile.export", "Data/Models/m.fbx", "Survival/m.dae", "Data/d.json", "Data/r.rend",
              "Data/readme.txt", "Data/folder.tile/x.bin", "Data/upper.PREFAB"})
            write(pFile, pFile);
    }
    void TearDown() override { m_tasks.stop(); }

    void write(const std::string& sFile, const std::string& sText) const
    {
        const std::filesystem::path path = m_folder.path() / sFile;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << sText;
    }

    static std::string text(const DataLibrary::Bytes& pBytes)
    {
        return {reinterpret_cast<const char*>(pBytes->data()), pBytes->size()};
    }

    static std::vector<std::string> sorted(const DataLibrary& library, const std::vector<uint64_t>& vecHashes)
    {
        std::vector<std::string> vecPaths;
        for (const uint64_t uHash : vecHashes)
            vecPaths.push_back(library.getPath(uHash));
        std::sort(vecPaths.begin(), vecPaths.end());
        return vecPaths;
    }

    LogCapture m_log;
    TempFolder m_folder;
    TaskManager m_tasks;
    DirectoryManager m_directories{DirectoryPlaces{}};
    std::vector<std::string> m_vecFolders{"$GAME_DATA", "$SURVIVAL_DATA", "$SURVIVAL_DATA/Missing"};
};

TEST_F(DataLibraryTest, filesGoWhereTheirKindBelongsOnceHoweverOftenTheyAreFound)
{
    DataLibrary library;
    EXPECT_FALSE(library.poll());
    library.loadAsync(m_vecFolders);
    library.addFile("$GAME_DATA/c.blueprint");
    EXPECT_EQ(m_log.warnings(), 0u);
    library.loadAsync(m_vecFolders); // waits for the first walk, then walks again
    EXPECT_TRUE(m_log.has("DataLibrary Load Async called twice"));
    library.shutdown();

    EXPECT_EQ(sorted(library, library.prefabs()),
              (std::vector<std::string>{"$GAME_DATA/Prefabs/b.prefab", "$GAME_DATA/a.prefab"}));
    EXPECT_EQ(sorted(library, library.blueprints()), std::vector<std::string>{"$GAME_DATA/c.blueprint"});
    EXPECT_EQ(sorted(library, library.tiles()), std::vector<std::string>{"$GAME_DATA/Tiles/t.tile"});
    EXPECT_EQ(library.paths(),
              (std::vector<std::string>{"$GAME_DATA/Models/m.fbx", "$GAME_DATA/Tiles/t.tile",
                                        "$GAME_DATA/Tiles/t.tile.export", "$SURVIVAL_DATA/m.dae"}));
    EXPECT_EQ(library.getPath(DataLibrary::hashOf("$GAME_DATA/r.rend")), "$GAME_DATA/r.rend");
    EXPECT_EQ(library.getPath(DataLibrary::hashOf("$GAME_DATA/readme.txt")), "");
    EXPECT_EQ(m_log.errors(), 0u);
}

TEST_F(DataLibraryTest, theEndOfAWalkIsToldOnce)
{
    DataLibrary library;
    library.loadAsync({});
    EXPECT_TRUE(library.poll());
    EXPECT_FALSE(library.poll());
    library.shutdown();

    library.addFile("$GAME_DATA/Models/z.fbx");
    library.addFile("$GAME_DATA/Models/b.dae");
    EXPECT_EQ(library.paths(),
              (std::vector<std::string>{"$GAME_DATA/Models/b.dae", "$GAME_DATA/Models/z.fbx"}));
}

TEST_F(DataLibraryTest, contentsAreReadOnceAndAnewAfterARemoval)
{
    write("Data/d.json", R"({"a": 5})");
    DataLibrary library;
    for (const char* pFile : {"d.json", "a.prefab", "gone.json"})
        library.addFile(std::string("$GAME_DATA/") + pFile);
    const uint64_t uJson = DataLibrary::hashOf("$GAME_DATA/d.json");
    ASSERT_TRUE(library.getParsed(uJson));
    EXPECT_EQ((*library.getParsed(uJson))["a"].asInt(), 5);
    write("Data/d.json", R"({"a": 6})");
    EXPECT_EQ((*library.getParsed(uJson))["a"].asInt(), 5);
    EXPECT_EQ(text(library.getData(uJson)), R"({"a": 5})");
    library.removeFile("$GAME_DATA/d.json");
    EXPECT_EQ((*library.getParsed(uJson))["a"].asInt(), 6);

    EXPECT_EQ(library.getData(1), nullptr);
    // A file that was missing is found once it is there; bytes that are no JSON are told.
    const uint64_t uGone = DataLibrary::hashOf("$GAME_DATA/gone.json");
    EXPECT_EQ(library.getData(uGone), nullptr);
    EXPECT_EQ(m_log.errors(), 0u);
    write("Data/gone.json", "{");
    EXPECT_EQ(text(library.getData(uGone)), "{");
    EXPECT_EQ(library.getParsed(uGone), nullptr);
    EXPECT_EQ(m_log.errors(), 1u);
}

TEST_F(DataLibraryTest, anEndWithoutShutdownIsReportedAndWaits)
{
    {
        DataLibrary library;
        library.loadAsync(m_vecFolders);
    }
    EXPECT_TRUE(m_log.has("Call Shutdown First"));
}

} // namespace
