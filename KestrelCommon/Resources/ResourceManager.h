#pragma once // Owner of what is loaded for drawing: buffers, textures, moved paths.

#include "KestrelCommon/Resources/BufferPool.h"
#include "KestrelCommon/Resources/PathUpgrades.h"
#include "KestrelCommon/Resources/Picture.h"
#include "KestrelCommon/Resources/TextureCache.h"
#include "KestrelCommon/Resources/TextureStreaming.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <span>
#include <thread>

namespace resource
{

enum class DefaultTexture : uint8_t
{
    Diffuse,
    Normal,
    Asg,
    AmbientOcclusion,
};

/// Loads pictures on its own threads; GPU objects change on the main thread, in update().
/// Threads: main thread only; the tables of textures have a lock of their own.
class ResourceManager : private TextureStreamLoaderI
{
public:
    /// uThreadCount decoding threads, at least 1. Without bBackground a request returns once its
    /// pictures are in. The device must outlive the manager.
    ResourceManager(rend::GraphicsDeviceI& device, PathResolver fnResolve, uint32_t uThreadCount,
                    bool bBackground);
    ~ResourceManager() override;
    ResourceManager(const ResourceManager&) = delete;
    ResourceManager& operator=(const ResourceManager&) = delete;

    /// Where compressed pictures are kept from run to run; none are without. Before the first request.
    void setTextureCache(std::filesystem::path folder) { m_textureCache = TextureCache(std::move(folder)); }

    /// First stage, before the renderer: the table of moved paths.
    void init();
    /// Second stage, when the renderer is ready: the default textures.
    void initDefaults();
    /// Once a frame: takes over what finished loading, ages the borrowed buffers and streams textures.
    void update();
    /// Waits for all loads and takes them over.
    void finishLoading();
    /// Pictures that are still on their way.
    [[nodiscard]] size_t loadingCount() const;

    [[nodiscard]] rend::GraphicsDeviceI& device() { return m_device; }
    [[nodiscard]] const PathResolver& resolver() const { return m_fnResolve; }

    // Buffers

    /// Initial data may be empty. Lives until it is destroyed on the device.
    [[nodiscard]] rend::BufferHandle createBuffer(std::span<const std::byte> spanInitial, size_t uSize,
                                                  size_t uStride, std::string_view sName,
                                                  rend::BufferKind eKind, bool bDynamic = false);
    [[nodiscard]] BorrowedBuffer borrowBuffer(size_t uSize, size_t uStride, rend::BufferKind eKind)
    {
        return m_bufferPool.borrow(uSize, uStride, eKind);
    }
    void returnBuffer(const BorrowedBuffer& borrowed) { m_bufferPool.giveBack(borrowed); }

    // Textures

    /// An array with a layer for each picture, scaled to the size asked for. iMips 0: a full chain.
    /// The same request yields the same texture, which the manager owns. Null with one line when the
    /// list or the sizes break a rule. A picture that can't be read becomes the default texture that
    /// fits its name, with an error line. Layouts Bc3 and Bc5 are compressed where a GPU draws that has
    /// them; else, and for the other layouts, 8 bits a channel are stored. Colours, by the ending of the
    /// first name, have mips averaged as light; where a GPU draws they are read as linear, a CPU leaves
    /// that to the shader.
    rend::TextureHandle loadTextureArray(std::span<const std::string> spanPaths, int iWidth, int iHeight,
                                         TextureResourceLayout eLayout, int iMips, uint32_t uFlags);
    /// The same for a texture that is on the GPU only while it is in use, and then at half the size where
    /// room is short. nullopt when the request breaks a rule; else what useStreamedTexture() takes.
    [[nodiscard]] std::optional<size_t> requestStreamedArray(std::span<const std::string> spanPaths,
                                                             int iWidth, int iHeight,
                                                             TextureResourceLayout eLayout, int iMips,
                                                             uint32_t uFlags);
    /// What to draw with in this frame, which counts as a use; null until it is there. The handle may
    /// differ from frame to frame.
    [[nodiscard]] rend::TextureHandle useStreamedTexture(size_t uTexture);
    /// Without a call there is room for everything.
    void setStreamBudgets(const StreamBudgets& budgets) { m_streaming.setBudgets(budgets); }
    /// Waits until all that was in use lately and fits is there.
    void finishStreaming();
    [[nodiscard]] rend::TextureHandle defaultTexture(DefaultTexture eKind) const
    {
        return m_arrDefaults[static_cast<size_t>(eKind)].texture;
    }

