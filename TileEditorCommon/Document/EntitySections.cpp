#include "TileEditorCommon/Document/EntitySections.h"

#include "KestrelCommon/Core/Assert.h"
#include "TileEditorCommon/Entities/Entities.h"
#include "TileEditorCommon/Entities/EntityCreateArgs.h"

namespace tilebuilder
{

class EntitySections::List : public CellObjectProviderI
{
public:
    List(EntitySections& owner, const EntityRecordsI& records) : m_owner(owner), m_records(records) {}

    [[nodiscard]] tile::SectionGroup group() const override { return m_records.group(); }
    [[nodiscard]] const EntityRecordsI& records() const { return m_records; }

    [[nodiscard]] uint64_t revision(const ObjectCell& cell, uint32_t uLevel, uint32_t uFlags) const override
    {
        return m_owner.m_entities.index().revision(formOf(uFlags), keyOf(cell, uLevel));
    }

    uint32_t appendRecords(ByteStream& stream, const ObjectCell& cell, uint32_t uLevel,
                           uint32_t uFlags) override
    {
        const std::span<const uint32_t> spanIds =
            m_owner.m_entities.index().ids(formOf(uFlags), keyOf(cell, uLevel));
        std::vector<uint32_t> vecIds(spanIds.begin(), spanIds.end());
        m_records.write(stream, vecIds, cell.origin);
        return static_cast<uint32_t>(vecIds.size());
    }

    [[nodiscard]] size_t checkRecords(std::span<const std::byte> spanRecords, uint32_t uCount,
                                      uint32_t uVersion) const override
    {
        std::vector<uint32_t> vecEnds;
        if (!m_records.split(spanRecords, uCount, uVersion, vecEnds) || vecEnds.empty())
            return 0;
        return vecEnds.back();
    }

    void beginRead(const ObjectReadMode& mode) override
    {
        m_uLost = 0;
        m_owner.beginRead(mode);
    }
    void readRecords(const ObjectSection& section) override
    {
        m_uLost += m_owner.readRecords(*this, section);
    }
    void endRead() override { m_owner.endRead(); }
    [[nodiscard]] size_t lostObjects() const override { return m_uLost; }

    [[nodiscard]] SectionKey keyOf(const ObjectCell& cell, uint32_t uLevel) const
    {
        return {m_records.group(), static_cast<uint32_t>(cell.uIndex), uLevel};
    }

private:
    [[nodiscard]] static StoredForm formOf(uint32_t uFlags)
    {
        return uFlags & tile::WriteExport ? StoredForm::Export : StoredForm::Plain;
    }

    EntitySections& m_owner;
    const EntityRecordsI& m_records;
    size_t m_uLost = 0;
};

EntitySections::EntitySections(Entities& entities) : m_entities(entities)
{
    for (const EntityTraits& traits : entityTraits())
        for (const StoredList& list : traits.lists())
            if (const EntityRecordsI* pRecords = m_entities.records(list.eGroup))
                m_vecProviders.push_back(std::make_unique<List>(*this, *pRecords));
}

EntitySections::~EntitySections() = default;

void EntitySections::beginRead(const ObjectReadMode& mode)
{
    if (m_uReading++ > 0)
        return;
    m_mode = mode;
    if (mode.bRestoring && !mode.bKeepIds)
    {
        m_entities.beginRestore();
        return;
    }
    if (mode.bRestoring)
        m_entities.clearStored();
    m_entities.beginLoad();
}

/// How many of the records made no object.
size_t EntitySections::readRecords(const List& list, const ObjectSection& section)
{
    if (m_mode.bRestoring && !m_mode.bKeepIds)
    {
        m_entities.restoreSection(list.keyOf(section.cell, section.uLevel), section.spanRecords,
                                  section.uCount, section.uVersion);
        return 0;
    }
    if (section.uCount == 0)
        return 0;
    std::vector<EntityCreateArgs> vecArgs;
    if (!QM_ASSERT(list.records().read(section.spanRecords, section.uCount, section.cell.origin,
                                       section.uVersion, vecArgs)))
        return section.uCount;
    const size_t uRecords = vecArgs.size();
    return uRecords - m_entities.createEntities(std::move(vecArgs));
}

void EntitySections::endRead()
{
    if (--m_uReading > 0)
        return;
    if (m_mode.bRestoring && !m_mode.bKeepIds)
        m_entities.endRestore(m_mode.bClearSelection);
    m_entities.afterLoad();
}

} // namespace tilebuilder
