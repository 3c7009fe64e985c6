#pragma once // Draws the instances of a world, and the outlines of those that are highlighted.

#include "KestrelCommon/Device/GraphicsDeviceI.h"
#include "KestrelCommon/renderer/InstanceGather.h"

namespace resource
{
class ResourceManager;
}

namespace rend
{

/// What a draw needs to know of its view.
struct InstanceView
{
    glm::mat4 viewProjection{1.0f};
    glm::vec3 eye{0.0f};
    TextureHandle shade{};  ///< terrain_shade's map, null for none
    bool bInMotion = false; ///< a frame of many, in which a CPU may leave things out
};

/// Main thread only. The device and the resource manager must outlive it; a world is borrowed for the call.
class InstanceDraw
{
public:
    InstanceDraw(GraphicsDeviceI& device, resource::ResourceManager& resources);
    ~InstanceDraw();
    InstanceDraw(const InstanceDraw&) = delete;
    InstanceDraw& operator=(const InstanceDraw&) = delete;

    /// False: a shader is missing or broken.
    bool init();

    /// Within a pass whose frame values are bound.
    void draw(InstanceWorld& world, const InstanceView& view);
    /// Whether the last draw left things out that a picture at rest should show.
    [[nodiscard]] bool isThinned() const { return m_gather.isThinned(); }
    /// Changes when a texture in use gets its picture.
    [[nodiscard]] uint64_t textureRevision() const;

    /// Paints the outlines over the scene; outside of a pass. They need a target with depth to tell what
    /// is hidden.
    void drawOutlines(InstanceWorld& world, TargetHandle scene, int iWidth, int iHeight, bool bWindowRows,
                      const glm::mat4& viewProjection, BufferHandle frame);

    // The map of shadows on the ground, see InstanceShade; places are metres along X and Y

    /// Begins a pass. fReach: metres that the target's side covers.
    void beginShade(TargetHandle target, float fReach, const glm::vec3& sunDirection, float fLowestSun);
    /// Within it, draws what throws shadows onto a part of the ground; the scissor is the caller's. The
    /// triangles that were drawn.
    uint64_t drawShade(const InstanceWorld& world, const glm::vec2& low, const glm::vec2& high,
                       const glm::vec3& sunDirection);

private:
    struct Part
    {
        uint32_t uFirst = 0;
        uint32_t uIndices = 0;
        std::array<TextureHandle, 3> arrTextures{};
        BufferHandle constants; ///< owned
        uint32_t uPage = 0;
    };
    struct Mesh
    {
        uint32_t uGeneration = 0; ///< of the renderable; 0: not made
        BufferHandle vertices;
        BufferHandle indices;
        std::vector<Part> vecParts;
    };
    struct Rect
    {
        int iX, iY, iWidth, iHeight;
    };

    void release(Mesh& mesh);
    const Mesh& meshOf(const InstanceWorld& world, uint32_t uRenderable);
    void makeParts(Mesh& mesh, const resource::Renderable& renderable);
    [[nodiscard]] TextureHandle texture(const std::string& sPath, TextureHandle fallback,
                                        resource::TextureResourceLayout eLayout);
    [[nodiscard]] TextureHandle plainTexture(std::string_view sName, const std::array<uint8_t, 4>& arrColour,
                                             bool bSrgb);
    void countTriangles(const InstanceWorld& world);
    [[nodiscard]] static Rect highlightRect(const InstanceWorld& world, const glm::mat4& viewProjection,
                                            int iWidth, int iHeight);

    GraphicsDeviceI& m_device;
    resource::ResourceManager& m_resources;
    InstanceGather m_gather;
    PipelineHandle m_pipeline;
    PipelineHandle m_maskPipeline;
    PipelineHandle m_outlinePipeline;
    PipelineHandle m_shadePipeline;
    PipelineHandle m_shadeClearPipeline;
    BufferHandle m_shadeBuffer;
    BufferHandle m_viewBuffer;
    TextureHandle m_white;
    TextureHandle m_flat;
    TextureHandle m_matt;
    std::vector<Mesh> m_vecMeshes;            ///< by renderable
    std::vector<uint32_t> m_vecTriangles;     ///< by kind
    uint32_t m_uWorld = 0;                    ///< whose kinds they are
    std::vector<TextureHandle> m_vecTextures; ///< of files, each once
    TargetHandle m_mask;
    int m_iMaskWidth = 0;
    int m_iMaskHeight = 0;
    bool m_bMaskWindowRows = false;
};

} // namespace rend
