#include "TileEditorCommon/Editor/AssetIcons.h"

#include "TileEditorCommon/Entities/Asset/AssetEntityType.h"
#include "TileEditorCommon/Entities/Asset/AssetLibrarySource.h"
#include "TileEditorCommon/Entities/Entities.h"

namespace tilebuilder
{

AssetIcons::AssetIcons(Entities& entities, IconGenerator& generator)
    : m_entities(entities),
      m_icons(generator,
              [this](const Uuid& uuid, const std::string& sPath) { m_pSource->onIconMade(uuid, sPath); })
{
    for (LibrarySourceI* pSource : entities.librarySources())
        if (auto* pAssets = dynamic_cast<AssetLibrarySource*>(pSource))
            m_pSource = pAssets;
    if (m_pSource)
        m_pSource->setIconMaker([this](const Uuid& uuid, const std::vector<std::string>& vecPaths)
                                { request(uuid, vecPaths); });
}

AssetIcons::~AssetIcons()
{
    if (m_pSource)
        m_pSource->setIconMaker({});
}

void AssetIcons::request(const Uuid& uuid, const std::vector<std::string>& vecPaths)
{
    const terrain::AssetRendering::Asset* pAsset = m_entities.typed<AssetEntityType>().findAssetOrNull(uuid);
    if (!pAsset)
        return;
    ObjectIcon icon{uuid, pAsset->pRenderable, {}, vecPaths};
    for (const std::string& sSlot : pAsset->pRenderable->colorSlots())
    {
        const auto it = pAsset->mapDefaultColors.find(sSlot);
        icon.vecColours.push_back(it == pAsset->mapDefaultColors.end() ? 0xFFFFFFFF : it->second);
    }
    m_icons.request(std::move(icon));
}

} // namespace tilebuilder
