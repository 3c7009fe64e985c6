#include "Tools/ContentBuilder/Models/Solid.h"

#include "Tools/ContentBuilder/Noise.h"

#include <algorithm>
#include <cmath>
#include <glm/common.hpp>
#include <glm/geometric.hpp>
#include <glm/trigonometric.hpp>
#include <map>

namespace content
{

void Solid::triangle(int a, int b, int c)
{
    vecFaces.push_back({{a, b, c, 0}, 3, false, {}});
}

void Solid::quad(int a, int b, int c, int d)
{
    vecFaces.push_back({{a, b, c, d}, 4, false, {}});
}

void Solid::mappedQuad(const std::array<int, 4>& arrPoints, const std::array<glm::vec2, 4>& arrCoords)
{
    vecFaces.push_back({arrPoints, 4, true, arrCoords});
}

glm::vec3 Solid::faceNormal(const Face& face) const
{
    const auto point = [&](int i)
    { return vecPoints[static_cast<size_t>(face.arrPoints[static_cast<size_t>(i)])]; };
    if (face.iCount == 4)
        return glm::cross(point(2) - point(0), point(3) - point(1));
    return glm::cross(point(1) - point(0), point(2) - point(0));
}

Solid& Solid::move(const glm::vec3& by)
{
    for (glm::vec3& point : vecPoints)
        point += by;
    return *this;
}

Solid& Solid::turn(float fDegrees, const glm::vec3& axis)
{
    const glm::quat rotation = glm::angleAxis(glm::radians(fDegrees), glm::normalize(axis));
    for (glm::vec3& point : vecPoints)
        point = rotation * point;
    return *this;
}

Solid& Solid::scale(const glm::vec3& by)
{
    for (glm::vec3& point : vecPoints)
        point *= by;
    return *this;
}

Solid& Solid::change(const std::function<glm::vec3(const glm::vec3&)>& fnChange)
{
    for (glm::vec3& point : vecPoints)
        point = fnChange(point);
    return *this;
}

Solid& Solid::jitter(float fBy, uint32_t uSeed)
{
    for (size_t u = 0; u < vecPoints.size(); ++u)
        for (int iAxis = 0; iAxis < 3; ++iAxis)
            vecPoints[u][iAxis] += fBy * (2.0f * hash(static_cast<int>(u), iAxis, uSeed) - 1.0f);
    return *this;
}

Solid& Solid::add(const Solid& other)
{
    const int iBase = static_cast<int>(vecPoints.size());
    vecPoints.insert(vecPoints.end(), other.vecPoints.begin(), other.vecPoints.end());
    for (Face face : other.vecFaces)
    {
        for (int& iPoint : face.arrPoints)
            iPoint += iBase;
        vecFaces.push_back(face);
    }
    return *this;
}

Solid& Solid::fit(const glm::vec3& lowest, const glm::vec3& highest)
{
    glm::vec3 from = vecPoints.front();
    glm::vec3 to = from;
    for (const glm::vec3& point : vecPoints)
    {
        from = glm::min(from, point);
        to = glm::max(to, point);
    }
    const glm::vec3 size = glm::max(to - from, glm::vec3(1.0e-4f));
    for (glm::vec3& point : vecPoints)
        point = lowest + (point - from) / size * (highest - lowest);
    return *this;
}

Solid& Solid::mapBox(float fTile, const glm::vec2& offset, int iUpAxis)
{
    for (Face& face : vecFaces)
    {
        const glm::vec3 normal = glm::abs(faceNormal(face));
        const int iSide = normal.x > normal.y && normal.x > normal.z ? 0 : normal.y > normal.z ? 1 : 2;
        const int iUp = iSide == iUpAxis ? (iUpAxis + 1) % 3 : iUpAxis;
        const int iAcross = 3 - iSide - iUp;
        for (int i = 0; i < face.iCount; ++i)
        {
            const glm::vec3& point = vecPoints[static_cast<size_t>(face.arrPoints[static_cast<size_t>(i)])];
            face.arrCoords[static_cast<size_t>(i)] = glm::vec2(point[iAcross], point[iUp]) / fTile + offset +
                                                     glm::vec2(0.37f, 0.0f) * static_cast<float>(iSide);
        }
        face.bMapped = true;
    }
    return *this;
}

Solid boxSolid(const glm::vec3& size, float fBevel)
{
    Solid solid;
    const glm::vec3 half = size * 0.5f;
    if (fBevel <= 0.0f)
    {
        for (int i = 0; i < 8; ++i)
            solid.vecPoints.emplace_back((i & 1) ? half.x : -half.x, (i & 2) ? size.y : 0.0f,
                                         (i & 4) ? half.z : -half.z);
        for (const auto& face :
             {std::array{0, 4, 6, 2}, {1, 3, 7, 5}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 2, 3, 1}, {4, 5, 7, 6}})
            solid.quad(face[0], face[1], face[2], face[3]);
        return solid;
    }
    fBevel = std::min({fBevel, half.x * 0.9f, half.y * 0.9f, half.z * 0.9f});
    // Three points a corner, one on each of the sides that meet there.
    const auto index = [](int iCorner, int iAxis) { return iCorner * 3 + iAxis; };
    for (int iCorner = 0; iCorner < 8; ++iCorner)
        for (int iAxis = 0; iAxis < 3; ++iAxis)
        {
            glm::vec3 point((iCorner & 1) ? half.x : -half.x, (iCorner & 2) ? half.y : -half.y,
                            (iCorner & 4) ? half.z : -half.z);
            for (int i = 0; i < 3; ++i)
                if (i != iAxis)
                    point[i] -= std::copysign(fBevel, point[i]);
            solid.vecPoints.push_back(point + glm::vec3(0.0f, half.y, 0.0f));
        }
    // Made in any winding, then turned to the outside.
    for (int iAxis = 0; iAxis < 3; ++iAxis)
    {
        const int iFirst = 1 << ((iAxis + 1) % 3);
        const int iSecond = 1 << ((iAxis + 2) % 3);
        for (const int iSide : {0, 1 << iAxis})
            solid.quad(index(iSide, iAxis), index(iSide + iFirst, iAxis),
                       index(iSide + iFirst + iSecond, iAxis), index(iSide + iSecond, iAxis));
        const int iOther = (iAxis + 1) % 3;
        const int iThird = (iAxis + 2) % 3;
        for (int i = 0; i < 4; ++i) // the edges along this axis
        {
            const int iStart = ((i & 1) ? 1 << iOther : 0) + ((i & 2) ? 1 << iThird : 0);
            const int iEnd = iStart + (1 << iAxis);
            solid.quad(index(iStart, iOther), index(iEnd, iOther), index(iEnd, iThird),
                       index(iStart, iThird));
        }
    }
    for (int iCorner = 0; iCorner < 8; ++iCorner)
        solid.triangle(index(iCorner, 0), index(iCorner, 1), index(iCorner, 2));
    for (Solid::Face& face : solid.vecFaces)
    {
        glm::vec3 centre(0.0f);
        for (int i = 0; i < face.iCount; ++i)
            centre += solid.vecPoints[static_cast<size_t>(face.arrPoints[static_cast<size_t>(i)])];
        centre = centre / static_cast<float>(face.iCount) - glm::vec3(0.0f, half.y, 0.0f);
        if (glm::dot(solid.faceNormal(face), centre) < 0.0f)
            std::reverse(face.arrPoints.begin(), face.arrPoints.begin() + face.iCount);
    }
    return solid;
}

