#pragma once // The growth rule that byte buffers share.

#include <bit>
#include <cstdint>

/// The capacity for a request of that many bytes: the power of two above it, so that an exact
/// power of two is followed by the next one.
[[nodiscard]] constexpr uint64_t grownCapacity(uint64_t uBytes)
{
    return std::bit_ceil(uBytes + 1);
}
