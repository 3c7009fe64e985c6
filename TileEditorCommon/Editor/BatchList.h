#pragma once // The text file that names the tiles of a batch.

#include <string>
#include <string_view>
#include <vector>

namespace tilebuilder
{

/// One line; an overlong one is cut and can't name a tile.
struct BatchLine
{
    std::string sText;
    bool bTooLong = false;
};

/// One tile a line of at most 259 characters, without quotes; LF or CR LF. A line end after the last
/// line gives one more, empty line; an empty text gives none.
[[nodiscard]] std::vector<BatchLine> readBatchList(std::string_view sText);

} // namespace tilebuilder
