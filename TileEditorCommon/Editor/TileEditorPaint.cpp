// Strokes of the painting tools.

#include "KestrelCommon/Platform/VirtualKeys.h"
#include "KestrelCommon/Services/InputManager.h"
#include "KestrelCommon/renderer/Camera.h"
#include "TileEditorCommon/Clutter/EditorTerrainClutter.h"
#include "TileEditorCommon/Contracts/BrushDab.h"
#include "TileEditorCommon/Editor/GroundView.h"
#include "TileEditorCommon/Editor/TileEditor.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

namespace tilebuilder
{

void TileEditor::paintStep(float dt)
{
    const auto hit = groundUnderCursor();
    const bool bOverWidget = m_pInterface && m_pInterface->isMouseOverWidget();
    if (hit && m_pGroundView && (m_bStrokeActive || !bOverWidget))
        m_pGroundView->drawBrush(*m_pSurface, *hit, static_cast<float>(m_toolState.size) * 0.5f);
    if (m_services.pInput->buttonState[0] != InputHeld)
    {
        m_bStrokeActive = false;
        return;
    }
    if (!m_bStrokeActive && m_pInterface && (bOverWidget || !m_pInterface->hasNoKeyFocus()))
        return;
    m_bStrokeDirty = true;
    m_bStrokeActive = true;
    m_strokeClock.add(dt);
    if (!hit)
        return;
    if (const auto fStep = m_strokeClock.take())
        paint(*hit, *fStep);
}

void TileEditor::paint(const glm::vec3& hit, float fStep)
{
    const float fRadius = static_cast<float>(m_toolState.size) * 0.5f;
    if (fRadius <= 0.0f)
        return;
    const BrushDab dab{hit.x, hit.y, fRadius, StrokeClock::dabStrength(m_toolState.strength, fStep),
                       m_toolState.pBrush};
    if (m_toolState.tool == ToolClutter)
        m_pClutter->paint(m_toolState.clutterSelection, dab, m_services.pInput->mods() & ModControl);
    if (m_toolState.tool != ToolHeight)
        return;
    switch (m_toolState.heightMode)
    {
    case HeightFlatten:
        m_pSurface->flatten(dab);
        break;
    case HeightSmooth:
        m_pSurface->smooth(dab);
        break;
    default:
        m_pSurface->raise(dab, m_services.pInput->mods() & ModControl ? -1.0f : 1.0f);
        break;
    }
}

} // namespace tilebuilder
