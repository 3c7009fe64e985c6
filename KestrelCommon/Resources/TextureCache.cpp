#include "KestrelCommon/Resources/TextureCache.h"

#include "KestrelCommon/Core/Hash.h"
#include "KestrelCommon/Core/Uuid.h"
#include "KestrelCommon/Io/SafeFile.h"
#include "KestrelCommon/Resources/BlockEncoder.h"

#include <cstdio>
#include <fstream>

namespace resource
{

namespace
{

/// In front of the blocks, little-endian; has no gaps, so that its bytes can be compared and hashed.
struct Header
{
    std::array<char, 4> arrMagic = {'Q', 'T', 'X', 'B'};
    uint32_t uEncoder = s_uBlockEncoderVersion;
    uint64_t uSource = 0;
    uint32_t uWidth = 0;
    uint32_t uHeight = 0;
    uint32_t uLayout = 0;
    uint32_t uMips = 0;
    uint32_t uColour = 0;
    uint32_t uUnused = 0;
    uint64_t uSize = 0;
    uint64_t uHash = 0; ///< of the blocks
};
static_assert(sizeof(Header) == 56 && std::has_unique_object_representations_v<Header>);

/// All but the hash of the blocks.
Header headerOf(const TextureCacheKey& key)
{
    return {.uSource = key.uSource,
            .uWidth = static_cast<uint32_t>(key.iWidth),
            .uHeight = static_cast<uint32_t>(key.iHeight),
            .uLayout = static_cast<uint32_t>(key.eLayout),
            .uMips = static_cast<uint32_t>(key.iMips),
            .uColour = key.bColour ? 1u : 0u,
            .uSize = blockChainBytes(key.iWidth, key.iHeight, key.iMips)};
}

} // namespace

std::vector<std::byte> cachedTextureFile(const TextureCacheKey& key, std::span<const std::byte> spanBlocks)
{
    Header header = headerOf(key);
    header.uHash = xxh3(spanBlocks);
    const auto spanHeader = std::as_bytes(std::span(&header, 1));
    std::vector<std::byte> vecFile(spanHeader.begin(), spanHeader.end());
    vecFile.insert(vecFile.end(), spanBlocks.begin(), spanBlocks.end());
    return vecFile;
}

std::optional<std::span<const std::byte>> blocksOfCachedTexture(std::span<const std::byte> spanFile,
                                                                const TextureCacheKey& key)
{
    Header expected = headerOf(key);
    if (spanFile.size() < sizeof(Header) || spanFile.size() - sizeof(Header) != expected.uSize)
        return std::nullopt;
    const std::span<const std::byte> spanBlocks = spanFile.subspan(sizeof(Header));
    expected.uHash = xxh3(spanBlocks);
    if (std::memcmp(&expected, spanFile.data(), sizeof(Header)) != 0)
        return std::nullopt;
    return spanBlocks;
}

std::filesystem::path TextureCache::filePath(const TextureCacheKey& key) const
{
    const Header header = headerOf(key);
    std::array<char, 32> arrName{};
    std::snprintf(arrName.data(), arrName.size(), "%016llx.texture",
                  static_cast<unsigned long long>(xxh3(std::as_bytes(std::span(&header, 1)))));
    return m_folder / arrName.data();
}

std::optional<std::vector<std::byte>> TextureCache::find(const TextureCacheKey& key) const
{
    if (m_folder.empty())
        return std::nullopt;
    const std::filesystem::path path = filePath(key);
    std::error_code error;
    // Compared before it is read: a file of another size is none of ours, whatever it holds.
    if (std::filesystem::file_size(path, error) != sizeof(Header) + headerOf(key).uSize || error)
        return std::nullopt;
    auto file = readFile(path);
    if (!file || !blocksOfCachedTexture(*file, key))
        return std::nullopt;
    file->erase(file->begin(), file->begin() + sizeof(Header));
    return file;
}

void TextureCache::store(const TextureCacheKey& key, std::span<const std::byte> spanBlocks) const
{
    if (m_folder.empty() || spanBlocks.size() != headerOf(key).uSize)
        return;
    std::error_code error;
    std::filesystem::create_directories(m_folder, error);
    error.clear();
    const std::vector<std::byte> vecFile = cachedTextureFile(key, spanBlocks);
    const std::filesystem::path path = filePath(key);
    // Not flushed to the disk, which would cost more than compressing anew after a crash.
    const std::filesystem::path beside = path.string() + "." + Uuid::random().text();
    std::ofstream file(beside, std::ios::binary);
    file.write(reinterpret_cast<const char*>(vecFile.data()), static_cast<std::streamsize>(vecFile.size()));
    file.close();
    if (file)
        std::filesystem::rename(beside, path, error);
    if (!file || error)
        std::filesystem::remove(beside, error);
}

} // namespace resource
