#include "TileEditorCommon/Editor/EntityListView.h"

#include "TileEditorCommon/Entities/Entities.h"
#include "TileEditorCommon/Entities/Gizmo.h"

namespace tilebuilder
{

std::span<const Entity> EntityListView::all() const
{
    return m_entities.all();
}

uint64_t EntityListView::generation() const
{
    return m_entities.generation();
}

bool EntityListView::exists(const Entity& entity) const
{
    return m_entities.exists(entity);
}

EntityTypeId EntityListView::kind(const Entity& entity) const
{
    return entity ? entity.pType->getTypeId() : EntityTypeId_COUNT;
}

std::string EntityListView::name(const Entity& entity) const
{
    return entity ? entity.pType->getDisplayName(entity.uId) : std::string();
}

std::string EntityListView::icon(const Entity& entity) const
{
    const EntityTypeId eKind = kind(entity);
    if (!entity || eKind == EntityTypeId_Character || eKind == EntityTypeId_Grid)
        return {};
    return Gizmo::pathByHandle(entity.pType->getGizmo(entity.uId));
}

bool EntityListView::isOutlined(const Entity& entity) const
{
    return entity && (entity.pType->isCamera(entity.uId) & CameraHidden) == 0;
}

bool EntityListView::isHidden(const Entity& entity) const
{
    return m_entities.isHidden(entity.uId);
}

std::span<const Entity> EntityListView::selected() const
{
    return m_entities.selected();
}

void EntityListView::select(std::span<const Entity> spanEntities)
{
    m_entities.selectMany(spanEntities);
}

Transform EntityListView::pivot(const Entity& entity) const
{
    return entity ? m_entities.pivot(entity) : Transform{};
}

void EntityListView::setPivot(const Entity& entity, const Transform& transform)
{
    if (m_entities.exists(entity))
        m_entities.setPivot(entity, transform);
}

uint8_t EntityListView::scaleFlags(const Entity& entity) const
{
    return entity ? entity.pType->getScaleFlags(entity.uId) : uint8_t{0};
}

void EntityListView::displayProperties(const Entity& entity, PropertyPanelI& panel)
{
    if (m_entities.exists(entity))
        entity.pType->displayProperties(entity.uId, panel);
}

} // namespace tilebuilder
