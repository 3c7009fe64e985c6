#include "Tools/ContentBuilder/ModelShape.h"

#include "Tools/ContentBuilder/Noise.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <glm/geometric.hpp>
#include <glm/matrix.hpp>

namespace content
{

namespace
{

constexpr float s_fSquare = 14.0f; ///< units that a picture covers
constexpr float s_fTurn = 6.2831853f;

/// By the axis that the normal is nearest to.
glm::vec2 laidOn(const glm::vec3& place, const glm::vec3& normal)
{
    const glm::vec3 a = glm::abs(normal);
    if (a.y >= a.x && a.y >= a.z)
        return glm::vec2(place.x, place.z) / s_fSquare;
    if (a.x >= a.z)
        return glm::vec2(place.z, place.y) / s_fSquare;
    return glm::vec2(place.x, place.y) / s_fSquare;
}

glm::vec3 onRing(float fRadius, float fY, float fTurn)
{
    return {std::cos(fTurn * s_fTurn) * fRadius, fY, -std::sin(fTurn * s_fTurn) * fRadius};
}

/// -1 to 1, smooth over a unit of space.
float noiseAt(const glm::vec3& place, uint32_t uSeed)
{
    constexpr int s_iPeriod = 1024;
    const auto shift = [](float f) { return f + 512.0f; };
    return 0.8f * (gradientNoise(shift(place.x), shift(place.y), s_iPeriod, uSeed) +
                   gradientNoise(shift(place.y), shift(place.z), s_iPeriod, uSeed + 1) +
                   gradientNoise(shift(place.z), shift(place.x), s_iPeriod, uSeed + 2));
}

} // namespace

void ModelShape::material(const std::string& sName, const Paint& paint)
{
    m_sMaterial = sName;
    m_mapPaints[sName] = paint;
}

void ModelShape::add(Corner a, Corner b, Corner c)
{
    const glm::mat3 turn = glm::transpose(glm::inverse(glm::mat3(m_matrix)));
    for (Corner* pCorner : {&a, &b, &c})
    {
        pCorner->place = glm::vec3(m_matrix * glm::vec4(pCorner->place, 1.0f));
        pCorner->normal = glm::normalize(turn * pCorner->normal);
    }
    m_vecTriangles.push_back({{a, b, c}, m_sMaterial});
}

void ModelShape::flat(const glm::vec3& a, const glm::vec3& b, const glm::vec3& c)
{
    const glm::vec3 normal = glm::cross(b - a, c - a);
    if (glm::dot(normal, normal) < 1.0e-10f)
        return;
    const glm::vec3 unit = glm::normalize(normal);
    add({a, unit, laidOn(a, unit)}, {b, unit, laidOn(b, unit)}, {c, unit, laidOn(c, unit)});
}

void ModelShape::flat(const glm::vec3& a, const glm::vec3& b, const glm::vec3& c, const glm::vec3& d)
{
    flat(a, b, c);
    flat(a, c, d);
}

void ModelShape::face(const std::vector<glm::vec3>& vecPoints)
{
    for (size_t u = 1; u + 1 < vecPoints.size(); ++u)
        flat(vecPoints[0], vecPoints[u], vecPoints[u + 1]);
}

void ModelShape::box(const glm::vec3& low, const glm::vec3& high, float fBevel)
{
    const glm::vec3 middle = (low + high) * 0.5f;
    const glm::vec3 half = (high - low) * 0.5f;
    const float fCut = std::min({fBevel, half.x * 0.9f, half.y * 0.9f, half.z * 0.9f});
    // The corner of a side: on the axis at full reach, on the others less the cut.
    const auto corner = [&](int iAxis, const glm::vec3& sign)
    {
        glm::vec3 place = sign * (half - fCut);
        place[iAxis] = sign[iAxis] * half[iAxis];
        return middle + place;
    };
    for (int iAxis = 0; iAxis < 3; ++iAxis)
        for (const float fSide : {-1.0f, 1.0f})
        {
            const int iU = (iAxis + 1) % 3;
            const int iV = (iAxis + 2) % 3;
            const auto at = [&](float fU, float fV)
            {
                glm::vec3 sign;
                sign[iAxis] = fSide;
                sign[iU] = fU * fSide;
                sign[iV] = fV;
                return corner(iAxis, sign);
            };
            flat(at(-1, -1), at(1, -1), at(1, 1), at(-1, 1));
        }
    if (fCut <= 0.0f)
        return;
    for (int iAxis = 0; iAxis < 3; ++iAxis) // the twelve edges run along an axis
        for (const float fU : {-1.0f, 1.0f})
            for (const float fV : {-1.0f, 1.0f})
            {
                const int iU = (iAxis + 1) % 3;
                const int iV = (iAxis + 2) % 3;
                glm::vec3 sign;
                sign[iU] = fU;
                sign[iV] = fV;
                sign[iAxis] = -1.0f;
                const glm::vec3 a = corner(iU, sign);
                const glm::vec3 b = corner(iV, sign);
                sign[iAxis] = 1.0f;
                const glm::vec3 c = corner(iV, sign);
                const glm::vec3 d = corner(iU, sign);
                if (fU * fV > 0.0f)
                    flat(a, b, c, d);
                else
                    flat(d, c, b, a);
            }
    for (int i = 0; i < 8; ++i)
    {
        const glm::vec3 sign(i & 1 ? 1 : -1, i & 2 ? 1 : -1, i & 4 ? 1 : -1);
        if (sign.x * sign.y * sign.z > 0.0f)
            flat(corner(0, sign), corner(1, sign), corner(2, sign));
        else
            flat(corner(2, sign), corner(1, sign), corner(0, sign));
    }
}

void ModelShape::beam(const glm::vec3& from, const glm::vec3& to, float fWidth, float fHeight, float fBevel)
{
    const float fLength = glm::length(to - from);
    const glm::vec3 along = (to - from) / fLength;
    const glm::vec3 side = glm::normalize(
        glm::cross(std::abs(along.y) > 0.99f ? glm::vec3(0, 0, 1) : glm::vec3(0, 1, 0), along));
    const glm::mat4 before = m_matrix;
    m_matrix = before * glm::mat4(glm::vec4(along, 0.0f), glm::vec4(glm::cross(along, side), 0.0f),
                                  glm::vec4(-side, 0.0f), glm::vec4(from, 1.0f));
    box({0, -fHeight * 0.5f, -fWidth * 0.5f}, {fLength, fHeight * 0.5f, fWidth * 0.5f}, fBevel);
    m_matrix = before;
}

void ModelShape::lathe(const std::vector<glm::vec2>& vecProfile, int iSides, float fSharp, float fUneven,
                       uint32_t uSeed)
{
    const size_t uRings = vecProfile.size();
    const auto slope = [&](size_t u) // of the part above ring u: (out, up) of its normal
    {
        const glm::vec2 way = vecProfile[u + 1] - vecProfile[u];
        return glm::length(way) > 1.0e-5f ? glm::normalize(glm::vec2(way.y, -way.x)) : glm::vec2(1, 0);
    };
    const float fEdge = std::cos(fSharp * 0.0174533f);
    float fLong = 0.0f;
    for (size_t u = 0; u + 1 < uRings; ++u)
    {
        const glm::vec2 own = slope(u);
        const auto softened = [&](size_t uOther)
        {
            const glm::vec2 other = slope(uOther);
            return glm::dot(own, other) > fEdge ? glm::normalize(own + other) : own;
        };
        const glm::vec2 low = u > 0 ? softened(u - 1) : own;
        const glm::vec2 high = u + 2 < uRings ? softened(u + 1) : own;
        const float fNext = fLong + glm::length(vecProfile[u + 1] - vecProfile[u]);
        const float fAround = std::max(
            1.0f, std::round(s_fTurn * std::max(vecProfile[u].x, vecProfile[u + 1].x) / s_fSquare * 2) / 2);
        for (int i = 0; i < iSides; ++i)
        {
            const auto corner = [&](size_t uRing, int iSide, const glm::vec2& normal, float fY)
            {
                const float fTurn = static_cast<float>(iSide) / static_cast<float>(iSides);
                const float fOff =
                    1.0f + fUneven * (2.0f * hash(iSide % iSides, static_cast<int>(uRing), uSeed) - 1.0f);
                return Corner{onRing(vecProfile[uRing].x * fOff, vecProfile[uRing].y, fTurn),
                              onRing(normal.x, normal.y, fTurn),
                              {fTurn * fAround, fY / s_fSquare}};
            };
            const Corner a = corner(u, i, low, fLong);
            const Corner b = corner(u, i + 1, low, fLong);
            const Corner c = corner(u + 1, i + 1, high, fNext);
            const Corner d = corner(u + 1, i, high, fNext);
            if (vecProfile[u].x > 1.0e-4f)
                add(a, b, c);
            if (vecProfile[u + 1].x > 1.0e-4f)
                add(a, c, d);
        }
        fLong = fNext;
    }
}

void ModelShape::tube(const std::vector<glm::vec4>& vecPlaces, int iSides)
{
    const size_t uRings = vecPlaces.size();
    glm::vec3 side(0, 0, 1);
    std::vector<std::vector<Corner>> vecRings;
    float fLong = 0.0f;
    for (size_t u = 0; u < uRings; ++u)
    {
        const glm::vec3 here(vecPlaces[u]);
        const glm::vec3 before(vecPlaces[u > 0 ? u - 1 : 0]);
        const glm::vec3 after(vecPlaces[std::min(u + 1, uRings - 1)]);
        const glm::vec3 along = glm::normalize(after - before);
        const glm::vec3 out =
            glm::normalize(std::abs(along.z) > 0.95f ? glm::cross(along, glm::vec3(1, 0, 0))
                                                     : side - along * glm::dot(side, along));
        const glm::vec3 across = glm::cross(along, out);
        side = out;
        fLong += u > 0 ? glm::length(here - before) : 0.0f;
        const float fAround = std::max(1.0f, std::round(s_fTurn * vecPlaces[0].w / s_fSquare * 2) / 2);
        std::vector<Corner> vecRing;
        for (int i = 0; i <= iSides; ++i)
        {
            const float fTurn = static_cast<float>(i) / static_cast<float>(iSides);
            const glm::vec3 normal = out * std::cos(fTurn * s_fTurn) + across * std::sin(fTurn * s_fTurn);
            vecRing.push_back({here + normal * vecPlaces[u].w, normal, {fTurn * fAround, fLong / s_fSquare}});
        }
        vecRings.push_back(std::move(vecRing));
    }
    for (size_t u = 0; u + 1 < uRings; ++u)
        for (size_t i = 0; i < static_cast<size_t>(iSides); ++i)
        {
            add(vecRings[u][i], vecRings[u][i + 1], vecRings[u + 1][i + 1]);
            add(vecRings[u][i], vecRings[u + 1][i + 1], vecRings[u + 1][i]);
        }
    for (size_t i = 1; i + 1 < static_cast<size_t>(iSides); ++i)
    {
        flat(vecRings[0][0].place, vecRings[0][i + 1].place, vecRings[0][i].place);
        flat(vecRings[uRings - 1][0].place, vecRings[uRings - 1][i].place, vecRings[uRings - 1][i + 1].place);
    }
}

void ModelShape::lump(const glm::vec3& middle, const glm::vec3& half, int iCuts, float fRough, float fFacets,
                      uint32_t uSeed, float fFloor)
{
    // An octahedron, each face cut into four again and again.
    std::vector<std::array<glm::vec3, 3>> vecFaces;
    for (int i = 0; i < 8; ++i)
    {
        const glm::vec3 x(i & 1 ? 1 : -1, 0, 0);
        const glm::vec3 y(0, i & 2 ? 1 : -1, 0);
        const glm::vec3 z(0, 0, i & 4 ? 1 : -1);
        if (x.x * y.y * z.z > 0.0f)
            vecFaces.push_back({x, y, z});
        else
            vecFaces.push_back({z, y, x});
    }
    for (int iCut = 0; iCut < iCuts; ++iCut)
    {
        std::vector<std::array<glm::vec3, 3>> vecFiner;
        for (const auto& [a, b, c] : vecFaces)
        {
            const glm::vec3 ab = glm::normalize(a + b);
            const glm::vec3 bc = glm::normalize(b + c);
            const glm::vec3 ca = glm::normalize(c + a);
            vecFiner.insert(vecFiner.end(), {{a, ab, ca}, {ab, b, bc}, {ca, bc, c}, {ab, bc, ca}});
        }
        vecFaces.swap(vecFiner);
    }
    const auto pushed = [&](const glm::vec3& direction)
    {
        const float fOut =
            1.0f + fRough * (noiseAt(direction * 1.3f, uSeed) + 0.45f * noiseAt(direction * 3.1f, uSeed + 7));
        glm::vec3 place = middle + direction * fOut * half;
        place.y = std::max(place.y, fFloor);
        return place;
    };
    const auto smooth = [&](const glm::vec3& direction)
    {
        const glm::vec3 side = glm::normalize(
            glm::cross(direction, std::abs(direction.y) < 0.9f ? glm::vec3(0, 1, 0) : glm::vec3(1, 0, 0)));
        const glm::vec3 up = glm::cross(direction, side);
        const auto at = [&](float s, float u)
        { return pushed(glm::normalize(direction + side * s + up * u)); };
        const glm::vec3 normal = glm::cross(at(0.15f, 0) - at(-0.15f, 0), at(0, 0.15f) - at(0, -0.15f));
        return glm::length(normal) > 1.0e-6f ? glm::normalize(normal) : direction;
    };
    for (const auto& arrFace : vecFaces)
    {
        std::array<Corner, 3> arrCorners{};
        for (size_t u = 0; u < 3; ++u)
            arrCorners[u] = {pushed(arrFace[u]), smooth(arrFace[u]), {}};
        const glm::vec3 across =
            glm::cross(arrCorners[1].place - arrCorners[0].place, arrCorners[2].place - arrCorners[0].place);
        if (glm::dot(across, across) < 1.0e-10f)
            continue;
        const glm::vec3 flatNormal = glm::normalize(across);
        for (Corner& corner : arrCorners)
        {
            corner.coords = laidOn(corner.place, flatNormal);
            corner.normal = glm::normalize(glm::mix(corner.normal, flatNormal, fFacets));
        }
        add(arrCorners[0], arrCorners[1], arrCorners[2]);
    }
}

std::string ModelShape::text() const
{
    std::string sText;
    std::array<char, 128> arrLine{};
    const auto line = [&](const char* pFormat, auto... values)
    {
        std::snprintf(arrLine.data(), arrLine.size(), pFormat, values...);
        sText += arrLine.data();
    };
    std::map<std::string, int> mapPlaces;
    std::map<std::string, int> mapCoords;
    std::map<std::string, int> mapNormals;
    const auto numberOf = [&](std::map<std::string, int>& mapKnown)
    {
        const auto [it, bNew] = mapKnown.try_emplace(arrLine.data(), static_cast<int>(mapKnown.size()) + 1);
        if (bNew)
            sText += it->first;
        return it->second;
    };
    std::map<std::string, std::string> mapFaces;
    for (const Triangle& triangle : m_vecTriangles)
    {
        std::string& sFaces = mapFaces[triangle.sMaterial];
        sFaces += "f";
        for (const Corner& corner : triangle.arrCorners)
        {
            const auto write = [&](const char* pFormat, auto... values)
            { std::snprintf(arrLine.data(), arrLine.size(), pFormat, static_cast<double>(values)...); };
            write("v %.3f %.3f %.3f\n", corner.place.x, corner.place.y, corner.place.z);
            const int iPlace = numberOf(mapPlaces);
            write("vt %.4f %.4f\n", corner.coords.x, corner.coords.y);
            const int iCoords = numberOf(mapCoords);
            write("vn %.3f %.3f %.3f\n", corner.normal.x, corner.normal.y, corner.normal.z);
            const int iNormal = numberOf(mapNormals);
            std::snprintf(arrLine.data(), arrLine.size(), " %d/%d/%d", iPlace, iCoords, iNormal);
            sFaces += arrLine.data();
        }
        sFaces += "\n";
    }
    for (const auto& [sMaterial, sFaces] : mapFaces)
    {
        line("usemtl %s\n", sMaterial.c_str());
        sText += sFaces;
    }
    return sText;
}

std::string ModelShape::renderable(const std::string& sMesh) const
{
    std::string sText = "{\n    \"mesh\": \"" + sMesh + "\",\n    \"materials\": {";
    bool bFirst = true;
    for (const auto& [sName, paint] : m_mapPaints)
    {
        sText += bFirst ? "\n" : ",\n";
        bFirst = false;
        sText += "        \"" + sName + "\": {\"diffuse\": \"" + paint.sMaps + "_dif.png\", \"normal\": \"" +
                 paint.sMaps + "_nor.png\", \"asg\": \"" + paint.sMaps + "_asg.png\"";
        if (!paint.sSlot.empty())
            sText += ", \"colorSlot\": \"" + paint.sSlot + "\"";
        sText += "}";
    }
    return sText + "\n    }\n}\n";
}

} // namespace content
