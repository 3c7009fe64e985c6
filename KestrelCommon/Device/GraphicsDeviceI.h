#pragma once // The graphics device: what drawing code asks of a GPU.

#include "KestrelCommon/Device/DeviceTypes.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace rend
{

/// One graphics context. Resources are named by handles; 0 is the null handle, which every
/// call takes and ignores. A refused call logs one line and yields the null handle or false.
///
/// State: a pipeline, up to 16 textures, uniform and vertex buffers stay bound until replaced;
/// beginPass() forgets them all.
/// Space:  clip space has y up and depth 0 (near) to 1; textures have row 0 at the top when
///         they are pictures, and a target read back has its top row first.
/// Threads: main thread only.
class GraphicsDeviceI
{
public:
    virtual ~GraphicsDeviceI() = default;

    /// True when a CPU does the drawing, so that costly passes are worth leaving out.
    [[nodiscard]] virtual bool isSoftware() const = 0;

    /// True when textures may have the layouts Bc1 to Bc5, with bSrgb too.
    [[nodiscard]] virtual bool hasCompressedTextures() const { return false; }

    /// True when vertex shaders can read whole buffers, see setStorageBuffer().
    [[nodiscard]] virtual bool hasStorageBuffers() const { return false; }

    // Resources

    /// Initial data may be empty; else it must have the buffer's size.
    virtual BufferHandle createBuffer(const BufferDesc& desc, std::span<const std::byte> spanInitial) = 0;
    virtual bool updateBuffer(BufferHandle buffer, size_t uOffset, std::span<const std::byte> spanData) = 0;
    virtual void destroyBuffer(BufferHandle buffer) = 0;

    virtual TextureHandle createTexture(const TextureDesc& desc) = 0;
    /// Rows of texels (or of 4 x 4 blocks) at uRowPitch bytes; the rectangle lies within the mip.
    virtual bool updateTexture(TextureHandle texture, const TextureRegion& region, size_t uRowPitch,
                               std::span<const std::byte> spanData) = 0;
    /// Fills the mips above 0 from mip 0; for uncompressed layouts.
    virtual void generateMips(TextureHandle texture) = 0;
    virtual void destroyTexture(TextureHandle texture) = 0;

    /// Compiles and links, or takes the program from the binary cache. Null with the compiler's
    /// log on the shader channel when that fails.
    virtual PipelineHandle createPipeline(const PipelineDesc& desc) = 0;
    virtual void destroyPipeline(PipelineHandle pipeline) = 0;

    /// A colour target with depth, to draw into and to sample or read.
    virtual TargetHandle createTarget(const TargetDesc& desc) = 0;
    [[nodiscard]] virtual TextureHandle targetColour(TargetHandle target) const = 0;
    [[nodiscard]] virtual TextureHandle targetDepth(TargetHandle target) const = 0;
    /// RGBA bytes, top row first: width * height * 4. Null: the window's target.
    virtual bool readTarget(TargetHandle target, std::span<std::byte> spanOut) = 0;
    virtual void destroyTarget(TargetHandle target) = 0;

    /// Fills one target from another, outside of a pass; null is the window's. Colour is smoothed when
    /// the sizes differ, depth takes the nearest. Depth is left alone where one of them has none.
    virtual bool copyTarget(TargetHandle from, TargetHandle to, bool bDepth) = 0;

    /// Differs after each change of the content; 0 for what doesn't exist.
    [[nodiscard]] virtual uint64_t revision(BufferHandle buffer) const = 0;
    [[nodiscard]] virtual uint64_t revision(TextureHandle texture) const = 0;

    // Drawing

    /// The window's own target when null. Clears what the settings say.
    virtual void beginPass(TargetHandle target, const PassSettings& settings) = 0;
    virtual void endPass() = 0;

    virtual void setPipeline(PipelineHandle pipeline) = 0;
    virtual void setTexture(uint32_t uSlot, TextureHandle texture, SamplerMode eSampler) = 0;
    virtual void setUniformBuffer(uint32_t uSlot, BufferHandle buffer) = 0;
    /// A buffer of any kind as "layout(std430, binding = slot) readonly buffer".
    virtual void setStorageBuffer(uint32_t /*uSlot*/, BufferHandle /*buffer*/) {}
    virtual void setVertexBuffer(uint32_t uSlot, BufferHandle buffer, size_t uOffset = 0) = 0;
    virtual void setIndexBuffer(BufferHandle buffer, IndexWidth eWidth) = 0;
    /// Pixels, top left origin.
    virtual void setScissor(int iX, int iY, int iWidth, int iHeight) = 0;
    virtual void clearScissor() = 0;

    virtual void draw(uint32_t uVertices, uint32_t uFirst, uint32_t uInstances = 1,
                      uint32_t uFirstInstance = 0) = 0;
    virtual void drawIndexed(uint32_t uIndices, uint32_t uFirst, uint32_t uInstances = 1,
                             uint32_t uFirstInstance = 0) = 0;

    // Frame

    /// The size of the window's target; a size of 0 is ignored.
    virtual bool resize(int iWidth, int iHeight) = 0;
    [[nodiscard]] virtual int width() const = 0;
    [[nodiscard]] virtual int height() const = 0;

    /// Shows the window's target. False: the device is lost.
    virtual bool present() = 0;

    /// GPU milliseconds of the latest frame that is known.
    [[nodiscard]] virtual double gpuMilliseconds() const = 0;
};

} // namespace rend
