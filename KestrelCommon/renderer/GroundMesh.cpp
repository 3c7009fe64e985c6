#include "KestrelCommon/renderer/GroundMesh.h"

#include <glm/geometric.hpp>
#include <glm/vec4.hpp>

namespace rend
{

namespace
{

constexpr uint32_t s_uCellQuads = 32;
constexpr uint32_t s_uWholeVertices = 129 * 129; ///< of the largest ground that is drawn whole
constexpr float s_fCellMetres = 64.0f;
// Where hills may reach; the device knows their heights, the renderer doesn't.
constexpr float s_fLowest = -100.0f;
constexpr float s_fHighest = 1000.0f;
constexpr float s_fUsualHeight = 120.0f;
constexpr float s_fFullDistance = 220.0f; ///< metres; 4 m are some 16 pixels there at 720 lines
constexpr float s_fSecondDistance = 650.0f;
constexpr int s_iUnseen = 3;

/// Indices of a cell at stride 2 and 4: blocks along the border are fans around their middle.
constexpr std::array<uint32_t, 2> s_arrCellIndices{(14 * 14 * 2 + 56 * 5 + 4 * 6) * 3,
                                                   (6 * 6 * 2 + 24 * 7 + 4 * 10) * 3};

/// False only when all corners lie beyond one side of the view.
bool isSeen(const glm::mat4& viewProjection, const glm::vec2& low)
{
    std::array<int, 5> arrOutside{};
    for (int iCorner = 0; iCorner < 8; ++iCorner)
    {
        const glm::vec4 clip = viewProjection * glm::vec4(low.x + ((iCorner & 1) ? s_fCellMetres : 0.0f),
                                                          low.y + ((iCorner & 2) ? s_fCellMetres : 0.0f),
                                                          (iCorner & 4) ? s_fHighest : s_fLowest, 1.0f);
        const std::array<bool, 5> arrBeyond{clip.x<-clip.w, clip.x> clip.w, clip.y<-clip.w, clip.y> clip.w,
                                            clip.z < 0.0f};
        for (size_t u = 0; u < arrBeyond.size(); ++u)
            arrOutside[u] += arrBeyond[u] ? 1 : 0;
    }
    return std::find(arrOutside.begin(), arrOutside.end(), 8) == arrOutside.end();
}

int levelOf(const glm::vec3& eye, const glm::vec2& low)
{
    const glm::vec2 nearest = glm::clamp(glm::vec2(eye), low, low + s_fCellMetres);
    const float fDistance = glm::distance(eye, glm::vec3(nearest, std::min(eye.z, s_fUsualHeight)));
    return fDistance < s_fFullDistance ? 0 : fDistance < s_fSecondDistance ? 1 : 2;
}

} // namespace

void GroundMesh::appendCoarseCell(uint32_t uFirstVertex, uint32_t uVerticesPerRow, int iStride,
                                  std::vector<uint32_t>& vecIndices)
{
    const auto iCell = static_cast<int>(s_uCellQuads);
    const auto at = [&](int iX, int iY)
    { return uFirstVertex + static_cast<uint32_t>(iY) * uVerticesPerRow + static_cast<uint32_t>(iX); };
    std::vector<uint32_t> vecRim;
    for (int iY = 0; iY < iCell; iY += iStride)
        for (int iX = 0; iX < iCell; iX += iStride)
        {
            // Counter-clockwise from the lowest corner, a side in steps of one on the cell's border.
            vecRim.clear();
            const auto side = [&](int iFromX, int iFromY, int iDx, int iDy, bool bBorder)
            {
                for (int i = 0; i < iStride; i += bBorder ? 1 : iStride)
                    vecRim.push_back(at(iFromX + i * iDx, iFromY + i * iDy));
            };
            side(iX, iY, 1, 0, iY == 0);
            side(iX + iStride, iY, 0, 1, iX + iStride == iCell);
            side(iX + iStride, iY + iStride, -1, 0, iY + iStride == iCell);
            side(iX, iY + iStride, 0, -1, iX == 0);
            if (vecRim.size() == 4)
            {
                for (const size_t u : {0, 2, 1, 0, 3, 2})
                    vecIndices.push_back(vecRim[u]);
                continue;
            }
            const uint32_t uMiddle = at(iX + iStride / 2, iY + iStride / 2);
            for (size_t u = 0; u < vecRim.size(); ++u)
                for (const uint32_t uVertex : {uMiddle, vecRim[(u + 1) % vecRim.size()], vecRim[u]})
                    vecIndices.push_back(uVertex);
        }
}

void GroundMesh::makeCoarse(const TerrainSurfaceBindings& ground)
{
    m_device.destroyBuffer(m_coarse);
    m_uVerticesX = ground.verticesX;
    m_uVerticesY = ground.verticesY;
    m_uCellsX = (m_uVerticesX - 1) / s_uCellQuads;
    m_uCellsY = (m_uVerticesY - 1) / s_uCellQuads;
    std::vector<uint32_t> vecIndices;
    for (const int iStride : {2, 4})
        for (uint32_t uY = 0; uY < m_uCellsY; ++uY)
            for (uint32_t uX = 0; uX < m_uCellsX; ++uX)
                appendCoarseCell((uY * m_uVerticesX + uX) * s_uCellQuads, m_uVerticesX, iStride, vecIndices);
    const auto spanBytes = std::as_bytes(std::span(vecIndices));
    m_coarse =
        m_device.createBuffer({"Ground coarse index", spanBytes.size(), 4, BufferKind::Index}, spanBytes);
}

void GroundMesh::draw(const TerrainSurfaceBindings& ground, const glm::mat4& viewProjection,
                      const glm::vec3& eye)
{
    const bool bCells = ground.verticesX > 1 && ground.verticesY > 1 &&
                        (ground.verticesX - 1) % s_uCellQuads == 0 &&
                        (ground.verticesY - 1) % s_uCellQuads == 0;
    if (!m_device.isSoftware() || !bCells || ground.verticesX * ground.verticesY <= s_uWholeVertices)
    {
        m_device.setIndexBuffer(ground.indexBuffer, ground.indexWidth);
        m_device.drawIndexed(ground.indexCount, 0);
        return;
    }
    if (ground.verticesX != m_uVerticesX || ground.verticesY != m_uVerticesY || !m_coarse)
        makeCoarse(ground);
    for (uint32_t uRow = 0; uRow < m_uCellsY; ++uRow)
    {
        uint32_t uFrom = 0;
        int iRunLevel = s_iUnseen;
        for (uint32_t uCell = 0; uCell <= m_uCellsX; ++uCell)
        {
            const glm::vec2 low = s_fCellMetres * glm::vec2(uCell, uRow);
            const bool bSeen = uCell < m_uCellsX && isSeen(viewProjection, low);
            const int iLevel = bSeen ? levelOf(eye, low) : s_iUnseen;
            if (iLevel == iRunLevel)
                continue;
            drawRun(ground, iRunLevel, uRow, uFrom, uCell);
            uFrom = uCell;
            iRunLevel = iLevel;
        }
        drawRun(ground, iRunLevel, uRow, uFrom, m_uCellsX);
    }
}

void GroundMesh::drawRun(const TerrainSurfaceBindings& ground, int iLevel, uint32_t uRow, uint32_t uFrom,
                         uint32_t uTo)
{
    if (iLevel == s_iUnseen || uFrom >= uTo)
        return;
    if (iLevel > 0)
    {
        const uint32_t uEach = s_arrCellIndices[static_cast<size_t>(iLevel - 1)];
        const uint32_t uBefore = iLevel == 1 ? 0 : m_uCellsX * m_uCellsY * s_arrCellIndices[0];
        m_device.setIndexBuffer(m_coarse, IndexWidth::Bits32);
        m_device.drawIndexed((uTo - uFrom) * uEach, uBefore + (uRow * m_uCellsX + uFrom) * uEach);
        return;
    }
    // The ground's own triangles run along whole rows of quads.
    m_device.setIndexBuffer(ground.indexBuffer, ground.indexWidth);
    const uint32_t uQuads = (uTo - uFrom) * s_uCellQuads;
    const bool bWholeRows = uQuads == m_uVerticesX - 1;
    for (uint32_t u = 0; u < (bWholeRows ? 1 : s_uCellQuads); ++u)
        m_device.drawIndexed((bWholeRows ? s_uCellQuads : 1) * uQuads * 6,
                             ((uRow * s_uCellQuads + u) * (m_uVerticesX - 1) + uFrom * s_uCellQuads) * 6);
}

} // namespace rend
