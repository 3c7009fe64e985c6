// What the windows and the key table call.

#include "KestrelCommon/Services/DirectoryManager.h"
#include "KestrelCommon/Tile/ClutterDatabase.h"
#include "KestrelCommon/Ugc/UgcCustomGameMod.h"
#include "KestrelCommon/Ugc/UgcManager.h"
#include "KestrelCommon/Ugc/UgcTile.h"
#include "KestrelCommon/renderer/Camera.h"
#include "TileEditorCommon/Document/Tile.h"
#include "TileEditorCommon/Editor/TileEditor.h"
#include "TileEditorCommon/Ground/Brush.h"

#include <filesystem>

namespace tilebuilder
{

namespace
{

TileFile makeTileFile(const std::string& sPath, const std::string& sCategory)
{
    return {std::filesystem::path(sPath).stem().string(), sPath, sCategory};
}

} // namespace

std::vector<BrushChoice> TileEditor::brushes() const
{
    std::vector<BrushChoice> vecChoices;
    for (size_t uIndex = 0; uIndex < BrushCount; ++uIndex)
        vecChoices.push_back({brush(uIndex), brushName(uIndex)});
    return vecChoices;
}

std::vector<std::string> TileEditor::clutterNames() const
{
    std::vector<std::string> vecNames;
    for (const tile::GrassInfo& type : m_pClutterDatabase->types())
        vecNames.push_back(type.name);
    return vecNames;
}

std::string TileEditor::documentName() const
{
    return m_pTile ? m_pTile->name() : std::string();
}

std::string TileEditor::documentDirectory() const
{
    return m_pTile ? m_pTile->directory() : std::string();
}

Uuid TileEditor::documentUuid() const
{
    return m_pTile ? m_pTile->uuid() : Uuid{};
}

void TileEditor::requestExit()
{
    whenSafe([this] { m_bRunning = false; });
}

std::vector<TileFile> TileEditor::tileFiles() const
{
    std::vector<TileFile> vecFiles;
    bool bCreative = true;
    bool bSurvival = false;
    if (const auto& pContext = UgcManager::ms_pInstance->context)
    {
        for (const std::string& sPath : pContext->getTileFiles())
            vecFiles.push_back(makeTileFile(sPath, pContext->name()));
        const BaseGameContent eBase = static_cast<const UgcCustomGameMod&>(*pContext).baseGameContent();
        bSurvival = eBase == BaseGameContent::Survival;
        bCreative = bSurvival || eBase == BaseGameContent::Creative;
    }
    if (bCreative)
        for (const std::string& sPath : Tile::listGameTiles(true, false))
            vecFiles.push_back(makeTileFile(sPath, "Creative"));
    if (bSurvival)
        for (const std::string& sPath : Tile::listGameTiles(false, true))
            vecFiles.push_back(makeTileFile(sPath, "Survival"));
    for (const auto& pItem : UgcManager::ms_pInstance->getTiles())
        if (const auto& pTileItem = static_cast<const UgcTile&>(*pItem);
            UgcManager::isUsersOwn(pTileItem) && !pTileItem.tilePath().empty())
            vecFiles.push_back(makeTileFile(pTileItem.tilePath(), "User"));
    return vecFiles;
}

CameraStatus TileEditor::cameraStatus() const
{
    const Camera& camera = *m_services.pCamera;
    return {{camera.position.x, camera.position.y, camera.position.z}, camera.flySpeed, camera.flying};
}

void TileEditor::setFlySpeed(float fSpeed)
{
    m_services.pCamera->flySpeed = fSpeed;
}

void TileEditor::moveCameraForward(float fDistance)
{
    m_services.pCamera->isGliding = false;
    m_services.pCamera->position += m_services.pCamera->forward() * fDistance;
}

std::optional<std::array<float, 3>> TileEditor::cursorHit() const
{
    const auto hit = groundUnderCursor();
    if (!hit)
        return std::nullopt;
    return std::array{hit->x, hit->y, hit->z};
}

} // namespace tilebuilder
