#include "KestrelCommon/Resources/ResourceManager.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/Hash.h"
#include "KestrelCommon/Device/DeviceChecks.h"
#include "KestrelCommon/Io/SafeFile.h"
#include "KestrelCommon/Resources/BlockEncoder.h"
#include "KestrelCommon/Resources/TextureRules.h"

namespace resource
{

namespace
{

struct DefaultSource
{
    const char* pPath;
    std::string_view sEnding;         ///< of file names that it stands in for
    std::array<uint8_t, 4> arrColour; ///< when the file itself is missing
};
constexpr std::array<DefaultSource, 4> s_arrDefaults = {{
    {"$GAME_DATA/Textures/Default/default_dif.tga", "_dif", {128, 128, 128, 255}},
    {"$GAME_DATA/Textures/Default/default_nor.tga", "_nor", {128, 128, 255, 255}},
    {"$GAME_DATA/Textures/Default/default_asg.tga", "_asg", {255, 64, 128, 255}},
    {"$GAME_DATA/Textures/Default/default_ao.tga", "_ao", {255, 255, 255, 255}},
}};

Picture plainPicture(const std::array<uint8_t, 4>& arrColour)
{
    Picture picture{4, 4, std::vector<std::byte>(64)};
    for (size_t u = 0; u < picture.vecPixels.size(); ++u)
        picture.vecPixels[u] = std::byte{arrColour[u % 4]};
    return picture;
}

std::span<const std::byte> bytesOf(const Picture& picture)
{
    return picture.vecPixels;
}

/// The mips from 1 to below iMips.
void appendColourMips(const Picture& picture, int iMips, std::vector<Picture>& vecMips)
{
    for (int iMip = 1; iMip < iMips && !picture.vecPixels.empty(); ++iMip)
        vecMips.push_back(halveColours(vecMips.empty() ? picture : vecMips.back()));
}

} // namespace

ResourceManager::ResourceManager(rend::GraphicsDeviceI& device, PathResolver fnResolve, uint32_t uThreadCount,
                                 bool bBackground)
    : m_device(device),
      m_fnResolve(std::move(fnResolve)),
      m_uThreadCount(std::max(uThreadCount, 1u)),
      m_bBackground(bBackground),
      m_upgrades(m_fnResolve),
      m_bufferPool(device)
{
    for (size_t u = 0; u < s_arrDefaults.size(); ++u)
        m_arrDefaults[u].picture = plainPicture(s_arrDefaults[u].arrColour);
    for (uint32_t u = 0; u < m_uThreadCount; ++u)
        m_vecWorkers.emplace_back([this] { runWorker(); });
}

ResourceManager::~ResourceManager()
{
    {
        const std::scoped_lock lock(m_loadLock);
        m_bStopping = true;
    }
    m_wakeWorkers.notify_all();
    for (std::thread& worker : m_vecWorkers)
        worker.join();
    for (const FileTexture& texture : m_vecFileTextures)
        m_device.destroyTexture(texture.texture);
    for (const Default& entry : m_arrDefaults)
        m_device.destroyTexture(entry.texture);
}

void ResourceManager::init()
{
    m_upgrades.load("$GAME_DATA/upgrade_resources.json");
}

void ResourceManager::initDefaults()
{
    for (size_t u = 0; u < s_arrDefaults.size(); ++u)
    {
        Default& entry = m_arrDefaults[u];
        if (auto picture = loadPicture(m_fnResolve(s_arrDefaults[u].pPath)))
            entry.picture = std::move(*picture);
        else
            QM_LOG_ERROR("Failed to load default texture: \"", s_arrDefaults[u].pPath, "\"");
        m_device.destroyTexture(entry.texture);
        const int iWidth = entry.picture.iWidth;
        const int iHeight = entry.picture.iHeight;
        entry.texture = m_device.createTexture({.sName = s_arrDefaults[u].pPath,
                                                .iWidth = iWidth,
                                                .iHeight = iHeight,
                                                .iMips = rend::fullMipCount(iWidth, iHeight)});
        m_device.updateTexture(entry.texture, {0, 0, iWidth, iHeight}, static_cast<size_t>(iWidth) * 4,
                               bytesOf(entry.picture));
        m_device.generateMips(entry.texture);
    }
}

void ResourceManager::update()
{
    m_bufferPool.update();
    std::vector<Load> vecFinished;
    {
        const std::scoped_lock lock(m_loadLock);
        vecFinished.swap(m_vecFinished);
    }
    for (Load& job : vecFinished)
        takeOver(job);
    {
        const std::scoped_lock lock(m_loadLock);
        m_uLoading -= vecFinished.size();
    }
    m_streaming.update(*this, m_uFrameStamp++, m_uThreadCount);
    if (!m_bBackground)
        finishLoading();
}

void ResourceManager::finishLoading()
{
    std::unique_lock lock(m_loadLock);
    while (m_uLoading > 0)
    {
        m_wakeMain.wait(lock, [this] { return !m_vecFinished.empty(); });
        std::vector<Load> vecFinished;
        vecFinished.swap(m_vecFinished);
        lock.unlock();
        for (Load& job : vecFinished)
            takeOver(job);
        lock.lock();
        m_uLoading -= vecFinished.size();
    }
}

size_t ResourceManager::loadingCount() const
{
    const std::scoped_lock lock(m_loadLock);
    return m_uLoading;
}

rend::BufferHandle ResourceManager::createBuffer(std::span<const std::byte> spanInitial, size_t uSize,
                                                 size_t uStride, std::string_view sName,
                                                 rend::BufferKind eKind, bool bDynamic)
{
    return m_device.createBuffer({std::string(sName), uSize, uStride, eKind, bDynamic}, spanInitial);
}

void ResourceManager::runWorker()
{
    std::unique_lock lock(m_loadLock);
    while (true)
    {
        m_wakeWorkers.wait(lock, [this] { return m_bStopping || !m_queueLoads.empty(); });
        if (m_bStopping)
            return;
        Load job = std::move(m_queueLoads.front());
        m_queueLoads.pop_front();
        lock.unlock();
        load(job);
        lock.lock();
        m_vecFinished.push_back(std::move(job));
        m_wakeMain.notify_one();
    }
}

void ResourceManager::load(Load& job) const
{
    const std::filesystem::path path = m_fnResolve(m_upgrades.upgrade(job.sPath));
    if (job.iBlockMips > 0)
    {
        loadBlocks(job, path);
        return;
    }
    if (const auto picture = loadPicture(path))
        job.picture = scalePicture(*picture, job.iWidth, job.iHeight);
    finishPicture(job);
}

void ResourceManager::loadBlocks(Load& job, const std::filesystem::path& path) const
{
    const auto file = readFile(path);
    if (!file)
        return;
    const TextureCacheKey key = {.uSource = xxh3(std::span<const std::byte>(*file)),
                                 .iWidth = job.iWidth,
                                 .iHeight = job.iHeight,
                                 .eLayout = job.eLayout,
                                 .iMips = job.iBlockMips,
                                 .bColour = job.iColourMips > 0};
    if (auto vecKept = m_textureCache.find(key))
    {
        job.vecBlocks = std::move(*vecKept);
        return;
    }
    const auto picture = readPicture(*file, path);
    if (!picture)
        return;
    job.picture = scalePicture(*picture, job.iWidth, job.iHeight);
    finishPicture(job);
    m_textureCache.store(key, job.vecBlocks);
}

void ResourceManager::finishPicture(Load& job)
{
    job.vecMips.clear();
    if (job.iBlockMips > 0)
        job.vecBlocks = encodeBlockChain(job.picture, job.eLayout, job.iBlockMips, job.iColourMips > 0);
    else
        appendColourMips(job.picture, job.iColourMips, job.vecMips);
}

/// By the ending of the file's name; else two-channel layouts hold normals, and the rest is colour.
DefaultTexture ResourceManager::kindOf(std::string_view sPath, TextureResourceLayout eLayout)
{
    const std::string sStem = std::filesystem::path(sPath).stem().string();
    for (size_t u = 0; u < s_arrDefaults.size(); ++u)
        if (sStem.ends_with(s_arrDefaults[u].sEnding))
            return static_cast<DefaultTexture>(u);
    return eLayout == TextureResourceLayout::Bc5 ? DefaultTexture::Normal : DefaultTexture::Diffuse;
}

void ResourceManager::takeOver(Load& job)
{
    if (job.picture.vecPixels.empty() && job.vecBlocks.empty())
    {
        QM_LOG_ERROR("Failed to load texture: \"", job.sPath, "\"");
        const auto eKind = static_cast<size_t>(kindOf(job.sPath, job.eLayout));
        job.picture = scalePicture(m_arrDefaults[eKind].picture, job.iWidth, job.iHeight);
        finishPicture(job);
    }
    const std::scoped_lock lock(m_textureLock);
    FileTexture& entry = m_vecFileTextures[job.uTexture];
    if (job.iBlockMips > 0)
        uploadBlocks(job, entry.texture);
    else
        uploadPixels(job, entry.texture);
    if (--entry.uWaiting > 0)
        return;
    if (entry.desc.iMips > 1 && job.iColourMips == 0 && job.iBlockMips == 0)
        m_device.generateMips(entry.texture);
    m_streaming.finished(job.uTexture);
}

void ResourceManager::uploadPixels(const Load& job, rend::TextureHandle texture)
{
    m_device.updateTexture(texture, {0, 0, job.iWidth, job.iHeight, job.iLayer, 0},
                           static_cast<size_t>(job.iWidth) * 4, bytesOf(job.picture));
    for (int iMip = 1; const Picture& mip : job.vecMips)
        m_device.updateTexture(texture, {0, 0, mip.iWidth, mip.iHeight, job.iLayer, iMip++},
                               static_cast<size_t>(mip.iWidth) * 4, bytesOf(mip));
}

void ResourceManager::uploadBlocks(const Load& job, rend::TextureHandle texture)
{
    std::span<const std::byte> spanLeft = job.vecBlocks;
    for (int iMip = 0; iMip < job.iBlockMips; ++iMip)
    {
        const int iWidth = rend::mipSide(job.iWidth, iMip);
        const int iHeight = rend::mipSide(job.iHeight, iMip);
        const size_t uBytes = blockBytes(iWidth, iHeight);
        m_device.updateTexture(texture, {0, 0, iWidth, iHeight, job.iLayer, iMip}, blockBytes(iWidth, 1),
                               spanLeft.first(uBytes));
        spanLeft = spanLeft.subspan(uBytes);
    }
}

} // namespace resource
