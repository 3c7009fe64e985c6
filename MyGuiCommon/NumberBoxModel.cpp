#include "MyGuiCommon/NumberBoxModel.h"

#include <charconv>

namespace NumberBoxModel
{

int32_t fromFraction(const NumberRange& range, float fFraction)
{
    const double fSpan = static_cast<double>(range.iMax) - range.iMin;
    return static_cast<int32_t>(std::lround(range.iMin + fSpan * std::clamp(fFraction, 0.0f, 1.0f)));
}

float fraction(const NumberRange& range, int32_t iValue)
{
    if (range.iMax <= range.iMin)
        return 0.0f;
    const double fSpan = static_cast<double>(range.iMax) - range.iMin;
    return std::clamp(static_cast<float>((static_cast<double>(iValue) - range.iMin) / fSpan), 0.0f, 1.0f);
}

int32_t step(const NumberRange& range, int32_t iValue, int32_t iSteps)
{
    const int64_t iNext = int64_t{iValue} + iSteps;
    const int64_t iLow = std::min<int64_t>(range.iMin, iValue);
    const int64_t iHigh = std::max<int64_t>(range.iMax, iValue);
    return static_cast<int32_t>(std::clamp(iNext, iLow, iHigh));
}

std::optional<int32_t> parse(const NumberRange& range, std::string_view sText)
{
    while (!sText.empty() && sText.front() == ' ')
        sText.remove_prefix(1);
    while (!sText.empty() && sText.back() == ' ')
        sText.remove_suffix(1);
    if (!sText.empty() && sText.front() == '+')
        sText.remove_prefix(1);
    double fValue = 0.0;
    const auto [pEnd, error] = std::from_chars(sText.data(), sText.data() + sText.size(), fValue);
    if (error != std::errc{} || pEnd != sText.data() + sText.size() || !std::isfinite(fValue))
        return std::nullopt;
    return static_cast<int32_t>(std::lround(
        std::clamp(fValue, static_cast<double>(range.iTypedMin), static_cast<double>(range.iTypedMax))));
}

} // namespace NumberBoxModel
