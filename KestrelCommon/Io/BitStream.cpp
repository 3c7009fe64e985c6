#include "KestrelCommon/Io/BitStream.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/Uuid.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <new>

namespace
{

// Above this many bits a stream grows by a fixed step instead of doubling.
constexpr uint32_t s_uDoublingLimit = 0x100000;
constexpr uint32_t s_uMaxBytes = UINT32_MAX / 8;

constexpr uint32_t wholeBytes(uint32_t uBits)
{
    return uBits / 8 + (uBits % 8 != 0);
}

// A multi-byte value between the host's order and the network's; its own inverse.
std::array<uint8_t, 16> networkOrder(const void* pValue, size_t uBytes)
{
    std::array<uint8_t, 16> arrBytes{};
    std::memcpy(arrBytes.data(), pValue, uBytes);
    if constexpr (std::endian::native == std::endian::little)
        std::reverse(arrBytes.begin(), arrBytes.begin() + static_cast<ptrdiff_t>(uBytes));
    return arrBytes;
}

} // namespace

BitStream::BitStream(const void* pData, size_t uBytes, bool bCopy)
{
    if (!QM_ASSERT(uBytes <= s_uMaxBytes))
        return;
    if (!bCopy)
    {
        // Never written through: a stream that doesn't own its data refuses to write.
        m_pData = static_cast<std::byte*>(const_cast<void*>(pData));
        m_bOwnsData = false;
        m_uBitsAllocated = m_uBitsUsed = static_cast<uint32_t>(uBytes * 8);
        return;
    }
    writeBits(pData, static_cast<uint32_t>(uBytes * 8));
}

BitStream::~BitStream()
{
    if (m_bOwnsData && m_pData != m_inline.data())
        std::free(m_pData);
}

std::span<const std::byte> BitStream::bytes() const
{
    return {m_pData, wholeBytes(m_uBitsUsed)};
}

bool BitStream::grow(uint32_t uBits)
{
    if (!QM_ASSERT(m_bOwnsData))
        return false;
    const uint64_t uRequired = uint64_t{m_uBitsUsed} + uBits;
    if (uRequired == 0)
        return true;
    if (!QM_ASSERT(uRequired <= UINT32_MAX - 7))
        return false;
    if (wholeBytes(static_cast<uint32_t>(uRequired)) <= wholeBytes(m_uBitsAllocated))
        return true;

    const uint64_t uGrown = std::min<uint64_t>(
        uRequired <= s_uDoublingLimit ? uRequired * 2 : uRequired + s_uDoublingLimit, UINT32_MAX - 7);
    const uint32_t uBytes = wholeBytes(static_cast<uint32_t>(uGrown));
    if (uBytes > s_uInlineBytes)
    {
        const bool bInline = m_pData == m_inline.data();
        auto* pNew = static_cast<std::byte*>(std::realloc(bInline ? nullptr : m_pData, uBytes));
        if (!pNew)
        {
            QM_LOG_ERROR("Linear memory reallocation failed (", uBytes, " bytes) - BitStream");
            throw std::bad_alloc();
        }
        if (bInline)
            std::memcpy(pNew, m_inline.data(), wholeBytes(m_uBitsUsed));
        m_pData = pNew;
    }
    m_uBitsAllocated = static_cast<uint32_t>(uGrown);
    return true;
}

void BitStream::writeBits(const void* pData, uint32_t uBits)
{
    if (uBits == 0 || !grow(uBits))
        return;
    const auto* pSource = static_cast<const uint8_t*>(pData);
    auto* pBytes = reinterpret_cast<uint8_t*>(m_pData);
    if ((m_uBitsUsed & 7) == 0 && (uBits & 7) == 0)
    {
        std::memcpy(pBytes + m_uBitsUsed / 8, pSource, uBits / 8);
        m_uBitsUsed += uBits;
        return;
    }
    for (uint32_t uLeft = uBits; uLeft > 0; ++pSource)
    {
        const uint32_t uCount = std::min(uLeft, 8u);
        // The bits of this piece, moved to the high end of a byte.
        const auto uHigh = static_cast<uint8_t>(*pSource << (8 - uCount));
        const uint32_t uShift = m_uBitsUsed & 7;
        uint8_t* pPlace = pBytes + m_uBitsUsed / 8;
        if (uShift == 0)
            *pPlace = uHigh;
        else
        {
            *pPlace = static_cast<uint8_t>(*pPlace | uHigh >> uShift);
            if (uCount > 8 - uShift)
                pPlace[1] = static_cast<uint8_t>(uHigh << (8 - uShift));
        }
        m_uBitsUsed += uCount;
        uLeft -= uCount;
    }
}

bool BitStream::readBits(void* pOut, uint32_t uBits)
{
    if (uBits > bitsLeft())
        return false;
    auto* pTarget = static_cast<uint8_t*>(pOut);
    const auto* pBytes = reinterpret_cast<const uint8_t*>(m_pData);
    if ((m_uReadOffset & 7) == 0 && (uBits & 7) == 0)
    {
        if (uBits)
            std::memcpy(pTarget, pBytes + m_uReadOffset / 8, uBits / 8);
        m_uReadOffset += uBits;
        return true;
    }
    for (uint32_t uLeft = uBits; uLeft > 0; ++pTarget)
    {
        const uint32_t uCount = std::min(uLeft, 8u);
        const uint32_t uShift = m_uReadOffset & 7;
        const uint8_t* pPlace = pBytes + m_uReadOffset / 8;
        auto uHigh = static_cast<uint8_t>(*pPlace << uShift);
        if (uCount > 8 - uShift)
            uHigh = static_cast<uint8_t>(uHigh | pPlace[1] >> (8 - uShift));
        *pTarget = static_cast<uint8_t>(uHigh >> (8 - uCount));
        m_uReadOffset += uCount;
        uLeft -= uCount;
    }
    return true;
}

