#include "KestrelCommon/Services/DirectoryManager.h"

#include "Tests/Support/LogCapture.h"
#include "Tests/Support/TempFolder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace
{

constexpr const char* s_pItem = "0123abcd-4567-49ef-8123-456789abcdef";

struct DirectoryManagerTest : testing::Test
{
    DirectoryManagerTest() : m_directories(places(m_folder)) { m_directories.initialise(); }

    static DirectoryPlaces places(const TempFolder& folder)
    {
        return {folder.path() / "roaming", folder.path() / "local", folder.path() / "game/Release", {}, 7};
    }

    LogCapture m_log;
    TempFolder m_folder;
    DirectoryManager m_directories;
};

TEST_F(DirectoryManagerTest, startUpRegistersKeysAndMakesTheUsersFolders)
{
    EXPECT_EQ(m_directories.gameRoot(), m_folder.text() + "/game");
    EXPECT_EQ(m_directories.resolvePath("$GAME_DATA/Gui/x.png"), m_folder.text() + "/game/Data/Gui/x.png");
    for (const char* pMade :
         {"/roaming/Ostrel Games/Quillmere/User/User_7/Save/Survival",
          "/roaming/Ostrel Games/Quillmere/User/User_7/Tiles", "/game/Cache/Shaders/Release",
          "/local/Ostrel Games/Quillmere/Temp", "/game/Data/Gui/HarvestableIcons"})
        EXPECT_TRUE(std::filesystem::is_directory(m_folder.text() + pMade)) << pMade;
    EXPECT_FALSE(std::filesystem::exists(m_folder.text() + "/game/Data/Gui/VoxelMeshIcons"));
}

TEST_F(DirectoryManagerTest, logsGoBesideTheProgramOrBelowTheUserFolder)
{
    ASSERT_EQ(m_directories.openLogs("editor"), DirectoryManager::Success);
    EXPECT_TRUE(m_directories.mainLog().starts_with(m_folder.text() + "/game/Logs/editor-2"))
        << m_directories.mainLog();
    EXPECT_NE(m_directories.issuesLog().find("/editor-Issues-"), std::string::npos);

    std::filesystem::remove_all(m_folder.path() / "game/Logs");
    std::ofstream(m_folder.path() / "game/Logs") << "in the way";
    ASSERT_EQ(m_directories.openLogs("editor"), DirectoryManager::Success);
    EXPECT_TRUE(m_directories.mainLog().starts_with(m_directories.userFolder() + "/Logs/editor-"));
}

TEST_F(DirectoryManagerTest, aKeyKeepsItsFirstFolderAndBadKeysAreRefused)
{
    EXPECT_FALSE(m_directories.addKey("$GAME_DATA", "/elsewhere"));
    EXPECT_EQ(m_directories.resolvePath("$GAME_DATA"), m_folder.text() + "/game/Data");
    EXPECT_EQ(m_log.errors(), 0u);
    for (const char* pBad : {"GAME_DATA", "$GAME", "$_DATA/x", "$CONTENT_123", ""})
        EXPECT_FALSE(m_directories.addKey(pBad, "/x")) << pBad;
    EXPECT_EQ(m_log.count("ASSERT: 'isValidKey(sKey)'"), 5u);
}

TEST_F(DirectoryManagerTest, theLongestFolderAtASlashGivesTheKey)
{
    const std::string sKey = std::string("$CONTENT_") + s_pItem;
    m_directories.addKey(sKey, m_directories.gameRoot() + "/Data/Mods/One/");
    EXPECT_EQ(m_directories.getKey(m_directories.gameRoot() + "/Data/Mods/One/a.tile"), sKey);
    EXPECT_EQ(m_directories.getKey(m_directories.gameRoot() + "/Data/Mods/OneMore/a.tile"), "$GAME_DATA");
    EXPECT_EQ(m_directories.getKey(m_directories.gameRoot() + "/DataBase"), "");
    EXPECT_EQ(m_directories.getKey("$NOWHERE_DATA/x"), "");
    EXPECT_EQ(m_directories.toGenericPath(m_directories.gameRoot() + "/Data/Mods/One/a.tile"),
              "$CONTENT_DATA/a.tile");
    EXPECT_EQ(m_directories.toGenericPath("$GAME_DATA/a.tile"), "$GAME_DATA/a.tile");
}

TEST_F(DirectoryManagerTest, realPathsBecomeKeyedOnes)
{
    EXPECT_EQ(m_directories.replacePathWithKey(m_directories.gameRoot() + "/Data/../Data\\Gui/./x.png", true),
              "$GAME_DATA/Gui/x.png");
    EXPECT_EQ(m_directories.replacePathWithKey("", true), "");
    EXPECT_EQ(m_log.warnings(), 0u);
    EXPECT_EQ(m_directories.replacePathWithKey("/nowhere/x", true), "");
    EXPECT_TRUE(m_log.has("Unable to find suitable key for path: /nowhere/x"));
}

TEST_F(DirectoryManagerTest, anUnknownKeyComesBackUnchangedWithOneError)
{
    EXPECT_EQ(m_directories.resolvePath("$NOWHERE_DATA/x"), "$NOWHERE_DATA/x");
    EXPECT_EQ(m_log.errors(), 1u);
    EXPECT_TRUE(m_log.has("Unable to replace key for path: '$NOWHERE_DATA/x'"));
}

TEST_F(DirectoryManagerTest, validPathsStayInTheirFolder)
{
    EXPECT_TRUE(m_directories.isValidKeyedPath("$GAME_DATA/none/such.tile"));
    EXPECT_TRUE(m_directories.isValidKeyedPath("$GAME_DATA/a/../b.tile"));
    std::string sReal = m_directories.gameRoot() + "/Data";
    for (const std::string& sBad : {std::string(), sReal, std::string("$GAME_DATA/../Survival/x.tile"),
                                    std::string("$GAME_DATA/a/../../../x"), std::string("$NOWHERE_DATA/x"),
                                    std::string("$GAME_DATA\\..\\x"), std::string("$GAME_DATAX/x")})
        EXPECT_FALSE(m_directories.isValidKeyedPath(sBad)) << sBad;

    std::filesystem::create_directories(m_folder.path() / "outside");
    std::filesystem::create_directory_symlink(m_folder.path() / "outside", sReal + "/out");
    EXPECT_FALSE(m_directories.isValidKeyedPath("$GAME_DATA/out/x.tile")) << "a link leads out";
}

TEST_F(DirectoryManagerTest, genericKeysStandForAnItem)
{
    const Uuid uuid = *Uuid::parse(s_pItem);
    const std::string sKey = std::string("$CONTENT_") + s_pItem;
    EXPECT_EQ(DirectoryManager::replaceGenericKey("$CONTENT_DATA/a", sKey), sKey + "/a");
    EXPECT_EQ(DirectoryManager::replaceGenericKey("$CONTENT_DATABASE/a", sKey), "$CONTENT_DATABASE/a");
    EXPECT_EQ(DirectoryManager::expandGenericKey("$MOD_DATA/a", uuid), sKey + "/a");
    EXPECT_EQ(DirectoryManager::expandGenericKey("$MOD_DATA/a", {}), "$MOD_DATA/a");
    EXPECT_EQ(DirectoryManager::upgradeTileKey(std::string("$TILE_") + s_pItem), sKey);
    EXPECT_EQ(DirectoryManager::uuidFromPath(sKey + "/a", true), uuid);
    EXPECT_EQ(m_log.errors(), 0u);
    EXPECT_TRUE(DirectoryManager::uuidFromPath("$CONTENT_DATA/a", true).isNil());
    EXPECT_TRUE(m_log.has("Trying to get uuid from unresolved $CONTENT_DATA"));

    m_directories.addKey(sKey, m_folder.text() + "/item");
    m_directories.setContentKeyLookup([&](const Uuid& asked)
                                      { return asked == uuid ? sKey : std::string(); });
    std::string sPath = "$CONTENT_DATA/a";
    EXPECT_FALSE(m_directories.isValidKeyedPathFor(sPath, Uuid::random()));
    EXPECT_TRUE(m_directories.isValidKeyedPathFor(sPath, uuid));
    EXPECT_EQ(sPath, sKey + "/a");
}

} // namespace
