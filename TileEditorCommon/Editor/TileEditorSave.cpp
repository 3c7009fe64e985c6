// Saving, the preview, and the content item that holds a saved tile.

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Platform/CrashSender.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "KestrelCommon/Ugc/UgcManager.h"
#include "TileEditorCommon/Clutter/EditorTerrainClutter.h"
#include "TileEditorCommon/Document/Tile.h"
#include "TileEditorCommon/Editor/ProgressScope.h"
#include "TileEditorCommon/Editor/TileEditor.h"
#include "TileEditorCommon/Entities/Entities.h"
#include "TileEditorCommon/Pictures/IconGenerator.h"

#include <filesystem>

namespace tilebuilder
{

namespace fs = std::filesystem;

namespace
{

// From about 8 x 8 cells on a save of final quality is felt.
bool takesLong(const Tile& document)
{
    return document.width() * document.height() >= 64;
}

} // namespace

void TileEditor::save()
{
    if (m_pTile && !m_pTile->name().empty())
        saveAs(m_pTile->name(), m_pTile->directory());
    else if (m_pTile && m_pInterface)
        m_pInterface->showSaveAsWindow();
    markInterfaceDirty(0);
}

void TileEditor::saveAs(const std::string& sName, const std::string& sDirectory)
{
    if (!m_pTile)
        return;
    // Copies: the arguments may be the tile's own texts, which the save changes.
    const std::string sWanted = sName;
    const std::string sPlace = sDirectory;
    if (const size_t uLost = m_pTile->lostObjects(); uLost > 0 && !m_bLossAccepted && m_pInterface)
    {
        m_pInterface->askYesNo(
            "#{MENU_YN_TITLE_ARE_YOU_SURE}",
            UTILS::concat(uLost, uLost == 1 ? " object of this tile is" : " objects of this tile are",
                          " not known here and will be missing from the file once it is saved. "
                          "Save it without them? No keeps the file as it is."),
            [this, sWanted, sPlace]
            {
                m_bLossAccepted = true;
                saveAs(sWanted, sPlace);
            });
        return;
    }
    ProgressScope progress(m_pInterface, takesLong(*m_pTile), "Saving " + sWanted);
    const SaveResult eResult = m_pTile->save(sWanted, sPlace, m_uCreatorId, false);
    progress.advance(0.8f);
    if (eResult == SaveResult::NeedsReplaceConfirmation && m_pInterface)
    {
        m_pInterface->askYesNo("#{MENU_YN_TITLE_ARE_YOU_SURE}",
                               UTILS::concat("Another tile named '", sWanted, "' exists. Replace it?"),
                               [this, sWanted, sPlace]
                               {
                                   const ProgressScope replacing(m_pInterface, m_pTile && takesLong(*m_pTile),
                                                                 "Saving " + sWanted);
                                   if (m_pTile)
                                       finishSave(m_pTile->save(sWanted, sPlace, m_uCreatorId, true), sWanted,
                                                  sPlace);
                               });
        return;
    }
    finishSave(eResult, sWanted, sPlace);
}

void TileEditor::finishSave(SaveResult eResult, const std::string& sName, const std::string& sDirectory)
{
    markInterfaceDirty(0);
    if (eResult != SaveResult::Saved)
    {
        showMessage(UTILS::concat("Could not open file '", sDirectory, "/", sName, "' for writing."));
        return;
    }
    // What was waiting is in the file now, and in the state that the save marked.
    m_pending.clear();
    const std::string sPlace = m_pTile->directory();
    makePreview(sPlace);
    if (!hasContext())
        updateContentItem(sPlace);
    const std::string sPath = sPlace + "/" + m_pTile->name();
    if (m_vecPathStack.empty())
        m_vecPathStack.push_back(sPath);
    else
        m_vecPathStack.front() = sPath;
    BugSplatUtil::setCurrentFile(sPath);
}

void TileEditor::makePreview(const std::string& sDirectory)
{
    if (!m_pIconGenerator)
        return;
    // A stroke of this frame may not be on the device yet.
    update(0.0f);
    m_pClutter->finishUpdate();
    m_pIconGenerator->renderTile(sDirectory + "/" + m_pTile->uuid().text() + ".png", m_pTile->width(),
                                 m_pTile->height(), true);
}

void TileEditor::updateContentItem(const std::string& sDirectory)
{
    const auto pItem = UgcManager::ms_pInstance->findByPath(sDirectory);
    if (!pItem)
        return;
    std::vector<ContentId> vecUsed;
    for (const Uuid& uuid : m_pEntities->usedContent())
        if (const auto pUsed = UgcManager::ms_pInstance->getItem(uuid))
            vecUsed.push_back(pUsed->getContentId());
    pItem->setDependencies(vecUsed,
                           [](const ContentId& id) { return UgcManager::ms_pInstance->getCachedName(id); });
    pItem->refresh();
}

void TileEditor::showMessage(const std::string& sText)
{
    QM_LOG_ERROR(sText);
    if (m_pInterface)
        m_pInterface->showMessage("ERROR_MESSAGE", sText);
}

bool TileEditor::hasContext() const
{
    return UgcManager::ms_pInstance->context != nullptr;
}

std::string TileEditor::contextDirectory()
{
    const auto& pContext = UgcManager::ms_pInstance->context;
    if (!pContext)
        return {};
    std::error_code error;
    fs::create_directories(pContext->directory(), error);
    return error ? std::string() : pContext->directoryKey();
}

std::string TileEditor::findUserTile(std::string_view sFileName) const
{
    const std::string sTiles = DirectoryManager::ms_pInstance->tilesFolder();
    std::vector<std::string> vecFound;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(sTiles, error))
        if (entry.is_directory(error) && !entry.is_symlink(error) &&
            fs::is_regular_file(entry.path() / sFileName, error))
            vecFound.push_back(entry.path().generic_string());
    if (vecFound.empty())
        return {};
    return DirectoryManager::ms_pInstance->replacePathWithKey(
        *std::min_element(vecFound.begin(), vecFound.end()), false);
}

std::string TileEditor::createTileItem(std::string_view sName)
{
    const auto pItem = UgcManager::ms_pInstance->createTileItem();
    if (!pItem)
        return {};
    pItem->setString("name", std::string(sName));
    return pItem->directoryKey();
}

void TileEditor::discardTileItem(std::string_view sDirectory)
{
    if (const auto pItem = UgcManager::ms_pInstance->findByPath(sDirectory))
        UgcManager::ms_pInstance->removeItem(pItem);
}

} // namespace tilebuilder
