// The batch: a list of tiles is loaded and saved again.

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Io/SafeFile.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "TileEditorCommon/Document/Tile.h"
#include "TileEditorCommon/Editor/BatchList.h"
#include "TileEditorCommon/Editor/TileEditor.h"

namespace tilebuilder
{

uint32_t TileEditor::processTiles(const std::string& sListPath)
{
    DirectoryManager& directories = *DirectoryManager::ms_pInstance;
    const auto sList = readTextFile(directories.resolvePath(sListPath));
    if (!sList)
        return 0;
    uint32_t uCount = 0;
    for (const BatchLine& line : readBatchList(*sList))
    {
        const std::string sPath =
            line.bTooLong ? line.sText : directories.replacePathWithKey(line.sText, true);
        if (line.bTooLong || !directories.isValidKeyedPath(sPath))
        {
            QM_LOG_ERROR("Failed to load.. '", sPath, "' not a valid path");
            continue;
        }
        QM_LOG("Loading.. ", sPath);
        if (!openTile(sPath, true) || m_pTile->holdsForeignObjects())
        {
            QM_LOG_ERROR("Failed to load.. '", sPath, "'");
            continue;
        }
        if (const size_t uLost = m_pTile->lostObjects())
            QM_LOG_WARNING(uLost, " objects of '", sPath, "' are not known here and are left out");
        QM_LOG("Saving.. ", sPath);
        const std::string sName = m_pTile->name();
        const std::string sDirectory = m_pTile->directory();
        saveAs(sName, sDirectory);
        QM_LOG("Done.. ", sPath);
        ++uCount;
    }
    return uCount;
}

} // namespace tilebuilder
