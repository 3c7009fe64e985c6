// The entity tool: placing, clicking and dragging things over the ground; grid, character, focus.

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/Random.h"
#include "KestrelCommon/Platform/VirtualKeys.h"
#include "KestrelCommon/Services/InputManager.h"
#include "KestrelCommon/renderer/Camera.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Editor/EntityRender.h"
#include "TileEditorCommon/Editor/Placement.h"
#include "TileEditorCommon/Editor/TileEditor.h"
#include "TileEditorCommon/Entities/Character/CharacterEntityType.h"
#include "TileEditorCommon/Entities/Entities.h"
#include "TileEditorCommon/Entities/EntityCommands.h"
#include "TileEditorCommon/Entities/EntityCreateArgs.h"
#include "TileEditorCommon/Entities/EntityDrag.h"
#include "TileEditorCommon/Entities/Grid/GridEntityType.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

#include <cmath>
#include <glm/common.hpp>
#include <glm/geometric.hpp>

namespace tilebuilder
{

namespace
{

constexpr float s_fFocusElevation = 20.0f; ///< degrees
constexpr float s_fCloseUp = 1.25f;        ///< metres
constexpr float s_fFocusRoom = 0.75f;      ///< of the diagonal of what is looked at
constexpr float s_fGridSteps = 4.0f;       ///< a metre

} // namespace

PickRay TileEditor::cursorRay() const
{
    const CursorPosition& cursor = m_services.pInput->mousePosition;
    const CameraRay ray =
        m_services.pCamera->ray(static_cast<float>(cursor.iX), static_cast<float>(cursor.iY));
    return {ray.origin, ray.direction, s_fRayLength};
}

std::optional<RayHit> TileEditor::castScene(const PickRay& ray,
                                            const std::unordered_set<uint32_t>& setIgnored) const
{
    const glm::vec3 end = ray.start + ray.direction * ray.length;
    auto hit = m_pEntities->castShapes(ray.start, end, setIgnored);
    if (m_bGroundOpen)
        if (const auto ground = m_pSurface->castRay(ray.start, end);
            ground && (!hit || ground->fraction < hit->fraction))
            hit = RayHit{ground->position, m_pSurface->getNormal(ground->position.x, ground->position.y),
                         ground->fraction};
    return hit;
}

void TileEditor::updateEntityTool()
{
    if (m_toolState.pickState == PickConsumed)
        return;
    const InputManager& input = *m_services.pInput;
    const bool bMouseFree =
        !m_pInterface || (!m_pInterface->isMouseOverWidget() && m_pInterface->hasNoKeyFocus());
    if (!m_toolState.noPlacement)
        placementStep();
    else if (input.buttonDown[2] && bMouseFree && !m_pEntityDrag->isDragging())
        beginMiddleDrag();
    else
        applyTransformDrag();
}

void TileEditor::placementStep()
{
    // What is dragged out of a window isn't there before it has left it.
    if (m_pInterface && m_pInterface->isOverWindow())
        return;
    std::unordered_set<uint32_t> setIgnored = m_toolState.placementIds;
    setIgnored.insert(m_toolState.placementHandle.uId);
    const auto hit = castScene(cursorRay(), setIgnored);
    if (!hit)
        return;
    const bool bSnap = m_pEntities->isSnapping();
    const Entity& moved = m_toolState.placementHandle;
    if (!m_pEntities->exists(moved))
    {
        placeNew(*hit);
        return;
    }
    Transform transform = moved.pType->getOriginTransform(moved.uId);
    transform.position = placedAt(hit->position, bSnap);
    moved.pType->setOriginTransform(moved.uId, transform);
    markInterfaceDirty(0);
}

void TileEditor::placeNew(const RayHit& hit)
{
    const bool bControl = (m_services.pInput->mods() & ModControl) != 0;
    const PlacementWish wish{m_toolState.randomZRotation, bControl, m_pEntities->isSnapping()};
    EntityCreateArgs args;
    args.eTypeId = static_cast<EntityTypeId>(m_toolState.placementType);
    args.transform = placeUpright(hit.position, hit.normal, wish, random15);
    if (!m_pEntities->fillPlacement(args))
    {
        m_toolState.noPlacement = true;
        return;
    }
    const Entity made = m_pEntities->createEntity(std::move(args));
    if (!made)
    {
        // Once is enough: the log says why.
        m_toolState.noPlacement = true;
        return;
    }
    m_toolState.placementHandle = made;
    m_pEntities->select(made, false);
}

/// Where the cursor's ray meets things, the active entity goes while the middle button is held.
void TileEditor::beginMiddleDrag()
{
    const Entity active = m_pEntities->active();
    if (!m_pEntities->exists(active))
        return;
    m_toolState.noPlacement = false;
    m_toolState.placementHandle = active;
    m_toolState.placementType = active.pType->getTypeId();
    m_toolState.placementIds.clear();
}

void TileEditor::endPlacement()
{
    m_toolState.placementHandle = NullEntity;
    m_toolState.placementIds.clear();
    m_toolState.noPlacement = true;
}

void TileEditor::clickEntities()
{
    if (m_toolState.placementHandle || beginTransformDrag())
        return;
    const uint32_t uMods = m_services.pInput->mods();
    const PickRay ray = cursorRay();
    const Entity picked = m_pEntities->pick(ray);
    const bool bAdd = (uMods & ModControl) != 0;
    if (!picked)
    {
        if (m_toolState.pickState == PickArmed)
            m_toolState.pickState = PickConsumed;
        else if (!bAdd)
            m_pEntities->clearSelection();
        return;
    }
    if (m_toolState.selectMode == 0)
        connectTo(picked);
    else if (m_toolState.pickState == PickArmed || uMods & ModShift)
        pickEntityColor(picked);
    else if (!m_pInterface || m_pInterface->isListed(picked.uId))
        m_pEntities->select(picked, bAdd);
}

void TileEditor::connectTo(const Entity& picked)
{
    const Entity active = m_pEntities->active();
    if (m_pEntities->exists(active) && active.pType->connect(active.uId, picked))
        QM_LOG("Connected!");
    if (!(m_services.pInput->mods() & ModShift))
        m_toolState.selectMode = 1;
    markInterfaceDirty(0);
}

/// The active thing takes the picked one's colour in the slot that is being edited.
void TileEditor::pickEntityColor(const Entity& picked)
{
    m_toolState.pickState = PickConsumed;
    const tile::ColorMap mapColors = m_pEntities->colors(picked);
    const auto itColor = mapColors.find(m_toolState.colorSlotName);
    const Entity active = m_pEntities->active();
    if (itColor == mapColors.end() || !m_pEntities->exists(active))
        return;
    // The bytes as they are: a way through floats could change them.
    m_pEntities->setColors(active, {*itColor});
    for (size_t i = 0; i < m_toolState.entityColor.size(); ++i)
        m_toolState.entityColor[i] = static_cast<float>(itColor->second >> (8 * i) & 255) / 255.0f;
    markInterfaceDirty(ChangeSelection);
}

// Grid, character, focus

void TileEditor::placeCharacterAtCursor()
{
    if (!isDocumentOpen())
        return;
    const auto hit = castScene(cursorRay(), {});
    if (!hit)
        return;
    const Entity character = m_pEntities->character();
    Transform transform = character ? character.pType->getOriginTransform(character.uId) : Transform{};
    transform.position = hit->position;
    m_pEntities->placeCharacter(transform);
    markInterfaceDirty(0);
}

void TileEditor::placeGridAtCursor()
{
    if (!isDocumentOpen())
        return;
    if (const auto hit = castScene(cursorRay(), {}))
    {
        const Entity grid = m_pEntities->grid();
        Transform transform = grid ? grid.pType->getOriginTransform(grid.uId) : Transform{};
        if (!grid)
            transform.scale = glm::vec3(GridEntityType::s_fNewScale);
        transform.position = glm::trunc(hit->position * s_fGridSteps) / s_fGridSteps;
        m_pEntities->placeGrid(transform);
    }
    m_pEntityCommands->run(EntityCommand::GridToSelection);
    markInterfaceDirty(0);
}

void TileEditor::toggleGrid()
{
    if (!isDocumentOpen())
        return;
    if (const Entity grid = m_pEntities->grid())
        m_pEntities->removeEntity(grid, true);
    else
        m_pEntities->placeGrid(
            {glm::vec3(0.0f), {1.0f, 0.0f, 0.0f, 0.0f}, glm::vec3(GridEntityType::s_fNewScale)});
    markInterfaceDirty(0);
}

bool TileEditor::hasGrid() const
{
    return static_cast<bool>(m_pEntities->grid());
}

std::optional<float> TileEditor::gridSpacing() const
{
    const Entity grid = m_pEntities->grid();
    if (!grid)
        return std::nullopt;
    return gridLook(grid.pType->getOriginTransform(grid.uId), glm::vec3(0.0f)).spacing;
}

void TileEditor::focusSelection(bool bLastOnly)
{
    if (m_toolState.tool != ToolPlace || m_pEntities->selected().empty())
        return;
    if (bLastOnly)
    {
        m_services.pCamera->frame(m_pEntities->pivot(m_pEntities->active()).position, s_fCloseUp,
                                  s_fFocusElevation, true);
        return;
    }
    Aabb all = m_pEntities->worldBox(m_pEntities->active());
    for (const Entity& entity : m_pEntities->selected())
    {
        const Aabb box = m_pEntities->worldBox(entity);
        all.lowest = glm::min(all.lowest, box.lowest);
        all.highest = glm::max(all.highest, box.highest);
    }
    m_services.pCamera->frame(all.centre(), glm::length(all.size()) * s_fFocusRoom, s_fFocusElevation, true);
}

// Frame

void TileEditor::updateEntities(float dt)
{
    m_pEntities->update(dt);
    if (!m_pEntityRender)
        return;
    if (const Entity grid = m_pEntities->grid())
    {
        const GridLook look =
            gridLook(grid.pType->getOriginTransform(grid.uId), m_services.pCamera->position);
        m_pEntityRender->showGrid({look.position, look.rotation}, look.spacing);
    }
    else
        m_pEntityRender->hideGrid();
    m_pEntities->typed<CharacterEntityType>().drawSwitches(*m_pEntityRender);
    if (m_toolState.tool == ToolPlace)
    {
        m_pEntities->drawBoxes(*m_pEntityRender);
        if (m_toolState.noPlacement)
            drawTransformTool(*m_pEntityRender);
    }
    m_pEntities->drawIcons(*m_pEntityRender, m_services.pCamera->position,
                           m_pInterface ? [this](uint32_t uId) { return m_pInterface->isListed(uId); }
                                        : std::function<bool(uint32_t)>());
}

} // namespace tilebuilder
