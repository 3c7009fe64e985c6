#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/FrameClock.h"
#include "KestrelCommon/Device/GlDeviceImpl.h"
#include "KestrelCommon/Device/GlFormats.h"

namespace rend
{

const GlTarget* GlDevice::currentTarget() const
{
    const auto it = m_mapTargets.find(m_currentTarget.uId);
    return it == m_mapTargets.end() ? nullptr : &it->second;
}

void GlDevice::beginPass(TargetHandle target, const PassSettings& settings)
{
    beginTimer();
    m_currentTarget = target ? target : m_windowTarget;
    m_pipeline = {};
    m_indexBuffer = {};
    m_arrVertexBuffers.fill({});
    const GlTarget* pTarget = currentTarget();
    if (!pTarget)
    {
        QM_LOG_ERROR("A pass began on a target that doesn't exist");
        return;
    }
    const bool bWindow = pTarget->desc.bWindowRows;
    if (m_bClipControl)
        glClipControl(bWindow ? GL_LOWER_LEFT : GL_UPPER_LEFT, GL_ZERO_TO_ONE);
    else
        glFrontFace(bWindow ? GL_CCW : GL_CW);

    glBindFramebuffer(GL_FRAMEBUFFER, pTarget->uFramebuffer);
    glViewport(0, 0, pTarget->desc.iWidth, pTarget->desc.iHeight);
    glDisable(GL_SCISSOR_TEST);
    glDepthMask(GL_TRUE);
    if (settings.bClearColour)
        glClearBufferfv(GL_COLOR, 0, settings.arrColour.data());
    const float fFar = 0.0f;
    if (settings.bClearDepth && pTarget->depth)
        glClearBufferfv(GL_DEPTH, 0, &fFar);
}

void GlDevice::endPass()
{
    m_currentTarget = {};
}

void GlDevice::setPipeline(PipelineHandle pipeline)
{
    const auto it = m_mapPipelines.find(pipeline.uId);
    if (it == m_mapPipelines.end() || pipeline == m_pipeline)
        return;
    m_pipeline = pipeline;
    applyState(it->second);
}

void GlDevice::applyState(const GlPipeline& pipeline) const
{
    const PipelineDesc& desc = pipeline.desc;
    glUseProgram(pipeline.uProgram);
    glBindVertexArray(pipeline.uVertexArray);
    const GlTarget* pTarget = currentTarget();
    if (pipeline.iFlipLocation >= 0)
        glUniform1f(pipeline.iFlipLocation, pTarget && pTarget->desc.bWindowRows ? 1.0f : -1.0f);

    const auto enable = [](GLenum eSwitch, bool bOn) { bOn ? glEnable(eSwitch) : glDisable(eSwitch); };
    enable(GL_BLEND, desc.eBlend != BlendMode::Opaque);
    if (desc.eBlend == BlendMode::Alpha)
        glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    else if (desc.eBlend == BlendMode::Premultiplied)
        glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    else if (desc.eBlend == BlendMode::Additive)
        glBlendFunc(GL_ONE, GL_ONE);
    enable(GL_DEPTH_TEST, desc.eDepth != DepthMode::None);
    glDepthMask(desc.eDepth == DepthMode::TestWrite ? GL_TRUE : GL_FALSE);
    enable(GL_CULL_FACE, desc.eCull != CullMode::None);
    glCullFace(desc.eCull == CullMode::Front ? GL_FRONT : GL_BACK);
}

void GlDevice::setTexture(uint32_t uSlot, TextureHandle texture, SamplerMode eSampler)
{
    const auto it = m_mapTextures.find(texture.uId);
    if (it == m_mapTextures.end() || uSlot >= s_uTextureSlots)
        return;
    glActiveTexture(GL_TEXTURE0 + uSlot);
    glBindTexture(it->second.eTarget, it->second.uName);
    glBindSampler(uSlot, m_arrSamplers[static_cast<size_t>(eSampler)]);
}

void GlDevice::setUniformBuffer(uint32_t uSlot, BufferHandle buffer)
{
    const auto it = m_mapBuffers.find(buffer.uId);
    if (it != m_mapBuffers.end())
        glBindBufferBase(GL_UNIFORM_BUFFER, uSlot, it->second.uName);
}

void GlDevice::setStorageBuffer(uint32_t uSlot, BufferHandle buffer)
{
    const auto it = m_mapBuffers.find(buffer.uId);
    if (it != m_mapBuffers.end() && m_bStorageBuffers)
        glBindBufferBase(GL_SHADER_STORAGE_BUFFER, uSlot, it->second.uName);
}

void GlDevice::setVertexBuffer(uint32_t uSlot, BufferHandle buffer, size_t uOffset)
{
    if (uSlot < m_arrVertexBuffers.size())
        m_arrVertexBuffers[uSlot] = {buffer, uOffset};
}

void GlDevice::setIndexBuffer(BufferHandle buffer, IndexWidth eWidth)
{
    m_indexBuffer = buffer;
    m_eIndexWidth = eWidth;
}

void GlDevice::setScissor(int iX, int iY, int iWidth, int iHeight)
{
    const GlTarget* pTarget = currentTarget();
    if (!pTarget)
        return;
    const bool bWindow = pTarget->desc.bWindowRows;
    glEnable(GL_SCISSOR_TEST);
    glScissor(iX, bWindow ? pTarget->desc.iHeight - iY - iHeight : iY, std::max(iWidth, 0),
              std::max(iHeight, 0));
}

void GlDevice::clearScissor()
{
    glDisable(GL_SCISSOR_TEST);
}

/// Binds what the pipeline's vertex input asks for. Null: something is missing, so nothing is drawn.
const GlPipeline* GlDevice::prepareDraw(bool bIndexed)
{
    const auto it = m_mapPipelines.find(m_pipeline.uId);
    if (it == m_mapPipelines.end() || !currentTarget())
        return nullptr;
    const GlPipeline& pipeline = it->second;
    const size_t uSlots = std::min(pipeline.desc.vecSlots.size(), m_arrVertexBuffers.size());
    for (size_t uSlot = 0; uSlot < uSlots; ++uSlot)
    {
        const auto itBuffer = m_mapBuffers.find(m_arrVertexBuffers[uSlot].buffer.uId);
        if (itBuffer == m_mapBuffers.end())
            return nullptr;
        glBindVertexBuffer(static_cast<GLuint>(uSlot), itBuffer->second.uName,
                           static_cast<GLintptr>(m_arrVertexBuffers[uSlot].uOffset),
                           static_cast<GLsizei>(pipeline.desc.vecSlots[uSlot].uStride));
    }
    if (bIndexed)
    {
        const auto itBuffer = m_mapBuffers.find(m_indexBuffer.uId);
        if (itBuffer == m_mapBuffers.end())
            return nullptr;
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, itBuffer->second.uName);
    }
    return &pipeline;
}

