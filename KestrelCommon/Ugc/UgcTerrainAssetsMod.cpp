#include "KestrelCommon/Ugc/UgcTerrainAssetsMod.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Services/DirectoryManager.h"

#include <algorithm>
#include <filesystem>

void UgcTerrainAssetsMod::refresh()
{
    const DirectoryManager& directories = *DirectoryManager::ms_pInstance;
    std::vector<std::string> vecPreviews;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(directory(), error))
        if (entry.path().stem() == "preview" && entry.is_regular_file(error))
            vecPreviews.push_back(entry.path().filename().string());
    std::sort(vecPreviews.begin(), vecPreviews.end());
    m_sPreviewPath.clear();
    if (vecPreviews.empty())
        QM_LOG_WARNING("No preview image found for Terrain Assets mod: ", name());
    else
        m_sPreviewPath = directoryKey() + "/" + vecPreviews.front();
    if (vecPreviews.size() > 1)
        QM_LOG_WARNING("Multiple matches found for 'preview.' Terrain Assets mod: ", name());

    if (const std::string sOldList = directoryKey() + "/Database/assetsets.json";
        !findContent(&UgcContentPaths::sAssetSets) && directories.exists(sOldList))
        m_paths.sAssetSets = sOldList;
    findContent(&UgcContentPaths::sHarvestableSets);
    findContent(&UgcContentPaths::sKinematicSets);
    m_sIconFolder = directoryKey() + "/Icons/";
    if (!directories.exists(m_sIconFolder))
        m_sIconFolder.clear();
}
