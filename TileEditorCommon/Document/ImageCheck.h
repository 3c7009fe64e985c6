#pragma once // Checks a tile image whole and unpacks what reading it needs.

#include "KestrelCommon/Tile/TileImage.h"
#include "TileEditorCommon/Document/CellObjectProviderI.h"

#include <functional>
#include <optional>
#include <vector>

namespace tilebuilder
{

/// A section that the check found good.
struct CheckedSection
{
    size_t uCell = 0;
    const tile::SectionGroupInfo* pGroup = nullptr;
    uint32_t uElement = 0;
    tile::Section section;
    std::span<const std::byte> spanCompressed; ///< in the image
    std::span<const std::byte> spanRaw;        ///< unpacked, in the CheckedImage; empty: not asked for
};

/// An image that can be read without a surprise. Borrows the image's bytes.
struct CheckedImage
{
    tile::TileImage image;
    std::vector<CheckedSection> vecSurface; ///< mip 0 of the cells that have to be read
    std::vector<CheckedSection> vecClutter;
    std::vector<CheckedSection> vecObjects; ///< all present groups, cell by cell in reading order
    /// Objects that writing would lose: scripts, or records of which a provider says so.
    bool bForeignObjects = false;
    OwnedBytes pRaw; ///< what the raw spans refer to
};

/// The providers by group. Records of a group without one are not checked.
using ProviderTable = std::array<CellObjectProviderI*, tile::SectionGroupCount>;

/// Says that a cell's section is known already and needn't be unpacked or read again.
using KnownSection = std::function<bool(size_t uCell, const tile::SectionGroupInfo& group, uint32_t uElement,
                                        std::span<const std::byte>)>;

/// Compares every size, count and offset with the image and unpacks every section that reading
/// needs, on all cores. On a fault logs a line (the frame's text with the path, or the assertion
/// of the section) and is nullopt. Changes nothing.
[[nodiscard]] std::optional<CheckedImage> checkTileImage(std::span<const std::byte> spanImage,
                                                         std::string_view sPath,
                                                         const ProviderTable& providers,
                                                         const KnownSection& fnKnown);

} // namespace tilebuilder
