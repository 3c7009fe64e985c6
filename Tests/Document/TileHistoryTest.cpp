#include "Tests/Document/TileWorld.h"
#include "Tests/Support/LogCapture.h"

#include <gtest/gtest.h>

namespace
{

using namespace tilebuilder;

struct TileHistoryTest : testing::Test
{
    void change(float fX) { world.surface.raise(world.dab(fX, 40.0f, 9.0f, 0.7f), 1.0f); }
    std::vector<float> heights() const
    {
        return {world.surface.heights().begin(), world.surface.heights().end()};
    }

    LogCapture log;
    TileWorld world{2, 2};
};

TEST_F(TileHistoryTest, stepsAreTakenWhenSomethingChangedAndUndone)
{
    world.tile.pushState(true);
    world.tile.markSaved();
    const auto flat = heights();
    EXPECT_FALSE(world.tile.pushState(false));
    change(30);
    change(30);
    world.surface.paintMaterial(3, false, world.dab(20, 20, 8, 1));
    const auto hill = heights();
    EXPECT_TRUE(world.tile.pushState(false));
    EXPECT_TRUE(world.tile.isUnsaved());
    world.tile.undo();
    EXPECT_EQ(heights(), flat);
    EXPECT_EQ(world.surface.texels0()[20 * 129 + 20], 0u);
    EXPECT_FALSE(world.tile.isUnsaved());
    EXPECT_FALSE(world.tile.pushState(false)); // reading made no change
    world.tile.undo();                         // at the end: nothing
    world.tile.redo();
    EXPECT_EQ(heights(), hill);
    EXPECT_NE(world.surface.texels0()[20 * 129 + 20], 0u);
    world.tile.redo();
    EXPECT_EQ(world.tile.stateIndex(), 1u);
    EXPECT_EQ(world.host.iSkips, 2);
    EXPECT_EQ(world.host.iReinitialised, 0);

    // A change that is undone by hand is no step; another one drops the redo branch.
    world.tile.undo();
    change(90);
    EXPECT_TRUE(world.tile.pushState(false));
    EXPECT_EQ(world.tile.states().size(), 2u);
    world.tile.undo();
    world.tile.redo();
    world.tile.clearCache();
    EXPECT_FALSE(world.tile.pushState(false)) << "what a full rewrite gives is the state";
}

TEST_F(TileHistoryTest, undoRestoresWhatIsNotYetAStep)
{
    world.paintEverything();
    world.tile.pushState(true);
    const auto before = heights();
    change(60); // over the edge of two cells
    world.tile.pushState(false);
    change(60);
    world.tile.undo();
    EXPECT_EQ(heights(), before);
    EXPECT_FALSE(world.tile.pushState(false));
}

TEST_F(TileHistoryTest, aSaveNeverMakesTheNextPushAStep)
{
    world.paintEverything();
    world.tile.pushState(true);
    ASSERT_EQ(world.tile.save("hill", "$TEST_DATA", 0, false), SaveResult::Saved);
    EXPECT_FALSE(world.tile.pushState(false));
    EXPECT_EQ(world.tile.states().size(), 1u);
}

TEST_F(TileHistoryTest, theLimitCostsOldDocumentsFirstAndThenOldSteps)
{
    world.tile.pushState(true);
    for (int i = 1; i < 4; ++i)
    {
        change(20.0f + 10.0f * static_cast<float>(i));
        world.tile.pushState(false);
    }
    const uint64_t uHash = world.tile.states()[3].hash;
    world.host.uCachedMemory = Tile::s_uStateMemoryLimit;
    world.host.uEvictStep = Tile::s_uStateMemoryLimit / 2;
    change(80);
    EXPECT_TRUE(world.tile.pushState(false));
    EXPECT_EQ(world.host.uCachedMemory, Tile::s_uStateMemoryLimit / 2);
    EXPECT_EQ(world.tile.states().size(), 5u);

    // Nothing left to evict: steps go from the front until the rest fits.
    world.host.uEvictStep = 0;
    world.host.uCachedMemory = Tile::s_uStateMemoryLimit - world.tile.stateMemory();
    change(85);
    EXPECT_TRUE(world.tile.pushState(false));
    EXPECT_LT(world.tile.states().size(), 6u);
    EXPECT_EQ(world.tile.stateIndex(), world.tile.states().size() - 1);
    EXPECT_EQ(world.tile.states()[world.tile.stateIndex() - 2].hash, uHash);

    // An image above the limit is all that stays.
    world.host.uCachedMemory = Tile::s_uStateMemoryLimit;
    change(25);
    EXPECT_TRUE(world.tile.pushState(false));
    EXPECT_EQ(world.tile.states().size(), 1u);
    EXPECT_EQ(world.tile.stateIndex(), 0u);
}

} // namespace
