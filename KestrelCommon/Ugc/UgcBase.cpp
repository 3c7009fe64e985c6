#include "KestrelCommon/Ugc/UgcBase.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/UserMessageI.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Io/SafeFile.h"
#include "KestrelCommon/Services/DirectoryManager.h"

#include <filesystem>
#include <json/json.h>

namespace
{

constexpr std::pair<UgcKind, std::string_view> s_arrTypeWords[] = {
    {UgcKind::Blueprint, "Blueprint"},
    {UgcKind::BlocksAndParts, "Blocks and Parts"},
    {UgcKind::Tile, "Tile"},
    {UgcKind::World, "World"},
    {UgcKind::TerrainAssets, "Terrain Assets"},
    {UgcKind::ChallengePack, "Challenge Pack"},
    {UgcKind::ChallengeLevel, "Challenge Level"},
    {UgcKind::CustomGame, "Custom Game"},
};

// Lower-case hexadecimal digits, version digit 4, variant digit 8, 9, a, b, A or B.
bool isValidLocalId(const std::string& sText)
{
    if (!Uuid::parse(sText))
        return false;
    for (size_t uPlace = 0; uPlace < sText.size(); ++uPlace)
        if (sText[uPlace] >= 'A' && sText[uPlace] <= 'F' && uPlace != 19)
            return false;
    return sText[14] == '4' && std::string_view("89aAbB").find(sText[19]) != std::string_view::npos;
}

} // namespace

std::string_view ugcTypeWord(UgcKind eKind)
{
    for (const auto& [eEntry, sWord] : s_arrTypeWords)
        if (eEntry == eKind)
            return sWord;
    return {};
}

UgcKind ugcKindOf(std::string_view sTypeWord)
{
    for (const auto& [eEntry, sWord] : s_arrTypeWords)
        if (sWord == sTypeWord)
            return eEntry;
    return UgcKind::None;
}

UgcBase::UgcBase(UgcKind eKind, std::string sDirectory)
    : m_eKind(eKind),
      m_sDirectory(std::move(sDirectory)),
      m_jsonDescription(Json::objectValue)
{
}

int64_t UgcBase::getCurrentVersion() const
{
    switch (m_eKind)
    {
    case UgcKind::BlocksAndParts:
    case UgcKind::Tile:
    case UgcKind::TerrainAssets:
    case UgcKind::ChallengePack:
    case UgcKind::ChallengeLevel:
        return 1;
    default:
        return 0;
    }
}

bool UgcBase::findContent(UgcContentPath path)
{
    const std::string sPath = m_sDirectoryKey + std::string(ugcContentSuffix(path));
    const DirectoryManager& directories = *DirectoryManager::ms_pInstance;
    const bool bThere = directories.isValidKeyedPath(sPath) && directories.exists(sPath);
    m_paths.*path = bThere ? sPath : std::string();
    return bThere;
}

bool UgcBase::findParticles()
{
    const bool bLists =
        DirectoryManager::ms_pInstance->exists(m_sDirectoryKey + "/Particles/particles.json") ||
        DirectoryManager::ms_pInstance->exists(m_sDirectoryKey + "/Particles/particles_2d.json");
    if (bLists)
        return findContent(&UgcContentPaths::sParticles);
    m_paths.sParticles.clear();
    return false;
}

void UgcBase::tellUser(const std::string& sText) const
{
    QM_LOG_ERROR(sText);
    if (m_pMessages)
        m_pMessages->showMessage("ERROR_MESSAGE", sText);
}

std::vector<std::string> UgcBase::getTileFiles() const
{
    std::vector<std::string> vecPaths;
    if (m_paths.sTiles.empty())
        return vecPaths;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(
             DirectoryManager::ms_pInstance->resolvePath(m_paths.sTiles), error))
        if (entry.path().extension() == ".tile" && entry.is_regular_file(error))
            vecPaths.push_back(m_paths.sTiles + "/" + entry.path().filename().string());
    std::sort(vecPaths.begin(), vecPaths.end());
    return vecPaths;
}

void UgcBase::removeDirectoryKey()
{
    if (!m_sDirectoryKey.empty())
        DirectoryManager::ms_pInstance->removeKey(m_sDirectoryKey);
}

