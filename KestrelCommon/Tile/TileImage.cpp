#include "KestrelCommon/Tile/TileImage.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Io/ByteCursor.h"

namespace tile
{

namespace
{

// LZ4 makes at most 255 bytes of one; a larger claim is no section.
constexpr uint64_t s_uMaxExpansion = 255;

bool checkMagic(ByteCursor& cursor, std::string_view sPath)
{
    uint32_t uMagic = 0;
    if (!cursor.read(uMagic))
    {
        QM_LOG_ERROR("Failed to read magicnumber: ", sPath);
        return false;
    }
    if (uMagic != Magic)
    {
        QM_LOG_ERROR("Wrong magicnumber: ", sPath);
        return false;
    }
    return true;
}

} // namespace

std::optional<TileImage> TileImage::open(std::span<const std::byte> spanImage, std::string_view sPath)
{
    ByteCursor cursor(spanImage);
    if (!checkMagic(cursor, sPath))
        return std::nullopt;
    TileImage image;
    Header& header = image.m_header;
    if (!cursor.read(header) || header.width <= 0 || header.height <= 0)
    {
        QM_LOG_ERROR("Failed to read header: ", sPath);
        return std::nullopt;
    }

    // Cells without headers would be free: each must at least have a byte somewhere.
    const auto uCells = static_cast<uint64_t>(header.width) * static_cast<uint64_t>(header.height);
    const uint64_t uHeaderSize = std::max(header.uCellHeaderSize, 1u);
    const uint64_t uRoom = cursor.remaining();
    if (uCells > uRoom / uHeaderSize)
    {
        // A size that agrees with the rest of the header belongs to a file that was cut.
        const bool bCut = uCells <= UINT32_MAX / uHeaderSize &&
                          CellHeadersOffset + uCells * header.uCellHeaderSize == header.uDataOffset;
        if (bCut)
            QM_LOG_ERROR("Failed to read cell header: ", uRoom / uHeaderSize, " - ", sPath);
        else
            QM_LOG_ERROR("Failed to read header: ", sPath);
        return std::nullopt;
    }
    image.m_spanImage = spanImage;
    image.m_uCells = static_cast<size_t>(uCells);
    return image;
}

CellHeader TileImage::cellHeader(size_t uCell) const
{
    CellHeader header{};
    const size_t uOffset = CellHeadersOffset + uCell * m_header.uCellHeaderSize;
    std::memcpy(&header, m_spanImage.data() + uOffset,
                std::min<size_t>(m_header.uCellHeaderSize, sizeof(header)));
    return header;
}

std::optional<std::span<const std::byte>> TileImage::sectionBytes(const Section& section) const
{
    const uint64_t uFirst = CellHeadersOffset + uint64_t{m_uCells} * m_header.uCellHeaderSize;
    const uint64_t uEnd = uint64_t{section.uIndex} + section.uCompressedSize;
    if (section.uIndex < uFirst || uEnd > m_spanImage.size() || section.uCompressedSize == 0 ||
        section.uSize == 0 || section.uSize > section.uCompressedSize * s_uMaxExpansion)
        return std::nullopt;
    return m_spanImage.subspan(section.uIndex, section.uCompressedSize);
}

Uuid readUuid(std::span<const std::byte> spanHead, std::string_view sPath)
{
    ByteCursor cursor(spanHead);
    uint32_t uVersion = 0;
    Uuid uuid;
    if (!checkMagic(cursor, sPath))
        return {};
    if (!cursor.read(uVersion))
    {
        QM_LOG_ERROR("Failed to read header: ", sPath);
        return {};
    }
    if (uVersion < VersionUuid)
    {
        QM_LOG_ERROR("Old tile. Please upgrade me!");
        return {};
    }
    if (!cursor.read(uuid))
        QM_LOG_ERROR("Failed to read header: ", sPath);
    return uuid;
}

} // namespace tile
