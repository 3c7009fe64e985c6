#pragma once // The lists of the world generator that a tile can be a member of. No GUI.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tilebuilder
{

/// By category number.
inline constexpr std::array<std::string_view, 4> TerrainCategoryNames{"Standard", "Cliffs & Roads", "Ravines",
                                                                      "Lakes"};

/// The entries of a category's list; an entry's place is its index. Empty for "Standard" and for
/// a category that doesn't exist.
[[nodiscard]] std::vector<std::string> terrainCategoryLabels(uint32_t uCategory);

} // namespace tilebuilder
