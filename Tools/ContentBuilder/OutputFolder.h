#pragma once // The game folder being laid out: writes only what changed, and remembers what it wrote.

#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace content
{

/// 64-bit FNV-1a over bytes, to be chained.
[[nodiscard]] uint64_t hashBytes(std::string_view sBytes, uint64_t uStart = 0xcbf29ce484222325ull);

/// The whole file; empty when it can't be read.
[[nodiscard]] std::string readFile(const std::filesystem::path& path);

/// Stamps are kept in a file at its root: relative path, hash of what it was made from. What an earlier
/// run made and this one didn't is deleted by finish(). Any thread.
class OutputFolder
{
public:
    explicit OutputFolder(std::filesystem::path root);

    [[nodiscard]] const std::filesystem::path& root() const { return m_root; }

    /// True when all files stand and were made from inputs of this hash; they then count as made.
    [[nodiscard]] bool isCurrent(const std::vector<std::string>& vecFiles, uint64_t uInputs);
    /// The real path of a file to be written, with its folder made.
    [[nodiscard]] std::filesystem::path prepare(const std::string& sFile);
    void markMade(const std::vector<std::string>& vecFiles, uint64_t uInputs);

    /// Copies when the bytes differ. False with a line on standard error when that fails.
    bool copy(const std::filesystem::path& from, const std::string& sFile);

    /// Deletes what is no longer made and writes the stamps.
    bool finish();

    [[nodiscard]] size_t changedCount() const { return m_uChanged; }

private:
    std::filesystem::path m_root;
    std::mutex m_lock;
    std::map<std::string, uint64_t> m_mapOld;
    std::map<std::string, uint64_t> m_mapNew;
    size_t m_uChanged = 0;
};

} // namespace content
