#pragma once // The program's options.

#include <optional>
#include <string>

/// What the user asked for. Both values as given, the list without quotes and backslashes.
struct CommandLine
{
    std::optional<std::string> ugc;     ///< a content item to work in
    std::optional<std::string> process; ///< a text file with tiles to save again

    /// Arguments as the system splits them, the program's name first. An unknown option or a
    /// missing value prints "Error parsing options " and the reason to standard output.
    [[nodiscard]] static std::optional<CommandLine> parse(int iCount, const char* const* ppArguments);
};
