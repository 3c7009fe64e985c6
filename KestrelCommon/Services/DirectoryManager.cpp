#include "KestrelCommon/Services/DirectoryManager.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"

#include <cctype>
#include <cerrno>
#include <ctime>
#include <mutex>
#include <unistd.h>

DirectoryManager* DirectoryManager::ms_pInstance = nullptr;

namespace
{

namespace fs = std::filesystem;

constexpr std::string_view s_sContentPrefix = "$CONTENT_";
constexpr std::string_view s_sModPrefix = "$MOD_";
constexpr std::string_view s_sTilePrefix = "$TILE_";
constexpr std::string_view s_sGenericContent = "$CONTENT_DATA";
constexpr std::string_view s_sGenericMod = "$MOD_DATA";

std::string_view firstSegment(std::string_view sPath)
{
    return sPath.substr(0, sPath.find('/'));
}

bool isGenericKey(std::string_view sKey)
{
    return sKey == s_sGenericContent || sKey == s_sGenericMod;
}

// "$" word "_DATA", or "$CONTENT_" and 36 characters of a uuid.
bool isValidKey(std::string_view sKey)
{
    if (sKey.starts_with(s_sContentPrefix) && sKey.size() == s_sContentPrefix.size() + Uuid::s_uTextLength)
    {
        const std::string_view sUuid = sKey.substr(s_sContentPrefix.size());
        return std::all_of(sUuid.begin(), sUuid.end(),
                           [](char c) { return c == '-' || std::isxdigit(static_cast<unsigned char>(c)); });
    }
    if (sKey.size() <= 6 || sKey[0] != '$' || !sKey.ends_with("_DATA"))
        return false;
    return std::all_of(sKey.begin() + 1, sKey.end(),
                       [](char c) { return c == '_' || std::isalnum(static_cast<unsigned char>(c)); });
}

std::string withForwardSlashes(std::string_view sPath)
{
    std::string sOut(sPath);
    std::replace(sOut.begin(), sOut.end(), '\\', '/');
    return sOut;
}

std::string withoutLastSlash(std::string sPath)
{
    while (sPath.size() > 1 && sPath.ends_with('/'))
        sPath.pop_back();
    return sPath;
}

bool liesBelow(std::string_view sPath, std::string_view sFolder)
{
    return sPath.starts_with(sFolder) && (sPath.size() == sFolder.size() || sPath[sFolder.size()] == '/');
}

void logPermissions(const fs::path& path)
{
    static constexpr std::pair<fs::perms, const char*> s_arrNames[] = {
        {fs::perms::owner_read, "Owner read"},
        {fs::perms::owner_write, "Owner write"},
        {fs::perms::owner_exec, "Owner search/execute"},
        {fs::perms::group_read, "Group read"},
        {fs::perms::group_write, "Group write"},
        {fs::perms::group_exec, "Group search/execute"},
        {fs::perms::others_read, "Others read"},
        {fs::perms::others_write, "Others write"},
        {fs::perms::others_exec, "Others search/execute"},
    };
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (error && status.type() != fs::file_type::not_found)
    {
        QM_LOG_ERROR("failed to get permissions: '", path.string(), "' errorcode: ", error.value());
        return;
    }
    std::string sNames;
    for (const auto& [permission, pName] : s_arrNames)
        if ((status.permissions() & permission) != fs::perms::none &&
            status.type() != fs::file_type::not_found)
            sNames += (sNames.empty() ? "" : ", ") + std::string(pName);
    QM_LOG("Permissions for ", path.generic_string(), " - ", sNames);
}

int resultOf(const std::error_code& error)
{
    return error.value() == EACCES ? DirectoryManager::PermissionDenied : DirectoryManager::Failed;
}

} // namespace

DirectoryManager::DirectoryManager(DirectoryPlaces places) : m_places(std::move(places))
{
    QM_ASSERT(ms_pInstance == nullptr);
    ms_pInstance = this;
    const fs::path pathUser =
        m_places.pathRoaming / "Ostrel Games" / "Quillmere" / "User" /
        (m_places.uUserId ? "User_" + std::to_string(m_places.uUserId) : std::string("DefaultUser"));
    m_sUserFolder = pathUser.lexically_normal().generic_string();
}

