#pragma once // The mesh of a clutter type.

#include "KestrelCommon/Core/Aabb.h"
#include "KestrelCommon/renderer/ClutterInstance.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace rend
{

/// Z up, root at the origin. X and Y in quarter metres; 4 units of Z are the height of the type.
struct ClutterMesh
{
    std::vector<ClutterVertex> vecVertices;
    std::vector<uint16_t> vecIndices; ///< triangles, counter-clockwise is front
    uint32_t uCoreIndices = 0;        ///< the first of them, which do where a CPU draws
    Aabb box;
};

/// Reads the "v", "vt", "vn" and "f" lines of a Wavefront text; polygons become fans, and the first line
/// "g more" ends the core. Nothing, with one
/// line, when a line is broken, a face refers to nothing, or there are above 65535 vertices.
[[nodiscard]] std::optional<ClutterMesh> parseClutterMesh(std::string_view sText, std::string_view sName);

/// The same from a file of at most 4 MiB.
[[nodiscard]] std::optional<ClutterMesh> loadClutterMesh(const std::filesystem::path& path);

/// A cross of two upright squares, for a mesh that can't be loaded.
[[nodiscard]] ClutterMesh defaultClutterMesh();

} // namespace rend
