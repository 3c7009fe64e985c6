#include "TileEditorCommon/Entities/Entities.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/Hash.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Contracts/EditorSinkI.h"
#include "TileEditorCommon/Contracts/EditorToolState.h"
#include "TileEditorCommon/Entities/EntityCreateArgs.h"

#include <algorithm>
#include <glm/common.hpp>
#include <glm/geometric.hpp>

namespace tilebuilder
{

namespace
{

constexpr uint32_t s_uHiddenGroup = 0x80000000; ///< no view mask shows it

} // namespace

Entities::Entities(EditorSinkI& sink, EditorToolState& tools) : m_sink(sink), m_tools(tools) {}

Entities::~Entities()
{
    clear();
    // The later kinds may lean on the earlier ones.
    for (size_t i = m_arrKinds.size(); i-- > 0;)
        m_arrKinds[i].pType.reset();
}

void Entities::addKind(EntityKind&& kind)
{
    const EntityTypeId eId = kind.pType->getTypeId();
    if (!QM_ASSERT(eId < EntityTypeId_COUNT && !m_arrKinds[eId].pType))
        return;
    for (const auto& pRecords : kind.vecRecords)
        m_arrRecords[static_cast<size_t>(pRecords->group())] = pRecords.get();
    m_arrKinds[eId] = std::move(kind);
}

std::vector<LibrarySourceI*> Entities::librarySources() const
{
    std::vector<LibrarySourceI*> vecSources;
    for (const EntityTypeId eId : {EntityTypeId_Asset, EntityTypeId_Harvestable, EntityTypeId_Decal,
                                   EntityTypeId_Blueprint, EntityTypeId_Prefab, EntityTypeId_Node})
        for (const std::unique_ptr<LibrarySourceI>& pSource : m_arrKinds[eId].vecLibrary)
            vecSources.push_back(pSource.get());
    return vecSources;
}

const EntityRecordsI* Entities::records(tile::SectionGroup eGroup) const
{
    return m_arrRecords[static_cast<size_t>(eGroup)];
}

// Document

void Entities::openTile(const OpenTile& tile)
{
    clear();
    m_tile = tile;
    m_bTileOpen = true;
    m_index.reset(tile.iCellsX, tile.iCellsY, tile.uType == tile::TypeGround);
}

void Entities::closeTile()
{
    clear();
    m_bTileOpen = false;
}

void Entities::clear()
{
    m_uNextEntityId = 1;
    ++m_uGeneration;
    m_uNextPrefabSlot = 1;
    clearSelection();
    for (const Entity& entity : m_vecEntities)
        entity.pType->remove(entity.uId, false);
    m_vecEntities.clear();
    m_mapEntityIndex.clear();
    m_pickList.clear();
    m_vecPlaces.clear();
    m_uOutside = 0;
    m_vecRestored.clear();
    m_setHidden.clear();
    m_grid = m_character = NullEntity;
    m_arrCounts = {};
    m_index.reset(m_tile.iCellsX, m_tile.iCellsY, m_tile.uType == tile::TypeGround);
    ++m_uRevision;
    for (const EntityKind& kind : m_arrKinds)
        if (kind.pType)
            kind.pType->clearAll();
}

void Entities::clearStored()
{
    clearSelection();
    for (size_t i = m_vecEntities.size(); i-- > 0;)
        if (entityTraits(m_vecEntities[i].pType->getTypeId()).uLists > 0)
            removeEntity(m_vecEntities[i], false);
}

void Entities::beginLoad()
{
    for (const EntityKind& kind : m_arrKinds)
        if (kind.pType)
            kind.pType->beginLoad();
}

void Entities::afterLoad()
{
    for (const EntityKind& kind : m_arrKinds)
        if (kind.pType)
            kind.pType->afterLoad();
}

// Life

Entity Entities::createEntity(EntityCreateArgs args)
{
    if (!m_bTileOpen)
        return NullEntity;
    if (m_tile.uType != tile::TypeGround && args.eTypeId == EntityTypeId_Prefab)
        args.uPrefabSlot = m_uNextPrefabSlot++;
    const uint64_t uPathHash = fnv1a64(m_tile.sPath);
    const std::span<const uint64_t> spanStack(&uPathHash, m_tile.sPath.empty() ? 0 : 1);
    const Entity entity = spawn(std::move(args), spanStack);
    if (entity)
    {
        append(entity);
        markSetChanged(*entity.pType);
    }
    m_sink.markInterfaceDirty(0);
    return entity;
}

size_t Entities::createEntities(std::vector<EntityCreateArgs>&& vecArgs)
{
    const size_t uTotal = m_vecEntities.size() + vecArgs.size();
    if (uTotal > m_vecEntities.capacity())
    {
        m_vecEntities.reserve(std::max(uTotal, m_vecEntities.capacity() * 2));
        m_vecPlaces.reserve(m_vecEntities.capacity());
        m_pickList.reserve(m_vecEntities.capacity());
    }
    size_t uMade = 0;
    for (EntityCreateArgs& args : vecArgs)
    {
        args.bStored = true;
        uMade += createEntity(std::move(args)) ? 1 : 0;
    }
    vecArgs.clear();
    return uMade;
}

Entity Entities::spawn(EntityCreateArgs args, std::span<const uint64_t> spanStack)
{
    if (!QM_ASSERT(args.eTypeId < EntityTypeId_COUNT))
        return NullEntity;
    EntityTypeI* pType = m_arrKinds[args.eTypeId].pType.get();
    if (!pType)
    {
        QM_LOG_ERROR("Failed to create entity. No type registered for type id ", uint32_t{args.eTypeId});
        return NullEntity;
    }
    args.uId = m_uNextEntityId++;
    if (!pType->create(args, spanStack))
        return NullEntity;
    return {args.uId, pType};
}

void Entities::append(const Entity& entity)
{
    m_mapEntityIndex[entity.uId] = m_vecEntities.size();
    m_vecEntities.push_back(entity);
    m_vecPlaces.emplace_back();
    m_pickList.add(glm::vec3(0.0f), entity.pType->getFilterFlag());
    ++m_arrCounts[entity.pType->getTypeId()];
    refreshPlace(m_vecEntities.size() - 1);
}

void Entities::removeEntity(const Entity& entity, bool bRemoveLinks)
{
    const auto itIndex = m_mapEntityIndex.find(entity.uId);
    if (itIndex == m_mapEntityIndex.end())
        return;
    const size_t uHole = itIndex->second;
    const Entity removed = m_vecEntities[uHole];
    unselect(removed);
    removed.pType->remove(removed.uId, bRemoveLinks);
    m_index.remove(removed.uId);
    m_setHidden.erase(removed.uId);
    m_uOutside -= m_vecPlaces[uHole].outside ? 1 : 0;
    m_vecEntities[uHole] = m_vecEntities.back();
    m_vecPlaces[uHole] = m_vecPlaces.back();
    m_pickList.remove(uHole);
    m_mapEntityIndex[m_vecEntities[uHole].uId] = uHole;
    m_vecEntities.pop_back();
    m_vecPlaces.pop_back();
    m_mapEntityIndex.erase(removed.uId);
    --m_arrCounts[removed.pType->getTypeId()];
    ++m_uRevision;
    markSetChanged(*removed.pType);
}

/// Kinds that no file holds mark what they need themselves.
void Entities::markSetChanged(const EntityTypeI& type)
{
    if (entityTraits(type.getTypeId()).uLists > 0)
        m_sink.markChanged(ChangeEntitySet);
}

void Entities::removeSelected()
{
    const std::vector<Entity> vecGone(m_vecSelected);
    clearSelection();
    for (const Entity& entity : vecGone)
        removeEntity(entity, true);
}

Entity Entities::find(uint32_t uId) const
{
    const auto itIndex = m_mapEntityIndex.find(uId);
    return itIndex == m_mapEntityIndex.end() ? NullEntity : m_vecEntities[itIndex->second];
}

bool Entities::exists(const Entity& entity) const
{
    return entity.pType && entity.pType->exists(entity.uId);
}

bool Entities::isSelectable(const Entity& entity) const
{
    if (!entity.pType)
        return true;
    const auto& fnLocked = m_arrKinds[entity.pType->getTypeId()].fnLocked;
    return !fnLocked || !fnLocked(entity.uId);
}

std::vector<Entity> Entities::entitiesOfType(std::span<const Entity> spanEntities, EntityTypeId eId,
                                             bool bIntoPrefabs) const
{
    // Nothing is nested as long as no kind holds others.
    static_cast<void>(bIntoPrefabs);
    std::vector<Entity> vecFound;
    for (const Entity& entity : spanEntities)
        if (entity.pType->getTypeId() == eId)
            vecFound.push_back(entity);
    return vecFound;
}

// Pivots

void Entities::setTransformAroundOrigin(bool bAroundOrigin)
{
    if (m_bTransformAroundOrigin == bAroundOrigin)
        return;
    m_bTransformAroundOrigin = bAroundOrigin;
    for (size_t i = 0; i < m_vecEntities.size(); ++i)
        m_pickList.move(i, pivot(m_vecEntities[i]).position);
    m_sink.markInterfaceDirty(0);
}

Transform Entities::pivot(const Entity& entity) const
{
    if (!entity.pType)
        return {};
    return m_bTransformAroundOrigin ? entity.pType->getOriginTransform(entity.uId)
                                    : entity.pType->getCenterTransform(entity.uId);
}

void Entities::setPivot(const Entity& entity, const Transform& transform)
{
    if (!entity.pType)
        return;
    if (m_bTransformAroundOrigin)
        entity.pType->setOriginTransform(entity.uId, transform);
    else
        entity.pType->setCenterTransform(entity.uId, transform);
    m_sink.markInterfaceDirty(0);
}

bool Entities::isOutOfBounds(const Entity& entity) const
{
    if (m_tile.uType != tile::TypeGround || !entity.pType)
        return false;
    const EntityTraits& traits = entityTraits(entity.pType->getTypeId());
    if (traits.bNeverOutside)
        return false;
    const glm::vec3 place = traits.bCentreBounds ? entity.pType->getCenterTransform(entity.uId).position
                                                 : entity.pType->getOriginTransform(entity.uId).position;
    const glm::vec3 lowest(0.0f, 0.0f, -8192.0f);
    const glm::vec3 highest(static_cast<float>(m_tile.iCellsX) * tile::CellSize,
                            static_cast<float>(m_tile.iCellsY) * tile::CellSize, 8192.0f);
    return !(glm::all(glm::greaterThanEqual(place, lowest)) && glm::all(glm::lessThanEqual(place, highest)));
}

Aabb Entities::worldBox(const Entity& entity) const
{
    const Transform origin = entity.pType ? entity.pType->getOriginTransform(entity.uId) : Transform{};
    Aabb box;
    if (!entity.pType || !entity.pType->getBounds(entity.uId, box))
        return {origin.position, origin.position};
    Aabb world{glm::vec3(INFINITY), glm::vec3(-INFINITY)};
    for (int iCorner = 0; iCorner < 8; ++iCorner)
    {
        const glm::vec3 corner = origin.apply({iCorner & 1 ? box.highest.x : box.lowest.x,
                                               iCorner & 2 ? box.highest.y : box.lowest.y,
                                               iCorner & 4 ? box.highest.z : box.lowest.z});
        world.lowest = glm::min(world.lowest, corner);
        world.highest = glm::max(world.highest, corner);
    }
    return world;
}

// What is kept beside the list

void Entities::onInstanceChanged(uint32_t uId, uint32_t uMask)
{
    if (const auto itIndex = m_mapEntityIndex.find(uId); itIndex != m_mapEntityIndex.end())
        refreshPlace(itIndex->second);
    if (uMask != 0)
        m_sink.markChanged(uMask);
}

void Entities::refreshPlace(size_t uIndex)
{
    const Entity& entity = m_vecEntities[uIndex];
    const Transform origin = entity.pType->getOriginTransform(entity.uId);
    const Transform centre = entity.pType->getCenterTransform(entity.uId);
    m_pickList.move(uIndex, m_bTransformAroundOrigin ? origin.position : centre.position);
    Place& place = m_vecPlaces[uIndex];
    m_uOutside -= place.outside ? 1 : 0;
    place = placeOf(entity);
    m_uOutside += place.outside ? 1 : 0;
    ++m_uRevision;

    const EntityTypeId eType = entity.pType->getTypeId();
    const EntityTraits& traits = entityTraits(eType);
    const auto pointOf = [&](TestPoint ePoint)
    { return ePoint == TestPoint::Origin ? origin.position : centre.position; };
    for (const auto& pRecords : m_arrKinds[eType].vecRecords)
    {
        if (!pRecords->holds(entity.uId))
            continue;
        SectionKey key{pRecords->group(), m_index.cellAt(pointOf(traits.ePlain)),
                       pRecords->level(entity.uId)};
        m_index.place(entity.uId, StoredForm::Plain, key);
        key.uCell = m_index.cellAt(pointOf(traits.eExport));
        m_index.place(entity.uId, StoredForm::Export, key);
    }
}

Entities::Place Entities::placeOf(const Entity& entity) const
{
    Place place;
    place.outside = isOutOfBounds(entity);
    Aabb box;
    if (!m_arrKinds[entity.pType->getTypeId()].pShapes || !entity.pType->getBounds(entity.uId, box))
        return place;
    const Transform origin = entity.pType->getOriginTransform(entity.uId);
    place.centre = origin.apply(box.centre());
    place.radius = glm::length(origin.scale * box.size()) * 0.5f;
    return place;
}

tile::ColorMap Entities::colors(const Entity& entity) const
{
    const EntityColorsI* pColors = entity.pType ? m_arrKinds[entity.pType->getTypeId()].pColors : nullptr;
    return pColors ? pColors->colors(entity.uId) : tile::ColorMap{};
}

void Entities::setColors(const Entity& entity, const tile::ColorMap& mapColors)
{
    if (EntityColorsI* pColors = entity.pType ? m_arrKinds[entity.pType->getTypeId()].pColors : nullptr)
        pColors->setColors(entity.uId, mapColors);
}

std::set<Uuid> Entities::usedContent() const
{
    std::set<Uuid> setItems;
    for (const Entity& entity : m_vecEntities)
        if (const auto& fnContent = m_arrKinds[entity.pType->getTypeId()].fnContent)
            if (const Uuid item = fnContent(entity.uId); !item.isNil())
                setItems.insert(item);
    return setItems;
}

bool Entities::fillPlacement(EntityCreateArgs& args) const
{
    if (args.eTypeId >= EntityTypeId_COUNT)
        return false;
    const auto& fnFill = m_arrKinds[args.eTypeId].fnFillPlacement;
    return fnFill && fnFill(m_tools, args);
}

Entity Entities::pick(const PickRay& ray) const
{
    const auto uIndex = m_pickList.pick(ray, m_tools.viewMask);
    if (!uIndex)
        return NullEntity;
    const Entity entity = m_vecEntities[*uIndex];
    return exists(entity) && isSelectable(entity) ? entity : NullEntity;
}

std::optional<RayHit> Entities::castShapes(const glm::vec3& from, const glm::vec3& to,
                                           const std::unordered_set<uint32_t>& setIgnored) const
{
    const glm::vec3 along = to - from;
    const float fLengthSquared = glm::dot(along, along);
    if (!(fLengthSquared > 0.0f))
        return std::nullopt;
    std::optional<RayHit> nearest;
    for (size_t i = 0; i < m_vecPlaces.size(); ++i)
    {
        const Place& sphere = m_vecPlaces[i];
        if (sphere.radius < 0.0f)
            continue;
        const glm::vec3 offset = sphere.centre - from;
        const float fAlong = glm::clamp(glm::dot(offset, along) / fLengthSquared, 0.0f, 1.0f);
        const glm::vec3 beside = offset - along * fAlong;
        if (glm::dot(beside, beside) > sphere.radius * sphere.radius)
            continue;
        const Entity& entity = m_vecEntities[i];
        if (setIgnored.contains(entity.uId) || isHidden(entity.uId) ||
            !isShown(entity.pType->getFilterFlag(), m_tools.viewMask))
            continue;
        const EntityShapesI* pShapes = m_arrKinds[entity.pType->getTypeId()].pShapes;
        const auto hit = pShapes->castRay(entity.uId, from, to);
        if (hit && (!nearest || hit->fraction < nearest->fraction))
            nearest = hit;
    }
    return nearest;
}

// The helpers of a tile, and hiding

void Entities::placeGrid(const Transform& transform)
{
    m_grid = placeHelper(grid(), EntityTypeId_Grid, transform);
}

void Entities::placeCharacter(const Transform& transform)
{
    m_character = placeHelper(character(), EntityTypeId_Character, transform);
}

Entity Entities::placeHelper(const Entity& helper, EntityTypeId eId, const Transform& transform)
{
    if (helper)
    {
        helper.pType->setOriginTransform(helper.uId, transform);
        return helper;
    }
    EntityCreateArgs args;
    args.eTypeId = eId;
    args.transform = transform;
    return createEntity(std::move(args));
}

void Entities::hideSelected()
{
    const std::vector<Entity> vecHidden(m_vecSelected);
    clearSelection();
    for (const Entity& entity : vecHidden)
    {
        const auto itIndex = m_mapEntityIndex.find(entity.uId);
        if (itIndex == m_mapEntityIndex.end() || !m_setHidden.insert(entity.uId).second)
            continue;
        m_pickList.setGroup(itIndex->second, s_uHiddenGroup);
        if (const auto& fnShow = m_arrKinds[entity.pType->getTypeId()].fnShow)
            fnShow(entity.uId, false);
    }
    ++m_uRevision;
}

void Entities::showHidden()
{
    for (const uint32_t uId : m_setHidden)
    {
        const size_t uIndex = m_mapEntityIndex.at(uId);
        const Entity& entity = m_vecEntities[uIndex];
        m_pickList.setGroup(uIndex, entity.pType->getFilterFlag());
        if (const auto& fnShow = m_arrKinds[entity.pType->getTypeId()].fnShow)
            fnShow(uId, true);
    }
    m_setHidden.clear();
    ++m_uRevision;
    m_sink.markInterfaceDirty(0);
}

// Stored form

void Entities::prepareForSave(bool /*bExport*/) {}

void Entities::releaseSave() {}

const tile::TagSet& Entities::inheritedTags(uint32_t /*uId*/) const
{
    static const tile::TagSet s_setNone;
    return s_setNone;
}

} // namespace tilebuilder
