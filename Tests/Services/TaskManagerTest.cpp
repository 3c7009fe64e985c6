#include "KestrelCommon/Services/TaskManager.h"

#include "Tests/Support/LogCapture.h"

#include <gtest/gtest.h>
#include <oneapi/tbb/parallel_for.h>
#include <semaphore>
#include <thread>

namespace
{

TEST(TaskManager, poolsRunAndEnd)
{
    LogCapture log;
    TaskManager tasks;
    tasks.stop(); // before start: nothing
    ASSERT_EQ(tasks.start(), 0);
    EXPECT_GE(tasks.standardConcurrency(), 2u);
    EXPECT_TRUE(log.has("Starting task manager with " + std::to_string(tasks.threadCount()) + " threads"));

    std::atomic<int> iSum{0};
    tbb::parallel_for(0, 1000, [&](int i) { iSum += i; });
    EXPECT_EQ(iSum, 499500);

    std::binary_semaphore done(0);
    tasks.enqueueBackground([&] { tasks.enqueueLowPriority([&] { done.release(); }); });
    EXPECT_TRUE(done.try_acquire_for(std::chrono::seconds(20)));
    tasks.stop();
    EXPECT_EQ(log.errors(), 0u);
}

TEST(TaskManager, aSecondOneIsReported)
{
    LogCapture log;
    TaskManager tasks;
    {
        TaskManager second;
        EXPECT_TRUE(log.has("ASSERT: 'g_kestrelTaskManager == nullptr'"));
    }
}

} // namespace
