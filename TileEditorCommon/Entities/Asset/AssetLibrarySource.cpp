#include "TileEditorCommon/Entities/Asset/AssetLibrarySource.h"

#include "KestrelCommon/Services/DirectoryManager.h"
#include "TileEditorCommon/Entities/Asset/AssetEntityType.h"

namespace tilebuilder
{

namespace
{

constexpr std::string_view s_sPrefix = "env_";

const EditorAsset* find(const AssetEntityType& type, const Uuid& uuid)
{
    return static_cast<const EditorAsset*>(type.findAssetOrNull(uuid));
}

std::string joined(const std::vector<std::string>& vecWords)
{
    std::string sJoined;
    for (const std::string& sWord : vecWords)
        sJoined += (sJoined.empty() ? "" : ", ") + sWord;
    return sJoined;
}

} // namespace

uint64_t AssetLibrarySource::revision() const
{
    return m_type.databaseRevision();
}

void AssetLibrarySource::listItems(std::vector<LibraryItem>& vecItems) const
{
    for (const Uuid& uuid : m_type.getAssetUuids())
    {
        const EditorAsset* pAsset = find(m_type, uuid);
        if (!pAsset || pAsset->isHidden())
            continue;
        LibraryItem item;
        item.sName = pAsset->strName;
        if (item.sName.starts_with(s_sPrefix))
            item.sName.erase(0, s_sPrefix.size());
        item.uuid = uuid;
        item.sContent = pAsset->strSet.substr(0, pAsset->strSet.find('/'));
        item.vecCategories = pAsset->vecCategories;
        vecItems.push_back(std::move(item));
    }
}

void AssetLibrarySource::listCategories(std::set<std::string>& setCategories) const
{
    for (const auto& [sName, uCount] : m_type.categoryCounts())
        setCategories.insert(sName);
}

std::string AssetLibrarySource::iconPath(const LibraryItem& item)
{
    const EditorAsset* pAsset = find(m_type, item.uuid);
    if (!pAsset)
        return {};
    for (const std::string& sDirectory : {pAsset->strIconDirectory, std::string(s_pMadeIcons)})
    {
        const std::string sPath = sDirectory + "/" + item.uuid.text() + ".png";
        std::error_code error;
        if (!sDirectory.empty() &&
            std::filesystem::exists(DirectoryManager::ms_pInstance->resolvePath(sPath), error))
            return sPath;
    }
    return {};
}

std::vector<LibraryTipLine> AssetLibrarySource::tip(const LibraryItem& item) const
{
    const EditorAsset* pAsset = find(m_type, item.uuid);
    if (!pAsset)
        return {};
    return {{"#BBBBBB Type: #EEEE33 Asset \n", {}},
            {"#BBBBBB Name: #33EE33", pAsset->strName},
            {"#BBBBBB AssetSet: #EEEEEE", pAsset->strSet},
            {"#BBBBBB Categories: #EEEEEE", joined(pAsset->vecCategories)},
            {"#BBBBBB IconDir: #EEEEEE", pAsset->strIconDirectory},
            {"#BBBBBB Uuid: #9999EE", item.uuid.text()}};
}

std::vector<LibraryMenuEntry> AssetLibrarySource::menu(const LibraryItem& item) const
{
    const EditorAsset* pAsset = find(m_type, item.uuid);
    if (!pAsset)
        return {};
    return {{"Open AssetList", LibraryCommand::OpenFile, pAsset->strSet},
            {"Open AssetList Location", LibraryCommand::OpenFolder, pAsset->strSet}};
}

LibraryPlacement AssetLibrarySource::placement(const LibraryItem& item) const
{
    return find(m_type, item.uuid) ? LibraryPlacement{.eType = EntityTypeId_Asset, .uuid = item.uuid}
                                   : LibraryPlacement{};
}

} // namespace tilebuilder
