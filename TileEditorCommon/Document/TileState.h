#pragma once // One step of a document's history.

#include "KestrelCommon/Io/ByteStream.h"

#include <span>

namespace tilebuilder
{

/// A complete tile image. Without data when it could not be written.
struct TileState
{
    uint64_t hash = 0; ///< XXH3 64-bit of the data
    OwnedBytes data;
    uint64_t size = 0;  ///< bytes in data
    bool saved = false; ///< equals the file on disk

    [[nodiscard]] std::span<const std::byte> bytes() const { return {data.get(), static_cast<size_t>(size)}; }
};

} // namespace tilebuilder
