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

/// The tags of an object: its own and those of the prefabs around it. Borrowed; either may be null.
struct TagsView
{
    const TagSet* pOwn = nullptr;
    const TagSet* pInherited = nullptr;

    /// Bytes that the stored list takes at most.
    [[nodiscard]] size_t maxBytes() const;

    /// Calls with each storable tag of the union, in order.
    template <class Visit>
    void forEach(Visit&& fnVisit) const;
};

/// The tags of an old text: words between blanks, commas and semicolons.
[[nodiscard]] TagSet splitTagText(std::string_view sText);

template <class Visit>
void TagsView::forEach(Visit&& fnVisit) const
{
    static const TagSet s_setNone;
    const TagSet& setOwn = pOwn ? *pOwn : s_setNone;
    const TagSet& setInherited = pInherited ? *pInherited : s_setNone;
    auto itOwn = setOwn.begin();
    auto itInherited = setInherited.begin();
    for (size_t uCount = 0; uCount < MaxShortList;)
    {
        const bool bOwn = itOwn != setOwn.end();
        const bool bInherited = itInherited != setInherited.end();
        if (!bOwn && !bInherited)
            return;
        const int iOrder = !bOwn ? 1 : !bInherited ? -1 : itOwn->compare(*itInherited);
        const std::string& sTag = iOrder <= 0 ? *itOwn : *itInherited;
        if (iOrder <= 0)
            ++itOwn;
        if (iOrder >= 0)
            ++itInherited;
        if (sTag.empty() || sTag.size() > MaxShortText)
            continue;
        fnVisit(std::string_view(sTag));
        ++uCount;
    }
}

} // namespace tile
