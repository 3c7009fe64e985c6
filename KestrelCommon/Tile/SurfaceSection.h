#pragma once // A cell's ground at one mip, as bytes.

#include "KestrelCommon/Tile/ColorPack.h"
#include "KestrelCommon/Tile/TileFormat.h"

#include <span>

namespace tile
{

/// Records of a surface section.
struct VertexRecord
{
    float height;
    uint32_t color; ///< red lowest
};
struct GroundRecord
{
    uint32_t weights0; ///< weights 0 to 3, weight 0 lowest
    uint32_t weights1; ///< weights 4 to 7
};

[[nodiscard]] constexpr int vertexSide(int iMip)
{
    return CellQuads / MipStep[static_cast<size_t>(iMip)] + 1;
}
[[nodiscard]] constexpr int groundSide(int iMip)
{
    return CellTexels / MipStep[static_cast<size_t>(iMip)] + 1;
}

/// Bytes of a section: 8 a vertex and 8 a ground sample.
[[nodiscard]] constexpr uint32_t surfaceSectionSize(int iMip)
{
    return 8u *
           static_cast<uint32_t>(vertexSide(iMip) * vertexSide(iMip) + groundSide(iMip) * groundSide(iMip));
}
static_assert(surfaceSectionSize(0) == 42512 && surfaceSectionSize(5) == 104);

/// Parts ground records, at any alignment, into their two words.
void splitGroundRecords(const std::byte* pRecords, size_t uCount, uint32_t* pWeights0, uint32_t* pWeights1);

/// The tile-wide grids, borrowed; rows run along X.
///
/// Shape:   heights and colours (32W + 1) x (32H + 1), 2 m apart; weights (64W + 1) x (64H + 1).
/// Threads: const, so all cell tasks of a write may share a view.
struct SurfaceGridView
{
    int iCellsX = 0;
    int iCellsY = 0;
    std::span<const float> spanHeights;
    std::span<const ColorValue> spanColors;
    std::span<const uint32_t> spanTexels0;
    std::span<const uint32_t> spanTexels1;

    [[nodiscard]] size_t verticesX() const { return static_cast<size_t>(iCellsX) * CellQuads + 1; }
    [[nodiscard]] size_t texelsX() const { return static_cast<size_t>(iCellsX) * CellTexels + 1; }
};

/// Writes every step-th sample of the cell, unfiltered. False: no such cell or mip, or an
/// output that hasn't the section's size.
[[nodiscard]] bool writeSurfaceSection(const SurfaceGridView& view, int iCellX, int iCellY, int iMip,
                                       std::span<std::byte> spanOut);

} // namespace tile
