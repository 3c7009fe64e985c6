// The frame of the editor object: history, tools, end of a press.

#include "KestrelCommon/Core/FrameClock.h"
#include "KestrelCommon/Platform/AudioListener.h"
#include "KestrelCommon/Services/InputManager.h"
#include "KestrelCommon/renderer/Camera.h"
#include "KestrelCommon/renderer/Renderer.h"
#include "TileEditorCommon/Clutter/EditorTerrainClutter.h"
#include "TileEditorCommon/Document/Tile.h"
#include "TileEditorCommon/Editor/AssetIcons.h"
#include "TileEditorCommon/Editor/GroundView.h"
#include "TileEditorCommon/Editor/TileEditor.h"
#include "TileEditorCommon/Entities/EntityDrag.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

namespace tilebuilder
{

void TileEditor::update(float dt)
{
    m_vecWorldLabels.clear();
    updateCatalogue();
    if (m_pAssetIcons)
        m_pAssetIcons->update();
    if (isDocumentOpen())
    {
        updateHistory();
        if (m_pInterface && m_pInterface->isTileSettingsVisible())
            labelCorners();
        updateTools(dt);
        if (m_bGroundOpen && m_pSurface->isDirty())
        {
            m_pSurface->rebuild();
            if (m_pGroundView)
                m_pGroundView->update(*m_pSurface);
        }
        if (!m_services.pInput->buttonDown[0] && !m_services.pInput->buttonDown[2])
            endPress();
        updateEntities(dt);
        openEntityMenu();
        if (m_bGroundOpen)
            m_pClutter->update(glm::vec2(m_services.pCamera->position), !m_bStrokeActive);
    }
    if (m_services.pAudio)
    {
        m_services.pAudio->position = m_services.pCamera->position;
        m_services.pAudio->forward = m_services.pCamera->forward();
        m_services.pAudio->up = m_services.pCamera->up();
    }
}

void TileEditor::updateHistory()
{
    m_pending.beginFrame();
    if (m_pending.isDue(FrameClock::clockMs(), m_services.pInput->buttonDown[0]))
        pushPending();
    updateUndoKeys();
}

/// Names the corners of the tile as the world generator lays it.
void TileEditor::labelCorners()
{
    const auto fWidth = static_cast<float>(m_pTile->width() * tile::CellSize);
    const auto fHeight = static_cast<float>(m_pTile->height() * tile::CellSize);
    const std::array<std::pair<const char*, glm::vec3>, 4> arrCorners{{{"NW", {0.0f, 0.0f, 0.0f}},
                                                                       {"NE", {fWidth, 0.0f, 0.0f}},
                                                                       {"SW", {0.0f, fHeight, 0.0f}},
                                                                       {"SE", {fWidth, fHeight, 0.0f}}}};
    glm::vec2 pixel;
    for (const auto& [pText, corner] : arrCorners)
        if (m_services.pCamera->project(corner, pixel))
            m_vecWorldLabels.push_back({pText, {pixel.x, pixel.y}});
}

void TileEditor::updateTools(float dt)
{
    if (m_services.pCamera->flying)
        return;
    if (m_bGroundOpen && m_toolState.tool <= ToolClutter && m_toolState.pickState == PickNormal)
        paintStep(dt);
    if (m_toolState.tool == ToolPlace)
        updateEntityTool();
}

/// A right click that turned no view.
void TileEditor::openEntityMenu()
{
    const InputManager& input = *m_services.pInput;
    if (m_toolState.tool != ToolPlace || input.buttonState[1] != InputReleased || !m_pInterface ||
        m_pInterface->isMouseOverWidget() || m_services.pCamera->dragged)
        return;
    m_pInterface->showEntityMenu(input.mousePosition.iX, input.mousePosition.iY);
}

void TileEditor::endPress()
{
    if (m_toolState.tool <= ToolClutter && m_bStrokeDirty)
    {
        m_strokeClock.rearm();
        m_bStrokeDirty = false;
    }
    m_bStrokeActive = false;
    m_pEntityDrag->endTransform();
    if (!m_toolState.noPlacement)
        endPlacement();
    if (m_toolState.pickState == PickConsumed)
        m_toolState.pickState = PickNormal;
}

/// The document is another now: what the mouse was doing to the old one ends, and nothing more comes of a
/// button that is down.
void TileEditor::abandonPress()
{
    m_pEntityDrag->endTransform();
    endPlacement();
    if (m_services.pInput->buttonDown[0] || m_services.pInput->buttonDown[2])
        m_toolState.pickState = PickConsumed;
}

std::optional<glm::vec3> TileEditor::groundUnderCursor() const
{
    if (!m_bGroundOpen)
        return std::nullopt;
    const CursorPosition& cursor = m_services.pInput->mousePosition;
    const CameraRay ray =
        m_services.pCamera->ray(static_cast<float>(cursor.iX), static_cast<float>(cursor.iY));
    const auto hit = m_pSurface->castRay(ray.origin, ray.origin + ray.direction * s_fRayLength);
    return hit ? std::optional(hit->position) : std::nullopt;
}

void TileEditor::leftMouseDown()
{
    if (!isDocumentOpen())
        return;
    if (m_toolState.tool == ToolColor && m_toolState.pickState == PickArmed)
        pickGroundColor();
    if (m_toolState.tool == ToolPlace)
        clickEntities();
}

} // namespace tilebuilder
