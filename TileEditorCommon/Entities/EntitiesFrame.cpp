// What entities show in a frame.

#include "TileEditorCommon/Contracts/EditorToolState.h"
#include "TileEditorCommon/Contracts/EntityRenderI.h"
#include "TileEditorCommon/Entities/Entities.h"
#include "TileEditorCommon/Entities/Gizmo.h"

#include <algorithm>
#include <glm/geometric.hpp>

namespace tilebuilder
{

namespace
{

constexpr glm::vec4 s_boxColor{1.0f, 1.0f, 1.0f, 1.0f};
constexpr glm::vec4 s_outsideBoxColor{1.0f, 0.1f, 0.1f, 1.0f};
constexpr glm::vec3 s_outsideIconColor{1.0f, 0.1f, 0.1f};

/// Metres on a side: from afar icons grow, so that they don't shrink to nothing.
float iconSize(float fDistance)
{
    return std::clamp(fDistance - 1.0f, 0.0f, 750.0f) * 0.03333333f + 1.25f;
}

float iconAlpha(float fDistance)
{
    return 1.0f - std::clamp(fDistance - 150.0f, 0.0f, 200.0f) * 0.00425f;
}

} // namespace

void Entities::update(float dt)
{
    for (const EntityKind& kind : m_arrKinds)
        if (kind.pType)
            kind.pType->update(dt);
}

void Entities::drawBoxes(EntityRenderI& render) const
{
    Aabb box;
    for (const Entity& entity : m_vecSelected)
        if (exists(entity) && entity.pType->getBounds(entity.uId, box) && !box.isEmpty())
            render.drawOrientedBox(entity.pType->getOriginTransform(entity.uId), box.lowest, box.highest,
                                   isOutOfBounds(entity) ? s_outsideBoxColor : s_boxColor);
}

void Entities::drawIcons(EntityRenderI& render, const glm::vec3& eye,
                         const std::function<bool(uint32_t uId)>& fnListed) const
{
    render.beginBillboards();
    if (m_tools.tool >= ToolPlace)
    {
        const uint32_t uErrorGizmo = m_uOutside > 0 ? Gizmo::handleByName("error") : 0;
        for (size_t i = 0; i < m_vecEntities.size(); ++i)
        {
            const Entity& entity = m_vecEntities[i];
            if (!isShown(m_pickList.group(i), m_tools.viewMask) || isSelected(entity.uId) ||
                !isSelectable(entity) || (fnListed && !fnListed(entity.uId)) || !exists(entity))
                continue;
            const glm::vec3 position = m_pickList.position(i);
            const float fDistance = glm::length(position - eye);
            const bool bOutside = m_vecPlaces[i].outside;
            render.addBillboard({position, iconSize(fDistance),
                                 bOutside ? s_outsideIconColor : entity.pType->getColor(entity.uId),
                                 iconAlpha(fDistance),
                                 bOutside ? uErrorGizmo : entity.pType->getGizmo(entity.uId)});
        }
    }
    render.endBillboards();
}

} // namespace tilebuilder
