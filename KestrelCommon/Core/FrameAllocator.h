#pragma once // Per-thread scratch memory that lives for one frame.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

/// A bump allocator of 4 MiB. Belongs to one thread; only resetAll() is called from another,
/// at a point of the frame at which no other thread uses its own.
class FrameAllocator
{
public:
    static constexpr size_t s_uCapacity = 0x400000;
    static constexpr size_t s_uAlignment = 16;
    static constexpr size_t s_uSlots = 1024;

    explicit FrameAllocator(uint32_t uIndex);
    ~FrameAllocator();
    FrameAllocator(const FrameAllocator&) = delete;
    FrameAllocator& operator=(const FrameAllocator&) = delete;

    /// Memory of at least that size, aligned to 16, until reset(). When the buffer is full
    /// it comes from the heap, with an error line. A size of 0 moves nothing.
    void* allocate(size_t uSize);

    /// Frees the heap blocks and starts the buffer anew.
    void reset();

    [[nodiscard]] size_t used() const { return m_uUsed; }
    [[nodiscard]] size_t heapBlocks() const { return m_vecHeapBlocks.size(); }

    /// This thread's allocator, made and registered on first use; null with more than 1024 threads.
    static FrameAllocator* ofThread();

    /// Resets every registered allocator.
    static void resetAll();

private:
    struct AlignedDelete
    {
        void operator()(std::byte* pMemory) const;
    };
    using Block = std::unique_ptr<std::byte, AlignedDelete>;
    static Block allocateBlock(size_t uSize);

    size_t m_uUsed = 0;
    Block m_pBuffer;
    std::vector<Block> m_vecHeapBlocks;
    uint32_t m_uIndex;
};

/// The registered allocator of each slot, or null.
extern std::array<FrameAllocator*, FrameAllocator::s_uSlots> g_arrUsedAllocators;
