#include "Tools/ContentBuilder/ClutterShapes.h"

#include "Tools/ContentBuilder/Noise.h"

#include <cmath>
#include <cstdio>
#include <map>

namespace content
{

namespace
{

using Vector = ClutterShape::Vector;

constexpr float s_fDegree = 3.14159265f / 180.0f;

Vector unit(const Vector& v)
{
    const float fLength = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
    return fLength > 0.0f ? Vector{v[0] / fLength, v[1] / fLength, v[2] / fLength} : Vector{0.0f, 0.0f, 1.0f};
}

Vector cross(const Vector& a, const Vector& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Vector minus(const Vector& a, const Vector& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

} // namespace

void ClutterShape::quad(const Corner& a, const Corner& b, const Corner& c, const Corner& d)
{
    m_vecTriangles.push_back({a, b, c});
    m_vecTriangles.push_back({a, c, d});
}

void ClutterShape::flatQuad(Corner a, Corner b, Corner c, Corner d)
{
    Vector normal = unit(cross(minus(c.place, a.place), minus(d.place, b.place)));
    if (normal[2] < 0.0f) // seen from above, whatever its winding
        normal = {-normal[0], -normal[1], -normal[2]};
    for (Corner* pCorner : {&a, &b, &c, &d})
        pCorner->normal = normal;
    quad(a, b, c, d);
}

void ClutterShape::upright(float fDegrees, float fAway, float fWidth, float fHigh, float fLean,
                           const PictureCut& cut)
{
    const float fCosine = std::cos(fDegrees * s_fDegree);
    const float fSine = std::sin(fDegrees * s_fDegree);
    const auto corner = [&](float fSide, bool bTop)
    {
        const float fOut = fAway + (bTop ? fLean : 0.0f);
        const float fAlong = fSide * fWidth * 0.5f;
        return Corner{
            {-fSine * fAlong + fCosine * fOut, fCosine * fAlong + fSine * fOut, bTop ? fHigh : -0.25f},
            fSide < 0.0f ? cut.fLeft : cut.fRight,
            bTop ? cut.fHigh : cut.fLow,
            unit({0.35f * fCosine * (bTop ? 1.0f : 0.4f) - 0.25f * fSine * fSide,
                  0.35f * fSine * (bTop ? 1.0f : 0.4f) + 0.25f * fCosine * fSide, 1.0f})};
    };
    quad(corner(-1.0f, false), corner(1.0f, false), corner(1.0f, true), corner(-1.0f, true));
}

void ClutterShape::arch(float fDegrees, float fReach, float fHigh, float fWidth, int iParts, float fDrop)
{
    const float fCosine = std::cos(fDegrees * s_fDegree);
    const float fSine = std::sin(fDegrees * s_fDegree);
    const auto corner = [&](float fSide, float t)
    {
        const float fOut = fReach * t;
        const float fUp = fHigh * (1.0f - (1.0f - t) * (1.0f - t)) - fDrop * t * t * t;
        const float fAlong = fSide * fWidth * 0.5f;
        return Corner{{fCosine * fOut - fSine * fAlong, fSine * fOut + fCosine * fAlong, fUp - 0.1f},
                      0.5f + 0.5f * fSide,
                      t,
                      unit({0.5f * fCosine * t - 0.2f * fSine * fSide,
                            0.5f * fSine * t + 0.2f * fCosine * fSide, 1.0f})};
    };
    for (int i = 0; i < iParts; ++i)
    {
        const float t0 = static_cast<float>(i) / static_cast<float>(iParts);
        const float t1 = static_cast<float>(i + 1) / static_cast<float>(iParts);
        quad(corner(-1.0f, t0), corner(1.0f, t0), corner(1.0f, t1), corner(-1.0f, t1));
    }
}

void ClutterShape::lying(float fX, float fY, float fZ, float fHalf, float fDegrees, float fTiltX,
                         float fTiltY, const PictureCut& cut)
{
    const float fCosine = std::cos(fDegrees * s_fDegree);
    const float fSine = std::sin(fDegrees * s_fDegree);
    const auto corner = [&](float x, float y)
    {
        return Corner{{fX + fHalf * (fCosine * x - fSine * y), fY + fHalf * (fSine * x + fCosine * y),
                       fZ + fTiltX * x + fTiltY * y},
                      x < 0.0f ? cut.fLeft : cut.fRight,
                      y < 0.0f ? cut.fLow : cut.fHigh};
    };
    flatQuad(corner(-1, -1), corner(1, -1), corner(1, 1), corner(-1, 1));
}

void ClutterShape::stone(float fX, float fY, float fHalfX, float fHalfY, float fHigh, float fDegrees,
                         unsigned uSeed, const PictureCut& cut)
{
    constexpr int s_iSides = 5;
    const float fTurn = fDegrees * s_fDegree;
    // Two rings and a top; the lower ring stands in the ground.
    const auto corner = [&](int iRing, int iSide)
    {
        const int iWrapped = iSide % s_iSides;
        const float fAngle =
            (static_cast<float>(iWrapped) + 0.5f * hash(iWrapped, iRing, uSeed)) * 6.2831853f / s_iSides;
        const float fOut = (iRing == 0 ? 1.0f : 0.72f) * (0.85f + 0.3f * hash(iWrapped, iRing + 7, uSeed));
        const float x = std::cos(fAngle) * fOut * fHalfX;
        const float y = std::sin(fAngle) * fOut * fHalfY;
        const float fUp = iRing == 0 ? -0.5f : fHigh * (0.6f + 0.3f * hash(iWrapped, iRing + 3, uSeed));
        const float fAround = static_cast<float>(iSide) / s_iSides;
        return Corner{{fX + std::cos(fTurn) * x - std::sin(fTurn) * y,
                       fY + std::sin(fTurn) * x + std::cos(fTurn) * y, fUp},
                      blend(cut.fLeft, cut.fRight, fAround),
                      blend(cut.fLow, cut.fHigh, iRing == 0 ? 0.05f : 0.55f)};
    };
    Corner top = {{fX, fY, fHigh}, 0.5f * (cut.fLeft + cut.fRight), cut.fHigh, {0.0f, 0.0f, 1.0f}};
    const auto normalOf = [&](Corner& c) {
        c.normal = unit({(c.place[0] - fX) / fHalfX, (c.place[1] - fY) / fHalfY, 0.25f + c.place[2] / fHigh});
    };
    for (int iSide = 0; iSide < s_iSides; ++iSide)
    {
        std::array<Corner, 4> arr = {corner(0, iSide), corner(0, iSide + 1), corner(1, iSide + 1),
                                     corner(1, iSide)};
        for (Corner& c : arr)
            normalOf(c);
        quad(arr[0], arr[1], arr[2], arr[3]);
        m_vecTriangles.push_back({arr[3], arr[2], top});
    }
}

void ClutterShape::chip(float fX, float fY, float fHalfLength, float fHalfWidth, float fHigh, float fDegrees,
                        const PictureCut& cut)
{
    const float fCosine = std::cos(fDegrees * s_fDegree);
    const float fSine = std::sin(fDegrees * s_fDegree);
    const auto corner = [&](float x, float y, float fUp, float u, float v)
    {
        return Corner{{fX + fCosine * x * fHalfLength - fSine * y * fHalfWidth,
                       fY + fSine * x * fHalfLength + fCosine * y * fHalfWidth, fUp},
                      blend(cut.fLeft, cut.fRight, u),
                      blend(cut.fLow, cut.fHigh, v)};
    };
    // A roof over the ground, thinner and lower at its ends.
    for (const float fSide : {-1.0f, 1.0f})
    {
        Corner a = corner(-fSide, fSide * -0.6f, -0.3f, 0.0f, 0.0f);
        Corner b = corner(fSide, fSide * -0.5f, -0.3f, 1.0f, 0.0f);
        Corner c = corner(fSide * 0.85f, 0.0f, fHigh * 0.75f, 0.95f, 1.0f);
        Corner d = corner(-fSide * 0.9f, 0.0f, fHigh, 0.05f, 1.0f);
        flatQuad(a, b, c, d);
    }
    m_vecTriangles.push_back({corner(1.0f, -0.5f, -0.3f, 0.0f, 0.0f), corner(1.0f, 0.5f, -0.3f, 0.1f, 0.0f),
                              corner(0.85f, 0.0f, fHigh * 0.75f, 0.05f, 0.4f)});
    m_vecTriangles.push_back({corner(-1.0f, 0.6f, -0.3f, 0.0f, 0.0f), corner(-1.0f, -0.6f, -0.3f, 0.1f, 0.0f),
                              corner(-0.9f, 0.0f, fHigh, 0.05f, 0.4f)});
}

std::string ClutterShape::text() const
{
    std::string sText = "# Z up; quarter metres, 4 along Z are the type's height\n";
    std::string sFaces;
    std::map<std::string, size_t> mapLines;
    std::array<size_t, 3> arrCounts{};
    const auto place = [&](size_t uKind, const char* pFormat, const std::array<float, 3>& value)
    {
        std::array<char, 96> arrLine{};
        std::snprintf(arrLine.data(), arrLine.size(), pFormat, static_cast<double>(value[0]),
                      static_cast<double>(value[1]), static_cast<double>(value[2]));
        const auto [it, bNew] = mapLines.try_emplace(arrLine.data(), arrCounts[uKind] + 1);
        if (bNew)
        {
            ++arrCounts[uKind];
            sText += arrLine.data();
        }
        return it->second;
    };
    for (const Triangle& triangle : m_vecTriangles)
    {
        if (m_uCore > 0 && &triangle == m_vecTriangles.data() + m_uCore)
            sFaces += "g more\n";
        sFaces += 'f';
        for (const Corner& corner : triangle)
        {
            const size_t uPlace = place(0, "v %.3f %.3f %.3f\n", corner.place);
            const size_t uTexture = place(1, "vt %.4f %.4f\n", {corner.u, corner.v, 0.0f});
            const size_t uNormal = place(2, "vn %.3f %.3f %.3f\n", corner.normal);
            sFaces +=
                ' ' + std::to_string(uPlace) + '/' + std::to_string(uTexture) + '/' + std::to_string(uNormal);
        }
        sFaces += '\n';
    }
    return sText + sFaces;
}

} // namespace content
