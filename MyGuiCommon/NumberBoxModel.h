#pragma once // What a number box does to its number. No GUI.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Whole numbers with two ranges: that of the slider and the arrows, and the wider one of typing.
struct NumberRange
{
    int32_t iMin = 0;
    int32_t iMax = 100;
    int32_t iTypedMin = 0;
    int32_t iTypedMax = 100;
};

namespace NumberBoxModel
{

/// The value at a place along the slider; places beyond its ends count as the ends.
[[nodiscard]] int32_t fromFraction(const NumberRange& range, float fFraction);

/// How far the slider is filled, 0 to 1; a value beyond the slider's range fills or empties it.
[[nodiscard]] float fraction(const NumberRange& range, int32_t iValue);

/// A step of an arrow stays within the slider's range, but never moves a value that was typed
/// beyond it the wrong way.
[[nodiscard]] int32_t step(const NumberRange& range, int32_t iValue, int32_t iSteps);

/// The number of a typed text, rounded and clamped to the typed range; nothing when it is none.
[[nodiscard]] std::optional<int32_t> parse(const NumberRange& range, std::string_view sText);

} // namespace NumberBoxModel
