#pragma once // Pictures as blocks of 4 x 4 pixels that a GPU reads without unpacking.

#include "KestrelCommon/Device/DeviceTypes.h"
#include "KestrelCommon/Resources/Picture.h"

namespace resource
{

/// Changes whenever the encoder gives other bytes for the same picture.
constexpr uint32_t s_uBlockEncoderVersion = 1;

/// The layouts that encodeBlocks() knows: Bc3 and Bc5, both with 16 bytes a block.
[[nodiscard]] constexpr bool canEncode(TextureResourceLayout eLayout)
{
    return eLayout == TextureResourceLayout::Bc3 || eLayout == TextureResourceLayout::Bc5;
}

/// Bytes of a picture's blocks; sides that aren't multiples of 4 are rounded up to one.
[[nodiscard]] size_t blockBytes(int iWidth, int iHeight);
/// The same for a chain of mips, one after the other.
[[nodiscard]] size_t blockChainBytes(int iWidth, int iHeight, int iMips);

/// Blocks in rows from the top left. Bc3: R, G, B on a line between two colours, alpha in 8 steps
/// between two values. Bc5: R and G each in 8 steps. Pixels past the picture's edge repeat its last ones.
/// Colours lie along the main axis of the block's own; fast rather than the best there is. Any thread.
/// False, with the output as it was: another layout, or an output of another size than blockBytes().
[[nodiscard]] bool encodeBlocks(const Picture& picture, TextureResourceLayout eLayout,
                                std::span<std::byte> spanOut);

/// The picture and its mips below, iMips levels in all, as blocks. With bColour the mips average light
/// and otherwise plain values. Empty for an empty picture or a layout that isn't known. Any thread.
[[nodiscard]] std::vector<std::byte> encodeBlockChain(const Picture& picture, TextureResourceLayout eLayout,
                                                      int iMips, bool bColour);

} // namespace resource
