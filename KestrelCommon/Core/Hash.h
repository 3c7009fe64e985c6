#pragma once // The two hashes of the system.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// 64-bit FNV-1a, for path and string keys.
[[nodiscard]] constexpr uint64_t fnv1a64(std::string_view sText)
{
    uint64_t uHash = 0xcbf29ce484222325ull;
    for (const char c : sText)
    {
        uHash ^= static_cast<unsigned char>(c);
        uHash *= 0x100000001b3ull;
    }
    return uHash;
}

/// XXH3 64-bit with seed 0, for tile states and texts.
[[nodiscard]] uint64_t xxh3(std::span<const std::byte> spanBytes);
[[nodiscard]] uint64_t xxh3(std::string_view sText);
/// The same with a seed, for hashes that are mixed from several pieces.
[[nodiscard]] uint64_t xxh3(std::span<const std::byte> spanBytes, uint64_t uSeed);

/// Hash object of tables keyed by text; looks up views without a copy.
struct TextHash
{
    using is_transparent = void;
    size_t operator()(std::string_view sText) const { return static_cast<size_t>(fnv1a64(sText)); }
};
