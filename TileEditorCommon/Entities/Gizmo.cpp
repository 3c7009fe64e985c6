#include "TileEditorCommon/Entities/Gizmo.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Data/JsonFile.h"

#include <json/value.h>
#include <unordered_map>

namespace tilebuilder
{

namespace
{

std::unordered_map<uint64_t, uint32_t> s_mapHandles; ///< by hash of the name
std::vector<std::string> s_vecPaths;                 ///< by handle
bool s_bLoaded = false;

void load()
{
    if (s_bLoaded)
        return;
    s_bLoaded = true;
    s_vecPaths.emplace_back(Gizmo::s_pFallbackPath);
    if (const auto jFile = readJsonFile(Gizmo::s_pListPath))
        for (const Json::Value& jGizmo : jsonMember(*jFile, "gizmos"))
        {
            const std::string sName = jsonText(jGizmo, "name");
            const std::string sPath = jsonText(jGizmo, "path");
            if (sName.empty() || sPath.empty())
                continue;
            s_mapHandles[Gizmo::hash(sName)] = static_cast<uint32_t>(s_vecPaths.size());
            s_vecPaths.push_back(sPath);
        }
    s_mapHandles[0] = 0;
}

} // namespace

uint32_t Gizmo::handleByHash(uint64_t uHash)
{
    load();
    const auto itFound = s_mapHandles.find(uHash);
    if (itFound != s_mapHandles.end())
        return itFound->second;
    QM_LOG_ERROR("Gizmo hash ", uHash, " not found");
    return 0;
}

std::string Gizmo::pathByHandle(uint32_t uHandle)
{
    load();
    if (uHandle < s_vecPaths.size())
        return s_vecPaths[uHandle];
    QM_LOG_ERROR("Gizmo ", uHandle, " not found");
    return s_pFallbackPath;
}

std::vector<std::string> Gizmo::allPaths()
{
    load();
    return s_vecPaths;
}

void Gizmo::reset()
{
    s_bLoaded = false;
    s_mapHandles.clear();
    s_vecPaths.clear();
}

} // namespace tilebuilder
