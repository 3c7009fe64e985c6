#pragma once // Placed nodes as they are stored: a table of tags and the nodes that refer to it.

#include "KestrelCommon/Tile/Records/RecordList.h"

namespace tile
{

struct NodeRecord
{
    Transform transform;
    std::vector<std::string> vecTags;     ///< in the order of the record, none of them empty
    std::vector<std::byte> vecParameters; ///< as they are stored; empty: none

    bool operator==(const NodeRecord&) const;
};

/// Nodes are stored with a table in front, so sections are written whole, even if they have no
/// nodes. The cell form sorts its records by their bytes. Tags beyond the table's 255 entries are
/// left out with a warning.
void writeNodeSection(ByteStream& stream, std::span<const NodeRecord> spanNodes, const CellPlace& place);
void writeNodeSection(BitStream& stream, std::span<const NodeRecord> spanNodes);
[[nodiscard]] bool readRecords(ByteCursor& cursor, const CellList& list, std::vector<NodeRecord>& vecOut);
[[nodiscard]] bool readRecords(BitStream& stream, const PrefabList& list, std::vector<NodeRecord>& vecOut);
/// The first record's end counts the table too.
template <>
bool checkRecords<NodeRecord>(ByteCursor& cursor, const CellList& list, RecordEnds* pEnds);

} // namespace tile
