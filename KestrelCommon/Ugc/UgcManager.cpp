#include "KestrelCommon/Ugc/UgcManager.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/UserMessageI.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Io/SafeFile.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "KestrelCommon/Ugc/UgcCustomGameMod.h"
#include "KestrelCommon/Ugc/UgcTerrainAssetsMod.h"
#include "KestrelCommon/Ugc/UgcTile.h"

#include <filesystem>
#include <json/json.h>

UgcManager* UgcManager::ms_pInstance = nullptr;

namespace
{

bool liesBelow(std::string_view sPath, std::string_view sFolder)
{
    return sPath.starts_with(sFolder) && (sPath.size() == sFolder.size() || sPath[sFolder.size()] == '/');
}

void addCallback(std::vector<UgcManager::Callback>& vecCallbacks, UgcManager::Callback fnCallback)
{
    for (const UgcManager::Callback& fnOther : vecCallbacks)
        if (fnOther.target_type() == fnCallback.target_type())
            return;
    vecCallbacks.push_back(std::move(fnCallback));
}

void removeCallback(std::vector<UgcManager::Callback>& vecCallbacks, const UgcManager::Callback& fnCallback)
{
    std::erase_if(vecCallbacks, [&](const UgcManager::Callback& fnOther)
                  { return fnOther.target_type() == fnCallback.target_type(); });
}

UgcManager::Item makeItem(UgcKind eKind, const std::string& sDirectory)
{
    if (eKind == UgcKind::Tile)
        return std::make_shared<UgcTile>(sDirectory);
    if (eKind == UgcKind::CustomGame)
        return std::make_shared<UgcCustomGameMod>(sDirectory);
    if (eKind == UgcKind::TerrainAssets)
        return std::make_shared<UgcTerrainAssetsMod>(sDirectory);
    return std::make_shared<UgcBase>(eKind, sDirectory);
}

} // namespace

UgcManager::UgcManager(UserMessageI* pMessages) : m_pMessages(pMessages), m_jsonCache(Json::objectValue)
{
    QM_ASSERT(ms_pInstance == nullptr);
    ms_pInstance = this;
    if (const auto sText = readTextFile(DirectoryManager::ms_pInstance->ugcCacheFile()))
    {
        std::string sError;
        if (auto jCache = parseJson(*sText, sError); jCache && jCache->isObject())
            m_jsonCache = std::move(*jCache);
    }
}

UgcManager::~UgcManager()
{
    ms_pInstance = nullptr;
}

void UgcManager::addFolder(const std::string& sFolder)
{
    std::vector<std::string> vecFolders;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(sFolder, error))
        if (entry.is_directory(error) && !entry.is_symlink(error))
            vecFolders.push_back(entry.path().generic_string());
    std::sort(vecFolders.begin(), vecFolders.end());
    for (const std::string& sDirectory : vecFolders)
        loadItem(sDirectory);
}

UgcManager::Item UgcManager::loadItem(const std::string& sDirectory)
{
    const std::string sPath = sDirectory + "/description.json";
    const auto sText = readTextFile(sPath);
    if (!sText)
        return nullptr;
    std::string sError;
    const auto jRoot = parseJson(*sText, sError);
    if (!jRoot)
    {
        QM_LOG_ERROR("Failed to parse UGC description file: ", sPath);
        return nullptr;
    }
    if (!jRoot->isObject())
    {
        QM_LOG_ERROR("Invalid json data ", sPath);
        return nullptr;
    }
    const std::string sType = jsonText(*jRoot, "type", "Blueprint");
    const UgcKind eKind = ugcKindOf(sType);
    if (eKind == UgcKind::None)
    {
        QM_LOG_ERROR("Unknown UGC type: ", sType);
        return nullptr;
    }
    Item pItem = makeItem(eKind, sDirectory);
    if (!pItem->readDescription(sPath) || pItem->getLocalId().isNil())
        return nullptr;
    if (pItem->getVersion() > pItem->getCurrentVersion())
    {
        if (m_pMessages)
            m_pMessages->showMessage(
                "ERROR_MESSAGE", UTILS::concat(ugcTypeWord(eKind), ": ", pItem->name(),
                                               "\nThe content is created for a later version of the game"));
        return nullptr;
    }
    pItem->setMessages(m_pMessages);
    pItem->registerDirectoryKey();
    pItem->refresh();
    addItem(pItem);
    return pItem;
}

void UgcManager::addItem(Item pItem)
{
    const std::unique_lock lock(m_lock);
    m_jsonCache[pItem->getLocalId().text()]["name"] = pItem->name();
    m_arrAdded[static_cast<size_t>(pItem->kind())].push_back(pItem);
    m_vecItems.push_back(std::move(pItem));
}

void UgcManager::removeItem(const Item& pItem)
{
    const std::unique_lock lock(m_lock);
    const auto it = std::find(m_vecItems.begin(), m_vecItems.end(), pItem);
    if (it == m_vecItems.end())
        return;
    m_arrRemoved[static_cast<size_t>(pItem->kind())].push_back(pItem);
    std::swap(*it, m_vecItems.back());
    m_vecItems.pop_back();
}

UgcManager::Item UgcManager::createTileItem()
{
    const Uuid uuid = Uuid::random();
    auto pItem = std::make_shared<UgcTile>(DirectoryManager::ms_pInstance->tilesFolder() + "/" + uuid.text());
    if (!pItem->createNew(ugcTypeWord(UgcKind::Tile), uuid))
        return nullptr;
    addItem(pItem);
    UTILS::log("Created new tile", UTILS::AttributeNormal, UTILS::LogUgc);
    return pItem;
}

