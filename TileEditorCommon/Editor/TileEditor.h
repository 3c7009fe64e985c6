#pragma once // The editor object: the open document, the tools, and what input does to them.

#include "TileEditorCommon/Contracts/DocumentHostI.h"
#include "TileEditorCommon/Contracts/EditorActionsI.h"
#include "TileEditorCommon/Contracts/EditorInterfaceI.h"
#include "TileEditorCommon/Contracts/EditorSinkI.h"
#include "TileEditorCommon/Editor/PendingChange.h"
#include "TileEditorCommon/Editor/StrokeClock.h"

#include <functional>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>
#include <map>
#include <memory>

class InputManager;
class UgcBase;
class UgcManager;
struct Camera;
namespace platform
{
struct AudioListener;
}
namespace rend
{
class GraphicsDeviceI;
class InstanceWorld;
class Renderer;
} // namespace rend
namespace resource
{
class ResourceManager;
}
namespace tile
{
class ClutterDatabase;
}

namespace tilebuilder
{

class AssetIcons;
struct BrushDab;
class CollisionWorld;
class DataLibrary;
class EditorTerrainClutter;
class EditorTerrainSurface;
class Entities;
class EntityClipboard;
class EntityCommands;
class EntityDrag;
class EntityListView;
class EntityRender;
class EntityRenderI;
class EntitySections;
class GroundTextures;
class GroundView;
class IconGenerator;
class OriginMark;
class TagManager;
class TerrainGroundMaterialSet;
class Tile;
struct CachedTile;
struct PickRay;
struct RayHit;
enum class SaveResult : uint8_t;

/// What the editor object works with; all borrowed and longer-lived.
struct EditorServices
{
    Camera* pCamera = nullptr;
    InputManager* pInput = nullptr;
    platform::AudioListener* pAudio = nullptr;
    rend::GraphicsDeviceI* pDevice = nullptr; ///< null: nothing is drawn, in tests
    resource::ResourceManager* pResources = nullptr;
    rend::Renderer* pRenderer = nullptr;
};

/// Holds the one open document and turns input into changes of it. Exactly one exists. Its
/// sources are rooms by concern: update, paint, documents, save, actions, batch.
///
/// Threads: main thread only. Work fans out over the task pools and joins before it returns.
class TileEditor : public EditorActionsI, public EditorSinkI, public DocumentHostI
{
public:
    static TileEditor* _Instance;
    static constexpr float s_fRayLength = 4000.0f; ///< metres

    /// Opens an empty tile of one cell. bInfoBox: foreign files keep their names.
    TileEditor(const EditorServices& services, bool bInfoBox, uint64_t uCreatorId);
    ~TileEditor() override;
    TileEditor(const TileEditor&) = delete;
    TileEditor& operator=(const TileEditor&) = delete;

    /// The windows; null in a program without any. Selects the tool once they are there.
    void setInterface(EditorInterfaceI* pInterface);

    // Frame

    /// One frame's work on the document, seconds since the last.
    void update(float dt);
    /// A left press that the interface left over.
    void leftMouseDown();
    [[nodiscard]] bool isRunning() const { return m_bRunning; }

    /// Whether the windows must refresh, and what changed; clears both.
    [[nodiscard]] bool takeInterfaceDirty(uint32_t& uMask);

    // Documents

    void newTile(int32_t iSize);
    /// False: the path leads nowhere or the file is broken; the open document stays.
    bool openTile(const std::string& sPath, bool bForget);
    void closeDocument();
    /// Asks about unsaved changes where there are any, then does it.
    void whenSafe(std::function<void()> fnAction);

    /// Loads and saves again every tile of a list file; how many went through.
    uint32_t processTiles(const std::string& sListPath);

    /// Bytes of all states of the open document and of those that were left.
    [[nodiscard]] uint64_t undoMemoryInUse() const;
    void dropCachedTile(const std::string& sPath);

    [[nodiscard]] Tile* tile() const { return m_pTile.get(); }
    [[nodiscard]] EditorTerrainSurface& surface() { return *m_pSurface; }
    [[nodiscard]] EditorTerrainClutter& clutter() { return *m_pClutter; }
    [[nodiscard]] Entities& entityStore() { return *m_pEntities; }

    // EditorActionsI

