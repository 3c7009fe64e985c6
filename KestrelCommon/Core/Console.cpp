#include "KestrelCommon/Core/Console.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/FrameClock.h"
#include "KestrelCommon/Core/Hash.h"

#include <cstdio>
#include <ctime>

namespace UTILS
{

Console* g_pConsole = nullptr;

namespace
{

struct Channel
{
    uint32_t uFlag;
    const char* pText;
};

constexpr Channel s_arrChannels[] = {
    {LogDefault, " [Default] "}, {LogProfile, " [Profile] "}, {LogResource, " [Resource] "},
    {LogShader, " [Shader] "},   {LogBuffer, " [Buffer] "},   {LogRender, " [Render] "},
    {LogNetwork, " [Network] "}, {LogSystem, " [System] "},   {LogTerrain, " [Terrain] "},
    {LogWorld, " [World] "},     {LogLua, " [Lua] "},         {LogPrint, " [Print] "},
    {LogAudio, " [Audio] "},     {LogUgc, " [UGC] "},         {LogSteam, " [Steam] "},
};

constexpr uint32_t s_uChannelBits = 0x3FFFFFFF;

const char* terminalColour(uint16_t uAttribute)
{
    switch (uAttribute)
    {
    case AttributeGreen:
        return "\033[32m";
    case AttributeRed:
        return "\033[31m";
    case AttributeYellow:
        return "\033[33m";
    default:
        return "\033[0m";
    }
}

void logAssert(const char* pExpression, const char* pFile, int iLine)
{
    log(concat("ASSERT: '", pExpression, "' : ", pFile, ":", iLine), AttributeRed, LogError);
}

} // namespace

Console::Console(ConsoleSettings settings) : m_settings(std::move(settings))
{
    if (!m_settings.sLogFile.empty())
        m_file.open(m_settings.sLogFile, std::ios::binary | std::ios::trunc);
    g_pConsole = this;
    setAssertCallback(&logAssert);
}

Console::~Console()
{
    setAssertCallback(nullptr);
    if (m_file.is_open())
        m_file << "Shutting down...\n" << std::flush;
    g_pConsole = nullptr;
}

std::string Console::prefix(uint32_t uFlags)
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char arrTime[16];
    std::snprintf(arrTime, sizeof(arrTime), "%02d:%02d:%02d", local.tm_hour, local.tm_min, local.tm_sec);

    std::string sPrefix = concat(arrTime, " (", FrameClock::ticks(), "/", FrameClock::frame(), ") ");
    if ((uFlags & s_uChannelBits) == 0)
        sPrefix += ' ';
    for (const Channel& channel : s_arrChannels)
        if (uFlags & channel.uFlag)
            sPrefix += channel.pText;
    if (uFlags & LogError)
        sPrefix += "ERROR: ";
    else if (uFlags & LogWarning)
        sPrefix += "WARNING: ";
    return sPrefix;
}

void Console::log(std::string_view sText, uint16_t uAttribute, uint32_t uFlags)
{
    const std::string sPrefix = prefix(uFlags);
    const std::scoped_lock lock(m_logLock);
    // A bare error or warning has no channel, and goes everywhere.
    const uint32_t uChannels = (uFlags & s_uChannelBits) ? (uFlags & s_uChannelBits) : uFlags;
    if (m_settings.bConsole && (uChannels & m_settings.uConsoleMask))
    {
        const std::string sLine = m_settings.bColours ? concat(terminalColour(uAttribute), sPrefix, sText,
                                                               terminalColour(AttributeNormal), '\n')
                                                      : concat(sPrefix, sText, '\n');
        std::fwrite(sLine.data(), 1, sLine.size(), stdout);
        std::fflush(stdout);
    }
    if (m_file.is_open() && (uFlags & m_settings.uFileMask))
        m_file << sPrefix << sText << '\n' << std::flush;
    if (m_settings.fnListener && (uFlags & m_settings.uListenerMask))
        m_settings.fnListener(sText, uFlags);
    if (uFlags & LogWarning)
        ++m_uWarnings;
    if (uFlags & LogError)
        ++m_uErrors;
}

bool Console::logOnce(std::string_view sText, uint16_t uAttribute, uint32_t uFlags)
{
    {
        const std::scoped_lock lock(m_onceLock);
        if (!m_setOnce.insert(sText.empty() ? 0 : xxh3(sText)).second)
            return false;
    }
    log(sText, uAttribute, uFlags);
    return true;
}

void log(std::string_view sText, uint16_t uAttribute, uint32_t uFlags)
{
    if (g_pConsole)
        g_pConsole->log(sText, uAttribute, uFlags);
}

void logAt(const char* pFile, int iLine, std::string_view sText, uint16_t uAttribute, uint32_t uFlags)
{
    if (g_pConsole)
        g_pConsole->log(concat(pFile, ":", iLine, " ", sText), uAttribute, uFlags);
}

} // namespace UTILS
