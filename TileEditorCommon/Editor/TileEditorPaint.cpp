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
        m_pGroundView->drawBrush(*m_pSurface, *hit, static_cast<float>(m_toolState.size) * 0.5f,
                                 brushColours(m_toolState.tool, strokeColor()));
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
    const bool bControl = (m_services.pInput->mods() & ModControl) != 0;
    switch (m_toolState.tool)
    {
    case ToolHeight:
        paintHeight(dab, bControl);
        break;
    case ToolMaterial:
        m_pSurface->paintMaterial(static_cast<int32_t>(m_toolState.groundMaterial), bControl, dab);
        break;
    case ToolColor:
        m_pSurface->paintColor(strokeColor(), dab);
        break;
    case ToolClutter:
        m_pClutter->paint(m_toolState.clutterSelection, dab, bControl);
        break;
    default:
        break;
    }
}

/// What the colour tool paints just now.
glm::vec4 TileEditor::strokeColor() const
{
    const auto& [r, g, b, a] = m_toolState.groundColor;
    return m_services.pInput->mods() & ModControl ? glm::vec4(1.0f) : glm::vec4(r, g, b, a);
}

void TileEditor::paintHeight(const BrushDab& dab, bool bControl)
{
    switch (m_toolState.heightMode)
    {
    case HeightFlatten:
        m_pSurface->flatten(dab);
        break;
    case HeightSmooth:
        m_pSurface->smooth(dab);
        break;
    default:
        m_pSurface->raise(dab, bControl ? -1.0f : 1.0f);
        break;
    }
}

} // namespace tilebuilder
