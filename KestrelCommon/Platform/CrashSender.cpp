#include "KestrelCommon/Platform/CrashSender.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>
#include <execinfo.h>
#include <fcntl.h>
#include <fstream>
#include <mutex>
#include <sys/stat.h>
#include <sys/sysinfo.h>
#include <unistd.h>
#include <vector>

namespace BugSplatUtil
{

namespace
{

// Signals that a crash raises.
constexpr int s_arrSignals[] = {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL};
constexpr size_t s_uAlternateStack = 64 * 1024;

struct Sender
{
    std::string sDatabase;
    std::string sApplication;
    std::string sVersion;
    std::string sTempFolder;
    std::vector<std::string> vecFiles;
    std::string sCurrentFile;
    std::string sLastJson;
    std::vector<std::byte> vecLastData;
    std::string sLastLua;
    std::vector<char> vecStack = std::vector<char>(s_uAlternateStack);
};

Sender* g_pSender = nullptr;
std::mutex s_lock;
std::terminate_handler s_fnPreviousTerminate = nullptr;
std::string s_sException;

bool underDebugger()
{
    std::ifstream status("/proc/self/status");
    for (std::string sLine; std::getline(status, sLine);)
        if (sLine.starts_with("TracerPid:"))
            return std::atoi(sLine.c_str() + std::strlen("TracerPid:")) != 0;
    return false;
}

// Plain system calls: the heap may be what broke.
int openIn(const char* pFolder, const char* pName)
{
    char arrPath[1024];
    std::snprintf(arrPath, sizeof(arrPath), "%s/%s", pFolder, pName);
    return ::open(arrPath, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
}

void put(int iFile, const char* pData, size_t uSize)
{
    while (uSize > 0)
    {
        const ssize_t iWritten = ::write(iFile, pData, uSize);
        if (iWritten <= 0)
            return;
        pData += iWritten;
        uSize -= static_cast<size_t>(iWritten);
    }
}

void put(int iFile, const char* pText)
{
    put(iFile, pText, std::strlen(pText));
}

void putLine(int iFile, const char* pLabel, const std::string& sText)
{
    if (sText.empty())
        return;
    put(iFile, pLabel);
    put(iFile, sText.data(), sText.size());
    put(iFile, "\n");
}

void writeWhole(const char* pFolder, const char* pName, const void* pData, size_t uSize)
{
    const int iFile = openIn(pFolder, pName);
    if (iFile < 0)
        return;
    put(iFile, static_cast<const char*>(pData), uSize);
    ::close(iFile);
}

void copyInto(const char* pFolder, const char* pSource)
{
    const char* pName = UTILS::baseName(pSource);
    const int iSource = ::open(pSource, O_RDONLY | O_CLOEXEC);
    if (iSource < 0)
        return;
    const int iTarget = openIn(pFolder, pName);
    char arrBytes[4096];
    ssize_t iCount = 0;
    while (iTarget >= 0 && (iCount = ::read(iSource, arrBytes, sizeof(arrBytes))) > 0)
        put(iTarget, arrBytes, static_cast<size_t>(iCount));
    ::close(iSource);
    if (iTarget >= 0)
        ::close(iTarget);
}

void writeReport(const Sender& sender, int iSignal)
{
    char arrReason[256];
    std::snprintf(arrReason, sizeof(arrReason), "%s %s (%s): signal %d, %s\n", sender.sApplication.c_str(),
                  sender.sVersion.c_str(), sender.sDatabase.c_str(), iSignal, strsignal(iSignal));
    put(STDERR_FILENO, arrReason);
    if (sender.sTempFolder.empty())
        return;

    char arrFolder[1024];
    std::snprintf(arrFolder, sizeof(arrFolder), "%s/Crash-%lld-%d", sender.sTempFolder.c_str(),
                  static_cast<long long>(std::time(nullptr)), static_cast<int>(::getpid()));
    if (::mkdir(arrFolder, 0755) != 0 && errno != EEXIST)
        return;
    if (const int iFile = openIn(arrFolder, "reason.txt"); iFile >= 0)
    {
        put(iFile, arrReason);
        putLine(iFile, "Uncaught exception: ", s_sException);
        putLine(iFile, "Open file: ", sender.sCurrentFile);
        putLine(iFile, "Latest lua deserialize: ", sender.sLastLua);
        struct sysinfo memory = {};
        if (::sysinfo(&memory) == 0)
        {
            char arrMemory[64];
            std::snprintf(arrMemory, sizeof(arrMemory), "Available RAM: %llu mb\n",
                          static_cast<unsigned long long>(memory.freeram) * memory.mem_unit >> 20);
            put(iFile, arrMemory);
        }
        ::close(iFile);
    }
    if (const int iFile = openIn(arrFolder, "stack.txt"); iFile >= 0)
    {
        void* arrFrames[64];
        ::backtrace_symbols_fd(arrFrames, ::backtrace(arrFrames, 64), iFile);
        ::close(iFile);
    }
    for (const std::string& sFile : sender.vecFiles)
        copyInto(arrFolder, sFile.c_str());
    if (!sender.sLastJson.empty())
        writeWhole(arrFolder, "last_json.json", sender.sLastJson.data(), sender.sLastJson.size());
    if (!sender.vecLastData.empty())
        writeWhole(arrFolder, "last_data.bin", sender.vecLastData.data(), sender.vecLastData.size());
    put(STDERR_FILENO, "A crash report lies in ");
    put(STDERR_FILENO, arrFolder);
    put(STDERR_FILENO, "\n");
}

void onSignal(int iSignal)
{
    // A crash in here must not come back.
    for (const int iOther : s_arrSignals)
        std::signal(iOther, SIG_DFL);
    if (g_pSender)
        writeReport(*g_pSender, iSignal);
    std::raise(iSignal);
}

void onTerminate()
{
    if (const std::exception_ptr pException = std::current_exception())
    {
        try
        {
            std::rethrow_exception(pException);
        }
        catch (const std::exception& exception)
        {
            s_sException = exception.what();
        }
        catch (...)
        {
            s_sException = "of an unknown kind";
        }
        QM_LOG_ERROR("Bugsplat! ", s_sException);
    }
    std::abort();
}

} // namespace

void init(const std::string& sDatabase, const std::string& sApplication, const std::string& sVersion)
{
    if (underDebugger() || !QM_ASSERT(g_pSender == nullptr))
        return;
    auto* pSender = new Sender;
    pSender->sDatabase = sDatabase;
    pSender->sApplication = sApplication;
    pSender->sVersion = sVersion;
    g_pSender = pSender;
    void* arrWarm[1];
    ::backtrace(arrWarm, 1); // the first call loads a library, which a handler must not do

    stack_t stack = {};
    stack.ss_sp = pSender->vecStack.data();
    stack.ss_size = pSender->vecStack.size();
    ::sigaltstack(&stack, nullptr);
    struct sigaction action = {};
    action.sa_handler = &onSignal;
    action.sa_flags = SA_ONSTACK;
    for (const int iSignal : s_arrSignals)
        ::sigaction(iSignal, &action, nullptr);
    s_fnPreviousTerminate = std::set_terminate(&onTerminate);
}

void shutdown()
{
    if (!g_pSender)
        return;
    for (const int iSignal : s_arrSignals)
        std::signal(iSignal, SIG_DFL);
    std::set_terminate(s_fnPreviousTerminate);
    stack_t stack = {};
    stack.ss_flags = SS_DISABLE;
    ::sigaltstack(&stack, nullptr);
    delete g_pSender;
    g_pSender = nullptr;
}

void setTempFolder(const std::string& sFolder)
{
    const std::scoped_lock lock(s_lock);
    if (g_pSender)
        g_pSender->sTempFolder = sFolder;
}

void addFile(const std::string& sPath)
{
    const std::scoped_lock lock(s_lock);
    if (g_pSender)
        g_pSender->vecFiles.push_back(sPath);
}

void setCurrentFile(const std::string& sPath)
{
    const std::scoped_lock lock(s_lock);
    if (g_pSender)
        g_pSender->sCurrentFile = sPath;
}

void setLastJson(const std::string& sText)
{
    const std::scoped_lock lock(s_lock);
    if (g_pSender)
        g_pSender->sLastJson = sText;
}

void setLastData(const void* pData, size_t uSize)
{
    const std::scoped_lock lock(s_lock);
    if (!g_pSender)
        return;
    g_pSender->vecLastData.clear();
    if (!pData || uSize == 0)
        return;
    const auto* pBytes = static_cast<const std::byte*>(pData);
    g_pSender->vecLastData.assign(pBytes, pBytes + uSize);
}

void setLastLuaDeserialize(const std::string& sName)
{
    const std::scoped_lock lock(s_lock);
    if (g_pSender)
        g_pSender->sLastLua = sName;
}

} // namespace BugSplatUtil
