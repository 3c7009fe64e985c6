#pragma once // All culling groups of the world.

#include "KestrelCommon/renderer/StaticCullingGroup.h"

#include <memory>
#include <unordered_map>

namespace rend
{

/// floor(x / 32), floor(y / 32) of a place in metres.
struct GroupKey
{
    int16_t x = 0;
    int16_t y = 0;

    bool operator==(const GroupKey&) const = default;
};

/// FNV-1a over the four bytes.
struct GroupKeyHash
{
    size_t operator()(const GroupKey& key) const;
};

/// Groups are made on demand, keep their place in memory and live as long as this.
/// Threads: main thread; the groups themselves may be filled on workers.
class CullingGroups
{
public:
    static constexpr size_t s_uMaxGroups = 8192;

    /// Null, with a line, when there are too many already.
    StaticCullingGroup* findOrCreate(const GroupKey& key);
    [[nodiscard]] StaticCullingGroup* find(const GroupKey& key) const;
    [[nodiscard]] std::span<const std::unique_ptr<StaticCullingGroup>> all() const { return m_vecGroups; }

    /// Sorts the clutter of the groups that changed, in parallel, and raises the revision when any did.
    void rebuildClutter(const std::array<uint8_t, 256>& impostorOf);

    /// Of what the sorted groups hold.
    [[nodiscard]] uint64_t revision() const { return m_uRevision; }

private:
    uint64_t m_uRevision = 0;
    std::vector<std::unique_ptr<StaticCullingGroup>> m_vecGroups;
    std::unordered_map<GroupKey, size_t, GroupKeyHash> m_mapGroups; ///< to places in the list
};

} // namespace rend
