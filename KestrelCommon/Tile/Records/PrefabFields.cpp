#include "KestrelCommon/Tile/Records/PrefabFields.h"

namespace tile
{

namespace
{

// Entries of a list whose count stands before them.
template <class Each>
uint8_t countOf(Each&& fnEach)
{
    size_t uCount = 0;
    fnEach([&](auto&&...) { ++uCount; });
    return static_cast<uint8_t>(uCount);
}

} // namespace

void PrefabFieldWriter::place(const Transform& transform)
{
    for (int i = 0; i < 3; ++i)
        m_stream.write(transform.position[i]);
    for (const float fPart :
         {transform.rotation.x, transform.rotation.y, transform.rotation.z, transform.rotation.w})
        m_stream.write(fPart);
}

void PrefabFieldWriter::transform(const Transform& transform)
{
    place(transform);
    for (int i = 0; i < 3; ++i)
        m_stream.write(transform.scale[i]);
}

void PrefabFieldWriter::text8(std::string_view sText)
{
    value(static_cast<uint8_t>(sText.size()));
    aligned(sText.data(), sText.size());
}

void PrefabFieldWriter::text32(std::string_view sText)
{
    value(static_cast<uint32_t>(sText.size()));
    aligned(sText.data(), sText.size());
}

void PrefabFieldWriter::blob(std::span<const std::byte> spanBlob)
{
    value(static_cast<uint32_t>(spanBlob.size()));
    aligned(spanBlob.data(), spanBlob.size());
}

void PrefabFieldWriter::colors(const ColorMap& mapColors)
{
    const auto each = [&](auto&& fnVisit)
    {
        size_t uCount = 0;
        for (const auto& [sName, uColor] : mapColors)
            if (sName.size() <= MaxShortText && uCount++ < MaxShortList)
                fnVisit(sName, uColor);
    };
    value(countOf(each));
    each(
        [&](const std::string& sName, uint32_t uColor)
        {
            text8(sName);
            value(uColor);
        });
}

void PrefabFieldWriter::tags(const TagsView& tags)
{
    value(countOf([&](auto&& fnVisit) { tags.forEach(fnVisit); }));
    tags.forEach([&](std::string_view sTag) { text8(sTag); });
}

bool PrefabFieldReader::transform(Transform& transform, TransformForm eForm)
{
    std::array<float, TransformSize / sizeof(float)> arrParts;
    const size_t uParts = transformSize(eForm) / sizeof(float);
    for (size_t i = 0; i < uParts; ++i)
        if (!value(arrParts[i]))
            return false;
    std::memcpy(static_cast<void*>(&transform), arrParts.data(), uParts * sizeof(float));
    if (eForm == TransformForm::UniformScale)
        transform.scale.z = transform.scale.y = transform.scale.x;
    if (eForm == TransformForm::NoScale)
        transform.scale = glm::vec3(1.0f);
    return true;
}

template <class Length>
bool PrefabFieldReader::text(std::string_view& sView)
{
    Length uLength;
    std::span<const std::byte> spanText;
    if (!value(uLength) || !m_stream.viewAlignedBytes(spanText, uLength))
        return false;
    sView = {reinterpret_cast<const char*>(spanText.data()), spanText.size()};
    return true;
}

bool PrefabFieldReader::text8(std::string& sText)
{
    std::string_view sView;
    if (!text<uint8_t>(sView))
        return false;
    sText = sView;
    return true;
}

bool PrefabFieldReader::text32(std::string& sText)
{
    std::string_view sView;
    if (!text<uint32_t>(sView))
        return false;
    sText = sView;
    return true;
}

bool PrefabFieldReader::blob(std::vector<std::byte>& vecBlob)
{
    std::string_view sView;
    if (!text<uint32_t>(sView))
        return false;
    const auto spanBlob = std::as_bytes(std::span(sView));
    vecBlob.assign(spanBlob.begin(), spanBlob.end());
    return true;
}

bool PrefabFieldReader::colors(ColorMap& mapColors)
{
    uint8_t uCount;
    if (!value(uCount))
        return false;
    for (; uCount > 0; --uCount)
    {
        std::string_view sName;
        uint32_t uColor;
        if (!text<uint8_t>(sName) || !value(uColor))
            return false;
        mapColors.emplace_hint(mapColors.end(), sName, uColor)->second = uColor;
    }
    return true;
}

bool PrefabFieldReader::tags(TagSet& setTags)
{
    uint8_t uCount;
    if (!value(uCount))
        return false;
    for (; uCount > 0; --uCount)
    {
        std::string_view sTag;
        if (!text<uint8_t>(sTag))
            return false;
        if (!sTag.empty())
            setTags.emplace_hint(setTags.end(), sTag);
    }
    return true;
}

} // namespace tile
