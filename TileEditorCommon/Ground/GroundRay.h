#pragma once // Rays against the height grid.

#include "TileEditorCommon/Ground/GridRect.h"

#include <cstdint>
#include <glm/vec3.hpp>
#include <optional>
#include <span>
#include <vector>

namespace tilebuilder
{

struct GroundHit
{
    glm::vec3 position{0.0f};
    float fraction = 0.0f; ///< of the way from the start of the ray to its end
};

/// The triangles of a height grid, borrowed: vertices 2 m apart, each quad split as its six
/// indices say (the first one tells the diagonal).
struct GroundMesh
{
    std::span<const float> spanHeights;
    std::span<const uint32_t> spanIndices;
    int iQuadsX = 0;
    int iQuadsY = 0;
};

/// Walks the grid along a ray, over blocks of 16 x 16 quads whose height range it misses at one
/// step. Hits both faces.
class GroundRay
{
public:
    static constexpr int s_iBlockQuads = 16;

    /// Takes in the heights of the blocks that the vertices of a rectangle belong to.
    void updateBounds(const GroundMesh& mesh, const GridRect& vertices);

    /// The first hit between two points, in metres. The bounds must be those of the mesh.
    [[nodiscard]] std::optional<GroundHit> cast(const GroundMesh& mesh, const glm::vec3& from,
                                                const glm::vec3& to) const;

private:
    struct Range
    {
        float fLow = 0.0f;
        float fHigh = 0.0f;
    };
    int m_iBlocksX = 0;
    int m_iBlocksY = 0;
    std::vector<Range> m_vecBlocks;
};

} // namespace tilebuilder
