#pragma once // JSON as text, with the fewest digits.

#include <json/forwards.h>
#include <string>

enum class JsonStyle : uint8_t
{
    Compact,  ///< one line, no blanks
    Indented, ///< by three blanks, short lists of plain values on a line, ends in a line feed
};

/// UTF-8 is kept. A real number has the fewest digits that read back the same, and a point or an
/// exponent, so that it stays a real number; one that is not finite becomes 0.0 or the largest.
[[nodiscard]] std::string writeJsonText(const Json::Value& jValue, JsonStyle eStyle);

/// The double with the fewest digits among those that narrow to the float.
[[nodiscard]] double shortestDouble(float fValue);
