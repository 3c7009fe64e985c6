#include "TileEditorCommon/Entities/Asset/AssetLibrarySource.h"

#include "KestrelCommon/Services/DirectoryManager.h"
#include "TileEditorCommon/Entities/Asset/AssetEntityType.h"

namespace tilebuilder
{

namespace
{

constexpr std::string_view s_sNamePrefix = "env_";
constexpr const char* s_pCacheFolder = "$CACHE_DATA/Icons";

std::filesystem::path resolve(const std::string& sPath)
{
    return DirectoryManager::ms_pInstance->resolvePath(sPath);
}

std::filesystem::file_time_type timeOf(const std::string& sPath)
{
    std::error_code error;
    const auto time = std::filesystem::last_write_time(resolve(sPath), error);
    return error ? std::filesystem::file_time_type::min() : time;
}

bool exists(const std::string& sPath)
{
    std::error_code error;
    return std::filesystem::is_regular_file(resolve(sPath), error);
}

bool isCurrent(const std::string& sIcon, const EditorAsset& asset)
{
    const auto time = timeOf(sIcon);
    return time >= timeOf(asset.strRenderablePath) && time >= timeOf(asset.pRenderable->desc().sMesh);
}

} // namespace

const EditorAsset* AssetLibrarySource::find(const LibraryItem& item) const
{
    return static_cast<const EditorAsset*>(m_type.findAssetOrNull(item.uuid));
}

uint64_t AssetLibrarySource::revision() const
{
    return m_type.databaseRevision();
}

void AssetLibrarySource::listItems(std::vector<LibraryItem>& vecItems) const
{
    for (const Uuid& uuid : m_type.getAssetUuids())
    {
        const auto* pAsset = static_cast<const EditorAsset*>(m_type.findAssetOrNull(uuid));
        if (!pAsset || pAsset->isHidden())
            continue;
        LibraryItem& item = vecItems.emplace_back();
        item.eKind = LibraryItemKind::Asset;
        item.sName = pAsset->strName;
        if (item.sName.starts_with(s_sNamePrefix))
            item.sName.erase(0, s_sNamePrefix.size());
        item.uuid = uuid;
        item.sContent = pAsset->strSet.substr(0, pAsset->strSet.find('/'));
        item.vecCategories = pAsset->vecCategories;
    }
}

void AssetLibrarySource::listCategories(std::set<std::string>& setCategories) const
{
    for (const auto& [sCategory, uCount] : m_type.categoryCounts())
        setCategories.insert(sCategory);
}

std::string AssetLibrarySource::iconPath(const LibraryItem& item)
{
    const EditorAsset* pAsset = find(item);
    if (!pAsset)
        return {};
    const auto [it, bNew] = m_mapIcons.try_emplace(item.uuid);
    if (!bNew)
        return it->second;
    const std::string sFile = "/" + item.uuid.text() + ".png";
    const std::string sCached = s_pCacheFolder + sFile;
    std::vector<std::string> vecPlaces;
    if (!pAsset->strIconDirectory.empty())
    {
        vecPlaces.push_back(pAsset->strIconDirectory + sFile);
        if (exists(vecPlaces.back()))
            return it->second = vecPlaces.back();
    }
    if (exists(sCached) && isCurrent(sCached, *pAsset))
        return it->second = sCached;
    vecPlaces.push_back(sCached);
    if (m_fnMakeIcon)
        m_fnMakeIcon(item.uuid, vecPlaces);
    return {};
}

void AssetLibrarySource::onIconMade(const Uuid& uuid, const std::string& sPath)
{
    m_mapIcons[uuid] = sPath;
    ++m_uIconRevision;
}

std::vector<LibraryTipLine> AssetLibrarySource::tip(const LibraryItem& item) const
{
    const EditorAsset* pAsset = find(item);
    if (!pAsset)
        return {};
    std::string sCategories;
    for (const std::string& sCategory : pAsset->vecCategories)
        sCategories += (sCategories.empty() ? "" : ", ") + sCategory;
    return {{"#BBBBBB Type: #EEEE33 Asset \n", {}},
            {"#BBBBBB Name: #33EE33", pAsset->strName},
            {"#BBBBBB AssetSet: #EEEEEE", pAsset->strSet},
            {"#BBBBBB Categories: #EEEEEE", sCategories},
            {"#BBBBBB IconDir: #EEEEEE", pAsset->strIconDirectory},
            {"#BBBBBB Uuid: #9999EE", item.uuid.text()}};
}

std::vector<LibraryMenuEntry> AssetLibrarySource::menu(const LibraryItem& item) const
{
    const EditorAsset* pAsset = find(item);
    if (!pAsset)
        return {};
    return {{"Open AssetList", LibraryCommand::OpenFile, pAsset->strSet},
            {"Open AssetList Location", LibraryCommand::OpenFolder, pAsset->strSet}};
}

LibraryPlacement AssetLibrarySource::placement(const LibraryItem& item) const
{
    if (!find(item))
        return {};
    return {.eType = EntityTypeId_Asset, .uuid = item.uuid, .sPath = {}, .uIndex = 0};
}

} // namespace tilebuilder
