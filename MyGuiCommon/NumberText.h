#pragma once // Numbers with a fraction as people read and type them. No GUI.

#include <optional>
#include <string>
#include <string_view>

namespace NumberText
{

/// The shortest text with at most that many digits behind the point: "1.5", "-0.125", "3".
[[nodiscard]] std::string format(double fValue, int iDigits);

/// The number of a typed text, with blanks around it and a comma for the point allowed; nothing when it is
/// none or not finite.
[[nodiscard]] std::optional<double> parse(std::string_view sText);

} // namespace NumberText
