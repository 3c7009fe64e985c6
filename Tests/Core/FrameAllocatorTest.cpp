#include "KestrelCommon/Core/FrameAllocator.h"
#include "Tests/Support/LogCapture.h"

#include <gtest/gtest.h>
#include <thread>

namespace
{

TEST(FrameAllocator, roundsUpAndAnEmptyRequestMovesNothing)
{
    FrameAllocator* pAllocator = FrameAllocator::ofThread();
    ASSERT_NE(pAllocator, nullptr);
    pAllocator->reset();
    std::byte* pFirst = static_cast<std::byte*>(pAllocator->allocate(17));
    EXPECT_EQ(pAllocator->allocate(0), pFirst + 32);
    EXPECT_EQ(pAllocator->allocate(16), pFirst + 32);
    EXPECT_EQ(pAllocator->used(), 48u);
}

TEST(FrameAllocator, overflowGoesToTheHeapWithAnErrorUntilTheReset)
{
    LogCapture log;
    FrameAllocator* pAllocator = FrameAllocator::ofThread();
    pAllocator->reset();
    void* pMemory = pAllocator->allocate(FrameAllocator::s_uCapacity + 1);
    std::memset(pMemory, 1, FrameAllocator::s_uCapacity + 1);
    EXPECT_EQ(
        log.count("Out of frame memory! Heap used instead. Requested 4194320 bytes. Unused: 4194304/4194304"),
        1u);
    EXPECT_EQ(pAllocator->heapBlocks(), 1u);
    FrameAllocator::resetAll();
    EXPECT_EQ(pAllocator->heapBlocks(), 0u);
}

TEST(FrameAllocator, everyThreadHasItsOwn)
{
    FrameAllocator* pOther = nullptr;
    std::thread([&] { pOther = FrameAllocator::ofThread(); }).join();
    EXPECT_NE(pOther, nullptr);
    EXPECT_NE(pOther, FrameAllocator::ofThread());
}

} // namespace
