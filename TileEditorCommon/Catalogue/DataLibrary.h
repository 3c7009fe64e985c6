#pragma once // The catalogue of the files that an editing run can use.

#include <cstddef>
#include <cstdint>
#include <json/forwards.h>
#include <memory>
#include <shared_mutex>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tilebuilder
{

/// Walks the data folders in the background and sorts what it finds by kind. Files are named by the
/// hash of their keyed path, which never leaves the program; folders are keyed paths.
///
/// Lists: prefabs, blueprints and tiles by hash, in the order of finding; paths of tiles, their
///     exports and model files, sorted. JSON and renderable files are only known by hash.
/// Contents: raw bytes and parsed forms are kept once they were asked for, until removeFile().
/// Threads: loadAsync(), poll() and shutdown() from the main thread; the rest from any. During a
///     walk readers see what stood there before it.
class DataLibrary
{
public:
    using Bytes = std::shared_ptr<const std::vector<std::byte>>;
    using Parsed = std::shared_ptr<const Json::Value>;

    DataLibrary();
    ~DataLibrary();
    DataLibrary(const DataLibrary&) = delete;
    DataLibrary& operator=(const DataLibrary&) = delete;

    [[nodiscard]] static uint64_t hashOf(std::string_view sPath);

    // Walks

    /// Starts a walk, after waiting for the end of one that runs.
    void loadAsync(std::span<const std::string> spanFolders);
    /// True once after the end of a walk, so that the main thread can show what it brought.
    [[nodiscard]] bool poll();
    /// Waits for a walk that runs; has to be called before the end.
    void shutdown();

    // Files

    /// Sorts a file in; nothing for one of no known kind, or one that is known.
    void addFile(const std::string& sPath);
    /// What was read of the file is forgotten, so that the next call reads it anew.
    void removeFile(std::string_view sPath);

    /// Keyed path; empty for a hash that isn't known.
    [[nodiscard]] std::string getPath(uint64_t uHash) const;
    /// The JSON value of a file; null when it doesn't parse, which is logged.
    [[nodiscard]] Parsed getParsed(uint64_t uHash);
    /// Null for a hash that isn't known or a file that doesn't open; neither is kept.
    [[nodiscard]] Bytes getData(uint64_t uHash);

    [[nodiscard]] std::vector<uint64_t> prefabs() const;
    [[nodiscard]] std::vector<uint64_t> blueprints() const;
    [[nodiscard]] std::vector<uint64_t> tiles() const;
    [[nodiscard]] std::vector<std::string> paths() const;

private:
    struct Walk;

    /// With the exclusive lock. True when the list of paths grew.
    bool sortIn(const std::string& sPath);
    void takeIn(const Walk& walk);
    void waitForTask();

    std::vector<uint64_t> m_vecPrefabs;
    std::vector<uint64_t> m_vecBlueprints;
    std::vector<uint64_t> m_vecTiles;
    std::vector<std::string> m_vecPaths;
    std::unordered_map<uint64_t, std::string> m_mapFiles; ///< hash to keyed path
    mutable std::shared_mutex m_filesLock;                ///< guards all of the above
    std::unordered_map<uint64_t, Parsed> m_mapParsed;
    std::shared_mutex m_parsedLock;
    std::unordered_map<uint64_t, Bytes> m_mapData;
    std::shared_mutex m_dataLock;
    std::shared_ptr<Walk> m_pTask;
    bool m_bStarted = false; ///< poll() hasn't told the end of the latest walk yet
    bool m_bHasTask = false;
};

} // namespace tilebuilder
