#include "KestrelCommon/renderer/GroundShade.h"

namespace rend
{

namespace
{

constexpr uint32_t s_uSurfaceSlot = 0;
constexpr uint32_t s_uVerticesSlot = 0;
constexpr int s_iTexelsAFrame = 12000; ///< of a CPU: some 5 ms of it

} // namespace

GroundShade::~GroundShade()
{
    m_device.destroyPipeline(m_pipeline);
    m_device.destroyTarget(m_target);
}

void GroundShade::update(const TerrainSurfaceBindings& ground, const glm::vec3& sunDirection,
                         BufferHandle frame, uint32_t uFrameSlot, bool bWhole)
{
    const auto iColumns = static_cast<int>(ground.verticesX);
    const auto iRows = static_cast<int>(ground.verticesY);
    if (!m_pipeline || !ground.vertexBuffer || iColumns < 1 || iRows < 1)
        return;
    bool bAnew = ground.vertexBuffer != m_vertices;
    if (iColumns != m_iColumns || iRows != m_iRows || !m_target)
    {
        m_device.destroyTarget(m_target);
        m_target = m_device.createTarget(
            {.sName = "Ground shade", .iWidth = iColumns, .iHeight = iRows, .bDepth = false});
        m_iColumns = iColumns;
        m_iRows = iRows;
        m_iNextRow = 0;
        bAnew = true;
        if (!m_target)
            return;
    }
    const uint64_t uVertices = m_device.revision(ground.vertexBuffer);
    if (bAnew || uVertices != m_uVertices || sunDirection != m_sunDirection)
        m_iStaleRows = iRows;
    m_vertices = ground.vertexBuffer;
    m_uVertices = uVertices;
    m_sunDirection = sunDirection;
    if (m_iStaleRows == 0)
        return;

    const bool bAll = bAnew || bWhole || !m_device.isSoftware();
    const int iNow = bAll ? m_iStaleRows : std::min(m_iStaleRows, std::max(1, s_iTexelsAFrame / iColumns));
    m_device.beginPass(m_target, {.bClearColour = false, .bClearDepth = false});
    m_device.setPipeline(m_pipeline);
    m_device.setUniformBuffer(s_uSurfaceSlot, ground.surfaceInfo);
    m_device.setUniformBuffer(uFrameSlot, frame);
    m_device.setStorageBuffer(s_uVerticesSlot, ground.vertexBuffer);
    for (int iLeft = iNow; iLeft > 0;)
    {
        const int iBand = std::min(iLeft, iRows - m_iNextRow);
        m_device.setScissor(0, m_iNextRow, iColumns, iBand);
        m_device.draw(3, 0);
        m_iNextRow = (m_iNextRow + iBand) % iRows;
        iLeft -= iBand;
    }
    m_device.clearScissor();
    m_device.endPass();
    m_iStaleRows -= iNow;
    ++m_uRevision;
}

} // namespace rend
