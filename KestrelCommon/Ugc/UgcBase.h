#pragma once // A content item: a folder with a description and content beside it.

#include "KestrelCommon/Ugc/ContentId.h"
#include "KestrelCommon/Ugc/UgcContentPaths.h"

#include <cstdint>
#include <json/value.h>
#include <string>
#include <vector>

class UserMessageI;

/// The kind codes; the type words stand in "description.json".
enum class UgcKind : uint32_t
{
    None = 0, ///< in callback tables: all kinds
    Blueprint = 1,
    BlocksAndParts = 2,
    Tile = 3,
    World = 4,
    TerrainAssets = 5,
    ChallengePack = 6,
    ChallengeLevel = 7,
    CustomGame = 8,
};

/// The type word of a kind, or empty.
[[nodiscard]] std::string_view ugcTypeWord(UgcKind eKind);
/// The kind of a type word, or None.
[[nodiscard]] UgcKind ugcKindOf(std::string_view sTypeWord);

/// Main thread only, apart from const reads of an item that nobody changes.
class UgcBase
{
public:
    /// The folder as given, with forward slashes; everything else is empty.
    UgcBase(UgcKind eKind, std::string sDirectory);
    virtual ~UgcBase() = default;
    UgcBase(const UgcBase&) = delete;
    UgcBase& operator=(const UgcBase&) = delete;

    /// Takes the key out of the table of folders.
    virtual void removeDirectoryKey();
    /// Finds the item's files.
    virtual void refresh() {}
    /// Whether the item can be shared.
    [[nodiscard]] virtual bool validate() { return true; }
    /// Whether the item can be started.
    [[nodiscard]] virtual bool prepare() { return true; }
    [[nodiscard]] virtual bool isGameContent() const { return false; }
    /// The newest format version of the kind.
    [[nodiscard]] virtual int64_t getCurrentVersion() const;
    [[nodiscard]] virtual std::string getPreviewPath() const { return {}; }
    [[nodiscard]] virtual std::string getIconPath() const { return {}; }

    /// For a new item: creates the folder, reads a description that may be there, sets "type",
    /// "version" 1 and "localId", registers the key. False when the folder can't be made.
    bool createNew(std::string_view sTypeWord, const Uuid& uuid);

    /// False when the file is empty, missing or doesn't parse; the last is logged.
    bool readDescription(const std::string& sPath);

    /// Gives the item its key "$CONTENT_" + localId; a bad localId is replaced by a new one first.
    void registerDirectoryKey();

    [[nodiscard]] std::string getString(const char* pKey) const;
    [[nodiscard]] uint64_t getUInt64(const char* pKey) const;
    [[nodiscard]] const Json::Value& getJson(const char* pKey) const;
    /// Both save the description at once.
    void setString(const char* pKey, const std::string& sValue);
    void setUInt64(const char* pKey, uint64_t uValue);

    /// False, with an error line, when the file can't be written.
    bool saveDescription() const;

    /// The ".tile" files of the item's tile folder, as keyed paths in the order of their names.
    [[nodiscard]] std::vector<std::string> getTileFiles() const;
    [[nodiscard]] const UgcContentPaths& paths() const { return m_paths; }

    /// Who shows messages to the user; borrowed, may be null.
    void setMessages(UserMessageI* pMessages) { m_pMessages = pMessages; }

    [[nodiscard]] UgcKind kind() const { return m_eKind; }
    [[nodiscard]] const std::string& directory() const { return m_sDirectory; }
    [[nodiscard]] const std::string& directoryKey() const { return m_sDirectoryKey; }
    [[nodiscard]] std::string name() const { return getString("name"); }
    [[nodiscard]] Uuid getLocalId() const;
    [[nodiscard]] ContentId getContentId() const;
    [[nodiscard]] int64_t getVersion() const;

    [[nodiscard]] std::vector<ContentId> getDependencies() const;
    /// Writes the list anew, without the item itself, and saves. A name comes from the lookup.
    using NameLookup = std::string (*)(const ContentId&);
    void setDependencies(const std::vector<ContentId>& vecIds, NameLookup fnName);

protected:
    /// Keeps a path when it exists; tells whether it does.
    bool findContent(UgcContentPath path);
    bool findParticles();
    void tellUser(const std::string& sText) const;

    UgcContentPaths m_paths;

private:
    UserMessageI* m_pMessages = nullptr;
    UgcKind m_eKind;
    std::string m_sDirectory;
    std::string m_sDirectoryKey;
    std::string m_sDescriptionPath;
    Json::Value m_jsonDescription;
};
