#pragma once // The log: channels, the debug console and the main log file.

#include "KestrelCommon/Core/Text.h"

#include <cstdint>
#include <fstream>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_set>

namespace UTILS
{

/// Flags of a line: the low bits are channels, of which several may be set.
enum LogFlag : uint32_t
{
    LogDefault = 0x1,
    LogProfile = 0x2,
    LogResource = 0x4,
    LogShader = 0x8,
    LogBuffer = 0x10,
    LogRender = 0x20,
    LogNetwork = 0x40,
    LogSystem = 0x80,
    LogTerrain = 0x100,
    LogWorld = 0x200,
    LogAudio = 0x400,
    LogLua = 0x800,
    LogPrint = 0x1000,
    LogUgc = 0x2000,
    LogSteam = 0x4000,
    LogWarning = 0x40000000,
    LogError = 0x80000000,
};

/// Colour of a line in the debug console.
enum LogAttribute : uint16_t
{
    AttributeNormal = 7,
    AttributeGreen = 10,
    AttributeRed = 12,
    AttributeYellow = 14,
};

/// What a Console is made with.
struct ConsoleSettings
{
    std::string sLogFile;               ///< real path; empty: no file
    uint32_t uConsoleMask = 0xFFFFFFFD; ///< channels shown; all but LogProfile
    uint32_t uFileMask = 0xFFFFFFFF;
    uint32_t uListenerMask = 0;
    std::function<void(std::string_view, uint32_t)> fnListener; ///< gets the bare text and the flags
    bool bConsole = false;                                      ///< write to standard output
    bool bColours = false;                                      ///< with terminal colours
};

/// The one log of the program. Lines are written whole; any thread may log.
class Console
{
public:
    explicit Console(ConsoleSettings settings);
    virtual ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    virtual void log(std::string_view sText, uint16_t uAttribute, uint32_t uFlags);

    /// Logs a text the first time it is seen in this run; tells whether it did.
    virtual bool logOnce(std::string_view sText, uint16_t uAttribute, uint32_t uFlags);

    [[nodiscard]] uint32_t warnings() const { return m_uWarnings; }
    [[nodiscard]] uint32_t errors() const { return m_uErrors; }

    /// "HH:MM:SS (ticks/frame) ", channel texts, "ERROR: " or "WARNING: ".
    static std::string prefix(uint32_t uFlags);

private:
    ConsoleSettings m_settings;
    std::ofstream m_file;
    std::mutex m_logLock;
    std::mutex m_onceLock;
    std::unordered_set<uint64_t> m_setOnce;
    uint32_t m_uWarnings = 0;
    uint32_t m_uErrors = 0;
};

/// The console in use, or null; set by the constructor, cleared by the destructor.
extern Console* g_pConsole;

/// Writes a line to the console in use; without one it is lost.
void log(std::string_view sText, uint16_t uAttribute = AttributeNormal, uint32_t uFlags = LogDefault);
void logAt(const char* pFile, int iLine, std::string_view sText, uint16_t uAttribute, uint32_t uFlags);

} // namespace UTILS

/// "file:line text" with the error or warning flag.
#define QM_LOG_ERROR(...)                                                                                    \
    ::UTILS::logAt(::UTILS::baseName(__FILE__), __LINE__, ::UTILS::concat(__VA_ARGS__),                      \
                   ::UTILS::AttributeRed, ::UTILS::LogError)
#define QM_LOG_WARNING(...)                                                                                  \
    ::UTILS::logAt(::UTILS::baseName(__FILE__), __LINE__, ::UTILS::concat(__VA_ARGS__),                      \
                   ::UTILS::AttributeYellow, ::UTILS::LogWarning)
/// A plain line on the default channel.
#define QM_LOG(...) ::UTILS::log(::UTILS::concat(__VA_ARGS__))
