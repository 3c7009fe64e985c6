#pragma once // Triangles of a model file.

#include "KestrelCommon/Core/Aabb.h"

#include <cstdint>
#include <filesystem>
#include <glm/vec2.hpp>
#include <optional>
#include <string>
#include <vector>

namespace resource
{

/// A run of triangles of one material.
struct ModelPart
{
    std::string sMaterial;
    uint32_t uFirst = 0; ///< index
    uint32_t uCount = 0; ///< indices
};

/// In the file's own units and axes: right-handed, +Y up, quarter metres by custom. The three lists of
/// vertices have the same length; triangles run counter-clockwise seen from the front.
struct Model
{
    std::vector<glm::vec3> vecPositions;
    std::vector<glm::vec3> vecNormals; ///< of length 1
    std::vector<glm::vec2> vecCoords;  ///< (0, 0) is the top left of a picture
    std::vector<uint32_t> vecIndices;  ///< three a triangle, all below the count of vertices
    std::vector<ModelPart> vecParts;   ///< cover all indices in order
    Aabb box;
    bool bStandIn = false;
};

/// Reads .obj, .dae, .fbx and .glb files. nullopt, with the reason in sError: missing, broken, no
/// triangles, above 2 million vertices, or places that aren't finite. Logs nothing. Any thread.
[[nodiscard]] std::optional<Model> loadModel(const std::filesystem::path& path, std::string& sError);

/// A box of 4 units a side that stands on the origin, for a file that can't be read. Its one material has
/// no name.
[[nodiscard]] Model standInModel();

} // namespace resource
