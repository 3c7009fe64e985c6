#pragma once // The identity of tiles, content items and types.

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// 16 bytes in the order of their text; nil is all zeros.
struct Uuid
{
    static constexpr size_t s_uTextLength = 36;

    std::array<uint8_t, 16> bytes{};

    /// From exactly 36 characters, dashes at 8, 13, 18 and 23, hexadecimal digits of any case elsewhere.
    static std::optional<Uuid> parse(std::string_view sText);

    /// A random one of version 4, from the system's cryptographic source.
    static Uuid random();

    [[nodiscard]] bool isNil() const { return *this == Uuid{}; }

    /// 36 lower-case characters.
    [[nodiscard]] std::string text() const;

    auto operator<=>(const Uuid&) const = default;
};

template <>
struct std::hash<Uuid>
{
    size_t operator()(const Uuid& uuid) const noexcept;
};