Solid barSolid(const glm::vec3& from, const glm::vec3& to, const BarShape& shape)
{
    const float fLength = glm::length(to - from);
    Solid solid = boxSolid({shape.fWide, fLength, shape.fHigh}, shape.fBevel);
    Dice dice(shape.uSeed + 17u);
    if (shape.fCrooked > 0.0f)
        solid.change(
            [&](const glm::vec3& point)
            {
                // The same for all points of a corner.
                const int iCorner =
                    (point.x > 0.0f ? 1 : 0) + (point.y > fLength * 0.5f ? 2 : 0) + (point.z > 0.0f ? 4 : 0);
                return point + shape.fCrooked * glm::vec3(hash(iCorner, 0, shape.uSeed) - 0.5f,
                                                          hash(iCorner, 1, shape.uSeed) - 0.5f,
                                                          hash(iCorner, 2, shape.uSeed) - 0.5f);
            });
    const float fU = dice.roll();
    solid.mapBox(6.0f, {fU, dice.roll()}, 1);
    const glm::vec3 along = (to - from) / std::max(fLength, 1.0e-4f);
    glm::vec3 across = glm::cross(along, shape.up);
    if (glm::length(across) < 1.0e-3f)
        across = glm::cross(along, glm::vec3(0.0f, 0.0f, -1.0f));
    if (glm::length(across) < 1.0e-3f)
        across = glm::vec3(1.0f, 0.0f, 0.0f);
    across = glm::normalize(across);
    const glm::vec3 high = glm::cross(across, along);
    return solid.change([&](const glm::vec3& point)
                        { return from + across * point.x + along * point.y + high * point.z; });
}

