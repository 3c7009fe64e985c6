#pragma once // The tile that all comparisons of the ground work on.

#include "Tests/Document/TileWorld.h"

namespace bench
{

constexpr int TileCells = 16;

/// 16 x 16 cells: fractal heights, blobs of colour and weights, strokes of clutter.
struct BenchTile : TileWorld
{
    BenchTile();

    /// The sections of all ground cells before compression: mips 0 to 5, then clutter.
    [[nodiscard]] std::vector<std::array<std::vector<std::byte>, 7>> rawSections() const;
};

} // namespace bench
