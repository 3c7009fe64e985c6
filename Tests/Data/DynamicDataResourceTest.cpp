// Open files: history, saving, the work of a frame.

#include "Tests/Data/DataWorld.h"

#include "KestrelCommon/Io/SafeFile.h"

namespace
{

struct DynamicDataResourceTest : testing::Test, DataWorld
{
    DynamicDataResourceTest()
    {
        start({{"lamp.json",
                R"({"template_meta": {"pattern": "*.lamp"}, "range": 1, "range_meta": {"type": "float"}})"}});
        sPath = file("a.lamp", R"({"range": 0.1, "mine": [1, 2.50]})");
        pResource = pManager->load(sPath);
    }
    void setRange(float fRange)
    {
        pResource->tree().object()->find("range")->set(fRange);
        pResource->edited();
    }
    float range() const { return pResource->tree().object()->find("range")->asFloat(); }

    std::string sPath;
    std::shared_ptr<DynamicDataResource> pResource;
};

TEST_F(DynamicDataResourceTest, filesThatCanNotBeOpenedAreTold)
{
    const std::pair<std::string, const char*> arrCases[] = {
        {"lamps/a.lamp", "Failed to load data resrouce, path is not valid 'lamps/a.lamp'"},
        {"$NONE/a.lamp", "Failed to load data resrouce, path is not valid '$NONE/a.lamp'"},
        {"$GAME_DATA/../a.lamp", "Failed to load data resrouce, path is not valid '$GAME_DATA/../a.lamp'"},
        {file("list.lamp", "[1]"),
         "Failed to load data resrouce, json root needs to be object '$GAME_DATA/list.lamp'"},
        {file("bad.lamp", "{"), "Failed to parse file '$GAME_DATA/bad.lamp'"},
        {"$GAME_DATA/none.lamp", "Failed to parse '$GAME_DATA/none.lamp'. File not found!"},
    };
    for (const auto& [sBad, pMessage] : arrCases)
    {
        EXPECT_FALSE(pManager->load(sBad));
        EXPECT_TRUE(log.has(pMessage)) << log.dump();
    }
    EXPECT_EQ(pManager->load(sPath), pResource) << "an open file is given again";
    EXPECT_EQ(pManager->load(file("b.txt", "{}"))->getTemplate(), nullptr);
}

TEST_F(DynamicDataResourceTest, savesOnlyWhatChangedAndReplacesFilesSafely)
{
    const std::string sBefore = fileText("a.lamp");
    EXPECT_TRUE(pManager->save(*pResource));
    EXPECT_EQ(fileText("a.lamp"), sBefore) << "unchanged";
    setRange(0.3f);
    EXPECT_TRUE(pResource->isUnsaved());
    EXPECT_TRUE(pManager->save(*pResource));
    EXPECT_FALSE(pResource->isUnsaved());
    EXPECT_EQ(fileText("a.lamp"), "{\n   \"mine\": [1, 2.5],\n   \"range\": 0.3\n}\n");

    EXPECT_FALSE(pManager->saveAs(*pResource, "nowhere/b.lamp"));
    EXPECT_TRUE(log.has("Failed to save data resource at non valid path: 'nowhere/b.lamp'"));
    EXPECT_FALSE(pManager->saveAs(*pResource, "$GAME_DATA/no/such/folder/b.lamp"));
    EXPECT_EQ(pResource->path(), sPath);
    EXPECT_TRUE(pManager->saveAs(*pResource, "$GAME_DATA/b.lamp"));
    EXPECT_EQ(fileText("b.lamp"), fileText("a.lamp"));
    EXPECT_EQ(pManager->load("$GAME_DATA/b.lamp"), pResource);
    EXPECT_NE(pManager->load(sPath), pResource);

    auto pNew = pManager->create(*pManager->getTemplate("lamp"));
    EXPECT_FALSE(pManager->save(*pNew)) << "no path yet";
    EXPECT_TRUE(pManager->saveAs(*pNew, "$GAME_DATA/new.lamp"));
    EXPECT_EQ(fileText("new.lamp"), "{\n   \"range\": 1.0\n}\n");
}

TEST_F(DynamicDataResourceTest, aSaveThatStopsHalfwayLeavesTheOldFile)
{
    const std::string sBefore = fileText("a.lamp");
    setRange(9.0f);
    SafeFile::setStepHook(
        [](SaveStep eStep)
        {
            if (eStep == SaveStep::Flushed)
                throw 1;
        });
    EXPECT_THROW(static_cast<void>(pManager->save(*pResource)), int);
    SafeFile::setStepHook({});
    EXPECT_EQ(fileText("a.lamp"), sBefore);
    EXPECT_TRUE(pResource->isUnsaved());
}

TEST_F(DynamicDataResourceTest, theHistoryHoldsAHundredSteps)
{
    for (int i = 1; i <= 150; ++i)
    {
        setRange(static_cast<float>(i));
        pResource->snapshot(false);
        pResource->snapshot(false); // without a change it is none
    }
    EXPECT_EQ(pResource->undoCount(), 99u);
    for (int i = 0; i < 120; ++i)
        pResource->undo();
    EXPECT_EQ(range(), 51.0f);
    EXPECT_EQ(pResource->redoCount(), 99u);
    pResource->snapshot(false);
    EXPECT_EQ(pResource->redoCount(), 99u) << "a snapshot without a change keeps the redo steps";
    for (int i = 0; i < 120; ++i)
        pResource->redo();
    EXPECT_EQ(range(), 150.0f);
    const size_t uBytes = pResource->historyBytes();
    pResource->snapshot(false);
    EXPECT_EQ(pResource->historyBytes(), uBytes);

    setRange(200.0f);
    pResource->undo(); // keeps the edit first
    EXPECT_EQ(range(), 150.0f);
    pResource->redo();
    EXPECT_EQ(range(), 200.0f);
    pResource->undo();
    setRange(300.0f);
    pResource->redo();
    EXPECT_EQ(range(), 300.0f) << "an edit ends the redo steps";
    EXPECT_EQ(pResource->redoCount(), 0u);
    setRange(300.5f);
    setRange(300.0f);
    pResource->snapshot(false);
    EXPECT_EQ(pResource->redoCount(), 0u);
    pResource->snapshot(true);
    EXPECT_EQ(pResource->undoCount(), 0u);
}

TEST_F(DynamicDataResourceTest, editsBecomeAStepAfterQuietAndTellAtMostEveryFrame)
{
    int iCalls = 0;
    const size_t uNumber = pResource->addCallback([&iCalls](DynamicDataResource&) { ++iCalls; });
    uNow += 100;
    setRange(2.0f);
    pManager->update();
    EXPECT_EQ(iCalls, 1) << "the last notification is long ago";
    uNow += 10;
    setRange(3.0f);
    pManager->update();
    EXPECT_EQ(iCalls, 1) << "16 ms must pass";
    uNow += 17;
    pManager->update();
    EXPECT_EQ(iCalls, 2);
    uNow += 233; // 250 since the edit
    pManager->update();
    EXPECT_EQ(pResource->undoCount(), 0u);
    uNow += 1;
    pManager->update();
    EXPECT_EQ(pResource->undoCount(), 1u);
    EXPECT_EQ(iCalls, 3);
    pResource->undo();
    EXPECT_EQ(range(), 0.1f);
    pResource->removeCallback(uNumber);
    pResource->redo();
    EXPECT_EQ(iCalls, 4);
}

TEST_F(DynamicDataResourceTest, aTemplateReadAgainReachesOpenFiles)
{
    int iTold = 0;
    DynamicTemplate& lamp = *pManager->getTemplate("lamp");
    lamp.addListener([&iTold](const DynamicTemplate&) { ++iTold; });
    const uint64_t uHash = lamp.rootHash();
    setRange(4.0f);
    file(
        "Templates/lamp.json",
        R"({"template_meta": {"pattern": "*.lamp"}, "range": "", "range_meta": {"type": "float"}, "more": true})");
    EXPECT_TRUE(pManager->reload(lamp));
    EXPECT_EQ(iTold, 1);
    EXPECT_NE(lamp.rootHash(), uHash);
    EXPECT_EQ(range(), 4.0f);
    EXPECT_TRUE(pResource->tree().object()->find("more")->asBool());
    file("Templates/lamp.json", "{");
    EXPECT_FALSE(pManager->reload(lamp));
    EXPECT_EQ(iTold, 1);
}

TEST_F(DynamicDataResourceTest, aFileStillHeldAtTheEndIsTold)
{
    pManager.reset();
    EXPECT_TRUE(log.has("DynamicDataResource still in use, path =$GAME_DATA/a.lamp"));
    pResource->edited();
    pResource->snapshot(false);
    pResource->undo();
    EXPECT_EQ(range(), 0.1f);
}

} // namespace
