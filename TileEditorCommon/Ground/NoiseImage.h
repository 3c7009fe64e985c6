#pragma once // The greyscale image that keeps bare ground from looking flat.

#include <array>
#include <cstddef>
#include <cstdint>

namespace tilebuilder
{

/// 64 x 64 smooth values that tile without a seam: 36 to 199 with mean 125.6. One sample
/// covers 4 m of ground.
class NoiseImage
{
public:
    static constexpr size_t s_uSide = 64;

    [[nodiscard]] static const std::array<uint8_t, s_uSide * s_uSide>& values();

    /// The factor on red, green and blue for the sample of that row and column (any number).
    [[nodiscard]] static float factor(size_t uRow, size_t uColumn)
    {
        return factors()[(uRow % s_uSide) * s_uSide + uColumn % s_uSide];
    }

    /// All factors, row by row.
    [[nodiscard]] static const std::array<float, s_uSide * s_uSide>& factors();
};

} // namespace tilebuilder
