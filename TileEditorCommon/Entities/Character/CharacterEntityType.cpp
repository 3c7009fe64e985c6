#include "TileEditorCommon/Entities/Character/CharacterEntityType.h"

#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Services/DirectoryManager.h"
#include "TileEditorCommon/Contracts/EditorSinkI.h"
#include "TileEditorCommon/Contracts/EntityRenderI.h"
#include "TileEditorCommon/Contracts/EntityTraits.h"
#include "TileEditorCommon/Contracts/PropertyPanelI.h"
#include "TileEditorCommon/Entities/EntityCreateArgs.h"

#include <json/value.h>

namespace tilebuilder
{

namespace
{

/// Models have +Y up.
constexpr glm::quat s_upright{0.70710677f, 0.70710677f, 0.0f, 0.0f};
constexpr glm::vec3 s_eye{0.0f, 0.1f, 1.65f};       ///< metres from the feet; it looks along +Y
constexpr glm::vec2 s_frustumSlope{0.736f, 0.414f}; ///< half a view of 45 degrees in 16 : 9
constexpr float s_fFrustumLength = 12.0f;           ///< metres
constexpr glm::vec4 s_boundsColor{0.55f, 1.0f, 0.55f, 1.0f};
constexpr glm::vec4 s_frustumColor{1.0f, 0.82f, 0.27f, 0.9f};

} // namespace

CharacterEntityType::~CharacterEntityType()
{
    remove(m_uId, false);
    if (m_uRenderable != rend::InstanceWorld::s_uNone)
        m_world.removeRenderable(m_uRenderable);
}

/// Read when it is first placed; a model that can't be read shows the stand-in.
void CharacterEntityType::load()
{
    if (m_pRenderable)
        return;
    resource::RenderableDesc desc;
    if (const auto jRenderable = readJsonFile(s_pRenderable))
        desc = resource::readRenderable(*jRenderable).value_or(resource::RenderableDesc{});
    const auto fnResolve = [](std::string_view sPath)
    { return DirectoryManager::ms_pInstance->resolvePath(sPath); };
    m_pRenderable = std::make_shared<const resource::Renderable>(
        desc, std::make_shared<const resource::ModelFile>(desc.sMesh, fnResolve), false);
    m_uRenderable = m_world.addRenderable(m_pRenderable);
}

Transform CharacterEntityType::drawn() const
{
    return {m_transform.position, m_transform.rotation * s_upright, glm::vec3(s_fScale)};
}

bool CharacterEntityType::create(EntityCreateArgs& args, std::span<const uint64_t> /*spanStack*/)
{
    if (m_uId != 0)
        return false;
    load();
    m_uId = args.uId;
    m_transform = {args.transform.position, args.transform.rotation, glm::vec3(s_fScale)};
    m_uInstance = m_world.addInstance(m_uRenderable, drawn(), {});
    return true;
}

void CharacterEntityType::remove(uint32_t uId, bool /*bRemoveLinks*/)
{
    if (!exists(uId))
        return;
    m_world.removeInstance(m_uInstance);
    m_uId = 0;
    m_host.sink().markInterfaceDirty(0);
}

std::string CharacterEntityType::getDisplayName(uint32_t uId) const
{
    return std::string(exists(uId) ? "Character" : entityTraits(s_eTypeId).sNullName);
}

Transform CharacterEntityType::getCenterTransform(uint32_t uId) const
{
    return exists(uId) ? m_transform : Transform{};
}

void CharacterEntityType::setCenterTransform(uint32_t uId, const Transform& transform)
{
    if (!exists(uId))
        return;
    m_transform.position = transform.position;
    m_transform.rotation = transform.rotation;
    m_world.setTransform(m_uInstance, drawn());
    m_host.onInstanceChanged(uId, 0);
    m_host.sink().markInterfaceDirty(0);
}

bool CharacterEntityType::getBounds(uint32_t uId, Aabb& box) const
{
    if (!exists(uId))
        return false;
    // The model stands on end in its own space: x stays, y becomes up.
    const Aabb& model = m_pRenderable->model().box;
    box = {{model.lowest.x, -model.highest.z, model.lowest.y},
           {model.highest.x, -model.lowest.z, model.highest.y}};
    return true;
}

void CharacterEntityType::drawSwitches(EntityRenderI& render) const
{
    Aabb box;
    if (!getBounds(m_uId, box))
        return;
    if (m_bDebugCulling)
        render.drawOrientedBox(m_transform, box.lowest, box.highest, s_boundsColor);
    if (!m_bVisualizeFrustum)
        return;
    const auto inWorld = [this](const glm::vec3& point)
    { return m_transform.position + m_transform.rotation * point; };
    const glm::vec3 eye = inWorld(s_eye);
    std::array<glm::vec3, 4> arrCorners;
    for (size_t i = 0; i < arrCorners.size(); ++i)
        arrCorners[i] = inWorld(s_eye + s_fFrustumLength *
                                            glm::vec3(i == 0 || i == 3 ? -s_frustumSlope.x : s_frustumSlope.x,
                                                      1.0f, i < 2 ? -s_frustumSlope.y : s_frustumSlope.y));
    for (size_t i = 0; i < arrCorners.size(); ++i)
    {
        render.drawLine(eye, arrCorners[i], s_frustumColor, false);
        render.drawLine(arrCorners[i], arrCorners[(i + 1) % arrCorners.size()], s_frustumColor, false);
    }
}

void CharacterEntityType::displayProperties(uint32_t uId, PropertyPanelI& panel)
{
    if (!exists(uId))
        return;
    panel.check("Debug culling", m_bDebugCulling, [this](bool bValue) { m_bDebugCulling = bValue; });
    panel.check("Visualize frustum", m_bVisualizeFrustum,
                [this](bool bValue) { m_bVisualizeFrustum = bValue; });
}

} // namespace tilebuilder
