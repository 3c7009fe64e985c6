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

    /// Whether something of it asks for the scene's depth.
    [[nodiscard]] bool wantsDepth() const;

    /// Within a pass whose frame values are bound: icons and lines.
    void draw(const glm::mat4& view);
    [[nodiscard]] bool hasSolids() const { return m_pDebugDrawer && !m_pDebugDrawer->solids().empty(); }
    /// Within a pass whose depth is empty.
    void drawSolids();

private:
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
    std::vector<BillboardBatch::Icon> m_vecIcons; ///< sorted, from far to near
};

} // namespace rend
