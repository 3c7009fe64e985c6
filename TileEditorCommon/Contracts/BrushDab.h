#pragma once // What one tick of a brush carries.

namespace tilebuilder
{

struct Brush;

/// A tick of a stroke. Metres in the world; strength 0 to 1; the falloff is borrowed.
struct BrushDab
{
    float x = 0.0f;
    float y = 0.0f;
    float radius = 0.0f;
    float strength = 0.0f;
    const Brush* pBrush = nullptr;
};

} // namespace tilebuilder
