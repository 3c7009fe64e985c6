#pragma once // Buffers that are lent for one draw.

#include "KestrelCommon/Device/GraphicsDeviceI.h"

#include <vector>

namespace resource
{

/// A buffer on loan; its capacity may be above the size that was asked for.
struct BorrowedBuffer
{
    rend::BufferHandle buffer;
    size_t uCapacity = 0; ///< bytes
    rend::BufferKind eKind = rend::BufferKind::Vertex;
    uint64_t uLastReturnFrame = 0;
};

/// Threads: main thread only.
class BufferPool
{
public:
    explicit BufferPool(rend::GraphicsDeviceI& device) : m_device(device) {}
    ~BufferPool();
    BufferPool(const BufferPool&) = delete;
    BufferPool& operator=(const BufferPool&) = delete;

    /// The smallest free buffer of the kind whose capacity is at least uSize bytes and below ten times
    /// that, else a new one. A null buffer when the device refuses.
    [[nodiscard]] BorrowedBuffer borrow(size_t uSize, size_t uStride, rend::BufferKind eKind);
    void giveBack(BorrowedBuffer borrowed);

    /// Counts a frame and destroys what came back 5 frames ago or earlier.
    void update();

    [[nodiscard]] size_t freeCount() const { return m_vecFree.size(); }

private:
    rend::GraphicsDeviceI& m_device;
    std::vector<BorrowedBuffer> m_vecFree;
    uint64_t m_uFrameCounter = 0;
    uint32_t m_uCreated = 0;
};

} // namespace resource