Solid latheSolid(std::span<const glm::vec2> spanProfile, int iSides, float fTile)
{
    Solid solid;
    float fWidest = 0.0f;
    for (const glm::vec2& point : spanProfile)
    {
        fWidest = std::max(fWidest, point.x);
        for (int i = 0; i < iSides; ++i)
        {
            const float fAngle = 6.2831853f * static_cast<float>(i) / static_cast<float>(iSides);
            solid.vecPoints.emplace_back(std::cos(fAngle) * point.x, point.y, std::sin(fAngle) * point.x);
        }
    }
    const float fRound = std::max(1.0f, std::round(6.2831853f * fWidest / fTile));
    float fAlong = 0.0f;
    for (size_t u = 0; u + 1 < spanProfile.size(); ++u)
    {
        const float fNext = fAlong + glm::distance(spanProfile[u], spanProfile[u + 1]) / fTile;
        for (int i = 0; i < iSides; ++i)
        {
            const int iLow = static_cast<int>(u) * iSides;
            const int iHigh = iLow + iSides;
            const int j = (i + 1) % iSides;
            const float fU = fRound * static_cast<float>(i) / static_cast<float>(iSides);
            const float fV = fRound * static_cast<float>(i + 1) / static_cast<float>(iSides);
            if (spanProfile[u].x <= 0.0f)
                solid.vecFaces.push_back({{iLow + i, iHigh + i, iHigh + j, 0},
                                          3,
                                          true,
                                          {glm::vec2(fU, fAlong), {fU, fNext}, {fV, fNext}, {}}});
            else if (spanProfile[u + 1].x <= 0.0f)
                solid.vecFaces.push_back({{iLow + i, iHigh + i, iLow + j, 0},
                                          3,
                                          true,
                                          {glm::vec2(fU, fAlong), {fU, fNext}, {fV, fAlong}, {}}});
            else
                solid.mappedQuad({iLow + i, iHigh + i, iHigh + j, iLow + j},
                                 {glm::vec2(fU, fAlong), {fU, fNext}, {fV, fNext}, {fV, fAlong}});
        }
        fAlong = fNext;
    }
    return solid;
}

