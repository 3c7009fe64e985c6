#include "TileEditorCommon/Editor/GroundView.h"

#include "KestrelCommon/Resources/ResourceManager.h"
#include "KestrelCommon/renderer/DebugDrawer.h"
#include "KestrelCommon/renderer/Renderer.h"
#include "TileEditorCommon/Contracts/EditorToolState.h"
#include "TileEditorCommon/Ground/BrushOutline.h"

namespace tilebuilder
{

namespace
{

constexpr float s_fRimAlpha = 0.95f;
constexpr float s_fHalfAlpha = 0.45f;

// Height amber, texture blue, colour rose, clutter green.
constexpr std::array<glm::vec3, 4> s_arrToolColours{
    {{1.0f, 0.816f, 0.267f}, {0.43f, 0.78f, 1.0f}, {1.0f, 0.5f, 0.74f}, {0.55f, 1.0f, 0.55f}}};

} // namespace

rend::TextureHandle GroundTextures::createTextureArray(std::string_view,
                                                       std::span<const std::string> spanPaths, int iWidth,
                                                       int iHeight, resource::TextureResourceLayout eLayout)
{
    return m_resources.loadTextureArray(spanPaths, iWidth, iHeight, eLayout, 0, 0);
}

BrushColours brushColours(uint8_t uTool, const glm::vec4& strokeColor)
{
    const glm::vec3 colour = s_arrToolColours[std::min<size_t>(uTool, s_arrToolColours.size() - 1)];
    return {glm::vec4(colour, s_fRimAlpha), uTool == ToolColor
                                                ? glm::vec4(glm::vec3(strokeColor), s_fRimAlpha)
                                                : glm::vec4(colour, s_fHalfAlpha)};
}

GroundView::GroundView(rend::Renderer& renderer, const TerrainGroundMaterialSet& materials)
    : m_renderer(renderer),
      m_uploader(renderer.device(), &materials)
{
}

void GroundView::update(EditorTerrainSurface& surface)
{
    m_uploader.upload(surface, m_renderer.terrainBindings());
}

void GroundView::bindMaterials()
{
    m_uploader.bindMaterials(m_renderer.terrainBindings());
}

void GroundView::release()
{
    m_uploader.release(m_renderer.terrainBindings());
}

void GroundView::drawBrush(const EditorTerrainSurface& surface, const glm::vec3& centre, float fRadius,
                           const BrushColours& colours)
{
    rend::DebugDrawer* pDrawer = m_renderer.debugDrawer();
    if (!pDrawer || !surface.isInside(centre.x, centre.y))
        return;
    pDrawer->addLoop(brushOutline(surface, centre, fRadius), colours.rim);
    pDrawer->addLoop(brushOutline(surface, centre, fRadius * 0.5f), colours.half);
}

} // namespace tilebuilder
