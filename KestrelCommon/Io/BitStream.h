#pragma once // A bit-granular stream with multi-byte values in network byte order.

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

struct Uuid;

/// Bits fill each byte from the most significant down. Small content stays inline; a stream
/// over foreign memory reads it in place and never grows.
///
/// Errors: a read that would pass the end returns false, moves nothing and leaves its output.
class BitStream
{
public:
    static constexpr size_t s_uInlineBytes = 256;

    BitStream() = default;
    /// Without copy the memory is borrowed and must outlive the stream.
    BitStream(const void* pData, size_t uBytes, bool bCopy);
    ~BitStream();
    BitStream(const BitStream&) = delete;
    BitStream& operator=(const BitStream&) = delete;

    [[nodiscard]] uint32_t bitsUsed() const { return m_uBitsUsed; }
    [[nodiscard]] uint32_t readOffset() const { return m_uReadOffset; }
    [[nodiscard]] uint32_t bitsAllocated() const { return m_uBitsAllocated; }
    [[nodiscard]] uint32_t bitsLeft() const { return m_uBitsUsed - m_uReadOffset; }
    /// What is written so far; the last byte may be partial, its low bits are 0.
    [[nodiscard]] std::span<const std::byte> bytes() const;

    /// Any number of bits; those of a last partial byte lie right-aligned in the source.
    void writeBits(const void* pData, uint32_t uBits);
    [[nodiscard]] bool readBits(void* pOut, uint32_t uBits);

    /// The low bits of a value, 1 to 56 of them, the most significant first; the others are 0. The
    /// quick way for a few small fields at once.
    void writeWord(uint64_t uValue, uint32_t uBits);
    [[nodiscard]] bool readWord(uint64_t& uValue, uint32_t uBits);

    /// Takes back what was written behind a position that bitsUsed() gave.
    void truncate(uint32_t uBitsUsed);
    /// Moves the read position back to one that readOffset() gave.
    void rewind(uint32_t uReadOffset);

    void writeBytes(const void* pData, uint32_t uBytes) { writeBits(pData, uBytes * 8); }
    [[nodiscard]] bool readBytes(void* pOut, uint32_t uBytes);

    /// Moves the write position to the next byte boundary; the bits between are 0.
    void alignWrite();
    void alignRead();
    /// Moves the read position to the next byte boundary, then reads. A count of 0 asserts.
    [[nodiscard]] bool readAlignedBytes(void* pOut, uint32_t numberOfBytesToRead);
    /// The same without a copy, of any number of bytes; borrowed until the next write.
    [[nodiscard]] bool viewAlignedBytes(std::span<const std::byte>& spanOut, uint32_t uBytes);
    /// Within what is written.
    [[nodiscard]] bool setReadOffset(uint32_t uBits);

    void writeBool(bool bValue);
    [[nodiscard]] bool readBool(bool& bValue);

    void write(uint8_t uValue);
    void write(uint16_t uValue);
    void write(uint32_t uValue);
    void write(int32_t iValue) { write(static_cast<uint32_t>(iValue)); }
    void write(float fValue);
    void write(const Uuid& uuid);
    [[nodiscard]] bool read(uint8_t& uValue);
    [[nodiscard]] bool read(uint16_t& uValue);
    [[nodiscard]] bool read(uint32_t& uValue);
    [[nodiscard]] bool read(int32_t& iValue);
    [[nodiscard]] bool read(float& fValue);
    [[nodiscard]] bool read(Uuid& uuid);

private:
    void writeWordSlowly(uint64_t uValue, uint32_t uBits);
    bool readWordSlowly(uint64_t& uValue, uint32_t uBits);
    bool grow(uint32_t uBits);
    template <class T>
    void writeSwapped(T value);
    template <class T>
    bool readSwapped(T& value);

    uint32_t m_uBitsUsed = 0;
    uint32_t m_uReadOffset = 0;
    std::array<std::byte, s_uInlineBytes> m_inline{};
    std::byte* m_pData = m_inline.data();
    uint32_t m_uBitsAllocated = s_uInlineBytes * 8;
    bool m_bOwnsData = true;
};

inline void BitStream::writeWord(uint64_t uValue, uint32_t uBits)
{
    // A whole word is stored, so eight bytes must be there.
    if (!m_bOwnsData || uint64_t{m_uBitsUsed} + 64 > m_uBitsAllocated)
        return writeWordSlowly(uValue, uBits);
    std::byte* pPlace = m_pData + m_uBitsUsed / 8;
    const uint32_t uShift = m_uBitsUsed & 7;
    uint64_t uWord = uValue << (64 - uShift - uBits);
    if (uShift)
        uWord |= static_cast<uint64_t>(*pPlace) << 56;
    if constexpr (std::endian::native == std::endian::little)
        uWord = __builtin_bswap64(uWord);
    std::memcpy(pPlace, &uWord, sizeof(uWord));
    m_uBitsUsed += uBits;
}

inline bool BitStream::readWord(uint64_t& uValue, uint32_t uBits)
{
    if (bitsLeft() < 64)
        return readWordSlowly(uValue, uBits);
    uint64_t uWord;
    std::memcpy(&uWord, m_pData + m_uReadOffset / 8, sizeof(uWord));
    if constexpr (std::endian::native == std::endian::little)
        uWord = __builtin_bswap64(uWord);
    uValue = uWord << (m_uReadOffset & 7) >> (64 - uBits);
    m_uReadOffset += uBits;
    return true;
}
