#include "KestrelCommon/Io/ByteStream.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Io/Growth.h"

#include <new>

namespace
{

OwnedBytes reallocate(OwnedBytes pOld, uint64_t uBytes)
{
    void* pNew = uBytes <= UINT32_MAX ? std::realloc(pOld.get(), uBytes) : nullptr;
    if (!pNew)
    {
        QM_LOG_ERROR("Linear memory reallocation failed (", uBytes, " bytes) - ", UTILS::baseName(__FILE__),
                     ":", __LINE__);
        throw std::bad_alloc();
    }
    static_cast<void>(pOld.release());
    return OwnedBytes(static_cast<std::byte*>(pNew));
}

} // namespace

ByteStream::ByteStream(uint32_t uCapacity) : m_uCapacity(uCapacity)
{
    if (uCapacity)
        m_pData = reallocate(nullptr, uCapacity);
}

void ByteStream::reserve(uint64_t uBytes)
{
    if (uBytes < m_uCapacity)
        return;
    // At the very end of the 32-bit range the next power of two no longer fits.
    const uint64_t uCapacity =
        uBytes < UINT32_MAX ? std::min<uint64_t>(grownCapacity(uBytes), UINT32_MAX) : uBytes;
    m_pData = reallocate(std::move(m_pData), uCapacity);
    m_uCapacity = static_cast<uint32_t>(uCapacity);
}

std::byte* ByteStream::extend(size_t uBytes)
{
    reserve(uint64_t{m_uSize} + uBytes);
    std::byte* pPlace = m_pData.get() + m_uSize;
    m_uSize += static_cast<uint32_t>(uBytes);
    return pPlace;
}

void ByteStream::write(const void* pData, size_t uBytes)
{
    if (uBytes)
        std::memcpy(extend(uBytes), pData, uBytes);
}

void ByteStream::writeZeros(size_t uBytes)
{
    if (uBytes)
        std::memset(extend(uBytes), 0, uBytes);
}

void ByteStream::setPosition(uint32_t uPosition)
{
    if (QM_ASSERT(uPosition <= m_uCapacity))
        m_uSize = uPosition;
}

OwnedBytes ByteStream::take()
{
    m_uSize = 0;
    m_uCapacity = 0;
    return std::move(m_pData);
}
