#include "MyGuiCommon/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>

std::string NumberText::format(double fValue, int iDigits)
{
    std::array<char, 400> arrText{}; // the largest double has 309 digits before the point
    const auto result = std::to_chars(arrText.data(), arrText.data() + arrText.size(), fValue,
                                      std::chars_format::fixed, iDigits);
    std::string sText(arrText.data(), result.ptr);
    if (sText.find('.') != std::string::npos)
    {
        sText.erase(sText.find_last_not_of('0') + 1);
        if (sText.back() == '.')
            sText.pop_back();
    }
    return sText == "-0" ? "0" : sText;
}

std::optional<double> NumberText::parse(std::string_view sText)
{
    const size_t uFirst = sText.find_first_not_of(' ');
    if (uFirst == std::string_view::npos)
        return std::nullopt;
    std::string sNumber(sText.substr(uFirst, sText.find_last_not_of(' ') + 1 - uFirst));
    if (sNumber.front() == '+')
        sNumber.erase(0, 1);
    for (char& c : sNumber)
        if (c == ',')
            c = '.';
    double fValue = 0.0;
    const auto result = std::from_chars(sNumber.data(), sNumber.data() + sNumber.size(), fValue);
    if (result.ec != std::errc() || result.ptr != sNumber.data() + sNumber.size() || !std::isfinite(fValue))
        return std::nullopt;
    return fValue;
}
