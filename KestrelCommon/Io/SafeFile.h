#pragma once // Whole files, read at once and replaced safely.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The bytes of a file; nullopt when it can't be opened or read, without a message.
[[nodiscard]] std::optional<std::vector<std::byte>> readFile(const std::filesystem::path& path);

/// The text of a file without a leading UTF-8 byte order mark.
[[nodiscard]] std::optional<std::string> readTextFile(const std::filesystem::path& path);

/// Steps of a safe save, for tests that stop it between any two.
enum class SaveStep : uint8_t
{
    Opened,
    Written,
    Flushed,
    Renamed,
};

/// Replaces a file so that a crash or a full disk at any moment leaves the old or the new one
/// whole: written beside, flushed to the disk, renamed over, folder flushed. The permissions of
/// a file that is there are kept. False: nothing changed and no file is left beside.
class SafeFile
{
public:
    /// Starts the file beside the target. Check isOpen().
    explicit SafeFile(std::filesystem::path path);
    /// Removes the file beside unless it was committed.
    ~SafeFile();
    SafeFile(const SafeFile&) = delete;
    SafeFile& operator=(const SafeFile&) = delete;

    [[nodiscard]] bool isOpen() const { return m_iFile >= 0; }

    /// Writes and flushes to the disk; may be called once.
    [[nodiscard]] bool write(std::span<const std::byte> spanBytes);

    /// Renames over the target. Several files that belong together are first all written, then
    /// all committed.
    [[nodiscard]] bool commit();

    /// Called after each step of every safe save; null: none. For tests.
    static void setStepHook(std::function<void(SaveStep)> fnHook);

private:
    void closeFile();

    std::filesystem::path m_path;
    std::filesystem::path m_pathBeside;
    int m_iFile = -1;
    bool m_bWritten = false;
};

/// The three steps for a single file.
[[nodiscard]] bool writeFileSafely(const std::filesystem::path& path, std::span<const std::byte> spanBytes);
[[nodiscard]] bool writeFileSafely(const std::filesystem::path& path, std::string_view sText);
