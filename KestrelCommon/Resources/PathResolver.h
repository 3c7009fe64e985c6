#pragma once // How this room finds files.

#include <filesystem>
#include <functional>
#include <string_view>

namespace resource
{

/// From a keyed path ("$GAME_DATA/...") to a real one; empty when it has no valid key. Any thread.
using PathResolver = std::function<std::filesystem::path(std::string_view)>;

} // namespace resource
