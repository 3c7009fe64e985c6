#pragma once // Builds the meshes of assets.

#include <array>
#include <cstdint>
#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>
#include <map>
#include <string>
#include <vector>

namespace content
{

/// Y up, origin at the foot, quarter metres. Texture coordinates count squares of 14 units (3.5 m), laid
/// on by the direction that a face looks, or along what is turned on a lathe.
class ModelShape
{
public:
    /// A material of the mesh: the base name of its maps, and the colour slot that tints it, if any.
    struct Paint
    {
        std::string sMaps;
        std::string sSlot;
    };

    /// What comes next is made of it.
    void material(const std::string& sName, const Paint& paint);
    /// What comes next is placed by it.
    void place(const glm::mat4& matrix) { m_matrix = matrix; }

    // Shapes

    /// Edges are cut off by fBevel.
    void box(const glm::vec3& low, const glm::vec3& high, float fBevel = 0.15f);
    /// A beam of a rectangular cross-section; the side of its height looks up as far as it can.
    void beam(const glm::vec3& from, const glm::vec3& to, float fWidth, float fHeight, float fBevel = 0.1f);
    /// Turned around Y: radius and height of each ring, from below. fSharp: above this angle (degrees)
    /// between rings the edge is hard.
    void lathe(const std::vector<glm::vec2>& vecProfile, int iSides, float fSharp = 40.0f,
               float fUneven = 0.0f, uint32_t uSeed = 1);
    /// A tube through places with radii, closed at the ends.
    void tube(const std::vector<glm::vec4>& vecPlaces, int iSides);
    /// A lump: a sphere cut iCuts times, pushed in and out by fRough parts of its size; facets show by
    /// fFacets, 0 smooth to 1 flat. What lies below fFloor is pressed flat.
    void lump(const glm::vec3& middle, const glm::vec3& half, int iCuts, float fRough, float fFacets,
              uint32_t uSeed, float fFloor = -1.0e9f);
    /// Counter-clockwise seen from the front; four points or three.
    void face(const std::vector<glm::vec3>& vecPoints);

    /// As a Wavefront text.
    [[nodiscard]] std::string text() const;
    /// As a ".rend" text for the mesh at a keyed path.
    [[nodiscard]] std::string renderable(const std::string& sMesh) const;
    [[nodiscard]] size_t triangleCount() const { return m_vecTriangles.size(); }

private:
    struct Corner
    {
        glm::vec3 place;
        glm::vec3 normal;
        glm::vec2 coords;
    };
    struct Triangle
    {
        std::array<Corner, 3> arrCorners;
        std::string sMaterial;
    };

    void add(Corner a, Corner b, Corner c);
    void flat(const glm::vec3& a, const glm::vec3& b, const glm::vec3& c);
    void flat(const glm::vec3& a, const glm::vec3& b, const glm::vec3& c, const glm::vec3& d);

    glm::mat4 m_matrix{1.0f};
    std::string m_sMaterial;
    std::map<std::string, Paint> m_mapPaints;
    std::vector<Triangle> m_vecTriangles;
};

} // namespace content
