#pragma once // Scratch bytes for compressed or decompressed data.

#include "KestrelCommon/Io/ByteStream.h"

#include <vector>

/// Grows, never shrinks, and is reused from section to section. Has no size of its own, and
/// its content doesn't survive growth.
class ResizeableBuffer
{
public:
    explicit ResizeableBuffer(uint32_t uCapacity = 0) : m_stream(uCapacity) {}

    /// Makes room for that many bytes; grows when they reach the capacity.
    void reserve(uint64_t uBytes);

    [[nodiscard]] std::byte* data() { return m_stream.data(); }
    [[nodiscard]] uint32_t capacity() const { return m_stream.capacity(); }

private:
    ByteStream m_stream;
};

/// A copied block of bytes; its size must be greater than 0.
class Buffer
{
public:
    Buffer(const void* pData, size_t uSize);
    [[nodiscard]] std::span<const std::byte> bytes() const { return m_vecBytes; }

private:
    std::vector<std::byte> m_vecBytes;
};
