#include "KestrelCommon/Ugc/UgcManager.h"

#include "KestrelCommon/Core/UserMessageI.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "KestrelCommon/Ugc/UgcCustomGameMod.h"
#include "KestrelCommon/Ugc/UgcTile.h"
#include "Tests/Support/LogCapture.h"
#include "Tests/Support/TempFolder.h"

#include <fstream>
#include <gtest/gtest.h>

namespace
{

constexpr const char* s_pId = "0123abcd-4567-49ef-8123-456789abcdef";

struct Messages : UserMessageI
{
    void showMessage(std::string_view sId, std::string_view sText) override
    {
        sAll += std::string(sId) + "|" + std::string(sText) + "\n";
    }
    std::string sAll;
};

struct UgcManagerTest : testing::Test
{
    UgcManagerTest()
        : m_directories({m_folder.path() / "roaming",
                         m_folder.path() / "local",
                         m_folder.path() / "game/Release",
                         {},
                         7})
    {
        m_directories.initialise();
        m_pManager = std::make_unique<UgcManager>(&m_messages);
    }

    // An item folder below the tiles with that description; a tile and a picture beside it.
    std::string describe(const std::string& sFolder, const std::string& sJson)
    {
        const std::string sDirectory = m_directories.tilesFolder() + "/" + sFolder;
        std::filesystem::create_directories(sDirectory);
        std::ofstream(sDirectory + "/description.json") << sJson;
        std::ofstream(sDirectory + "/hill.tile") << "TILE";
        std::ofstream(sDirectory + "/hill.png") << "png";
        return sDirectory;
    }

    static std::string tile(const std::string& sMembers)
    {
        return std::string("{\"type\":\"Tile\",\"localId\":\"") + s_pId + "\"" + sMembers + "}";
    }

    LogCapture m_log;
    TempFolder m_folder;
    DirectoryManager m_directories;
    Messages m_messages;
    std::unique_ptr<UgcManager> m_pManager;
};

TEST_F(UgcManagerTest, scanFindsTilesAndPassesOverWhatIsBroken)
{
    const std::string sGood = describe("good", "\xEF\xBB\xBF" + tile(",\"name\":\"Hill\",\"version\":\"1\""));
    describe("none", "{");
    describe("alien", "{\"type\":\"Spoon\"}");
    describe("array", "[]");
    describe("newer", tile(",\"name\":\"Later\",\"version\":2"));
    std::filesystem::create_directories(m_directories.tilesFolder() + "/empty");
    m_pManager->addFolder(m_directories.tilesFolder());

    ASSERT_EQ(m_pManager->getTiles().size(), 1u) << m_log.dump();
    const auto pTile = std::static_pointer_cast<UgcTile>(m_pManager->getTiles()[0]);
    EXPECT_EQ(pTile->tilePath(), std::string("$CONTENT_") + s_pId + "/hill.tile");
    EXPECT_EQ(pTile->getIconPath(), std::string("$CONTENT_") + s_pId + "/hill.png");
    EXPECT_EQ(pTile->getVersion(), 0) << "a version of text type counts as 0";
    EXPECT_TRUE(m_log.has("Unknown UGC type: Spoon"));
    EXPECT_TRUE(m_log.has("Invalid json data "));
    EXPECT_TRUE(m_log.has("Failed to parse UGC description file: "));
    EXPECT_EQ(m_messages.sAll,
              "ERROR_MESSAGE|Tile: Later\nThe content is created for a later version of the game\n");
    EXPECT_EQ(m_pManager->findByPath(sGood + "/hill.tile"), pTile);
    EXPECT_EQ(m_pManager->findByPath(sGood + "er/hill.tile"), nullptr) << "compared at slashes";
}

TEST_F(UgcManagerTest, aBadLocalIdIsReplacedInTheFile)
{
    const std::string sDirectory =
        describe("odd", R"({"type":"Tile","localId":"0123abcd-4567-19ef-8123-456789abcdef"})");
    const auto pItem = m_pManager->loadItem(sDirectory);
    ASSERT_TRUE(pItem);
    const Uuid localId = pItem->getLocalId();
    EXPECT_EQ(localId.text()[14], '4');
    UgcTile again(sDirectory);
    EXPECT_TRUE(again.readDescription(sDirectory + "/description.json"));
    EXPECT_EQ(again.getLocalId(), localId);
}

TEST_F(UgcManagerTest, aNewTileItemHasAFolderAndAKeyOfItsOwn)
{
    const auto pItem = m_pManager->createTileItem();
    ASSERT_TRUE(pItem);
    pItem->setString("name", "Hill");
    EXPECT_TRUE(m_log.has("Created new tile"));
    EXPECT_EQ(pItem->directory(), m_directories.tilesFolder() + "/" + pItem->getLocalId().text());
    EXPECT_EQ(m_directories.resolvePath(pItem->directoryKey() + "/description.json"),
              pItem->directory() + "/description.json");
    EXPECT_TRUE(std::filesystem::exists(pItem->directory() + "/description.json"));
    EXPECT_EQ(m_pManager->getItem(pItem->getLocalId()), pItem);
    EXPECT_EQ(m_pManager->getItem(Uuid{}), nullptr);
}

TEST_F(UgcManagerTest, removalTellsTheOthersAndDeletesOnlyTheUsersOwnFolder)
{
    const auto pOwn = m_pManager->loadItem(describe("own", tile("")));
    const std::string sForeign = m_folder.text() + "/elsewhere/item";
    std::filesystem::create_directories(sForeign);
    std::filesystem::copy(pOwn->directory(), sForeign);
    const auto pForeign = m_pManager->loadItem(sForeign);
    ASSERT_TRUE(pForeign);

    size_t uTold = 0;
    m_pManager->addRemovedCallback(UgcKind::Tile,
                                   [&](const UgcManager::Items& vecItems) { uTold += vecItems.size(); });
    m_pManager->removeItem(pOwn);
    m_pManager->removeItem(pForeign);
    EXPECT_TRUE(std::filesystem::exists(pOwn->directory())) << "only one frame later";
    m_pManager->updateRemoved();
    EXPECT_EQ(uTold, 2u);
    EXPECT_FALSE(std::filesystem::exists(pOwn->directory()));
    EXPECT_TRUE(std::filesystem::exists(sForeign + "/hill.tile"));
    m_pManager->updateRemoved();
    EXPECT_EQ(uTold, 2u);
}

TEST_F(UgcManagerTest, aCustomGameFindsItsContentAndTellsWhatIsMissing)
{
    const std::string sMod = m_directories.userSubFolder("/Mods") + "/game";
    std::filesystem::create_directories(sMod + "/Terrain/Tiles");
    std::filesystem::create_directories(sMod + "/Particles");
    std::ofstream(sMod + "/description.json")
        << "{\"type\":\"Custom Game\",\"name\":\"Mine\",\"localId\":\"" << s_pId << "\"}";
    std::ofstream(sMod + "/Terrain/Tiles/b.tile") << "TILE";
    std::ofstream(sMod + "/Terrain/Tiles/a.tile") << "TILE";
    std::ofstream(sMod + "/config.json") << R"({"baseGameContent":"Survival",
        "gameScript":{"file":"$CONTENT_DATA/game.lua","class":"Game"},
        "playerScript":{"file":"$CONTENT_DATA/../../../secret","class":"Player"}})";
    std::ofstream(sMod + "/game.lua") << "";
    std::ofstream(m_directories.userFolder() + "/../secret") << "";

    const auto pGame = std::dynamic_pointer_cast<UgcCustomGameMod>(m_pManager->loadItem(sMod));
    ASSERT_TRUE(pGame) << m_log.dump();
    const std::string sKey = std::string("$CONTENT_") + s_pId;
    EXPECT_EQ(pGame->baseGameContent(), BaseGameContent::Survival);
    EXPECT_EQ(pGame->paths().sTiles, sKey + "/Terrain/Tiles");
    EXPECT_EQ(pGame->getTileFiles(),
              (std::vector<std::string>{sKey + "/Terrain/Tiles/a.tile", sKey + "/Terrain/Tiles/b.tile"}));
    EXPECT_EQ(pGame->paths().sAssetSets, "");
    EXPECT_EQ(pGame->paths().sPrefabs, sKey + "/Prefabs") << "kept without a test";
    EXPECT_EQ(pGame->paths().sParticles, "") << "a folder without a list";
    EXPECT_TRUE(pGame->validate());
    EXPECT_FALSE(pGame->prepare());
    EXPECT_EQ(pGame->gameScript().sFile, sKey + "/game.lua");
    EXPECT_EQ(m_messages.sAll, "ERROR_MESSAGE|File not found: '$CONTENT_DATA/../../../secret'\n");
}

