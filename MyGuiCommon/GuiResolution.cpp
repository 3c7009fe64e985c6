#include "MyGuiCommon/GuiResolution.h"

#include "KestrelCommon/Core/Console.h"

#include <json/json.h>

namespace
{

/// Width of the largest 16:9 box in the client area.
int boxWidth(int iClientWidth, int iClientHeight)
{
    const int64_t iWide = int64_t{iClientWidth} * 9;
    const int64_t iHigh = int64_t{iClientHeight} * 16;
    if (iWide > iHigh)
        return static_cast<int>(std::lround(iClientHeight * 16.0 / 9.0));
    if (iWide < iHigh)
        return static_cast<int>(std::lround(std::round(iClientWidth * 0.5625) * 16.0 / 9.0));
    return iClientWidth;
}

} // namespace

std::optional<GuiResolutionTable> parseGuiResolutions(const std::string& sJson)
{
    Json::Value root;
    Json::Reader reader;
    if (!reader.parse(sJson, root) || !root.isObject())
    {
        QM_LOG_ERROR("Failed to parse the GUI resolutions: ", reader.getFormattedErrorMessages());
        return std::nullopt;
    }
    GuiResolutionTable mapTable;
    const Json::Value& list = root["resolutionList"];
    for (Json::ArrayIndex i = 0; list.isArray() && i < list.size(); ++i)
    {
        if (!list[i].isObject())
            continue;
        const Json::Value width = list[i].get("w", 1280);
        const Json::Value scale = list[i].get("scale", 1.0);
        const int iWidth = width.isInt() ? width.asInt() : 1280;
        const float fScale = scale.isNumeric() ? scale.asFloat() : 1.0f;
        if (iWidth > 0)
            mapTable[iWidth] = {fScale >= 0.5f && fScale <= 8.0f ? fScale : 1.0f};
    }
    if (mapTable.empty())
    {
        QM_LOG_ERROR("The GUI resolutions list no width");
        return std::nullopt;
    }
    return mapTable;
}

GuiResolution chooseGuiResolution(const GuiResolutionTable& mapTable, int iClientWidth, int iClientHeight)
{
    const int iBox = boxWidth(iClientWidth, iClientHeight);
    auto itChosen = mapTable.begin();
    for (auto it = mapTable.begin(); it != mapTable.end() && it->first <= iBox; ++it)
        itChosen = it;

    GuiResolution chosen;
    chosen.iWidth = itChosen->first;
    chosen.iHeight = static_cast<int>(std::floor(chosen.iWidth * 0.5625 + 0.5));
    chosen.iOffsetX = (iClientWidth - chosen.iWidth) / 2;
    chosen.iOffsetY = (iClientHeight - chosen.iHeight) / 2;
    chosen.fScale = itChosen->second.fScale;
    return chosen;
}
