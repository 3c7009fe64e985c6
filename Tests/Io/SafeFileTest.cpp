#include "KestrelCommon/Io/SafeFile.h"

#include "Tests/Support/TempFolder.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace
{

struct SafeFileTest : testing::Test
{
    ~SafeFileTest() override { SafeFile::setStepHook(nullptr); }
    size_t files() const
    {
        size_t uCount = 0;
        for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder.path()))
            ++uCount;
        return uCount;
    }

    TempFolder folder;
    std::filesystem::path path = folder.path() / "file.txt";
};

TEST_F(SafeFileTest, replacesAFileAndKeepsItsPermissionsAndLinks)
{
    ASSERT_TRUE(writeFileSafely(path, "old"));
    ::chmod(path.c_str(), 0640);
    std::filesystem::create_symlink(path, folder.path() / "link");
    ASSERT_TRUE(writeFileSafely(folder.path() / "link", "\xEF\xBB\xBFnew"));
    EXPECT_EQ(readTextFile(path), "new");
    EXPECT_EQ(readFile(path)->size(), 6u);
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path() / "link"));
    struct stat status = {};
    ::stat(path.c_str(), &status);
    EXPECT_EQ(status.st_mode & 0777, 0640u);
    EXPECT_EQ(files(), 2u);
}

TEST_F(SafeFileTest, tellsItsStepsAndLeavesNothingWithoutACommit)
{
    ASSERT_TRUE(writeFileSafely(path, "old"));
    std::vector<SaveStep> vecSteps;
    SafeFile::setStepHook([&](SaveStep eStep) { vecSteps.push_back(eStep); });
    {
        SafeFile file(path);
        const std::string sText = "new";
        ASSERT_TRUE(file.write(std::as_bytes(std::span(sText))));
        EXPECT_EQ(files(), 2u);
    }
    EXPECT_EQ(vecSteps, (std::vector{SaveStep::Opened, SaveStep::Written, SaveStep::Flushed}));
    EXPECT_EQ(readTextFile(path), "old");
    EXPECT_EQ(files(), 1u);
}

TEST_F(SafeFileTest, aFullDiskLeavesTheOldFile)
{
    ASSERT_TRUE(writeFileSafely(path, "old"));
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    signal(SIGXFSZ, SIG_IGN);
    const rlimit small{100, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const bool bWritten = writeFileSafely(path, std::string(5000, 'x'));
    setrlimit(RLIMIT_FSIZE, &old);
    EXPECT_FALSE(bWritten);
    EXPECT_EQ(readTextFile(path), "old");
    EXPECT_EQ(files(), 1u);
    EXPECT_FALSE(writeFileSafely(folder.path() / "missing" / "x", "new"));
    EXPECT_FALSE(readFile(folder.path()));
    EXPECT_FALSE(readFile(folder.path() / "missing"));
}

} // namespace
