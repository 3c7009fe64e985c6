#include "TileEditorCommon/Entities/Grid/GridEntityType.h"

#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Contracts/EditorSinkI.h"
#include "TileEditorCommon/Contracts/EntityTraits.h"
#include "TileEditorCommon/Entities/EntityCreateArgs.h"

#include <algorithm>
#include <cmath>

namespace tilebuilder
{

namespace
{

constexpr float s_fStepsPerMetre = 4.0f;

} // namespace

GridLook gridLook(const Transform& transform, const glm::vec3& eye)
{
    const float fSteps = std::max(std::trunc(std::abs(transform.scale.x) * s_fStepsPerMetre), 1.0f);
    GridLook look{transform.position, transform.rotation, fSteps / s_fStepsPerMetre};
    const glm::vec3 normal = glm::abs(transform.rotation * glm::vec3(0.0f, 0.0f, 1.0f));
    int iNormal = normal.y >= normal.z ? 1 : 2;
    if (normal.x >= normal.y && normal.x >= normal.z)
        iNormal = 0;
    for (int iAxis = 0; iAxis < 3; ++iAxis)
        if (iAxis != iNormal)
            look.position[iAxis] =
                std::trunc(eye[iAxis] / look.spacing) * look.spacing + transform.position[iAxis];
    return look;
}

bool GridEntityType::create(EntityCreateArgs& args, std::span<const uint64_t> /*spanStack*/)
{
    if (m_uId != 0)
        return false;
    m_uId = args.uId;
    m_transform = args.transform;
    m_host.sink().markInterfaceDirty(ChangeGrid);
    return true;
}

void GridEntityType::remove(uint32_t uId, bool /*bRemoveLinks*/)
{
    if (!exists(uId))
        return;
    m_uId = 0;
    m_host.sink().markInterfaceDirty(ChangeGrid);
}

std::string GridEntityType::getDisplayName(uint32_t uId) const
{
    return std::string(exists(uId) ? "Grid" : entityTraits(s_eTypeId).sNullName);
}

Transform GridEntityType::getCenterTransform(uint32_t uId) const
{
    return exists(uId) ? m_transform : Transform{};
}

void GridEntityType::setCenterTransform(uint32_t uId, const Transform& transform)
{
    if (!exists(uId) || transform == m_transform)
        return;
    m_transform = transform;
    m_host.onInstanceChanged(uId, 0);
    m_host.sink().markInterfaceDirty(ChangeGrid);
}

uint8_t GridEntityType::getScaleFlags(uint32_t uId) const
{
    return exists(uId) ? ScaleCan | ScaleQuarter | ScaleUniform : 0;
}

} // namespace tilebuilder
