// Taking in a state of the document by difference: what is the same lives on.

#include "TileEditorCommon/Entities/Entities.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Io/ByteStream.h"
#include "KestrelCommon/Tile/TileVersion.h"
#include "TileEditorCommon/Entities/EntityCreateArgs.h"

#include <algorithm>
#include <tbb/parallel_for.h>

namespace tilebuilder
{

namespace
{

/// The records of a section, in the order of their bytes.
class RecordRuns
{
public:
    static std::optional<RecordRuns> make(const EntityRecordsI& records, std::span<const std::byte> spanBytes,
                                          uint32_t uCount, uint32_t uVersion)
    {
        RecordRuns runs;
        std::vector<uint32_t> vecEnds;
        if (!records.split(spanBytes, uCount, uVersion, vecEnds))
            return std::nullopt;
        runs.m_vecRecords.reserve(vecEnds.size());
        uint32_t uStart = 0;
        for (const uint32_t uEnd : vecEnds)
        {
            runs.m_vecRecords.push_back(spanBytes.subspan(uStart, uEnd - uStart));
            uStart = uEnd;
        }
        return runs;
    }

    void sort()
    {
        const auto fnBefore = [](const auto& first, const auto& second) { return order(first, second) < 0; };
        if (!std::is_sorted(m_vecRecords.begin(), m_vecRecords.end(), fnBefore))
            std::sort(m_vecRecords.begin(), m_vecRecords.end(), fnBefore);
    }

    [[nodiscard]] size_t size() const { return m_vecRecords.size(); }
    [[nodiscard]] std::span<const std::byte> operator[](size_t i) const { return m_vecRecords[i]; }

    static int order(std::span<const std::byte> first, std::span<const std::byte> second)
    {
        const int iOrder = std::memcmp(first.data(), second.data(), std::min(first.size(), second.size()));
        return iOrder != 0 ? iOrder
                           : static_cast<int>(first.size() > second.size()) -
                                 static_cast<int>(first.size() < second.size());
    }

private:
    std::vector<std::span<const std::byte>> m_vecRecords;
};

} // namespace

void Entities::beginRestore()
{
    clearSelection();
    m_vecPending.clear();
    m_vecRestored.clear();
}

void Entities::restoreSection(const SectionKey& key, std::span<const std::byte> spanRecords, uint32_t uCount,
                              uint32_t uVersion)
{
    m_vecPending.push_back({key, spanRecords, uCount, uVersion});
}

Entities::SectionDifference Entities::difference(const PendingSection& state) const
{
    SectionDifference result;
    const EntityRecordsI& records = *m_arrRecords[static_cast<size_t>(state.key.eGroup)];
    const std::span<const uint32_t> spanIds = m_index.ids(StoredForm::Plain, state.key);
    std::vector<uint32_t> vecIds(spanIds.begin(), spanIds.end());
    const glm::vec3 origin = m_index.origin(state.key.uCell);

    ByteStream stream;
    records.write(stream, vecIds, origin);
    const std::span<const std::byte> spanLiving(stream.data(), stream.size());
    const auto living =
        RecordRuns::make(records, spanLiving, static_cast<uint32_t>(vecIds.size()), tile::VersionCurrent);
    auto stored = RecordRuns::make(records, state.spanRecords, state.uCount, state.uVersion);
    if (!QM_ASSERT(living.has_value() && stored.has_value()))
        return result;
    stored->sort();

    size_t uLiving = 0;
    ByteStream added;
    uint32_t uAdded = 0;
    for (size_t uStored = 0; uStored < stored->size(); ++uStored)
    {
        int iOrder = 1;
        while (uLiving < living->size() &&
               (iOrder = RecordRuns::order((*living)[uLiving], (*stored)[uStored])) < 0)
            result.vecGone.push_back(vecIds[uLiving++]);
        if (uLiving < living->size() && iOrder == 0)
        {
            ++uLiving;
            continue;
        }
        added.write((*stored)[uStored].data(), (*stored)[uStored].size());
        ++uAdded;
    }
    result.vecGone.insert(result.vecGone.end(), vecIds.begin() + static_cast<ptrdiff_t>(uLiving),
                          vecIds.end());
    if (uAdded > 0)
        static_cast<void>(QM_ASSERT(
            records.read({added.data(), added.size()}, uAdded, origin, state.uVersion, result.vecNew)));
    return result;
}

void Entities::endRestore(bool bSelect)
{
    // What stands outside of all cells is in no state.
    for (const EntityTraits& traits : entityTraits())
        for (const StoredList& list : traits.lists())
            for (uint32_t uLevel = 0; uLevel < CellIndex::s_uLevels; ++uLevel)
            {
                const SectionKey key{list.eGroup, m_index.outside(), uLevel};
                if (!m_index.ids(StoredForm::Plain, key).empty())
                    m_vecPending.push_back({key, {}, 0, tile::VersionCurrent});
            }
    // Sections share nothing: each is compared by a task of its own.
    std::vector<SectionDifference> vecDifferences(m_vecPending.size());
    tbb::parallel_for(size_t{0}, m_vecPending.size(),
                      [&](size_t i) { vecDifferences[i] = difference(m_vecPending[i]); });
    m_vecPending.clear();

    for (SectionDifference& change : vecDifferences)
        for (EntityCreateArgs& args : change.vecNew)
        {
            args.bStored = true;
            if (const Entity entity = createEntity(std::move(args)))
                m_vecRestored.push_back(entity);
        }
    for (const SectionDifference& change : vecDifferences)
        for (const uint32_t uId : change.vecGone)
            removeEntity(find(uId), false);
    if (bSelect)
        selectMany(m_vecRestored);
}

} // namespace tilebuilder
