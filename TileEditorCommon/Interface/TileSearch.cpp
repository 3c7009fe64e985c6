#include "TileEditorCommon/Interface/TileSearch.h"

#include <algorithm>

namespace tilebuilder
{

std::string lowered(std::string_view sText)
{
    std::string sLower(sText);
    for (char& c : sLower)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return sLower;
}

std::vector<std::string> searchWords(std::string_view sText)
{
    std::vector<std::string> vecWords;
    const std::string sLower = lowered(sText);
    for (size_t uAt = 0; uAt < sLower.size();)
    {
        const size_t uEnd = std::min(sLower.find(' ', uAt), sLower.size());
        if (uEnd > uAt)
            vecWords.push_back(sLower.substr(uAt, uEnd - uAt));
        uAt = uEnd + 1;
    }
    return vecWords;
}

std::vector<size_t> filterTiles(const std::vector<TileFile>& vecFiles,
                                const std::vector<std::string>& vecWords)
{
    std::vector<size_t> vecFound;
    for (size_t i = 0; i < vecFiles.size(); ++i)
    {
        const std::string sName = lowered(vecFiles[i].sName);
        if (std::all_of(vecWords.begin(), vecWords.end(),
                        [&](const std::string& sWord) { return sName.find(sWord) != std::string::npos; }))
            vecFound.push_back(i);
    }
    return vecFound;
}

} // namespace tilebuilder
