#include "TileEditorCommon/Entities/EntityClipboard.h"

#include "TileEditorCommon/Contracts/EditorSinkI.h"
#include "TileEditorCommon/Entities/Entities.h"

#include <algorithm>

namespace tilebuilder
{

namespace
{

constexpr float s_fUnitScale = 0.25f; ///< of kinds with ScaleQuarter

} // namespace

void EntityClipboard::copySelected()
{
    if (m_entities.selected().empty())
        return;
    m_vecArgs.clear();
    m_vecTransforms.clear();
    m_colors.clear();
    for (const Entity& entity : m_entities.selected())
    {
        if (!m_entities.exists(entity))
            continue;
        EntityCreateArgs args;
        if (entity.pType->getCloneArgs(entity.uId, args))
        {
            args.bStored = true;
            m_vecArgs.push_back(std::move(args));
        }
        Transform pivot = m_entities.pivot(entity);
        if (entity.pType->getScaleFlags(entity.uId) & ScaleQuarter)
            pivot.scale /= s_fUnitScale;
        m_vecTransforms.push_back(pivot);
    }
    const Entity active = m_entities.active();
    if (!m_entities.exists(active))
        return;
    m_colors = m_entities.colors(active);
}

void EntityClipboard::pasteAt(const glm::vec3& point)
{
    if (m_vecArgs.empty())
        return;
    m_entities.clearSelection();
    glm::dvec3 sum(0.0);
    for (const EntityCreateArgs& args : m_vecArgs)
        sum += glm::dvec3(args.transform.position);
    const glm::vec3 shift = point - glm::vec3(sum / static_cast<double>(m_vecArgs.size()));
    for (EntityCreateArgs args : m_vecArgs)
    {
        args.transform.position += shift;
        m_entities.select(m_entities.createEntity(std::move(args)), true);
    }
}

void EntityClipboard::replaceSelected()
{
    if (m_vecArgs.empty() || m_entities.selected().empty())
        return;
    const std::span<const Entity> spanSelected = m_entities.selected();
    const std::vector<Entity> vecReplaced(spanSelected.begin(), spanSelected.end());
    std::vector<Transform> vecPivots;
    for (const Entity& entity : vecReplaced)
    {
        if (!m_entities.exists(entity))
            continue;
        vecPivots.push_back(m_entities.pivot(entity));
        m_entities.removeEntity(entity, true);
    }
    m_entities.clearSelection();
    for (Transform& pivot : vecPivots)
    {
        const Entity entity = m_entities.createEntity(m_vecArgs.back());
        if (entity)
        {
            if (!(entity.pType->getScaleFlags(entity.uId) & ScaleCan))
                pivot.scale = m_entities.pivot(entity).scale;
            m_entities.setPivot(entity, pivot);
        }
        m_entities.select(entity, true);
    }
}

void EntityClipboard::pasteColors()
{
    if (m_colors.empty())
        return;
    std::vector<Entity> vecSorted;
    for (const Entity& entity : m_entities.selected())
        if (m_entities.exists(entity))
            vecSorted.push_back(entity);
    std::stable_sort(vecSorted.begin(), vecSorted.end(),
                     [](const Entity& first, const Entity& second)
                     { return first.pType->getTypeId() < second.pType->getTypeId(); });
    for (const Entity& entity : vecSorted)
        m_entities.setColors(entity, m_colors);
    m_entities.sink().markInterfaceDirty(0);
}

} // namespace tilebuilder
