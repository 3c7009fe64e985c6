#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/Assert.h"
#include "Tests/Support/LogCapture.h"
#include "Tests/Support/TempFolder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace
{

std::string readAll(const std::filesystem::path& path)
{
    std::stringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

TEST(Console, profileLinesGoToTheFileAndNotToTheConsole)
{
    TempFolder folder;
    UTILS::ConsoleSettings settings;
    settings.sLogFile = folder.text() + "/main.log";
    settings.bConsole = true;
    testing::internal::CaptureStdout();
    {
        UTILS::Console console(settings);
        console.log("seen nowhere else", UTILS::AttributeNormal, UTILS::LogProfile);
        console.log("red line", UTILS::AttributeRed, UTILS::LogError);
        EXPECT_EQ(console.errors(), 1u);
    }
    const std::string sConsole = testing::internal::GetCapturedStdout();
    const std::string sFile = readAll(settings.sLogFile);
    EXPECT_EQ(sConsole.find("seen nowhere else"), std::string::npos);
    EXPECT_NE(sFile.find(")  [Profile] seen nowhere else\n"), std::string::npos) << sFile;
    EXPECT_NE(sConsole.find(")  ERROR: red line\n"), std::string::npos) << sConsole;
    EXPECT_TRUE(sFile.ends_with("Shutting down...\n")) << sFile;
}

TEST(Console, channelsStandInTheirOrderWithAudioBehindPrint)
{
    const std::string sPrefix =
        UTILS::Console::prefix(UTILS::LogAudio | UTILS::LogLua | UTILS::LogPrint | UTILS::LogWarning);
    EXPECT_TRUE(sPrefix.ends_with(" [Lua]  [Print]  [Audio] WARNING: ")) << sPrefix;
}

TEST(Console, logOnceTellsOnlyTheFirstTime)
{
    LogCapture log;
    EXPECT_TRUE(UTILS::g_pConsole->logOnce("again", UTILS::AttributeNormal, UTILS::LogDefault));
    EXPECT_FALSE(UTILS::g_pConsole->logOnce("again", UTILS::AttributeNormal, UTILS::LogDefault));
    EXPECT_TRUE(UTILS::g_pConsole->logOnce("", UTILS::AttributeNormal, UTILS::LogDefault));
    EXPECT_EQ(log.count("again"), 1u);
}

TEST(Console, failedAssertionsCarryTheirTextAndTheProgramGoesOn)
{
    LogCapture log;
    const int iValue = 3;
    EXPECT_FALSE(QM_ASSERT(iValue == 4));
    EXPECT_TRUE(QM_ASSERT(iValue == 3));
    ASSERT_EQ(log.errors(), 1u);
    EXPECT_TRUE(log.lines()[0].sText.starts_with("ASSERT: 'iValue == 4' : ConsoleTest.cpp:")) << log.dump();
}

} // namespace
