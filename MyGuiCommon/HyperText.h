#pragma once // The small part of HTML that help pages use. No GUI.

#include <string>
#include <string_view>
#include <vector>

/// A paragraph of a page.
struct HyperTextBlock
{
    enum class Kind : uint8_t
    {
        Title,  ///< h1
        Header, ///< h2
        Text,   ///< p
        Item,   ///< li
        Note,   ///< small
    };

    Kind eKind = Kind::Text;
    std::string sCaption; ///< for a widget: colour tags for emphasis, all else escaped

    bool operator==(const HyperTextBlock&) const = default;
};

/// Reads <h1>, <h2>, <p>, <li> and <small> as paragraphs and <b> as emphasis within them. Runs of
/// white space become one blank; &amp; &lt; &gt; and &quot; are known; other tags are left out, and
/// text outside of paragraphs is one of its own. Never fails.
[[nodiscard]] std::vector<HyperTextBlock> parseHyperText(std::string_view sPage);
