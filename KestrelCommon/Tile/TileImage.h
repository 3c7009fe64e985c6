#pragma once // Bounds-checked access to a tile image.

#include "KestrelCommon/Tile/SectionTable.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tile
{

/// The frame of an image: its header and the cell headers behind it.
///
/// Lifetime: borrows the bytes. Threads: const, may be shared.
/// Trust:    width, height and cell headers fit the image; what the cell headers say of their
///           sections is checked by sectionBytes() alone.
class TileImage
{
public:
    /// Checks magic, header and the room for the cell headers. On failure logs one line that
    /// ends in the path. The version is never a reason to refuse.
    static std::optional<TileImage> open(std::span<const std::byte> spanImage, std::string_view sPath);

    [[nodiscard]] const Header& header() const { return m_header; }
    [[nodiscard]] size_t cellCount() const { return m_uCells; }

    /// Fields beyond the size that the file stores read as 0.
    [[nodiscard]] CellHeader cellHeader(size_t uCell) const;

    /// The compressed bytes of a section; nullopt when they don't lie behind the cell headers
    /// and within the image, or can't be that of a section of its size.
    [[nodiscard]] std::optional<std::span<const std::byte>> sectionBytes(const Section& section) const;

private:
    TileImage() = default;

    std::span<const std::byte> m_spanImage;
    Header m_header{};
    size_t m_uCells = 0;
};

/// What Tile::readUuid() gives: the id at the head of a file's bytes. Nil with an error line for
/// a wrong magic, and for a version from before ids with "Old tile. Please upgrade me!".
[[nodiscard]] Uuid readUuid(std::span<const std::byte> spanHead, std::string_view sPath);

} // namespace tile
