#include "TileEditorCommon/Entities/EntityDrag.h"

#include "TileEditorCommon/Contracts/EditorSinkI.h"
#include "TileEditorCommon/Contracts/EditorToolState.h"
#include "TileEditorCommon/Entities/Entities.h"

#include <algorithm>
#include <glm/geometric.hpp>
#include <limits>

namespace tilebuilder
{

namespace
{

constexpr float s_fLeastScale = std::numeric_limits<float>::epsilon();
constexpr float s_fGrownScale = 0.001f; ///< from where a collapsed thing grows

uint8_t modeOf(uint8_t uHandle)
{
    if (uHandle < HandleRing)
        return ModeTranslate;
    return uHandle < HandleScale ? ModeRotate : ModeScale;
}

} // namespace

glm::vec3 scaledBy(const glm::vec3& scale, glm::vec3 factors, uint8_t uScaleFlags)
{
    if (!(uScaleFlags & ScaleCan))
        factors = glm::vec3(1.0f);
    else if (uScaleFlags & ScaleUniform)
        factors = glm::vec3(std::max({factors.x, factors.y, factors.z}));
    const bool bKeepY = (uScaleFlags & ScaleKeepY) != 0;
    if (bKeepY)
        factors.y = 1.0f;

    const bool bCollapsed =
        scale.x <= s_fLeastScale && (bKeepY || scale.y <= s_fLeastScale) && scale.z <= s_fLeastScale;
    glm::vec3 result;
    for (int i = 0; i < 3; ++i)
    {
        const float fStart = bCollapsed && factors[i] > 1.0f ? s_fGrownScale : scale[i];
        result[i] = std::max(fStart * factors[i], s_fLeastScale);
    }
    return result;
}

Transform draggedBy(const Transform& start, const TransformDelta& delta, const ToolPose& pose,
                    uint8_t uScaleFlags, bool bLocal)
{
    Transform result = start;
    result.scale = scaledBy(start.scale, delta.scale, uScaleFlags);
    if (bLocal)
    {
        result.position += start.rotation * delta.translation;
        result.rotation = start.rotation * delta.rotation;
    }
    else
    {
        // Around the centre, in the axes of the tool.
        const glm::quat back = glm::conjugate(pose.rotation);
        const glm::vec3 fromCentre = back * (start.position - pose.centre);
        result.position =
            pose.centre + pose.rotation * (delta.translation + delta.rotation * (delta.scale * fromCentre));
        result.rotation = pose.rotation * delta.rotation * back * start.rotation;
    }
    result.rotation = glm::normalize(result.rotation);
    return result;
}

bool EntityDrag::isLocal(bool bLocal) const
{
    const Entity active = m_entities.active();
    return bLocal && m_entities.exists(active) && active.pType->getTypeId() != EntityTypeId_Grid;
}

TransformTool::Snap EntityDrag::snap() const
{
    TransformTool::Snap snap;
    for (const Start& start : m_vecDragStart)
        if (m_entities.exists(start.entity) && start.entity.pType->movesByGrid(start.entity.uId))
            snap.bForceGrid = true;
    snap.bOn = snap.bForceGrid || m_entities.isSnapping();
    return snap;
}

void EntityDrag::updateTool(const glm::vec3& eye, float fTanHalfFov, const ToolRay& mouse, bool bMouseFree,
                            bool bLocal)
{
    m_fTanHalfFov = fTanHalfFov;
    m_bShowLocal = bLocal;
    m_uHovered = HandleNone;
    if (!m_entities.exists(m_entities.active()))
        return;
    placeTool(eye);
    if (isDragging() || !bMouseFree)
        return;
    if (const auto hit = m_tool.hit(mouse, m_entities.tools().transformMode))
        m_uHovered = hit->uHandle;
}

void EntityDrag::placeTool(const glm::vec3& eye)
{
    const Transform pivot = m_entities.pivot(m_entities.active());
    ToolPose pose;
    pose.centre = pivot.position;
    if (isLocal(m_bShowLocal) || m_entities.tools().transformMode == ModeScale)
        pose.rotation = glm::normalize(pivot.rotation);
    pose.eye = eye;
    pose.size = ToolPose::sizeFor(pose.centre, eye, m_fTanHalfFov);
    m_tool.setPose(pose);
}

void EntityDrag::draw(EntityRenderI& render) const
{
    if (!m_entities.exists(m_entities.active()))
        return;
    if (!isDragging())
    {
        m_tool.draw(render, m_entities.tools().transformMode, m_uHovered);
        return;
    }
    // A ring that is held stays as it was taken; what it turns would take it along.
    const uint8_t uMode = modeOf(m_uActiveHandle);
    const TransformTool& shown = uMode == ModeRotate ? m_atStart : m_tool;
    shown.drawDrag(render, m_uActiveHandle, m_dragPoint, m_delta);
    shown.draw(render, uMode, m_uActiveHandle);
}

void EntityDrag::beginTransform(const ToolRay& ray, bool bClone)
{
    if (isDragging() || m_entities.selected().empty() || !m_entities.exists(m_entities.active()))
        return;
    placeTool(ray.start); // another may have been selected since the last frame
    const auto hit = m_tool.hit(ray, m_entities.tools().transformMode);
    if (!hit)
        return;
    m_uActiveHandle = hit->uHandle;
    m_dragPoint = hit->point;
    m_dragRay = ray;
    m_bMoved = false;
    m_delta = {};
    m_atStart = m_tool;
    if (bClone)
    {
        cloneSelection();
        if (m_entities.selected().empty())
        {
            endTransform();
            return;
        }
    }
    for (const Entity& entity : m_entities.selected())
        if (m_entities.exists(entity))
            m_vecDragStart.push_back(
                {entity, m_entities.pivot(entity), entity.pType->getOriginTransform(entity.uId)});
}

void EntityDrag::cloneSelection()
{
    const std::span<const Entity> spanSelected = m_entities.selected();
    const std::vector<Entity> vecSources(spanSelected.begin(), spanSelected.end());
    m_entities.clearSelection();
    for (const Entity& source : vecSources)
    {
        Entity copy;
        if (!m_entities.exists(source) || !source.pType->clone(source.uId, m_entities, copy) ||
            !m_entities.exists(copy))
            continue;
        copy.pType->connect(copy.uId, source);
        m_entities.select(copy, true);
    }
}

void EntityDrag::applyTransform(const ToolRay& ray, bool bLocal)
{
    // A press that moves nothing leaves every bit as it is.
    m_bMoved = m_bMoved || !(ray == m_dragRay);
    if (!isDragging() || !m_bMoved)
        return;
    bLocal = isLocal(bLocal);
    ToolPose pose = m_atStart.pose();
    pose.rotation = glm::quat(1.0f, 0.0f, 0.0f, 0.0f);
    const bool bScales = m_uActiveHandle >= HandleScale;
    for (const Start& start : m_vecDragStart)
        if ((bLocal || bScales) && start.entity == m_entities.active())
            pose.rotation = glm::normalize(start.pivot.rotation);
    m_atStart.setPose(pose);
    const auto delta = m_atStart.delta(m_uActiveHandle, m_dragPoint, ray, snap());
    if (!delta)
        return;
    m_delta = *delta;
    for (const Start& start : m_vecDragStart)
    {
        const Entity& entity = start.entity;
        if (!m_entities.exists(entity))
            continue;
        // Back where it began means exactly there, whatever the pivots would make of it.
        if (m_delta == TransformDelta{})
        {
            entity.pType->setOriginTransform(entity.uId, start.origin);
            m_entities.sink().markInterfaceDirty(0);
        }
        else
            m_entities.setPivot(entity, draggedBy(start.pivot, m_delta, pose,
                                                  entity.pType->getScaleFlags(entity.uId), bLocal));
    }
}

void EntityDrag::endTransform()
{
    m_vecDragStart.clear();
    m_uActiveHandle = HandleNone;
    m_delta = {};
}

} // namespace tilebuilder
