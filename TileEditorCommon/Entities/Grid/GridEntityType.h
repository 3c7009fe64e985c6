#pragma once // The grid that helps the user to place and snap.

#include "TileEditorCommon/Entities/EntityHostI.h"
#include "TileEditorCommon/Entities/EntityTypeI.h"

namespace tilebuilder
{

/// What of the grid is drawn in a frame.
struct GridLook
{
    glm::vec3 position{0.0f}; ///< a crossing of lines near the eye
    glm::quat rotation{1.0f, 0.0f, 0.0f, 0.0f};
    float spacing = 16.0f; ///< metres between lines
};

/// A grid's spacing is its scale x in steps of 0.25 m, at least one step; its plane is square to the
/// axis along which its local z has the largest part, and follows the eye in whole steps.
[[nodiscard]] GridLook gridLook(const Transform& transform, const glm::vec3& eye);

/// At most one instance exists. It is never stored, and changes nothing that is.
class GridEntityType : public EntityTypeI
{
public:
    static constexpr EntityTypeId s_eTypeId = EntityTypeId_Grid;
    static constexpr float s_fNewScale = 16.0f; ///< metres between the lines of a new grid

    explicit GridEntityType(EntityHostI& host) : m_host(host) {}

    [[nodiscard]] EntityTypeId getTypeId() const override { return s_eTypeId; }
    bool create(EntityCreateArgs& args, std::span<const uint64_t> spanStack) override;
    [[nodiscard]] bool exists(uint32_t uId) const override { return m_uId != 0 && m_uId == uId; }
    void remove(uint32_t uId, bool bRemoveLinks) override;
    [[nodiscard]] std::string getDisplayName(uint32_t uId) const override;
    [[nodiscard]] Transform getCenterTransform(uint32_t uId) const override;
    void setCenterTransform(uint32_t uId, const Transform& transform) override;
    [[nodiscard]] bool movesByGrid(uint32_t /*uId*/) const override { return true; }
    [[nodiscard]] uint8_t getScaleFlags(uint32_t uId) const override;

    [[nodiscard]] bool isShown() const { return m_uId != 0; }
    [[nodiscard]] const Transform& transform() const { return m_transform; }

private:
    EntityHostI& m_host;
    uint32_t m_uId = 0; ///< 0: there is none
    Transform m_transform;
};

} // namespace tilebuilder
