// The selection.

#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Contracts/EditorSinkI.h"
#include "TileEditorCommon/Entities/Entities.h"

#include <algorithm>

namespace tilebuilder
{

void Entities::select(const Entity& entity, bool bAdd)
{
    const bool bExists = exists(entity);
    if (bExists && !isSelectable(entity))
        return;
    if (!bAdd || !bExists)
        clearSelection();
    if (!bExists)
        return;
    if (m_setSelected.insert(entity.uId).second)
    {
        m_vecSelected.push_back(entity);
        entity.pType->onSelect(entity.uId);
        if (m_fnSelecting)
            m_fnSelecting();
    }
    m_sink.markInterfaceDirty(ChangeSelection);
}

void Entities::selectMany(std::span<const Entity> spanEntities)
{
    // The list may be that of the selection itself.
    const std::vector<Entity> vecEntities(spanEntities.begin(), spanEntities.end());
    clearSelection();
    for (const Entity& entity : vecEntities)
        select(entity, true);
}

void Entities::selectAllOfType(EntityTypeId eId)
{
    selectMany(entitiesOfType(m_vecEntities, eId, false));
}

void Entities::selectAll()
{
    selectMany(m_vecEntities);
}

void Entities::clearSelection()
{
    for (const Entity& entity : m_vecSelected)
        if (exists(entity))
            entity.pType->onDeselect(entity.uId);
    m_vecSelected.clear();
    m_setSelected.clear();
    m_sink.markInterfaceDirty(ChangeSelection);
}

void Entities::deselect(const Entity& entity)
{
    if (!m_setSelected.contains(entity.uId))
        return;
    if (exists(entity))
        entity.pType->onDeselect(entity.uId);
    unselect(entity);
}

void Entities::forEachSelected(const std::function<void(Transform& pivot)>& fnChange)
{
    forEachSelectedWithEntity([&](Transform& pivot, const Entity&) { fnChange(pivot); });
}

void Entities::forEachSelectedWithEntity(const std::function<void(Transform& pivot, const Entity&)>& fnChange)
{
    // What is changed may be taken out of the selection by its type.
    const std::vector<Entity> vecSelected(m_vecSelected);
    for (const Entity& entity : vecSelected)
    {
        if (!exists(entity))
            continue;
        const Transform before = pivot(entity);
        Transform after = before;
        fnChange(after, entity);
        if (!(entity.pType->getScaleFlags(entity.uId) & ScaleCan))
            after.scale = before.scale;
        if (!(after == before))
            setPivot(entity, after);
    }
}

/// Without a word to the type, which may be about to lose the instance.
void Entities::unselect(const Entity& entity)
{
    if (m_setSelected.erase(entity.uId) == 0)
        return;
    std::erase(m_vecSelected, entity);
    m_sink.markInterfaceDirty(ChangeSelection);
}

} // namespace tilebuilder
