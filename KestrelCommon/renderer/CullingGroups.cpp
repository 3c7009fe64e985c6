#include "KestrelCommon/renderer/CullingGroups.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/Hash.h"

#include <tbb/parallel_for_each.h>

namespace rend
{

size_t GroupKeyHash::operator()(const GroupKey& key) const
{
    static_assert(sizeof(GroupKey) == 4);
    return fnv1a64({reinterpret_cast<const char*>(&key), sizeof(key)});
}

StaticCullingGroup* CullingGroups::findOrCreate(const GroupKey& key)
{
    if (StaticCullingGroup* pGroup = find(key))
        return pGroup;
    if (m_vecGroups.size() >= s_uMaxGroups)
    {
        QM_LOG_ERROR("Oh no! we are out of culling groups!!!");
        return nullptr;
    }
    m_mapGroups.emplace(key, m_vecGroups.size());
    return m_vecGroups.emplace_back(std::make_unique<StaticCullingGroup>()).get();
}

StaticCullingGroup* CullingGroups::find(const GroupKey& key) const
{
    const auto it = m_mapGroups.find(key);
    return it == m_mapGroups.end() ? nullptr : m_vecGroups[it->second].get();
}

void CullingGroups::rebuildClutter(const std::array<uint8_t, 256>& impostorOf)
{
    std::vector<StaticCullingGroup*> vecDirty;
    for (const auto& pGroup : m_vecGroups)
        if (pGroup->clutter().bDirty)
            vecDirty.push_back(pGroup.get());
    m_uRevision += !vecDirty.empty();
    tbb::parallel_for_each(vecDirty.begin(), vecDirty.end(),
                           [&](StaticCullingGroup* pGroup) { pGroup->rebuildClutter(impostorOf); });
}

} // namespace rend
