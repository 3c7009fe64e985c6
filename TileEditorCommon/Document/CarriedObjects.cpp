#include "TileEditorCommon/Document/CarriedObjects.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Tile/Records/AssetRecord.h"
#include "KestrelCommon/Tile/Records/BlueprintRecord.h"
#include "KestrelCommon/Tile/Records/DecalRecord.h"
#include "KestrelCommon/Tile/Records/HarvestableRecord.h"
#include "KestrelCommon/Tile/Records/NodeRecord.h"
#include "KestrelCommon/Tile/Records/PrefabRecord.h"
#include "KestrelCommon/Tile/Records/SortedRecords.h"
#include "KestrelCommon/Tile/Records/VoxelMeshRecord.h"
#include "KestrelCommon/Tile/Records/VoxelTerrainRecord.h"

#include <tbb/parallel_for.h>

namespace tilebuilder
{

namespace
{

/// What carrying needs of a kind.
struct Codec
{
    const char* pPlural;
    bool (*fnCheck)(ByteCursor& cursor, const tile::CellList& list, tile::RecordEnds* pEnds);
    /// Appends the sections' records as one section of the current version; their number.
    uint32_t (*fnRewrite)(std::span<const ObjectSection> spanSections, ByteStream& stream);
};

template <class Record>
uint32_t rewrite(std::span<const ObjectSection> spanSections, ByteStream& stream)
{
    std::vector<Record> vecRecords;
    for (const ObjectSection& section : spanSections)
    {
        ByteCursor cursor(section.spanRecords);
        // Within bounds positions stay relative to their cell.
        const glm::vec3 origin = section.cell.bBounded ? glm::vec3(0.0f) : section.cell.origin;
        static_cast<void>(
            QM_ASSERT(tile::readRecords(cursor, {section.uCount, section.uVersion, origin}, vecRecords)));
    }
    if (vecRecords.empty())
        return 0;
    if constexpr (std::is_same_v<Record, tile::NodeRecord>)
    {
        tile::writeNodeSection(stream, vecRecords, {});
        return static_cast<uint32_t>(vecRecords.size());
    }
    else
    {
        tile::SortedRecords sorted(stream);
        for (const Record& record : vecRecords)
        {
            tile::writeRecord(stream, record, tile::CellPlace{});
            sorted.end();
        }
        return sorted.finish();
    }
}

template <class Record>
constexpr Codec carry(const char* pPlural)
{
    return {pPlural, tile::checkRecords<Record>, rewrite<Record>};
}

const Codec& codecOf(tile::SectionGroup eGroup)
{
    static constexpr std::array s_arrCodecs{
        carry<tile::AssetRecord>("assets"),
        carry<tile::BlueprintRecord>("blueprints"),
        carry<tile::NodeRecord>("nodes"),
        carry<tile::PrefabRecord>("prefabs"),
        carry<tile::DecalRecord>("decals"),
        carry<tile::HarvestableRecord>("harvestables"),
        carry<tile::HarvestableRecord>("kinematics"),
        carry<tile::VoxelMeshRecord>("voxel meshes"),
        carry<tile::VoxelTerrainRecord>("chunks of voxel terrain"),
    };
    constexpr auto uFirst = static_cast<size_t>(tile::SectionGroup::Assets);
    static_assert(uFirst + s_arrCodecs.size() == static_cast<size_t>(tile::SectionGroup::Scripts));
    return s_arrCodecs[static_cast<size_t>(eGroup) - uFirst];
}

// Calls with each record of a section of prefabs that an export keeps; a record ends in its flags.
template <class Visit>
void forEachKept(std::span<const std::byte> spanRecords, uint32_t uCount, Visit&& fnVisit)
{
    ByteCursor cursor(spanRecords);
    tile::RecordEnds vecEnds;
    if (!QM_ASSERT(
            tile::checkRecords<tile::PrefabRecord>(cursor, {uCount, tile::VersionCurrent, {}}, &vecEnds)))
        return;
    uint32_t uStart = 0;
    for (const uint32_t uEnd : vecEnds)
    {
        uint32_t uFlags;
        std::memcpy(&uFlags, spanRecords.data() + uEnd - sizeof(uFlags), sizeof(uFlags));
        if (uFlags & tile::PrefabKeep)
            fnVisit(spanRecords.subspan(uStart, uEnd - uStart));
        uStart = uEnd;
    }
}

} // namespace

uint64_t CarriedObjects::slotOf(const ObjectCell& cell, uint32_t uLevel)
{
    return (cell.bBounded ? cell.uIndex : 0) * tile::LevelCount + uLevel;
}

void CarriedObjects::clear()
{
    m_mapSlots.clear();
    m_mapPending.clear();
    m_uEmptyRevision = ++m_uRevision;
}

uint64_t CarriedObjects::count() const
{
    uint64_t uCount = 0;
    for (const auto& [uSlot, slot] : m_mapSlots)
        uCount += slot.uCount;
    return uCount;
}

void CarriedObjects::prepareWrite(uint32_t uFlags, const std::string&)
{
    if (m_eGroup != tile::SectionGroup::Prefabs || !(uFlags & tile::WriteExport))
        return;
    uint64_t uLeftOut = count();
    for (const auto& [uSlot, slot] : m_mapSlots)
        forEachKept(slot.vecRecords, slot.uCount, [&](std::span<const std::byte>) { --uLeftOut; });
    if (uLeftOut > 0)
        QM_LOG_WARNING("The content of ", uLeftOut, " prefabs is not in the export");
}

uint64_t CarriedObjects::revision(const ObjectCell& cell, uint32_t uLevel, uint32_t) const
{
    const auto it = m_mapSlots.find(slotOf(cell, uLevel));
    return it == m_mapSlots.end() ? m_uEmptyRevision : it->second.uRevision;
}

uint32_t CarriedObjects::appendRecords(ByteStream& stream, const ObjectCell& cell, uint32_t uLevel,
                                       uint32_t uFlags)
{
    const auto it = m_mapSlots.find(slotOf(cell, uLevel));
    if (it == m_mapSlots.end())
        return 0;
    const Slot& slot = it->second;
    if (m_eGroup != tile::SectionGroup::Prefabs || !(uFlags & tile::WriteExport))
    {
        stream.write(slot.vecRecords.data(), slot.vecRecords.size());
        return slot.uCount;
    }
    uint32_t uKept = 0;
    forEachKept(slot.vecRecords, slot.uCount,
                [&](std::span<const std::byte> spanRecord)
                {
                    stream.write(spanRecord.data(), spanRecord.size());
                    ++uKept;
                });
    return uKept;
}

size_t CarriedObjects::checkRecords(std::span<const std::byte> spanRecords, uint32_t uCount,
                                    uint32_t uVersion) const
{
    ByteCursor cursor(spanRecords);
    return codecOf(m_eGroup).fnCheck(cursor, {uCount, uVersion, {}}, nullptr) ? cursor.position() : 0;
}

bool CarriedObjects::losesRecords(uint32_t uVersion) const
{
    return m_eGroup == tile::SectionGroup::Assets && uVersion < tile::VersionAssetUuid;
}

void CarriedObjects::beginRead(const ObjectReadMode& mode)
{
    m_bRestoring = mode.bRestoring;
    if (!m_bRestoring)
        clear();
}

void CarriedObjects::readRecords(const ObjectSection& section)
{
    const uint64_t uSlot = slotOf(section.cell, section.uLevel);
    if (section.uCount > 0 || m_mapSlots.contains(uSlot))
        m_mapPending[uSlot].push_back(section);
}

void CarriedObjects::endRead()
{
    std::vector<std::pair<Slot*, std::span<const ObjectSection>>> vecWork;
    vecWork.reserve(m_mapPending.size());
    for (const auto& [uSlot, vecSections] : m_mapPending)
    {
        Slot& slot = m_mapSlots[uSlot];
        slot.uRevision = ++m_uRevision;
        vecWork.emplace_back(&slot, vecSections);
    }
    const Codec& codec = codecOf(m_eGroup);
    tbb::parallel_for(size_t{0}, vecWork.size(),
                      [&](size_t i)
                      {
                          ByteStream stream;
                          vecWork[i].first->uCount = codec.fnRewrite(vecWork[i].second, stream);
                          vecWork[i].first->vecRecords.assign(stream.bytes().begin(), stream.bytes().end());
                      });
    m_mapPending.clear();
    if (!m_bRestoring && !m_mapSlots.empty())
        QM_LOG("The tile's ", count(), " ", codec.pPlural, " can't be shown yet and are kept as they are");
}

} // namespace tilebuilder
