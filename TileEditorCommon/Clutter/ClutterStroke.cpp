// The stroke of EditorTerrainClutter.

#include "KestrelCommon/Core/Random.h"
#include "TileEditorCommon/Clutter/EditorTerrainClutter.h"
#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Ground/Brush.h"

#include <array>
#include <cmath>
#include <tbb/parallel_for.h>

namespace tilebuilder
{

namespace
{

constexpr int s_iSide = tile::ClutterTileSamples;
constexpr float s_fLeastWeight = 0.001f;

/// Counters in, bits without any order out: two multiplications between shifts (the constants are
/// those of Chris Wellons' search for low bias, 2018).
uint32_t mixed(uint32_t u)
{
    u = (u ^ (u >> 16)) * 0x7FEB352Du;
    u = (u ^ (u >> 15)) * 0x846CA68Bu;
    return u ^ (u >> 16);
}

/// A run of samples of a row, within one cell.
struct Run
{
    float fDx; ///< of the first from the dab's centre, metres
    float fDy;
    int iCount;
    uint32_t uCounter;
};

struct Hit
{
    uint32_t uSample; ///< in the run
    uint32_t uType;   ///< place in the list of types
};

/// Draws for each sample of a run: a hit is a draw below n out of trunc(n / w), and the draw itself then
/// tells the type. Without branches, so that several samples go at once. How many hits there are.
size_t drawHits(const Run& run, const BrushDab& dab, uint32_t uTypes, std::span<Hit, s_iSide> spanHits)
{
    std::array<float, s_iSide> arrWeights;
    std::array<uint32_t, s_iSide> arrPlaces;
    const float fDx0 = run.fDx;
    const float fDy2 = run.fDy * run.fDy;
    const float fInverse = 1.0f / dab.radius;
    const float fRadius2 = dab.radius * dab.radius;
    const float fStrength = dab.strength;
    const auto uCount = static_cast<size_t>(run.iCount);
    for (size_t i = 0; i < uCount; ++i)
    {
        const float fDx = fDx0 + 0.5f * static_cast<float>(static_cast<int32_t>(i));
        arrWeights[i] = std::max(1.0f - std::sqrt(fDx * fDx + fDy2) * fInverse, 0.0f);
    }
    dab.pBrush->falloffRow({arrWeights.data(), uCount});

    const auto iTypes = static_cast<int32_t>(uTypes);
    const auto fTypes = static_cast<float>(iTypes);
    const uint32_t uCounter = run.uCounter;
    for (size_t i = 0; i < uCount; ++i)
    {
        const float fDx = fDx0 + 0.5f * static_cast<float>(static_cast<int32_t>(i));
        const float fWeight = arrWeights[i] * fStrength;
        const auto iOutOf = static_cast<int32_t>(fTypes / std::max(fWeight, s_fLeastWeight));
        const auto uOutOf = static_cast<uint32_t>(std::max(iOutOf, iTypes));
        const uint32_t uDraw = mixed(uCounter + static_cast<uint32_t>(i));
        const auto uPlace = static_cast<uint32_t>(uint64_t{uDraw} * uOutOf >> 32);
        const bool bHit = (fWeight > s_fLeastWeight) & (fDx * fDx + fDy2 <= fRadius2);
        arrPlaces[i] = bHit ? uPlace : ~0u;
    }
    size_t uHits = 0;
    for (size_t i = 0; i < uCount; ++i)
    {
        spanHits[uHits] = {static_cast<uint32_t>(i), arrPlaces[i]};
        uHits += arrPlaces[i] < uTypes;
    }
    return uHits;
}

} // namespace

void EditorTerrainClutter::paint(std::span<const uint8_t> spanTypes, const BrushDab& dab, bool bErase)
{
    if (spanTypes.empty() || !dab.pBrush || !(dab.radius > 0.0f) || m_tileData.empty())
        return;
    const auto trunc = [](float f) { return static_cast<int>(std::clamp(f, -1.0e6f, 1.0e6f)); };
    const int iX0 = std::max(2 * trunc(dab.x - dab.radius - 1.0f), 0);
    const int iY0 = std::max(2 * trunc(dab.y - dab.radius - 1.0f), 0);
    const int iX1 = std::min(s_iSide * m_cellsX - 1, 2 * trunc(dab.x + dab.radius + 1.0f));
    const int iY1 = std::min(s_iSide * m_cellsY - 1, 2 * trunc(dab.y + dab.radius + 1.0f));
    if (iX0 > iX1 || iY0 > iY1)
        return;

    std::array<bool, 256> arrInList{};
    for (const uint8_t uType : spanTypes)
        arrInList[uType] = true;
    arrInList[tile::EmptyClutter] = false;
    const auto uTypes = static_cast<uint32_t>(spanTypes.size());
    const uint32_t uSeed = random32();
    const float fRadius2 = dab.radius * dab.radius;
    std::vector<std::atomic<bool>> vecHit(m_vecCellRevisions.size());

    const auto paintRun = [&](int iY, int iFirst, int iLast)
    {
        std::array<Hit, s_iSide> arrHits;
        const Run run{0.5f * static_cast<float>(iFirst) + 0.25f - dab.x,
                      0.5f * static_cast<float>(iY) + 0.25f - dab.y, iLast - iFirst + 1,
                      uSeed + static_cast<uint32_t>(iY) * 0x9E3779B1u + static_cast<uint32_t>(iFirst)};
        const size_t uHits = drawHits(run, dab, uTypes, arrHits);
        const size_t uCell = cellIndex(iFirst / s_iSide, iY / s_iSide);
        uint8_t* pSamples = m_tileData.data() + uCell * tile::SamplesPerPatch +
                            static_cast<size_t>((iY % s_iSide) * s_iSide + iFirst % s_iSide);
        bool bChanged = false;
        for (const Hit& hit : std::span(arrHits).first(uHits))
        {
            uint8_t& uSample = pSamples[hit.uSample];
            const uint8_t uErased = arrInList[uSample] ? uint8_t{tile::EmptyClutter} : uSample;
            const uint8_t uNew = bErase ? uErased : spanTypes[hit.uType];
            bChanged |= uNew != uSample;
            uSample = uNew;
        }
        if (bChanged)
            vecHit[uCell].store(true, std::memory_order_relaxed);
    };
    tbb::parallel_for(tbb::blocked_range<int>(iY0, iY1 + 1, 64),
                      [&](const auto& rows)
                      {
                          for (int iY = rows.begin(); iY < rows.end(); ++iY)
                          {
                              // What of the row is in the circle, with a sample to spare.
                              const float fDy = 0.5f * static_cast<float>(iY) + 0.25f - dab.y;
                              const float fHalf = std::sqrt(std::max(fRadius2 - fDy * fDy, 0.0f));
                              const int iFrom = std::max(iX0, trunc(2.0f * (dab.x - fHalf)) - 1);
                              const int iTo = std::min(iX1, trunc(2.0f * (dab.x + fHalf)) + 1);
                              for (int iFirst = iFrom; iFirst <= iTo;
                                   iFirst = (iFirst / s_iSide + 1) * s_iSide)
                                  paintRun(iY, iFirst, std::min(iTo, (iFirst / s_iSide + 1) * s_iSide - 1));
                          }
                      });

    bool bAny = false;
    for (size_t uCell = 0; uCell < vecHit.size(); ++uCell)
    {
        if (!vecHit[uCell])
            continue;
        if (!std::exchange(bAny, true))
            ++m_revision;
        m_vecCellRevisions[uCell] = m_revision;
        queueCell(uCell);
    }
    if (bAny)
        m_sink.markChanged(ChangeClutter);
}

} // namespace tilebuilder