void GlDevice::draw(uint32_t uVertices, uint32_t uFirst, uint32_t uInstances, uint32_t uFirstInstance)
{
    const GlPipeline* pPipeline = prepareDraw(false);
    if (!pPipeline || uVertices == 0 || uInstances == 0)
        return;
    glDrawArraysInstancedBaseInstance(glTopology(pPipeline->desc.eTopology), static_cast<GLint>(uFirst),
                                      static_cast<GLsizei>(uVertices), static_cast<GLsizei>(uInstances),
                                      uFirstInstance);
}

void GlDevice::drawIndexed(uint32_t uIndices, uint32_t uFirst, uint32_t uInstances, uint32_t uFirstInstance)
{
    const GlPipeline* pPipeline = prepareDraw(true);
    if (!pPipeline || uIndices == 0 || uInstances == 0)
        return;
    const bool bWide = m_eIndexWidth == IndexWidth::Bits32;
    const size_t uOffset = static_cast<size_t>(uFirst) * (bWide ? 4 : 2);
    const size_t uEnd = uOffset + static_cast<size_t>(uIndices) * (bWide ? 4 : 2);
    if (uEnd > m_mapBuffers.at(m_indexBuffer.uId).desc.uSize)
    {
        QM_LOG_ERROR("A draw of ", uIndices, " indices passes the end of its buffer");
        return;
    }
    glDrawElementsInstancedBaseInstance(glTopology(pPipeline->desc.eTopology), static_cast<GLsizei>(uIndices),
                                        bWide ? GL_UNSIGNED_INT : GL_UNSIGNED_SHORT,
                                        reinterpret_cast<const void*>(uOffset),
                                        static_cast<GLsizei>(uInstances), uFirstInstance);
}

// Frame

bool GlDevice::present()
{
    endTimer();
    const auto it = m_mapTargets.find(m_windowTarget.uId);
    if (!m_context.isOffscreen() && it != m_mapTargets.end())
    {
        glBindFramebuffer(GL_READ_FRAMEBUFFER, it->second.uFramebuffer);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
        glDisable(GL_SCISSOR_TEST);
        glBlitFramebuffer(0, 0, m_iWidth, m_iHeight, 0, 0, m_iWidth, m_iHeight, GL_COLOR_BUFFER_BIT,
                          GL_NEAREST);
    }
    else
        glFlush();
    return m_context.swap();
}

void GlDevice::beginTimer()
{
    if (m_bTiming || m_uTimersStarted - m_uTimersRead >= s_uTimers)
        return;
    glBeginQuery(GL_TIME_ELAPSED, m_arrTimers[m_uTimersStarted % s_uTimers]);
    m_arrTimerStarts[m_uTimersStarted % s_uTimers] = FrameClock::seconds();
    m_bTiming = true;
}

void GlDevice::endTimer()
{
    if (m_bTiming)
    {
        glEndQuery(GL_TIME_ELAPSED);
        ++m_uTimersStarted;
        m_bTiming = false;
    }
    while (m_uTimersRead < m_uTimersStarted)
    {
        const GLuint uTimer = m_arrTimers[m_uTimersRead % s_uTimers];
        GLuint uReady = 0;
        glGetQueryObjectuiv(uTimer, GL_QUERY_RESULT_AVAILABLE, &uReady);
        if (uReady == 0)
            break;
        GLuint64 uNanoseconds = 0;
        glGetQueryObjectui64v(uTimer, GL_QUERY_RESULT, &uNanoseconds);
        // Some drivers answer with the time since their own start when nothing ran before: no frame can
        // have taken longer than the time that passed.
        const double fMilliseconds = static_cast<double>(uNanoseconds) * 1e-6;
        const double fPassed = (FrameClock::seconds() - m_arrTimerStarts[m_uTimersRead % s_uTimers]) * 1000.0;
        if (fMilliseconds <= fPassed + 1.0)
            m_fGpuMilliseconds = fMilliseconds;
        ++m_uTimersRead;
    }
}

} // namespace rend
