#include "KestrelCommon/Tile/SurfaceSection.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace tile
{

namespace
{

void writeVertices(const SurfaceGridView& view, int iCellX, int iCellY, int iMip, std::byte* pOut)
{
    const auto uStep = static_cast<size_t>(MipStep[static_cast<size_t>(iMip)]);
    const auto uSide = static_cast<size_t>(vertexSide(iMip));
    const size_t uFirst =
        static_cast<size_t>(iCellY) * CellQuads * view.verticesX() + static_cast<size_t>(iCellX) * CellQuads;
    for (size_t j = 0; j < uSide; ++j)
    {
        const size_t uRow = uFirst + j * uStep * view.verticesX();
        for (size_t i = 0; i < uSide; ++i, pOut += sizeof(VertexRecord))
        {
            const VertexRecord record{view.spanHeights[uRow + i * uStep],
                                      packColor(view.spanColors[uRow + i * uStep])};
            std::memcpy(pOut, &record, sizeof(record));
        }
    }
}

void writeGround(const SurfaceGridView& view, int iCellX, int iCellY, int iMip, std::byte* pOut)
{
    const auto uStep = static_cast<size_t>(MipStep[static_cast<size_t>(iMip)]);
    const auto uSide = static_cast<size_t>(groundSide(iMip));
    const size_t uFirst =
        static_cast<size_t>(iCellY) * CellTexels * view.texelsX() + static_cast<size_t>(iCellX) * CellTexels;
    for (size_t j = 0; j < uSide; ++j)
    {
        const uint32_t* pTexels0 = view.spanTexels0.data() + uFirst + j * uStep * view.texelsX();
        const uint32_t* pTexels1 = view.spanTexels1.data() + uFirst + j * uStep * view.texelsX();
        size_t i = 0;
#ifdef __SSE2__
        for (; uStep == 1 && i + 4 <= uSide; i += 4, pOut += 4 * sizeof(GroundRecord))
        {
            const __m128i words0 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pTexels0 + i));
            const __m128i words1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pTexels1 + i));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(pOut), _mm_unpacklo_epi32(words0, words1));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(pOut) + 1, _mm_unpackhi_epi32(words0, words1));
        }
#endif
        for (; i < uSide; ++i, pOut += sizeof(GroundRecord))
        {
            const GroundRecord record{pTexels0[i * uStep], pTexels1[i * uStep]};
            std::memcpy(pOut, &record, sizeof(record));
        }
    }
}

} // namespace

void splitGroundRecords(const std::byte* pRecords, size_t uCount, uint32_t* pWeights0, uint32_t* pWeights1)
{
    size_t i = 0;
#ifdef __SSE2__
    for (; i + 4 <= uCount; i += 4)
    {
        const auto* pFrom = reinterpret_cast<const float*>(pRecords + i * sizeof(GroundRecord));
        const __m128 first = _mm_loadu_ps(pFrom);
        const __m128 second = _mm_loadu_ps(pFrom + 4);
        _mm_storeu_ps(reinterpret_cast<float*>(pWeights0 + i),
                      _mm_shuffle_ps(first, second, _MM_SHUFFLE(2, 0, 2, 0)));
        _mm_storeu_ps(reinterpret_cast<float*>(pWeights1 + i),
                      _mm_shuffle_ps(first, second, _MM_SHUFFLE(3, 1, 3, 1)));
    }
#endif
    for (; i < uCount; ++i)
    {
        GroundRecord record;
        std::memcpy(&record, pRecords + i * sizeof(record), sizeof(record));
        pWeights0[i] = record.weights0;
        pWeights1[i] = record.weights1;
    }
}

bool writeSurfaceSection(const SurfaceGridView& view, int iCellX, int iCellY, int iMip,
                         std::span<std::byte> spanOut)
{
    if (iCellX < 0 || iCellY < 0 || iCellX >= view.iCellsX || iCellY >= view.iCellsY || iMip < 0 ||
        iMip >= MipCount || spanOut.size() != surfaceSectionSize(iMip))
        return false;
    writeVertices(view, iCellX, iCellY, iMip, spanOut.data());
    const auto uVertices = static_cast<size_t>(vertexSide(iMip) * vertexSide(iMip));
    writeGround(view, iCellX, iCellY, iMip, spanOut.data() + uVertices * sizeof(VertexRecord));
    return true;
}

} // namespace tile
