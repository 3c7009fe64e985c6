#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Device/DeviceChecks.h"
#include "KestrelCommon/Device/GlDeviceImpl.h"
#include "KestrelCommon/Device/GlFormats.h"

namespace rend
{

namespace
{

std::string glText(GLenum eName)
{
    const auto* pText = reinterpret_cast<const char*>(glGetString(eName));
    return pText ? pText : "";
}

void debugMessage(GLenum eSource, GLenum eType, GLuint, GLenum, GLsizei, const GLchar* pText, const void*)
{
    if (eSource == GL_DEBUG_SOURCE_SHADER_COMPILER)
        return; // compiling logs the whole text itself
    if (eType == GL_DEBUG_TYPE_ERROR || eType == GL_DEBUG_TYPE_UNDEFINED_BEHAVIOR)
        UTILS::log(pText, UTILS::AttributeRed, UTILS::LogRender | UTILS::LogError);
}

GLenum bufferTarget(BufferKind eKind)
{
    return eKind == BufferKind::Constant ? GL_UNIFORM_BUFFER : GL_COPY_WRITE_BUFFER;
}

} // namespace

std::unique_ptr<GraphicsDeviceI> createGlDevice(GlContextI& context, const GlDeviceSettings& settings)
{
    if (!context.makeCurrent())
    {
        QM_LOG_ERROR("The OpenGL context can't be made current");
        return nullptr;
    }
    if (!epoxy_is_desktop_gl() || epoxy_gl_version() < 43)
    {
        QM_LOG_ERROR("OpenGL 4.3 is needed, this is ", glText(GL_VERSION), " of ", glText(GL_RENDERER));
        return nullptr;
    }
    auto pDevice = std::make_unique<GlDevice>(context, settings);
    if (!pDevice->resize(settings.iWidth, settings.iHeight))
        return nullptr;
    return pDevice;
}

GlDevice::GlDevice(GlContextI& context, const GlDeviceSettings& settings)
    : m_context(context),
      m_programCache(settings.cacheFolder),
      m_sDriver(glText(GL_VENDOR) + '\n' + glText(GL_RENDERER) + '\n' + glText(GL_VERSION))
{
    for (const char* pName : {"llvmpipe", "softpipe", "swrast", "SwiftShader"})
        m_bSoftware = m_bSoftware || m_sDriver.find(pName) != std::string::npos;
    m_bAnisotropy = !m_bSoftware;
    if (settings.bForceHardwarePath)
        m_bSoftware = false;
    const bool bClipControl = epoxy_gl_version() >= 45 || epoxy_has_gl_extension("GL_ARB_clip_control");
    m_bClipControl = bClipControl && !settings.bAvoidClipControl;
    if (bClipControl)
        glClipControl(GL_LOWER_LEFT, m_bClipControl ? GL_ZERO_TO_ONE : GL_NEGATIVE_ONE_TO_ONE);

    GLint iBlocks = 0;
    glGetIntegerv(GL_MAX_VERTEX_SHADER_STORAGE_BLOCKS, &iBlocks);
    // Bc4 and Bc5 are part of OpenGL 3.0.
    m_bCompressedTextures = epoxy_has_gl_extension("GL_EXT_texture_compression_s3tc") &&
                            (epoxy_has_gl_extension("GL_EXT_texture_sRGB") ||
                             epoxy_has_gl_extension("GL_EXT_texture_compression_s3tc_srgb"));
    m_bStorageBuffers = iBlocks > 0;

    if (settings.bDebugOutput)
    {
        glEnable(GL_DEBUG_OUTPUT);
        glEnable(GL_DEBUG_OUTPUT_SYNCHRONOUS);
        glDebugMessageCallback(debugMessage, nullptr);
    }
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glDepthFunc(GL_GEQUAL);
    glClearDepth(0.0);
    createSamplers();
    glGenQueries(s_uTimers, m_arrTimers.data());
    QM_LOG("Graphics: ", glText(GL_RENDERER), ", OpenGL ", glText(GL_VERSION));
}

GlDevice::~GlDevice()
{
    m_context.makeCurrent();
    for (const auto& [uId, buffer] : m_mapBuffers)
        glDeleteBuffers(1, &buffer.uName);
    for (const auto& [uId, texture] : m_mapTextures)
        glDeleteTextures(1, &texture.uName);
    for (const auto& [uId, target] : m_mapTargets)
        glDeleteFramebuffers(1, &target.uFramebuffer);
    for (const auto& [uId, pipeline] : m_mapPipelines)
    {
        glDeleteVertexArrays(1, &pipeline.uVertexArray);
        glDeleteProgram(pipeline.uProgram);
    }
    glDeleteSamplers(static_cast<GLsizei>(m_arrSamplers.size()), m_arrSamplers.data());
    glDeleteQueries(s_uTimers, m_arrTimers.data());
}

void GlDevice::createSamplers()
{
    if (m_bAnisotropy &&
        (epoxy_gl_version() >= 46 || epoxy_has_gl_extension("GL_EXT_texture_filter_anisotropic")))
        glGetFloatv(GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT, &m_fMaxAnisotropy);

    glGenSamplers(static_cast<GLsizei>(m_arrSamplers.size()), m_arrSamplers.data());
    for (size_t uMode = 0; uMode < m_arrSamplers.size(); ++uMode)
    {
        const GLuint uSampler = m_arrSamplers[uMode];
        const auto eMode = static_cast<SamplerMode>(uMode);
        const bool bWrap = eMode == SamplerMode::LinearWrap || eMode == SamplerMode::AnisotropicWrap;
        const GLint iWrap = bWrap ? GL_REPEAT : GL_CLAMP_TO_EDGE;
        glSamplerParameteri(uSampler, GL_TEXTURE_WRAP_S, iWrap);
        glSamplerParameteri(uSampler, GL_TEXTURE_WRAP_T, iWrap);
        const bool bPoint = eMode == SamplerMode::PointClamp;
        // A CPU pays for each mip that it reads: only the best mode blends two.
        const bool bOneMip = m_bSoftware && eMode != SamplerMode::AnisotropicWrap;
        const GLint iLinear = bOneMip ? GL_LINEAR_MIPMAP_NEAREST : GL_LINEAR_MIPMAP_LINEAR;
        glSamplerParameteri(uSampler, GL_TEXTURE_MIN_FILTER, bPoint ? GL_NEAREST : iLinear);
        glSamplerParameteri(uSampler, GL_TEXTURE_MAG_FILTER, bPoint ? GL_NEAREST : GL_LINEAR);
        if (eMode == SamplerMode::AnisotropicWrap && m_fMaxAnisotropy > 1.0f)
            glSamplerParameterf(uSampler, GL_TEXTURE_MAX_ANISOTROPY_EXT, std::min(m_fMaxAnisotropy, 8.0f));
        if (eMode == SamplerMode::ShadowCompare)
        {
            glSamplerParameteri(uSampler, GL_TEXTURE_COMPARE_MODE, GL_COMPARE_REF_TO_TEXTURE);
            glSamplerParameteri(uSampler, GL_TEXTURE_COMPARE_FUNC, GL_GEQUAL);
            glSamplerParameteri(uSampler, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        }
    }
}

// Buffers

BufferHandle GlDevice::createBuffer(const BufferDesc& desc, std::span<const std::byte> spanInitial)
{
    if (!checkBuffer(desc, spanInitial.size()))
        return {};
    GlBuffer buffer{desc, 0, ++m_uLastRevision};
    glGenBuffers(1, &buffer.uName);
    const GLenum eTarget = bufferTarget(desc.eKind);
    glBindBuffer(eTarget, buffer.uName);
    glBufferData(eTarget, static_cast<GLsizeiptr>(desc.uSize),
                 spanInitial.empty() ? nullptr : spanInitial.data(),
                 desc.bDynamic ? GL_DYNAMIC_DRAW : GL_STATIC_DRAW);
    m_mapBuffers.emplace(m_uNextId, buffer);
    return {m_uNextId++};
}

bool GlDevice::updateBuffer(BufferHandle buffer, size_t uOffset, std::span<const std::byte> spanData)
{
    const auto it = m_mapBuffers.find(buffer.uId);
    if (it == m_mapBuffers.end() || !checkBufferUpdate(it->second.desc, uOffset, spanData.size()))
        return false;
    it->second.uRevision = ++m_uLastRevision;
    const BufferDesc& desc = it->second.desc;
    const GLenum eTarget = bufferTarget(desc.eKind);
    glBindBuffer(eTarget, it->second.uName);
    if (desc.bDynamic && uOffset == 0 && spanData.size() == desc.uSize)
        glBufferData(eTarget, static_cast<GLsizeiptr>(desc.uSize), spanData.data(), GL_DYNAMIC_DRAW);
    else
        glBufferSubData(eTarget, static_cast<GLintptr>(uOffset), static_cast<GLsizeiptr>(spanData.size()),
                        spanData.data());
    return true;
}

void GlDevice::destroyBuffer(BufferHandle buffer)
{
    const auto it = m_mapBuffers.find(buffer.uId);
    if (it == m_mapBuffers.end())
        return;
    glDeleteBuffers(1, &it->second.uName);
    m_mapBuffers.erase(it);
}

// Textures

/// A unit of its own, so that edits leave the slots of drawing alone.
void GlDevice::bindForEdit(const GlTexture& texture) const
{
    glActiveTexture(GL_TEXTURE0 + s_uTextureSlots);
    glBindTexture(texture.eTarget, texture.uName);
}

TextureHandle GlDevice::createTexture(const TextureDesc& desc)
{
    if (!checkTexture(desc))
        return {};
    GlTexture texture{desc, 0, desc.iLayers > 0 ? GLenum(GL_TEXTURE_2D_ARRAY) : GLenum(GL_TEXTURE_2D), false,
                      ++m_uLastRevision};
    const GlTextureFormat format = glTextureFormat(desc);
    glGenTextures(1, &texture.uName);
    bindForEdit(texture);
    if (desc.iLayers > 0)
        glTexStorage3D(texture.eTarget, desc.iMips, format.eInternal, desc.iWidth, desc.iHeight,
                       desc.iLayers);
    else
        glTexStorage2D(texture.eTarget, desc.iMips, format.eInternal, desc.iWidth, desc.iHeight);
    glTexParameteri(texture.eTarget, GL_TEXTURE_MAX_LEVEL, desc.iMips - 1);
    if (desc.bLuminanceAlpha)
    {
        const std::array<GLint, 4> arrSwizzle{GL_RED, GL_RED, GL_RED, GL_GREEN};
        glTexParameteriv(texture.eTarget, GL_TEXTURE_SWIZZLE_RGBA, arrSwizzle.data());
    }
    m_mapTextures.emplace(m_uNextId, texture);
    return {m_uNextId++};
}

bool GlDevice::updateTexture(TextureHandle texture, const TextureRegion& region, size_t uRowPitch,
                             std::span<const std::byte> spanData)
{
    const auto it = m_mapTextures.find(texture.uId);
    if (it == m_mapTextures.end() || !checkTextureUpdate(it->second.desc, region, uRowPitch, spanData.size()))
        return false;
    GlTexture& entry = it->second;
    entry.uRevision = ++m_uLastRevision;
    const GlTextureFormat format = glTextureFormat(entry.desc);
    const size_t uTexel = texelBytes(entry.desc);
    bindForEdit(entry);
    if (format.eFormat == 0)
    {
        const int iColumns = (region.iWidth + 3) / 4;
        const int iRows = (region.iHeight + 3) / 4;
        glPixelStorei(GL_UNPACK_COMPRESSED_BLOCK_WIDTH, 4);
        glPixelStorei(GL_UNPACK_COMPRESSED_BLOCK_HEIGHT, 4);
        glPixelStorei(GL_UNPACK_COMPRESSED_BLOCK_DEPTH, 1);
        glPixelStorei(GL_UNPACK_COMPRESSED_BLOCK_SIZE, static_cast<GLint>(uTexel));
        glPixelStorei(GL_UNPACK_ROW_LENGTH, static_cast<GLint>(uRowPitch / uTexel * 4));
        const auto iBytes =
            static_cast<GLsizei>(static_cast<size_t>(iColumns) * static_cast<size_t>(iRows) * uTexel);
        if (entry.desc.iLayers > 0)
            glCompressedTexSubImage3D(entry.eTarget, region.iMip, region.iX, region.iY, region.iLayer,
                                      region.iWidth, region.iHeight, 1, format.eInternal, iBytes,
                                      spanData.data());
        else
            glCompressedTexSubImage2D(entry.eTarget, region.iMip, region.iX, region.iY, region.iWidth,
                                      region.iHeight, format.eInternal, iBytes, spanData.data());
        glPixelStorei(GL_UNPACK_COMPRESSED_BLOCK_SIZE, 0);
    }
    else
    {
        glPixelStorei(GL_UNPACK_ROW_LENGTH, static_cast<GLint>(uRowPitch / uTexel));
        if (entry.desc.iLayers > 0)
            glTexSubImage3D(entry.eTarget, region.iMip, region.iX, region.iY, region.iLayer, region.iWidth,
                            region.iHeight, 1, format.eFormat, format.eType, spanData.data());
        else
            glTexSubImage2D(entry.eTarget, region.iMip, region.iX, region.iY, region.iWidth, region.iHeight,
                            format.eFormat, format.eType, spanData.data());
    }
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    return true;
}

void GlDevice::generateMips(TextureHandle texture)
{
    const auto it = m_mapTextures.find(texture.uId);
    if (it == m_mapTextures.end() || it->second.desc.iMips < 2 ||
        resource::isCompressed(it->second.desc.eLayout))
        return;
    it->second.uRevision = ++m_uLastRevision;
    bindForEdit(it->second);
    glGenerateMipmap(it->second.eTarget);
}

void GlDevice::destroyTexture(TextureHandle texture)
{
    const auto it = m_mapTextures.find(texture.uId);
    if (it == m_mapTextures.end() || it->second.bOfTarget)
        return;
    glDeleteTextures(1, &it->second.uName);
    m_mapTextures.erase(it);
}

// Targets

TargetHandle GlDevice::createTarget(const TargetDesc& desc)
{
    if (!checkTarget(desc))
        return {};
    GlTarget target{desc, 0, {}, {}};
    glGenFramebuffers(1, &target.uFramebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, target.uFramebuffer);

    const auto attach = [&](GLenum eAttachment, GLenum eInternal, resource::TextureResourceLayout eLayout)
    {
        GlTexture texture;
        texture.desc = {
            .sName = desc.sName, .iWidth = desc.iWidth, .iHeight = desc.iHeight, .eLayout = eLayout};
        texture.bOfTarget = true;
        glGenTextures(1, &texture.uName);
        bindForEdit(texture);
        glTexStorage2D(GL_TEXTURE_2D, 1, eInternal, desc.iWidth, desc.iHeight);
        glFramebufferTexture(GL_FRAMEBUFFER, eAttachment, texture.uName, 0);
        m_mapTextures.emplace(m_uNextId, texture);
        return TextureHandle{m_uNextId++};
    };
    using enum resource::TextureResourceLayout;
    target.colour = attach(GL_COLOR_ATTACHMENT0, desc.bHdr ? GL_R11F_G11F_B10F : GL_RGBA8,
                           desc.bHdr ? R11G11B10Float : Rgba8);
    if (desc.bDepth)
        target.depth = attach(GL_DEPTH_ATTACHMENT, GL_DEPTH_COMPONENT32F, R32);

    const bool bComplete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    const TargetHandle handle{m_uNextId++};
    m_mapTargets.emplace(handle.uId, target);
    if (bComplete)
        return handle;
    QM_LOG_ERROR("Target ", desc.sName, " of ", desc.iWidth, "x", desc.iHeight, " can't be drawn into");
    destroyTarget(handle);
    return {};
}

TextureHandle GlDevice::targetColour(TargetHandle target) const
{
    const auto it = m_mapTargets.find((target ? target : m_windowTarget).uId);
    return it == m_mapTargets.end() ? TextureHandle{} : it->second.colour;
}

TextureHandle GlDevice::targetDepth(TargetHandle target) const
{
    const auto it = m_mapTargets.find((target ? target : m_windowTarget).uId);
    return it == m_mapTargets.end() ? TextureHandle{} : it->second.depth;
}

bool GlDevice::readTarget(TargetHandle target, std::span<std::byte> spanOut)
{
    const TargetHandle source = target ? target : m_windowTarget;
    const auto it = m_mapTargets.find(source.uId);
    if (it == m_mapTargets.end())
        return false;
    const TargetDesc& desc = it->second.desc;
    const size_t uRow = static_cast<size_t>(desc.iWidth) * 4;
    const size_t uRows = static_cast<size_t>(desc.iHeight);
    if (spanOut.size() != uRow * uRows)
    {
        QM_LOG_ERROR("Reading target ", desc.sName, " takes ", uRow * uRows, " bytes, not ", spanOut.size());
        return false;
    }
    glBindFramebuffer(GL_READ_FRAMEBUFFER, it->second.uFramebuffer);
    glReadPixels(0, 0, desc.iWidth, desc.iHeight, GL_RGBA, GL_UNSIGNED_BYTE, spanOut.data());
    if (desc.bWindowRows)
        for (size_t uTop = 0; uTop < uRows / 2; ++uTop)
            std::swap_ranges(spanOut.begin() + static_cast<std::ptrdiff_t>(uTop * uRow),
                             spanOut.begin() + static_cast<std::ptrdiff_t>((uTop + 1) * uRow),
                             spanOut.begin() + static_cast<std::ptrdiff_t>((uRows - 1 - uTop) * uRow));
    return true;
}

void GlDevice::destroyTarget(TargetHandle target)
{
    const auto it = m_mapTargets.find(target.uId);
    if (it == m_mapTargets.end())
        return;
    for (const TextureHandle texture : {it->second.colour, it->second.depth})
        if (const auto itTexture = m_mapTextures.find(texture.uId); itTexture != m_mapTextures.end())
        {
            glDeleteTextures(1, &itTexture->second.uName);
            m_mapTextures.erase(itTexture);
        }
    glDeleteFramebuffers(1, &it->second.uFramebuffer);
    m_mapTargets.erase(it);
}

bool GlDevice::copyTarget(TargetHandle from, TargetHandle to, bool bDepth)
{
    const auto itFrom = m_mapTargets.find((from ? from : m_windowTarget).uId);
    const auto itTo = m_mapTargets.find((to ? to : m_windowTarget).uId);
    if (itFrom == m_mapTargets.end() || itTo == m_mapTargets.end() || itFrom == itTo)
    {
        QM_LOG_ERROR("A target can't be copied: ", from.uId, " to ", to.uId);
        return false;
    }
    const GlTarget& source = itFrom->second;
    const GlTarget& result = itTo->second;
    glBindFramebuffer(GL_READ_FRAMEBUFFER, source.uFramebuffer);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, result.uFramebuffer);
    glDisable(GL_SCISSOR_TEST);
    const bool bFlip = source.desc.bWindowRows != result.desc.bWindowRows;
    const auto blit = [&](GLbitfield uWhat, GLenum eFilter)
    {
        glBlitFramebuffer(0, bFlip ? source.desc.iHeight : 0, source.desc.iWidth,
                          bFlip ? 0 : source.desc.iHeight, 0, 0, result.desc.iWidth, result.desc.iHeight,
                          uWhat, eFilter);
    };
    const bool bScaled =
        source.desc.iWidth != result.desc.iWidth || source.desc.iHeight != result.desc.iHeight;
    blit(GL_COLOR_BUFFER_BIT, bScaled ? GL_LINEAR : GL_NEAREST);
    if (bDepth && source.depth && result.depth)
        blit(GL_DEPTH_BUFFER_BIT, GL_NEAREST);
    return true;
}

uint64_t GlDevice::revision(BufferHandle buffer) const
{
    const auto it = m_mapBuffers.find(buffer.uId);
    return it == m_mapBuffers.end() ? 0 : it->second.uRevision;
}

uint64_t GlDevice::revision(TextureHandle texture) const
{
    const auto it = m_mapTextures.find(texture.uId);
    return it == m_mapTextures.end() ? 0 : it->second.uRevision;
}

bool GlDevice::createWindowTarget(int iWidth, int iHeight)
{
    const TargetHandle target =
        createTarget({.sName = "Window", .iWidth = iWidth, .iHeight = iHeight, .bWindowRows = true});
    if (!target)
        return false;
    destroyTarget(m_windowTarget);
    m_windowTarget = target;
    m_iWidth = iWidth;
    m_iHeight = iHeight;
    return true;
}

bool GlDevice::resize(int iWidth, int iHeight)
{
    if (iWidth == 0 || iHeight == 0 || (iWidth == m_iWidth && iHeight == m_iHeight))
        return true;
    return createWindowTarget(iWidth, iHeight);
}

} // namespace rend
