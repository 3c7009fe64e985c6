#include "KestrelCommon/Resources/PathUpgrades.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"

#include <json/json.h>

#include <fstream>

namespace resource
{

namespace
{

constexpr int s_iMaxDepth = 8;

} // namespace

bool PathUpgrades::exists(std::string_view sPath) const
{
    std::error_code error;
    return std::filesystem::is_regular_file(m_fnResolve(sPath), error);
}

bool PathUpgrades::load(std::string_view sKeyedPath)
{
    std::ifstream file(m_fnResolve(sKeyedPath));
    if (!file)
    {
        QM_LOG_ERROR("Failed to parse '", sKeyedPath, "'. File not found!");
        return false;
    }
    Json::Value jRoot;
    std::string sProblem;
    if (!Json::parseFromStream(Json::CharReaderBuilder(), file, &jRoot, &sProblem) || !jRoot.isObject())
    {
        QM_LOG_ERROR("Failed to parse '", sKeyedPath, "' ", sProblem);
        return false;
    }
    const Json::Value& jTopNode = jRoot["upgrade"];
    if (!QM_ASSERT(jTopNode.isArray()))
        return false;
    for (const Json::Value& jUpgrade : jTopNode)
    {
        if (!QM_ASSERT(jUpgrade.isArray()))
            continue;
        for (Json::ArrayIndex uPair = 0; uPair < jUpgrade.size(); ++uPair)
        {
            const Json::Value& jPair = jUpgrade[uPair];
            if (!jPair.isArray() || jPair.size() != 2 || !jPair[0].isString() || !jPair[1].isString())
            {
                QM_LOG_ERROR("Entry no ", uPair + 1, " in \"", sKeyedPath,
                             "\" does not consist of two items!");
                continue;
            }
            std::string sOld = jPair[0].asString();
            if (exists(sOld))
            {
                QM_LOG_WARNING(sOld, " is marked for upgrade, but the file exists. Ignoring upgrade pair");
                continue;
            }
            m_mapUpgrades.insert_or_assign(std::move(sOld), jPair[1].asString());
        }
    }
    return true;
}

std::string PathUpgrades::upgrade(std::string_view sPath) const
{
    std::string sResult(sPath);
    for (int iDepth = 0;; ++iDepth)
    {
        if (iDepth > s_iMaxDepth)
        {
            QM_LOG_ERROR("Failed to internaly upgrade the path: \"", sResult,
                         "\" has reached the max upgrade depth of: ", s_iMaxDepth);
            return sResult;
        }
        if (sResult.empty() || exists(sResult))
            return sResult;
        const auto it = m_mapUpgrades.find(sResult);
        if (it == m_mapUpgrades.end())
            return sResult;
        sResult = it->second;
    }
}

} // namespace resource
