#include "KestrelCommon/Io/SafeFile.h"
#include "Tests/Document/TileWorld.h"
#include "Tests/Support/LogCapture.h"

#include <fstream>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>

namespace
{

using namespace tilebuilder;

struct TileSaveTest : testing::Test
{
    ~TileSaveTest() override { SafeFile::setStepHook(nullptr); }

    std::filesystem::path file(const std::string& sName) const
    {
        return world.folder.path() / "test" / sName;
    }
    std::vector<std::byte> content(const std::string& sName) const
    {
        return readFile(file(sName)).value_or(std::vector<std::byte>{});
    }
    size_t filesIn(const std::string& sFolder) const
    {
        size_t uCount = 0;
        for ([[maybe_unused]] const auto& entry :
             std::filesystem::directory_iterator(world.folder.path() / sFolder))
            ++uCount;
        return uCount;
    }
    void put(const std::string& sPath) { std::ofstream(world.folder.path() / sPath) << "another tile"; }

    LogCapture log;
    TileWorld world;
};

TEST_F(TileSaveTest, bothFilesStandAndTheStateIsSaved)
{
    world.tile.pushState(true);
    const Uuid uuidBefore = world.tile.uuid();
    world.paintEverything(); // not yet a step: the save makes it one
    ASSERT_EQ(world.tile.save("Hill.TILE", "$TEST_DATA", 99, false), SaveResult::Saved) << log.dump();
    EXPECT_EQ(world.tile.name(), "Hill.tile");
    EXPECT_EQ(world.tile.directory(), "$TEST_DATA");
    EXPECT_NE(world.tile.uuid(), uuidBefore);
    EXPECT_EQ(world.tile.creatorId(), 0u); // neither a context nor a new item
    EXPECT_FALSE(world.tile.isUnsaved());
    EXPECT_EQ(world.tile.states().size(), 1u);
    EXPECT_TRUE(world.tile.states()[0].saved);
    EXPECT_EQ(world.host.iSearches, 0);
    EXPECT_EQ(content("Hill.tile"), content("Hill.tile.export"));
    EXPECT_EQ(Tile::readUuid("$TEST_DATA/Hill.tile"), world.tile.uuid());
    EXPECT_TRUE(log.has("Success writing tile $TEST_DATA/Hill.tile size: "));

    // A plain save keeps identity and history.
    const Uuid uuid = world.tile.uuid();
    world.surface.raise(world.dab(30, 30, 9, 1), 1.0f);
    ASSERT_EQ(world.tile.save("Hill", "$TEST_DATA", 99, false), SaveResult::Saved);
    EXPECT_EQ(world.tile.uuid(), uuid);
    EXPECT_EQ(world.tile.states().size(), 2u);
    EXPECT_FALSE(world.tile.isUnsaved());

    TileWorld other;
    ASSERT_TRUE(other.tile.load("$TEST_DATA/Hill.tile")) << log.dump();
    EXPECT_EQ(other.tile.name(), "Hill.tile");
    EXPECT_TRUE(std::ranges::equal(other.surface.heights(), world.surface.heights()));
    EXPECT_EQ(log.errors(), 0u) << log.dump();
}

TEST_F(TileSaveTest, aTileOfObjectsHasNoExport)
{
    TileWorld objects(1, 1, tile::TypeObjects);
    ASSERT_EQ(objects.tile.save("grid", "$TEST_DATA", 0, false), SaveResult::Saved);
    EXPECT_EQ(filesIn("test"), 1u);
}

TEST_F(TileSaveTest, anotherTilesFileIsReplacedOnlyWhenAsked)
{
    put("test/taken.tile");
    EXPECT_EQ(world.tile.save("taken", "$TEST_DATA", 0, false), SaveResult::NeedsReplaceConfirmation);
    EXPECT_EQ(filesIn("test"), 1u);
    EXPECT_EQ(content("taken.tile").size(), 12u);
    EXPECT_EQ(world.tile.save("taken", "$TEST_DATA", 0, true), SaveResult::Saved);
    EXPECT_EQ(world.tile.save("taken", "$TEST_DATA", 0, false), SaveResult::Saved); // its own now

    // Found by name in the user's folder.
    put("other/hill.tile");
    world.host.sUserTile = "$OTHER_DATA";
    EXPECT_EQ(world.tile.save("hill", "", 0, false), SaveResult::NeedsReplaceConfirmation);
    EXPECT_EQ(world.host.iSearches, 1);
    EXPECT_EQ(world.tile.name(), "taken.tile");
}

TEST_F(TileSaveTest, withoutAPlaceItGetsAContentItem)
{
    world.host.sNewItem = "$TEST_DATA";
    EXPECT_EQ(world.tile.save("hill.tile", "C:/nowhere", 42, false), SaveResult::Saved);
    EXPECT_EQ(world.host.sItemName, "hill");
    EXPECT_EQ(world.tile.creatorId(), 42u);
    world.host.sNewItem.clear();
    EXPECT_EQ(world.tile.save("other.tile", "", 42, false), SaveResult::Failed);
    EXPECT_EQ(world.tile.name(), "hill.tile");
}

TEST_F(TileSaveTest, withinAContextOnlyANewCreatorResetsTheHistory)
{
    world.host.sContext = "$TEST_DATA";
    ASSERT_EQ(world.tile.save("hill", "", 42, false), SaveResult::Saved);
    EXPECT_EQ(world.tile.creatorId(), 42u);
    world.surface.raise(world.dab(30, 30, 9, 1), 1.0f);
    ASSERT_EQ(world.tile.save("hill", "", 43, false), SaveResult::Saved);
    EXPECT_EQ(world.tile.creatorId(), 42u);
    EXPECT_EQ(world.tile.states().size(), 2u);
    EXPECT_EQ(world.host.iSearches, 0);
}

TEST_F(TileSaveTest, aFailedSaveChangesNothing)
{
    world.tile.pushState(true);
    ASSERT_EQ(world.tile.save("hill", "$TEST_DATA", 0, false), SaveResult::Saved);
    const auto before = content("hill.tile");
    const Uuid uuid = world.tile.uuid();
    world.paintEverything();

    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    signal(SIGXFSZ, SIG_IGN);
    const rlimit small{1000, old.rlim_max};
    world.host.sNewItem = "$OTHER_DATA";
    setrlimit(RLIMIT_FSIZE, &small);
    const SaveResult eSame = world.tile.save("hill", "$TEST_DATA", 7, false);
    const SaveResult eOther = world.tile.save("new", "", 7, false);
    setrlimit(RLIMIT_FSIZE, &old);

    EXPECT_EQ(eSame, SaveResult::Failed);
    EXPECT_EQ(eOther, SaveResult::Failed);
    EXPECT_TRUE(log.has("Failed writing tile $TEST_DATA/hill.tile.export"));
    EXPECT_EQ(world.host.sDiscarded, "$OTHER_DATA");
    EXPECT_EQ(content("hill.tile"), before);
    EXPECT_EQ(filesIn("test"), 2u);
    EXPECT_EQ(filesIn("other"), 0u);
    EXPECT_EQ(world.tile.uuid(), uuid);
    EXPECT_EQ(world.tile.name(), "hill.tile");
    EXPECT_EQ(world.tile.creatorId(), 0u);
    EXPECT_EQ(world.tile.states().size(), 1u);

    EXPECT_FALSE(world.tile.writeFile("x.tile", "/tmp", tile::WritePlain));
    EXPECT_TRUE(log.has("Failed to save tile at non valid path: /tmp/x.tile"));
    EXPECT_FALSE(world.tile.writeFile("x.tile", "$TEST_DATA/missing", tile::WritePlain));
    EXPECT_TRUE(log.has("Failed writing tile $TEST_DATA/missing/x.tile"));
}

/// A child that saves is killed after each of the steps in turn. What is left must be the old or
/// the new file, whole.
TEST_F(TileSaveTest, aSaveThatIsKilledLeavesOldOrNewFiles)
{
    ASSERT_EQ(world.tile.save("hill", "$TEST_DATA", 0, false), SaveResult::Saved);
    const auto oldFile = content("hill.tile");
    world.surface.raise(world.dab(30, 30, 9, 1), 1.0f);
    const TileState newer = world.tile.write(tile::WritePlain | tile::WriteFinal);
    const std::vector<std::byte> newFile(newer.bytes().begin(), newer.bytes().end());
    int iOld = 0;
    int iSteps = 0;
    for (bool bKilled = true; bKilled; ++iSteps)
    {
        std::ofstream(file("hill.tile"), std::ios::binary)
            .write(reinterpret_cast<const char*>(oldFile.data()),
                   static_cast<std::streamsize>(oldFile.size()));
        std::ofstream(file("hill.tile.export"), std::ios::binary)
            .write(reinterpret_cast<const char*>(oldFile.data()),
                   static_cast<std::streamsize>(oldFile.size()));
        const pid_t child = fork();
        if (child == 0)
        {
            int iLeft = iSteps;
            SafeFile::setStepHook(
                [&iLeft](SaveStep)
                {
                    if (iLeft-- == 0)
                        kill(getpid(), SIGKILL);
                });
            world.tile.save("hill", "$TEST_DATA", 0, false);
            _exit(0);
        }
        int iStatus = 0;
        waitpid(child, &iStatus, 0);
        bKilled = WIFSIGNALED(iStatus);
        for (const char* pName : {"hill.tile", "hill.tile.export"})
        {
            const auto left = content(pName);
            EXPECT_TRUE(left == oldFile || left == newFile) << pName << " after step " << iSteps;
            iOld += left == oldFile;
        }
        TileWorld reader;
        EXPECT_TRUE(reader.tile.load("$TEST_DATA/hill.tile")) << iSteps;
        for (const auto& entry : std::filesystem::directory_iterator(world.folder.path() / "test"))
            if (entry.path().filename().string().rfind("hill.tile", 0) == 0 &&
                entry.path().extension().string().size() == 7 && entry.path().extension() != ".export")
                std::filesystem::remove(entry.path());
    }
    EXPECT_EQ(iSteps, 9); // opened, written, flushed, renamed for two files, and a run to the end
    EXPECT_GT(iOld, 6);
}

TEST_F(TileSaveTest, filesWithoutAContentItemLoseTheirNameWhenTheHostSaysSo)
{
    ASSERT_EQ(world.tile.save("hill", "$TEST_DATA", 0, false), SaveResult::Saved);
    world.host.bKeepsNames = false;
    ASSERT_TRUE(world.tile.load("$TEST_DATA/hill.tile"));
    EXPECT_EQ(world.tile.name(), "");
    EXPECT_FALSE(world.tile.load("$TEST_DATA/missing.tile"));
}

TEST_F(TileSaveTest, readUuidRefusesWhatIsNoTileOrTooOld)
{
    put("test/text.tile");
    EXPECT_TRUE(Tile::readUuid("$TEST_DATA/text.tile").isNil());
    EXPECT_TRUE(log.has("Wrong magicnumber: $TEST_DATA/text.tile"));
    std::ofstream(file("old.tile"), std::ios::binary).write("TILE\2\0\0\0................", 24);
    EXPECT_TRUE(Tile::readUuid("$TEST_DATA/old.tile").isNil());
    EXPECT_TRUE(log.has("Old tile. Please upgrade me!"));
}

TEST_F(TileSaveTest, gameTilesAreListedByKeys)
{
    const auto game = world.folder.path() / "game";
    world.directories->addKey("$GAME_DATA", (game / "Data").generic_string());
    world.directories->addKey("$SURVIVAL_DATA", (game / "Survival").generic_string());
    for (const char* pPath :
         {"Data/Terrain/Tiles/CreativeTiles/b.tile", "Data/Terrain/Tiles/CreativeTiles/a.tile",
          "Data/Terrain/Tiles/CreativeTiles/a.tile.export", "Data/Terrain/Tiles/CreativeTiles/sub/c.tile",
          "Survival/Terrain/Tiles/x/y/z.tile"})
    {
        std::filesystem::create_directories((game / pPath).parent_path());
        std::ofstream(game / pPath) << "x";
    }
    EXPECT_EQ(Tile::listGameTiles(true, true),
              (std::vector<std::string>{"$GAME_DATA/Terrain/Tiles/CreativeTiles/a.tile",
                                        "$GAME_DATA/Terrain/Tiles/CreativeTiles/b.tile",
                                        "$SURVIVAL_DATA/Terrain/Tiles/x/y/z.tile"}));
    EXPECT_TRUE(log.has("Directory '$GAME_DATA/Terrain/Tiles/ClassicCreativeTiles' not found!"));
    EXPECT_TRUE(log.has("Directory '$SURVIVAL_DATA/DungeonTiles' not found!"));
}

} // namespace
