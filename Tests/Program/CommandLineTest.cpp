#include "TileEditor/CommandLine.h"

#include <gtest/gtest.h>

namespace
{

std::optional<CommandLine> parse(std::vector<const char*> vecArguments)
{
    vecArguments.insert(vecArguments.begin(), "TileEditor");
    return CommandLine::parse(static_cast<int>(vecArguments.size()), vecArguments.data());
}

TEST(CommandLine, theListLosesQuotesAndBackslashes)
{
    const auto line = parse({"--process", "\"$GAME_DATA\\my lists\\all.txt\"", "--ugc", "\"x\""});
    ASSERT_TRUE(line);
    EXPECT_EQ(line->process, "$GAME_DATA/my lists/all.txt");
    EXPECT_EQ(line->ugc, "\"x\"");
    EXPECT_FALSE(parse({})->process);
}

TEST(CommandLine, anythingUnknownEndsTheProgramWithItsReason)
{
    for (const std::vector<const char*>& vecBad :
         {std::vector<const char*>{"--proces", "x"}, std::vector<const char*>{"--process"}})
    {
        testing::internal::CaptureStdout();
        EXPECT_FALSE(parse(vecBad));
        const std::string sOut = testing::internal::GetCapturedStdout();
        EXPECT_TRUE(sOut.starts_with("Error parsing options ") && sOut.ends_with("\n")) << sOut;
    }
}

} // namespace
