#pragma once // The hash that tells equal entities of a restored state.

#include "KestrelCommon/Core/Hash.h"

#include <span>
#include <string_view>
#include <type_traits>

namespace tilebuilder
{

/// Mixes a plain value's bytes into a running hash. No value of it ever leaves a run.
template <typename T>
[[nodiscard]] uint64_t mixHash(uint64_t uSeed,
                               const T& value) requires std::is_arithmetic_v<T> || std::is_enum_v<T>
{
    return xxh3(std::as_bytes(std::span(&value, 1)), uSeed);
}

[[nodiscard]] inline uint64_t mixHash(uint64_t uSeed, std::span<const std::byte> spanBytes)
{
    return xxh3(spanBytes, uSeed);
}

/// The length goes in too, so that "ab", "c" differs from "a", "bc".
[[nodiscard]] inline uint64_t mixHash(uint64_t uSeed, std::string_view sText)
{
    return xxh3(std::as_bytes(std::span(sText)), mixHash(uSeed, sText.size()));
}

} // namespace tilebuilder
