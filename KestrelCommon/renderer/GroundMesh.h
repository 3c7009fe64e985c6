#pragma once // Draws a large ground in cells, the far ones coarsely.

#include "KestrelCommon/Device/GraphicsDeviceI.h"
#include "KestrelCommon/renderer/TerrainSurfaceBindings.h"

#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>

#include <vector>

namespace rend
{

/// For devices that pay for each triangle. A cell is 32 x 32 quads. Far cells take every 2nd or 4th
/// vertex within and all of them along their border, so that neighbours meet without gaps; cells out of
/// view are left out. Grounds of up to 4 x 4 cells are drawn whole.
/// Main thread only; the device must outlive it.
class GroundMesh
{
public:
    explicit GroundMesh(GraphicsDeviceI& device) : m_device(device) {}
    ~GroundMesh() { m_device.destroyBuffer(m_coarse); }
    GroundMesh(const GroundMesh&) = delete;
    GroundMesh& operator=(const GroundMesh&) = delete;

    /// Pipeline, vertex buffer and textures are bound already.
    void draw(const TerrainSurfaceBindings& ground, const glm::mat4& viewProjection, const glm::vec3& eye);

    /// The triangles of one cell with every iStride-th vertex, 2 or 4, clockwise seen from above.
    static void appendCoarseCell(uint32_t uFirstVertex, uint32_t uVerticesPerRow, int iStride,
                                 std::vector<uint32_t>& vecIndices);

private:
    /// Of neighbouring cells in a row, 0 full to 2 coarsest; 3 is out of view.
    void drawRun(const TerrainSurfaceBindings& ground, int iLevel, uint32_t uRow, uint32_t uFrom,
                 uint32_t uTo);
    void makeCoarse(const TerrainSurfaceBindings& ground);

    GraphicsDeviceI& m_device;
    BufferHandle m_coarse; ///< all cells at stride 2, then all at stride 4
    uint32_t m_uVerticesX = 0;
    uint32_t m_uVerticesY = 0;
    uint32_t m_uCellsX = 0;
    uint32_t m_uCellsY = 0;
};

} // namespace rend
