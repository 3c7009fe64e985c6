#include "KestrelCommon/Tile/Records/CellFields.h"

namespace tile
{

void CellFieldWriter::colors(const ColorMap& mapColors)
{
    std::byte* const pCount = m_pPlace++;
    size_t uCount = 0;
    for (const auto& [sName, uColor] : mapColors)
    {
        if (sName.size() > MaxShortText || uCount == MaxShortList)
            continue;
        text8(sName);
        cellColor(uColor);
        ++uCount;
    }
    *pCount = static_cast<std::byte>(uCount);
}

void CellFieldWriter::tags(const TagsView& tags)
{
    std::byte* const pCount = m_pPlace++;
    size_t uCount = 0;
    tags.forEach(
        [&](std::string_view sTag)
        {
            text8(sTag);
            ++uCount;
        });
    *pCount = static_cast<std::byte>(uCount);
}

bool CellFieldReader::flag(bool& bValue)
{
    uint8_t uByte;
    if (!value(uByte))
        return false;
    bValue = uByte != 0;
    return true;
}

bool CellFieldReader::transform(Transform& transform, TransformForm eForm)
{
    if (!bytes(&transform, transformSize(eForm)))
        return false;
    transform.position += m_origin;
    if (eForm == TransformForm::UniformScale)
        transform.scale.z = transform.scale.y = transform.scale.x;
    if (eForm == TransformForm::NoScale)
        transform.scale = glm::vec3(1.0f);
    return true;
}

template <class Length>
bool CellFieldReader::text(std::string_view& sView)
{
    Length uLength;
    return value(uLength) && view(sView, uLength);
}

bool CellFieldReader::text8(std::string& sText)
{
    std::string_view sView;
    if (!text<uint8_t>(sView))
        return false;
    if (m_bKeep)
        sText = sView;
    return true;
}

bool CellFieldReader::text32(std::string& sText)
{
    std::string_view sView;
    if (!text<uint32_t>(sView))
        return false;
    if (m_bKeep)
        sText = sView;
    return true;
}

bool CellFieldReader::blob(std::vector<std::byte>& vecBlob)
{
    std::string_view sView;
    if (!text<uint32_t>(sView))
        return false;
    const auto spanBlob = std::as_bytes(std::span(sView));
    if (m_bKeep)
        vecBlob.assign(spanBlob.begin(), spanBlob.end());
    return true;
}

bool CellFieldReader::colors(ColorMap& mapColors)
{
    uint8_t uCount;
    if (!value(uCount))
        return false;
    for (; uCount > 0; --uCount)
    {
        std::string_view sName;
        uint32_t uColor;
        if (!text<uint8_t>(sName) || !cellColor(uColor))
            return false;
        if (m_bKeep)
            mapColors.emplace_hint(mapColors.end(), sName, uColor)->second = uColor;
    }
    return true;
}

bool CellFieldReader::tags(TagSet& setTags)
{
    uint8_t uCount;
    if (!value(uCount))
        return false;
    for (; uCount > 0; --uCount)
    {
        std::string_view sTag;
        if (!text<uint8_t>(sTag))
            return false;
        if (m_bKeep && !sTag.empty())
            setTags.emplace_hint(setTags.end(), sTag);
    }
    return true;
}

} // namespace tile
