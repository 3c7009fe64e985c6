#pragma once // Compressed pictures, kept on disk from run to run.

#include "KestrelCommon/Device/DeviceTypes.h"

#include <filesystem>
#include <optional>
#include <span>
#include <vector>

namespace resource
{

/// All that decides about the blocks of a picture.
struct TextureCacheKey
{
    uint64_t uSource = 0; ///< XXH3 of the picture file's bytes
    int iWidth = 0;       ///< of the texture; the picture is scaled to it
    int iHeight = 0;
    TextureResourceLayout eLayout = TextureResourceLayout::Bc3;
    int iMips = 1;
    bool bColour = false; ///< mips average light
    bool operator==(const TextureCacheKey&) const = default;
};

/// The bytes of a cache file: a header with the key, the encoder's version, size and hash, and the blocks.
[[nodiscard]] std::vector<std::byte> cachedTextureFile(const TextureCacheKey& key,
                                                       std::span<const std::byte> spanBlocks);
/// The blocks within a cache file; nullopt when it is cut, altered, of another key or another encoder.
[[nodiscard]] std::optional<std::span<const std::byte>>
blocksOfCachedTexture(std::span<const std::byte> spanFile, const TextureCacheKey& key);

/// Files are replaced whole, so that several programs and threads may share the folder. Any thread.
class TextureCache
{
public:
    /// An empty folder path: nothing is kept. The folder is made when it is needed.
    explicit TextureCache(std::filesystem::path folder = {}) : m_folder(std::move(folder)) {}

    [[nodiscard]] std::optional<std::vector<std::byte>> find(const TextureCacheKey& key) const;
    /// A full disk or a folder that can't be written only costs the entry.
    void store(const TextureCacheKey& key, std::span<const std::byte> spanBlocks) const;
    /// Where the entry lies or would lie.
    [[nodiscard]] std::filesystem::path filePath(const TextureCacheKey& key) const;

private:
    std::filesystem::path m_folder;
};

} // namespace resource
