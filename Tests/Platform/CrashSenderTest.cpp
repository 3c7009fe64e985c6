#include "KestrelCommon/Platform/CrashSender.h"

#include "Tests/Support/TempFolder.h"

#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace
{

struct CrashSenderTest : testing::Test
{
    // Runs in the child process that is about to crash.
    void start()
    {
        std::ofstream(m_folder.path() / "main.log") << "the log\n";
        BugSplatUtil::init("db", "App", "1.2");
        BugSplatUtil::setTempFolder(m_folder.text());
        BugSplatUtil::addFile(m_folder.text() + "/main.log");
        BugSplatUtil::setCurrentFile("$GAME_DATA/open.tile");
        BugSplatUtil::setLastJson("{\"a\":1}");
        BugSplatUtil::setLastData("abc", 3);
    }

    std::string reportFile(const std::string& sName)
    {
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.path()))
            if (entry.is_directory())
            {
                std::stringstream text;
                text << std::ifstream(entry.path() / sName).rdbuf();
                return text.str();
            }
        return "no report folder";
    }

    TempFolder m_folder;
};

TEST_F(CrashSenderTest, anAbortLeavesAReportWithAllThatWasAttached)
{
    EXPECT_EXIT(
        {
            start();
            std::raise(SIGABRT);
        },
        testing::KilledBySignal(SIGABRT), "A crash report lies in");
    EXPECT_NE(reportFile("reason.txt").find("App 1.2 (db): signal 6"), std::string::npos)
        << reportFile("reason.txt");
    EXPECT_NE(reportFile("reason.txt").find("Open file: $GAME_DATA/open.tile"), std::string::npos);
    EXPECT_EQ(reportFile("main.log"), "the log\n");
    EXPECT_EQ(reportFile("last_json.json"), "{\"a\":1}");
    EXPECT_EQ(reportFile("last_data.bin"), "abc");
    EXPECT_FALSE(reportFile("stack.txt").empty());
}

TEST_F(CrashSenderTest, anUncaughtExceptionNamesItself)
{
    EXPECT_EXIT(
        {
            start();
            std::thread([] { throw std::runtime_error("lost device"); }).join();
        },
        testing::KilledBySignal(SIGABRT), "A crash report lies in");
    EXPECT_NE(reportFile("reason.txt").find("Uncaught exception: lost device"), std::string::npos);
}

} // namespace
