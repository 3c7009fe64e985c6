#pragma once // A square of the world that is culled as a whole.

#include "KestrelCommon/renderer/ClutterMesh.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include <glm/vec2.hpp>

namespace rend
{

/// A run of instances of one type.
struct ClutterBatch
{
    uint32_t uType = 0;
    uint32_t uFirst = 0;
    uint32_t uCount = 0;
};

/// Bits of a group's flag value.
enum CullingGroupFlags : uint32_t
{
    GroupHasClutter = 2,
    GroupHasImpostors = 4,
};

/// What stands on 32 m x 32 m. Slots are stable; the sorted arrays follow at the next rebuild.
/// Threads: one at a time; different groups on different threads.
class StaticCullingGroup
{
public:
    static constexpr float s_fSide = 32.0f;        ///< metres
    static constexpr float s_fNearMargin = 100.0f; ///< metres around the box where meshes are drawn

    struct Clutter
    {
        std::vector<uint64_t> vecLive; ///< a bit a slot
        std::vector<Aabb> vecAabb;
        std::vector<ClutterInstance> vecInstances;
        std::vector<uint8_t> vecTypes;
        std::vector<uint32_t> vecFree;
        uint32_t uCount = 0;
        bool bDirty = false;

        // As of the last rebuild: by type, each type's instances strewn so that the first n of them
        // are spread over the square.
        std::vector<ClutterInstance> vecSorted;
        std::vector<ClutterInstance> vecImpostors;
        std::vector<ClutterBatch> vecBatches;
        std::vector<ClutterBatch> vecImpostorBatches;
    };

    /// Takes a free slot or a new one. color: red highest. size: metres.
    uint32_t addClutter(const ClutterMesh& mesh, uint8_t uType, const glm::vec3& position,
                        const glm::vec3& normal, uint32_t color, float fSize);
    /// A slot that isn't live logs a line and changes nothing.
    void removeClutter(uint32_t uSlot);
    void reserveClutter(size_t uMore);

    /// Sorts what is live, if anything changed. impostorOf: by global index, 255 for none.
    void rebuildClutter(const std::array<uint8_t, 256>& impostorOf);

    [[nodiscard]] const Clutter& clutter() const { return m_clutter; }
    [[nodiscard]] uint32_t flags() const { return m_uFlags; }
    /// Around the live instances, as of the last rebuild.
    [[nodiscard]] const Aabb& box() const { return m_box; }
    /// Whether a camera there sees meshes: strictly inside the box and its margin.
    [[nodiscard]] bool isNear(const glm::vec2& camera) const;

private:
    [[nodiscard]] bool isLive(uint32_t uSlot) const;

    Clutter m_clutter;
    Aabb m_box;
    glm::vec2 m_rectLowest{0.0f};
    glm::vec2 m_rectHighest{0.0f};
    uint32_t m_uFlags = 0;
    std::array<uint32_t, 256> m_arrCounts{}; ///< live instances by type
};

} // namespace rend
