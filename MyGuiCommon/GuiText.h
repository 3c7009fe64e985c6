#pragma once // Shortens texts that don't fit.

#include <functional>
#include <string>
#include <string_view>

namespace MyGUI
{
class TextBox;
}

namespace GuiText
{

/// The text itself when it fits; else as many whole characters as fit before an ellipsis. The
/// measure gives a text's width in the unit of the width.
[[nodiscard]] std::string shorten(std::string_view sText, int iWidth,
                                  const std::function<int(std::string_view)>& fnMeasure);

/// The same with the ellipsis in the middle, for names that differ at their ends.
[[nodiscard]] std::string shortenMiddle(std::string_view sText, int iWidth,
                                        const std::function<int(std::string_view)>& fnMeasure);

/// Sets a caption from plain text, shortened to that many pixels. True when it was shortened, and
/// so wants a tip with the whole of it.
bool fitCaption(MyGUI::TextBox& box, std::string_view sText, int iWidth, bool bMiddle = false);

} // namespace GuiText
