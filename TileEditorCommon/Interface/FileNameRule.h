#pragma once // Which texts may name a tile's file. No GUI.

#include <string_view>

namespace tilebuilder
{

/// Not empty, no blank at either end, no control character and none of < > : " / \ |, and no point
/// at the end except in the names of one and of two points.
[[nodiscard]] bool isValidFileName(std::string_view sName);

} // namespace tilebuilder
