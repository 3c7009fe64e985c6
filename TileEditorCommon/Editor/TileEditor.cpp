#include "TileEditorCommon/Editor/TileEditor.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/FrameClock.h"
#include "KestrelCommon/Core/Random.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "KestrelCommon/renderer/Camera.h"
#include "KestrelCommon/renderer/InstanceWorld.h"
#include "KestrelCommon/renderer/Renderer.h"
#include "TileEditorCommon/Catalogue/DataLibrary.h"
#include "TileEditorCommon/Clutter/EditorTerrainClutter.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Document/EntitySections.h"
#include "TileEditorCommon/Document/Tile.h"
#include "TileEditorCommon/Editor/AssetIcons.h"
#include "TileEditorCommon/Editor/CachedTile.h"
#include "TileEditorCommon/Editor/EntityKinds.h"
#include "TileEditorCommon/Editor/EntityListView.h"
#include "TileEditorCommon/Editor/EntityRender.h"
#include "TileEditorCommon/Editor/GroundView.h"
#include "TileEditorCommon/Editor/OriginMark.h"
#include "TileEditorCommon/Entities/Entities.h"
#include "TileEditorCommon/Entities/EntityClipboard.h"
#include "TileEditorCommon/Entities/EntityCommands.h"
#include "TileEditorCommon/Entities/EntityDrag.h"
#include "TileEditorCommon/Entities/Gizmo.h"
#include "TileEditorCommon/Entities/TagManager.h"
#include "TileEditorCommon/Ground/Brush.h"
#include "TileEditorCommon/Ground/CollisionWorld.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"
#include "TileEditorCommon/Ground/TerrainGroundMaterialSet.h"
#include "TileEditorCommon/Pictures/IconGenerator.h"

#include <chrono>

namespace tilebuilder
{

TileEditor* TileEditor::_Instance = nullptr;

TileEditor::TileEditor(const EditorServices& services, bool bInfoBox, uint64_t uCreatorId)
    : m_services(services),
      m_uCreatorId(uCreatorId),
      m_bInfoBox(bInfoBox)
{
    QM_ASSERT(_Instance == nullptr);
    _Instance = this;
    seedRandom(static_cast<uint64_t>(std::chrono::system_clock::now().time_since_epoch().count()));
    if (m_services.pRenderer)
        m_pIconGenerator = std::make_unique<IconGenerator>(*m_services.pRenderer);
    m_toolState.pBrush = brush(0);
    m_pClutterDatabase = std::make_unique<tile::ClutterDatabase>();
    m_pClutterDatabase->loadGameDatabases();
    m_pCollision = std::make_unique<CollisionWorld>();
    m_pSurface = std::make_unique<EditorTerrainSurface>(*this, &m_pCollision->world());
    if (m_services.pRenderer)
        m_pGroundTextures = std::make_unique<GroundTextures>(*m_services.pResources);
    m_pMaterialSet = std::make_unique<TerrainGroundMaterialSet>(m_pGroundTextures.get());
    m_pMaterialSet->load(TerrainGroundMaterialSet::s_pStandardPath);
    if (m_services.pRenderer)
        m_pGroundView = std::make_unique<GroundView>(*m_services.pRenderer, *m_pMaterialSet);
    m_pClutter = std::make_unique<EditorTerrainClutter>(*this, *m_pSurface, *m_pClutterDatabase);
    if (m_services.pRenderer && m_services.pRenderer->loadClutter(*m_pClutterDatabase))
        m_pClutter->attach(m_services.pRenderer->cullingGroups(), m_services.pRenderer->clutterTypes());
    m_pTagManager = std::make_unique<TagManager>();
    m_pInstanceWorld = std::make_unique<rend::InstanceWorld>();
    m_pOriginMark = std::make_unique<OriginMark>(*m_pInstanceWorld);
    m_pEntities = std::make_unique<Entities>(*this, m_toolState);
    addEntityKinds(*m_pEntities, *m_pInstanceWorld);
    if (m_services.pRenderer)
    {
        m_services.pRenderer->setInstances(m_pInstanceWorld.get());
        m_pEntityRender = std::make_unique<EntityRender>(*m_services.pRenderer, Gizmo::allPaths());
        m_pAssetIcons = std::make_unique<AssetIcons>(*m_pEntities, *m_pIconGenerator);
    }
    m_pEntitySections = std::make_unique<EntitySections>(*m_pEntities);
    makeEntityTools();
    m_pEntityList = std::make_unique<EntityListView>(*m_pEntities);
    m_vecLibrarySources = m_pEntities->librarySources();
    m_pDataLibrary = std::make_unique<DataLibrary>();
    startCatalogue();
    m_toolState.tool = ToolPlace;
    registerContent();
    newTile(1);
}

TileEditor::~TileEditor()
{
    unregisterContent();
    m_pDataLibrary->shutdown();
    closeDocument();
    m_mapCachedTileStates.clear();
    if (m_services.pRenderer)
        m_services.pRenderer->setInstances(nullptr);
    _Instance = nullptr;
}

void TileEditor::setInterface(EditorInterfaceI* pInterface)
{
    m_pInterface = pInterface;
    if (m_pInterface)
        m_pInterface->showToolPanels(m_toolState.tool);
    markInterfaceDirty(0);
}

void TileEditor::setTool(uint8_t uTool)
{
    if (m_toolState.tool != uTool)
    {
        m_toolState.tool = uTool;
        if (uTool != ToolPlace)
            m_pEntities->clearSelection();
        if (uTool == ToolColor)
            armGroundColor();
        else
            setColorTarget(nullptr, ColorTargetNone, {}, {});
        m_toolState.pickState = PickNormal;
        if (m_pInterface)
            m_pInterface->showToolPanels(uTool);
    }
    markInterfaceDirty(0);
}

void TileEditor::markChanged(uint32_t uMask)
{
    m_pending.mark(uMask, FrameClock::clockMs());
    markInterfaceDirty(uMask);
}

void TileEditor::markInterfaceDirty(uint32_t uMask)
{
    m_uDirtyMask |= uMask;
    m_bInterfaceDirty = true;
}

bool TileEditor::takeInterfaceDirty(uint32_t& uMask)
{
    if (!m_bInterfaceDirty)
        return false;
    uMask = std::exchange(m_uDirtyMask, 0);
    m_bInterfaceDirty = false;
    return true;
}

} // namespace tilebuilder
