#pragma once // What the right-click menu of entities shows, as plain values.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tilebuilder
{

/// An entry. One with children opens them; when it also names a command, a click runs that.
struct EntityMenuItem
{
    std::string sLabel;    ///< a blank at its end: the text of the action's key goes behind it
    uint32_t uAction = 0;  ///< number in the table of keys; 0: none
    uint32_t uCommand = 0; ///< for EditorActionsI::runEntityMenu; 0: none
    bool bEnabled = true;
    bool bSeparator = false; ///< a line between others, nothing else counts then
    std::vector<EntityMenuItem> vecChildren;

    /// The label with its key, and the bracket closed that it may have opened.
    [[nodiscard]] std::string text(const std::function<std::string(uint32_t uAction)>& fnKeyText) const
    {
        std::string sText = sLabel;
        if (!sLabel.empty() && sLabel.back() == ' ')
            sText += uAction != 0 ? fnKeyText(uAction) : std::string();
        if (!sLabel.empty() && sLabel.front() == '[' && sLabel.back() != ']')
            sText += "]";
        return sText;
    }
};

} // namespace tilebuilder
