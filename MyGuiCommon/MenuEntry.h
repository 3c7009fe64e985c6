#pragma once // What a menu or bar shows, as plain values.

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

struct MenuEntry
{
    enum class Kind : uint8_t
    {
        Action,
        Check,
        Radio,
        Separator,
        Menu, ///< opens its children
        Label,
    };

    Kind eKind = Kind::Action;
    std::string sLabel; ///< with colour tags; user text must be escaped
    std::string sId;    ///< empty: can't be addressed later
    std::string sIcon;  ///< picture file below the GUI folder
    std::string sTip;
    bool bEnabled = true;
    bool bChecked = false;
    std::optional<std::array<float, 4>> colour; ///< of the icon, else of the text
    std::function<void()> fnAction;
    std::vector<MenuEntry> vecChildren;
};

/// Equal for lists that look alike; handlers don't count.
[[nodiscard]] uint64_t hashMenu(std::span<const MenuEntry> spanEntries);

/// User text for a caption: characters that begin a tag are doubled.
[[nodiscard]] std::string escapeCaption(std::string_view sText);
