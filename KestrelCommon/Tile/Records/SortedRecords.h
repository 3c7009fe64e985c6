#pragma once // Brings the records of a section into the order of their bytes.

#include "KestrelCommon/Io/ByteStream.h"

#include <span>
#include <vector>

namespace tile
{

/// Records that are being appended to a stream. Equal content gives equal sections this way,
/// whatever the order in which the objects are kept.
///
///     SortedRecords records(stream);
///     for (...) { writeRecord(stream, ...); records.end(); }
///     return records.finish();
///
/// Records that come in order cost one comparison each.
class SortedRecords
{
public:
    explicit SortedRecords(ByteStream& stream) : m_stream(stream), m_uStart(stream.size()), m_uLast(m_uStart)
    {
    }

    /// What was written since the last call is a record.
    void end();

    /// Sorts what was appended; the number of records.
    uint32_t finish() { return finish({}); }
    /// The same; brings the ids of the records' owners, one for each record, into the new order.
    uint32_t finish(std::span<uint32_t> spanIds);

private:
    ByteStream& m_stream;
    uint32_t m_uStart;
    uint32_t m_uLast;                  ///< where the open record begins
    std::vector<uint32_t> m_vecStarts; ///< of the ended records
    bool m_bSorted = true;
};

} // namespace tile
