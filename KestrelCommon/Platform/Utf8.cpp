#include "KestrelCommon/Platform/Utf8.h"

namespace
{

constexpr uint32_t s_uReplacement = 0xFFFD;

/// Bytes of the sequence that begins with this byte; 0 for one that can't begin any.
size_t sequenceLength(uint8_t uFirst)
{
    if (uFirst < 0x80)
        return 1;
    if (uFirst >= 0xC2 && uFirst <= 0xDF)
        return 2;
    if ((uFirst & 0xF0) == 0xE0)
        return 3;
    return uFirst >= 0xF0 && uFirst <= 0xF4 ? 4 : 0;
}

/// The smallest code point that needs that many bytes.
constexpr uint32_t s_arrSmallest[] = {0, 0, 0x80, 0x800, 0x10000};

} // namespace

std::vector<uint32_t> codePoints(std::string_view sText)
{
    std::vector<uint32_t> vecPoints;
    for (size_t uAt = 0; uAt < sText.size();)
    {
        const auto uFirst = static_cast<uint8_t>(sText[uAt]);
        const size_t uLength = sequenceLength(uFirst);
        uint32_t uPoint = uLength == 1 ? uFirst : uFirst & (0x7Fu >> uLength);
        bool bGood = uLength > 0 && uAt + uLength <= sText.size();
        for (size_t i = 1; bGood && i < uLength; ++i)
        {
            const auto uNext = static_cast<uint8_t>(sText[uAt + i]);
            bGood = (uNext & 0xC0) == 0x80;
            uPoint = uPoint << 6 | (uNext & 0x3Fu);
        }
        bGood = bGood && uPoint >= s_arrSmallest[uLength] && uPoint <= 0x10FFFF &&
                (uPoint < 0xD800 || uPoint > 0xDFFF);
        vecPoints.push_back(bGood ? uPoint : s_uReplacement);
        uAt += bGood ? uLength : 1;
    }
    return vecPoints;
}
