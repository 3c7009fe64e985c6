#pragma once // How an entity may be scaled.

#include <cstdint>

namespace tilebuilder
{

enum ScaleFlags : uint8_t
{
    ScaleCan = 1,     ///< the object can be scaled
    ScaleQuarter = 2, ///< its unit scale is 0.25
    ScaleUniform = 4, ///< the same factor applies to all axes
    ScaleKeepY = 8,   ///< the Y factor stays as it is
};

} // namespace tilebuilder
