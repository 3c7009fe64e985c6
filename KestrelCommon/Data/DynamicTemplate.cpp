#include "KestrelCommon/Data/DynamicTemplate.h"

bool matchesWildcard(std::string_view sPattern, std::string_view sText)
{
    size_t uPattern = 0;
    size_t uText = 0;
    // Where to go on when a guess on the length of the last '*' fails.
    size_t uStar = std::string_view::npos;
    size_t uRetry = 0;
    while (uText < sText.size())
    {
        if (uPattern < sPattern.size() && sPattern[uPattern] == '*')
        {
            uStar = uPattern++;
            uRetry = uText;
        }
        else if (uPattern < sPattern.size() &&
                 (sPattern[uPattern] == '?' || sPattern[uPattern] == sText[uText]))
        {
            ++uPattern;
            ++uText;
        }
        else if (uStar != std::string_view::npos)
        {
            uPattern = uStar + 1;
            uText = ++uRetry;
        }
        else
            return false;
    }
    while (uPattern < sPattern.size() && sPattern[uPattern] == '*')
        ++uPattern;
    return uPattern == sPattern.size();
}

const DynamicTemplate::Meta* DynamicTemplate::meta(DynamicData::PlaceId uId) const
{
    const auto iterMeta = m_mapMeta.find(uId);
    return iterMeta == m_mapMeta.end() ? nullptr : iterMeta->second.get();
}

const DynamicData::Value* DynamicTemplate::defaultOf(DynamicData::PlaceId uId) const
{
    const auto iterDefault = m_mapDefaults.find(uId);
    return iterDefault == m_mapDefaults.end() ? nullptr : &iterDefault->second;
}

const std::vector<DynamicData::KeyHash>& DynamicTemplate::keysOf(DynamicData::PlaceId uId) const
{
    static const std::vector<DynamicData::KeyHash> s_vecNone;
    const auto iterKeys = m_mapKeys.find(uId);
    return iterKeys == m_mapKeys.end() ? s_vecNone : iterKeys->second;
}

bool DynamicTemplate::matches(std::string_view sFilePath) const
{
    return std::ranges::any_of(m_vecPatterns, [sFilePath](const std::string& sPattern)
                               { return matchesWildcard(sPattern, sFilePath); });
}

size_t DynamicTemplate::addListener(Listener fnListener)
{
    m_vecListeners.emplace_back(m_uNextListener, std::move(fnListener));
    return m_uNextListener++;
}

void DynamicTemplate::removeListener(size_t uNumber)
{
    std::erase_if(m_vecListeners, [uNumber](const auto& entry) { return entry.first == uNumber; });
}
