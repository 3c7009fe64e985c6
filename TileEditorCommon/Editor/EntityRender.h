#pragma once // Hands what entities draw to the renderer.

#include "KestrelCommon/renderer/BillboardBatch.h"
#include "TileEditorCommon/Contracts/EntityRenderI.h"

#include <string>
#include <vector>

namespace rend
{
class Renderer;
}

namespace tilebuilder
{

/// Its icons go to the renderer, its lines to the renderer's debug drawer.
/// Lifetime: the renderer must outlive it.
class EntityRender : public EntityRenderI
{
public:
    /// The images of the icons, in the order of their layers; not empty.
    EntityRender(rend::Renderer& renderer, const std::vector<std::string>& vecImages);
    ~EntityRender() override;

    void beginBillboards() override { m_billboards.begin(); }
    void addBillboard(const Billboard& billboard) override;
    void endBillboards() override { m_billboards.end(); }
    void showGrid(const Transform& plane, float fSpacing) override;
    void hideGrid() override;
    void drawLine(const glm::vec3& start, const glm::vec3& end, const glm::vec4& color, bool bOnTop) override;
    void drawOrientedBox(const Transform& transform, const glm::vec3& lowest, const glm::vec3& highest,
                         const glm::vec4& color) override;
    void drawTriangles(std::span<const glm::vec3> spanPoints, const glm::vec4& color) override;

private:
    rend::Renderer& m_renderer;
    rend::BillboardBatch m_billboards;
};

} // namespace tilebuilder
