#include "TileEditorCommon/Entities/TagManager.h"

#include "KestrelCommon/Core/Assert.h"

namespace tilebuilder
{

TagManager* TagManager::s_pInstance = nullptr;

TagManager::TagManager()
{
    static_cast<void>(QM_ASSERT_TEXT(s_pInstance == nullptr, "Double TagManager Creation"));
    s_pInstance = this;
}

TagManager::~TagManager()
{
    s_pInstance = nullptr;
}

void TagManager::add(std::string_view sTag)
{
    if (!sTag.empty() && !m_setTags.contains(sTag))
        m_setTags.emplace(sTag);
}

void TagManager::add(const tile::TagSet& setTags)
{
    for (const std::string& sTag : setTags)
        add(sTag);
}

} // namespace tilebuilder
