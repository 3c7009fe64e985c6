// What holds for every kind of record, in both forms.

#include "Tests/Records/CodecTable.h"
#include "Tests/Support/LogCapture.h"

#include <gtest/gtest.h>
#include <random>

namespace
{

struct CodecTest : testing::TestWithParam<size_t>
{
    const Codec& codec = codecs()[GetParam()];
    LogCapture log;
};

TEST_P(CodecTest, everyVersionReadsAndIsWrittenAsTheCurrentOne)
{
    const uint32_t uCurrent = codec.currentVersion();
    for (uint32_t uVersion = codec.uFirstVersion; uVersion <= uCurrent; ++uVersion)
    {
        const Packed old = codec.fnSample(uVersion, uVersion);
        const auto rewritten = codec.fnRewrite(old, uVersion, SampleCount);
        ASSERT_TRUE(rewritten) << uVersion << log.dump();
        EXPECT_TRUE(*rewritten == codec.fnSample(uCurrent, uVersion)) << uVersion;
        if (codec.fnCheck)
            EXPECT_TRUE(codec.fnCheck(old, uVersion, SampleCount)) << uVersion;
    }
    EXPECT_EQ(log.errors(), 0u) << log.dump();
}

TEST_P(CodecTest, isRefusedWithOneLineWhereverItIsCut)
{
    for (uint32_t uVersion = codec.uFirstVersion; uVersion <= codec.currentVersion(); ++uVersion)
    {
        const Packed sample = codec.fnSample(uVersion, uVersion);
        const std::span<const std::byte> spanWhole = sample.vecBytes;
        for (size_t uSize = 0; uSize < spanWhole.size(); ++uSize)
        {
            log.clear();
            // A copy of its own, so that a read past the end is seen by the sanitizers.
            const Packed cut(spanWhole.first(uSize));
            ASSERT_FALSE(codec.fnRewrite(cut, uVersion, SampleCount)) << uVersion << " at " << uSize;
            ASSERT_EQ(log.lines().size(), 1u) << uVersion << " at " << uSize << log.dump();
            if (codec.fnCheck)
                ASSERT_FALSE(codec.fnCheck(cut, uVersion, SampleCount)) << uVersion << " at " << uSize;
        }
        ASSERT_FALSE(codec.fnRewrite(sample, uVersion, 0xFFFFFFFFu));
    }
}

TEST_P(CodecTest, whatSurvivesDamageIsWrittenTheSameAgain)
{
    std::mt19937 random(static_cast<uint32_t>(GetParam()));
    const uint32_t uCurrent = codec.currentVersion();
    int iRead = 0;
    for (int iRun = 0; iRun < 400; ++iRun)
    {
        const uint32_t uVersion =
            codec.uFirstVersion + static_cast<uint32_t>(random()) % (uCurrent + 1 - codec.uFirstVersion);
        Packed damaged = codec.fnSample(uVersion, uVersion);
        for (uint32_t uHits = 1 + random() % 3; uHits > 0; --uHits)
            damaged.vecBytes[random() % damaged.vecBytes.size()] = static_cast<std::byte>(random());
        const uint32_t uCount = random() % 4;
        const auto rewritten = codec.fnRewrite(damaged, uVersion, uCount);
        if (codec.fnCheck)
            ASSERT_EQ(codec.fnCheck(damaged, uVersion, uCount), rewritten.has_value());
        if (!rewritten)
            continue;
        ++iRead;
        const auto again = codec.fnRewrite(*rewritten, uCurrent, uCount);
        ASSERT_TRUE(again);
        ASSERT_TRUE(*again == *rewritten);
    }
    EXPECT_GT(iRead, 50);
}

INSTANTIATE_TEST_SUITE_P(All, CodecTest, testing::Range(size_t{0}, codecs().size()),
                         [](const auto& test) { return codecs()[test.param].sName; });

} // namespace
