#pragma once // A cell's clutter as bytes: a table of types and one byte a sample.

#include "KestrelCommon/Io/ByteStream.h"
#include "KestrelCommon/Tile/TileFormat.h"

#include <span>
#include <unordered_map>

namespace tile
{

/// The samples of a cell, row by row; values are global clutter indices or EmptyClutter.
using ClutterSamples = std::span<uint8_t, SamplesPerPatch>;
using ConstClutterSamples = std::span<const uint8_t, SamplesPerPatch>;

/// What the identities in a section are looked up in. Borrowed.
struct ClutterTypes
{
    std::span<const Uuid> spanUuids; ///< by global index
    const std::unordered_map<Uuid, uint8_t>* pIndexOf = nullptr;
};

/// Appends the section. A value beyond the table of types is written with the nil id.
void writeClutterSection(ByteStream& stream, ConstClutterSamples samples, const ClutterTypes& types);

/// Whether the bytes have the exact size that their version and table count ask for.
[[nodiscard]] bool isClutterSection(std::span<const std::byte> spanBytes, uint32_t uVersion);

/// Maps a section's samples to global indices. Unknown types become index 0 with the assertion
/// text, or empty when there are no types at all; then bNoTypes is set and nothing is logged.
/// An entry with the nil id keeps its index. False: not a section; the samples stay as they were.
[[nodiscard]] bool readClutterSection(std::span<const std::byte> spanBytes, uint32_t uVersion,
                                      const ClutterTypes& types, ClutterSamples samples, bool& bNoTypes);

} // namespace tile
