#include "Tests/Support/ChildProcess.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

ChildProcess::ChildProcess(const std::vector<std::string>& vecCommand,
                           const std::vector<std::pair<std::string, std::string>>& vecVariables,
                           const std::string& sOutputFile)
{
    m_iPid = ::fork();
    if (m_iPid != 0)
        return;
    for (const auto& [sName, sValue] : vecVariables)
        sValue.empty() ? ::unsetenv(sName.c_str()) : ::setenv(sName.c_str(), sValue.c_str(), 1);
    if (!sOutputFile.empty())
    {
        const int iFile = ::open(sOutputFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        ::dup2(iFile, STDOUT_FILENO);
        ::dup2(iFile, STDERR_FILENO);
    }
    std::vector<char*> vecArguments;
    for (const std::string& sArgument : vecCommand)
        vecArguments.push_back(const_cast<char*>(sArgument.c_str()));
    vecArguments.push_back(nullptr);
    ::execvp(vecArguments[0], vecArguments.data());
    ::_exit(127);
}

ChildProcess::~ChildProcess()
{
    if (!isRunning())
        return;
    ::kill(m_iPid, SIGKILL);
    ::waitpid(m_iPid, nullptr, 0);
}

bool ChildProcess::isRunning()
{
    rusage usage = {};
    if (!m_bEnded && m_iPid > 0 && ::wait4(m_iPid, &m_iStatus, WNOHANG, &usage) == m_iPid)
    {
        m_bEnded = true;
        m_iPeakMemoryKb = usage.ru_maxrss;
    }
    return !m_bEnded;
}

int ChildProcess::wait(double fSeconds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(fSeconds);
    while (isRunning() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return m_bEnded && WIFEXITED(m_iStatus) ? WEXITSTATUS(m_iStatus) : -1;
}

int runCommand(const std::vector<std::string>& vecCommand,
               const std::vector<std::pair<std::string, std::string>>& vecVariables,
               const std::string& sOutputFile)
{
    return ChildProcess(vecCommand, vecVariables, sOutputFile).wait(60.0);
}
