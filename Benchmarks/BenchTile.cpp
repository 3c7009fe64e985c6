#include "Benchmarks/BenchTile.h"

#include <cmath>

namespace bench
{

namespace
{

float hashed(int iX, int iY)
{
    auto u = static_cast<uint32_t>(iX) * 0x9E3779B1u ^ static_cast<uint32_t>(iY) * 0x85EBCA77u;
    u = (u ^ u >> 15) * 0x2C1B3C6Du;
    u = (u ^ u >> 12) * 0x297A2D39u;
    return static_cast<float>((u ^ u >> 15) >> 8) / static_cast<float>(1 << 24);
}

float smoothNoise(float fX, float fY)
{
    const int iX = static_cast<int>(std::floor(fX));
    const int iY = static_cast<int>(std::floor(fY));
    const auto ease = [](float t) { return t * t * (3.0f - 2.0f * t); };
    const float u = ease(fX - std::floor(fX));
    const float v = ease(fY - std::floor(fY));
    return (hashed(iX, iY) * (1 - u) + hashed(iX + 1, iY) * u) * (1 - v) +
           (hashed(iX, iY + 1) * (1 - u) + hashed(iX + 1, iY + 1) * u) * v;
}

float height(int iX, int iY)
{
    float fSum = 0.0f;
    float fAmplitude = 60.0f;
    float fScale = 1.0f / 128.0f;
    for (int i = 0; i < 7; ++i, fAmplitude *= 0.5f, fScale *= 2.0f)
        fSum += fAmplitude *
                (smoothNoise(static_cast<float>(iX) * fScale, static_cast<float>(iY) * fScale) - 0.5f);
    return fSum;
}

std::vector<std::byte> groundCell(int iCellX, int iCellY)
{
    std::vector<std::byte> vecCell(tile::surfaceSectionSize(0));
    std::byte* pOut = vecCell.data();
    for (int j = 0; j < 33; ++j)
        for (int i = 0; i < 33; ++i, pOut += 8)
        {
            const tile::VertexRecord record{height(iCellX * 32 + i, iCellY * 32 + j), 0xFFFFFFFF};
            std::memcpy(pOut, &record, 8);
        }
    return vecCell;
}

} // namespace

BenchTile::BenchTile() : TileWorld(TileCells, TileCells)
{
    std::vector<std::vector<std::byte>> vecCells;
    std::vector<tilebuilder::CellSection> vecSections;
    for (int iCell = 0; iCell < TileCells * TileCells; ++iCell)
        vecCells.push_back(groundCell(iCell % TileCells, iCell / TileCells));
    for (int iCell = 0; iCell < TileCells * TileCells; ++iCell)
        vecSections.push_back({iCell % TileCells, iCell / TileCells, vecCells[static_cast<size_t>(iCell)]});
    surface.readCells(vecSections);

    const auto at = [](int i, int iSeed) { return hashed(i, iSeed) * 1024.0f; };
    for (int i = 0; i < 120; ++i)
        surface.paintColor({hashed(i, 1), hashed(i, 2), hashed(i, 3), 1.0f},
                           dab(at(i, 4), at(i, 5), 10.0f + hashed(i, 6) * 70.0f, 0.8f));
    for (int i = 0; i < 200; ++i)
        surface.paintMaterial(i % 8, false, dab(at(i, 7), at(i, 8), 8.0f + hashed(i, 9) * 60.0f, 0.9f));

    std::vector<std::vector<uint8_t>> vecClutter(
        TileCells * TileCells, std::vector<uint8_t>(tile::SamplesPerPatch, tile::EmptyClutter));
    for (int i = 0; i < 250; ++i)
    {
        const float fX = at(i, 10) * 2.0f;
        const float fY = at(i, 11) * 2.0f;
        const float fRadius = 20.0f + hashed(i, 12) * 100.0f;
        for (int y = std::max(0, static_cast<int>(fY - fRadius)); y < std::min(2047.0f, fY + fRadius); ++y)
            for (int x = std::max(0, static_cast<int>(fX - fRadius)); x < std::min(2047.0f, fX + fRadius);
                 ++x)
                if (std::hypot(static_cast<float>(x) - fX, static_cast<float>(y) - fY) < fRadius &&
                    hashed(x, y + i) < 0.2f)
                    vecClutter[static_cast<size_t>((y / 128) * TileCells + x / 128)]
                              [static_cast<size_t>((y % 128) * 128 + x % 128)] = static_cast<uint8_t>(i % 3);
    }
    for (int iCell = 0; iCell < TileCells * TileCells; ++iCell)
        clutter.setSamples(iCell % TileCells, iCell / TileCells, vecClutter[static_cast<size_t>(iCell)]);
    surface.rebuild();
}

std::vector<std::array<std::vector<std::byte>, 7>> BenchTile::rawSections() const
{
    std::vector<std::array<std::vector<std::byte>, 7>> vecAll(TileCells * TileCells);
    for (int iCell = 0; iCell < TileCells * TileCells; ++iCell)
        for (int iSection = 0; iSection < 7; ++iSection)
        {
            ByteStream stream;
            if (iSection < 6)
                surface.writeCell(stream, iCell % TileCells, iCell / TileCells, iSection);
            else
                clutter.writeCell(stream, iCell % TileCells, iCell / TileCells);
            vecAll[static_cast<size_t>(iCell)][static_cast<size_t>(iSection)].assign(stream.bytes().begin(),
                                                                                     stream.bytes().end());
        }
    return vecAll;
}

} // namespace bench
