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

bool fitCaption(MyGUI::TextBox& box, std::string_view sText, int iWidth)
{
    const auto measure = [&box](std::string_view sPart)
    {
        box.setCaption(escapeCaption(sPart));
        return box.getTextSize().width;
    };
    const std::string sShown = shorten(sText, iWidth, measure);
    box.setCaption(escapeCaption(sShown));
    return sShown != sText;
}

} // namespace GuiText
