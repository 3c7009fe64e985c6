#pragma once // A graphics device with no GPU behind it, for tests of what is drawn.

#include "KestrelCommon/Device/GraphicsDeviceI.h"

#include <unordered_map>
#include <vector>

namespace rend
{

/// Keeps buffers' and textures' bytes and a list of what was bound and drawn. Refuses what a real
/// device refuses, with the same log lines.
class RecordingDevice : public GraphicsDeviceI
{
public:
    enum class CallKind : uint8_t
    {
        BeginPass,
        EndPass,
        SetPipeline,
        SetTexture,
        SetUniformBuffer,
        SetVertexBuffer,
        SetIndexBuffer,
        SetScissor,
        ClearScissor,
        Draw,
        DrawIndexed,
        UpdateBuffer,
        UpdateTexture,
        Present,
        CopyTarget,
    };

    /// uId: the resource's handle; uA to uD: the call's own numbers in their order.
    struct Call
    {
        CallKind eKind;
        uint32_t uId = 0;
        uint32_t uA = 0;
        uint32_t uB = 0;
        uint32_t uC = 0;
        uint32_t uD = 0;
        bool operator==(const Call&) const = default;
    };

    struct Buffer
    {
        BufferDesc desc;
        std::vector<std::byte> vecBytes;
        uint64_t uRevision = 0;
    };

    /// Mip 0 of every layer, one after the other; for compressed layouts, blocks.
    struct Texture
    {
        TextureDesc desc;
        std::vector<std::byte> vecBytes;
        bool bMipsMade = false;
        uint64_t uRevision = 0;
    };

    explicit RecordingDevice(int iWidth = 1920, int iHeight = 1080) : m_iWidth(iWidth), m_iHeight(iHeight) {}

    // What tests read

    [[nodiscard]] const std::vector<Call>& calls() const { return m_vecCalls; }
    [[nodiscard]] size_t count(CallKind eKind) const;
    void clearCalls() { m_vecCalls.clear(); }
    /// Null when there is none under the handle (any more).
    [[nodiscard]] const Buffer* buffer(BufferHandle buffer) const;
    [[nodiscard]] const Texture* texture(TextureHandle texture) const;
    [[nodiscard]] const PipelineDesc* pipeline(PipelineHandle pipeline) const;
    [[nodiscard]] const TargetDesc* target(TargetHandle target) const;
    [[nodiscard]] size_t bufferCount() const { return m_mapBuffers.size(); }
    [[nodiscard]] size_t textureCount() const { return m_mapTextures.size(); }
    [[nodiscard]] size_t targetCount() const { return m_mapTargets.size(); }
    /// What isSoftware() answers.
    bool m_bSoftware = false;
    /// What hasCompressedTextures() answers.
    bool m_bCompressed = false;

    // The device

    [[nodiscard]] bool isSoftware() const override { return m_bSoftware; }
    [[nodiscard]] bool hasCompressedTextures() const override { return m_bCompressed; }
    BufferHandle createBuffer(const BufferDesc& desc, std::span<const std::byte> spanInitial) override;
    bool updateBuffer(BufferHandle buffer, size_t uOffset, std::span<const std::byte> spanData) override;
    void destroyBuffer(BufferHandle buffer) override { m_mapBuffers.erase(buffer.uId); }
    TextureHandle createTexture(const TextureDesc& desc) override;
    bool updateTexture(TextureHandle texture, const TextureRegion& region, size_t uRowPitch,
                       std::span<const std::byte> spanData) override;
    void generateMips(TextureHandle texture) override;
    void destroyTexture(TextureHandle texture) override { m_mapTextures.erase(texture.uId); }
    PipelineHandle createPipeline(const PipelineDesc& desc) override;
    void destroyPipeline(PipelineHandle pipeline) override { m_mapPipelines.erase(pipeline.uId); }
    TargetHandle createTarget(const TargetDesc& desc) override;
    [[nodiscard]] TextureHandle targetColour(TargetHandle target) const override;
    [[nodiscard]] TextureHandle targetDepth(TargetHandle target) const override;
    /// Black with full alpha.
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
    [[nodiscard]] double gpuMilliseconds() const override { return 0.0; }

private:
    struct Target
    {
        TargetDesc desc;
        TextureHandle colour;
        TextureHandle depth;
    };

    int m_iWidth;
    int m_iHeight;
    bool m_bInPass = false;
    PipelineHandle m_pipeline;
    uint32_t m_uNextId = 1;
    uint64_t m_uLastRevision = 0;
    std::unordered_map<uint32_t, Buffer> m_mapBuffers;
    std::unordered_map<uint32_t, Texture> m_mapTextures;
    std::unordered_map<uint32_t, PipelineDesc> m_mapPipelines;
    std::unordered_map<uint32_t, Target> m_mapTargets;
    std::vector<Call> m_vecCalls;
};

} // namespace rend
