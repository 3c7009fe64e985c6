#include "KestrelCommon/Device/GlProgramCache.h"

#include "KestrelCommon/Core/Hash.h"
#include "KestrelCommon/Core/Uuid.h"

#include <cstdio>
#include <fstream>

namespace rend
{

namespace
{

/// In front of the binary; the hash covers the binary.
struct EntryHeader
{
    uint32_t uMagic = 0x31504251;
    uint32_t uFormat = 0;
    uint64_t uKey = 0;
    uint64_t uSize = 0;
    uint64_t uHash = 0;
};

constexpr uint64_t s_uMaxSize = 64u << 20; ///< no driver's program comes near it

} // namespace

GlProgramCache::GlProgramCache(std::filesystem::path folder) : m_folder(std::move(folder)) {}

std::filesystem::path GlProgramCache::filePath(uint64_t uKey) const
{
    std::array<char, 32> arrName{};
    std::snprintf(arrName.data(), arrName.size(), "%016llx.program", static_cast<unsigned long long>(uKey));
    return m_folder / arrName.data();
}

std::optional<GlProgramCache::Entry> GlProgramCache::find(uint64_t uKey) const
{
    if (m_folder.empty())
        return std::nullopt;
    std::ifstream file(filePath(uKey), std::ios::binary);
    EntryHeader header;
    if (!file.read(reinterpret_cast<char*>(&header), sizeof(header)))
        return std::nullopt;
    if (header.uMagic != EntryHeader{}.uMagic || header.uKey != uKey || header.uSize > s_uMaxSize)
        return std::nullopt;

    Entry entry;
    entry.uFormat = header.uFormat;
    entry.vecBinary.resize(header.uSize);
    if (!file.read(reinterpret_cast<char*>(entry.vecBinary.data()),
                   static_cast<std::streamsize>(header.uSize)))
        return std::nullopt;
    if (xxh3(std::span<const std::byte>(entry.vecBinary)) != header.uHash)
        return std::nullopt;
    return entry;
}

void GlProgramCache::store(uint64_t uKey, uint32_t uFormat, std::span<const std::byte> spanBinary) const
{
    if (m_folder.empty() || spanBinary.size() > s_uMaxSize)
        return;
    std::error_code error;
    std::filesystem::create_directories(m_folder, error);

    const EntryHeader header{
        .uFormat = uFormat, .uKey = uKey, .uSize = spanBinary.size(), .uHash = xxh3(spanBinary)};
    const std::filesystem::path path = filePath(uKey);
    const std::filesystem::path beside = path.string() + "." + Uuid::random().text();
    std::ofstream file(beside, std::ios::binary);
    file.write(reinterpret_cast<const char*>(&header), sizeof(header));
    file.write(reinterpret_cast<const char*>(spanBinary.data()),
               static_cast<std::streamsize>(spanBinary.size()));
    file.close();
    if (file)
        std::filesystem::rename(beside, path, error);
    if (!file || error)
        std::filesystem::remove(beside, error);
}

} // namespace rend
