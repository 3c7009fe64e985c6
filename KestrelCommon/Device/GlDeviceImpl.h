#pragma once // The GL device's own parts. For the GL device's sources only.

#include "KestrelCommon/Device/GlDevice.h"
#include "KestrelCommon/Device/GlProgramCache.h"

#include <epoxy/gl.h>

#include <array>
#include <unordered_map>

namespace rend
{

struct GlBuffer
{
    BufferDesc desc;
    GLuint uName = 0;
    uint64_t uRevision = 0;
};

struct GlTexture
{
    TextureDesc desc;
    GLuint uName = 0;
    GLenum eTarget = GL_TEXTURE_2D;
    bool bOfTarget = false; ///< lives and dies with a target
    uint64_t uRevision = 0;
};

struct GlPipeline
{
    PipelineDesc desc;
    GLuint uProgram = 0;
    GLuint uVertexArray = 0;
    GLint iFlipLocation = -1; ///< only without clip control
};

struct GlTarget
{
    TargetDesc desc;
    GLuint uFramebuffer = 0;
    TextureHandle colour;
    TextureHandle depth;
};

/// Rows of targets run from the top, as those of pictures do: they are drawn upside down in GL's
/// sense. The window's target is a framebuffer object too, with the window's row order (as others
/// that ask for it), copied to the window when it is shown; so it can be read and has a float depth
/// on any driver.
class GlDevice final : public GraphicsDeviceI
{
public:
    GlDevice(GlContextI& context, const GlDeviceSettings& settings);
    ~GlDevice() override;
    GlDevice(const GlDevice&) = delete;
    GlDevice& operator=(const GlDevice&) = delete;

    [[nodiscard]] bool isSoftware() const override { return m_bSoftware; }
    [[nodiscard]] bool hasCompressedTextures() const override { return m_bCompressedTextures; }
    [[nodiscard]] bool hasStorageBuffers() const override { return m_bStorageBuffers; }

    BufferHandle createBuffer(const BufferDesc& desc, std::span<const std::byte> spanInitial) override;
    bool updateBuffer(BufferHandle buffer, size_t uOffset, std::span<const std::byte> spanData) override;
    void destroyBuffer(BufferHandle buffer) override;
    TextureHandle createTexture(const TextureDesc& desc) override;
    bool updateTexture(TextureHandle texture, const TextureRegion& region, size_t uRowPitch,
                       std::span<const std::byte> spanData) override;
    void generateMips(TextureHandle texture) override;
    void destroyTexture(TextureHandle texture) override;
    PipelineHandle createPipeline(const PipelineDesc& desc) override;
    void destroyPipeline(PipelineHandle pipeline) override;
    TargetHandle createTarget(const TargetDesc& desc) override;
    [[nodiscard]] TextureHandle targetColour(TargetHandle target) const override;
    [[nodiscard]] TextureHandle targetDepth(TargetHandle target) const override;
    bool readTarget(TargetHandle target, std::span<std::byte> spanOut) override;
    void destroyTarget(TargetHandle target) override;
    bool copyTarget(TargetHandle from, TargetHandle to, bool bDepth) override;
    [[nodiscard]] uint64_t revision(BufferHandle buffer) const override;
    [[nodiscard]] uint64_t revision(TextureHandle texture) const override;

    void beginPass(TargetHandle target, const PassSettings& settings) override;
    void endPass() override;
    void setPipeline(PipelineHandle pipeline) override;
    void setTexture(uint32_t uSlot, TextureHandle texture, SamplerMode eSampler) override;
    void setUniformBuffer(uint32_t uSlot, BufferHandle buffer) override;
    void setStorageBuffer(uint32_t uSlot, BufferHandle buffer) override;
    void setVertexBuffer(uint32_t uSlot, BufferHandle buffer, size_t uOffset) override;
    void setIndexBuffer(BufferHandle buffer, IndexWidth eWidth) override;
    void setScissor(int iX, int iY, int iWidth, int iHeight) override;
    void clearScissor() override;
    void draw(uint32_t uVertices, uint32_t uFirst, uint32_t uInstances, uint32_t uFirstInstance) override;
    void drawIndexed(uint32_t uIndices, uint32_t uFirst, uint32_t uInstances,
                     uint32_t uFirstInstance) override;

    bool resize(int iWidth, int iHeight) override;
    [[nodiscard]] int width() const override { return m_iWidth; }
    [[nodiscard]] int height() const override { return m_iHeight; }
    bool present() override;
    [[nodiscard]] double gpuMilliseconds() const override { return m_fGpuMilliseconds; }

private:
    static constexpr uint32_t s_uTextureSlots = 16;
    static constexpr size_t s_uTimers = 4;

    struct VertexBinding
    {
        BufferHandle buffer;
        size_t uOffset = 0;
    };

    void createSamplers();
    [[nodiscard]] GLuint linkProgram(const PipelineDesc& desc);
    [[nodiscard]] std::string stageSource(const PipelineDesc& desc, bool bVertex) const;
    [[nodiscard]] bool createWindowTarget(int iWidth, int iHeight);
    void bindForEdit(const GlTexture& texture) const;
    void applyState(const GlPipeline& pipeline) const;
    [[nodiscard]] const GlPipeline* prepareDraw(bool bIndexed);
    void beginTimer();
    void endTimer();
    [[nodiscard]] const GlTarget* currentTarget() const;

    GlContextI& m_context;
    GlProgramCache m_programCache;
    std::string m_sDriver; ///< vendor, renderer and version: a part of program keys
    bool m_bSoftware = false;
    bool m_bCompressedTextures = false;
    bool m_bAnisotropy = false; ///< not where a CPU draws, forced path or not
    bool m_bClipControl = false;
    bool m_bStorageBuffers = false;
    float m_fMaxAnisotropy = 1.0f;
    int m_iWidth = 0;
    int m_iHeight = 0;

    uint32_t m_uNextId = 1;
    uint64_t m_uLastRevision = 0;
    std::unordered_map<uint32_t, GlBuffer> m_mapBuffers;
    std::unordered_map<uint32_t, GlTexture> m_mapTextures;
    std::unordered_map<uint32_t, GlPipeline> m_mapPipelines;
    std::unordered_map<uint32_t, GlTarget> m_mapTargets;
    std::array<GLuint, 5> m_arrSamplers{};
    TargetHandle m_windowTarget;

    TargetHandle m_currentTarget; ///< of the open pass; null outside of one
    PipelineHandle m_pipeline;
    std::array<VertexBinding, 8> m_arrVertexBuffers{};
    BufferHandle m_indexBuffer;
    IndexWidth m_eIndexWidth = IndexWidth::Bits32;

    std::array<GLuint, s_uTimers> m_arrTimers{};
    std::array<double, s_uTimers> m_arrTimerStarts{}; ///< seconds
    uint64_t m_uTimersStarted = 0;
    uint64_t m_uTimersRead = 0;
    bool m_bTiming = false;
    double m_fGpuMilliseconds = 0.0;
};

} // namespace rend
