#include "KestrelCommon/Ugc/UgcTile.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Services/DirectoryManager.h"

#include <filesystem>

namespace
{

// Keyed paths of the folder's own files with that ending, in the order of their names.
std::vector<std::string> filesEndingIn(const UgcBase& item, std::string_view sEnding)
{
    std::vector<std::string> vecPaths;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(item.directory(), error))
        if (entry.path().extension() == sEnding && entry.is_regular_file(error))
            vecPaths.push_back(item.directoryKey() + "/" + entry.path().filename().string());
    std::sort(vecPaths.begin(), vecPaths.end());
    return vecPaths;
}

} // namespace

void UgcTile::refresh()
{
    const auto vecTiles = filesEndingIn(*this, ".tile");
    if (vecTiles.size() > 1)
        QM_LOG_ERROR("Multiple .tile files found in content directory: '", directory(), "'");
    if (vecTiles.empty())
        QM_LOG_ERROR("No .tile file found for ", name());
    m_sTilePath = vecTiles.empty() ? std::string() : vecTiles.front();

    const auto vecIcons = filesEndingIn(*this, ".png");
    if (vecIcons.empty())
        QM_LOG_ERROR("No icon file found for tile: ", name());
    m_sIconPath = vecIcons.empty() ? std::string() : vecIcons.front();
}

bool UgcTile::validate()
{
    return !m_sTilePath.empty() && DirectoryManager::ms_pInstance->exists(m_sTilePath);
}
