#pragma once // Keys for folders: every stored reference to content is a keyed path.

#include "KestrelCommon/Core/Hash.h"
#include "KestrelCommon/Core/Uuid.h"

#include <filesystem>
#include <functional>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <unordered_map>

/// What the system gives the directory manager; tests give folders of their own.
struct DirectoryPlaces
{
    std::filesystem::path pathRoaming;     ///< the user's data folder
    std::filesystem::path pathLocal;       ///< the user's cache folder
    std::filesystem::path pathProgram;     ///< the folder of the program
    std::filesystem::path pathGameInstall; ///< the game's folder; empty: ".." from the program
    uint64_t uUserId = 0;                  ///< 0: no user, "DefaultUser"
};

/// Turns keys into folders and back, and finds the program's folders at start-up.
///
/// Keyed path: UTF-8 text of a key such as "$GAME_DATA", '/' and a path below the key's folder.
/// Folder texts are absolute, with forward slashes and no slash at the end.
/// Threads:    the key table may be used from any thread; the rest is set at start-up.
class DirectoryManager
{
public:
    /// Results of the two start-up operations.
    enum Result : int
    {
        Success = 0,
        Failed = 1,
        PermissionDenied = 3,
        NoSystemFolder = 4,
    };

    static DirectoryManager* ms_pInstance;

    explicit DirectoryManager(DirectoryPlaces places);
    ~DirectoryManager();
    DirectoryManager(const DirectoryManager&) = delete;
    DirectoryManager& operator=(const DirectoryManager&) = delete;

    /// Fixes the log paths, with the local time as stamp, and creates their folder: "../Logs" seen
    /// from the program, else "Logs" below the user folder.
    int openLogs(const std::string& sBaseName);

    /// Finds and creates all folders and registers the fixed keys.
    int initialise();

    // Key table

    /// False when the key was there already; it then keeps its folder.
    bool addKey(const std::string& sKey, const std::string& sFolder);
    void removeKey(const std::string& sKey);

    /// The key that a path begins with when it is registered; of a raw path the key with the
    /// longest folder above it. Else empty.
    [[nodiscard]] std::string getKey(std::string_view sPath) const;
    [[nodiscard]] bool isContentPath(std::string_view sPath, std::string& sKey) const;
    [[nodiscard]] bool getKeyPath(std::string_view sPath, std::string& sKey, std::string& sFolder) const;

    // Paths

    /// The real path; an unknown key logs an error and comes back unchanged.
    [[nodiscard]] std::filesystem::path resolvePath(std::string_view sPath) const;

    /// Resolved, absolute, without "." and "..", forward slashes.
    [[nodiscard]] std::string normalizePath(std::string_view sPath) const;

    /// Empty when the path lies below no key; then logs a warning if asked to.
    [[nodiscard]] std::string replacePathWithKey(std::string_view sPath, bool bWarn) const;

    [[nodiscard]] std::string toGenericPath(std::string_view sPath) const;
    [[nodiscard]] static std::string upgradeTileKey(std::string_view sPath);
    [[nodiscard]] static std::string replaceGenericKey(std::string_view sPath, std::string_view sKey);
    [[nodiscard]] static std::string expandGenericKey(std::string_view sPath, const Uuid& uuid);
    [[nodiscard]] static Uuid uuidFromPath(std::string_view sPath, bool bWarn);
    [[nodiscard]] static bool isGenericPath(std::string_view sPath);

    /// Whether a keyed path leads into the folder that its key names, ".." and links counted.
    /// The file itself need not exist.
    [[nodiscard]] bool isValidKeyedPath(std::string_view sPath, std::string_view sExtraKey = {}) const;

    /// The same for a path of a content item, which is rewritten with the item's key on success.
    /// A nil id: without an item.
    [[nodiscard]] bool isValidKeyedPathFor(std::string& sPath, const Uuid& uuid) const;

    /// Who knows the directory key of a content item; empty text: no such item.
    using ContentKeyLookup = std::function<std::string(const Uuid&)>;
    void setContentKeyLookup(ContentKeyLookup fnLookup) { m_fnContentKey = std::move(fnLookup); }

    /// Whether something exists at a path; a failed query is logged and counts as no.
    [[nodiscard]] bool exists(std::string_view sPath) const;

    // Plain paths: folders without a slash at the end

    [[nodiscard]] const std::string& gameRoot() const { return m_sGameRoot; }
    [[nodiscard]] const std::string& userFolder() const { return m_sUserFolder; }
    [[nodiscard]] std::string userSubFolder(std::string_view sSuffix) const;
    [[nodiscard]] std::string tilesFolder() const { return userSubFolder("/Tiles"); }
    [[nodiscard]] std::string challengesFolder() const { return m_sGameRoot + "/Challenges"; }
    [[nodiscard]] std::string secretChallengesFolder() const { return m_sGameRoot + "/SecretChallenges"; }
    [[nodiscard]] std::string challengeBlueprintsFolder() const
    {
        return m_sGameRoot + "/ChallengeData/Blueprints";
    }
    [[nodiscard]] std::string shaderCacheFolder() const;
    [[nodiscard]] std::string tempFolder() const;
    [[nodiscard]] std::string settingsFile() const { return userSubFolder("/settings.json"); }
    [[nodiscard]] std::string tileEditorSettingsFile() const
    {
        return userSubFolder("/tile_editor_settings.json");
    }
    [[nodiscard]] std::string ugcCacheFile() const { return userSubFolder("/ugccache.json"); }
    [[nodiscard]] const std::string& mainLog() const { return m_sMainLog; }
    [[nodiscard]] const std::string& issuesLog() const { return m_sIssuesLog; }
    [[nodiscard]] const std::string& myGuiLog() const { return m_sMyGuiLog; }

private:
    [[nodiscard]] std::string folderOf(std::string_view sKey) const;
    [[nodiscard]] std::string getKeyLocked(std::string_view sPath) const;
    [[nodiscard]] std::string resolveLocked(std::string_view sPath, bool& bUnknown) const;
    int createFolder(const std::filesystem::path& path) const;
    int createFolders();

    DirectoryPlaces m_places;
    mutable std::shared_mutex m_lock;
    std::unordered_map<std::string, std::string, TextHash, std::equal_to<>> m_mapKeys;
    ContentKeyLookup m_fnContentKey;
    std::string m_sGameRoot;
    std::string m_sUserFolder;
    std::string m_sMainLog;
    std::string m_sIssuesLog;
    std::string m_sMyGuiLog;
};
