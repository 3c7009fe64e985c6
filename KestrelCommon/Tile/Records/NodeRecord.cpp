#include "KestrelCommon/Tile/Records/NodeRecord.h"

#include "KestrelCommon/Tile/Records/SortedRecords.h"

namespace tile
{

namespace
{

constexpr const char* s_pKind = "Node";
constexpr size_t s_uMinBytes = TransformSize + 1 + sizeof(uint32_t);

/// The tags of a section in order, by index.
class TagTable
{
public:
    explicit TagTable(std::span<const NodeRecord> spanNodes)
    {
        for (const NodeRecord& node : spanNodes)
            for (const std::string& sTag : node.vecTags)
                if (!sTag.empty() && sTag.size() <= MaxShortText)
                    m_mapIndices.emplace(sTag, uint8_t{0});
        if (m_mapIndices.size() > MaxShortList)
        {
            QM_LOG_WARNING("A cell's nodes have ", m_mapIndices.size(), " tags, 255 of them are stored");
            m_mapIndices.erase(std::next(m_mapIndices.begin(), MaxShortList), m_mapIndices.end());
        }
        uint8_t uIndex = 0;
        for (auto& [sTag, uPlace] : m_mapIndices)
            uPlace = uIndex++;
    }

    [[nodiscard]] size_t bytes() const
    {
        size_t uBytes = 1;
        for (const auto& [sTag, uIndex] : m_mapIndices)
            uBytes += 1 + sTag.size();
        return uBytes;
    }
    template <class Writer>
    void write(Writer& writer) const
    {
        writer.value(static_cast<uint8_t>(m_mapIndices.size()));
        for (const auto& [sTag, uIndex] : m_mapIndices)
            writer.text8(sTag);
    }
    template <class Writer>
    void writeIndices(Writer& writer, const NodeRecord& node) const
    {
        std::array<uint8_t, MaxShortList> arrIndices;
        uint8_t uCount = 0;
        for (const std::string& sTag : node.vecTags)
            if (const auto it = m_mapIndices.find(sTag); it != m_mapIndices.end() && uCount < MaxShortList)
                arrIndices[uCount++] = it->second;
        writer.value(uCount);
        for (uint8_t i = 0; i < uCount; ++i)
            writer.value(arrIndices[i]);
    }

private:
    std::map<std::string_view, uint8_t> m_mapIndices;
};

template <class Reader>
bool readTable(Reader& reader, std::vector<std::string>& vecTable)
{
    uint8_t uCount;
    if (!reader.value(uCount))
        return false;
    vecTable.resize(uCount);
    for (std::string& sTag : vecTable)
        if (!reader.text8(sTag))
            return false;
    return true;
}

/// Reads the table before the first node.
class NodeReader
{
public:
    explicit NodeReader(bool bKeep) : m_bKeep(bKeep) {}

    template <class Reader>
    bool operator()(Reader& reader, uint32_t, NodeRecord& record)
    {
        if (!std::exchange(m_bTable, true) && !readTable(reader, m_vecTable))
            return false;
        uint8_t uTags;
        if (!reader.transform(record.transform) || !reader.value(uTags))
            return false;
        for (; uTags > 0; --uTags)
        {
            uint8_t uIndex;
            if (!reader.value(uIndex) || uIndex >= m_vecTable.size())
                return false;
            if (m_bKeep && !m_vecTable[uIndex].empty())
                record.vecTags.push_back(m_vecTable[uIndex]);
        }
        return reader.blob(record.vecParameters);
    }

private:
    std::vector<std::string> m_vecTable;
    bool m_bKeep;
    bool m_bTable = false;
};

} // namespace

bool NodeRecord::operator==(const NodeRecord& other) const
{
    return equal(transform, other.transform) && vecTags == other.vecTags &&
           vecParameters == other.vecParameters;
}

void writeNodeSection(ByteStream& stream, std::span<const NodeRecord> spanNodes, const CellPlace& place)
{
    const TagTable table(spanNodes);
    {
        CellFieldWriter writer(stream, table.bytes());
        table.write(writer);
    }
    SortedRecords records(stream);
    for (const NodeRecord& node : spanNodes)
    {
        {
            CellFieldWriter writer(stream, TransformSize + 1 + std::min(node.vecTags.size(), MaxShortList) +
                                               sizeof(uint32_t) + node.vecParameters.size());
            writer.transform(node.transform, place.origin);
            table.writeIndices(writer, node);
            writer.blob(node.vecParameters);
        }
        records.end();
    }
    records.finish();
}

void writeNodeSection(BitStream& stream, std::span<const NodeRecord> spanNodes)
{
    const TagTable table(spanNodes);
    PrefabFieldWriter writer(stream);
    table.write(writer);
    for (const NodeRecord& node : spanNodes)
    {
        writer.transform(node.transform);
        table.writeIndices(writer, node);
        writer.blob(node.vecParameters);
    }
}

bool readRecords(ByteCursor& cursor, const CellList& list, std::vector<NodeRecord>& vecOut)
{
    return detail::readCellList(s_pKind, cursor, list, s_uMinBytes, vecOut, NodeReader(true));
}

bool readRecords(BitStream& stream, const PrefabList& list, std::vector<NodeRecord>& vecOut)
{
    return detail::readPrefabList(s_pKind, stream, list, s_uMinBytes, vecOut, NodeReader(true));
}

template <>
bool checkRecords<NodeRecord>(ByteCursor& cursor, const CellList& list, RecordEnds* pEnds)
{
    return detail::checkCellList<NodeRecord>(s_pKind, cursor, list, pEnds, NodeReader(false));
}

} // namespace tile