bool UgcBase::createNew(std::string_view sTypeWord, const Uuid& uuid)
{
    std::error_code error;
    std::filesystem::create_directories(m_sDirectory, error);
    if (error)
    {
        QM_LOG_ERROR("Can't create the folder '", m_sDirectory, "': ", error.message());
        return false;
    }
    static_cast<void>(readDescription(m_sDirectory + "/description.json"));
    m_jsonDescription["type"] = std::string(sTypeWord);
    m_jsonDescription["version"] = 1;
    m_jsonDescription["localId"] = uuid.text();
    registerDirectoryKey();
    return true;
}

bool UgcBase::readDescription(const std::string& sPath)
{
    m_sDescriptionPath = sPath;
    const auto sText = readTextFile(DirectoryManager::ms_pInstance->resolvePath(sPath));
    if (!sText || sText->empty())
        return false;
    std::string sError;
    auto jRoot = parseJson(*sText, sError);
    if (!jRoot || !jRoot->isObject())
    {
        QM_LOG_ERROR("Failed to parse UGC description file: ", sPath);
        return false;
    }
    m_jsonDescription = std::move(*jRoot);
    if (m_jsonDescription["version"].isString())
        m_jsonDescription["version"] = 0;
    return true;
}

void UgcBase::registerDirectoryKey()
{
    if (!QM_ASSERT(m_sDirectoryKey.empty()))
        return;
    if (!isValidLocalId(getString("localId")))
        setString("localId", Uuid::random().text());
    m_sDirectoryKey = "$CONTENT_" + getString("localId");
    DirectoryManager::ms_pInstance->addKey(m_sDirectoryKey, m_sDirectory);
}

std::string UgcBase::getString(const char* pKey) const
{
    return jsonText(m_jsonDescription, pKey);
}

uint64_t UgcBase::getUInt64(const char* pKey) const
{
    const Json::Value& jMember = getJson(pKey);
    return jMember.isUInt64() ? jMember.asUInt64() : 0;
}

const Json::Value& UgcBase::getJson(const char* pKey) const
{
    return jsonMember(m_jsonDescription, pKey);
}

void UgcBase::setString(const char* pKey, const std::string& sValue)
{
    m_jsonDescription[pKey] = sValue;
    saveDescription();
}

void UgcBase::setUInt64(const char* pKey, uint64_t uValue)
{
    m_jsonDescription[pKey] = Json::UInt64{uValue};
    saveDescription();
}

bool UgcBase::saveDescription() const
{
    if (writeFileSafely(DirectoryManager::ms_pInstance->resolvePath(m_sDescriptionPath),
                        styledJson(m_jsonDescription)))
        return true;
    QM_LOG_ERROR("Can't write the description '", m_sDescriptionPath, "'");
    return false;
}

Uuid UgcBase::getLocalId() const
{
    return Uuid::parse(getString("localId")).value_or(Uuid{});
}

ContentId UgcBase::getContentId() const
{
    const auto localId = Uuid::parse(getString("localId"));
    return localId ? ContentId{getUInt64("fileId"), *localId} : ContentId{};
}

int64_t UgcBase::getVersion() const
{
    const Json::Value& jVersion = getJson("version");
    return jVersion.isInt64() ? jVersion.asInt64() : 0;
}

std::vector<ContentId> UgcBase::getDependencies() const
{
    std::vector<ContentId> vecIds;
    const Json::Value& jList = getJson("dependencies");
    if (!jList.isArray())
        return vecIds;
    for (const Json::Value& jEntry : jList)
    {
        const Json::Value& jFile = jsonMember(jEntry, "fileId");
        vecIds.push_back({jFile.isUInt64() ? jFile.asUInt64() : 0,
                          Uuid::parse(jsonText(jEntry, "localId")).value_or(Uuid{})});
    }
    return vecIds;
}

void UgcBase::setDependencies(const std::vector<ContentId>& vecIds, NameLookup fnName)
{
    Json::Value jList(Json::arrayValue);
    for (const ContentId& id : vecIds)
    {
        if (id.localId == getLocalId())
            continue;
        Json::Value jEntry(Json::objectValue);
        jEntry["fileId"] = Json::UInt64{id.fileId};
        jEntry["localId"] = id.localId.text();
        if (const std::string sName = fnName ? fnName(id) : std::string(); !sName.empty())
            jEntry["name"] = sName;
        jList.append(std::move(jEntry));
    }
    m_jsonDescription["dependencies"] = std::move(jList);
    saveDescription();
}