    void runEntityAction(uint32_t uAction) override;
    [[nodiscard]] bool canRunEntityAction(uint32_t uAction) const override;
    [[nodiscard]] std::vector<EntityMenuItem> entityMenu() override;
    void runEntityMenu(uint32_t uCommand) override;
    [[nodiscard]] bool isSnapping() const override;
    void toggleSnapping() override;
    [[nodiscard]] bool transformsAroundOrigin() const override;
    void toggleTransformOrigin() override;
    [[nodiscard]] EditorToolState& toolState() override { return m_toolState; }
    void setTool(uint8_t uTool) override;
    [[nodiscard]] std::vector<BrushChoice> brushes() const override;
    [[nodiscard]] std::vector<MaterialSetChoice> materialSets() const override;
    [[nodiscard]] BoundMaterials boundMaterials() const override;
    [[nodiscard]] uint64_t boundMaterialHash() const override;
    bool bindMaterialSet(const std::string& sPath) override;
    void setColorTarget(ColorRgba* pTarget, uint8_t uKind, ColorCallback onChanged,
                        ColorCallback onPicked) override;
    void changeColor(const ColorRgba& color) override;
    [[nodiscard]] std::vector<std::string> clutterNames() const override;
    [[nodiscard]] EntityListI* entities() override;
    [[nodiscard]] std::span<LibrarySourceI* const> librarySources() override;
    [[nodiscard]] std::vector<LibraryContent> libraryContents() const override;
    void beginPlacement(const LibraryPlacement& placement) override;
    void hideSelection() override;
    void showHidden() override;
    [[nodiscard]] bool isOriginShown() const override;
    void toggleOrigin() override;
    void openOutside(const std::string& sPath) override;
    void copyText(const std::string& sText) override;
    [[nodiscard]] bool isDocumentOpen() const override;
    [[nodiscard]] std::string documentName() const override;
    [[nodiscard]] std::string documentDirectory() const override;
    [[nodiscard]] Uuid documentUuid() const override;
    [[nodiscard]] bool isUnsaved() const override;
    [[nodiscard]] std::vector<std::string> pathStack() const override { return m_vecPathStack; }
    void save() override;
    void saveAs(const std::string& sName, const std::string& sDirectory) override;
    void requestNewTile(int32_t iSize) override;
    void openDocument(const std::string& sPath) override;
    void openStackLevel(size_t uLevel) override;
    [[nodiscard]] HistoryStatus history() const override;
    void undo() override;
    void redo() override;
    void restoreFromDisk() override;
    void resetUndoHistory() override;
    [[nodiscard]] bool canDeleteTile() const override;
    void deleteTile() override;
    void requestExit() override;
    [[nodiscard]] std::vector<TileFile> tileFiles() const override;
    [[nodiscard]] std::vector<std::string> tileCategories() const override;
    [[nodiscard]] TerrainCategory terrainCategory() const override;
    void setTerrainCategory(const TerrainCategory& category) override;
    [[nodiscard]] CameraStatus cameraStatus() const override;
    void setFlySpeed(float fSpeed) override;
    void moveCameraForward(float fDistance) override;
    [[nodiscard]] std::optional<std::array<float, 3>> cursorHit() const override;
    void focusSelection(bool bLastOnly) override;
    void placeCharacterAtCursor() override;
    void placeGridAtCursor() override;
    void toggleGrid() override;
    [[nodiscard]] bool hasGrid() const override;
    [[nodiscard]] std::optional<float> gridSpacing() const override;
    [[nodiscard]] std::vector<WorldLabel> worldLabels() const override { return m_vecWorldLabels; }

    // EditorSinkI

    void markChanged(uint32_t uMask) override;
    void markInterfaceDirty(uint32_t uMask) override;

    // DocumentHostI

    void reinitialise(int32_t iWidth, int32_t iHeight, uint32_t uType, const std::string& sPath) override;
    [[nodiscard]] bool keepsForeignNames() const override { return m_bInfoBox; }
    void skipPendingChanges() override { m_pending.skipFrames(); }
    [[nodiscard]] uint64_t cachedUndoMemory() const override;
    uint64_t evictOldestCachedTile() override;
    [[nodiscard]] bool hasContext() const override;
    std::string contextDirectory() override;
    [[nodiscard]] std::string findUserTile(std::string_view sFileName) const override;
    std::string createTileItem(std::string_view sName) override;
    void discardTileItem(std::string_view sDirectory) override;

private:
    // Update

    void updateHistory();
    void updateUndoKeys();
    bool pushPending();
    void labelCorners();
    void updateTools(float dt);
    void openEntityMenu();
    void endPress();
    void abandonPress();
    [[nodiscard]] std::optional<glm::vec3> groundUnderCursor() const;

    // Paint

    void paintStep(float dt);
    void paint(const glm::vec3& hit, float fStep);
    void paintHeight(const BrushDab& dab, bool bControl);
    [[nodiscard]] glm::vec4 strokeColor() const;
    void armGroundColor();
    void pickGroundColor();

    // Entities

