// What is done to the selection: handles, commands, menu.

#include "KestrelCommon/Core/Random.h"
#include "KestrelCommon/Platform/VirtualKeys.h"
#include "KestrelCommon/Services/InputManager.h"
#include "KestrelCommon/renderer/Camera.h"
#include "TileEditorCommon/Editor/TileEditor.h"
#include "TileEditorCommon/Entities/Entities.h"
#include "TileEditorCommon/Entities/EntityClipboard.h"
#include "TileEditorCommon/Entities/EntityCommands.h"
#include "TileEditorCommon/Entities/EntityDrag.h"
#include "TileEditorCommon/Entities/EntityMenu.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

#include <cmath>
#include <glm/trigonometric.hpp>

namespace tilebuilder
{

namespace
{

ToolRay toolRay(const PickRay& ray)
{
    return {ray.start, ray.start + ray.direction * ray.length};
}

} // namespace

void TileEditor::makeEntityTools()
{
    m_pEntityDrag = std::make_unique<EntityDrag>(*m_pEntities);
    m_pEntityClipboard = std::make_unique<EntityClipboard>(*m_pEntities);
    const auto castGround = [this](const glm::vec3& from, const glm::vec3& to) -> std::optional<GroundSpot>
    {
        const auto hit = m_bGroundOpen ? m_pSurface->castRay(from, to) : std::nullopt;
        if (!hit)
            return std::nullopt;
        return GroundSpot{hit->position, m_pSurface->getNormal(hit->position.x, hit->position.y)};
    };
    m_pEntityCommands = std::make_unique<EntityCommands>(*m_pEntities, *m_pEntityDrag, *m_pEntityClipboard,
                                                         castGround, random15);
}

// Handles

void TileEditor::applyTransformDrag()
{
    const InputManager& input = *m_services.pInput;
    if (input.buttonDown[0])
        m_pEntityDrag->applyTransform(toolRay(cursorRay()), (input.mods() & ModControl) != 0);
}

void TileEditor::drawTransformTool(EntityRenderI& render)
{
    const bool bMouseFree = m_pInterface && !m_pInterface->isMouseOverWidget() && !m_services.pCamera->flying;
    const ToolRay ray = toolRay(cursorRay());
    m_pEntityDrag->updateTool(ray.start, std::tan(glm::radians(m_services.pCamera->fov) * 0.5f), ray,
                              bMouseFree, (m_services.pInput->mods() & ModControl) != 0);
    m_pEntityDrag->draw(render);
}

bool TileEditor::beginTransformDrag()
{
    m_pEntityDrag->beginTransform(toolRay(cursorRay()), (m_services.pInput->mods() & ModShift) != 0);
    return m_pEntityDrag->isDragging();
}

// Commands

void TileEditor::runEntityAction(uint32_t uAction)
{
    if (m_toolState.tool != ToolPlace)
        return;
    const EntityCommand eCommand = entityCommandByAction(uAction);
    std::optional<glm::vec3> point;
    if (eCommand == EntityCommand::Paste && m_pEntityClipboard->hasThings())
        if (const auto hit = castScene(cursorRay(), {}))
            point = hit->position;
    m_pEntityCommands->run(eCommand, point);
    // What a drag from a list was about to place is gone too.
    if (eCommand == EntityCommand::Delete && !m_toolState.noPlacement)
        endPlacement();
}

bool TileEditor::canRunEntityAction(uint32_t uAction) const
{
    return m_toolState.tool == ToolPlace && m_pEntityCommands->canRun(entityCommandByAction(uAction));
}

std::vector<EntityMenuItem> TileEditor::entityMenu()
{
    m_menuPoint.reset();
    if (const auto hit = castScene(cursorRay(), {}))
        m_menuPoint = hit->position;
    return buildEntityMenu(*m_pEntityCommands);
}

void TileEditor::runEntityMenu(uint32_t uCommand)
{
    m_pEntityCommands->run(static_cast<EntityCommand>(uCommand), m_menuPoint);
}

// Settings

bool TileEditor::isSnapping() const
{
    return m_pEntities->isSnapping();
}

void TileEditor::toggleSnapping()
{
    m_pEntities->setSnapping(!m_pEntities->isSnapping());
    markInterfaceDirty(0);
}

bool TileEditor::transformsAroundOrigin() const
{
    return m_pEntities->transformsAroundOrigin();
}

void TileEditor::toggleTransformOrigin()
{
    m_pEntities->setTransformAroundOrigin(!m_pEntities->transformsAroundOrigin());
}

} // namespace tilebuilder
