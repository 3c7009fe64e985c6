#pragma once // Smooth noise for landscapes. The same seed gives the same ground everywhere.

#include <cstdint>

namespace forge
{

/// Gradient noise on the unit lattice, about -1 to 1, 0 at lattice points.
[[nodiscard]] float gradientNoise(float fX, float fY, uint32_t uSeed);

struct FractalShape
{
    int iOctaves = 5;
    float fLacunarity = 2.03f; ///< frequency from octave to octave
    float fGain = 0.5f;        ///< amplitude from octave to octave
};

/// Octaves of gradient noise, about -1 to 1.
[[nodiscard]] float fractal(float fX, float fY, uint32_t uSeed, const FractalShape& shape = {});

/// Sharp crests where noise passes zero, 0 to 1; each octave is held down where the one before was low.
[[nodiscard]] float ridged(float fX, float fY, uint32_t uSeed, const FractalShape& shape = {});

} // namespace forge
