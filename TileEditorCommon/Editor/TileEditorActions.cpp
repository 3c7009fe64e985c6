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

constexpr const char* s_pMissingPreview = "ed_error_tile.png";

/// The picture beside a tile, which bears the tile's id as its name.
std::string previewOf(const std::string& sPath, const Uuid& uuid)
{
    if (uuid == Uuid{})
        return s_pMissingPreview;
    const std::string sPreview = sPath.substr(0, sPath.rfind('/') + 1) + uuid.text() + ".png";
    std::error_code error;
    return std::filesystem::is_regular_file(DirectoryManager::ms_pInstance->resolvePath(sPreview), error)
               ? sPreview
               : s_pMissingPreview;
}

TileFile makeTileFile(const std::string& sPath, const std::string& sCategory, bool bWorkshop = false)
{
    TileFile file;
    file.sName = std::filesystem::path(sPath).stem().string();
    file.sPath = sPath;
    file.sCategory = sCategory;
    file.uuid = Tile::readUuid(sPath);
    file.sPreviewPath = previewOf(sPath, file.uuid);
    file.bWorkshop = bWorkshop;
    return file;
}

/// Whose tiles of the game can be opened in this run.
struct GameTiles
{
    bool bCreative = true;
    bool bSurvival = false;
};

GameTiles gameTiles()
{
    const auto& pContext = UgcManager::ms_pInstance->context;
    if (!pContext)
        return {};
    const BaseGameContent eBase = static_cast<const UgcCustomGameMod&>(*pContext).baseGameContent();
    const bool bSurvival = eBase == BaseGameContent::Survival;
    return {bSurvival || eBase == BaseGameContent::Creative, bSurvival};
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

std::vector<TileFile> TileEditor::tileFiles() const
{
    std::vector<TileFile> vecFiles;
    if (const auto& pContext = UgcManager::ms_pInstance->context)
        for (const std::string& sPath : pContext->getTileFiles())
            vecFiles.push_back(makeTileFile(sPath, pContext->name()));
    const auto [bCreative, bSurvival] = gameTiles();
    if (bCreative)
        for (const std::string& sPath : Tile::listGameTiles(true, false))
            vecFiles.push_back(makeTileFile(sPath, "Creative"));
    if (bSurvival)
        for (const std::string& sPath : Tile::listGameTiles(false, true))
            vecFiles.push_back(makeTileFile(sPath, "Survival"));
    for (const auto& pItem : UgcManager::ms_pInstance->getTiles())
        if (const auto& pTileItem = static_cast<const UgcTile&>(*pItem);
            UgcManager::isUsersOwn(pTileItem) && !pTileItem.tilePath().empty())
            vecFiles.push_back(
                makeTileFile(pTileItem.tilePath(), "User", pTileItem.getUInt64("fileId") != 0));
    return vecFiles;
}

std::vector<std::string> TileEditor::tileCategories() const
{
    std::vector<std::string> vecCategories;
    if (const auto& pContext = UgcManager::ms_pInstance->context)
        vecCategories.push_back(pContext->name());
    vecCategories.push_back("User");
    const auto [bCreative, bSurvival] = gameTiles();
    if (bCreative)
        vecCategories.push_back("Creative");
    if (bSurvival)
        vecCategories.push_back("Survival");
    return vecCategories;
}

TerrainCategory TileEditor::terrainCategory() const
{
    return m_pTile ? TerrainCategory{m_pTile->terrainCategory(), m_pTile->terrainCategoryIndex()}
                   : TerrainCategory{};
}

void TileEditor::setTerrainCategory(const TerrainCategory& category)
{
    if (!m_pTile || category == terrainCategory())
        return;
    m_pTile->setTerrainCategory(category.uCategory, category.uIndex);
    markChanged(0);
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
