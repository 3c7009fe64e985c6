#include "Tests/Support/TempFolder.h"

#include "KestrelCommon/Core/Uuid.h"

TempFolder::TempFolder()
    : m_path(std::filesystem::temp_directory_path() / ("tile-editor-test-" + Uuid::random().text()))
{
    std::filesystem::create_directories(m_path);
}

TempFolder::~TempFolder()
{
    std::error_code error;
    std::filesystem::remove_all(m_path, error);
}