UgcManager::Item UgcManager::getItem(const ContentId& id) const
{
    if (id.isNil())
        return nullptr;
    const std::shared_lock lock(m_lock);
    for (const Item& pItem : m_vecItems)
        if (const ContentId other = pItem->getContentId(); !other.isNil() && other.matches(id))
            return pItem;
    return nullptr;
}

UgcManager::Item UgcManager::getItem(const Uuid& localId) const
{
    return getItem(ContentId{0, localId});
}

UgcManager::Item UgcManager::findByPath(std::string_view sPath) const
{
    const std::string sReal = DirectoryManager::ms_pInstance->normalizePath(sPath);
    const std::shared_lock lock(m_lock);
    for (const Item& pItem : m_vecItems)
        if (liesBelow(sReal, pItem->directory()))
            return pItem;
    return nullptr;
}

UgcManager::Items UgcManager::getTiles() const
{
    const std::shared_lock lock(m_lock);
    Items vecTiles;
    for (const Item& pItem : m_vecItems)
        if (pItem->kind() == UgcKind::Tile)
            vecTiles.push_back(pItem);
    return vecTiles;
}

std::string UgcManager::getCachedName(const ContentId& id) const
{
    const std::shared_lock lock(m_lock);
    return jsonText(jsonMember(m_jsonCache, id.localId.text().c_str()), "name");
}

bool UgcManager::refreshDependencies(std::vector<ContentId>& vecIds) const
{
    bool bChanged = false;
    {
        const std::shared_lock lock(m_lock);
        for (ContentId& id : vecIds)
            for (const Item& pItem : m_vecItems)
            {
                const ContentId known = pItem->getContentId();
                const bool bSame = id.fileId == 0 ? known.localId == id.localId && !id.localId.isNil()
                                                  : known.fileId == id.fileId;
                if (!bSame)
                    continue;
                bChanged |= id.fileId == 0 ? known.fileId != 0 : known.localId != id.localId;
                id = {known.fileId, known.localId};
                break;
            }
    }
    std::set<uint64_t> setSeen;
    const auto itEnd = std::remove_if(vecIds.begin(), vecIds.end(),
                                      [&](const ContentId& id)
                                      { return id.fileId != 0 && !setSeen.insert(id.fileId).second; });
    bChanged |= itEnd != vecIds.end();
    vecIds.erase(itEnd, vecIds.end());
    return bChanged;
}

void UgcManager::addAddedCallback(UgcKind eKind, Callback fnCallback)
{
    addCallback(m_arrAddedCallbacks[static_cast<size_t>(eKind)], std::move(fnCallback));
}

void UgcManager::removeAddedCallback(UgcKind eKind, const Callback& fnCallback)
{
    removeCallback(m_arrAddedCallbacks[static_cast<size_t>(eKind)], fnCallback);
}

void UgcManager::addRemovedCallback(UgcKind eKind, Callback fnCallback)
{
    addCallback(m_arrRemovedCallbacks[static_cast<size_t>(eKind)], std::move(fnCallback));
}

void UgcManager::removeRemovedCallback(UgcKind eKind, const Callback& fnCallback)
{
    removeCallback(m_arrRemovedCallbacks[static_cast<size_t>(eKind)], fnCallback);
}

UgcManager::Items UgcManager::tell(Pending& arrPending, const Callbacks& arrCallbacks)
{
    // A callback may add or remove items; those belong to the next pass.
    const Pending arrNow = std::exchange(arrPending, {});
    Items vecAll;
    for (const Items& vecItems : arrNow)
        vecAll.insert(vecAll.end(), vecItems.begin(), vecItems.end());
    if (vecAll.empty())
        return vecAll;
    for (size_t uKind = 0; uKind < s_uKinds; ++uKind)
        if (!arrNow[uKind].empty())
            for (const Callback& fnCallback : arrCallbacks[uKind])
                fnCallback(arrNow[uKind]);
    for (const Callback& fnCallback : arrCallbacks[0])
        fnCallback(vecAll);
    return vecAll;
}

void UgcManager::updateAdded()
{
    tell(m_arrAdded, m_arrAddedCallbacks);
}

void UgcManager::updateRemoved()
{
    for (const Item& pItem : tell(m_arrRemoved, m_arrRemovedCallbacks))
    {
        pItem->removeDirectoryKey();
        if (!isUsersOwn(*pItem))
            continue;
        std::error_code error;
        std::filesystem::remove_all(pItem->directory(), error);
        if (error)
            QM_LOG_ERROR("Can't delete the folder '", pItem->directory(), "': ", error.message());
    }
}

bool UgcManager::isUsersOwn(const UgcBase& item)
{
    const std::string& sUser = DirectoryManager::ms_pInstance->userFolder();
    std::error_code error;
    const std::filesystem::path pathItem = std::filesystem::canonical(item.directory(), error);
    if (error)
        return false;
    const std::filesystem::path pathUser = std::filesystem::canonical(sUser, error);
    // A kind's own folder lies between the user folder and the item.
    return !error &&
           liesBelow(pathItem.generic_string(),
                     pathUser.generic_string() + "/" + pathItem.parent_path().filename().string()) &&
           pathItem.parent_path().parent_path() == pathUser;
}

void UgcManager::stop()
{
    const std::unique_lock lock(m_lock);
    for (const Item& pItem : m_vecItems)
        pItem->removeDirectoryKey();
    if (!m_jsonCache.empty())
        static_cast<void>(
            writeFileSafely(DirectoryManager::ms_pInstance->ugcCacheFile(), styledJson(m_jsonCache)));
}
