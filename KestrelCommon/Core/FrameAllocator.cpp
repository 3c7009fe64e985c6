#include "KestrelCommon/Core/FrameAllocator.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"

#include <atomic>
#include <mutex>
#include <new>
#include <optional>

std::array<FrameAllocator*, FrameAllocator::s_uSlots> g_arrUsedAllocators{};

namespace
{

std::mutex s_slotLock;
std::atomic<uint32_t> s_uNextIndex{0};

/// A slot for a new thread: a fresh one while there are, then one that an ended thread left.
std::optional<uint32_t> claimIndex()
{
    const uint32_t uFresh = s_uNextIndex.load() < FrameAllocator::s_uSlots ? s_uNextIndex++ : 0xFFFFFFFF;
    if (uFresh < FrameAllocator::s_uSlots)
        return uFresh;
    const std::scoped_lock lock(s_slotLock);
    for (uint32_t uIndex = 0; uIndex < FrameAllocator::s_uSlots; ++uIndex)
        if (!g_arrUsedAllocators[uIndex])
            return uIndex;
    QM_ASSERT_TEXT(false, "Out of used indices!");
    return std::nullopt;
}

} // namespace

void FrameAllocator::AlignedDelete::operator()(std::byte* pMemory) const
{
    ::operator delete (pMemory, std::align_val_t{s_uAlignment});
}

FrameAllocator::Block FrameAllocator::allocateBlock(size_t uSize)
{
    return Block(static_cast<std::byte*>(::operator new (uSize, std::align_val_t{s_uAlignment})));
}

FrameAllocator::FrameAllocator(uint32_t uIndex) : m_pBuffer(allocateBlock(s_uCapacity)), m_uIndex(uIndex)
{
    const std::scoped_lock lock(s_slotLock);
    QM_ASSERT(g_arrUsedAllocators[uIndex] == nullptr);
    g_arrUsedAllocators[uIndex] = this;
}

FrameAllocator::~FrameAllocator()
{
    const std::scoped_lock lock(s_slotLock);
    g_arrUsedAllocators[m_uIndex] = nullptr;
}

void* FrameAllocator::allocate(size_t uSize)
{
    uSize = (uSize + s_uAlignment - 1) / s_uAlignment * s_uAlignment;
    if (uSize <= s_uCapacity - m_uUsed)
    {
        std::byte* pMemory = m_pBuffer.get() + m_uUsed;
        m_uUsed += uSize;
        return pMemory;
    }
    QM_LOG_ERROR("Out of frame memory! Heap used instead. Requested ", uSize,
                 " bytes. Unused: ", s_uCapacity - m_uUsed, "/", s_uCapacity);
    m_vecHeapBlocks.push_back(allocateBlock(uSize));
    return m_vecHeapBlocks.back().get();
}

void FrameAllocator::reset()
{
    m_vecHeapBlocks.clear();
    m_uUsed = 0;
}

FrameAllocator* FrameAllocator::ofThread()
{
    thread_local std::unique_ptr<FrameAllocator> pAllocator;
    if (!pAllocator)
        if (const auto uIndex = claimIndex())
            pAllocator = std::make_unique<FrameAllocator>(*uIndex);
    return pAllocator.get();
}

void FrameAllocator::resetAll()
{
    const std::scoped_lock lock(s_slotLock);
    for (FrameAllocator* pAllocator : g_arrUsedAllocators)
        if (pAllocator)
            pAllocator->reset();
}
