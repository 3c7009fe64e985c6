#pragma once // A folder of its own for a test.

#include <filesystem>

/// Made empty, and removed with all that it holds at the end.
class TempFolder
{
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
    [[nodiscard]] std::string text() const { return m_path.generic_string(); }

private:
    std::filesystem::path m_path;
};
