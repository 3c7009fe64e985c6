#pragma once // A picture of plants cut out of nothing.

#include "Tools/ContentBuilder/Canvas.h"

namespace content
{

/// Places are 0 to 1, x to the right, y up; what is drawn later covers what was there.
class Sprite
{
public:
    static constexpr int s_iSide = 256; ///< pixels

    Sprite() : m_vecTexels(static_cast<size_t>(s_iFine) * s_iFine) {}

    struct Blade
    {
        float fX = 0.5f; ///< of the root
        float fY = 0.0f;
        float fTipX = 0.5f;
        float fTipY = 1.0f;
        float fBend = 0.0f;       ///< how far the middle is pushed to the right of the straight line
        float fHalfWidth = 0.01f; ///< at the thickest place, a third up
        bool bRound = false;      ///< a stalk: as wide at the tip
        Colour root;
        Colour tip;
    };
    void blade(const Blade& blade);
    /// The point of a blade's middle line; t: 0 root to 1 tip.
    static void pointOn(const Blade& blade, float t, float& fX, float& fY);

    /// Calls back with the ellipse's own coordinates, -1 to 1, x along fAngle; false: not covered.
    void stamp(float fX, float fY, float fHalfLength, float fHalfWidth, float fAngle,
               const std::function<bool(float x, float y, Colour& colour)>& fnShape);
    void ellipse(float fX, float fY, float fHalfLength, float fHalfWidth, float fAngle, const Colour& colour);
    void fill(const std::function<Colour(float u, float v)>& fnColour);

    /// RGBA bytes, top row first; uncovered texels take the colours around them.
    [[nodiscard]] std::vector<uint8_t> pixels() const;

private:
    static constexpr int s_iOversize = 3;
    static constexpr int s_iFine = s_iSide * s_iOversize;
    struct Texel
    {
        Colour colour;
        bool bCovered = false;
    };

    std::vector<Texel> m_vecTexels; ///< bottom row first
};

} // namespace content