    // Paths

    [[nodiscard]] std::string upgradePath(std::string_view sPath) const { return m_upgrades.upgrade(sPath); }

private:
    /// What was asked for, to load it again.
    struct Request
    {
        std::vector<std::string> vecPaths;
        int iWidth = 0;
        int iHeight = 0;
        TextureResourceLayout eLayout{};
        int iMips = 0;
        uint64_t uHash = 0;
    };
    /// Has the same index in m_streaming.
    struct FileTexture
    {
        Request request;
        rend::TextureHandle texture;
        rend::TextureDesc desc; ///< of the texture
        size_t uWaiting = 0;    ///< layers that are still on their way
    };
    struct Default
    {
        Picture picture;
        rend::TextureHandle texture;
    };
    /// A layer to load; picture and blocks come back empty when the file can't be read.
    struct Load
    {
        size_t uTexture = 0;
        int iLayer = 0;
        int iWidth = 0;
        int iHeight = 0;
        std::string sPath;
        TextureResourceLayout eLayout{};
        int iColourMips = 0; ///< more than 1: they come with the picture
        int iBlockMips = 0;  ///< more than 0: blocks for as many levels come instead
        Picture picture;
        std::vector<Picture> vecMips;     ///< from 1 on
        std::vector<std::byte> vecBlocks; ///< all levels, one after the other
    };

    void startLoad(size_t uTexture, StreamQuality eQuality) override;
    void unload(size_t uTexture) override;

    /// nullopt with one line when a rule is broken.
    static std::optional<Request> checkedRequest(std::span<const std::string> spanPaths, int iWidth,
                                                 int iHeight, TextureResourceLayout eLayout, int iMips,
                                                 uint32_t uFlags);
    [[nodiscard]] rend::TextureDesc descOf(const Request& request, StreamQuality eQuality) const;
    [[nodiscard]] TextureStreaming::Sizes sizesOf(const Request& request) const;
    /// Under m_textureLock; the texture is the next one of m_streaming.
    void addFileTexture(Request request, rend::TextureHandle texture, const rend::TextureDesc& desc);
    void queueLayers(size_t uTexture);

    void runWorker();
    void load(Load& job) const;
    void loadBlocks(Load& job, const std::filesystem::path& path) const;
    /// Fills a job's mips or blocks from its picture, which has the right size.
    static void finishPicture(Load& job);
    void uploadPixels(const Load& job, rend::TextureHandle texture);
    void uploadBlocks(const Load& job, rend::TextureHandle texture);
    void takeOver(Load& job);
    [[nodiscard]] static DefaultTexture kindOf(std::string_view sPath, TextureResourceLayout eLayout);

    rend::GraphicsDeviceI& m_device;
    PathResolver m_fnResolve;
    uint32_t m_uThreadCount;
    bool m_bBackground;
    PathUpgrades m_upgrades;
    BufferPool m_bufferPool;
    TextureCache m_textureCache;
    std::array<Default, 4> m_arrDefaults;

    std::mutex m_textureLock;
    std::vector<FileTexture> m_vecFileTextures;
    std::unordered_map<uint64_t, size_t> m_mapFileTextureResources; ///< hash to index
    TextureStreaming m_streaming;
    uint64_t m_uFrameStamp = TextureStreaming::s_uFirstStamp;

    mutable std::mutex m_loadLock;
    std::condition_variable m_wakeWorkers;
    std::condition_variable m_wakeMain;
    std::deque<Load> m_queueLoads;
    std::vector<Load> m_vecFinished;
    size_t m_uLoading = 0; ///< queued, in work or finished and not taken over
    bool m_bStopping = false;
    std::vector<std::thread> m_vecWorkers;
};

} // namespace resource
