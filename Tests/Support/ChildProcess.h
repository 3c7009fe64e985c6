#pragma once // A program that a test starts, feeds and waits for.

#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

/// Killed at the end if it still runs.
class ChildProcess
{
public:
    /// Variables are added to the test's own environment; an empty value takes one away. Output
    /// goes to the file, if one is given.
    ChildProcess(const std::vector<std::string>& vecCommand,
                 const std::vector<std::pair<std::string, std::string>>& vecVariables = {},
                 const std::string& sOutputFile = {});
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// The exit status; -1 when it was killed by a signal or still runs after that long.
    int wait(double fSeconds);
    [[nodiscard]] bool isRunning();
    /// The most memory that it held, in kB; 0 until it ended.
    [[nodiscard]] long peakMemoryKb() const { return m_iPeakMemoryKb; }

private:
    pid_t m_iPid = -1;
    int m_iStatus = 0;
    long m_iPeakMemoryKb = 0;
    bool m_bEnded = false;
};

/// Runs a command to its end; the exit status, -1 after a minute.
int runCommand(const std::vector<std::string>& vecCommand,
               const std::vector<std::pair<std::string, std::string>>& vecVariables = {},
               const std::string& sOutputFile = {});
