#pragma once // The folders that the operating system gives a program.

#include <filesystem>

namespace platform
{

/// $XDG_DATA_HOME, else ~/.local/share; empty when neither can be found.
[[nodiscard]] std::filesystem::path roamingDataFolder();

/// $XDG_CACHE_HOME, else ~/.cache; empty when neither can be found.
[[nodiscard]] std::filesystem::path localDataFolder();

/// The folder of the running program's file.
[[nodiscard]] std::filesystem::path programFolder();

} // namespace platform