Solid tubeSolid(std::span<const glm::vec3> spanPath, std::span<const float> spanRadii, int iSides,
                float fTile)
{
    Solid solid;
    glm::vec3 side(1.0f, 0.0f, 0.0f);
    const float fRound = std::max(1.0f, std::round(6.2831853f * spanRadii.front() / fTile));
    std::vector<float> vecAlong{0.0f};
    for (size_t u = 0; u < spanPath.size(); ++u)
    {
        const glm::vec3 along =
            glm::normalize(spanPath[std::min(u + 1, spanPath.size() - 1)] - spanPath[u > 0 ? u - 1 : 0]);
        if (std::abs(glm::dot(side, along)) > 0.95f)
            side = {0.0f, 0.0f, 1.0f};
        side = glm::normalize(side - along * glm::dot(side, along));
        const glm::vec3 other = glm::cross(side, along);
        for (int i = 0; i < iSides; ++i)
        {
            const float fAngle = 6.2831853f * static_cast<float>(i) / static_cast<float>(iSides);
            solid.vecPoints.push_back(spanPath[u] +
                                      (side * std::cos(fAngle) + other * std::sin(fAngle)) * spanRadii[u]);
        }
        if (u > 0)
            vecAlong.push_back(vecAlong.back() + glm::distance(spanPath[u], spanPath[u - 1]) / fTile);
    }
    for (size_t u = 0; u + 1 < spanPath.size(); ++u)
        for (int i = 0; i < iSides; ++i)
        {
            const int iLow = static_cast<int>(u) * iSides;
            const int j = (i + 1) % iSides;
            const float fU = fRound * static_cast<float>(i) / static_cast<float>(iSides);
            const float fV = fRound * static_cast<float>(i + 1) / static_cast<float>(iSides);
            solid.mappedQuad({iLow + i, iLow + iSides + i, iLow + iSides + j, iLow + j},
                             {glm::vec2(fU, vecAlong[u]),
                              {fU, vecAlong[u + 1]},
                              {fV, vecAlong[u + 1]},
                              {fV, vecAlong[u]}});
        }
    for (const bool bTop : {false, true}) // fans over the ends
    {
        const size_t uRing = bTop ? spanPath.size() - 1 : 0;
        if (spanRadii[uRing] < 0.02f)
            continue;
        const int iFirst = static_cast<int>(uRing) * iSides;
        const auto iRing = static_cast<int>(solid.vecPoints.size());
        for (int i = 0; i < iSides; ++i)
            solid.vecPoints.push_back(solid.vecPoints[static_cast<size_t>(iFirst + i)]);
        for (int i = 1; i + 1 < iSides; ++i)
        {
            if (bTop)
                solid.triangle(iRing, iRing + i + 1, iRing + i);
            else
                solid.triangle(iRing, iRing + i, iRing + i + 1);
        }
    }
    return solid;
}

Solid extrudedSolid(std::span<const glm::vec2> spanOutline, float fDepth)
{
    Solid solid;
    const int iCount = static_cast<int>(spanOutline.size());
    for (const float fZ : {0.5f * fDepth, -0.5f * fDepth})
        for (const glm::vec2& point : spanOutline)
            solid.vecPoints.emplace_back(point, fZ);
    for (int i = 1; i + 1 < iCount; ++i)
    {
        solid.triangle(0, i, i + 1);
        solid.triangle(iCount, iCount + i + 1, iCount + i);
    }
    for (int i = 0; i < iCount; ++i)
    {
        const int j = (i + 1) % iCount;
        solid.quad(i, i + iCount, j + iCount, j);
    }
    return solid;
}

Solid archSolid(const ArchShape& shape)
{
    Solid solid;
    for (int i = 0; i < shape.iParts; ++i)
    {
        const auto edge = [&](int iEdge)
        {
            const float fAngle =
                glm::radians(shape.fFrom + (shape.fTo - shape.fFrom) * static_cast<float>(iEdge) /
                                               static_cast<float>(shape.iParts));
            return glm::vec2(std::cos(fAngle), std::sin(fAngle));
        };
        const glm::vec2 a = edge(i);
        const glm::vec2 b = edge(i + 1);
        // A keystone stands out a little every other stone.
        const float fOuter = shape.fOuter * (i % 2 == 0 ? 1.0f : 0.97f);
        const std::array arrOutline{a * shape.fInner, a * fOuter, b * fOuter, b * shape.fInner};
        solid.add(extrudedSolid(arrOutline, shape.fDepth * (i % 2 == 0 ? 1.0f : 0.94f)));
    }
    return solid;
}