void BitStream::writeWordSlowly(uint64_t uValue, uint32_t uBits)
{
    // Left-aligned big-endian bytes; the last one right-aligned, as writeBits takes it.
    std::array<uint8_t, 8> arrBytes;
    const uint32_t uWhole = uBits / 8;
    for (uint32_t i = 0; i < uWhole; ++i)
        arrBytes[i] = static_cast<uint8_t>(uValue >> (uBits - 8 * (i + 1)));
    arrBytes[uWhole] = static_cast<uint8_t>(uValue & ((1u << uBits % 8) - 1));
    writeBits(arrBytes.data(), uBits);
}

bool BitStream::readWordSlowly(uint64_t& uValue, uint32_t uBits)
{
    std::array<uint8_t, 8> arrBytes{};
    if (!readBits(arrBytes.data(), uBits))
        return false;
    uValue = 0;
    for (uint32_t i = 0; i < uBits / 8; ++i)
        uValue = uValue << 8 | arrBytes[i];
    if (uBits % 8)
        uValue = uValue << uBits % 8 | arrBytes[uBits / 8];
    return true;
}

void BitStream::truncate(uint32_t uBitsUsed)
{
    if (!QM_ASSERT(m_bOwnsData && uBitsUsed <= m_uBitsUsed))
        return;
    m_uBitsUsed = uBitsUsed;
    if (const uint32_t uPartial = uBitsUsed & 7)
        m_pData[uBitsUsed / 8] &= static_cast<std::byte>(0xFF00 >> uPartial);
    m_uReadOffset = std::min(m_uReadOffset, m_uBitsUsed);
}

void BitStream::rewind(uint32_t uReadOffset)
{
    if (QM_ASSERT(uReadOffset <= m_uReadOffset))
        m_uReadOffset = uReadOffset;
}

bool BitStream::readBytes(void* pOut, uint32_t uBytes)
{
    return uBytes <= s_uMaxBytes && readBits(pOut, uBytes * 8);
}

void BitStream::alignWrite()
{
    static constexpr uint8_t s_uZero = 0;
    if (const uint32_t uPartial = m_uBitsUsed & 7)
        writeBits(&s_uZero, 8 - uPartial);
}

void BitStream::alignRead()
{
    const uint32_t uAligned = wholeBytes(m_uReadOffset) * 8;
    m_uReadOffset = std::min(uAligned, m_uBitsUsed);
}

bool BitStream::readAlignedBytes(void* pOut, uint32_t numberOfBytesToRead)
{
    if (!QM_ASSERT(numberOfBytesToRead > 0))
        return false;
    const uint32_t uBefore = m_uReadOffset;
    const uint32_t uAligned = wholeBytes(m_uReadOffset) * 8;
    if (uAligned > m_uBitsUsed)
        return false;
    m_uReadOffset = uAligned;
    if (readBytes(pOut, numberOfBytesToRead))
        return true;
    m_uReadOffset = uBefore;
    return false;
}

bool BitStream::viewAlignedBytes(std::span<const std::byte>& spanOut, uint32_t uBytes)
{
    const uint32_t uAligned = wholeBytes(m_uReadOffset) * 8;
    if (uAligned > m_uBitsUsed || uBytes > (m_uBitsUsed - uAligned) / 8)
        return false;
    spanOut = bytes().subspan(uAligned / 8, uBytes);
    m_uReadOffset = uAligned + uBytes * 8;
    return true;
}

bool BitStream::setReadOffset(uint32_t uBits)
{
    if (uBits > m_uBitsUsed)
        return false;
    m_uReadOffset = uBits;
    return true;
}

void BitStream::writeBool(bool bValue)
{
    const uint8_t uBit = bValue;
    writeBits(&uBit, 1);
}

bool BitStream::readBool(bool& bValue)
{
    if (bitsLeft() == 0)
        return false;
    const auto uByte = static_cast<uint8_t>(m_pData[m_uReadOffset / 8]);
    bValue = (uByte & (128 >> (m_uReadOffset & 7))) != 0;
    ++m_uReadOffset;
    return true;
}

template <class T>
void BitStream::writeSwapped(T value)
{
    writeBits(networkOrder(&value, sizeof(T)).data(), sizeof(T) * 8);
}

template <class T>
bool BitStream::readSwapped(T& value)
{
    std::array<uint8_t, sizeof(T)> arrBytes;
    if (!readBits(arrBytes.data(), sizeof(T) * 8))
        return false;
    std::memcpy(&value, networkOrder(arrBytes.data(), sizeof(T)).data(), sizeof(T));
    return true;
}

void BitStream::write(uint8_t uValue)
{
    writeBits(&uValue, 8);
}
void BitStream::write(uint16_t uValue)
{
    writeSwapped(uValue);
}
void BitStream::write(uint32_t uValue)
{
    writeSwapped(uValue);
}
void BitStream::write(float fValue)
{
    writeSwapped(fValue);
}
void BitStream::write(const Uuid& uuid)
{
    writeSwapped(uuid.bytes);
}
bool BitStream::read(uint8_t& uValue)
{
    return readBits(&uValue, 8);
}
bool BitStream::read(uint16_t& uValue)
{
    return readSwapped(uValue);
}
bool BitStream::read(uint32_t& uValue)
{
    return readSwapped(uValue);
}
bool BitStream::read(int32_t& iValue)
{
    return readSwapped(iValue);
}
bool BitStream::read(float& fValue)
{
    return readSwapped(fValue);
}
bool BitStream::read(Uuid& uuid)
{
    return readSwapped(uuid.bytes);
}
