#pragma once // What lies over a scene: icons, lines, the handles of tools.

#include "KestrelCommon/Device/GraphicsDeviceI.h"
#include "KestrelCommon/renderer/BillboardBatch.h"
#include "KestrelCommon/renderer/DebugDrawer.h"

#include <glm/mat4x4.hpp>

namespace resource
{
class ResourceManager;
}

namespace rend
{

/// Square lines on a plane.
struct GridPlane
{
    glm::vec3 position{0.0f}; ///< metres, a crossing of lines; the plane reaches far around it
    glm::vec3 axisX{1.0f, 0.0f, 0.0f};
    glm::vec3 axisY{0.0f, 1.0f, 0.0f};
    float fSpacing = 16.0f; ///< metres

    bool operator==(const GridPlane&) const = default;
};

/// Main thread only. The device and the resource manager must outlive it.
class OverlayDraw
{
public:
    OverlayDraw(GraphicsDeviceI& device, resource::ResourceManager& resources);
    ~OverlayDraw();
    OverlayDraw(const OverlayDraw&) = delete;
    OverlayDraw& operator=(const OverlayDraw&) = delete;

    /// False: a shader is missing or broken.
    bool init();

    /// What to draw; borrowed, null for none.
    void setDebugDrawer(DebugDrawer* pDrawer) { m_pDebugDrawer = pDrawer; }
    [[nodiscard]] DebugDrawer* debugDrawer() const { return m_pDebugDrawer; }
    void setBillboards(const BillboardBatch* pBillboards) { m_pBillboards = pBillboards; }

    void setGrid(const std::optional<GridPlane>& grid) { m_grid = grid; }

    /// Whether something of it asks for the scene's depth.
    [[nodiscard]] bool wantsDepth() const;

    /// Within a pass whose frame values are bound: icons and lines.
    void draw(const glm::mat4& view);
    [[nodiscard]] bool hasSolids() const { return m_pDebugDrawer && !m_pDebugDrawer->solids().empty(); }
    /// Within a pass whose depth is empty.
    void drawSolids();

private:
    void drawGrid();
    void drawBillboards(const glm::mat4& view);
    void drawLineList(std::span<const DebugDrawer::Line> spanLines, PipelineHandle pipeline, float fOpacity);

    GraphicsDeviceI& m_device;
    resource::ResourceManager& m_resources;
    DebugDrawer* m_pDebugDrawer = nullptr;
    const BillboardBatch* m_pBillboards = nullptr;
    PipelineHandle m_linePipeline;        ///< hidden by what is in front
    PipelineHandle m_lineThroughPipeline; ///< shows through everything
    PipelineHandle m_iconPipeline;
    PipelineHandle m_iconThroughPipeline;
    PipelineHandle m_solidPipeline;
    PipelineHandle m_gridPipeline;
    std::optional<GridPlane> m_grid;
    std::vector<BillboardBatch::Icon> m_vecIcons; ///< sorted, from far to near
};

} // namespace rend
