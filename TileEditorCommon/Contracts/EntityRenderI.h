#pragma once // What entities ask of the view in a frame: icons, boxes, handles.

#include "KestrelCommon/Core/Transform.h"

#include <cstdint>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>
#include <span>

namespace tilebuilder
{

/// An icon that faces the eye.
struct Billboard
{
    glm::vec3 position{0.0f}; ///< metres, of its middle
    float size = 1.0f;        ///< metres on a side
    glm::vec3 color{1.0f};    ///< display values, 0 to 1, times the image
    float alpha = 1.0f;
    uint32_t layer = 0; ///< of the image array: a gizmo handle
};

/// Colours are display values with alpha, 0 to 1. Lines, boxes and triangles live for one frame: what is
/// drawn in the frame's update shows in the picture after it, and not in the next. Billboards stay until
/// the next endBillboards().
///
/// Order of the picture: scene, billboards, lines, triangles. Triangles hide one another by depth, but
/// nothing else hides them.
/// Threads: main thread only.
class EntityRenderI
{
public:
    virtual ~EntityRenderI() = default;

    /// Drops what was added since the last endBillboards().
    virtual void beginBillboards() = 0;
    virtual void addBillboard(const Billboard& billboard) = 0;
    /// Shows what was added in place of what was shown before.
    virtual void endBillboards() = 0;

    /// Lines on the plane of a transform's x and y, that far apart in metres; stays until hideGrid().
    virtual void showGrid(const Transform& plane, float fSpacing) = 0;
    virtual void hideGrid() = 0;

    /// With bOnTop nothing in the scene hides it; else it fades where it is hidden.
    virtual void drawLine(const glm::vec3& start, const glm::vec3& end, const glm::vec4& color,
                          bool bOnTop) = 0;

    /// The edges of a box of the object's own space, scaled, turned and moved by the transform; fades
    /// where it is hidden.
    virtual void drawOrientedBox(const Transform& transform, const glm::vec3& lowest,
                                 const glm::vec3& highest, const glm::vec4& color) = 0;

    /// Filled, on top of the scene; three points each, seen from both sides.
    virtual void drawTriangles(std::span<const glm::vec3> spanPoints, const glm::vec4& color) = 0;
};

} // namespace tilebuilder
