#include "MyGuiCommon/GuiLog.h"

#include "KestrelCommon/Core/Console.h"

#include <MyGUI_FileLogListener.h>
#include <MyGUI_LevelLogFilter.h>
#include <MyGUI_LogManager.h>
#include <MyGUI_LogSource.h>

namespace
{

/// Hands warnings and errors on.
class ConsoleListener : public MyGUI::ILogListener
{
public:
    void log(const std::string& sSection, MyGUI::LogLevel eLevel, const struct tm*,
             const std::string& sMessage, const char* pFile, int iLine) override
    {
        const std::string sText =
            UTILS::concat("MyGUI ", sSection, ": ", sMessage, " (", UTILS::baseName(pFile), ":", iLine, ")");
        if (eLevel >= MyGUI::LogLevel::Error)
            QM_LOG_ERROR(sText);
        else if (eLevel >= MyGUI::LogLevel::Warning)
            QM_LOG_WARNING(sText);
    }
};

} // namespace

/// The members end in the reverse of their order: the manager lets go of its source first.
struct GuiLog::Impl
{
    MyGUI::LevelLogFilter filter;
    ConsoleListener console;
    MyGUI::FileLogListener file;
    MyGUI::LogSource source;
    MyGUI::LogManager manager;
};

GuiLog::GuiLog(const std::string& sFile) : m_pImpl(std::make_unique<Impl>())
{
    m_pImpl->filter.setLoggingLevel(MyGUI::LogLevel::Info);
    m_pImpl->source.addLogListener(&m_pImpl->console);
    if (!sFile.empty())
    {
        m_pImpl->file.setFileName(sFile);
        m_pImpl->source.addLogListener(&m_pImpl->file);
    }
    m_pImpl->source.setLogFilter(&m_pImpl->filter);
    m_pImpl->source.open();
    m_pImpl->manager.addLogSource(&m_pImpl->source);
}

GuiLog::~GuiLog() = default;
