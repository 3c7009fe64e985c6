#include "TileEditorCommon/Ground/Brush.h"

#include <array>

namespace tilebuilder
{

namespace
{
const LinearBrush s_linear;
const SmoothBrush s_smooth;
const RoundedBrush s_rounded;
const SharpBrush s_sharp;
const SolidBrush s_solid;
const GaussBrush s_gauss;

constexpr std::array<const Brush*, BrushCount> s_arrBrushes{&s_linear, &s_smooth, &s_rounded,
                                                            &s_sharp,  &s_solid,  &s_gauss};
constexpr std::array<const char*, BrushCount> s_arrNames{"Linear", "Smooth", "Rounded",
                                                         "Sharp",  "Solid",  "Gauss"};
} // namespace

const Brush* brush(size_t uIndex)
{
    return uIndex < BrushCount ? s_arrBrushes[uIndex] : nullptr;
}

const char* brushName(size_t uIndex)
{
    return uIndex < BrushCount ? s_arrNames[uIndex] : "";
}

} // namespace tilebuilder
