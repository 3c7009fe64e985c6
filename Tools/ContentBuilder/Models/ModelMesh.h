#pragma once // A model in the making: solids by material, with normals and places on pictures.

#include "Tools/ContentBuilder/Models/Solid.h"

#include <map>
#include <string>

namespace content
{

/// How a solid looks.
struct Look
{
    float fSmooth = 40.0f; ///< degrees: edges between flatter neighbours are rounded
    float fSoft = 0.0f;    ///< 0 to 1, how far all edges are rounded besides
    float fTile = 8.0f;    ///< units a repeat, for faces that aren't mapped
    glm::vec2 offset{0.0f};
};

/// Quarter metres, +Y up, the foot at the origin.
class ModelMesh
{
public:
    struct Corner
    {
        glm::vec3 place;
        glm::vec3 normal;
        glm::vec2 coords; ///< v upwards
    };
    using Triangle = std::array<Corner, 3>;
    using Materials = std::map<std::string, std::vector<Triangle>>;

    void add(const std::string& sMaterial, const Solid& solid, const Look& look = {});
    /// With normals by place instead of by shape.
    void add(const std::string& sMaterial, const Solid& solid,
             const std::function<glm::vec3(const glm::vec3& place, const glm::vec3& normal)>& fnNormal,
             const Look& look = {});
    /// Two flat sides that share their corners' normals.
    void card(const std::string& sMaterial, const std::array<Corner, 4>& arrCorners);
    /// All of another model, moved by a function that keeps distances.
    void add(const ModelMesh& other, const glm::vec3& by, float fDegreesY);

    [[nodiscard]] const Materials& materials() const { return m_mapMaterials; }
    [[nodiscard]] size_t triangleCount() const;
    /// As a Wavefront text.
    [[nodiscard]] std::string text() const;

private:
    Materials m_mapMaterials;
};

} // namespace content