    [[nodiscard]] PickRay cursorRay() const;
    /// The first thing that a ray meets: a shape, but those of some entities, or the ground.
    [[nodiscard]] std::optional<RayHit> castScene(const PickRay& ray,
                                                  const std::unordered_set<uint32_t>& setIgnored) const;
    void updateEntityTool();
    void placementStep();
    void placeNew(const RayHit& hit);
    void beginMiddleDrag();
    void makeEntityTools();
    void applyTransformDrag();
    void drawTransformTool(EntityRenderI& render);
    bool beginTransformDrag();
    void endPlacement();
    void clickEntities();
    void connectTo(const Entity& picked);
    void pickEntityColor(const Entity& picked);
    void updateEntities(float dt);

    // Windows

    void startCatalogue();
    void updateCatalogue();

    // Documents

    [[nodiscard]] std::unique_ptr<Tile> makeTile();
    [[nodiscard]] std::string documentPath() const;
    void leaveTile();
    bool returnToTile(const std::string& sPath);
    void onDocumentOpened(int32_t iWidth, int32_t iHeight, uint32_t uType, const std::string& sPath);
    void frameDocument(int32_t iWidth, int32_t iHeight);

    // Content items

    void registerContent();
    void unregisterContent();
    void onItemsAdded(const std::vector<std::shared_ptr<UgcBase>>& vecItems);
    void onItemsRemoved(const std::vector<std::shared_ptr<UgcBase>>& vecItems);
    [[nodiscard]] bool isInContext(const UgcBase& item) const;

    // Save

    void finishSave(SaveResult eResult, const std::string& sName, const std::string& sDirectory);
    void makePreview(const std::string& sDirectory);
    void updateContentItem(const std::string& sDirectory);
    void showMessage(const std::string& sText);

    EditorServices m_services;
    EditorInterfaceI* m_pInterface = nullptr;

    std::vector<std::string> m_vecPathStack; ///< documents on the way to the open one
    EditorToolState m_toolState;
    std::unique_ptr<CollisionWorld> m_pCollision;
    std::unique_ptr<EditorTerrainSurface> m_pSurface;
    std::unique_ptr<GroundTextures> m_pGroundTextures; ///< null without a device
    std::unique_ptr<TerrainGroundMaterialSet> m_pMaterialSet;
    std::unique_ptr<GroundView> m_pGroundView; ///< null without a device
    std::unique_ptr<tile::ClutterDatabase> m_pClutterDatabase;
    std::unique_ptr<EditorTerrainClutter> m_pClutter;
    std::unique_ptr<TagManager> m_pTagManager;
    std::unique_ptr<rend::InstanceWorld> m_pInstanceWorld;
    std::unique_ptr<OriginMark> m_pOriginMark;
    std::unique_ptr<EntityRender> m_pEntityRender; ///< null without a renderer
    std::unique_ptr<Entities> m_pEntities;
    std::unique_ptr<EntitySections> m_pEntitySections;
    std::unique_ptr<EntityDrag> m_pEntityDrag;
    std::unique_ptr<EntityClipboard> m_pEntityClipboard;
    std::unique_ptr<EntityCommands> m_pEntityCommands;
    std::optional<glm::vec3> m_menuPoint; ///< under the cursor when the right-click menu opened
    std::unique_ptr<EntityListView> m_pEntityList;
    std::vector<LibrarySourceI*> m_vecLibrarySources;
    std::unique_ptr<DataLibrary> m_pDataLibrary;
    std::unique_ptr<IconGenerator> m_pIconGenerator; ///< null without a device
    std::unique_ptr<AssetIcons> m_pAssetIcons;       ///< null without a device
    std::unique_ptr<Tile> m_pTile;
    std::map<std::string, std::unique_ptr<CachedTile>>
        m_mapCachedTileStates;             ///< documents that were left, by path
    std::unique_ptr<Tile> m_pIncomingTile; ///< being loaded; takes the open one's place once it is good

    uint64_t m_uDocumentsLeft = 0;
    uint64_t m_uCreatorId;
    bool m_bInfoBox;
    bool m_bGroundOpen = false;  ///< surface and clutter are live
    bool m_bObjectsOpen = false; ///< the document has entities
    bool m_bRunning = true;
    bool m_bLossAccepted = false; ///< the user saves without the objects that nobody knows here

    std::vector<WorldLabel> m_vecWorldLabels; ///< of this frame
    StrokeClock m_strokeClock;
    bool m_bStrokeDirty = false;  ///< a stroke touched the ground since it started
    bool m_bStrokeActive = false; ///< the button went down over the view with a painting tool
    PendingChange m_pending;
    bool m_bInterfaceDirty = true;
    uint32_t m_uDirtyMask = 0;
};

} // namespace tilebuilder
