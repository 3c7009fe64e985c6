#include "KestrelCommon/Assets/AssetRendering.h"

#include "KestrelCommon/Core/Console.h"

namespace terrain
{

namespace
{

constexpr uint32_t s_uNone = rend::InstanceWorld::s_uNone;

/// In the order of the renderable's slots; white where the map has none.
std::vector<uint32_t> coloursOf(const ColorMap& mapColors, const resource::Renderable& renderable)
{
    std::vector<uint32_t> vecColours;
    for (const std::string& sSlot : renderable.colorSlots())
    {
        const auto it = mapColors.find(sSlot);
        vecColours.push_back(it == mapColors.end() ? 0xFFFFFFFF : it->second);
    }
    return vecColours;
}

} // namespace

AssetRendering::~AssetRendering()
{
    for (const auto& pInstance : m_vecInstances)
        if (pInstance)
            unplace(*pInstance);
    for (const auto& [uuid, pAsset] : m_mapAssets)
    {
        m_world.removeRenderable(pAsset->uRenderable);
        m_world.removeRenderable(pAsset->uWireframeRenderable);
    }
}

std::shared_ptr<const resource::Renderable>
AssetRendering::makeRenderable(const resource::RenderableDesc& desc, bool bWireframe,
                               const resource::PathResolver& fnResolve)
{
    std::weak_ptr<const resource::ModelFile>& pKnown = m_mapModels[desc.sMesh];
    std::shared_ptr<const resource::ModelFile> pModel = pKnown.lock();
    if (!pModel)
    {
        pModel = std::make_shared<const resource::ModelFile>(desc.sMesh, fnResolve);
        pKnown = pModel;
    }
    return std::make_shared<const resource::Renderable>(desc, std::move(pModel), bWireframe);
}

bool AssetRendering::addAsset(std::unique_ptr<Asset> pAsset)
{
    Asset& asset = *pAsset;
    asset.uRenderable = m_world.addRenderable(asset.pRenderable);
    asset.uWireframeRenderable =
        m_world.addRenderable(asset.pWireframeRenderable ? asset.pWireframeRenderable : asset.pRenderable);
    std::unique_ptr<Asset>& pPlace = m_mapAssets[asset.uuid];
    const std::unique_ptr<Asset> pOld = std::exchange(pPlace, std::move(pAsset));
    if (!pOld)
        return true;
    QM_LOG_WARNING("Conflicting uuid {", asset.uuid.text(), "}: '", pOld->strName, "' and '", asset.strName,
                   "'");
    for (const auto& pInstance : m_vecInstances)
        if (pInstance && pInstance->pAsset == pOld.get())
        {
            const bool bSelected = pInstance->bSelected;
            const bool bShown = pInstance->uInstanceSlot != s_uNone;
            unplace(*pInstance);
            pInstance->pAsset = &asset;
            setShown(*pInstance, bShown);
            setHighlighted(*pInstance, bSelected);
            onAssetReplaced(*pInstance);
        }
    m_world.removeRenderable(pOld->uRenderable);
    m_world.removeRenderable(pOld->uWireframeRenderable);
    return false;
}

AssetRendering::Asset* AssetRendering::findAssetOrNull(const Uuid& uuid) const
{
    const auto it = m_mapAssets.find(uuid);
    return it == m_mapAssets.end() ? nullptr : it->second.get();
}

std::optional<Aabb> AssetRendering::localBounds(const Uuid& uuid) const
{
    const Asset* pAsset = findAssetOrNull(uuid);
    if (!pAsset || !pAsset->pRenderable)
        return std::nullopt;
    return pAsset->pRenderable->model().box;
}

TriangleShape AssetRendering::triangleShape(const Uuid& uuid) const
{
    const Asset* pAsset = findAssetOrNull(uuid);
    if (!pAsset || !pAsset->pRenderable)
        return {};
    const resource::Model& model = pAsset->pRenderable->model();
    return {model.vecPositions, model.vecIndices};
}

AssetRendering::AssetInstance* AssetRendering::addInstance(std::unique_ptr<AssetInstance> pInstance)
{
    Asset* pAsset = findAssetOrNull(pInstance->uuid);
    const size_t uId = pInstance->uEntityId;
    if (!pAsset || findInstance(pInstance->uEntityId))
        return nullptr;
    if (uId >= m_vecInstances.size())
        m_vecInstances.resize(std::max(uId + 1, m_vecInstances.size() * 2));
    AssetInstance* pPlaced = pInstance.get();
    m_vecInstances[uId] = std::move(pInstance);
    ++m_uInstances;
    pPlaced->pAsset = pAsset;
    place(*pPlaced);
    return pPlaced;
}

void AssetRendering::removeInstance(uint32_t uEntityId)
{
    if (AssetInstance* pInstance = findInstance(uEntityId))
    {
        unplace(*pInstance);
        m_vecInstances[uEntityId].reset();
        --m_uInstances;
    }
}

AssetRendering::AssetInstance* AssetRendering::findInstance(uint32_t uEntityId) const
{
    return uEntityId < m_vecInstances.size() ? m_vecInstances[uEntityId].get() : nullptr;
}

void AssetRendering::place(AssetInstance& instance)
{
    const Asset& asset = *instance.pAsset;
    instance.uInstanceSlot = m_world.addInstance(asset.uRenderable, instance.transform,
                                                 coloursOf(instance.m_colorMap, *asset.pRenderable));
}

void AssetRendering::unplace(AssetInstance& instance)
{
    setHighlighted(instance, false);
    m_world.removeInstance(instance.uInstanceSlot);
    instance.uInstanceSlot = s_uNone;
}

void AssetRendering::setInstanceTransform(AssetInstance& instance, const Transform& transform)
{
    instance.transform = transform;
    m_world.setTransform(instance.uInstanceSlot, transform); // nothing while it isn't shown
    if (instance.bSelected)
        m_world.moveHighlight(instance.pAsset->uWireframeRenderable, instance.uWireframeIndex, transform);
}

void AssetRendering::updateInstanceColors(AssetInstance& instance)
{
    m_world.setColours(instance.uInstanceSlot, coloursOf(instance.m_colorMap, *instance.pAsset->pRenderable));
}

void AssetRendering::setShown(AssetInstance& instance, bool bShown)
{
    if (bShown == (instance.uInstanceSlot != s_uNone))
        return;
    if (bShown)
        place(instance);
    else
        unplace(instance);
}

void AssetRendering::setHighlighted(AssetInstance& instance, bool bHighlighted)
{
    if (instance.bSelected == bHighlighted)
        return;
    instance.bSelected = bHighlighted;
    Asset& asset = *instance.pAsset;
    std::vector<uint32_t>& vecIds = asset.m_vecWireframeAssetEntityIds;
    if (bHighlighted)
    {
        instance.uWireframeIndex = m_world.addHighlight(asset.uWireframeRenderable, instance.transform);
        vecIds.push_back(instance.uEntityId);
        return;
    }
    m_world.removeHighlight(asset.uWireframeRenderable, instance.uWireframeIndex);
    const uint32_t uLast = vecIds.back();
    vecIds[instance.uWireframeIndex] = uLast;
    vecIds.pop_back();
    if (uLast != instance.uEntityId)
        m_vecInstances[uLast]->uWireframeIndex = instance.uWireframeIndex;
    instance.uWireframeIndex = s_uNone;
}

} // namespace terrain
