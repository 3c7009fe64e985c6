#include "KestrelCommon/Tile/Records/TagList.h"

namespace tile
{

TagSet splitTagText(std::string_view sText)
{
    constexpr std::string_view sSeparators = " ,;";
    TagSet setTags;
    for (size_t uStart = sText.find_first_not_of(sSeparators); uStart != std::string_view::npos;)
    {
        const size_t uEnd = std::min(sText.find_first_of(sSeparators, uStart), sText.size());
        setTags.emplace(sText.substr(uStart, uEnd - uStart));
        uStart = sText.find_first_not_of(sSeparators, uEnd);
    }
    return setTags;
}

} // namespace tile
