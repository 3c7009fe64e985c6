#include "MyGuiCommon/GuiText.h"

#include "MyGuiCommon/MenuEntry.h"

#include <MyGUI_TextBox.h>

namespace GuiText
{

namespace
{

constexpr std::string_view s_sEllipsis = "\xE2\x80\xA6";

bool beginsCharacter(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
}

} // namespace

std::string shorten(std::string_view sText, int iWidth, const std::function<int(std::string_view)>& fnMeasure)
{
    if (fnMeasure(sText) <= iWidth)
        return std::string(sText);
    std::vector<size_t> vecCuts;
    for (size_t i = 0; i < sText.size(); ++i)
        if (beginsCharacter(sText[i]))
            vecCuts.push_back(i);
    const auto cutAt = [&](size_t uCut)
    { return std::string(sText.substr(0, uCut)) + std::string(s_sEllipsis); };
    const auto itFirstTooWide = std::partition_point(
        vecCuts.begin(), vecCuts.end(), [&](size_t uCut) { return fnMeasure(cutAt(uCut)) <= iWidth; });
    return cutAt(itFirstTooWide == vecCuts.begin() ? 0 : *std::prev(itFirstTooWide));
}

std::string shortenMiddle(std::string_view sText, int iWidth,
                          const std::function<int(std::string_view)>& fnMeasure)
{
    if (fnMeasure(sText) <= iWidth)
        return std::string(sText);
    std::vector<size_t> vecStarts;
    for (size_t i = 0; i < sText.size(); ++i)
        if (beginsCharacter(sText[i]))
            vecStarts.push_back(i);
    // So many characters stay, the larger part of them at the end.
    const auto keep = [&](size_t uKept)
    {
        const size_t uHead = uKept / 3;
        const size_t uTail = uKept - uHead;
        return std::string(sText.substr(0, uHead < vecStarts.size() ? vecStarts[uHead] : sText.size())) +
               std::string(s_sEllipsis) +
               std::string(uTail == 0 ? "" : sText.substr(vecStarts[vecStarts.size() - uTail]));
    };
    size_t uKept = vecStarts.empty() ? 0 : vecStarts.size() - 1;
    while (uKept > 0 && fnMeasure(keep(uKept)) > iWidth)
        --uKept;
    return keep(uKept);
}

bool fitCaption(MyGUI::TextBox& box, std::string_view sText, int iWidth, bool bMiddle)
{
    const auto measure = [&box](std::string_view sPart)
    {
        box.setCaption(escapeCaption(sPart));
        return box.getTextSize().width;
    };
    const std::string sShown =
        bMiddle ? shortenMiddle(sText, iWidth, measure) : shorten(sText, iWidth, measure);
    box.setCaption(escapeCaption(sShown));
    return sShown != sText;
}

} // namespace GuiText
