#include "KestrelCommon/Resources/TextureStreaming.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"

namespace resource
{

namespace
{

constexpr uint64_t s_uLoadFrames = 10;
constexpr uint64_t s_uUnloadFrames = 30;
constexpr size_t s_uForcedLoads = 32;

void logSize(std::string_view sWhat, std::string_view sPath, uint64_t uBytes)
{
    UTILS::log(UTILS::concat(sWhat, sPath, " - ", uBytes >> 20, "mb"), UTILS::AttributeNormal,
               UTILS::LogResource);
}

} // namespace

bool TextureStreaming::fits(uint64_t uBytes, bool bStreaming) const
{
    const auto hasRoom = [uBytes](uint64_t uUsed, uint64_t uBudget)
    { return uUsed <= uBudget && uBytes <= uBudget - uUsed; };
    return hasRoom(m_uUsed, m_budgets.uAll) &&
           (!bStreaming || hasRoom(m_uUsedStreaming, m_budgets.uStreaming));
}

std::optional<StreamQuality> TextureStreaming::qualityAtOnce(const std::string& sPath,
                                                             const Sizes& sizes) const
{
    if (fits(sizes.uFull, false))
        return StreamQuality::Full;
    if (sizes.uLow == 0)
    {
        QM_LOG_ERROR("Failed to load NON streamimg texture: '", sPath, "' out of gpu memory");
        return std::nullopt;
    }
    if (fits(sizes.uLow, false))
    {
        QM_LOG_WARNING("Loaded NON streaming texture as low quality: '", sPath, "' we are short on memory");
        return StreamQuality::Low;
    }
    QM_LOG_ERROR("Failed to load NON streaming texture: '", sPath, "' out of gpu memory");
    return std::nullopt;
}

size_t TextureStreaming::addLoaded(std::string sPath, const Sizes& sizes, StreamQuality eQuality)
{
    m_vecTextures.push_back({.sPath = std::move(sPath),
                             .sizes = sizes,
                             .bStreaming = false,
                             .eResidence = Residence::Loaded,
                             .eQuality = eQuality});
    m_uUsed += m_vecTextures.back().bytes();
    return m_vecTextures.size() - 1;
}

size_t TextureStreaming::addStreaming(std::string sPath, const Sizes& sizes)
{
    m_vecTextures.push_back({.sPath = std::move(sPath), .sizes = sizes});
    return m_vecTextures.size() - 1;
}

void TextureStreaming::use(size_t uTexture, uint64_t uStamp)
{
    Texture& texture = m_vecTextures[uTexture];
    texture.uStamp = std::max(texture.uStamp, uStamp);
}

void TextureStreaming::finished(size_t uTexture)
{
    Texture& texture = m_vecTextures[uTexture];
    if (texture.eResidence != Residence::InFlight)
        return;
    texture.eResidence = Residence::Loaded;
    --m_uInFlight;
}

std::optional<size_t> TextureStreaming::newestWaiting(uint64_t uLoadTimeThreshold) const
{
    std::optional<size_t> best;
    for (size_t u = 0; u < m_vecTextures.size(); ++u)
    {
        const Texture& texture = m_vecTextures[u];
        if (texture.eResidence == Residence::Waiting && texture.uStamp > uLoadTimeThreshold &&
            (!best || texture.uStamp > m_vecTextures[*best].uStamp))
            best = u;
    }
    return best;
}

std::optional<size_t> TextureStreaming::oldestLoaded(uint64_t uUnloadTimeThreshold) const
{
    std::optional<size_t> best;
    for (size_t u = 0; u < m_vecTextures.size(); ++u)
    {
        const Texture& texture = m_vecTextures[u];
        if (!texture.bStreaming || texture.eResidence != Residence::Loaded ||
            texture.uStamp > uUnloadTimeThreshold)
            continue;
        if (!best || texture.uStamp < m_vecTextures[*best].uStamp ||
            (texture.uStamp == m_vecTextures[*best].uStamp && texture.bytes() > m_vecTextures[*best].bytes()))
            best = u;
    }
    return best;
}

void TextureStreaming::start(TextureStreamLoaderI& loader, size_t uTexture, StreamQuality eQuality)
{
    Texture& texture = m_vecTextures[uTexture];
    texture.eResidence = Residence::InFlight;
    texture.eQuality = eQuality;
    m_uUsed += texture.bytes();
    m_uUsedStreaming += texture.bytes();
    ++m_uInFlight;
    loader.startLoad(uTexture, eQuality);
}

void TextureStreaming::unload(TextureStreamLoaderI& loader, size_t uTexture)
{
    Texture& texture = m_vecTextures[uTexture];
    texture.eResidence = Residence::Waiting;
    m_uUsed -= texture.bytes();
    m_uUsedStreaming -= texture.bytes();
    loader.unload(uTexture);
    logSize("Stream UNLOADED: ", texture.sPath, texture.bytes());
}

void TextureStreaming::update(TextureStreamLoaderI& loader, uint64_t uLastFrameTimestamp,
                              uint32_t uThreadCount, bool bForce)
{
    const auto before = [uLastFrameTimestamp](uint64_t uFrames)
    { return uLastFrameTimestamp < uFrames ? 0 : uLastFrameTimestamp - uFrames; };
    const uint64_t uLoadTimeThreshold = before(s_uLoadFrames);
    const uint64_t uUnloadTimeThreshold = before(s_uUnloadFrames);
    QM_ASSERT(uUnloadTimeThreshold < uLoadTimeThreshold || uLastFrameTimestamp == 0);

    const size_t uAllowed = bForce ? s_uForcedLoads : std::max(uThreadCount, 2u) - 1;
    while (m_uInFlight < uAllowed)
    {
        const auto wanted = newestWaiting(uLoadTimeThreshold);
        if (!wanted)
            return;
        const Sizes sizes = m_vecTextures[*wanted].sizes;
        if (fits(sizes.uFull, true))
            start(loader, *wanted, StreamQuality::Full);
        else if (const auto unused = oldestLoaded(uUnloadTimeThreshold))
            unload(loader, *unused);
        else if (sizes.uLow != 0 && fits(sizes.uLow, true))
        {
            start(loader, *wanted, StreamQuality::Low);
            logSize("Stream LOADED at low quality: ", m_vecTextures[*wanted].sPath, sizes.uLow);
        }
        else
            return;
    }
}

} // namespace resource
