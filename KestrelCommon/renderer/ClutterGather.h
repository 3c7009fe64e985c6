#pragma once // Picks the clutter that a frame draws.

#include "KestrelCommon/renderer/CullingGroups.h"
#include "KestrelCommon/renderer/Frustum.h"

#include <atomic>

namespace rend
{

/// How much of the clutter in view is drawn; all of it by default.
struct ClutterDensity
{
    float fNearBudget = 0.0f; ///< instances at most, 0: no limit
    float fFarBudget = 0.0f;
    float fFullRange = 0.0f; ///< metres from the camera with the full share when there is a limit
};

/// Instances in a row; its memory is kept from frame to frame and never cleared.
class ClutterList
{
public:
    [[nodiscard]] std::span<const ClutterInstance> instances() const
    {
        return {m_pInstances.get(), m_uCount};
    }
    [[nodiscard]] ClutterInstance* resize(size_t uCount);

private:
    std::unique_ptr<ClutterInstance[]> m_pInstances;
    size_t m_uCount = 0;
    size_t m_uCapacity = 0;
};

/// Threads: the call fans out over the pools and joins before it returns.
class ClutterGather
{
public:
    static constexpr size_t s_uMaxBatches = 10000;

    /// After CullingGroups::rebuildClutter(). A list of more than s_uMaxBatches runs stays empty.
    void gather(const CullingGroups& groups, const Frustum& frustum, const glm::vec2& camera,
                const ClutterDensity& density);

    /// Meshes, with one batch a type in ascending order.
    [[nodiscard]] std::span<const ClutterInstance> nearInstances() const { return m_nearList.instances(); }
    [[nodiscard]] std::span<const ClutterBatch> nearBatches() const { return m_vecNearBatches; }
    /// Impostors, group after group.
    [[nodiscard]] std::span<const ClutterInstance> farInstances() const { return m_farList.instances(); }
    /// Whether a budget left some of it out.
    [[nodiscard]] bool isThinned() const { return m_bThinned; }

private:
    struct View
    {
        const StaticCullingGroup* pGroup;
        float fAway;   ///< metres from the camera, in X and Y
        float fWeight; ///< share that it gets when there is a limit, before scaling
        float fShare = 1.0f;
    };
    /// A run to copy.
    struct Run
    {
        uint32_t uType;
        uint32_t uView; ///< place of its group in the list of views
        uint32_t uCount;
        const ClutterInstance* pFrom;
        size_t uTo = 0;
    };

    void share(std::vector<View>& vecViews, float fBudget, bool bNear);
    void gatherNear();
    void gatherFar();
    static void copyRuns(std::span<Run> spanRuns, ClutterInstance* pTo);

    std::vector<View> m_vecNear;
    std::vector<View> m_vecFar;
    std::vector<Run> m_vecRuns;
    std::vector<ClutterBatch> m_vecNearBatches;
    ClutterList m_nearList;
    ClutterList m_farList;
    bool m_bThinned = false;
};

} // namespace rend
