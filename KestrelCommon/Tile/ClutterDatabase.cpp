#include "KestrelCommon/Tile/ClutterDatabase.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Data/JsonFile.h"

#include <json/value.h>

namespace tile
{

namespace
{

uint32_t flagsOf(const Json::Value& entry)
{
    uint32_t uFlags = 0;
    if (jsonBool(entry, "groundNormal", false))
        uFlags |= GrassInfo::GroundNormal;
    if (jsonBool(entry, "wind", false))
        uFlags |= GrassInfo::Wind;
    if (jsonText(entry, "slope") == "skew")
        uFlags |= GrassInfo::Slope;
    if (jsonText(entry, "rotate") == "rotate")
        uFlags |= GrassInfo::Rotate;
    return uFlags;
}

int32_t indexIn(std::vector<std::string>& vecPaths, std::string sPath)
{
    const auto it = std::find(vecPaths.begin(), vecPaths.end(), sPath);
    if (it != vecPaths.end())
        return static_cast<int32_t>(it - vecPaths.begin());
    vecPaths.push_back(std::move(sPath));
    return static_cast<int32_t>(vecPaths.size()) - 1;
}

} // namespace

void ClutterDatabase::loadGameDatabases()
{
    load("$GAME_DATA/Terrain/Database/clutter.json");
    load("$SURVIVAL_DATA/Terrain/Database/clutter.json");
}

bool ClutterDatabase::load(std::string_view sPath)
{
    const auto root = readJsonFile(sPath);
    return root && loadRoot(*root);
}

bool ClutterDatabase::loadText(std::string_view sText, std::string_view sName)
{
    std::string sError;
    const auto root = parseJson(sText, sError);
    if (!root)
    {
        QM_LOG_ERROR("Failed to parse file '", sName, "':\n", sError);
        return false;
    }
    return loadRoot(*root);
}

bool ClutterDatabase::loadRoot(const Json::Value& root)
{
    for (const Json::Value& entry : jsonMember(root, "clutterList"))
    {
        const std::string sUuid = jsonText(entry, "uuid");
        const auto uuid = Uuid::parse(sUuid);
        if (!uuid)
        {
            QM_LOG_ERROR("Invalid UUID {", sUuid, "}");
            continue;
        }
        if (!QM_ASSERT_TEXT(m_vecTypes.size() < s_uMaxTypes, "s_vecGrassInfo.size() < 255"))
            return true;

        GrassInfo info;
        info.uuid = *uuid;
        info.name = jsonText(entry, "name");
        info.flags = flagsOf(entry);
        info.height = static_cast<float>(jsonNumber(entry, "height", 0.0));
        info.scaleVariance = static_cast<float>(jsonNumber(entry, "scaleVariance", 0.0));
        info.meshIndex = indexIn(m_vecMeshes, jsonText(entry, "mesh"));
        info.textureIndex = static_cast<int32_t>(m_vecTextures.size());
        m_vecTextures.push_back(jsonText(entry, "texture"));
        info.impostorTexture = jsonText(entry, "impostor_texture");
        m_mapIndexOf.insert_or_assign(*uuid, static_cast<uint8_t>(m_vecTypes.size()));
        m_vecUuids.push_back(*uuid);
        m_vecTypes.push_back(std::move(info));
    }
    return true;
}

} // namespace tile
