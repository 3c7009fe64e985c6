// Highlights: their shapes go into a mask, and a pass over the scene draws its edges.

#include "KestrelCommon/Resources/ResourceManager.h"
#include "KestrelCommon/renderer/InstanceDraw.h"

#include <algorithm>
#include <cmath>

namespace rend
{

namespace
{

constexpr uint32_t s_uFrameSlot = 1;
constexpr int s_iReach = 5; ///< pixels that an outline may stand off its shape

} // namespace

/// The part of the picture that the highlights can touch.
InstanceDraw::Rect InstanceDraw::highlightRect(const InstanceWorld& world, const glm::mat4& viewProjection,
                                               int iWidth, int iHeight)
{
    glm::vec2 low(1.0f);
    glm::vec2 high(-1.0f);
    for (uint32_t u = 0; u < world.renderableCount(); ++u)
        for (const InstanceData& instance : world.highlights(u))
        {
            const Aabb box = movedBox(world.renderable(u)->model().box, instance.arrRows);
            for (int i = 0; i < 8; ++i)
            {
                const glm::vec4 corner(i & 1 ? box.highest.x : box.lowest.x,
                                       i & 2 ? box.highest.y : box.lowest.y,
                                       i & 4 ? box.highest.z : box.lowest.z, 1.0f);
                const glm::vec4 clip = viewProjection * corner;
                if (clip.w < 0.01f)
                    return {0, 0, iWidth, iHeight}; // it reaches behind the eye
                low = glm::min(low, glm::vec2(clip) / clip.w);
                high = glm::max(high, glm::vec2(clip) / clip.w);
            }
        }
    const auto pixel = [](float f, int iSide, int iShift)
    {
        const float fPixel = (f * 0.5f + 0.5f) * static_cast<float>(iSide) + static_cast<float>(iShift);
        return static_cast<int>(std::clamp(fPixel, 0.0f, static_cast<float>(iSide)));
    };
    const int iLeft = pixel(low.x, iWidth, -s_iReach);
    const int iTop = pixel(-high.y, iHeight, -s_iReach);
    return {iLeft, iTop, pixel(high.x, iWidth, s_iReach) - iLeft, pixel(-low.y, iHeight, s_iReach) - iTop};
}

void InstanceDraw::drawOutlines(InstanceWorld& world, TargetHandle scene, int iWidth, int iHeight,
                                bool bWindowRows, const glm::mat4& viewProjection, BufferHandle frame)
{
    if (!m_maskPipeline || !m_outlinePipeline || world.highlightCount() == 0)
        return;
    const Rect rect = highlightRect(world, viewProjection, iWidth, iHeight);
    if (rect.iWidth < 1 || rect.iHeight < 1)
        return;
    if (!m_mask || m_iMaskWidth != iWidth || m_iMaskHeight != iHeight || m_bMaskWindowRows != bWindowRows)
    {
        m_device.destroyTarget(m_mask);
        m_mask = m_device.createTarget({.sName = "Outlines",
                                        .iWidth = iWidth,
                                        .iHeight = iHeight,
                                        .bDepth = false,
                                        .bWindowRows = bWindowRows});
        m_iMaskWidth = iWidth;
        m_iMaskHeight = iHeight;
        m_bMaskWindowRows = bWindowRows;
    }
    std::vector<InstanceData> vecAll;
    std::vector<InstanceBatch> vecRuns; // of renderables
    for (uint32_t u = 0; u < world.renderableCount(); ++u)
        if (const auto spanOfOne = world.highlights(u); !spanOfOne.empty())
        {
            (void)meshOf(world, u);
            vecRuns.push_back(
                {u, static_cast<uint32_t>(vecAll.size()), static_cast<uint32_t>(spanOfOne.size())});
            vecAll.insert(vecAll.end(), spanOfOne.begin(), spanOfOne.end());
        }
    const auto bytes = std::as_bytes(std::span(vecAll));
    const resource::BorrowedBuffer instances =
        m_resources.borrowBuffer(bytes.size(), sizeof(InstanceData), BufferKind::Vertex);
    m_device.updateBuffer(instances.buffer, 0, bytes);

    m_device.beginPass(m_mask, {.bClearDepth = false, .arrColour = {0.0f, 0.0f, 0.0f, 0.0f}});
    m_device.setPipeline(m_maskPipeline);
    m_device.setUniformBuffer(s_uFrameSlot, frame);
    m_device.setTexture(1, m_device.targetDepth(scene), SamplerMode::PointClamp);
    m_device.setVertexBuffer(1, instances.buffer);
    for (const InstanceBatch& run : vecRuns)
    {
        const Mesh& mesh = m_vecMeshes[run.uKind];
        m_device.setVertexBuffer(0, mesh.vertices);
        m_device.setIndexBuffer(mesh.indices, IndexWidth::Bits32);
        for (const Part& part : mesh.vecParts)
        {
            m_device.setTexture(0, part.arrTextures[0], SamplerMode::LinearWrap);
            m_device.drawIndexed(part.uIndices, part.uFirst, run.uCount, run.uFirst);
        }
    }
    m_device.endPass();
    m_resources.returnBuffer(instances);

    m_device.beginPass(scene, {.bClearColour = false, .bClearDepth = false});
    m_device.setPipeline(m_outlinePipeline);
    m_device.setUniformBuffer(s_uFrameSlot, frame);
    m_device.setTexture(0, m_device.targetColour(m_mask), SamplerMode::PointClamp);
    m_device.setScissor(rect.iX, rect.iY, rect.iWidth, rect.iHeight);
    m_device.draw(3, 0);
    m_device.clearScissor();
    m_device.endPass();
}

} // namespace rend
