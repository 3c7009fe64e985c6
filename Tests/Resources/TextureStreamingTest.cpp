#include "KestrelCommon/Resources/TextureStreaming.h"
#include "KestrelCommon/Core/Assert.h"
#include "Tests/Support/LogCapture.h"

#include <gtest/gtest.h>

using namespace resource;

namespace
{

constexpr uint64_t s_uMb = 1u << 20;

/// Writes down what is asked of it: "+3" a load, "~3" one at low quality, "-3" an unload.
struct TextureStreamingTest : testing::Test, TextureStreamLoaderI
{
    void startLoad(size_t uTexture, StreamQuality eQuality) override
    {
        m_sAsked += (eQuality == StreamQuality::Low ? "~" : "+") + std::to_string(uTexture);
        if (m_bAtOnce)
            m_streaming.finished(uTexture);
    }
    void unload(size_t uTexture) override { m_sAsked += "-" + std::to_string(uTexture); }

    /// What a frame asks for; a single load may be in flight unless told otherwise.
    std::string frame(uint64_t uStamp, uint32_t uThreads = 2, bool bForce = false)
    {
        m_sAsked.clear();
        m_streaming.update(*this, uStamp, uThreads, bForce);
        return m_sAsked;
    }

    size_t add(const char* pPath, uint64_t uFullMb, uint64_t uLowMb, uint64_t uStamp)
    {
        const size_t uTexture = m_streaming.addStreaming(pPath, {uFullMb * s_uMb, uLowMb * s_uMb});
        m_streaming.use(uTexture, uStamp);
        return uTexture;
    }

    LogCapture m_log;
    TextureStreaming m_streaming;
    std::string m_sAsked;
    bool m_bAtOnce = true;
};

} // namespace

TEST_F(TextureStreamingTest, theNewestComesFirstAndOnlyWithinTenFrames)
{
    add("a", 1, 0, 90);
    add("b", 1, 0, 91);
    add("c", 1, 0, 99);
    EXPECT_EQ(frame(100), "+2+1") << "a stamp at the threshold of 90 isn't above it";
    EXPECT_EQ(frame(100), "");
    m_streaming.use(0, 95);
    m_streaming.use(0, 80); // an older use takes nothing back
    EXPECT_EQ(frame(100), "+0");
    EXPECT_EQ(m_streaming.usedBytes(), 3 * s_uMb);
}

TEST_F(TextureStreamingTest, loadsInFlightLeaveAThreadAndForcedOnesAreThirtyTwo)
{
    m_bAtOnce = false;
    for (uint64_t u = 0; u < 40; ++u)
        add("a", 1, 0, 200 - u / 20);
    EXPECT_EQ(frame(200, 4), "+0+1+2");
    EXPECT_EQ(frame(200, 4), "");
    m_streaming.finished(1);
    m_streaming.finished(1);
    EXPECT_EQ(m_streaming.inFlight(), 2u);
    EXPECT_EQ(frame(200, 4), "+3");
    EXPECT_EQ(frame(200, 0), "") << "one is allowed on any machine, but three are in flight";
    frame(200, 4, true);
    EXPECT_EQ(m_streaming.inFlight(), 32u);
    for (size_t u = 0; u < 40; ++u)
        m_streaming.finished(u);
    EXPECT_EQ(frame(200, 1), "+33");
}

TEST_F(TextureStreamingTest, roomIsMadeFromTheOldestAndOfThoseTheLargest)
{
    m_streaming.setBudgets({.uStreaming = 10 * s_uMb});
    add("old", 2, 0, 50);
    add("large", 3, 0, 50);
    add("later", 4, 0, 51);
    EXPECT_EQ(frame(55), "+2+0+1");
    add("wanted", 4, 0, 80);
    EXPECT_EQ(frame(79), "") << "49 is the last stamp that may go";
    EXPECT_EQ(frame(80), "-1+3") << "9 MiB less 3 leave room for 4";
}

