#pragma once // The tags that the editor knows.

#include "KestrelCommon/Tile/Records/TagList.h"

#include <string>

namespace tilebuilder
{

/// The names that lists of tags offer. Exactly one exists; main thread only.
class TagManager
{
public:
    static TagManager* s_pInstance;

    TagManager();
    ~TagManager();
    TagManager(const TagManager&) = delete;
    TagManager& operator=(const TagManager&) = delete;

    void add(std::string_view sTag);
    void add(const tile::TagSet& setTags);
    /// In string order.
    [[nodiscard]] const tile::TagSet& tags() const { return m_setTags; }

private:
    tile::TagSet m_setTags;
};

} // namespace tilebuilder
