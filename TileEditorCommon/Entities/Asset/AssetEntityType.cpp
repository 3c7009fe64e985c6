#include "TileEditorCommon/Entities/Asset/AssetEntityType.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Resources/ModelRay.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Contracts/EditorToolState.h"
#include "TileEditorCommon/Contracts/EntityTraits.h"
#include "TileEditorCommon/Entities/Asset/AssetArgs.h"
#include "TileEditorCommon/Entities/Asset/AssetLibrarySource.h"
#include "TileEditorCommon/Entities/Asset/AssetRecords.h"
#include "TileEditorCommon/Entities/Entities.h"
#include "TileEditorCommon/Entities/EntityHash.h"
#include "TileEditorCommon/Entities/Gizmo.h"

namespace tilebuilder
{

namespace
{

/// The transform at the middle of the asset's box.
Transform centred(const Transform& transform, const glm::vec3& offset)
{
    return {transform.apply(offset), transform.rotation, transform.scale};
}

} // namespace

int AssetEntityType::s_iColorEditIndex = -1;

uint64_t EntityCreateArgs::Asset::hash(uint64_t uSeed) const
{
    uint64_t uHash = mixHash(uSeed, std::as_bytes(std::span(uuid.bytes)));
    for (const std::string& sTag : setTags)
        uHash = mixHash(uHash, std::string_view(sTag));
    for (const auto& [sSlot, uColor] : mapColors)
        uHash = mixHash(mixHash(uHash, std::string_view(sSlot)), uColor);
    return uHash;
}

AssetEntityType::AssetEntityType(EntityHostI& host, rend::InstanceWorld& world, const AssetLists& lists)
    : AssetRendering(world),
      m_host(host)
{
    addSets("$GAME_DATA/Terrain/Database/assetsets.json", {});
    if (lists.bSurvival)
        addSets("$SURVIVAL_DATA/Terrain/Database/assetsets.json", {});
    if (lists.bChallenge)
        addSets("$CHALLENGE_DATA/Terrain/Database/assetsets.json", {});
}

EntityKind AssetEntityType::makeKind(std::unique_ptr<AssetEntityType> pType)
{
    EntityKind kind;
    AssetEntityType& type = *pType;
    kind.vecRecords.push_back(std::make_unique<AssetRecords>(type, type.m_host));
    kind.pShapes = &type;
    kind.pColors = &type;
    kind.fnContent = [&type](uint32_t uId)
    {
        const EditorAssetInstance* pInstance = type.instance(uId);
        return pInstance ? type.originOf(pInstance->uuid) : Uuid{};
    };
    kind.fnFillPlacement = [](const EditorToolState& tools, EntityCreateArgs& args)
    {
        auto pPayload = std::make_shared<EntityCreateArgs::Asset>();
        pPayload->uuid = tools.placementUuid;
        args.pPayload = std::move(pPayload);
        return !tools.placementUuid.isNil();
    };
    kind.fnShow = [&type](uint32_t uId, bool bShow)
    {
        if (AssetInstance* pInstance = type.findInstance(uId))
            type.setShown(*pInstance, bShow);
    };
    kind.vecLibrary.push_back(std::make_unique<AssetLibrarySource>(type));
    kind.pType = std::move(pType);
    return kind;
}

// Instances

EditorAssetInstance* AssetEntityType::mutableInstance(uint32_t uId) const
{
    return static_cast<EditorAssetInstance*>(findInstance(uId)); // create() makes no others
}

const EditorAssetInstance* AssetEntityType::instance(uint32_t uId) const
{
    return mutableInstance(uId);
}

const EditorAsset* AssetEntityType::assetOf(uint32_t uId) const
{
    const AssetInstance* pInstance = findInstance(uId);
    return pInstance ? static_cast<const EditorAsset*>(pInstance->pAsset) : nullptr;
}

InstanceEdit<EditorAssetInstance> AssetEntityType::edit(uint32_t uId, uint32_t uMask)
{
    return {m_host, mutableInstance(uId), uId, uMask};
}

void AssetEntityType::setTags(uint32_t uId, const tile::TagSet& setTags)
{
    if (const auto pEdit = edit(uId, ChangeEntityValues))
        pEdit->setTags = setTags;
}

bool AssetEntityType::create(EntityCreateArgs& args, std::span<const uint64_t> /*spanStack*/)
{
    const auto* pPayload = args.payload<EntityCreateArgs::Asset>();
    const Asset* pAsset = pPayload ? findAssetOrNull(pPayload->uuid) : nullptr;
    if (!pAsset)
    {
        QM_LOG_ERROR("Failed to create asset {", pPayload ? pPayload->uuid.text() : Uuid().text(), "}");
        return false;
    }
    auto pInstance = std::make_unique<EditorAssetInstance>();
    pInstance->uuid = pPayload->uuid;
    pInstance->m_colorMap = pPayload->mapColors.empty() ? pAsset->mapDefaultColors : pPayload->mapColors;
    pInstance->transform = args.transform;
    pInstance->uEntityId = args.uId;
    pInstance->localTransform = args.transform;
    pInstance->setTags = pPayload->setTags;
    pInstance->centerOffset = pAsset->pRenderable->model().box.centre();
    return QM_ASSERT(addInstance(std::move(pInstance)) != nullptr);
}

void AssetEntityType::onAssetReplaced(AssetInstance& instance)
{
    auto& changed = static_cast<EditorAssetInstance&>(instance); // create() makes no others
    changed.centerOffset = changed.pAsset->pRenderable->model().box.centre();
    m_host.onInstanceChanged(changed.uEntityId, 0);
}

void AssetEntityType::remove(uint32_t uId, bool /*bRemoveLinks*/)
{
    if (const AssetInstance* pInstance = findInstance(uId); pInstance && pInstance->bSelected)
        onDeselect(uId); // the colour tool may work on it
    removeInstance(uId);
}

std::string AssetEntityType::getDisplayName(uint32_t uId) const
{
    const EditorAsset* pAsset = assetOf(uId);
    return pAsset ? pAsset->strName : std::string(entityTraits(s_eTypeId).sNullName);
}

Transform AssetEntityType::getCenterTransform(uint32_t uId) const
{
    const EditorAssetInstance* pInstance = instance(uId);
    return pInstance ? centred(pInstance->transform, pInstance->centerOffset) : Transform();
}

void AssetEntityType::setCenterTransform(uint32_t uId, const Transform& transform)
{
    const EditorAssetInstance* pInstance = instance(uId);
    if (!pInstance)
        return;
    Transform origin = transform;
    origin.position -= transform.rotation * (transform.scale * pInstance->centerOffset);
    setOriginTransform(uId, origin);
}

Transform AssetEntityType::getOriginTransform(uint32_t uId) const
{
    const EditorAssetInstance* pInstance = instance(uId);
    return pInstance ? pInstance->transform : Transform();
}

void AssetEntityType::setOriginTransform(uint32_t uId, const Transform& transform)
{
    const EditorAssetInstance* pInstance = instance(uId);
    if (!pInstance || pInstance->transform == transform)
        return;
    const auto pEdit = edit(uId, ChangeEntityValues);
    setInstanceTransform(*pEdit, transform);
}

Transform AssetEntityType::getLocalCenterTransform(uint32_t uId) const
{
    const EditorAssetInstance* pInstance = instance(uId);
    return pInstance ? centred(pInstance->localTransform, pInstance->centerOffset) : Transform();
}

Transform AssetEntityType::getLocalTransform(uint32_t uId) const
{
    const EditorAssetInstance* pInstance = instance(uId);
    return pInstance ? pInstance->localTransform : Transform();
}

bool AssetEntityType::getBounds(uint32_t uId, Aabb& box) const
{
    const EditorAsset* pAsset = assetOf(uId);
    if (!pAsset)
        return false;
    box = pAsset->pRenderable->model().box;
    return true;
}

void AssetEntityType::onSelect(uint32_t uId)
{
    s_iColorEditIndex = -1;
    if (AssetInstance* pInstance = findInstance(uId))
        setHighlighted(*pInstance, true);
}

bool AssetEntityType::getCloneArgs(uint32_t uId, EntityCreateArgs& args) const
{
    const EditorAssetInstance* pInstance = instance(uId);
    if (!pInstance)
        return false;
    auto pPayload = std::make_shared<EntityCreateArgs::Asset>();
    pPayload->uuid = pInstance->uuid;
    pPayload->mapColors = pInstance->m_colorMap;
    pPayload->setTags = pInstance->setTags;
    args.eTypeId = s_eTypeId;
    args.transform = pInstance->transform;
    args.pPayload = std::move(pPayload);
    return true;
}

uint8_t AssetEntityType::getScaleFlags(uint32_t uId) const
{
    return exists(uId) ? uint8_t{ScaleCan | ScaleQuarter} : uint8_t{0};
}

uint32_t AssetEntityType::getGizmo(uint32_t /*uId*/) const
{
    if (!m_gizmo)
        m_gizmo = Gizmo::handleByName(entityTraits(s_eTypeId).sGizmo);
    return *m_gizmo;
}

// Shapes

std::optional<RayHit> AssetEntityType::castRay(uint32_t uId, const glm::vec3& from, const glm::vec3& to) const
{
    const EditorAssetInstance* pInstance = instance(uId);
    if (!pInstance)
        return std::nullopt;
    const Transform& transform = pInstance->transform;
    for (int i = 0; i < 3; ++i)
        if (std::abs(transform.scale[i]) < 1.0e-6f)
            return std::nullopt;
    const glm::quat back = glm::conjugate(transform.rotation);
    const auto local = [&](const glm::vec3& point)
    { return back * (point - transform.position) / transform.scale; };
    const resource::Model& model = pInstance->pAsset->pRenderable->model();
    const auto hit = resource::castRayAt(model, local(from), local(to));
    if (!hit)
        return std::nullopt;
    RayHit result;
    result.fraction = hit->fraction;
    result.position = from + (to - from) * hit->fraction;
    result.normal = glm::normalize(transform.rotation * (hit->normal / transform.scale));
    if (glm::dot(result.normal, to - from) > 0.0f)
        result.normal = -result.normal;
    return result;
}

} // namespace tilebuilder
