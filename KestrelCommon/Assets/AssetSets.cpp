#include "KestrelCommon/Assets/AssetSets.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Data/JsonFile.h"

#include <json/value.h>

namespace terrain
{

namespace
{

ColorMap readColors(const Json::Value& jColors, const std::string& sAsset)
{
    ColorMap mapColors;
    if (!jColors.isObject())
        return mapColors;
    for (auto it = jColors.begin(); it != jColors.end(); ++it)
    {
        const char* pSlotEnd = nullptr;
        const char* pSlot = it.memberName(&pSlotEnd);
        const std::string_view sSlot(pSlot, static_cast<size_t>(pSlotEnd - pSlot));
        const std::string_view sColor = jsonView(*it);
        const auto color = parseColor(sColor);
        if (!color)
            QM_LOG_WARNING("Asset '", sAsset, "': the colour '", sColor, "' of '", sSlot,
                           "' can't be read, white is used");
        mapColors.insert_or_assign(mapColors.end(), std::string(sSlot), color.value_or(0xFFFFFFFF));
    }
    return mapColors;
}

} // namespace

std::optional<uint32_t> parseColor(std::string_view sText)
{
    if (sText.starts_with('#'))
        sText.remove_prefix(1);
    if (sText.size() != 6 && sText.size() != 8)
        return std::nullopt;
    uint32_t uColor = sText.size() == 6 ? 0xFF000000 : 0;
    for (size_t u = 0; u < sText.size(); ++u)
    {
        const char c = sText[u];
        const int iDigit = c >= '0' && c <= '9'   ? c - '0'
                           : c >= 'a' && c <= 'f' ? c - 'a' + 10
                           : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                                  : -1;
        if (iDigit < 0)
            return std::nullopt;
        uColor |= static_cast<uint32_t>(iDigit) << (u / 2 * 8 + (u % 2 ? 0 : 4));
    }
    return uColor;
}

AssetSetList readAssetSetList(const Json::Value& jRoot)
{
    AssetSetList list;
    list.sIconDirectory = jsonText(jRoot, "iconDirectory");
    const Json::Value& jSets = jsonMember(jRoot, "assetSetList");
    if (!jSets.isArray())
        return list;
    for (const Json::Value& jSet : jSets)
    {
        AssetSetRef ref{jsonText(jSet, "assetSet"), jsonBool(jSet, "hidden", false), {}};
        if (ref.sSet.empty())
            continue;
        const Json::Value& jCategories = jsonMember(jSet, "categories");
        if (jCategories.isArray())
        {
            for (const Json::Value& jCategory : jCategories)
                if (jCategory.isString() && !jCategory.asString().empty())
                    ref.vecCategories.push_back(jCategory.asString());
        }
        else if (std::string sCategory = jsonText(jSet, "category"); !sCategory.empty())
            ref.vecCategories.push_back(std::move(sCategory));
        list.vecSets.push_back(std::move(ref));
    }
    return list;
}

std::vector<AssetEntry> readAssetSet(const Json::Value& jRoot)
{
    std::vector<AssetEntry> vecEntries;
    const Json::Value& jList = jsonMember(jRoot, "assetListRenderable");
    if (!jList.isArray())
        return vecEntries;
    vecEntries.reserve(jList.size());
    for (const Json::Value& jAsset : jList)
    {
        const Json::Value& jRenderable = jsonMember(jAsset, "renderable");
        if (!jRenderable.isString() && !jRenderable.isObject())
            continue;
        const std::string_view sUuid = jsonView(jsonMember(jAsset, "uuid"));
        const auto uuid = Uuid::parse(sUuid);
        if (!uuid || uuid->isNil())
        {
            QM_LOG_ERROR("Terrain Asset Parse uuid : ", sUuid);
            continue;
        }
        AssetEntry& entry = vecEntries.emplace_back();
        entry.uuid = *uuid;
        entry.sName = jsonView(jsonMember(jAsset, "name"));
        if (jRenderable.isString())
            entry.sRenderable = jsonView(jRenderable);
        else
            entry.renderable = resource::readRenderable(jRenderable);
        entry.mapDefaultColors = readColors(jsonMember(jAsset, "defaultColors"), entry.sName);
        entry.bHidden = jsonBool(jAsset, "hidden", false);
    }
    return vecEntries;
}

} // namespace terrain
