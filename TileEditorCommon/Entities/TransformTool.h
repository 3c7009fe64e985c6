#pragma once // The handles with which the selection is moved, turned and scaled. No editor, no GPU.

#include <array>
#include <cstdint>
#include <glm/gtc/quaternion.hpp>
#include <glm/vec3.hpp>
#include <optional>
#include <vector>

namespace tilebuilder
{

class EntityRenderI;

/// Numbers of the handles. The first three of each group go by axis: X, Y, Z.
enum TransformHandle : uint8_t
{
    HandleMove = 0,  ///< along an axis
    HandlePlane = 3, ///< in the plane across an axis
    HandleRing = 6,  ///< around an axis
    HandleScale = 9, ///< along an axis
    HandleNone = 13,
};

/// Modes of EditorToolState::transformMode.
enum TransformMode : uint8_t
{
    ModeTranslate = 0,
    ModeRotate = 1,
    ModeScale = 2,
};

/// A segment of the world that starts at the eye.
struct ToolRay
{
    glm::vec3 start{0.0f};
    glm::vec3 end{0.0f};

    bool operator==(const ToolRay&) const = default;
};

struct HandleHit
{
    uint8_t uHandle = HandleNone;
    glm::vec3 point{0.0f}; ///< on the handle, in the world
    float distance = 0.0f; ///< from the start of the ray, metres
};

/// What a drag did so far, in the axes of the tool.
struct TransformDelta
{
    glm::vec3 translation{0.0f}; ///< metres
    glm::quat rotation{1.0f, 0.0f, 0.0f, 0.0f};
    glm::vec3 scale{1.0f}; ///< factors

    bool operator==(const TransformDelta&) const = default;
};

/// Where the tool stands and how large it is.
struct ToolPose
{
    glm::vec3 centre{0.0f};
    glm::quat rotation{1.0f, 0.0f, 0.0f, 0.0f};
    glm::vec3 eye{0.0f};
    float size = 1.0f; ///< metres from the centre to the tip of an arrow

    /// The size that fills the same part of the view from any distance. Tangent of half the vertical
    /// angle of view.
    [[nodiscard]] static float sizeFor(const glm::vec3& centre, const glm::vec3& eye, float fTanHalfFov);

    [[nodiscard]] glm::vec3 axis(int iAxis) const;
    bool operator==(const ToolPose&) const = default;
};

/// Pure maths over a pose. Handles that are seen end-on can neither be seen nor taken: a drag there
/// would have no measure.
class TransformTool
{
public:
    static constexpr float s_fMoveStep = 0.25f;   ///< metres
    static constexpr float s_fScaleSteps = 40.0f; ///< steps of a factor of 1
    static constexpr float s_fTurnStep = 45.0f;   ///< degrees
    static constexpr float s_fGridTurnStep = 90.0f;

    /// Steps that a drag keeps to.
    struct Snap
    {
        bool bOn = false;
        bool bForceGrid = false; ///< something in the selection turns by quarters only
    };

    void setPose(const ToolPose& pose) { m_pose = pose; }
    [[nodiscard]] const ToolPose& pose() const { return m_pose; }

    /// The nearest handle of a mode on the ray. A ring counts on the eye's side of the tool only.
    [[nodiscard]] std::optional<HandleHit> hit(const ToolRay& ray, uint8_t uMode) const;

    /// What a drag from a point on a handle to a ray means; nothing where the ray has no measure, as
    /// when it runs along the handle or away from it.
    [[nodiscard]] std::optional<TransformDelta> delta(uint8_t uHandle, const glm::vec3& dragPoint,
                                                      const ToolRay& ray, const Snap& snap) const;

    /// The handles of a mode; one may be shown as under the mouse or held.
    void draw(EntityRenderI& render, uint8_t uMode, uint8_t uHighlit) const;
    /// How far a drag has gone: the line or the part of the circle.
    void drawDrag(EntityRenderI& render, uint8_t uHandle, const glm::vec3& dragPoint,
                  const TransformDelta& delta) const;

private:
    [[nodiscard]] bool isUsable(uint8_t uHandle) const;
    struct Look;
    void drawHandle(EntityRenderI& render, uint8_t uHandle, const Look& look) const;
    void drawRingHandle(EntityRenderI& render, int iAxis, const Look& look) const;

    [[nodiscard]] std::optional<float> alongLine(const glm::vec3& origin, const glm::vec3& direction,
                                                 const ToolRay& ray) const;
    [[nodiscard]] std::optional<glm::vec3> onPlane(const glm::vec3& origin, const glm::vec3& normal,
                                                   const ToolRay& ray) const;
    [[nodiscard]] std::optional<std::pair<float, float>> alongAxis(int iAxis, const glm::vec3& dragPoint,
                                                                   const ToolRay& ray) const;
    [[nodiscard]] std::optional<float> aroundAxis(int iAxis, const glm::vec3& dragPoint,
                                                  const ToolRay& ray) const;

    ToolPose m_pose;
};

} // namespace tilebuilder
