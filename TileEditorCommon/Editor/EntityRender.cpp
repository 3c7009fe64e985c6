#include "TileEditorCommon/Editor/EntityRender.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Resources/ResourceManager.h"
#include "KestrelCommon/renderer/Renderer.h"

namespace tilebuilder
{

namespace
{

constexpr int s_iImageSide = 64;

} // namespace

EntityRender::EntityRender(rend::Renderer& renderer, const std::vector<std::string>& vecImages)
    : m_renderer(renderer)
{
    QM_ASSERT_TEXT(!vecImages.empty(), "!images.empty() && \"No gizmos found.\"");
    m_billboards.setImages(renderer.resources().loadTextureArray(vecImages, s_iImageSide, s_iImageSide,
                                                                 resource::TextureResourceLayout::Bc3, 0, 0));
    renderer.setBillboards(&m_billboards);
}

EntityRender::~EntityRender()
{
    m_renderer.setBillboards(nullptr);
    m_renderer.setGrid(std::nullopt);
}

void EntityRender::showGrid(const Transform& plane, float fSpacing)
{
    m_renderer.setGrid(rend::GridPlane{plane.position, plane.rotation * glm::vec3(1.0f, 0.0f, 0.0f),
                                       plane.rotation * glm::vec3(0.0f, 1.0f, 0.0f), fSpacing});
}

void EntityRender::hideGrid()
{
    m_renderer.setGrid(std::nullopt);
}

void EntityRender::addBillboard(const Billboard& billboard)
{
    m_billboards.add(billboard.position, billboard.size, {billboard.color, billboard.alpha}, billboard.layer);
}

void EntityRender::drawLine(const glm::vec3& start, const glm::vec3& end, const glm::vec4& color, bool bOnTop)
{
    if (rend::DebugDrawer* pDrawer = m_renderer.debugDrawer())
        pDrawer->addLine(start, end, color, !bOnTop);
}

void EntityRender::drawOrientedBox(const Transform& transform, const glm::vec3& lowest,
                                   const glm::vec3& highest, const glm::vec4& color)
{
    if (rend::DebugDrawer* pDrawer = m_renderer.debugDrawer())
        pDrawer->addOrientedBox(transform, {lowest, highest}, color);
}

void EntityRender::drawTriangles(std::span<const glm::vec3> spanPoints, const glm::vec4& color)
{
    if (rend::DebugDrawer* pDrawer = m_renderer.debugDrawer())
        pDrawer->addTriangles(spanPoints, color);
}

} // namespace tilebuilder
