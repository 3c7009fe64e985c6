#include "MyGuiCommon/HyperText.h"

namespace
{

using Kind = HyperTextBlock::Kind;

constexpr std::string_view s_sEmphasis = "#FFD044";
constexpr std::string_view s_sPlain = "#E6E8EB";

/// Gathers the paragraphs of a page.
class Builder
{
public:
    void text(char c)
    {
        if (c == ' ' || c == '\n' || c == '\t' || c == '\r')
        {
            m_bBlank = !m_current.sCaption.empty();
            return;
        }
        if (std::exchange(m_bBlank, false))
            m_current.sCaption += ' ';
        m_current.sCaption += c;
        if (c == '#')
            m_current.sCaption += c;
        m_bWritten = true;
    }

    void tag(std::string_view sTag)
    {
        if (sTag == "b" || sTag == "/b")
        {
            if (std::exchange(m_bBlank, false))
                m_current.sCaption += ' ';
            m_current.sCaption += sTag == "b" ? s_sEmphasis : s_sPlain;
        }
        else if (sTag == "h1")
            begin(Kind::Title);
        else if (sTag == "h2")
            begin(Kind::Header);
        else if (sTag == "li")
            begin(Kind::Item);
        else if (sTag == "small")
            begin(Kind::Note);
        else if (sTag == "p" || sTag == "/h1" || sTag == "/h2" || sTag == "/p" || sTag == "/li" ||
                 sTag == "/small")
            begin(Kind::Text);
    }

    std::vector<HyperTextBlock> take()
    {
        begin(Kind::Text);
        return std::move(m_vecBlocks);
    }

private:
    /// Ends the paragraph, if it holds anything, and begins one.
    void begin(Kind eKind)
    {
        if (m_bWritten)
            m_vecBlocks.push_back(m_current);
        m_current = {.eKind = eKind, .sCaption = {}};
        m_bBlank = false;
        m_bWritten = false;
    }

    std::vector<HyperTextBlock> m_vecBlocks;
    HyperTextBlock m_current;
    bool m_bBlank = false;   ///< white space waits for the next word
    bool m_bWritten = false; ///< the paragraph holds more than tags
};

/// The character of an entity at the text's start and its length; 0 when there is none.
std::pair<char, size_t> entity(std::string_view sText)
{
    constexpr std::pair<std::string_view, char> s_arrEntities[] = {
        {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}};
    for (const auto& [sName, c] : s_arrEntities)
        if (sText.starts_with(sName))
            return {c, sName.size()};
    return {'\0', 0};
}

} // namespace

std::vector<HyperTextBlock> parseHyperText(std::string_view sPage)
{
    Builder builder;
    for (size_t i = 0; i < sPage.size();)
    {
        const size_t uEnd = sPage[i] == '<' ? sPage.find('>', i) : std::string_view::npos;
        if (uEnd != std::string_view::npos)
        {
            builder.tag(sPage.substr(i + 1, uEnd - i - 1));
            i = uEnd + 1;
        }
        else if (const auto [c, uLength] = entity(sPage.substr(i)); uLength > 0)
        {
            builder.text(c);
            i += uLength;
        }
        else
            builder.text(sPage[i++]);
    }
    return builder.take();
}
