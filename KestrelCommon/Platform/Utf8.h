#pragma once // Code points of UTF-8 text.

#include <cstdint>
#include <string_view>
#include <vector>

/// All code points; a malformed byte yields U+FFFD and the reading goes on behind it.
[[nodiscard]] std::vector<uint32_t> codePoints(std::string_view sText);