TEST_F(TextureStreamingTest, unloadingGoesOnUntilItFitsAndFallsBackToLowQuality)
{
    m_streaming.setBudgets({.uStreaming = 10 * s_uMb});
    add("old", 4, 0, 50);
    add("older", 4, 0, 49);
    EXPECT_EQ(frame(55), "+0+1");
    add("huge", 12, 3, 100);
    add("next", 20, 8, 99);
    EXPECT_EQ(frame(100), "-1-0~2") << "then nothing is left to go, and 8 more don't fit";
    EXPECT_EQ(m_streaming.usedBytes(), 3 * s_uMb);
    EXPECT_TRUE(m_log.has("Stream UNLOADED: older - 4mb"));
    EXPECT_TRUE(m_log.has("Stream LOADED at low quality: huge - 3mb"));
    EXPECT_EQ(m_log.lines().size(), 3u) << m_log.dump();

    // The next time it is the low size that comes free.
    m_streaming.use(3, 140);
    EXPECT_EQ(frame(140), "-2~3");
    EXPECT_TRUE(m_log.has("Stream UNLOADED: huge - 3mb"));
    EXPECT_EQ(m_streaming.usedBytes(), 8 * s_uMb);
}

TEST_F(TextureStreamingTest, whatIsInFlightCountsAndStays)
{
    m_bAtOnce = false;
    m_streaming.setBudgets({.uAll = 10 * s_uMb, .uStreaming = 8 * s_uMb});
    add("a", 6, 0, 50);
    EXPECT_EQ(frame(50, 8), "+0");
    add("b", 6, 0, 100);
    EXPECT_EQ(frame(100, 8), "") << "it is old, but hasn't arrived";
    m_streaming.finished(0);
    EXPECT_EQ(frame(100, 8), "-0+1");
}

TEST_F(TextureStreamingTest, texturesThatDontStreamComeAtOnceAsTheyFit)
{
    m_streaming.setBudgets({.uAll = 10 * s_uMb, .uStreaming = 4 * s_uMb});
    EXPECT_EQ(m_streaming.qualityAtOnce("a", {8 * s_uMb, 2 * s_uMb}), StreamQuality::Full)
        << "the budget of those that stream isn't theirs";
    m_streaming.addLoaded("a", {8 * s_uMb, 2 * s_uMb}, StreamQuality::Full);
    EXPECT_EQ(m_streaming.qualityAtOnce("b", {4 * s_uMb, 2 * s_uMb}), StreamQuality::Low);
    EXPECT_FALSE(m_streaming.qualityAtOnce("c", {12 * s_uMb, 3 * s_uMb}));
    EXPECT_FALSE(m_streaming.qualityAtOnce("d", {3 * s_uMb, 0}));
    EXPECT_TRUE(m_log.has("Loaded NON streaming texture as low quality: 'b' we are short on memory"));
    EXPECT_TRUE(m_log.has("Failed to load NON streaming texture: 'c' out of gpu memory"));
    EXPECT_TRUE(m_log.has("Failed to load NON streamimg texture: 'd' out of gpu memory"));
    EXPECT_EQ(m_log.lines().size(), 3u);

    add("s", 3, 2, 500);
    EXPECT_EQ(frame(500), "~1") << "and they never make room";
}

TEST_F(TextureStreamingTest, thresholdsThatMeetAreAsserted)
{
    static int s_iAsserts;
    s_iAsserts = 0;
    UTILS::setAssertCallback([](const char*, const char*, int) { ++s_iAsserts; });
    add("a", 1, 0, 1);
    EXPECT_EQ(frame(0), "+0") << "both thresholds are 0";
    frame(TextureStreaming::s_uFirstStamp);
    EXPECT_EQ(s_iAsserts, 0);
    frame(10);
    EXPECT_EQ(s_iAsserts, 1);
    UTILS::setAssertCallback(nullptr);
}
