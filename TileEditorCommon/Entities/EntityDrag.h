#pragma once // Dragging the selection by the handles of the transform tool.

#include "TileEditorCommon/Contracts/Entity.h"
#include "TileEditorCommon/Entities/EntityTypeI.h"
#include "TileEditorCommon/Entities/TransformTool.h"

#include <vector>

namespace tilebuilder
{

class Entities;
class EntityRenderI;

/// The scale of a start transform times factors, by the rules of the thing's ScaleFlags.
[[nodiscard]] glm::vec3 scaledBy(const glm::vec3& scale, glm::vec3 factors, uint8_t uScaleFlags);

/// A transform under a drag. In local space the delta acts in the thing's own axes; else it acts in
/// those of the tool and around its centre.
[[nodiscard]] Transform draggedBy(const Transform& start, const TransformDelta& delta, const ToolPose& pose,
                                  uint8_t uScaleFlags, bool bLocal);

/// A drag from beginTransform() over any number of applyTransform() to endTransform(). Each apply
/// counts from where the drag began, so the way that the mouse took doesn't matter.
///
/// Main thread only; borrows the entities.
class EntityDrag
{
public:
    explicit EntityDrag(Entities& entities) : m_entities(entities) {}

    /// Places the tool at the active entity for this frame and looks for the handle under the mouse.
    /// fTanHalfFov: of half the vertical angle of view. bLocal: the axes are those of the active
    /// entity. A scaling tool always shows them, since sizes are along them.
    void updateTool(const glm::vec3& eye, float fTanHalfFov, const ToolRay& mouse, bool bMouseFree,
                    bool bLocal);
    /// Nothing without a selection.
    void draw(EntityRenderI& render) const;

    /// Takes the handle on the ray, if there is one. bClone: copies become the selection and are
    /// dragged; what was selected stays.
    void beginTransform(const ToolRay& ray, bool bClone);
    void applyTransform(const ToolRay& ray, bool bLocal);
    void endTransform();

    /// HandleNone when no drag runs.
    [[nodiscard]] uint8_t activeHandle() const { return m_uActiveHandle; }
    [[nodiscard]] bool isDragging() const { return m_uActiveHandle != HandleNone; }
    [[nodiscard]] uint8_t hoveredHandle() const { return m_uHovered; }
    [[nodiscard]] const TransformTool& tool() const { return m_tool; }

private:
    struct Start
    {
        Entity entity;
        Transform pivot;
        Transform origin;
    };

    void placeTool(const glm::vec3& eye);
    void cloneSelection();
    [[nodiscard]] bool isLocal(bool bLocal) const;
    [[nodiscard]] TransformTool::Snap snap() const;

    Entities& m_entities;
    TransformTool m_tool;    ///< where it is shown
    TransformTool m_atStart; ///< where the drag began; what deltas are measured by
    float m_fTanHalfFov = 0.41421357f;
    bool m_bShowLocal = false;
    uint8_t m_uHovered = HandleNone;
    uint8_t m_uActiveHandle = HandleNone;
    glm::vec3 m_dragPoint{0.0f};
    ToolRay m_dragRay;
    bool m_bMoved = false; ///< the mouse has left the place where it was pressed
    TransformDelta m_delta;
    std::vector<Start> m_vecDragStart; ///< in the order of the selection
};

} // namespace tilebuilder
