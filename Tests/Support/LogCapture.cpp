#include "Tests/Support/LogCapture.h"

LogCapture::LogCapture()
    : m_console(
          [this]
          {
              UTILS::ConsoleSettings settings;
              settings.uListenerMask = 0xFFFFFFFF;
              settings.fnListener = [this](std::string_view sText, uint32_t uFlags)
              {
                  const std::scoped_lock lock(m_lock);
                  m_vecLines.push_back({std::string(sText), uFlags});
              };
              return settings;
          }())
{
}

std::vector<LogCapture::Line> LogCapture::lines() const
{
    const std::scoped_lock lock(m_lock);
    return m_vecLines;
}

size_t LogCapture::count(std::string_view sPart) const
{
    size_t uCount = 0;
    for (const Line& line : lines())
        uCount += line.sText.find(sPart) != std::string::npos;
    return uCount;
}

std::string LogCapture::dump() const
{
    std::string sAll;
    for (const Line& line : lines())
        sAll += line.sText + '\n';
    return sAll;
}

void LogCapture::clear()
{
    const std::scoped_lock lock(m_lock);
    m_vecLines.clear();
}
