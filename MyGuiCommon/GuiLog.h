#pragma once // MyGUI's log, in a file of its own and, for what went wrong, in the program's log.

#include <memory>
#include <string>

/// Must live before the first and end after the last object of MyGUI.
class GuiLog
{
public:
    /// An empty file name keeps no file.
    explicit GuiLog(const std::string& sFile);
    ~GuiLog();
    GuiLog(const GuiLog&) = delete;
    GuiLog& operator=(const GuiLog&) = delete;

private:
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};
