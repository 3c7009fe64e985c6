// Opening, closing and making documents.

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Platform/CrashSender.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "KestrelCommon/Tile/TileFormat.h"
#include "KestrelCommon/renderer/Camera.h"
#include "KestrelCommon/renderer/Renderer.h"
#include "TileEditorCommon/Clutter/EditorTerrainClutter.h"
#include "TileEditorCommon/Document/EntitySections.h"
#include "TileEditorCommon/Document/Tile.h"
#include "TileEditorCommon/Editor/CachedTile.h"
#include "TileEditorCommon/Editor/GroundView.h"
#include "TileEditorCommon/Editor/ProgressScope.h"
#include "TileEditorCommon/Editor/TileEditor.h"
#include "TileEditorCommon/Entities/Entities.h"
#include "TileEditorCommon/Entities/EntityDrag.h"
#include "TileEditorCommon/Entities/Grid/GridEntityType.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

#include <cmath>
#include <filesystem>

namespace tilebuilder
{

namespace
{

constexpr const char* s_pUnsavedTitle = "#{MENU_YN_TITLE_ARE_YOU_SURE}";
constexpr const char* s_pUnsavedText = "Are you sure you want leave this tile? There are unsaved changes.";
constexpr uintmax_t s_uLongFile = 1 << 20;   ///< bytes from which opening a tile is felt
constexpr float s_fFramingElevation = 45.0f; ///< degrees

} // namespace

bool TileEditor::isDocumentOpen() const
{
    return m_pTile && (m_bGroundOpen || m_bObjectsOpen);
}

bool TileEditor::isUnsaved() const
{
    return m_pTile && m_pTile->isUnsaved();
}

void TileEditor::whenSafe(std::function<void()> fnAction)
{
    // A change that isn't quiet yet is unsaved all the same.
    if (isDocumentOpen() && m_pending.isPending())
        pushPending();
    if (isUnsaved() && m_pInterface)
        m_pInterface->askYesNo(s_pUnsavedTitle, s_pUnsavedText, std::move(fnAction));
    else
        fnAction();
}

void TileEditor::requestExit()
{
    // A change that isn't quiet yet is unsaved all the same.
    if (isDocumentOpen() && m_pending.isPending())
        pushPending();
    std::string sLeft;
    for (const CachedDocument& left : history().vecCached)
        if (left.bUnsaved)
            sLeft += "\n" + left.sPath.substr(left.sPath.rfind('/') + 1);
    if ((!isUnsaved() && sLeft.empty()) || !m_pInterface)
    {
        m_bRunning = false;
        return;
    }
    std::string sText = isUnsaved() ? s_pUnsavedText : "Are you sure you want to leave?";
    if (!sLeft.empty())
        sText += "\nTiles that were left without saving them:" + sLeft;
    m_pInterface->askYesNo(s_pUnsavedTitle, sText, [this] { m_bRunning = false; });
}

std::unique_ptr<Tile> TileEditor::makeTile()
{
    auto pTile = std::make_unique<Tile>(TileServices{*this, *m_pSurface, *m_pClutter});
    for (const auto& pProvider : m_pEntitySections->providers())
        pTile->addProvider(*pProvider);
    return pTile;
}

void TileEditor::requestNewTile(int32_t iSize)
{
    whenSafe([this, iSize] { newTile(iSize); });
}

void TileEditor::newTile(int32_t iSize)
{
    const BusyScope busy(m_pInterface);
    closeDocument();
    m_vecPathStack.clear();
    if (!QM_ASSERT(m_pTile == nullptr))
        return;
    m_pTile = makeTile();
    m_pTile->create(Uuid::random(), m_uCreatorId, iSize, iSize, tile::TypeGround);
    onDocumentOpened(iSize, iSize, tile::TypeGround, {});
    m_pTile->pushState(true);
    skipPendingChanges();
}

void TileEditor::openDocument(const std::string& sPath)
{
    whenSafe(
        [this, sPath]
        {
            if (!openTile(sPath, false))
                showMessage(UTILS::concat("Could not open '", sPath, "'. The log says why."));
        });
}

void TileEditor::openStackLevel(size_t uLevel)
{
    if (uLevel + 1 < m_vecPathStack.size())
        openDocument(m_vecPathStack[uLevel]);
}

bool TileEditor::openTile(const std::string& sPath, bool bForget)
{
    if (!DirectoryManager::ms_pInstance->isValidKeyedPath(sPath) ||
        !DirectoryManager::ms_pInstance->exists(sPath))
    {
        QM_LOG_ERROR("Failed to open tile '", sPath, "' is not a valid path");
        return false;
    }
    if (bForget)
        dropCachedTile(sPath);
    else if (sPath == documentPath() || m_mapCachedTileStates.contains(sPath))
    {
        const BusyScope busy(m_pInterface);
        // Leaving the open document first puts it among those that can be returned to.
        closeDocument();
        return returnToTile(sPath);
    }
    BugSplatUtil::setCurrentFile(sPath);
    // The image is checked before the open document has to go; see reinitialise().
    m_pIncomingTile = makeTile();
    Tile* pLoading = m_pIncomingTile.get();
    std::error_code error;
    const auto uBytes = std::filesystem::file_size(DirectoryManager::ms_pInstance->resolvePath(sPath), error);
    const ProgressScope progress(m_pInterface, !error && uBytes > s_uLongFile,
                                 "Opening " + sPath.substr(sPath.rfind('/') + 1));
    const bool bLoaded = pLoading->load(sPath);
    m_pIncomingTile.reset();
    if (m_pTile.get() != pLoading)
    {
        BugSplatUtil::setCurrentFile(m_vecPathStack.empty() ? std::string() : m_vecPathStack.back());
        return false;
    }
    // The open document may have been left under this very path.
    dropCachedTile(sPath);
    m_vecPathStack = {sPath};
    skipPendingChanges();
    markInterfaceDirty(0);
    return bLoaded;
}

void TileEditor::reinitialise(int32_t iWidth, int32_t iHeight, uint32_t uType, const std::string& sPath)
{
    if (!QM_ASSERT(m_pIncomingTile != nullptr))
        return;
    closeDocument();
    m_pTile = std::move(m_pIncomingTile);
    onDocumentOpened(iWidth, iHeight, uType, sPath);
}

void TileEditor::closeDocument()
{
    // What isn't a step yet becomes one, so that coming back brings it back.
    if (isDocumentOpen() && m_pending.isPending() && !documentPath().empty())
        pushPending();
    if (m_bGroundOpen)
    {
        if (m_pGroundView)
            m_pGroundView->release();
        m_pSurface->release();
        m_pClutter->release();
        m_bGroundOpen = false;
    }
    if (m_bObjectsOpen)
        m_pEntities->closeTile();
    m_bObjectsOpen = false;
    abandonPress();
    leaveTile();
    m_bStrokeActive = false;
    m_bStrokeDirty = false;
    m_pending.clear();
    markInterfaceDirty(0);
    BugSplatUtil::setCurrentFile({});
}

void TileEditor::onDocumentOpened(int32_t iWidth, int32_t iHeight, uint32_t uType, const std::string& sPath)
{
    m_bLossAccepted = false;
    m_pEntityDrag->endTransform();
    m_pEntities->openTile({iWidth, iHeight, uType, sPath});
    if (uType == tile::TypeGround)
    {
        m_pSurface->init(iWidth * tile::CellSize, iHeight * tile::CellSize);
        m_pClutter->init(iWidth * tile::CellSize, iHeight * tile::CellSize);
        m_bGroundOpen = true;
    }
    else
        m_pEntities->placeGrid(
            {glm::vec3(0.0f), {1.0f, 0.0f, 0.0f, 0.0f}, glm::vec3(GridEntityType::s_fNewScale)});
    m_bObjectsOpen = true;
    if (m_services.pRenderer)
        m_services.pRenderer->setSceneMode(uType == tile::TypeGround ? rend::SceneMode::GroundTile
                                                                     : rend::SceneMode::GridTile);
    frameDocument(uType == tile::TypeGround ? iWidth : 1, uType == tile::TypeGround ? iHeight : 1);
    markInterfaceDirty(0);
}

void TileEditor::frameDocument(int32_t iWidth, int32_t iHeight)
{
    const auto fHalf = static_cast<float>(tile::CellSize) * 0.5f;
    const glm::vec3 centre(fHalf * static_cast<float>(iWidth), fHalf * static_cast<float>(iHeight), 0.0f);
    m_services.pCamera->frame(centre, std::hypot(centre.x, centre.y), s_fFramingElevation, false);
}

} // namespace tilebuilder
