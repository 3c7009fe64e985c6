#pragma once // Tags and colours of a stored object, and their limits.

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace tile
{

/// Tags in the order of their bytes, as they are stored.
using TagSet = std::set<std::string, std::less<>>;

/// Colours by slot name, red in the lowest byte.
using ColorMap = std::map<std::string, uint32_t, std::less<>>;

/// Counts and lengths of tags and slot names are one byte: entries beyond that have no stored
/// form and are left out, as are empty tags.
constexpr size_t MaxShortText = 255;
constexpr size_t MaxShortList = 255;

/// Bytes that stored lists take at most.
constexpr size_t MaxTagBytes = 1 + MaxShortList * (1 + MaxShortText);
constexpr size_t MaxColorBytes = 1 + MaxShortList * (1 + MaxShortText + sizeof(uint32_t));

/// The tags of an object: its own and those of the prefabs around it. Borrowed; either may be null.
struct TagsView
{
    const TagSet* pOwn = nullptr;
    const TagSet* pInherited = nullptr;

    /// Calls with each storable tag of the union, in order.
    template <class Visit>
    void forEach(Visit&& fnVisit) const;
};

/// The tags of an old text: words between blanks, commas and semicolons.
[[nodiscard]] TagSet splitTagText(std::string_view sText);

template <class Visit>
void TagsView::forEach(Visit&& fnVisit) const
{
    size_t uCount = 0;
    const auto visit = [&](const std::string& sTag)
    {
        if (sTag.empty() || sTag.size() > MaxShortText || uCount == MaxShortList)
            return;
        fnVisit(std::string_view(sTag));
        ++uCount;
    };
    if (!pOwn || !pInherited || pInherited->empty())
    {
        if (const TagSet* pTags = pOwn ? pOwn : pInherited)
            for (const std::string& sTag : *pTags)
                visit(sTag);
        return;
    }
    auto itOwn = pOwn->begin();
    auto itInherited = pInherited->begin();
    while (itOwn != pOwn->end() || itInherited != pInherited->end())
    {
        const int iOrder = itOwn == pOwn->end()               ? 1
                           : itInherited == pInherited->end() ? -1
                                                              : itOwn->compare(*itInherited);
        visit(iOrder <= 0 ? *itOwn : *itInherited);
        if (iOrder <= 0)
            ++itOwn;
        if (iOrder >= 0)
            ++itInherited;
    }
}

} // namespace tile
