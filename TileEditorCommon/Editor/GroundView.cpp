#include "TileEditorCommon/Editor/GroundView.h"

#include "KestrelCommon/Resources/ResourceManager.h"
#include "KestrelCommon/renderer/DebugDrawer.h"
#include "KestrelCommon/renderer/Renderer.h"
#include "TileEditorCommon/Ground/BrushOutline.h"

namespace tilebuilder
{

namespace
{

// The amber of the active tool; the inner circle is fainter.
constexpr glm::vec4 s_rimColour(1.0f, 0.816f, 0.267f, 0.95f);
constexpr glm::vec4 s_halfColour(1.0f, 0.816f, 0.267f, 0.45f);

} // namespace

GroundView::GroundView(rend::Renderer& renderer, resource::ResourceManager& resources)
    : m_renderer(renderer),
      m_resources(resources),
      m_materialSet(this),
      m_uploader(renderer.device(), &m_materialSet)
{
    m_materialSet.load(TerrainGroundMaterialSet::s_pStandardPath);
}

void GroundView::update(EditorTerrainSurface& surface)
{
    m_uploader.upload(surface, m_renderer.terrainBindings());
}

void GroundView::release()
{
    m_uploader.release(m_renderer.terrainBindings());
}

void GroundView::drawBrush(const EditorTerrainSurface& surface, const glm::vec3& centre, float fRadius)
{
    rend::DebugDrawer* pDrawer = m_renderer.debugDrawer();
    if (!pDrawer || !surface.isInside(centre.x, centre.y))
        return;
    pDrawer->addLoop(brushOutline(surface, centre, fRadius), s_rimColour);
    pDrawer->addLoop(brushOutline(surface, centre, fRadius * 0.5f), s_halfColour);
}

rend::TextureHandle GroundView::createTextureArray(std::string_view, std::span<const std::string> spanPaths,
                                                   int iWidth, int iHeight,
                                                   resource::TextureResourceLayout eLayout)
{
    return m_resources.loadTextureArray(spanPaths, iWidth, iHeight, eLayout, 0, 0);
}

} // namespace tilebuilder
