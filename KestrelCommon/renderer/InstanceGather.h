#pragma once // Picks the instances that a frame draws.

#include "KestrelCommon/renderer/Frustum.h"
#include "KestrelCommon/renderer/InstanceWorld.h"

namespace rend
{

/// What a frame can afford.
struct InstanceLimits
{
    /// Instances that seem smaller are left out: their extent as a part of the distance.
    float fSmallest = 0.0f;
    /// Triangles at most, 0: no limit; what seems smallest is left out first.
    uint64_t uTriangles = 0;
};

/// A run of gathered instances of one kind.
struct InstanceBatch
{
    uint32_t uKind;
    uint32_t uFirst;
    uint32_t uCount;
};

/// Threads: the caller's own.
class InstanceGather
{
public:
    /// After InstanceWorld::sortCells(). Triangles by kind; missing ones count as none.
    void gather(const InstanceWorld& world, const Frustum& frustum, const glm::vec3& eye,
                const InstanceLimits& limits, std::span<const uint32_t> spanTriangles);

    [[nodiscard]] std::span<const InstanceData> instances() const { return {m_pInstances.get(), m_uCount}; }
    /// One a kind that is in view, in ascending order.
    [[nodiscard]] std::span<const InstanceBatch> batches() const { return m_vecBatches; }
    /// Whether the limit of triangles left some out.
    [[nodiscard]] bool isThinned() const { return m_bThinned; }

private:
    struct View
    {
        const InstanceCell* pCell;
        float fAway; ///< metres from the eye to the cell's box
    };

    [[nodiscard]] float smallestFor(const InstanceLimits& limits,
                                    std::span<const uint32_t> spanTriangles) const;

    std::vector<View> m_vecViews;
    std::vector<uint32_t> m_vecCounts; ///< by kind; then places to write to
    std::vector<InstanceBatch> m_vecBatches;
    std::unique_ptr<InstanceData[]> m_pInstances; ///< kept from frame to frame, never cleared
    size_t m_uCount = 0;
    size_t m_uCapacity = 0;
    bool m_bThinned = false;
};

} // namespace rend
