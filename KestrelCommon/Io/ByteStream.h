#pragma once // A growable little-endian output buffer.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <type_traits>

/// Frees memory that came from malloc.
struct FreeDelete
{
    void operator()(std::byte* pMemory) const { std::free(pMemory); }
};
using OwnedBytes = std::unique_ptr<std::byte[], FreeDelete>;

/// Raw bytes, structures copied as they lie in memory. The write position is also the number
/// of valid bytes; it may be set back to patch what is written and forward again.
class ByteStream
{
public:
    explicit ByteStream(uint32_t uCapacity = 0);

    /// Makes room for that many bytes in total; grows when they reach the capacity.
    void reserve(uint64_t uBytes);

    void write(const void* pData, size_t uBytes);

    template <class T>
    requires(std::is_trivially_copyable_v<T> && !std::is_pointer_v<T>) void write(const T& value)
    {
        write(&value, sizeof(T));
    }

    void writeZeros(size_t uBytes);

    /// Makes room behind the position, moves the position past it and hands it out unwritten.
    std::byte* extend(size_t uBytes);

    /// Within what is reserved.
    void setPosition(uint32_t uPosition);

    [[nodiscard]] const std::byte* data() const { return m_pData.get(); }
    [[nodiscard]] std::byte* data() { return m_pData.get(); }
    [[nodiscard]] uint32_t size() const { return m_uSize; }
    [[nodiscard]] uint32_t capacity() const { return m_uCapacity; }
    [[nodiscard]] std::span<const std::byte> bytes() const { return {m_pData.get(), m_uSize}; }

    /// Hands the memory over and is empty afterwards.
    OwnedBytes take();

private:
    OwnedBytes m_pData;
    uint32_t m_uSize = 0;
    uint32_t m_uCapacity = 0;
};