Solid ballSolid(int iLevel)
{
    Solid solid;
    const float t = 1.6180340f;
    for (const glm::vec3& point :
         {glm::vec3(-1, t, 0), glm::vec3(1, t, 0), glm::vec3(-1, -t, 0), glm::vec3(1, -t, 0),
          glm::vec3(0, -1, t), glm::vec3(0, 1, t), glm::vec3(0, -1, -t), glm::vec3(0, 1, -t),
          glm::vec3(t, 0, -1), glm::vec3(t, 0, 1), glm::vec3(-t, 0, -1), glm::vec3(-t, 0, 1)})
        solid.vecPoints.push_back(glm::normalize(point));
    for (const auto& face : {std::array{0, 11, 5},
                             {0, 5, 1},
                             {0, 1, 7},
                             {0, 7, 10},
                             {0, 10, 11},
                             {1, 5, 9},
                             {5, 11, 4},
                             {11, 10, 2},
                             {10, 7, 6},
                             {7, 1, 8},
                             {3, 9, 4},
                             {3, 4, 2},
                             {3, 2, 6},
                             {3, 6, 8},
                             {3, 8, 9},
                             {4, 9, 5},
                             {2, 4, 11},
                             {6, 2, 10},
                             {8, 6, 7},
                             {9, 8, 1}})
        solid.triangle(face[0], face[1], face[2]);
    for (int i = 0; i < iLevel; ++i)
    {
        std::map<std::pair<int, int>, int> mapMiddles;
        const auto middle = [&](int a, int b)
        {
            const auto [it, bNew] =
                mapMiddles.try_emplace(std::minmax(a, b), static_cast<int>(solid.vecPoints.size()));
            if (bNew)
                solid.vecPoints.push_back(glm::normalize(solid.vecPoints[static_cast<size_t>(a)] +
                                                         solid.vecPoints[static_cast<size_t>(b)]));
            return it->second;
        };
        std::vector<Solid::Face> vecFaces;
        vecFaces.swap(solid.vecFaces);
        for (const Solid::Face& face : vecFaces)
        {
            const auto [a, b, c, unused] = face.arrPoints;
            const int ab = middle(a, b);
            const int bc = middle(b, c);
            const int ca = middle(c, a);
            solid.triangle(a, ab, ca);
            solid.triangle(b, bc, ab);
            solid.triangle(c, ca, bc);
            solid.triangle(ab, bc, ca);
        }
    }
    return solid;
}

void cutFlat(Solid& solid, int iCuts, float fNearest, float fFarthest, uint32_t uSeed)
{
    for (int i = 0; i < iCuts; ++i)
    {
        const glm::vec3 off(hash(i, 1, uSeed) - 0.5f, hash(i, 2, uSeed) - 0.5f, hash(i, 3, uSeed) - 0.5f);
        const glm::vec3 normal = glm::normalize(spreadDirection(i, iCuts) + off * 0.9f);
        const float fAway = blend(fNearest, fFarthest, hash(i, 4, uSeed));
        for (glm::vec3& point : solid.vecPoints)
            point -= normal * std::max(glm::dot(point, normal) - fAway, 0.0f);
    }
}

glm::vec3 spreadDirection(int i, int iCount)
{
    const float fY = 1.0f - 2.0f * (static_cast<float>(i) + 0.5f) / static_cast<float>(iCount);
    const float fAround = std::sqrt(std::max(1.0f - fY * fY, 0.0f));
    const float fAngle = 2.3999632f * static_cast<float>(i); // the golden angle
    return {std::cos(fAngle) * fAround, fY, std::sin(fAngle) * fAround};
}

float spaceNoise(const glm::vec3& place, uint32_t uSeed)
{
    const glm::vec3 floor = glm::floor(place);
    const glm::vec3 part = place - floor;
    const glm::vec3 t = part * part * (3.0f - 2.0f * part);
    float fSum = 0.0f;
    for (int i = 0; i < 8; ++i)
    {
        const glm::ivec3 corner = glm::ivec3(floor) + glm::ivec3(i & 1, (i >> 1) & 1, i >> 2);
        const float fValue = hash(corner.x + 57 * corner.z, corner.y - 131 * corner.z, uSeed);
        fSum += fValue * ((i & 1) ? t.x : 1.0f - t.x) * ((i & 2) ? t.y : 1.0f - t.y) *
                ((i & 4) ? t.z : 1.0f - t.z);
    }
    return 2.0f * fSum - 1.0f;
}

} // namespace content
