#pragma once // Polygons in space: the shapes that models are put together from.

#include <array>
#include <functional>
#include <glm/gtc/quaternion.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <span>
#include <vector>

namespace content
{

/// Points and faces of three or four corners, counter-clockwise seen from the front. Quarter metres, +Y up.
struct Solid
{
    struct Face
    {
        std::array<int, 4> arrPoints{};
        int iCount = 0;
        bool bMapped = false; ///< has places on the picture of its own
        std::array<glm::vec2, 4> arrCoords{};
    };

    std::vector<glm::vec3> vecPoints;
    std::vector<Face> vecFaces;

    void triangle(int a, int b, int c);
    void quad(int a, int b, int c, int d);
    void mappedQuad(const std::array<int, 4>& arrPoints, const std::array<glm::vec2, 4>& arrCoords);
    [[nodiscard]] glm::vec3 faceNormal(const Face& face) const; ///< length: twice the area of a triangle

    Solid& move(const glm::vec3& by);
    Solid& move(float fX, float fY, float fZ) { return move(glm::vec3(fX, fY, fZ)); }
    /// Degrees about an axis through the origin.
    Solid& turn(float fDegrees, const glm::vec3& axis);
    Solid& turnX(float fDegrees) { return turn(fDegrees, {1.0f, 0.0f, 0.0f}); }
    Solid& turnY(float fDegrees) { return turn(fDegrees, {0.0f, 1.0f, 0.0f}); }
    Solid& turnZ(float fDegrees) { return turn(fDegrees, {0.0f, 0.0f, 1.0f}); }
    Solid& scale(const glm::vec3& by); ///< factors above 0
    Solid& change(const std::function<glm::vec3(const glm::vec3&)>& fnChange);
    /// Moves each point by up to that much on each axis.
    Solid& jitter(float fBy, uint32_t uSeed);
    Solid& add(const Solid& other);
    /// Moves and stretches it so that it fills the box.
    Solid& fit(const glm::vec3& lowest, const glm::vec3& highest);

    /// Lays a picture over all faces from the nearest of the six sides, as it stands now; a repeat each
    /// fTile units, upwards along the given axis.
    Solid& mapBox(float fTile, const glm::vec2& offset, int iUpAxis = 1);
};

/// Stands on the origin; fBevel cuts its edges.
[[nodiscard]] Solid boxSolid(const glm::vec3& size, float fBevel = 0.0f);

/// A bar from one point to another, fWide across and fHigh along "up"; the picture's grain runs along it.
/// uSeed picks the place on the picture and how crooked it is.
struct BarShape
{
    float fWide = 1.0f;
    float fHigh = 1.0f;
    float fBevel = 0.0f;
    float fCrooked = 0.0f; ///< how far its corners may be off
    uint32_t uSeed = 0;
    glm::vec3 up{0.0f, 1.0f, 0.0f};
};
[[nodiscard]] Solid barSolid(const glm::vec3& from, const glm::vec3& to, const BarShape& shape);

/// A profile of (radius, height) turned about Y, from the bottom up. Closed where its radius is 0.
[[nodiscard]] Solid latheSolid(std::span<const glm::vec2> spanProfile, int iSides, float fTile = 8.0f);

/// A round bar along a path. Its ends are closed flat.
[[nodiscard]] Solid tubeSolid(std::span<const glm::vec3> spanPath, std::span<const float> spanRadii,
                              int iSides, float fTile = 8.0f);

/// A convex outline in X and Y, counter-clockwise, drawn out along Z around the origin.
[[nodiscard]] Solid extrudedSolid(std::span<const glm::vec2> spanOutline, float fDepth);

/// An arch of flat stones over an opening: inner and outer radius, from one angle to another (degrees, 0 at
/// +X, 90 up), drawn out along Z around the origin.
struct ArchShape
{
    float fInner = 4.0f;
    float fOuter = 5.5f;
    float fFrom = 0.0f;
    float fTo = 180.0f;
    int iParts = 9;
    float fDepth = 2.0f;
};
[[nodiscard]] Solid archSolid(const ArchShape& shape);

/// A ball of radius 1 around the origin of 20 * 4^level triangles.
[[nodiscard]] Solid ballSolid(int iLevel);

/// Pushes what lies beyond flat cuts at random back onto them, in directions all around; distances from
/// the origin, for a solid about 1 in size.
void cutFlat(Solid& solid, int iCuts, float fNearest, float fFarthest, uint32_t uSeed);

/// The direction of the i-th of iCount points spread evenly over a sphere.
[[nodiscard]] glm::vec3 spreadDirection(int i, int iCount);

/// Smooth noise in space, -1 to 1, waves of about one unit.
[[nodiscard]] float spaceNoise(const glm::vec3& place, uint32_t uSeed);

} // namespace content
