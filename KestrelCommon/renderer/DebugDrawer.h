#pragma once // Lines in the world: brush outlines, boxes, gizmo aids.

#include "KestrelCommon/Core/Aabb.h"
#include "KestrelCommon/Core/Transform.h"

#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace rend
{

/// Collects the lines of a frame; the renderer draws them. A line lives for one frame: it is added
/// in the frame's update, shown after swap(), gone after the next.
/// Threads: main thread only.
class DebugDrawer
{
public:
    /// As the GPU takes it: one element a line.
    struct Line
    {
        glm::vec3 start; ///< metres
        glm::vec3 end;
        uint32_t uColour; ///< bytes R, G, B, A from the lowest; display values
    };
    static_assert(sizeof(Line) == 28);
    struct SolidVertex
    {
        glm::vec3 place;  ///< metres
        uint32_t uColour; ///< as a line's
    };
    static_assert(sizeof(SolidVertex) == 16);

    /// Room for line vertices, two a line. Lines beyond it are left out, with one warning in a run.
    explicit DebugDrawer(size_t uLineVertices) : m_uMaxLines(uLineVertices / 2) {}

    /// Display colour with alpha, 0 to 1. With bDepthTest it fades where ground hides it; without, it
    /// shows through everything.
    void addLine(const glm::vec3& start, const glm::vec3& end, const glm::vec4& colour,
                 bool bDepthTest = true);
    /// Through all points and back to the first.
    void addLoop(std::span<const glm::vec3> spanPoints, const glm::vec4& colour, bool bDepthTest = true);
    void addBox(const glm::vec3& lowest, const glm::vec3& highest, const glm::vec4& colour,
                bool bDepthTest = true);

    /// Of the thing's own space, placed by the transform. Counts against no room.
    void addOrientedBox(const Transform& transform, const Aabb& box, const glm::vec4& colour);
    /// Three points each, seen from both sides. They lie over the scene and hide one another by depth.
    void addTriangles(std::span<const glm::vec3> spanPoints, const glm::vec4& colour);

    /// Shows what was added since the last swap.
    void swap();

    [[nodiscard]] std::span<const Line> tested() const { return m_shown.vecTested; }
    [[nodiscard]] std::span<const Line> untested() const { return m_shown.vecUntested; }
    [[nodiscard]] std::span<const SolidVertex> solids() const { return m_shown.vecSolids; }
    [[nodiscard]] size_t maxLines() const { return m_uMaxLines; }

private:
    struct Lines
    {
        std::vector<Line> vecTested;
        std::vector<Line> vecUntested;
        std::vector<SolidVertex> vecSolids;
        size_t uCounted = 0; ///< lines that take of the room
    };

    size_t m_uMaxLines;
    Lines m_added;
    Lines m_shown;
};

} // namespace rend
