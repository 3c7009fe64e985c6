#pragma once // The meshes of clutter types.

#include <array>
#include <string>
#include <vector>

namespace content
{

/// The part of a picture that lies on a face.
struct PictureCut
{
    float fLeft = 0.0f;
    float fRight = 1.0f;
    float fLow = 0.0f;
    float fHigh = 1.0f;
};

/// Z up, root at the origin; X and Y in quarter metres, 4 units of Z are the type's height.
class ClutterShape
{
public:
    using Vector = std::array<float, 3>;
    struct Corner
    {
        Vector place;
        float u = 0.0f;
        float v = 0.0f; ///< upwards
        Vector normal{0.0f, 0.0f, 1.0f};
    };
    using Triangle = std::array<Corner, 3>;

    /// An upright rectangle in a direction (degrees), its middle fAway from the centre; the top leans
    /// outwards. Normals point up and a little out, as those of a tuft.
    void upright(float fDegrees, float fAway, float fWidth, float fHigh, float fLean,
                 const PictureCut& cut = {});
    /// A strip that rises from the centre and arches outwards, in iParts parts; the picture's height runs
    /// along it.
    void arch(float fDegrees, float fReach, float fHigh, float fWidth, int iParts, float fDrop);
    /// A flat square around a place.
    void lying(float fX, float fY, float fZ, float fHalf, float fDegrees, float fTiltX, float fTiltY,
               const PictureCut& cut);
    /// A lump of fRings x fSides faces.
    void stone(float fX, float fY, float fHalfX, float fHalfY, float fHigh, float fDegrees, unsigned uSeed,
               const PictureCut& cut);
    /// A splintered bar lying on the ground.
    void chip(float fX, float fY, float fHalfLength, float fHalfWidth, float fHigh, float fDegrees,
              const PictureCut& cut);

    /// What comes after is left out where drawing is slow.
    void endCore() { m_uCore = m_vecTriangles.size(); }

    [[nodiscard]] const std::vector<Triangle>& triangles() const { return m_vecTriangles; }
    /// As a Wavefront text.
    [[nodiscard]] std::string text() const;

private:
    void quad(const Corner& a, const Corner& b, const Corner& c, const Corner& d);
    void flatQuad(Corner a, Corner b, Corner c, Corner d);

    std::vector<Triangle> m_vecTriangles;
    size_t m_uCore = 0; ///< triangles; 0: all
};

} // namespace content
