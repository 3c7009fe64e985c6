#pragma once // Lengths in code, in the units of the layouts.

#include <cmath>

/// One unit is a pixel at 1080 lines. Main thread only; set by the GUI system.
namespace GuiMetrics
{

inline float g_fScale = 1.0f;

inline void setScale(float fScale)
{
    g_fScale = fScale;
}
[[nodiscard]] inline float scale()
{
    return g_fScale;
}

/// Pixels of a length in units.
[[nodiscard]] inline int px(int iUnits)
{
    return static_cast<int>(std::lround(static_cast<float>(iUnits) * g_fScale));
}

} // namespace GuiMetrics
