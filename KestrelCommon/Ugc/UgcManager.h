#pragma once // The one list of all content items known to the program.

#include "KestrelCommon/Ugc/UgcBase.h"

#include <array>
#include <functional>
#include <memory>
#include <shared_mutex>

class UserMessageI;

/// Items come from the user's folders and from the game's own.
///
/// Threads: changes on the main thread; look-ups from any, under a lock. An item outlives its
///          removal while someone holds it.
class UgcManager
{
public:
    using Item = std::shared_ptr<UgcBase>;
    using Items = std::vector<Item>;
    using Callback = std::function<void(const Items&)>;

    static UgcManager* ms_pInstance;

    /// Reads the cache of names. The message sink is borrowed and may be null.
    explicit UgcManager(UserMessageI* pMessages);
    ~UgcManager();
    UgcManager(const UgcManager&) = delete;
    UgcManager& operator=(const UgcManager&) = delete;

    /// Loads each sub-folder as an item; a folder that isn't there has none.
    void addFolder(const std::string& sFolder);

    /// The item of a folder, or null: without a description in silence, else with its log line.
    Item loadItem(const std::string& sDirectory);

    void addItem(Item pItem);
    /// Takes it off the list; updateRemoved() tells the others and deletes a user's folder.
    void removeItem(const Item& pItem);

    /// A new tile item in a folder below the user's tile folder; null when it can't be made.
    Item createTileItem();

    [[nodiscard]] Item getItem(const ContentId& id) const;
    [[nodiscard]] Item getItem(const Uuid& localId) const;
    /// The first item whose folder holds the path; raw or keyed.
    [[nodiscard]] Item findByPath(std::string_view sPath) const;
    [[nodiscard]] Items getTiles() const;
    /// The name that an item had when it was last seen, or empty.
    [[nodiscard]] std::string getCachedName(const ContentId& id) const;

    /// Brings a list up to date with the items that exist: numbers and local ids that became known
    /// are filled in, and of a number that stands twice the first entry stays. Whether anything changed.
    bool refreshDependencies(std::vector<ContentId>& vecIds) const;

    /// Kind None: for all kinds. A callback is known by its type: a second one of the same type for
    /// the same kind changes nothing, and removal looks for the type.
    void addAddedCallback(UgcKind eKind, Callback fnCallback);
    void removeAddedCallback(UgcKind eKind, const Callback& fnCallback);
    void addRemovedCallback(UgcKind eKind, Callback fnCallback);
    void removeRemovedCallback(UgcKind eKind, const Callback& fnCallback);

    /// Once a frame each: tell what was added and removed since the last call.
    void updateAdded();
    void updateRemoved();

    /// Takes all keys away and writes the cache.
    void stop();

    /// Whether a folder lies below the user's folder: what the program may delete.
    [[nodiscard]] static bool isUsersOwn(const UgcBase& item);

    /// The item that the run works in, or null.
    Item context;

private:
    static constexpr size_t s_uKinds = 9;
    using Pending = std::array<Items, s_uKinds>;
    using Callbacks = std::array<std::vector<Callback>, s_uKinds>;
    static Items tell(Pending& arrPending, const Callbacks& arrCallbacks);

    UserMessageI* m_pMessages;
    mutable std::shared_mutex m_lock;
    Items m_vecItems;
    Json::Value m_jsonCache;
    Pending m_arrAdded;
    Pending m_arrRemoved;
    Callbacks m_arrAddedCallbacks;
    Callbacks m_arrRemovedCallbacks;
};
