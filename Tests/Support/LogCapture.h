#pragma once // Collects what is logged while a test runs.

#include "KestrelCommon/Core/Console.h"

#include <mutex>
#include <string>
#include <vector>

/// Makes a console that writes nowhere and keeps every line. One at a time.
class LogCapture
{
public:
    struct Line
    {
        std::string sText;
        uint32_t uFlags;
    };

    LogCapture();

    [[nodiscard]] std::vector<Line> lines() const;
    [[nodiscard]] uint32_t errors() const { return m_console.errors(); }
    [[nodiscard]] uint32_t warnings() const { return m_console.warnings(); }

    /// How many lines hold the text.
    [[nodiscard]] size_t count(std::string_view sPart) const;
    [[nodiscard]] bool has(std::string_view sPart) const { return count(sPart) > 0; }

    /// All lines, for a failure message.
    [[nodiscard]] std::string dump() const;
    void clear();

private:
    mutable std::mutex m_lock;
    std::vector<Line> m_vecLines;
    UTILS::Console m_console;
};
