#pragma once // Bounds-checked little-endian reading.

#include <cstddef>
#include <cstring>
#include <span>
#include <type_traits>

/// Walks borrowed bytes. A read that would pass the end returns false (or an empty span), moves
/// nothing and leaves its output as it was.
class ByteCursor
{
public:
    explicit ByteCursor(std::span<const std::byte> spanBytes) : m_spanBytes(spanBytes) {}

    [[nodiscard]] size_t position() const { return m_uPosition; }
    [[nodiscard]] size_t remaining() const { return m_spanBytes.size() - m_uPosition; }

    [[nodiscard]] std::span<const std::byte> rest() const { return m_spanBytes.subspan(m_uPosition); }

    template <class T>
    requires std::is_trivially_copyable_v<T>
    [[nodiscard]] bool read(T& value) { return read(&value, sizeof(T)); }

    [[nodiscard]] bool read(void* pOut, size_t uBytes)
    {
        if (uBytes > remaining())
            return false;
        if (uBytes)
            std::memcpy(pOut, m_spanBytes.data() + m_uPosition, uBytes);
        m_uPosition += uBytes;
        return true;
    }

    /// A view of the next bytes; empty when there are fewer.
    [[nodiscard]] std::span<const std::byte> view(size_t uBytes)
    {
        if (uBytes > remaining())
            return {};
        const auto spanView = m_spanBytes.subspan(m_uPosition, uBytes);
        m_uPosition += uBytes;
        return spanView;
    }

    [[nodiscard]] bool skip(size_t uBytes)
    {
        if (uBytes > remaining())
            return false;
        m_uPosition += uBytes;
        return true;
    }

private:
    std::span<const std::byte> m_spanBytes;
    size_t m_uPosition = 0;
};
