// From an image to the document.

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Tile/Records/BlueprintRecord.h"
#include "TileEditorCommon/Clutter/EditorTerrainClutter.h"
#include "TileEditorCommon/Document/Tile.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

namespace tilebuilder
{

bool Tile::read(std::span<const std::byte> spanImage, const std::string& sDirectory, const std::string& sName,
                bool bRestoring, bool bClearSelection, bool bKeepIds)
{
    KnownSection fnKnown;
    if (bRestoring)
    {
        m_cellCache.resize(static_cast<size_t>(m_width) * static_cast<size_t>(m_height));
        fnKnown = [this, bKeepIds](size_t uCell, const tile::SectionGroupInfo& group, uint32_t uElement,
                                   std::span<const std::byte> spanBytes)
        { return !(group.isObjects() && bKeepIds) && isKnown(uCell, group, uElement, spanBytes); };
    }
    const auto checked = checkTileImage(spanImage, sDirectory + "/" + sName, m_providers, fnKnown);
    if (!checked)
        return false;
    const tile::Header& header = checked->image.header();
    if (bRestoring)
    {
        if (!QM_ASSERT(header.width == m_width && header.height == m_height &&
                       tile::typeOf(header) == m_type))
            return false;
    }
    else
        takeIdentity(*checked, sDirectory, sName);
    m_terrainCategory = tile::categoryOf(header);
    m_terrainCategoryIndex = tile::categoryIndexOf(header);
    if (m_type == tile::TypeGround)
    {
        if (!QM_ASSERT(m_services.surface.cellsX() == m_width && m_services.surface.cellsY() == m_height &&
                       m_services.clutter.cellsX() == m_width && m_services.clutter.cellsY() == m_height))
            return false;
        takeGround(*checked, bRestoring);
    }
    takeObjects(*checked, {bRestoring, bClearSelection, bKeepIds});
    return true;
}

// What the cache holds for a cell is what stands there, as long as the revision does: the same
// bytes in an image then bring nothing new.
bool Tile::isKnown(size_t uCell, const tile::SectionGroupInfo& group, uint32_t uElement,
                   std::span<const std::byte> spanBytes)
{
    const int iCellX = static_cast<int>(uCell % static_cast<size_t>(m_width));
    const int iCellY = static_cast<int>(uCell / static_cast<size_t>(m_width));
    uint64_t uRevision = 0;
    if (group.eGroup == tile::SectionGroup::Mips)
        uRevision = m_services.surface.cellRevision(iCellX, iCellY);
    else if (group.eGroup == tile::SectionGroup::Clutter)
        uRevision = m_services.clutter.cellRevision(iCellX, iCellY);
    else
        uRevision = provider(group.eGroup).revision(objectCell(uCell), uElement, tile::WriteUndo);
    const CachedSection& section =
        m_cellCache.section(uCell, CellCache::slot(group, uElement), Lz4Quality::Fast);
    return section.isCurrent(uRevision) && section.uCompressedSize == spanBytes.size() &&
           (spanBytes.empty() || std::memcmp(section.pBytes.get(), spanBytes.data(), spanBytes.size()) == 0);
}

void Tile::takeIdentity(const CheckedImage& checked, const std::string& sDirectory, const std::string& sName)
{
    const tile::Header& header = checked.image.header();
    const uint32_t uType = tile::typeOf(header);
    const std::string sPath = sDirectory + "/" + sName;
    QM_LOG("Loading: ", sPath);
    QM_LOG("Tile File Version: ", header.version);
    QM_LOG("Size: ", header.width, ", ", header.height);
    QM_LOG("Type: ", uType);
    QM_LOG("Tile UUID: {", header.uuid.text(), "}");
    QM_LOG("Creator ID: ", uint64_t{header.creatorId});
    m_directory = sDirectory;
    m_name = sName;
    m_uuid = header.uuid;
    m_creatorId = header.creatorId;
    m_width = header.width;
    m_height = header.height;
    m_type = uType;
    m_bForeignObjects = checked.bForeignObjects;
    m_cellCache.clear();
    m_services.host.reinitialise(m_width, m_height, m_type, sPath);
}

void Tile::takeGround(const CheckedImage& checked, bool bRestoring)
{
    const auto uWidth = static_cast<size_t>(m_width);
    std::vector<CellSection> vecSurface;
    vecSurface.reserve(checked.vecSurface.size());
    for (const CheckedSection& section : checked.vecSurface)
        vecSurface.push_back({static_cast<int>(section.uCell % uWidth),
                              static_cast<int>(section.uCell / uWidth), section.spanRaw});
    std::vector<ClutterCell> vecClutter;
    vecClutter.reserve(checked.vecClutter.size());
    for (const CheckedSection& section : checked.vecClutter)
        vecClutter.push_back({static_cast<int>(section.uCell % uWidth),
                              static_cast<int>(section.uCell / uWidth), section.spanRaw});
    static_cast<void>(QM_ASSERT(m_services.surface.readCells(vecSurface)));
    static_cast<void>(QM_ASSERT(m_services.clutter.readCells(vecClutter, checked.image.header().version)));
    if (!bRestoring)
        return;
    // A state is an image of our own writing, so what it holds is what writing would give again.
    for (const CheckedSection& section : checked.vecSurface)
        adoptSections(checked, section,
                      m_services.surface.cellRevision(static_cast<int>(section.uCell % uWidth),
                                                      static_cast<int>(section.uCell / uWidth)));
    for (const CheckedSection& section : checked.vecClutter)
        adoptSections(checked, section,
                      m_services.clutter.cellRevision(static_cast<int>(section.uCell % uWidth),
                                                      static_cast<int>(section.uCell / uWidth)));
    m_surfaceRevision = m_services.surface.revision();
    m_clutterRevision = m_services.clutter.revision();
}

void Tile::adoptSections(const CheckedImage& checked, const CheckedSection& section, uint64_t uRevision)
{
    const tile::CellHeader header = checked.image.cellHeader(section.uCell);
    for (uint32_t i = 0; i < section.pGroup->uElements; ++i)
    {
        const tile::Section described = tile::section(header, *section.pGroup, i);
        if (const auto spanBytes = checked.image.sectionBytes(described))
            CellCache::adopt(
                m_cellCache.section(section.uCell, CellCache::slot(*section.pGroup, i), Lz4Quality::Fast),
                uRevision, described, *spanBytes);
    }
}

void Tile::takeObjects(const CheckedImage& checked, const ObjectReadMode& mode)
{
    // Undo images leave voxel terrain out, so what is there stays.
    const auto isRead = [&](tile::SectionGroup eGroup)
    { return !(mode.bRestoring && eGroup == tile::SectionGroup::VoxelTerrain); };
    for (size_t i = 0; i < m_providers.size(); ++i)
        if (m_providers[i] && isRead(static_cast<tile::SectionGroup>(i)))
            m_providers[i]->beginRead(mode);
    std::vector<CheckedSection> vecRead = checked.vecObjects;
    if (mode.bRestoring)
        addEmptied(checked, mode, vecRead);
    const uint32_t uVersion = checked.image.header().version;
    std::deque<ByteStream> deqSeparated; // stay until all is read
    for (const CheckedSection& section : vecRead)
    {
        if (!isRead(section.pGroup->eGroup))
            continue;
        const ObjectSection objects{section.spanRaw, section.section.uCount, uVersion,
                                    objectCell(section.uCell), section.uElement};
        if (section.pGroup->eGroup == tile::SectionGroup::Blueprints &&
            uVersion == tile::VersionPrefabsAmongBlueprints)
            readSeparated(objects, deqSeparated);
        else
            provider(section.pGroup->eGroup).readRecords(objects);
    }
    for (size_t i = 0; i < m_providers.size(); ++i)
        if (m_providers[i] && isRead(static_cast<tile::SectionGroup>(i)))
            m_providers[i]->endRead();
    if (!mode.bRestoring)
    {
        m_uLostObjects = 0;
        for (const CellObjectProviderI* pProvider : m_providers)
            m_uLostObjects += pProvider ? pProvider->lostObjects() : 0;
        return;
    }
    for (const CheckedSection& section : vecRead)
        CellCache::adopt(m_cellCache.section(section.uCell,
                                             CellCache::slot(*section.pGroup, section.uElement),
                                             Lz4Quality::Fast),
                         provider(section.pGroup->eGroup)
                             .revision(objectCell(section.uCell), section.uElement, tile::WriteUndo),
                         section.section, section.spanCompressed);
}

// Hands blueprints and the prefabs among them to their own providers, as the current version.
void Tile::readSeparated(const ObjectSection& objects, std::deque<ByteStream>& deqSeparated)
{
    std::vector<tile::BlueprintRecord> vecBlueprints;
    std::vector<tile::PrefabRecord> vecPrefabs;
    ByteCursor cursor(objects.spanRecords);
    if (!QM_ASSERT(tile::readRecords(cursor, {objects.uCount, objects.uVersion, {}}, vecBlueprints)))
        return;
    tile::separatePrefabs(objects.uVersion, vecBlueprints, vecPrefabs);
    const auto hand = [&](const auto& vecRecords, tile::SectionGroup eGroup)
    {
        if (vecRecords.empty())
            return;
        ByteStream& stream = deqSeparated.emplace_back();
        for (const auto& record : vecRecords)
            tile::writeRecord(stream, record, {});
        provider(eGroup).readRecords({stream.bytes(), static_cast<uint32_t>(vecRecords.size()),
                                      tile::VersionCurrent, objects.cell, objects.uLevel});
    };
    hand(vecBlueprints, tile::SectionGroup::Blueprints);
    hand(vecPrefabs, tile::SectionGroup::Prefabs);
}

// The sections that hold objects now and none in the image.
void Tile::addEmptied(const CheckedImage& checked, const ObjectReadMode& mode,
                      std::vector<CheckedSection>& vecRead)
{
    // Without bounds all objects stand in the first cell.
    const size_t uCells = m_type == tile::TypeGround ? checked.image.cellCount() : 1;
    for (size_t uCell = 0; uCell < uCells; ++uCell)
    {
        const tile::CellHeader header = checked.image.cellHeader(uCell);
        for (const tile::SectionGroup eGroup : tile::objectReadOrder())
        {
            const tile::SectionGroupInfo& group = tile::sectionGroup(eGroup);
            if (eGroup == tile::SectionGroup::VoxelTerrain)
                continue;
            for (uint32_t i = 0; i < group.uElements; ++i)
                if (tile::section(header, group, i).uCount == 0 &&
                    (mode.bKeepIds || !isKnown(uCell, group, i, {})))
                    vecRead.push_back({uCell, &group, i, {}, {}, {}});
        }
    }
}

} // namespace tilebuilder
