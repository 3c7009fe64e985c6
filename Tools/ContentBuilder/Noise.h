#pragma once // Noise on the unit square that repeats at its edges.

#include <cstdint>

namespace content
{

/// 0 to 1, the same for the same numbers on every machine.
[[nodiscard]] float hash(int iX, int iY, uint32_t uSeed);

/// Smooth gradients, about -0.7 to 0.7, repeating over iPeriod units.
[[nodiscard]] float gradientNoise(float fX, float fY, int iPeriod, uint32_t uSeed);

/// Octaves of gradient noise from iFrequency waves a side on; about -1 to 1. u, v: 0 to 1.
[[nodiscard]] float fractal(float u, float v, int iFrequency, int iOctaves, uint32_t uSeed,
                            float fGain = 0.5f);

/// The same with sharp crests; 0 to 1.
[[nodiscard]] float ridges(float u, float v, int iFrequency, int iOctaves, uint32_t uSeed);

/// One point in each of iColumns x iRows cells.
struct CellNoise
{
    float fNearest; ///< distance to the nearest point, in cells
    float fEdge;    ///< distance to the second nearest less that
    float fValue;   ///< 0 to 1, one value a point
};
[[nodiscard]] CellNoise cells(float u, float v, int iColumns, int iRows, uint32_t uSeed);

/// A row of numbers from a seed.
class Dice
{
public:
    explicit Dice(uint32_t uSeed) : m_uState(uSeed * 2654435761u + 0x9E3779B9u) {}
    /// From fLow up to fHigh.
    float roll(float fLow = 0.0f, float fHigh = 1.0f);

private:
    uint32_t m_uState;
};

[[nodiscard]] inline float blend(float a, float b, float t)
{
    return a + (b - a) * t;
}
[[nodiscard]] inline float clamp01(float f)
{
    return f < 0.0f ? 0.0f : (f > 1.0f ? 1.0f : f);
}
[[nodiscard]] inline float smoothStep(float fFrom, float fTo, float f)
{
    const float t = clamp01((f - fFrom) / (fTo - fFrom));
    return t * t * (3.0f - 2.0f * t);
}

} // namespace content
