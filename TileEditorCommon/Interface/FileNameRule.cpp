#include "TileEditorCommon/Interface/FileNameRule.h"

#include <algorithm>

namespace tilebuilder
{

bool isValidFileName(std::string_view sName)
{
    if (sName.empty() || sName.front() == ' ' || sName.back() == ' ')
        return false;
    const auto isForbidden = [](char c)
    {
        return static_cast<unsigned char>(c) < 32 ||
               std::string_view("<>:\"/\\|").find(c) != std::string_view::npos;
    };
    if (std::any_of(sName.begin(), sName.end(), isForbidden))
        return false;
    return sName.back() != '.' || sName == "." || sName == "..";
}

} // namespace tilebuilder
