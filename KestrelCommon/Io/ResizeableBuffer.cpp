#include "KestrelCommon/Io/ResizeableBuffer.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Io/Growth.h"

void ResizeableBuffer::reserve(uint64_t uBytes)
{
    if (uBytes >= m_stream.capacity())
        m_stream.reserve(uBytes);
}

Buffer::Buffer(const void* pData, size_t uSize)
{
    if (!QM_ASSERT(uSize > 0))
        return;
    const auto* pBytes = static_cast<const std::byte*>(pData);
    m_vecBytes.assign(pBytes, pBytes + uSize);
}
