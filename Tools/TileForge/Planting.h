#pragma once // What grows on the example landscapes.

#include "Tools/TileForge/Landscape.h"

#include <string_view>

namespace tile
{
class ClutterDatabase;
}

namespace forge
{

/// Fills the 128 x 128 samples of a cell with global clutter indices, 255 where nothing grows, by the
/// landscape's materials. Types that the database lacks stay out.
void plantCell(const Landscape& land, const tile::ClutterDatabase& database, int iCellX, int iCellY,
               std::vector<uint8_t>& vecSamples);

} // namespace forge
