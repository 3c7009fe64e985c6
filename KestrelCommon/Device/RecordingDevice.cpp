#include "KestrelCommon/Device/RecordingDevice.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Device/DeviceChecks.h"

namespace rend
{

namespace
{

template <class Map>
auto findIn(const Map& map, uint32_t uId) -> const typename Map::mapped_type*
{
    const auto it = map.find(uId);
    return it == map.end() ? nullptr : &it->second;
}

bool isBlocked(const TextureDesc& desc)
{
    return !desc.bLuminanceAlpha && resource::isCompressed(desc.eLayout);
}

/// Texels or blocks in a row of mip 0, and rows.
std::pair<size_t, size_t> layerGrid(const TextureDesc& desc)
{
    const int iDivisor = isBlocked(desc) ? 4 : 1;
    return {static_cast<size_t>((desc.iWidth + iDivisor - 1) / iDivisor),
            static_cast<size_t>((desc.iHeight + iDivisor - 1) / iDivisor)};
}

} // namespace

size_t RecordingDevice::count(CallKind eKind) const
{
    return static_cast<size_t>(std::count_if(m_vecCalls.begin(), m_vecCalls.end(),
                                             [eKind](const Call& call) { return call.eKind == eKind; }));
}

const RecordingDevice::Buffer* RecordingDevice::buffer(BufferHandle buffer) const
{
    return findIn(m_mapBuffers, buffer.uId);
}
const RecordingDevice::Texture* RecordingDevice::texture(TextureHandle texture) const
{
    return findIn(m_mapTextures, texture.uId);
}
const TargetDesc* RecordingDevice::target(TargetHandle target) const
{
    const Target* pTarget = findIn(m_mapTargets, target.uId);
    return pTarget ? &pTarget->desc : nullptr;
}
const PipelineDesc* RecordingDevice::pipeline(PipelineHandle pipeline) const
{
    return findIn(m_mapPipelines, pipeline.uId);
}

BufferHandle RecordingDevice::createBuffer(const BufferDesc& desc, std::span<const std::byte> spanInitial)
{
    if (!checkBuffer(desc, spanInitial.size()))
        return {};
    Buffer buffer{desc, {spanInitial.begin(), spanInitial.end()}, ++m_uLastRevision};
    buffer.vecBytes.resize(desc.uSize);
    m_mapBuffers.emplace(m_uNextId, std::move(buffer));
    return {m_uNextId++};
}

bool RecordingDevice::updateBuffer(BufferHandle buffer, size_t uOffset, std::span<const std::byte> spanData)
{
    const auto it = m_mapBuffers.find(buffer.uId);
    if (it == m_mapBuffers.end() || !checkBufferUpdate(it->second.desc, uOffset, spanData.size()))
        return false;
    it->second.uRevision = ++m_uLastRevision;
    std::copy(spanData.begin(), spanData.end(),
              it->second.vecBytes.begin() + static_cast<std::ptrdiff_t>(uOffset));
    m_vecCalls.push_back({CallKind::UpdateBuffer, buffer.uId, static_cast<uint32_t>(uOffset),
                          static_cast<uint32_t>(spanData.size())});
    return true;
}

TextureHandle RecordingDevice::createTexture(const TextureDesc& desc)
{
    if (!checkTexture(desc))
        return {};
    Texture texture{desc, {}, false, ++m_uLastRevision};
    const auto [uColumns, uRows] = layerGrid(desc);
    texture.vecBytes.resize(uColumns * uRows * texelBytes(desc) *
                            static_cast<size_t>(std::max(desc.iLayers, 1)));
    m_mapTextures.emplace(m_uNextId, std::move(texture));
    return {m_uNextId++};
}

bool RecordingDevice::updateTexture(TextureHandle texture, const TextureRegion& region, size_t uRowPitch,
                                    std::span<const std::byte> spanData)
{
    const auto it = m_mapTextures.find(texture.uId);
    if (it == m_mapTextures.end() || !checkTextureUpdate(it->second.desc, region, uRowPitch, spanData.size()))
        return false;
    Texture& entry = it->second;
    entry.uRevision = ++m_uLastRevision;
    if (region.iMip == 0)
    {
        const auto [uColumns, uRows] = layerGrid(entry.desc);
        const size_t uTexel = texelBytes(entry.desc);
        const int iDivisor = isBlocked(entry.desc) ? 4 : 1;
        const auto toBlocks = [iDivisor](int iTexels)
        { return static_cast<size_t>((iTexels + iDivisor - 1) / iDivisor); };
        for (size_t uRow = 0; uRow < toBlocks(region.iHeight); ++uRow)
        {
            const size_t uTo =
                ((static_cast<size_t>(region.iLayer) * uRows + toBlocks(region.iY) + uRow) * uColumns +
                 toBlocks(region.iX)) *
                uTexel;
            std::memcpy(entry.vecBytes.data() + uTo, spanData.data() + uRow * uRowPitch,
                        toBlocks(region.iWidth) * uTexel);
        }
    }
    m_vecCalls.push_back({CallKind::UpdateTexture, texture.uId, static_cast<uint32_t>(region.iX),
                          static_cast<uint32_t>(region.iY), static_cast<uint32_t>(region.iWidth),
                          static_cast<uint32_t>(region.iHeight)});
    return true;
}

void RecordingDevice::generateMips(TextureHandle texture)
{
    const auto it = m_mapTextures.find(texture.uId);
    if (it == m_mapTextures.end())
        return;
    it->second.bMipsMade = true;
    it->second.uRevision = ++m_uLastRevision;
}

PipelineHandle RecordingDevice::createPipeline(const PipelineDesc& desc)
{
    if (desc.sVertexSource.empty() || desc.sFragmentSource.empty())
    {
        QM_LOG_ERROR("Pipeline ", desc.sName, " has no source");
        return {};
    }
    m_mapPipelines.emplace(m_uNextId, desc);
    return {m_uNextId++};
}

TargetHandle RecordingDevice::createTarget(const TargetDesc& desc)
{
    if (!checkTarget(desc))
        return {};
    Target target{desc, {}, {}};
    using enum resource::TextureResourceLayout;
    TextureDesc texture{.sName = desc.sName, .iWidth = desc.iWidth, .iHeight = desc.iHeight};
    texture.eLayout = desc.bHdr ? R11G11B10Float : Rgba8;
    target.colour = createTexture(texture);
    texture.eLayout = R32;
    if (desc.bDepth)
        target.depth = createTexture(texture);
    m_mapTargets.emplace(m_uNextId, target);
    return {m_uNextId++};
}

TextureHandle RecordingDevice::targetColour(TargetHandle target) const
{
    const Target* pTarget = findIn(m_mapTargets, target.uId);
    return pTarget ? pTarget->colour : TextureHandle{};
}

TextureHandle RecordingDevice::targetDepth(TargetHandle target) const
{
    const Target* pTarget = findIn(m_mapTargets, target.uId);
    return pTarget ? pTarget->depth : TextureHandle{};
}

bool RecordingDevice::readTarget(TargetHandle target, std::span<std::byte> spanOut)
{
    const Target* pTarget = findIn(m_mapTargets, target.uId);
    if (target && !pTarget)
        return false;
    const size_t uPixels =
        pTarget ? static_cast<size_t>(pTarget->desc.iWidth) * static_cast<size_t>(pTarget->desc.iHeight)
                : static_cast<size_t>(m_iWidth) * static_cast<size_t>(m_iHeight);
    if (spanOut.size() != uPixels * 4)
    {
        QM_LOG_ERROR("Reading a target takes ", uPixels * 4, " bytes, not ", spanOut.size());
        return false;
    }
    for (size_t uByte = 0; uByte < spanOut.size(); ++uByte)
        spanOut[uByte] = uByte % 4 == 3 ? std::byte{255} : std::byte{0};
    return true;
}

void RecordingDevice::destroyTarget(TargetHandle target)
{
    const auto it = m_mapTargets.find(target.uId);
    if (it == m_mapTargets.end())
        return;
    m_mapTextures.erase(it->second.colour.uId);
    m_mapTextures.erase(it->second.depth.uId);
    m_mapTargets.erase(it);
}

bool RecordingDevice::copyTarget(TargetHandle from, TargetHandle to, bool bDepth)
{
    const auto isThere = [&](TargetHandle target) { return !target || m_mapTargets.contains(target.uId); };
    if (!isThere(from) || !isThere(to) || from == to)
    {
        QM_LOG_ERROR("A target can't be copied: ", from.uId, " to ", to.uId);
        return false;
    }
    m_vecCalls.push_back({CallKind::CopyTarget, from.uId, to.uId, bDepth});
    return true;
}

uint64_t RecordingDevice::revision(BufferHandle buffer) const
{
    const Buffer* pBuffer = findIn(m_mapBuffers, buffer.uId);
    return pBuffer ? pBuffer->uRevision : 0;
}

uint64_t RecordingDevice::revision(TextureHandle texture) const
{
    const Texture* pTexture = findIn(m_mapTextures, texture.uId);
    return pTexture ? pTexture->uRevision : 0;
}

void RecordingDevice::beginPass(TargetHandle target, const PassSettings& settings)
{
    m_bInPass = !target || m_mapTargets.contains(target.uId);
    if (!m_bInPass)
        QM_LOG_ERROR("A pass began on a target that doesn't exist");
    m_pipeline = {};
    m_vecCalls.push_back({CallKind::BeginPass, target.uId, settings.bClearColour, settings.bClearDepth});
}

void RecordingDevice::endPass()
{
    m_bInPass = false;
    m_vecCalls.push_back({CallKind::EndPass});
}

void RecordingDevice::setPipeline(PipelineHandle pipeline)
{
    if (!m_mapPipelines.contains(pipeline.uId))
        return;
    m_pipeline = pipeline;
    m_vecCalls.push_back({CallKind::SetPipeline, pipeline.uId});
}

void RecordingDevice::setTexture(uint32_t uSlot, TextureHandle texture, SamplerMode eSampler)
{
    if (m_mapTextures.contains(texture.uId))
        m_vecCalls.push_back({CallKind::SetTexture, texture.uId, uSlot, static_cast<uint32_t>(eSampler)});
}

void RecordingDevice::setUniformBuffer(uint32_t uSlot, BufferHandle buffer)
{
    if (m_mapBuffers.contains(buffer.uId))
        m_vecCalls.push_back({CallKind::SetUniformBuffer, buffer.uId, uSlot});
}

void RecordingDevice::setVertexBuffer(uint32_t uSlot, BufferHandle buffer, size_t uOffset)
{
    if (m_mapBuffers.contains(buffer.uId))
        m_vecCalls.push_back({CallKind::SetVertexBuffer, buffer.uId, uSlot, static_cast<uint32_t>(uOffset)});
}

void RecordingDevice::setIndexBuffer(BufferHandle buffer, IndexWidth eWidth)
{
    if (m_mapBuffers.contains(buffer.uId))
        m_vecCalls.push_back({CallKind::SetIndexBuffer, buffer.uId, static_cast<uint32_t>(eWidth)});
}

void RecordingDevice::setScissor(int iX, int iY, int iWidth, int iHeight)
{
    m_vecCalls.push_back({CallKind::SetScissor, 0, static_cast<uint32_t>(iX), static_cast<uint32_t>(iY),
                          static_cast<uint32_t>(iWidth), static_cast<uint32_t>(iHeight)});
}

void RecordingDevice::clearScissor()
{
    m_vecCalls.push_back({CallKind::ClearScissor});
}

void RecordingDevice::draw(uint32_t uVertices, uint32_t uFirst, uint32_t uInstances, uint32_t uFirstInstance)
{
    if (m_bInPass && m_pipeline)
        m_vecCalls.push_back({CallKind::Draw, m_pipeline.uId, uVertices, uFirst, uInstances, uFirstInstance});
}

void RecordingDevice::drawIndexed(uint32_t uIndices, uint32_t uFirst, uint32_t uInstances,
                                  uint32_t uFirstInstance)
{
    if (m_bInPass && m_pipeline)
        m_vecCalls.push_back(
            {CallKind::DrawIndexed, m_pipeline.uId, uIndices, uFirst, uInstances, uFirstInstance});
}

bool RecordingDevice::resize(int iWidth, int iHeight)
{
    if (iWidth > 0 && iHeight > 0)
    {
        m_iWidth = iWidth;
        m_iHeight = iHeight;
    }
    return true;
}

bool RecordingDevice::present()
{
    m_vecCalls.push_back({CallKind::Present});
    return true;
}

} // namespace rend
