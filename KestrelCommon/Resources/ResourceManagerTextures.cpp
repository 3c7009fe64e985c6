// Requests for textures, and those that stream.

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/Hash.h"
#include "KestrelCommon/Device/DeviceChecks.h"
#include "KestrelCommon/Resources/BlockEncoder.h"
#include "KestrelCommon/Resources/ResourceManager.h"
#include "KestrelCommon/Resources/TextureRules.h"

namespace resource
{

namespace
{

constexpr size_t s_uMaxArraySize = 512;
constexpr uint32_t s_uStreamingFlag = 0x80000000; ///< keeps the two kinds of request apart

/// Bytes that a texture takes on the GPU, without what a driver adds.
uint64_t gpuBytes(const rend::TextureDesc& desc)
{
    uint64_t uBytes = 0;
    if (isCompressed(desc.eLayout))
        uBytes = blockChainBytes(desc.iWidth, desc.iHeight, desc.iMips);
    else
        for (int iMip = 0; iMip < desc.iMips; ++iMip)
            uBytes += static_cast<uint64_t>(rend::mipSide(desc.iWidth, iMip)) *
                      static_cast<uint64_t>(rend::mipSide(desc.iHeight, iMip)) * rend::texelBytes(desc);
    return uBytes * static_cast<uint64_t>(std::max(desc.iLayers, 1));
}

} // namespace

std::optional<ResourceManager::Request>
ResourceManager::checkedRequest(std::span<const std::string> spanPaths, int iWidth, int iHeight,
                                TextureResourceLayout eLayout, int iMips, uint32_t uFlags)
{
    if (spanPaths.empty())
    {
        QM_LOG_WARNING("the call to load a texture array is empty, this is fine but will return nullptr - is "
                       "this intended?");
        return std::nullopt;
    }
    const std::string& sFirst = spanPaths.front();
    if (!checkTextureSize(sFirst, iWidth, iHeight, eLayout))
        return std::nullopt;
    checkMipCount(sFirst, iMips, eLayout);
    if (spanPaths.size() > s_uMaxArraySize)
    {
        QM_LOG_ERROR(sFirst, " array is to big at ", spanPaths.size(),
                     ". 512 is the maximum array size possible.");
        return std::nullopt;
    }

    std::string sKey;
    for (const std::string& sPath : spanPaths)
        sKey += sPath + '\n';
    for (const int64_t iNumber : {int64_t{iWidth}, int64_t{iHeight}, int64_t{static_cast<uint32_t>(eLayout)},
                                  int64_t{iMips}, int64_t{uFlags}})
        sKey += UTILS::concat(iNumber, "\n");
    return Request{{spanPaths.begin(), spanPaths.end()}, iWidth, iHeight, eLayout, iMips,
                   xxh3(std::string_view(sKey))};
}

rend::TextureDesc ResourceManager::descOf(const Request& request, StreamQuality eQuality) const
{
    // A block is the least that a compressed texture may measure.
    const auto side = [eQuality](int iSide)
    { return eQuality == StreamQuality::Low ? std::max(iSide / 2, std::min(iSide, 4)) : iSide; };
    const int iWidth = side(request.iWidth);
    const int iHeight = side(request.iHeight);
    const int iFullMips = rend::fullMipCount(iWidth, iHeight);
    const std::string& sFirst = request.vecPaths.front();
    const bool bGpu = !m_device.isSoftware();
    const bool bCompressed = canEncode(request.eLayout) && bGpu && m_device.hasCompressedTextures();
    return {.sName = sFirst,
            .iWidth = iWidth,
            .iHeight = iHeight,
            .iLayers = static_cast<int>(request.vecPaths.size()),
            .iMips = request.iMips == 0 ? iFullMips : std::min(request.iMips, iFullMips),
            .eLayout = bCompressed ? request.eLayout : TextureResourceLayout::Rgba8,
            .bSrgb = bGpu && kindOf(sFirst, request.eLayout) == DefaultTexture::Diffuse};
}

TextureStreaming::Sizes ResourceManager::sizesOf(const Request& request) const
{
    const uint64_t uFull = gpuBytes(descOf(request, StreamQuality::Full));
    const uint64_t uLow = gpuBytes(descOf(request, StreamQuality::Low));
    return {uFull, uLow < uFull ? uLow : 0};
}

void ResourceManager::addFileTexture(Request request, rend::TextureHandle texture,
                                     const rend::TextureDesc& desc)
{
    m_mapFileTextureResources.emplace(request.uHash, m_vecFileTextures.size());
    m_vecFileTextures.push_back({std::move(request), texture, desc, 0});
    QM_ASSERT(m_mapFileTextureResources.size() == m_vecFileTextures.size());
}

rend::TextureHandle ResourceManager::loadTextureArray(std::span<const std::string> spanPaths, int iWidth,
                                                      int iHeight, TextureResourceLayout eLayout, int iMips,
                                                      uint32_t uFlags)
{
    auto request = checkedRequest(spanPaths, iWidth, iHeight, eLayout, iMips, uFlags & ~s_uStreamingFlag);
    if (!request)
        return {};
    size_t uTexture = 0;
    rend::TextureHandle texture;
    {
        const std::scoped_lock lock(m_textureLock);
        if (const auto it = m_mapFileTextureResources.find(request->uHash);
            it != m_mapFileTextureResources.end())
            return m_vecFileTextures[it->second].texture;
        const TextureStreaming::Sizes sizes = sizesOf(*request);
        const auto eQuality = m_streaming.qualityAtOnce(request->vecPaths.front(), sizes);
        if (!eQuality)
            return {};
        const rend::TextureDesc desc = descOf(*request, *eQuality);
        texture = m_device.createTexture(desc);
        if (!texture)
            return {};
        uTexture = m_streaming.addLoaded(desc.sName, sizes, *eQuality);
        addFileTexture(std::move(*request), texture, desc);
    }
    queueLayers(uTexture);
    if (!m_bBackground)
        finishLoading();
    return texture;
}

std::optional<size_t> ResourceManager::requestStreamedArray(std::span<const std::string> spanPaths,
                                                            int iWidth, int iHeight,
                                                            TextureResourceLayout eLayout, int iMips,
                                                            uint32_t uFlags)
{
    auto request = checkedRequest(spanPaths, iWidth, iHeight, eLayout, iMips, uFlags | s_uStreamingFlag);
    if (!request)
        return std::nullopt;
    const std::scoped_lock lock(m_textureLock);
    if (const auto it = m_mapFileTextureResources.find(request->uHash); it != m_mapFileTextureResources.end())
        return it->second;
    const size_t uTexture = m_streaming.addStreaming(request->vecPaths.front(), sizesOf(*request));
    addFileTexture(std::move(*request), {}, {});
    return uTexture;
}

rend::TextureHandle ResourceManager::useStreamedTexture(size_t uTexture)
{
    const std::scoped_lock lock(m_textureLock);
    if (uTexture >= m_vecFileTextures.size())
        return {};
    m_streaming.use(uTexture, m_uFrameStamp);
    const FileTexture& entry = m_vecFileTextures[uTexture];
    return entry.uWaiting == 0 ? entry.texture : rend::TextureHandle{};
}

void ResourceManager::finishStreaming()
{
    UTILS::log("Performing force stream completion", UTILS::AttributeNormal, UTILS::LogResource);
    do
    {
        finishLoading();
        m_streaming.update(*this, m_uFrameStamp, m_uThreadCount, true);
    } while (m_streaming.inFlight() > 0);
}

void ResourceManager::startLoad(size_t uTexture, StreamQuality eQuality)
{
    {
        const std::scoped_lock lock(m_textureLock);
        FileTexture& entry = m_vecFileTextures[uTexture];
        entry.desc = descOf(entry.request, eQuality);
        entry.texture = m_device.createTexture(entry.desc);
        if (!entry.texture)
        {
            m_streaming.finished(uTexture); // null until it went out of use and came again
            return;
        }
    }
    queueLayers(uTexture);
}

void ResourceManager::unload(size_t uTexture)
{
    const std::scoped_lock lock(m_textureLock);
    FileTexture& entry = m_vecFileTextures[uTexture];
    m_device.destroyTexture(entry.texture);
    entry.texture = {};
}

void ResourceManager::queueLayers(size_t uTexture)
{
    const std::scoped_lock lock(m_textureLock, m_loadLock);
    FileTexture& entry = m_vecFileTextures[uTexture];
    const bool bColour = kindOf(entry.desc.sName, entry.request.eLayout) == DefaultTexture::Diffuse;
    entry.uWaiting = entry.request.vecPaths.size();
    for (size_t u = 0; u < entry.uWaiting; ++u)
        m_queueLoads.push_back({.uTexture = uTexture,
                                .iLayer = static_cast<int>(u),
                                .iWidth = entry.desc.iWidth,
                                .iHeight = entry.desc.iHeight,
                                .sPath = entry.request.vecPaths[u],
                                .eLayout = entry.request.eLayout,
                                .iColourMips = bColour ? entry.desc.iMips : 0,
                                .iBlockMips = isCompressed(entry.desc.eLayout) ? entry.desc.iMips : 0});
    m_uLoading += entry.uWaiting;
    m_wakeWorkers.notify_all();
}

} // namespace resource