DirectoryManager::~DirectoryManager()
{
    QM_ASSERT(ms_pInstance == this);
    ms_pInstance = nullptr;
}

int DirectoryManager::openLogs(const std::string& sBaseName)
{
    if (m_places.pathRoaming.empty() || m_places.pathLocal.empty())
        return NoSystemFolder;
    fs::path pathLogs = (m_places.pathProgram / ".." / "Logs").lexically_normal();
    std::error_code error;
    fs::create_directories(pathLogs, error);
    if (error || ::access(pathLogs.c_str(), W_OK) != 0)
    {
        pathLogs = fs::path(m_sUserFolder) / "Logs";
        if (const int iResult = createFolder(pathLogs))
            return iResult;
    }
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char arrStamp[32];
    std::strftime(arrStamp, sizeof(arrStamp), "-%Y%m%d-%H%M%S", &local);
    const std::string sFolder = pathLogs.generic_string();
    m_sMainLog = UTILS::concat(sFolder, "/", sBaseName, arrStamp, ".log");
    m_sIssuesLog = UTILS::concat(sFolder, "/", sBaseName, "-Issues", arrStamp, ".log");
    m_sMyGuiLog = UTILS::concat(sFolder, "/mygui", arrStamp, ".log");
    return Success;
}

int DirectoryManager::createFolder(const fs::path& path) const
{
    std::error_code error;
    fs::create_directories(path, error);
    if (!error)
        return Success;
    QM_LOG_ERROR("Can't create the folder '", path.string(), "': ", error.message());
    return resultOf(error);
}

int DirectoryManager::createFolders()
{
    std::vector<std::string> vecFolders;
    const std::string sCache = folderOf("$CACHE_DATA");
    for (const char* pSuffix :
         {"", "/Shaders", "/Shaders/Release", "/Textures", "/Mesh", "/Impostor", "/Fonts"})
        vecFolders.push_back(sCache + pSuffix);
    vecFolders.push_back(folderOf("$TEMP_DATA"));
    for (const char* pSuffix : {"/Save", "/Save/Survival", "/Save/Custom", "/Progress", "/Worlds", "/Tiles",
                                "/Blueprints", "/Mods", "/Challenges"})
        vecFolders.push_back(m_sUserFolder + pSuffix);
    for (const char* pKey : {"$GAME_DATA", "$SURVIVAL_DATA", "$CHALLENGE_DATA"})
        for (const char* pSuffix : {"/Gui/PrefabIcons", "/Gui/BlueprintIcons", "/Gui/AssetIcons",
                                    "/Gui/NodeIcons", "/Gui/HarvestableIcons"})
            vecFolders.push_back(folderOf(pKey) + pSuffix);
    for (const std::string& sFolder : vecFolders)
        if (const int iResult = createFolder(sFolder))
            return iResult;
    return Success;
}

int DirectoryManager::initialise()
{
    if (m_places.pathRoaming.empty() || m_places.pathLocal.empty())
        return NoSystemFolder;
    logPermissions(m_places.pathRoaming);
    logPermissions(m_places.pathLocal);

    const fs::path pathRoot =
        m_places.pathGameInstall.empty() ? m_places.pathProgram / ".." : m_places.pathGameInstall;
    std::error_code error;
    m_sGameRoot = withoutLastSlash(fs::absolute(pathRoot, error).lexically_normal().generic_string());
    logPermissions(m_sGameRoot);

    addKey("$GAME_DATA", m_sGameRoot + "/Data");
    addKey("$SURVIVAL_DATA", m_sGameRoot + "/Survival");
    addKey("$CHALLENGE_DATA", m_sGameRoot + "/ChallengeData");
    addKey("$PARTICLE_EDITOR_DATA", m_sGameRoot + "/ParticleEditorData");
    addKey("$CACHE_DATA", m_sGameRoot + "/Cache");
    addKey("$TEMP_DATA", (m_places.pathLocal / "Ostrel Games" / "Quillmere" / "Temp").generic_string());
    return createFolders();
}

