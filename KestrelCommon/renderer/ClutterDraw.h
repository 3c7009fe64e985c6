#pragma once // Draws the clutter of a frame.

#include "KestrelCommon/Device/GraphicsDeviceI.h"
#include "KestrelCommon/renderer/ClutterGather.h"
#include "KestrelCommon/renderer/ClutterTypes.h"

namespace resource
{
class ResourceManager;
}

namespace rend
{

/// What a draw needs to know of its view.
struct ClutterView
{
    glm::mat4 viewProjection{1.0f};
    glm::vec2 camera{0.0f}; ///< metres
    TextureHandle shade{};  ///< terrain_shade's map, null for none
    bool bWindow = false;   ///< a frame of the window: it moves, and its cost counts
    bool bRest = false;     ///< a picture that will stay for a while
};

/// Main thread only. The device and the resource manager must outlive it.
class ClutterDraw
{
public:
    static constexpr size_t s_uMaxListBytes = 0x8000000; ///< a list of this size isn't drawn

    ClutterDraw(GraphicsDeviceI& device, resource::ResourceManager& resources);
    ~ClutterDraw();
    ClutterDraw(const ClutterDraw&) = delete;
    ClutterDraw& operator=(const ClutterDraw&) = delete;

    /// Builds the pipelines, buffers, meshes and texture arrays of all types. False: a shader is
    /// missing or broken.
    bool load(const tile::ClutterDatabase& database);
    [[nodiscard]] const ClutterTypes& types() const { return m_types; }

    /// Takes in the groups that changed; before draw(), once a frame.
    void prepare(CullingGroups& groups) const { groups.rebuildClutter(m_types.impostorOf()); }
    /// Plants sway, so that no picture of them lasts; not where a CPU draws.
    [[nodiscard]] bool isMoving() const { return !m_device.isSoftware() && drawnCount() > 0; }

    /// Gathers and draws, within a pass whose frame values are bound.
    void draw(const CullingGroups& groups, const ClutterView& view);

    /// Whether the last draw left plants out, as one in motion does on a CPU.
    [[nodiscard]] bool isThinned() const { return m_gather.isThinned(); }
    /// Instances that the last draw showed.
    [[nodiscard]] size_t drawnCount() const;

private:
    struct MeshBuffers
    {
        BufferHandle vertices;
        BufferHandle indices;
        uint32_t uIndices = 0;
    };

    void release();
    bool createPipelines();
    [[nodiscard]] ClutterDensity density(const ClutterView& view);
    void drawNear();
    void drawFar();

    GraphicsDeviceI& m_device;
    resource::ResourceManager& m_resources;
    ClutterTypes m_types;
    ClutterGather m_gather;
    PipelineHandle m_pipeline;
    PipelineHandle m_impostorPipeline;
    BufferHandle m_gpuClutterBuffer;
    BufferHandle m_gpuClutterImpostorBuffer;
    BufferHandle m_drawBuffer;
    TextureHandle m_textures;
    TextureHandle m_impostorTextures;
    std::vector<MeshBuffers> m_vecMeshes;

    // On a CPU: how much of the clutter is drawn follows the time that frames take.
    double m_fLastFrame = 0.0; ///< seconds
    uint64_t m_uLastTick = 0;  ///< of the frame loop
    double m_fFrameTime = 0.0; ///< seconds, smoothed
    float m_fBudget;           ///< instances
};

} // namespace rend
