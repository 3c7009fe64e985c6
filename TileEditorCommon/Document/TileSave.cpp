// The document's files.

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Io/SafeFile.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "TileEditorCommon/Document/Tile.h"

namespace tilebuilder
{

/// A file that is written beside its place.
struct PreparedFile
{
    std::string sPath;
    uint64_t uSize = 0;
    std::unique_ptr<SafeFile> pFile;
};

namespace
{

constexpr std::string_view s_sEnding = ".tile";

// With the ending in lower case, appended when there is none.
std::string normalisedName(const std::string& sName)
{
    if (sName.size() >= s_sEnding.size())
    {
        const std::string_view sLast = std::string_view(sName).substr(sName.size() - s_sEnding.size());
        const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
        if (std::ranges::equal(sLast, s_sEnding, {}, lower))
            return sName.substr(0, sName.size() - s_sEnding.size()) + std::string(s_sEnding);
    }
    return sName + std::string(s_sEnding);
}

} // namespace

bool Tile::prepareFile(const std::string& name, const std::string& directory, uint32_t flags,
                       PreparedFile& file)
{
    const DirectoryManager& directories = *DirectoryManager::ms_pInstance;
    file.sPath = directory + "/" + name;
    if (!directories.isValidKeyedPath(file.sPath))
    {
        QM_LOG_ERROR("Failed to save tile at non valid path: ", file.sPath);
        return false;
    }
    QM_LOG("Saving: ", name, " Dir: ", directory);
    QM_LOG("Size: ", m_width, ", ", m_height);
    QM_LOG("Type: ", m_type);
    QM_LOG("Tile UUID: {", m_uuid.text(), "}");
    QM_LOG("Creator ID: ", m_creatorId);
    const TileState state = write(flags | tile::WriteFinal);
    file.uSize = state.size;
    file.pFile = std::make_unique<SafeFile>(directories.resolvePath(file.sPath));
    if (state.data && file.pFile->isOpen() && file.pFile->write(state.bytes()))
        return true;
    QM_LOG_ERROR("Failed writing tile ", file.sPath);
    return false;
}

bool Tile::commitFile(PreparedFile& file) const
{
    if (!file.pFile->commit())
    {
        QM_LOG_ERROR("Failed writing tile ", file.sPath);
        return false;
    }
    QM_LOG("Success writing tile ", file.sPath, " size: ", file.uSize >> 10, "kb");
    return true;
}

bool Tile::writeFile(const std::string& name, const std::string& directory, uint32_t flags)
{
    PreparedFile file;
    if (!prepareFile(name, directory, flags, file) || !commitFile(file))
        return false;
    m_name = name;
    m_directory = directory;
    return true;
}

SaveResult Tile::save(const std::string& name, const std::string& directory, uint64_t creatorId,
                      bool bReplace)
{
    DocumentHostI& host = m_services.host;
    const DirectoryManager& directories = *DirectoryManager::ms_pInstance;
    const std::string sName = normalisedName(name);
    std::string sDirectory = directories.isValidKeyedPath(directory) ? directory : std::string();
    const bool bContext = host.hasContext();
    if (sDirectory.empty())
        sDirectory = bContext ? host.contextDirectory() : host.findUserTile(sName);
    if (sDirectory.empty() && bContext)
        return SaveResult::Failed;

    const std::string sOldPath = path();
    if (!sDirectory.empty() && !bReplace && sDirectory + "/" + sName != sOldPath)
    {
        std::error_code error;
        if (std::filesystem::exists(directories.resolvePath(sDirectory + "/" + sName), error))
            return SaveResult::NeedsReplaceConfirmation;
    }
    std::string sNewItem;
    if (sDirectory.empty())
    {
        sNewItem = host.createTileItem(sName.substr(0, sName.size() - s_sEnding.size()));
        if (sNewItem.empty())
            return SaveResult::Failed;
        sDirectory = sNewItem;
    }

    // The image holds the identity, so the new one is taken on for the writing and given back
    // when that fails.
    const Uuid uuidOld = m_uuid;
    const uint64_t uOldCreator = m_creatorId;
    const bool bOtherPlace = sDirectory + "/" + sName != sOldPath;
    if (bOtherPlace)
        m_uuid = Uuid::random();
    if (m_creatorId == 0 && (bContext || !sNewItem.empty()))
        m_creatorId = creatorId;
    const bool bReset = bOtherPlace || m_creatorId != uOldCreator;

    PreparedFile fileExport;
    PreparedFile filePlain;
    const bool bExport = m_type == tile::TypeGround;
    const bool bSaved =
        (!bExport || prepareFile(sName + ".export", sDirectory, tile::WriteExport, fileExport)) &&
        prepareFile(sName, sDirectory, tile::WritePlain, filePlain) && (!bExport || commitFile(fileExport)) &&
        commitFile(filePlain);
    if (!bSaved)
    {
        m_uuid = uuidOld;
        m_creatorId = uOldCreator;
        // Files beside go first, or the item's folder would not be empty.
        filePlain.pFile.reset();
        fileExport.pFile.reset();
        if (!sNewItem.empty())
            host.discardTileItem(sNewItem);
        return SaveResult::Failed;
    }
    m_name = sName;
    m_directory = sDirectory;
    m_bForeignObjects = false; // the file that stands now is this document
    pushState(bReset);
    m_uLostObjects = 0;
    markSaved();
    return SaveResult::Saved;
}

} // namespace tilebuilder
