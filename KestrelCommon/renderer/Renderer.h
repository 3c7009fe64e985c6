#pragma once // Draws a scene: ground, sky, lines.

#include "KestrelCommon/Device/GraphicsDeviceI.h"
#include "KestrelCommon/renderer/GroundMesh.h"
#include "KestrelCommon/renderer/GroundShade.h"
#include "KestrelCommon/renderer/InstanceShade.h"
#include "KestrelCommon/renderer/OverlayDraw.h"
#include "KestrelCommon/renderer/SceneSchedule.h"
#include "KestrelCommon/renderer/TerrainSurfaceBindings.h"

namespace resource
{
class ResourceManager;
}

namespace tile
{
class ClutterDatabase;
}

namespace rend
{

class ClutterDraw;
class ClutterTypes;
class CullingGroups;
class InstanceDraw;
class InstanceWorld;

enum class SceneMode : uint8_t
{
    GroundTile = 0,
    Prefab = 1,
    GridTile = 2,
};

/// Main thread only. The device and the resource manager must outlive it.
class Renderer
{
public:
    Renderer(GraphicsDeviceI& device, resource::ResourceManager& resources);
    ~Renderer();
    Renderer(const Renderer&) = delete;
    Renderer& operator=(const Renderer&) = delete;

    /// Builds the pipelines from the shaders of the game folder. False: a shader is missing or broken
    /// (logged); what it would draw stays out and the rest works.
    bool init();

    [[nodiscard]] GraphicsDeviceI& device() { return m_device; }
    [[nodiscard]] resource::ResourceManager& resources() { return m_resources; }

    /// Made on first use.
    [[nodiscard]] TerrainSurfaceBindings& terrainBindings();

    /// Where clutter stands.
    [[nodiscard]] CullingGroups& cullingGroups() { return *m_pCullingGroups; }
    /// Builds what all clutter types need for drawing. False: a shader is missing or broken.
    bool loadClutter(const tile::ClutterDatabase& database);
    [[nodiscard]] const ClutterTypes& clutterTypes() const;
    [[nodiscard]] const ClutterDraw& clutterDraw() const { return *m_pClutterDraw; }

    /// What objects to draw; borrowed, null for none.
    void setInstances(InstanceWorld* pWorld) { m_pInstances = pWorld; }

    /// What lines to draw; borrowed, null for none.
    void setDebugDrawer(DebugDrawer* pDrawer) { m_overlay.setDebugDrawer(pDrawer); }
    [[nodiscard]] DebugDrawer* debugDrawer() const { return m_overlay.debugDrawer(); }
    /// What icons to draw; borrowed, null for none.
    /// Drawn over the scene until another is set.
    void setGrid(const std::optional<GridPlane>& grid) { m_overlay.setGrid(grid); }
    void setBillboards(const BillboardBatch* pBillboards) { m_overlay.setBillboards(pBillboards); }

    [[nodiscard]] RenderSettings& settings() { return m_settings; }
    [[nodiscard]] SceneMode sceneMode() const { return m_eSceneMode; }
    void setSceneMode(SceneMode eMode) { m_eSceneMode = eMode; }
    /// For a fresh ground tile: scene mode 0 and the distances of a tile.
    void resetForGroundTile();

    /// Draws the scene over the whole target; null is the window. Leaves no pass open. For the window
    /// a picture of the scene is kept and drawn anew only when something changed, see SceneSchedule;
    /// lines and icons come on top of it.
    void render(TargetHandle target, int iWidth, int iHeight, const SceneView& view);

    /// Draws the objects of a world alone over the whole target, whose ground stays clear with alpha 0.
    /// Leaves no pass open. False: textures of theirs are still on their way; what can be drawn is.
    bool renderObjects(TargetHandle target, int iWidth, int iHeight, const SceneView& view,
                       InstanceWorld& world);

private:
    void prepare(int iWidth, int iHeight, const SceneView& view, bool bWhole);
    void updateFrameBuffer(int iWidth, int iHeight, const SceneView& view);
    void renderWindow(int iWidth, int iHeight, const SceneView& view);
    [[nodiscard]] SceneState stateOf(int iWidth, int iHeight, const SceneView& view) const;
    [[nodiscard]] std::array<uint64_t, s_uSceneContents>
    groundState(const TerrainSurfaceBindings& ground) const;
    [[nodiscard]] bool hasGround() const;
    void drawScene(const SceneView& view, bool bWindow);
    void drawInstances(const SceneView& view, bool bWindow);
    void drawGround(const SceneView& view);
    void drawSurroundings();
    void drawRim();
    void drawQuads(const SceneView& view);

    GraphicsDeviceI& m_device;
    resource::ResourceManager& m_resources;
    std::unique_ptr<TerrainSurfaceBindings> m_pTerrainBindings;
    std::unique_ptr<CullingGroups> m_pCullingGroups;
    std::unique_ptr<ClutterDraw> m_pClutterDraw;
    std::unique_ptr<InstanceDraw> m_pInstanceDraw;
    InstanceWorld* m_pInstances = nullptr;
    std::unique_ptr<InstanceDraw> m_pObjectDraw; ///< of renderObjects(); made on first use
    RenderSettings m_settings;
    SceneMode m_eSceneMode = SceneMode::GroundTile;
    std::array<float, 3> m_arrDistances{10000.0f, 400.0f, 10000.0f};

    PipelineHandle m_groundPipeline;
    PipelineHandle m_groundDepthPipeline;
    PipelineHandle m_rimPipeline;
    PipelineHandle m_surroundingsPipeline;
    PipelineHandle m_skyPipeline;
    PipelineHandle m_quadPipeline;
    BufferHandle m_frameBuffer;
    GroundShade m_shade;
    InstanceShade m_instanceShade;
    GroundMesh m_mesh;
    OverlayDraw m_overlay;
    SceneSchedule m_schedule;
    TargetHandle m_sceneTarget; ///< the window's scene, without lines
    SceneSchedule::Size m_sceneSize{0, 0};
};

} // namespace rend
