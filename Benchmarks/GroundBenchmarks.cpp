// Strokes, the rebuild after them, and the ray that picks the ground.

#include "Benchmarks/BenchTile.h"
#include "Benchmarks/Harness.h"
#include "KestrelCommon/Device/RecordingDevice.h"
#include "TileEditorCommon/Ground/DisplayColor.h"
#include "TileEditorCommon/Ground/GroundUploader.h"

#include <cmath>
#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace
{

using namespace bench;
using tilebuilder::EditorTerrainSurface;
using tilebuilder::GridRect;

constexpr size_t Side = 513;
constexpr size_t Quads = 512;

/// The same surface without any bookkeeping.
struct PlainSurface
{
    std::vector<float> vecHeights;
    std::vector<EditorTerrainSurface::Vertex> vecVertices;
    std::vector<uint32_t> vecIndices;
    std::vector<std::byte> vecVertexUpload;
    std::vector<std::byte> vecIndexUpload;
    std::vector<std::byte> vecTexelUpload0;
    std::vector<std::byte> vecTexelUpload1;

    void normals(size_t uRow)
    {
        const float* pRow = vecHeights.data() + uRow * Side;
        EditorTerrainSurface::Vertex* pVertices = vecVertices.data() + uRow * Side;
        alignas(16) float arrScale[4];
        alignas(16) float arrDx[4];
        alignas(16) float arrDy[4];
        for (size_t i = 1; i < Quads; i += 4)
        {
            const size_t uCount = std::min<size_t>(4, Quads - i);
            for (size_t k = 0; k < uCount; ++k)
            {
                arrDx[k] = pRow[i + k + 1] - pRow[i + k - 1];
                arrDy[k] = pRow[i + k + Side] - pRow[i + k - Side];
            }
#ifdef __SSE2__
            const __m128 dx = _mm_load_ps(arrDx);
            const __m128 dy = _mm_load_ps(arrDy);
            const __m128 sum = _mm_add_ps(_mm_mul_ps(dx, dx), _mm_mul_ps(dy, dy));
            _mm_store_ps(arrScale, _mm_div_ps(_mm_set1_ps(1.0f),
                                              _mm_sqrt_ps(_mm_add_ps(_mm_mul_ps(_mm_set1_ps(16.0f), sum),
                                                                     _mm_set1_ps(256.0f)))));
#else
            for (size_t k = 0; k < uCount; ++k)
                arrScale[k] = 1.0f / std::sqrt(16.0f * (arrDx[k] * arrDx[k] + arrDy[k] * arrDy[k]) + 256.0f);
#endif
            for (size_t k = 0; k < uCount; ++k)
                pVertices[i + k].normal = {-4.0f * arrDx[k] * arrScale[k], -4.0f * arrDy[k] * arrScale[k],
                                           16.0f * arrScale[k]};
        }
    }

    void triangles(size_t uRow)
    {
        const float* pTop = vecHeights.data() + uRow * Side;
        uint32_t* pOut = vecIndices.data() + uRow * Quads * 6;
        for (size_t i = 0; i < Quads; ++i, pOut += 6)
        {
            const auto a = static_cast<uint32_t>(uRow * Side + i);
            const uint32_t b = a + 1, c = a + Side, d = c + 1;
            const bool bBC = std::abs(pTop[i] - pTop[i + Side + 1]) >= std::abs(pTop[i + 1] - pTop[i + Side]);
            pOut[0] = bBC ? c : d;
            pOut[1] = b;
            pOut[2] = a;
            pOut[3] = c;
            pOut[4] = d;
            pOut[5] = bBC ? b : a;
        }
    }

    template <class Texels>
    void rebuild(const Texels& texels0, const Texels& texels1)
    {
        tbb::parallel_for(tbb::blocked_range<size_t>(0, Side, 32),
                          [&](const auto& range)
                          {
                              for (size_t j = range.begin(); j < range.end(); ++j)
                              {
                                  if (j > 0 && j < Quads)
                                      normals(j);
                                  if (j < Quads)
                                      triangles(j);
                              }
                          });
        std::memcpy(vecVertexUpload.data(), vecVertices.data(), vecVertexUpload.size());
        std::memcpy(vecIndexUpload.data(), vecIndices.data(), vecIndexUpload.size());
        std::memcpy(vecTexelUpload0.data(), texels0.data(), vecTexelUpload0.size());
        std::memcpy(vecTexelUpload1.data(), texels1.data(), vecTexelUpload1.size());
    }
};

PlainSurface copyOf(const EditorTerrainSurface& surface)
{
    PlainSurface plain;
    plain.vecHeights.assign(surface.heights().begin(), surface.heights().end());
    plain.vecVertices.assign(surface.vertices().begin(), surface.vertices().end());
    plain.vecIndices.assign(surface.indices().begin(), surface.indices().end());
    plain.vecVertexUpload.resize(surface.vertices().size_bytes());
    plain.vecIndexUpload.resize(surface.indices().size_bytes());
    plain.vecTexelUpload0.resize(surface.texels0().size_bytes());
    plain.vecTexelUpload1.resize(surface.texels1().size_bytes());
    return plain;
}

/// Makes everything of a surface stale, without changing it.
void touchAll(BenchTile& world)
{
    std::vector<std::vector<std::byte>> vecCells;
    std::vector<tilebuilder::CellSection> vecSections;
    for (int iCell = 0; iCell < TileCells * TileCells; ++iCell)
    {
        vecCells.emplace_back(tile::surfaceSectionSize(0));
        static_cast<void>(tile::writeSurfaceSection(world.surface.grids(), iCell % TileCells,
                                                    iCell / TileCells, 0, vecCells.back()));
    }
    for (int iCell = 0; iCell < TileCells * TileCells; ++iCell)
        vecSections.push_back({iCell % TileCells, iCell / TileCells, vecCells[static_cast<size_t>(iCell)]});
    world.surface.readCells(vecSections);
}

int rebuilds(BenchTile& world)
{
    rend::RecordingDevice device;
    rend::TerrainSurfaceBindings bindings;
    tilebuilder::GroundUploader uploader(device);
    EditorTerrainSurface& surface = world.surface;
    uploader.upload(surface, bindings);
    PlainSurface plain = copyOf(surface);
    const auto floor = [&] { plain.rebuild(surface.texels0(), surface.texels1()); };
    const auto product = [&]
    {
        surface.rebuild();
        uploader.upload(surface, bindings);
        device.clearCalls();
    };
    const auto equal = [&]
    {
        const auto& vecVertices = device.buffer(bindings.vertexBuffer)->vecBytes;
        const auto& vecIndices = device.buffer(bindings.indexBuffer)->vecBytes;
        return std::memcmp(vecVertices.data(), surface.vertices().data(), vecVertices.size()) == 0 &&
               std::memcmp(vecVertices.data(), plain.vecVertexUpload.data(), vecVertices.size()) == 0 &&
               vecIndices == plain.vecIndexUpload;
    };
    int iMissed = !run({.sName = "surface rebuild, 513 x 513",
                        .fLimit = 1.5,
                        .fnFloor = floor,
                        .fnProduct = product,
                        .fnEqual = equal,
                        .fnBeforeProduct = [&] { touchAll(world); }});

    float fSign = 1.0f;
    const auto stroke = [&](float fRadius)
    {
        surface.raise(world.dab(500.0f, 520.0f, fRadius, 0.5f), fSign);
        fSign = -fSign;
    };
    iMissed += !run({.sName = "rebuild and upload after a dab of 12.5 m",
                     .fLimit = 0.3,
                     .fnFloor = product,
                     .fnProduct = product,
                     .fnEqual =
                         [&]
                     {
                         plain.vecHeights.assign(surface.heights().begin(), surface.heights().end());
                         for (size_t i = 0; i < plain.vecVertices.size(); ++i)
                             plain.vecVertices[i].height = plain.vecHeights[i];
                         floor();
                         return equal();
                     },
                     .fnBeforeFloor = [&] { touchAll(world); },
                     .fnBeforeProduct = [&] { stroke(12.5f); }});
    for (const float fRadius : {12.5f, 50.0f})
        iMissed +=
            !run({.sName = "dab, rebuild and upload, " + std::to_string(static_cast<int>(fRadius)) + " m",
                  .fLimit = 1.0e9,
                  .fnFloor = [] {},
                  .fnProduct =
                      [&]
                  {
                      stroke(fRadius);
                      product();
                  },
                  .fMaxMs = 8.0});
    for (const float fRadius : {12.5f, 50.0f})
        iMissed += !run(
            {.sName = "smooth dab, rebuild and upload, " + std::to_string(static_cast<int>(fRadius)) + " m",
             .fLimit = 1.0e9,
             .fnFloor = [] {},
             .fnProduct =
                 [&]
             {
                 surface.smooth(world.dab(500.0f, 520.0f, fRadius, 0.5f));
                 product();
             },
             .fMaxMs = 8.0});
    return iMissed;
}

/// The vertices that a dab may change, with the loop everyone would write.
template <class Function>
void plainDab(const tilebuilder::BrushDab& dab, const Function& fnVertex)
{
    const int iX0 = std::max(static_cast<int>((dab.x - dab.radius - 8.0f) / 2.0f), 0);
    const int iY0 = std::max(static_cast<int>((dab.y - dab.radius - 8.0f) / 2.0f), 0);
    const int iX1 = std::min(static_cast<int>((dab.x + dab.radius + 8.0f) / 2.0f), static_cast<int>(Quads));
    const int iY1 = std::min(static_cast<int>((dab.y + dab.radius + 8.0f) / 2.0f), static_cast<int>(Quads));
    for (int j = std::max(iY0, 1); j < iY1; ++j)
        for (int i = std::max(iX0, 1); i < iX1; ++i)
        {
            const float fDx = static_cast<float>(i) * 2.0f - dab.x;
            const float fDy = static_cast<float>(j) * 2.0f - dab.y;
            const float fDistance = std::sqrt(fDx * fDx + fDy * fDy);
            if (fDistance <= dab.radius)
                fnVertex(static_cast<size_t>(i), static_cast<size_t>(j),
                         dab.pBrush->falloff(std::max(1.0f - fDistance / dab.radius, 0.0f)) * dab.strength);
        }
}

bool near(std::span<const float> spanA, std::span<const float> spanB, float fBy)
{
    for (size_t i = 0; i < spanA.size(); ++i)
        if (!(std::abs(spanA[i] - spanB[i]) <= fBy))
            return false;
    return true;
}

int heightDabs(BenchTile& world)
{
    int iMissed = 0;
    for (const float fRadius : {12.5f, 50.0f, 500.0f})
    {
        PlainSurface plain = copyOf(world.surface);
        const auto dab = world.dab(500.0f, 520.0f, fRadius, 0.1f);
        const int iRepeat = fRadius < 20.0f ? 200 : fRadius < 100.0f ? 20 : 1;
        iMissed += !run({.sName = "Height dab, " + std::to_string(static_cast<int>(fRadius)) + " m",
                         .fLimit = 1.5,
                         .fnFloor =
                             [&]
                         {
                             plainDab(dab,
                                      [&](size_t i, size_t j, float w)
                                      {
                                          float& fHeight = plain.vecHeights[j * Side + i];
                                          fHeight = std::max(fHeight + w, -95.0f);
                                          plain.vecVertices[j * Side + i].height = fHeight;
                                      });
                         },
                         .fnProduct = [&] { world.surface.raise(dab, 1.0f); },
                         .fnEqual = [&] { return near(plain.vecHeights, world.surface.heights(), 1.0e-3f); },
                         .iRepeat = iRepeat});
    }
    return iMissed;
}

/// The separated form, straight from its formula: running box sums in double, 4k terms a vertex.
struct PlainSmooth
{
    std::vector<float> vecHeights;
    std::vector<float> vecTargets = std::vector<float>(Side * Side);
    std::vector<double> vecRows = std::vector<double>(Side * Side);    ///< R
    std::vector<double> vecColumns = std::vector<double>(Side * Side); ///< C

    void dab(const tilebuilder::BrushDab& dab)
    {
        const float r = dab.radius / 4.0f;
        const int k = static_cast<int>(std::min(r + 1.0f, 513.0f));
        const double fSigma = static_cast<double>(r) / 3.0;
        std::vector<double> g(static_cast<size_t>(2 * k));
        std::vector<double> prefix(static_cast<size_t>(2 * k) + 1);
        for (int d = -k; d < k; ++d)
            g[static_cast<size_t>(d + k)] = std::exp(-0.5 / (fSigma * fSigma) * d * d) / (2.5066283 * fSigma);
        for (size_t i = 0; i < g.size(); ++i)
            prefix[i + 1] = prefix[i] + g[i];
        const int iSide = static_cast<int>(Side);
        const int iX0 = std::max(static_cast<int>((dab.x - dab.radius) / 2.0f), 1);
        const int iY0 = std::max(static_cast<int>((dab.y - dab.radius) / 2.0f), 1);
        const int iX1 = std::min(static_cast<int>((dab.x + dab.radius) / 2.0f) + 1, iSide - 1);
        const int iY1 = std::min(static_cast<int>((dab.y + dab.radius) / 2.0f) + 1, iSide - 1);
        const int iWindowX0 = std::max(iX0 - k, 0), iWindowX1 = std::min(iX1 + k, iSide);
        const int iWindowY0 = std::max(iY0 - k, 0), iWindowY1 = std::min(iY1 + k, iSide);
        const auto h = [&](int i, int j)
        { return static_cast<double>(vecHeights[static_cast<size_t>(j) * Side + static_cast<size_t>(i)]); };
        tbb::parallel_for(iWindowY0, iWindowY1,
                          [&](int v)
                          {
                              double fSum = 0.0;
                              for (int u = std::max(iX0 - k, 0); u < std::min(iX0 + k, iSide); ++u)
                                  fSum += h(u, v);
                              for (int i = iX0; i < iX1; ++i)
                              {
                                  vecRows[static_cast<size_t>(v) * Side + static_cast<size_t>(i)] = fSum;
                                  if (i + k < iSide)
                                      fSum += h(i + k, v);
                                  if (i - k >= 0)
                                      fSum -= h(i - k, v);
                              }
                          });
        for (int u = iWindowX0; u < iWindowX1; ++u)
        {
            double fSum = 0.0;
            for (int v = std::max(iY0 - k, 0); v < std::min(iY0 + k, iSide); ++v)
                fSum += h(u, v);
            vecColumns[static_cast<size_t>(iY0) * Side + static_cast<size_t>(u)] = fSum;
        }
        for (int j = iY0 + 1; j < iY1; ++j)
            for (int u = iWindowX0; u < iWindowX1; ++u)
            {
                double fSum = vecColumns[static_cast<size_t>(j - 1) * Side + static_cast<size_t>(u)];
                if (j - 1 + k < iSide)
                    fSum += h(u, j - 1 + k);
                if (j - 1 - k >= 0)
                    fSum -= h(u, j - 1 - k);
                vecColumns[static_cast<size_t>(j) * Side + static_cast<size_t>(u)] = fSum;
            }
        tbb::parallel_for(iY0, iY1,
                          [&](int j)
                          {
                              for (int i = iX0; i < iX1; ++i)
                              {
                                  const float fDx = static_cast<float>(i) * 2.0f - dab.x;
                                  const float fDy = static_cast<float>(j) * 2.0f - dab.y;
                                  if (fDx * fDx + fDy * fDy > dab.radius * dab.radius)
                                      continue;
                                  const int u0 = std::max(i - k, 0), u1 = std::min(i + k, iSide);
                                  const int v0 = std::max(j - k, 0), v1 = std::min(j + k, iSide);
                                  double fSum = 0.0;
                                  for (int u = u0; u < u1; ++u)
                                      fSum +=
                                          g[static_cast<size_t>(u - i + k)] *
                                          vecColumns[static_cast<size_t>(j) * Side + static_cast<size_t>(u)];
                                  for (int v = v0; v < v1; ++v)
                                      fSum += g[static_cast<size_t>(v - j + k)] *
                                              vecRows[static_cast<size_t>(v) * Side + static_cast<size_t>(i)];
                                  const double fWeights =
                                      (v1 - v0) * (prefix[static_cast<size_t>(u1 - i + k)] -
                                                   prefix[static_cast<size_t>(u0 - i + k)]) +
                                      (u1 - u0) * (prefix[static_cast<size_t>(v1 - j + k)] -
                                                   prefix[static_cast<size_t>(v0 - j + k)]);
                                  vecTargets[static_cast<size_t>(j) * Side + static_cast<size_t>(i)] =
                                      static_cast<float>(fSum / fWeights);
                              }
                          });
        plainDab(dab,
                 [&](size_t i, size_t j, float w)
                 {
                     float& fHeight = vecHeights[j * Side + i];
                     fHeight = (1.0f - w) * fHeight + w * vecTargets[j * Side + i];
                 });
    }
};

int smoothDabs(BenchTile& world)
{
    int iMissed = 0;
    for (const float fRadius : {12.5f, 50.0f, 500.0f, 5000.0f})
    {
        PlainSmooth plain;
        plain.vecHeights.assign(world.surface.heights().begin(), world.surface.heights().end());
        const auto dab = world.dab(500.0f, 520.0f, fRadius, 0.05f);
        const int iRepeat = fRadius < 20.0f ? 50 : 1;
        iMissed += !run({.sName = "Smooth dab, " + std::to_string(static_cast<int>(fRadius)) + " m",
                         .fLimit = 2.0,
                         .fnFloor = [&] { plain.dab(dab); },
                         .fnProduct = [&] { world.surface.smooth(dab); },
                         .fnEqual = [&] { return near(plain.vecHeights, world.surface.heights(), 1.0e-3f); },
                         .iRepeat = iRepeat,
                         .fMaxMs = 50.0});
    }
    return iMissed;
}

/// Steps from quad to quad and tests two triangles where the ray comes low enough.
double plainRay(const EditorTerrainSurface& surface, const glm::vec3& from, const glm::vec3& to)
{
    const auto spanHeights = surface.heights();
    const auto spanIndices = surface.indices();
    const double fX = static_cast<double>(from.x) / 2.0, fY = static_cast<double>(from.y) / 2.0,
                 fZ = static_cast<double>(from.z);
    const double fDx = static_cast<double>(to.x) / 2.0 - fX, fDy = static_cast<double>(to.y) / 2.0 - fY,
                 fDz = static_cast<double>(to.z) - fZ;
    int iX = static_cast<int>(fX), iY = static_cast<int>(fY);
    double fNextX = (iX + (fDx > 0.0 ? 1 : 0) - fX) / fDx, fNextY = (iY + (fDy > 0.0 ? 1 : 0) - fY) / fDy;
    const double fStepX = std::abs(1.0 / fDx), fStepY = std::abs(1.0 / fDy);
    double fT = 0.0;
    while (iX >= 0 && iY >= 0 && iX < static_cast<int>(Quads) && iY < static_cast<int>(Quads) && fT < 1.0)
    {
        const double fLeave = std::min({fNextX, fNextY, 1.0});
        const size_t uA = static_cast<size_t>(iY) * Side + static_cast<size_t>(iX);
        const double a = spanHeights[uA], b = spanHeights[uA + 1], c = spanHeights[uA + Side],
                     d = spanHeights[uA + Side + 1];
        const double fLow = fZ + fDz * (fDz < 0.0 ? fLeave : fT),
                     fHigh = fZ + fDz * (fDz < 0.0 ? fT : fLeave);
        if (fLow <= std::max({a, b, c, d}) && fHigh >= std::min({a, b, c, d}))
        {
            const bool bBC =
                spanIndices[(static_cast<size_t>(iY) * Quads + static_cast<size_t>(iX)) * 6] == uA + Side;
            for (int iTriangle = 0; iTriangle < 2; ++iTriangle)
            {
                const bool bFirst = iTriangle == 0;
                const double fBase = bBC && !bFirst ? b + c - d : a;
                const double fU = bBC ? (bFirst ? b - a : d - c) : (bFirst ? b - a : d - c);
                const double fV = bBC ? (bFirst ? c - a : d - b) : (bFirst ? d - b : c - a);
                const double fSlope = fDz - fDx * fU - fDy * fV;
                const double fHit = -(fZ - fBase - (fX - iX) * fU - (fY - iY) * fV) / fSlope;
                const double u = fX + fDx * fHit - iX, v = fY + fDy * fHit - iY;
                const bool bInside =
                    bBC ? (bFirst ? u + v <= 1.0 : u + v >= 1.0) : (bFirst ? u >= v : u <= v);
                if (fHit >= fT && fHit <= fLeave && bInside)
                    return fHit;
            }
        }
        fT = fLeave;
        if (fNextX < fNextY)
        {
            iX += fDx > 0.0 ? 1 : -1;
            fNextX += fStepX;
        }
        else
        {
            iY += fDy > 0.0 ? 1 : -1;
            fNextY += fStepY;
        }
    }
    return -1.0;
}

int rays(BenchTile& world)
{
    // Along the diagonal, just over the highest ground: everything is walked and nothing hit.
    const float fTop = *std::ranges::max_element(world.surface.heights());
    const float fBottom = *std::ranges::min_element(world.surface.heights());
    const glm::vec3 from{0.5f, 0.7f, fTop + 0.1f}, to{1023.5f, 1022.9f, fTop + 0.05f};
    const glm::vec3 lower{0.5f, 0.7f, fTop + 1.0f}, deeper{1023.5f, 1022.9f, (fTop + fBottom) * 0.5f};
    double fPlain = 0.0;
    int iMissed = !run({.sName = "ground ray, worst case",
                        .fLimit = 2.0,
                        .fnFloor = [&] { keep(fPlain = plainRay(world.surface, from, to)); },
                        .fnProduct = [&] { keep(world.surface.castRay(from, to)); },
                        .fnEqual = [&] { return (fPlain < 0.0) == !world.surface.castRay(from, to); },
                        .iRepeat = 100});
    iMissed +=
        !run({.sName = "ground ray, through the hills",
              .fLimit = 2.0,
              .fnFloor = [&] { keep(fPlain = plainRay(world.surface, lower, deeper)); },
              .fnProduct = [&] { keep(world.surface.castRay(lower, deeper)); },
              .fnEqual =
                  [&]
              {
                  const auto hit = world.surface.castRay(lower, deeper);
                  return hit ? std::abs(static_cast<double>(hit->fraction) - fPlain) < 1.0e-6 : fPlain < 0.0;
              },
              .iRepeat = 100});
    return iMissed;
}

int ground()
{
    BenchTile world;
    return rebuilds(world) + heightDabs(world) + smoothDabs(world) + rays(world);
}

const Registration s_ground(&ground);

} // namespace
