#pragma once // The nine ground materials of the standard set.

#include "Tools/ContentBuilder/Canvas.h"

#include <span>

namespace content
{

struct Material
{
    const char* pFile; ///< files are named <pFile>_dif.png, _asg.png, _nor.png
    void (*fnPaint)(Canvas& canvas);
    float fRelief; ///< see Canvas::maps
    float fShade;
};

/// In the order of the set's file.
[[nodiscard]] std::span<const Material> materials();

} // namespace content
