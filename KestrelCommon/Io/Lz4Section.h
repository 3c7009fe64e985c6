#pragma once // The compression of tile sections. The only place that knows LZ4.

#include "KestrelCommon/Io/ResizeableBuffer.h"

#include <cstddef>
#include <cstdint>
#include <span>

enum class Lz4Quality : uint8_t
{
    Fast,  ///< the default, for undo images
    Final, ///< HC at level 9, for files
};

/// Destination bytes that always suffice: size + size / 255 + 16, and 0 above 0x7E000000.
[[nodiscard]] uint32_t lz4Bound(uint32_t uSize);

/// Compresses into the scratch buffer; the compressed bytes, which stay valid until its next
/// use. Empty when the source is empty or too large.
[[nodiscard]] std::span<const std::byte> lz4Compress(std::span<const std::byte> spanSource,
                                                     Lz4Quality eQuality, ResizeableBuffer& bufferScratch);

/// Decompresses to exactly the output's size. False: damaged, or of another size; the output
/// is then unspecified. Never reads or writes out of bounds.
[[nodiscard]] bool lz4Decompress(std::span<const std::byte> spanSource, std::span<std::byte> spanOut);