TEST_F(UgcManagerTest, dependenciesLearnNumbersAndLoseDoubles)
{
    const auto pItem = m_pManager->loadItem(describe("own", tile(",\"fileId\":42")));
    ASSERT_TRUE(pItem);
    const Uuid own = *Uuid::parse(s_pId);
    const Uuid other = Uuid::random();
    std::vector<ContentId> vecIds = {{0, own}, {42, other}, {0, other}, {7, other}};
    EXPECT_TRUE(m_pManager->refreshDependencies(vecIds));
    EXPECT_EQ(vecIds, (std::vector<ContentId>{{42, own}, {0, other}, {7, other}}));
    EXPECT_FALSE(m_pManager->refreshDependencies(vecIds));
}

TEST_F(UgcManagerTest, aCallbackIsKnownByItsType)
{
    int iCalls = 0;
    const auto count = [&](const UgcManager::Items&) { ++iCalls; };
    m_pManager->addAddedCallback(UgcKind::Tile, count);
    m_pManager->addAddedCallback(UgcKind::Tile, count);
    m_pManager->addAddedCallback(UgcKind::None, count);
    m_pManager->loadItem(describe("own", tile("")));
    m_pManager->updateAdded();
    EXPECT_EQ(iCalls, 2) << "once for the kind, once for all kinds";
    m_pManager->removeAddedCallback(UgcKind::Tile, count);
    m_pManager->createTileItem();
    m_pManager->updateAdded();
    EXPECT_EQ(iCalls, 3);
}

TEST_F(UgcManagerTest, dependenciesLeaveOutTheItemItself)
{
    const auto pItem = m_pManager->loadItem(describe("own", tile("")));
    const Uuid other = Uuid::random();
    pItem->setDependencies({{0, *Uuid::parse(s_pId)}, {5, other}}, nullptr);
    UgcTile again(pItem->directory());
    ASSERT_TRUE(again.readDescription(pItem->directory() + "/description.json"));
    EXPECT_EQ(again.getDependencies(), (std::vector<ContentId>{{5, other}}));
}

} // namespace
