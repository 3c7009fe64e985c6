#include "KestrelCommon/Resources/BufferPool.h"

#include "KestrelCommon/Core/Assert.h"

namespace resource
{

namespace
{

constexpr uint64_t s_uKeptFrames = 5;

} // namespace

BufferPool::~BufferPool()
{
    for (const BorrowedBuffer& borrowed : m_vecFree)
        m_device.destroyBuffer(borrowed.buffer);
}

BorrowedBuffer BufferPool::borrow(size_t uSize, size_t uStride, rend::BufferKind eKind)
{
    auto itBest = m_vecFree.end();
    for (auto it = m_vecFree.begin(); it != m_vecFree.end(); ++it)
        if (it->eKind == eKind && uSize <= it->uCapacity && it->uCapacity < 10 * uSize &&
            (itBest == m_vecFree.end() || it->uCapacity < itBest->uCapacity))
            itBest = it;
    if (itBest != m_vecFree.end())
    {
        const BorrowedBuffer borrowed = *itBest;
        m_vecFree.erase(itBest);
        return borrowed;
    }

    BorrowedBuffer borrowed{{}, (uSize + 63) / 64 * 64, eKind, 0};
    const char* pName =
        eKind == rend::BufferKind::Constant ? "Borrowable CBuffer " : "Borrowable Vertex Buffer ";
    borrowed.buffer = m_device.createBuffer(
        {UTILS::concat(pName, m_uCreated++), borrowed.uCapacity, uStride, eKind, true}, {});
    return borrowed;
}

void BufferPool::giveBack(BorrowedBuffer borrowed)
{
    if (!borrowed.buffer)
        return;
    borrowed.uLastReturnFrame = m_uFrameCounter;
    m_vecFree.push_back(borrowed);
}

void BufferPool::update()
{
    ++m_uFrameCounter;
    for (size_t u = m_vecFree.size(); u-- > 0;)
    {
        const BorrowedBuffer& borrowBuffer = m_vecFree[u];
        QM_ASSERT(m_uFrameCounter >= borrowBuffer.uLastReturnFrame);
        if (borrowBuffer.uLastReturnFrame + s_uKeptFrames > m_uFrameCounter)
            continue;
        m_device.destroyBuffer(borrowBuffer.buffer);
        m_vecFree.erase(m_vecFree.begin() + static_cast<std::ptrdiff_t>(u));
    }
}

} // namespace resource
