#pragma once // Where a kind keeps its instances, and the one way of changing one.

#include "KestrelCommon/Core/Assert.h"
#include "TileEditorCommon/Entities/EntityHostI.h"

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <utility>

namespace tilebuilder
{

/// A changeable instance for a scope. When it ends, the host hears of the change: the place for
/// picking follows, the cells that held and hold the entity count as changed, and the change goes
/// into the undo history. Null when there is no such instance; nothing happens then.
template <typename Instance>
class InstanceEdit
{
public:
    /// Bits of ChangeMask that the end of the edit marks.
    InstanceEdit(EntityHostI& host, Instance* pInstance, uint32_t uId, uint32_t uMask)
        : m_pHost(&host),
          m_pInstance(pInstance),
          m_uId(uId),
          m_uMask(uMask)
    {
    }
    InstanceEdit(InstanceEdit&& other) noexcept
        : m_pHost(other.m_pHost),
          m_pInstance(std::exchange(other.m_pInstance, nullptr)),
          m_uId(other.m_uId),
          m_uMask(other.m_uMask)
    {
    }
    ~InstanceEdit()
    {
        if (m_pInstance)
            m_pHost->onInstanceChanged(m_uId, m_uMask);
    }
    InstanceEdit(const InstanceEdit&) = delete;
    InstanceEdit& operator=(const InstanceEdit&) = delete;
    InstanceEdit& operator=(InstanceEdit&&) = delete;

    explicit operator bool() const { return m_pInstance != nullptr; }
    Instance* operator->() const { return m_pInstance; }
    Instance& operator*() const { return *m_pInstance; }

private:
    EntityHostI* m_pHost;
    Instance* m_pInstance;
    uint32_t m_uId;
    uint32_t m_uMask;
};

/// Instances by entity id. They keep their address until they are removed.
template <typename Instance>
class InstanceMap
{
public:
    explicit InstanceMap(EntityHostI& host) : m_host(host) {}

    [[nodiscard]] const Instance* find(uint32_t uId) const
    {
        const auto itFound = m_mapInstances.find(uId);
        return itFound == m_mapInstances.end() ? nullptr : &itFound->second;
    }

    /// Bits of ChangeMask that the end of the edit marks.
    [[nodiscard]] InstanceEdit<Instance> edit(uint32_t uId, uint32_t uMask)
    {
        const auto itFound = m_mapInstances.find(uId);
        Instance* pInstance = itFound == m_mapInstances.end() ? nullptr : &itFound->second;
        return InstanceEdit<Instance>(m_host, pInstance, uId, uMask);
    }

    /// Tells nobody: a new entity becomes known when its creation is done.
    const Instance& add(uint32_t uId, Instance&& instance)
    {
        const auto [itNew, bNew] = m_mapInstances.try_emplace(uId, std::move(instance));
        QM_ASSERT(bNew);
        return itNew->second;
    }

    /// Tells nobody, as add().
    bool remove(uint32_t uId) { return m_mapInstances.erase(uId) > 0; }

    [[nodiscard]] size_t size() const { return m_mapInstances.size(); }
    [[nodiscard]] EntityHostI& host() { return m_host; }

private:
    EntityHostI& m_host;
    std::unordered_map<uint32_t, Instance> m_mapInstances;
};

} // namespace tilebuilder
