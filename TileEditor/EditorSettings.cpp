#include "TileEditor/EditorSettings.h"

#include "KestrelCommon/Data/JsonFile.h"

#include <json/value.h>

EditorSettings EditorSettings::read(std::string_view sPath)
{
    EditorSettings settings;
    if (const auto jRoot = readJsonFile(sPath))
        settings.fov = static_cast<int32_t>(
            std::clamp(jsonNumber(*jRoot, "FOV", s_iMinFov), double{s_iMinFov}, double{s_iMaxFov}));
    return settings;
}