bool DirectoryManager::addKey(const std::string& sKey, const std::string& sFolder)
{
    if (!QM_ASSERT(isValidKey(sKey)))
        return false;
    const std::unique_lock lock(m_lock);
    return m_mapKeys.emplace(sKey, withoutLastSlash(withForwardSlashes(sFolder))).second;
}

void DirectoryManager::removeKey(const std::string& sKey)
{
    const std::unique_lock lock(m_lock);
    m_mapKeys.erase(sKey);
}

std::string DirectoryManager::folderOf(std::string_view sKey) const
{
    const std::shared_lock lock(m_lock);
    const auto it = m_mapKeys.find(sKey);
    return it == m_mapKeys.end() ? std::string() : it->second;
}

std::string DirectoryManager::getKeyLocked(std::string_view sPath) const
{
    if (sPath.starts_with('$'))
    {
        const auto it = m_mapKeys.find(firstSegment(sPath));
        return it == m_mapKeys.end() ? std::string() : it->first;
    }
    const std::pair<const std::string, std::string>* pBest = nullptr;
    for (const auto& entry : m_mapKeys)
        if (liesBelow(sPath, entry.second) && (!pBest || entry.second.size() > pBest->second.size()))
            pBest = &entry;
    return pBest ? pBest->first : std::string();
}

std::string DirectoryManager::getKey(std::string_view sPath) const
{
    const std::shared_lock lock(m_lock);
    return getKeyLocked(sPath);
}

bool DirectoryManager::isContentPath(std::string_view sPath, std::string& sKey) const
{
    std::string sFound = getKey(sPath);
    if (!sFound.starts_with(s_sContentPrefix))
        return false;
    sKey = std::move(sFound);
    return true;
}

bool DirectoryManager::getKeyPath(std::string_view sPath, std::string& sKey, std::string& sFolder) const
{
    const std::shared_lock lock(m_lock);
    std::string sFound = getKeyLocked(sPath);
    if (sFound.empty())
        return false;
    sFolder = m_mapKeys.find(sFound)->second;
    sKey = std::move(sFound);
    return true;
}

std::string DirectoryManager::resolveLocked(std::string_view sPath, bool& bUnknown) const
{
    if (!sPath.starts_with('$'))
        return std::string(sPath);
    const std::string_view sKey = firstSegment(sPath);
    const auto it = m_mapKeys.find(sKey);
    bUnknown = it == m_mapKeys.end();
    return bUnknown ? std::string(sPath) : it->second + std::string(sPath.substr(sKey.size()));
}

fs::path DirectoryManager::resolvePath(std::string_view sPath) const
{
    bool bUnknown = false;
    std::string sReal;
    {
        const std::shared_lock lock(m_lock);
        sReal = resolveLocked(sPath, bUnknown);
    }
    if (bUnknown)
        QM_LOG_ERROR("Unable to replace key for path: '", sPath, "'");
    return sReal;
}

std::string DirectoryManager::normalizePath(std::string_view sPath) const
{
    std::error_code error;
    const fs::path pathFull = fs::absolute(withForwardSlashes(resolvePath(sPath).string()), error);
    return error ? withForwardSlashes(sPath) : pathFull.lexically_normal().generic_string();
}

std::string DirectoryManager::replacePathWithKey(std::string_view sPath, bool bWarn) const
{
    if (sPath.empty())
        return {};
    const std::string sFull = normalizePath(sPath);
    std::string sKey;
    std::string sFolder;
    if (!getKeyPath(sFull, sKey, sFolder))
    {
        if (bWarn)
            QM_LOG_WARNING("Unable to find suitable key for path: ", sPath);
        return {};
    }
    return sKey + sFull.substr(sFolder.size());
}

std::string DirectoryManager::toGenericPath(std::string_view sPath) const
{
    std::string sKeyed = sPath.starts_with('$') ? std::string(sPath) : replacePathWithKey(sPath, false);
    if (sKeyed.empty())
        return std::string(sPath);
    const std::string sKey = getKey(sKeyed);
    if (!sKey.starts_with(s_sContentPrefix))
        return sKeyed;
    return std::string(s_sGenericContent) + sKeyed.substr(sKey.size());
}

