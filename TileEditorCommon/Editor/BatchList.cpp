#include "TileEditorCommon/Editor/BatchList.h"

namespace tilebuilder
{

namespace
{
constexpr size_t s_uMaxLine = 259;
}

std::vector<BatchLine> readBatchList(std::string_view sText)
{
    std::vector<BatchLine> vecLines;
    if (sText.empty())
        return vecLines;
    for (size_t uStart = 0; uStart <= sText.size();)
    {
        const size_t uEnd = std::min(sText.find('\n', uStart), sText.size());
        std::string_view sLine = sText.substr(uStart, uEnd - uStart);
        if (sLine.ends_with('\r'))
            sLine.remove_suffix(1);
        vecLines.push_back({std::string(sLine.substr(0, s_uMaxLine)), sLine.size() > s_uMaxLine});
        uStart = uEnd + 1;
    }
    return vecLines;
}

} // namespace tilebuilder
