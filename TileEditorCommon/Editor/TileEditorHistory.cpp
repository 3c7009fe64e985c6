// Undo, redo, and documents that are left and returned to with their history.

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Platform/CrashSender.h"
#include "KestrelCommon/Platform/VirtualKeys.h"
#include "KestrelCommon/Services/InputManager.h"
#include "KestrelCommon/renderer/Camera.h"
#include "TileEditorCommon/Document/Tile.h"
#include "TileEditorCommon/Editor/CachedTile.h"
#include "TileEditorCommon/Editor/TileEditor.h"

namespace tilebuilder
{

bool TileEditor::pushPending()
{
    const bool bPushed = m_pTile->pushState(false);
    m_pending.clear();
    markInterfaceDirty(0);
    return bPushed;
}

void TileEditor::updateUndoKeys()
{
    const InputManager& input = *m_services.pInput;
    if (input.keyState['Z'] != InputPressed || (m_pInterface && m_pInterface->isEditing()))
        return;
    const uint32_t uMods = input.modsAtPress('Z');
    if (!(uMods & ModControl))
        return;
    // What was just done is what the user wants back, even when it isn't quiet yet.
    if (m_pending.isPending())
        pushPending();
    if (uMods & ModShift)
        redo();
    else
        undo();
}

void TileEditor::undo()
{
    if (!m_pTile)
        return;
    abandonPress();
    m_pTile->undo();
}

void TileEditor::redo()
{
    if (!m_pTile)
        return;
    abandonPress();
    m_pTile->redo();
}

void TileEditor::restoreFromDisk()
{
    if (m_vecPathStack.empty())
        return;
    whenSafe([this, sPath = m_vecPathStack.back()] { openTile(sPath, true); });
}

void TileEditor::resetUndoHistory()
{
    if (!m_pTile)
        return;
    m_pTile->pushState(true);
    m_pending.clear();
    m_mapCachedTileStates.clear();
    markInterfaceDirty(0);
}

HistoryStatus TileEditor::history() const
{
    HistoryStatus status;
    status.uBytesUsed = undoMemoryInUse();
    status.uBytesLimit = Tile::s_uStateMemoryLimit;
    status.bHasCached = !m_mapCachedTileStates.empty();
    if (m_pTile)
    {
        status.uStates = m_pTile->states().size();
        status.uStateIndex = m_pTile->stateIndex();
    }
    const std::string sOpen = documentPath();
    for (const auto& [sPath, pCached] : m_mapCachedTileStates)
        if (sPath != sOpen)
            status.vecCached.push_back({sPath, pCached->pTile->isUnsaved(), pCached->pTile->stateMemory()});
    return status;
}

uint64_t TileEditor::undoMemoryInUse() const
{
    return (m_pTile ? m_pTile->stateMemory() : 0) + cachedUndoMemory();
}

uint64_t TileEditor::cachedUndoMemory() const
{
    uint64_t uBytes = 0;
    for (const auto& [sPath, pCached] : m_mapCachedTileStates)
        uBytes += pCached->pTile->stateMemory();
    return uBytes;
}

uint64_t TileEditor::evictOldestCachedTile()
{
    const auto it =
        std::min_element(m_mapCachedTileStates.begin(), m_mapCachedTileStates.end(),
                         [](const auto& a, const auto& b) { return a.second->uLeft < b.second->uLeft; });
    if (it == m_mapCachedTileStates.end())
        return 0;
    const uint64_t uFreed = it->second->pTile->stateMemory();
    m_mapCachedTileStates.erase(it);
    return uFreed;
}

void TileEditor::dropCachedTile(const std::string& sPath)
{
    m_mapCachedTileStates.erase(sPath);
}

std::string TileEditor::documentPath() const
{
    return m_pTile && !m_pTile->name().empty() ? m_pTile->directory() + "/" + m_pTile->name() : std::string();
}

// A document without a path has no way back.
void TileEditor::leaveTile()
{
    const std::string sPath = documentPath();
    if (sPath.empty())
    {
        m_pTile.reset();
        return;
    }
    m_pTile->clearCache();
    auto pCached = std::make_unique<CachedTile>();
    pCached->pTile = std::move(m_pTile);
    pCached->uLeft = ++m_uDocumentsLeft;
    pCached->cameraPosition = m_services.pCamera->position;
    pCached->cameraRotation = m_services.pCamera->rotation;
    m_mapCachedTileStates[sPath] = std::move(pCached);
}

bool TileEditor::returnToTile(const std::string& sPath)
{
    const auto it = m_mapCachedTileStates.find(sPath);
    if (!QM_ASSERT(it != m_mapCachedTileStates.end()))
        return false;
    const std::unique_ptr<CachedTile> pCached = std::move(it->second);
    m_mapCachedTileStates.erase(it);
    m_pTile = std::move(pCached->pTile);
    onDocumentOpened(m_pTile->width(), m_pTile->height(), m_pTile->type(), documentPath());
    m_services.pCamera->isGliding = false;
    m_services.pCamera->position = pCached->cameraPosition;
    m_services.pCamera->rotation = pCached->cameraRotation;
    const bool bRestored = m_pTile->restoreState(false, false);
    m_vecPathStack = {sPath};
    BugSplatUtil::setCurrentFile(sPath);
    skipPendingChanges();
    markInterfaceDirty(0);
    return bRestored;
}

} // namespace tilebuilder
