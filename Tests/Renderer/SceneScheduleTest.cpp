#include "KestrelCommon/renderer/SceneSchedule.h"

#include <gtest/gtest.h>

using namespace rend;
using Size = SceneSchedule::Size;

namespace
{

/// A window of 1000 x 500 in which the camera moves when told so.
struct SceneScheduleTest : testing::Test
{
    std::optional<Size> frame(SceneSchedule& schedule, bool bMove, double fPeriod)
    {
        m_fNow += fPeriod;
        if (bMove)
            m_state.view.view[3].x += 1.0f;
        return schedule.next(m_state, m_fNow);
    }

    /// The size after that many moving frames.
    Size move(SceneSchedule& schedule, int iFrames, double fPeriod)
    {
        std::optional<Size> size;
        for (int i = 0; i < iFrames; ++i)
            size = frame(schedule, true, fPeriod);
        EXPECT_TRUE(size);
        return size.value_or(Size{0, 0});
    }

    SceneState m_state{.iWidth = 1000, .iHeight = 500};
    double m_fNow = 10.0;
};

} // namespace

TEST_F(SceneScheduleTest, slowMotionLosesPixelsAndRestBringsThemBack)
{
    SceneSchedule schedule(true);
    EXPECT_EQ(frame(schedule, false, 0.0), (Size{1000, 500}));
    EXPECT_EQ(frame(schedule, false, 0.1), std::nullopt);
    const Size slow = move(schedule, 6, 0.06);
    EXPECT_LT(slow.iWidth, 1000);
    const Size slowest = move(schedule, 40, 0.06);
    EXPECT_LT(slowest.iWidth, slow.iWidth);
    EXPECT_GE(slowest.iWidth, 600);
    EXPECT_EQ(slowest.iWidth, 2 * slowest.iHeight);

    EXPECT_EQ(frame(schedule, false, 0.05), std::nullopt) << "a stroke pauses between its dabs";
    EXPECT_EQ(frame(schedule, true, 0.05), slowest);
    EXPECT_EQ(frame(schedule, false, 0.05), std::nullopt);
    EXPECT_EQ(frame(schedule, false, 0.3), (Size{1000, 500}));
    EXPECT_EQ(frame(schedule, false, 0.3), std::nullopt);
    EXPECT_EQ(frame(schedule, true, 5.0), slowest) << "what it learned lasts, and a pause tells nothing";

    EXPECT_EQ(move(schedule, 40, 0.03), slowest) << "quick enough, but not for more";
    EXPECT_EQ(move(schedule, 40, 0.012), (Size{1000, 500}));
    m_state.iWidth = 1200;
    EXPECT_EQ(frame(schedule, false, 0.01), (Size{1200, 500}));
}

TEST_F(SceneScheduleTest, gpuKeepsItsSizeHoweverSlow)
{
    SceneSchedule schedule(false);
    EXPECT_EQ(move(schedule, 40, 0.2), (Size{1000, 500}));
}
