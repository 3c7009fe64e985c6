#include "KestrelCommon/Tile/SurfaceSection.h"

namespace tile
{

namespace
{

void writeVertices(const SurfaceGridView& view, int iCellX, int iCellY, int iMip, std::byte* pOut)
{
    const auto uStep = static_cast<size_t>(MipStep[static_cast<size_t>(iMip)]);
    const auto uSide = static_cast<size_t>(vertexSide(iMip));
    const size_t uFirst = static_cast<size_t>(iCellY) * CellQuads * view.verticesX() + static_cast<size_t>(iCellX) * CellQuads;
    for (size_t j = 0; j < uSide; ++j)
    {
        const size_t uRow = uFirst + j * uStep * view.verticesX();
        for (size_t i = 0; i < uSide; ++i, pOut += sizeof(VertexRecord))
        {
            const VertexRecord record{view.spanHeights[uRow + i * uStep], packColor(view.spanColors[uRow + i * uStep])};
            std::memcpy(pOut, &record, sizeof(record));
        }
    }
}

void writeGround(const SurfaceGridView& view, int iCellX, int iCellY, int iMip, std::byte* pOut)
{
    const auto uStep = static_cast<size_t>(MipStep[static_cast<size_t>(iMip)]);
    const auto uSide = static_cast<size_t>(groundSide(iMip));
    const size_t uFirst = static_cast<size_t>(iCellY) * CellTexels * view.texelsX() + static_cast<size_t>(iCellX) * CellTexels;
    for (size_t j = 0; j < uSide; ++j)
    {
        const uint32_t* pTexels0 = view.spanTexels0.data() + uFirst + j * uStep * view.texelsX();
        const uint32_t* pTexels1 = view.spanTexels1.data() + uFirst + j * uStep * view.texelsX();
        for (size_t i = 0; i < uSide; ++i, pOut += sizeof(GroundRecord))
        {
            const GroundRecord record{pTexels0[i * uStep], pTexels1[i * uStep]};
            std::memcpy(pOut, &record, sizeof(record));
        }
    }
}

} // namespace

bool writeSurfaceSection(const SurfaceGridView& view, int iCellX, int iCellY, int iMip, std::span<std::byte> spanOut)
{
    if (iCellX < 0 || iCellY < 0 || iCellX >= view.iCellsX || iCellY >= view.iCellsY || iMip < 0 || iMip >= MipCount ||
        spanOut.size() != surfaceSectionSize(iMip))
        return false;
    writeVertices(view, iCellX, iCellY, iMip, spanOut.data());
    const auto uVertices = static_cast<size_t>(vertexSide(iMip) * vertexSide(iMip));
    writeGround(view, iCellX, iCellY, iMip, spanOut.data() + uVertices * sizeof(VertexRecord));
    return true;
}

} // namespace tile
