#pragma once // A square of ground seen from above, built up from layers and stamps.

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace content
{

/// Display values, 0 to 1.
struct Colour
{
    float r = 0.0f;
    float g = 0.0f;
    float b = 0.0f;
};
[[nodiscard]] Colour mix(const Colour& a, const Colour& b, float t);
[[nodiscard]] Colour scaled(const Colour& colour, float f);
[[nodiscard]] constexpr Colour rgb(int iRed, int iGreen, int iBlue)
{
    return {static_cast<float>(iRed) / 255.0f, static_cast<float>(iGreen) / 255.0f,
            static_cast<float>(iBlue) / 255.0f};
}

struct Texel
{
    Colour colour;
    float fHeight = 0.0f; ///< centimetres
    float fGloss = 0.1f;  ///< 0 to 1
};

/// A shape lying on the ground, in pixels; its own square is x and y from -1 to 1, x along it.
struct Stamp
{
    float fX = 0.0f;
    float fY = 0.0f;
    float fHalfLength = 1.0f;
    float fHalfWidth = 1.0f;
    float fAngle = 0.0f;
};

/// Repeats at its edges: what leaves on one side comes in on the other.
class Canvas
{
public:
    static constexpr int s_iSide = 512; ///< pixels of a map; also the unit of stamps
    static constexpr float s_fMetres = 3.5f;

    Canvas() : m_vecTexels(static_cast<size_t>(s_iFine) * s_iFine) {}

    /// u, v: 0 to 1.
    void fill(const std::function<Texel(float u, float v)>& fnTexel);
    /// Calls the shape at each pixel of its square; false: not covered. Only what is higher than what
    /// lies there stays.
    void stamp(const Stamp& place, const std::function<bool(float x, float y, Texel& texel)>& fnShape);

    [[nodiscard]] const Texel& at(float fX, float fY) const;

    /// The three maps of a material: RGBA bytes, top row first.
    struct Maps
    {
        std::vector<uint8_t> vecDiffuse; ///< colour; height in alpha
        std::vector<uint8_t> vecAsg;     ///< ambient occlusion, gloss; no blue
        std::vector<uint8_t> vecNormal;  ///< slope in red and green; no blue
    };
    /// fRelief scales the slopes, fShade how much of the occlusion darkens the colour itself.
    [[nodiscard]] Maps maps(float fRelief, float fShade) const;

private:
    static constexpr int s_iOversize = 2; ///< painted larger and averaged, so that edges are smooth
    static constexpr int s_iFine = s_iSide * s_iOversize;

    [[nodiscard]] static size_t index(int iX, int iY);
    [[nodiscard]] std::vector<float> blurred(const std::vector<float>& vecValues, int iRadius) const;

    std::vector<Texel> m_vecTexels;
};

} // namespace content
