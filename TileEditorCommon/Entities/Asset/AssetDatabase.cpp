// The asset database: lists of sets, sets, what is looked up in them.

#include "KestrelCommon/Assets/AssetSets.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "TileEditorCommon/Entities/Asset/AssetEntityType.h"

#include <json/value.h>

namespace tilebuilder
{

namespace
{

std::filesystem::path resolve(std::string_view sPath)
{
    return DirectoryManager::ms_pInstance->resolvePath(sPath);
}

std::optional<resource::RenderableDesc> describe(const terrain::AssetEntry& entry)
{
    if (entry.sRenderable.empty())
        return entry.renderable;
    const auto jRenderable = readJsonFile(entry.sRenderable);
    return jRenderable ? resource::readRenderable(*jRenderable) : std::nullopt;
}

} // namespace

bool AssetEntityType::addSets(const std::string& sListPath, const Uuid& origin)
{
    if (m_setReadFiles.contains(sListPath))
        return true;
    const auto jList = readJsonFile(sListPath);
    if (!jList)
        return false;
    m_setReadFiles.insert(sListPath);
    const terrain::AssetSetList list = terrain::readAssetSetList(*jList);
    // Within an item its own folder has a name that fits all items.
    const std::string sKey = origin.isNil() ? std::string() : sListPath.substr(0, sListPath.find('/'));
    for (terrain::AssetSetRef ref : list.vecSets)
    {
        if (!origin.isNil())
            ref.sSet = DirectoryManager::replaceGenericKey(ref.sSet, sKey);
        readSet(ref, list.sIconDirectory, origin);
    }
    ++m_uDatabaseRevision;
    return true;
}

bool AssetEntityType::knowsOrigin(const Uuid& origin) const
{
    return std::any_of(m_vecUuids.begin(), m_vecUuids.end(),
                       [&](const Uuid& uuid) { return originOf(uuid) == origin; });
}

Uuid AssetEntityType::originOf(const Uuid& uuid) const
{
    const auto* pAsset = dynamic_cast<const EditorAsset*>(findAssetOrNull(uuid));
    return pAsset ? pAsset->uOriginUuid : Uuid{};
}

void AssetEntityType::removeSets(const Uuid& origin)
{
    for (const Uuid& uuid : m_vecUuids)
        if (auto* pAsset = dynamic_cast<EditorAsset*>(findAssetOrNull(uuid));
            pAsset && pAsset->uOriginUuid == origin)
        {
            pAsset->uFlags |= EditorAsset::s_uHidden;
            m_setReadFiles.erase(pAsset->strSet);
        }
    const std::string sKey = "$CONTENT_" + origin.text() + "/";
    std::erase_if(m_setReadFiles, [&](const std::string& sPath) { return sPath.starts_with(sKey); });
    ++m_uDatabaseRevision;
}

void AssetEntityType::readSet(const terrain::AssetSetRef& ref, const std::string& sIconDirectory,
                              const Uuid& origin)
{
    if (m_setReadFiles.contains(ref.sSet))
        return;
    if (!ref.bHidden)
        for (const std::string& sCategory : ref.vecCategories)
        {
            ++m_mapCategoryCount[sCategory];
            m_mapCategorySets[sCategory].push_back(ref.sSet);
        }
    std::error_code error;
    if (!std::filesystem::exists(resolve(ref.sSet), error))
        return;
    m_setReadFiles.insert(ref.sSet);
    if (const auto jSet = readJsonFile(ref.sSet))
        for (const terrain::AssetEntry& entry : terrain::readAssetSet(*jSet))
            addEntry(entry, ref, sIconDirectory, origin);
}

void AssetEntityType::addEntry(const terrain::AssetEntry& entry, const terrain::AssetSetRef& ref,
                               const std::string& sIconDirectory, const Uuid& origin)
{
    const auto desc = describe(entry);
    if (!desc)
    {
        QM_LOG_ERROR("No renderable found for terrain asset {", entry.uuid.text(), "}");
        return;
    }
    auto pAsset = std::make_unique<EditorAsset>();
    pAsset->uuid = entry.uuid;
    pAsset->strName = entry.sName;
    pAsset->pWireframeRenderable = makeRenderable(*desc, true, resolve);
    pAsset->pRenderable = makeRenderable(*desc, false, resolve);
    pAsset->mapDefaultColors = entry.mapDefaultColors;
    pAsset->strSet = ref.sSet;
    pAsset->vecCategories = ref.vecCategories;
    pAsset->strRenderablePath = entry.sRenderable.empty() ? ref.sSet : entry.sRenderable;
    pAsset->strIconDirectory = sIconDirectory;
    pAsset->uFlags = entry.bHidden || ref.bHidden ? EditorAsset::s_uHidden : 0;
    pAsset->uOriginUuid = origin;
    m_mapUuidOfName[entry.sName] = entry.uuid;
    if (addAsset(std::move(pAsset)))
    {
        m_vecUuids.push_back(entry.uuid);
        m_mapSetAssets[ref.sSet].push_back(entry.uuid);
    }
}

const EditorAsset* AssetEntityType::findAsset(const Uuid& uuid) const
{
    const Asset* pAsset = findAssetOrNull(uuid);
    if (!pAsset)
    {
        QM_LOG_ERROR("Failed to find asset uuid: {", uuid.text(), "}");
        return nullptr;
    }
    const auto* pEditorAsset = dynamic_cast<const EditorAsset*>(pAsset);
    QM_ASSERT(pEditorAsset);
    return pEditorAsset;
}

Uuid AssetEntityType::findByName(std::string_view sName) const
{
    const auto it = m_mapUuidOfName.find(sName);
    if (it != m_mapUuidOfName.end())
        return it->second;
    QM_LOG_ERROR("Asset named '", sName, "' not found!");
    return {};
}

bool AssetEntityType::defaultColors(const Uuid& uuid, tile::ColorMap& mapOut) const
{
    const Asset* pAsset = findAssetOrNull(uuid);
    if (!pAsset)
    {
        QM_LOG_ERROR("Failed to find default color map for asset {", uuid.text(), "}");
        return false;
    }
    mapOut = pAsset->mapDefaultColors;
    return true;
}

void AssetEntityType::normalizeColors(const Uuid& uuid, tile::ColorMap& mapColors) const
{
    const Asset* pAsset = findAssetOrNull(uuid);
    if (!pAsset)
        return;
    std::erase_if(mapColors,
                  [&](const auto& color) { return !pAsset->mapDefaultColors.contains(color.first); });
    mapColors.insert(pAsset->mapDefaultColors.begin(), pAsset->mapDefaultColors.end());
}

std::string AssetEntityType::getIconDirectory(const Uuid& uuid) const
{
    const auto* pAsset = static_cast<const EditorAsset*>(findAssetOrNull(uuid));
    if (!pAsset)
    {
        QM_LOG_ERROR("Failed to find icon directory for asset {", uuid.text(), "}");
        return {};
    }
    return pAsset->strIconDirectory;
}

Aabb AssetEntityType::localBox(const Uuid& uuid) const
{
    const auto box = localBounds(uuid);
    if (!box)
        QM_LOG_ERROR("Failed to find bounding box for asset {", uuid.text(), "}");
    return box.value_or(Aabb());
}

} // namespace tilebuilder
