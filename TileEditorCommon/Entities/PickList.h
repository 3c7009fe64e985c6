#pragma once // Where entities stand, laid out for picking.

#include <cstddef>
#include <cstdint>
#include <glm/vec3.hpp>
#include <optional>
#include <vector>

namespace tilebuilder
{

/// A ray of the mouse, in the world. The direction is of unit length.
struct PickRay
{
    glm::vec3 start{0.0f};
    glm::vec3 direction{0.0f, 0.0f, -1.0f};
    float length = 4000.0f;
};

/// Positions and groups side by side, in the order of the entity list. A pick runs over all of
/// them: for 50,000 that is a tenth of a millisecond, where a sweep of a wide sphere through a
/// tree takes twenty. Main thread only.
class PickList
{
public:
    static constexpr float s_fNearRadius = 0.75f;  ///< metres around the ray at its start
    static constexpr float s_fFarRadius = 100.75f; ///< at its end, and as far as anything is looked at

    void clear();
    void reserve(size_t uCount);
    void add(const glm::vec3& position, uint32_t uGroup);
    void move(size_t uIndex, const glm::vec3& position);
    void setGroup(size_t uIndex, uint32_t uGroup) { m_vecGroup[uIndex] = uGroup; }
    /// The last one takes the place of the one that goes.
    void remove(size_t uIndex);

    [[nodiscard]] size_t size() const { return m_vecGroup.size(); }
    [[nodiscard]] uint32_t group(size_t uIndex) const { return m_vecGroup[uIndex]; }
    [[nodiscard]] glm::vec3 position(size_t uIndex) const
    {
        return {m_vecX[uIndex], m_vecY[uIndex], m_vecZ[uIndex]};
    }

    /// The one nearest to the line of the ray, within a cone that opens from s_fNearRadius; of
    /// equals the nearer along the ray, then the later in the list. Groups that the mask doesn't
    /// show are passed over.
    [[nodiscard]] std::optional<size_t> pick(const PickRay& ray, uint32_t uViewMask) const;

private:
    std::vector<float> m_vecX;
    std::vector<float> m_vecY;
    std::vector<float> m_vecZ;
    std::vector<uint32_t> m_vecGroup;
};

} // namespace tilebuilder
