// The small decisions of the editor object: when a brush paints, when a change is a step, what a list names.

#include "TileEditorCommon/Editor/BatchList.h"
#include "TileEditorCommon/Editor/PendingChange.h"
#include "TileEditorCommon/Editor/StrokeClock.h"

#include <gtest/gtest.h>

namespace tilebuilder
{
namespace
{

TEST(StrokeClock, paintsAtOnceAndThenTwentyTimesASecondAtAnyFrameRate)
{
    for (const float fFrame : {0.004f, 0.016f, 0.033f})
    {
        StrokeClock clock;
        int iDabs = 0;
        for (float fTime = 0.0f; fTime < 1.0f; fTime += fFrame)
        {
            clock.add(fFrame);
            iDabs += clock.take().has_value();
        }
        EXPECT_NEAR(iDabs, 21, 1) << fFrame;
    }
}

TEST(StrokeClock, aLateFrameGivesOneStrongDab)
{
    StrokeClock clock;
    ASSERT_TRUE(clock.take());
    EXPECT_FALSE(clock.take());
    clock.add(0.21f);
    const auto fStep = clock.take();
    ASSERT_TRUE(fStep);
    EXPECT_FLOAT_EQ(*fStep, 0.2f);
    EXPECT_FALSE(clock.take()) << "one dab, not four";
    EXPECT_FLOAT_EQ(StrokeClock::dabStrength(100, 0.05f), 0.5f);
    EXPECT_FLOAT_EQ(StrokeClock::dabStrength(100, 0.2f), 1.0f) << "clamped";
}

TEST(PendingChange, becomesAStepOnceItIsQuietAndTheButtonIsUp)
{
    PendingChange pending;
    pending.mark(1, 1000);
    EXPECT_FALSE(pending.isDue(1150, false));
    EXPECT_FALSE(pending.isDue(5000, true));
    EXPECT_TRUE(pending.isDue(1151, false));
    pending.mark(1, 1151);
    EXPECT_FALSE(pending.isDue(1301, false)) << "each change starts the wait anew";

    pending.mark(1, 0xFFFFFFF0);
    EXPECT_TRUE(pending.isDue(0x90, false)) << "the clock went past its end";
}

TEST(PendingChange, readingADocumentIsNoStep)
{
    PendingChange pending;
    pending.skipFrames();
    for (int iFrame = 0; iFrame < 2; ++iFrame)
    {
        pending.mark(1, 0);
        pending.beginFrame();
        EXPECT_FALSE(pending.isPending());
    }
    pending.mark(1, 0);
    pending.beginFrame();
    EXPECT_TRUE(pending.isPending());
}

TEST(BatchList, givesALineEachAndComesToItsEnd)
{
    EXPECT_TRUE(readBatchList("").empty());
    const auto vecLines =
        readBatchList("$GAME_DATA/a.tile\r\n\n" + std::string(260, 'x') + "\n" + std::string(259, 'y'));
    ASSERT_EQ(vecLines.size(), 4u);
    EXPECT_EQ(vecLines[0].sText, "$GAME_DATA/a.tile");
    EXPECT_EQ(vecLines[1].sText, "");
    EXPECT_TRUE(vecLines[2].bTooLong);
    EXPECT_FALSE(vecLines[3].bTooLong);
    EXPECT_EQ(readBatchList("a\n").size(), 2u) << "one empty read behind the last line end";
}

} // namespace
} // namespace tilebuilder
