#include "MyGuiCommon/MenuEntry.h"

#include "KestrelCommon/Core/Hash.h"

namespace
{

void append(std::string& sOut, std::string_view sText)
{
    sOut += std::to_string(sText.size());
    sOut += ':';
    sOut += sText;
}

/// All that shows, in a form in which no two lists look the same.
void describe(std::string& sOut, std::span<const MenuEntry> spanEntries)
{
    sOut += '(';
    for (const MenuEntry& entry : spanEntries)
    {
        sOut += std::to_string(static_cast<int>(entry.eKind) * 4 + (entry.bEnabled ? 2 : 0) +
                               (entry.bChecked ? 1 : 0));
        append(sOut, entry.sLabel);
        append(sOut, entry.sId);
        append(sOut, entry.sIcon);
        append(sOut, entry.sTip);
        if (entry.colour)
            for (const float fChannel : *entry.colour)
                append(sOut, std::to_string(fChannel));
        describe(sOut, entry.vecChildren);
    }
    sOut += ')';
}

} // namespace

uint64_t hashMenu(std::span<const MenuEntry> spanEntries)
{
    std::string sText;
    describe(sText, spanEntries);
    return fnv1a64(sText);
}

std::string escapeCaption(std::string_view sText)
{
    std::string sOut;
    for (const char c : sText)
    {
        sOut += c;
        if (c == '#')
            sOut += c;
    }
    return sOut;
}
