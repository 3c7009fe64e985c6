#include "Tools/ContentBuilder/Models/ModelMesh.h"

#include <cmath>
#include <cstdio>
#include <glm/common.hpp>
#include <glm/geometric.hpp>
#include <glm/trigonometric.hpp>
#include <tuple>

namespace content
{

namespace
{

using Key = std::tuple<int, int, int>;

Key keyOf(const glm::vec3& place)
{
    const glm::ivec3 whole(glm::round(place * 500.0f));
    return {whole.x, whole.y, whole.z};
}

glm::vec3 unit(const glm::vec3& v)
{
    const float fLength = glm::length(v);
    return fLength > 1.0e-8f ? v / fLength : glm::vec3(0.0f, 1.0f, 0.0f);
}

} // namespace

void ModelMesh::add(const std::string& sMaterial, const Solid& solid, const Look& look)
{
    add(sMaterial, solid, {}, look);
}

void ModelMesh::add(const std::string& sMaterial, const Solid& solid,
                    const std::function<glm::vec3(const glm::vec3&, const glm::vec3&)>& fnNormal,
                    const Look& look)
{
    Solid mapped = solid;
    mapped.mapBox(look.fTile, look.offset);
    std::map<Key, std::vector<size_t>> mapFaces;
    std::vector<glm::vec3> vecNormals;
    for (size_t u = 0; u < solid.vecFaces.size(); ++u)
    {
        const Solid::Face& face = solid.vecFaces[u];
        vecNormals.push_back(solid.faceNormal(face));
        for (int i = 0; i < face.iCount; ++i)
            mapFaces[keyOf(solid.vecPoints[static_cast<size_t>(face.arrPoints[static_cast<size_t>(i)])])]
                .push_back(u);
    }
    const float fLimit = std::cos(glm::radians(look.fSmooth));
    std::vector<Triangle>& vecOut = m_mapMaterials[sMaterial];
    for (size_t u = 0; u < solid.vecFaces.size(); ++u)
    {
        const Solid::Face& face = solid.vecFaces[u];
        const glm::vec3 own = unit(vecNormals[u]);
        std::array<Corner, 4> arrCorners{};
        for (int i = 0; i < face.iCount; ++i)
        {
            const auto uCorner = static_cast<size_t>(i);
            const glm::vec3& place = solid.vecPoints[static_cast<size_t>(face.arrPoints[uCorner])];
            glm::vec3 near(0.0f);
            glm::vec3 all(0.0f);
            for (const size_t uOther : mapFaces[keyOf(place)])
            {
                all += vecNormals[uOther];
                if (glm::dot(unit(vecNormals[uOther]), own) >= fLimit)
                    near += vecNormals[uOther];
            }
            glm::vec3 normal = unit(glm::mix(unit(near), unit(all), look.fSoft));
            if (glm::dot(normal, own) < 0.1f)
                normal = own;
            if (fnNormal)
                normal = unit(fnNormal(place, normal));
            arrCorners[uCorner] = {place, normal,
                                   (face.bMapped ? face : mapped.vecFaces[u]).arrCoords[uCorner]};
        }
        for (int i = 2; i < face.iCount; ++i)
        {
            const Triangle triangle{arrCorners[0], arrCorners[static_cast<size_t>(i - 1)],
                                    arrCorners[static_cast<size_t>(i)]};
            const glm::vec3 cross =
                glm::cross(triangle[1].place - triangle[0].place, triangle[2].place - triangle[0].place);
            if (glm::length(cross) > 1.0e-4f) // what was cut away has no area
                vecOut.push_back(triangle);
        }
    }
}

void ModelMesh::card(const std::string& sMaterial, const std::array<Corner, 4>& c)
{
    std::vector<Triangle>& vecOut = m_mapMaterials[sMaterial];
    for (const auto& [i, j, k] : {std::tuple{0u, 1u, 2u}, {0u, 2u, 3u}, {2u, 1u, 0u}, {3u, 2u, 0u}})
        vecOut.push_back({c[i], c[j], c[k]});
}

void ModelMesh::add(const ModelMesh& other, const glm::vec3& by, float fDegreesY)
{
    const glm::quat rotation = glm::angleAxis(glm::radians(fDegreesY), glm::vec3(0.0f, 1.0f, 0.0f));
    for (const auto& [sMaterial, vecTriangles] : other.m_mapMaterials)
        for (Triangle triangle : vecTriangles)
        {
            for (Corner& corner : triangle)
            {
                corner.place = rotation * corner.place + by;
                corner.normal = rotation * corner.normal;
            }
            m_mapMaterials[sMaterial].push_back(triangle);
        }
}

size_t ModelMesh::triangleCount() const
{
    size_t uCount = 0;
    for (const auto& [sMaterial, vecTriangles] : m_mapMaterials)
        uCount += vecTriangles.size();
    return uCount;
}

std::string ModelMesh::text() const
{
    std::string sText = "# Y up; quarter metres\n";
    std::string sFaces;
    std::map<std::string, size_t> mapLines;
    std::array<size_t, 3> arrCounts{};
    const auto line = [&](size_t uKind, const char* pFormat, const glm::vec3& value)
    {
        std::array<char, 96> arrLine{};
        std::snprintf(arrLine.data(), arrLine.size(), pFormat, static_cast<double>(value.x) + 0.0,
                      static_cast<double>(value.y) + 0.0, static_cast<double>(value.z) + 0.0);
        const auto [it, bNew] = mapLines.try_emplace(arrLine.data(), arrCounts[uKind] + 1);
        if (bNew)
        {
            ++arrCounts[uKind];
            sText += arrLine.data();
        }
        return it->second;
    };
    for (const auto& [sMaterial, vecTriangles] : m_mapMaterials)
    {
        sFaces += "usemtl " + sMaterial + "\n";
        for (const Triangle& triangle : vecTriangles)
        {
            sFaces += 'f';
            for (const Corner& corner : triangle)
                sFaces += ' ' + std::to_string(line(0, "v %.2f %.2f %.2f\n", corner.place)) + '/' +
                          std::to_string(line(1, "vt %.3f %.3f\n", {corner.coords, 0.0f})) + '/' +
                          std::to_string(line(2, "vn %.2f %.2f %.2f\n", corner.normal));
            sFaces += '\n';
        }
    }
    return sText + sFaces;
}

} // namespace content
