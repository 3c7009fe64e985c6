#pragma once // The falloffs of the ground brushes.

#include <cmath>
#include <cstddef>
#include <span>

namespace tilebuilder
{

/// A weight over t in [0, 1], where 1 is the brush's centre and 0 its rim. Not clamped.
struct Brush
{
    virtual ~Brush() = default;
    [[nodiscard]] virtual float falloff(float t) const = 0;

    /// Replaces each t by falloff(t): the same values, for a row of samples at once.
    virtual void falloffRow(std::span<float> spanT) const = 0;
};

/// Gives a brush both operations from one formula, T::at.
template <class T>
struct BrushOf : Brush
{
    [[nodiscard]] float falloff(float t) const override { return T::at(t); }
    void falloffRow(std::span<float> spanT) const override
    {
        for (float& t : spanT)
            t = T::at(t);
    }
};

struct LinearBrush : BrushOf<LinearBrush>
{
    static float at(float t) { return t; }
};
struct SmoothBrush : BrushOf<SmoothBrush>
{
    static float at(float t) { return 3.0f * t * t - 2.0f * t * t * t; }
};
struct RoundedBrush : BrushOf<RoundedBrush>
{
    static float at(float t) { return 1.0f - (1.0f - t) * (1.0f - t); }
};
struct SharpBrush : BrushOf<SharpBrush>
{
    static float at(float t) { return t * t; }
};
struct SolidBrush : BrushOf<SolidBrush>
{
    static float at(float t) { return t > 1.0f ? 0.0f : 1.0f; }
};
/// Reaches 1.1968268 at the centre.
struct GaussBrush : BrushOf<GaussBrush>
{
    static float at(float t) { return 1.1968268f * std::exp(-4.5f * (1.0f - t) * (1.0f - t)); }
};

/// The one instance of each, in the order of the brush window: linear, smooth, rounded, sharp,
/// solid, Gauss.
constexpr size_t BrushCount = 6;
[[nodiscard]] const Brush* brush(size_t uIndex);
[[nodiscard]] const char* brushName(size_t uIndex);

} // namespace tilebuilder
