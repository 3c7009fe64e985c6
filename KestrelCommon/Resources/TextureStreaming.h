#pragma once // Decides which textures are on the GPU. Knows no GPU and no files.

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace resource
{

enum class StreamQuality : uint8_t
{
    Full,
    Low,
};

/// Bytes of GPU memory. What is in flight counts as if it were there.
struct StreamBudgets
{
    uint64_t uAll = std::numeric_limits<uint64_t>::max();       ///< for all textures
    uint64_t uStreaming = std::numeric_limits<uint64_t>::max(); ///< for those that stream, within uAll
};

/// What the decisions ask of whoever holds the textures.
class TextureStreamLoaderI
{
public:
    virtual ~TextureStreamLoaderI() = default;
    /// Starts a load whose end TextureStreaming::finished() must tell, from within this call at the
    /// earliest.
    virtual void startLoad(size_t uTexture, StreamQuality eQuality) = 0;
    virtual void unload(size_t uTexture) = 0;
};

/// A texture comes when it was in use within the last 10 frames and goes, when room is wanted, after 30
/// frames without. Stamps are numbers of frames, counted from at least s_uFirstStamp on.
/// Threads: main thread only.
class TextureStreaming
{
public:
    /// Below it the thresholds for loading and unloading meet, which is asserted.
    static constexpr uint64_t s_uFirstStamp = 31;

    struct Sizes
    {
        uint64_t uFull = 0; ///< predicted bytes on the GPU
        uint64_t uLow = 0;  ///< 0: there is no low quality
    };

    void setBudgets(const StreamBudgets& budgets) { m_budgets = budgets; }

    /// The quality at which a texture that doesn't stream fits; nullopt with one line when none does.
    [[nodiscard]] std::optional<StreamQuality> qualityAtOnce(const std::string& sPath,
                                                             const Sizes& sizes) const;
    /// Counts a texture that doesn't stream, loaded at that quality. Indices count up from 0.
    size_t addLoaded(std::string sPath, const Sizes& sizes, StreamQuality eQuality);
    /// A texture that waits until it is used.
    size_t addStreaming(std::string sPath, const Sizes& sizes);

    /// Notes that a frame drew with the texture or wanted to.
    void use(size_t uTexture, uint64_t uStamp);
    /// The load that was started has ended, well or not.
    void finished(size_t uTexture);

    /// Once a frame: starts and ends residence by use and budgets. uLastFrameTimestamp is the stamp of the
    /// last rendered frame; at most uThreadCount - 1 loads, and at least 1, are in flight, or 32 when
    /// bForce.
    void update(TextureStreamLoaderI& loader, uint64_t uLastFrameTimestamp, uint32_t uThreadCount,
                bool bForce = false);

    [[nodiscard]] size_t inFlight() const { return m_uInFlight; }
    [[nodiscard]] uint64_t usedBytes() const { return m_uUsed; }

private:
    enum class Residence : uint8_t
    {
        Waiting,
        InFlight,
        Loaded,
    };
    struct Texture
    {
        std::string sPath;
        Sizes sizes;
        bool bStreaming = true;
        Residence eResidence = Residence::Waiting;
        StreamQuality eQuality = StreamQuality::Full;
        uint64_t uStamp = 0;

        [[nodiscard]] uint64_t bytes() const
        {
            return eQuality == StreamQuality::Full ? sizes.uFull : sizes.uLow;
        }
    };

    [[nodiscard]] std::optional<size_t> newestWaiting(uint64_t uLoadTimeThreshold) const;
    [[nodiscard]] std::optional<size_t> oldestLoaded(uint64_t uUnloadTimeThreshold) const;
    [[nodiscard]] bool fits(uint64_t uBytes, bool bStreaming) const;
    void start(TextureStreamLoaderI& loader, size_t uTexture, StreamQuality eQuality);
    void unload(TextureStreamLoaderI& loader, size_t uTexture);

    StreamBudgets m_budgets;
    std::vector<Texture> m_vecTextures;
    uint64_t m_uUsed = 0;          ///< bytes, loaded or in flight
    uint64_t m_uUsedStreaming = 0; ///< the part of it that streams
    size_t m_uInFlight = 0;
};

} // namespace resource
