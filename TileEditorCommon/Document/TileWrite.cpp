// From the document to an image.

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/Hash.h"
#include "KestrelCommon/Tile/SurfaceSection.h"
#include "TileEditorCommon/Clutter/EditorTerrainClutter.h"
#include "TileEditorCommon/Document/Tile.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

#include <new>
#include <tbb/parallel_for.h>

namespace tilebuilder
{

/// A cell on its way into an image: its header, with offsets from the cell's first byte, and its
/// sections, which stay where they were compressed until they are copied into the image.
struct Tile::CellParts
{
    tile::CellHeader header{};
    std::vector<std::span<const std::byte>> vecSections;
    std::vector<CachedSection> vecOwned; ///< of providers that keep no revision
    uint64_t uSize = 0;
    uint64_t uOffset = 0; ///< of the cell's data in the image

    void add(const tile::SectionGroupInfo& group, uint32_t uElement, uint32_t uCount, uint32_t uRawSize,
             std::span<const std::byte> spanBytes)
    {
        tile::setSection(
            header, group, uElement,
            {uCount, static_cast<uint32_t>(uSize), static_cast<uint32_t>(spanBytes.size()), uRawSize});
        vecSections.push_back(spanBytes);
        uSize += spanBytes.size();
    }

    // Turns offsets within the cell into offsets within the image.
    void place(uint64_t uAt, bool bGround)
    {
        uOffset = uAt;
        for (const tile::SectionGroupInfo& group : tile::sectionGroups())
            for (uint32_t i = 0; i < group.uElements; ++i)
            {
                tile::Section section = tile::section(header, group, i);
                if (section.uCount == 0 || (!group.isObjects() && !bGround))
                    continue;
                section.uIndex += static_cast<uint32_t>(uAt);
                tile::setSection(header, group, i, section);
            }
    }
};

ObjectCell Tile::objectCell(size_t uCell) const
{
    const auto uWidth = static_cast<size_t>(m_width);
    return {uCell,
            {static_cast<float>(uCell % uWidth) * tile::CellSize,
             static_cast<float>(uCell / uWidth) * tile::CellSize, 0.0f},
            m_type == tile::TypeGround};
}

void Tile::writeCell(size_t uCell, uint32_t flags, CellParts& parts)
{
    const Lz4Quality eQuality = flags & tile::WriteFinal ? Lz4Quality::Final : Lz4Quality::Fast;
    const int iCellX = static_cast<int>(uCell % static_cast<size_t>(m_width));
    const int iCellY = static_cast<int>(uCell / static_cast<size_t>(m_width));
    parts.vecSections.reserve(tile::MipCount + 1);
    if (m_type == tile::TypeGround)
    {
        const tile::SectionGroupInfo& mips = tile::sectionGroup(tile::SectionGroup::Mips);
        const uint64_t uSurface = m_services.surface.cellRevision(iCellX, iCellY);
        for (uint32_t uMip = 0; uMip < tile::MipCount; ++uMip)
        {
            CachedSection& section = m_cellCache.section(uCell, CellCache::slot(mips, uMip), eQuality);
            if (!section.isCurrent(uSurface))
                CellCache::refresh(section, uSurface, eQuality,
                                   [&](ByteStream& stream)
                                   {
                                       m_services.surface.writeCell(stream, iCellX, iCellY,
                                                                    static_cast<int>(uMip));
                                       return 1u;
                                   });
            parts.add(mips, uMip, 1, section.uSize, section.bytes());
        }
        const tile::SectionGroupInfo& clutter = tile::sectionGroup(tile::SectionGroup::Clutter);
        const uint64_t uClutter = m_services.clutter.cellRevision(iCellX, iCellY);
        CachedSection& section = m_cellCache.section(uCell, CellCache::slot(clutter, 0), eQuality);
        if (!section.isCurrent(uClutter))
            CellCache::refresh(section, uClutter, eQuality,
                               [&](ByteStream& stream)
                               {
                                   m_services.clutter.writeCell(stream, iCellX, iCellY);
                                   return 1u;
                               });
        parts.add(clutter, 0, 1, section.uSize, section.bytes());
    }
    for (const tile::SectionGroupInfo& group : tile::sectionGroups())
        if (group.isObjects() && group.eGroup != tile::SectionGroup::Scripts &&
            !(group.eGroup == tile::SectionGroup::VoxelTerrain && flags & tile::WriteUndo))
            writeObjects(uCell, flags, group, parts);
}

void Tile::writeObjects(size_t uCell, uint32_t flags, const tile::SectionGroupInfo& group, CellParts& parts)
{
    const Lz4Quality eQuality = flags & tile::WriteFinal ? Lz4Quality::Final : Lz4Quality::Fast;
    CellObjectProviderI* pProvider = m_providers[static_cast<size_t>(group.eGroup)];
    // Without bounds every cell would get all objects: they are written once.
    if (m_type != tile::TypeGround && uCell > 0)
        return;
    for (uint32_t uElement = 0; uElement < group.uElements; ++uElement)
    {
        const size_t uSlot = CellCache::slot(group, uElement);
        const ObjectCell cell = objectCell(uCell);
        const uint64_t uRevision = pProvider->revision(cell, uElement, flags);
        // Flattened objects are another content under the same revision.
        const bool bCached = uRevision != 0 && !(flags & tile::WriteExport);
        CachedSection fresh;
        CachedSection& section = bCached ? m_cellCache.section(uCell, uSlot, eQuality) : fresh;
        if (!bCached || !section.isCurrent(uRevision))
            CellCache::refresh(section, bCached ? uRevision : 0, eQuality,
                               [&](ByteStream& stream)
                               { return pProvider->appendRecords(stream, cell, uElement, flags); });
        if (section.uCount == 0 || !QM_ASSERT_TEXT(section.uSize > 0, group.pSizeAssertion))
            continue;
        parts.add(group, uElement, section.uCount, section.uSize, section.bytes());
        if (!bCached)
            parts.vecOwned.push_back(std::move(fresh));
    }
}

TileState Tile::assemble(std::vector<CellParts>& vecParts) const
{
    const uint64_t uDataOffset = tile::CellHeadersOffset + sizeof(tile::CellHeader) * vecParts.size();
    uint64_t uFileSize = uDataOffset;
    for (CellParts& parts : vecParts)
    {
        parts.place(uFileSize, m_type == tile::TypeGround);
        uFileSize += parts.uSize;
    }
    if (uFileSize > UINT32_MAX)
    {
        QM_LOG_ERROR("The tile is too large for its file format: ", uFileSize >> 20, "mb");
        return {};
    }
    const uint64_t uTotalDataSize = uFileSize - uDataOffset;
    static_cast<void>(QM_ASSERT(uDataOffset + uTotalDataSize == uFileSize));

    TileState state;
    state.size = uFileSize;
    state.data.reset(static_cast<std::byte*>(std::malloc(uFileSize)));
    if (!state.data)
        throw std::bad_alloc();
    tile::Header header{};
    header.version = tile::VersionCurrent;
    header.uuid = m_uuid;
    header.creatorId = m_creatorId;
    header.width = m_width;
    header.height = m_height;
    header.uCellHeadersOffset = tile::CellHeadersOffset;
    header.uCellHeaderSize = sizeof(tile::CellHeader);
    header.uDataOffset = static_cast<uint32_t>(uDataOffset);
    header.uTotalDataSize = static_cast<uint32_t>(uTotalDataSize);
    header.uPacked = tile::packTypeWord(m_type, m_terrainCategory, m_terrainCategoryIndex);
    std::byte* pImage = state.data.get();
    std::memcpy(pImage, &tile::Magic, sizeof(tile::Magic));
    std::memcpy(pImage + tile::HeaderOffset, &header, sizeof(header));
    tbb::parallel_for(size_t{0}, vecParts.size(),
                      [&](size_t uCell)
                      {
                          const CellParts& parts = vecParts[uCell];
                          std::memcpy(pImage + tile::CellHeadersOffset + uCell * sizeof(tile::CellHeader),
                                      &parts.header, sizeof(parts.header));
                          std::byte* pPlace = pImage + parts.uOffset;
                          for (const std::span<const std::byte> spanSection : parts.vecSections)
                          {
                              std::memcpy(pPlace, spanSection.data(), spanSection.size());
                              pPlace += spanSection.size();
                          }
                      });
    state.hash = xxh3(state.bytes());
    return state;
}

TileState Tile::write(uint32_t flags)
{
    for (CellObjectProviderI* pProvider : m_providers)
        if (pProvider)
            pProvider->prepareWrite(flags, path());

    const size_t uCells = static_cast<size_t>(m_width) * static_cast<size_t>(m_height);
    const bool bGround = m_type == tile::TypeGround;
    bool bStaleSurface = bGround;
    bool bStaleClutter = bGround;
    if (!(flags & tile::WriteFinal) && bGround)
    {
        bStaleSurface =
            std::exchange(m_surfaceRevision, m_services.surface.revision()) != m_services.surface.revision();
        bStaleClutter =
            std::exchange(m_clutterRevision, m_services.clutter.revision()) != m_services.clutter.revision();
    }
    QM_LOG("Cache Surface: ", bStaleSurface ? "TRUE" : "FALSE");
    QM_LOG("Cache Clutter: ", bStaleClutter ? "TRUE" : "FALSE");

    m_cellCache.resize(uCells);
    std::vector<CellParts> vecParts(uCells);
    if (uCells == 1)
        writeCell(0, flags, vecParts[0]);
    else
        tbb::parallel_for(size_t{0}, uCells, [&](size_t uCell) { writeCell(uCell, flags, vecParts[uCell]); });
    TileState state = assemble(vecParts);

    for (CellObjectProviderI* pProvider : m_providers)
        if (pProvider)
            pProvider->releaseWrite();
    return state;
}

} // namespace tilebuilder
