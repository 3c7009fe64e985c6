#pragma once // Linked shader programs, kept on disk from run to run.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <vector>

namespace rend
{

/// Knows no GL: blobs by key. An entry that is cut, altered or of another key counts as missing.
/// Writes go beside and are renamed, so that two programs may share the folder.
class GlProgramCache
{
public:
    struct Entry
    {
        uint32_t uFormat = 0; ///< the driver's code of the binary's form
        std::vector<std::byte> vecBinary;
    };

    /// An empty folder path: nothing is kept.
    explicit GlProgramCache(std::filesystem::path folder);

    [[nodiscard]] std::optional<Entry> find(uint64_t uKey) const;

    /// A full disk or a folder that can't be written only costs the entry.
    void store(uint64_t uKey, uint32_t uFormat, std::span<const std::byte> spanBinary) const;

private:
    [[nodiscard]] std::filesystem::path filePath(uint64_t uKey) const;

    std::filesystem::path m_folder;
};

} // namespace rend
