#pragma once // From a painted ground colour to the one that is shown.

#include "TileEditorCommon/Ground/NoiseImage.h"

#include <cstdint>

namespace tilebuilder
{

/// Red, green and blue times a factor, truncated; alpha as it is. Red lowest, in and out.
[[nodiscard]] inline uint32_t tintColor(uint32_t uColor, float fFactor)
{
    const auto tint = [&](uint32_t uShift) {
        return static_cast<uint32_t>(static_cast<float>(uColor >> uShift & 255u) * fFactor) << uShift;
    };
    return tint(0) | tint(8) | tint(16) | (uColor & 0xFF000000u);
}

[[nodiscard]] inline uint32_t displayColor(uint32_t uColor, float fFactor)
{
    return __builtin_bswap32(tintColor(uColor, fFactor));
}

/// The colour of vertex (i, j): noise applied, red highest, alpha lowest.
[[nodiscard]] inline uint32_t displayColor(uint32_t uColor, uint32_t i, uint32_t j)
{
    return displayColor(uColor, NoiseImage::factor(j / 2, i / 2));
}

} // namespace tilebuilder