std::string DirectoryManager::upgradeTileKey(std::string_view sPath)
{
    if (!sPath.starts_with(s_sTilePrefix))
        return std::string(sPath);
    return UTILS::concat(s_sContentPrefix, sPath.substr(s_sTilePrefix.size()));
}

std::string DirectoryManager::replaceGenericKey(std::string_view sPath, std::string_view sKey)
{
    const std::string_view sFirst = firstSegment(sPath);
    if (!isGenericKey(sFirst))
        return std::string(sPath);
    return UTILS::concat(sKey, sPath.substr(sFirst.size()));
}

std::string DirectoryManager::expandGenericKey(std::string_view sPath, const Uuid& uuid)
{
    return uuid.isNil() ? std::string(sPath)
                        : replaceGenericKey(sPath, UTILS::concat(s_sContentPrefix, uuid.text()));
}

Uuid DirectoryManager::uuidFromPath(std::string_view sPath, bool bWarn)
{
    const std::string_view sFirst = firstSegment(sPath);
    if (isGenericKey(sFirst))
    {
        if (bWarn)
            QM_LOG_ERROR("Trying to get uuid from unresolved ", sFirst);
        return {};
    }
    for (const std::string_view sPrefix : {s_sContentPrefix, s_sModPrefix})
        if (sFirst.starts_with(sPrefix))
            return Uuid::parse(sPath.substr(sPrefix.size(), Uuid::s_uTextLength)).value_or(Uuid{});
    return {};
}

bool DirectoryManager::isGenericPath(std::string_view sPath)
{
    return isGenericKey(firstSegment(sPath));
}

bool DirectoryManager::isValidKeyedPath(std::string_view sPath, std::string_view sExtraKey) const
{
    if (!sPath.starts_with('$') || sPath.find('\0') != std::string_view::npos)
        return false;
    const std::string sKeyed = sExtraKey.empty() ? std::string(sPath) : replaceGenericKey(sPath, sExtraKey);
    const std::string_view sFirst = firstSegment(sKeyed);
    std::string sReal;
    std::string sFolder;
    {
        const std::shared_lock lock(m_lock);
        bool bUnknown = false;
        sReal =
            fs::path(withForwardSlashes(resolveLocked(sKeyed, bUnknown))).lexically_normal().generic_string();
        if (bUnknown || getKeyLocked(sReal) != sFirst)
            return false;
        sFolder = m_mapKeys.find(sFirst)->second;
    }
    // A link on the way may lead elsewhere; what doesn't exist yet can't.
    std::error_code error;
    const fs::path pathReal = fs::weakly_canonical(sReal, error);
    if (error)
        return false;
    const fs::path pathFolder = fs::weakly_canonical(sFolder, error);
    return !error && liesBelow(pathReal.generic_string(), pathFolder.generic_string());
}

bool DirectoryManager::isValidKeyedPathFor(std::string& sPath, const Uuid& uuid) const
{
    if (uuid.isNil())
        return isValidKeyedPath(sPath);
    const std::string sKey = m_fnContentKey ? m_fnContentKey(uuid) : std::string();
    if (!isValidKeyedPath(sPath, sKey))
        return false;
    if (!sKey.empty())
        sPath = replaceGenericKey(sPath, sKey);
    return true;
}

bool DirectoryManager::exists(std::string_view sPath) const
{
    std::error_code error;
    const fs::path path = resolvePath(sPath);
    const bool bExists = fs::exists(path, error);
    if (error)
        QM_LOG_ERROR("failed to check if path exists: '", path.string(), "' errorcode: ", error.value());
    return !error && bExists;
}

std::string DirectoryManager::userSubFolder(std::string_view sSuffix) const
{
    return m_sUserFolder + std::string(sSuffix);
}

std::string DirectoryManager::shaderCacheFolder() const
{
    return folderOf("$CACHE_DATA") + "/Shaders/Release";
}
std::string DirectoryManager::tempFolder() const
{
    return folderOf("$TEMP_DATA");
}
