#pragma once // What all lists of records share: how a list is described, read and refused.

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Io/BitStream.h"
#include "KestrelCommon/Io/ByteCursor.h"
#include "KestrelCommon/Tile/Records/CellFields.h"
#include "KestrelCommon/Tile/Records/PrefabFields.h"
#include "KestrelCommon/Tile/TileVersion.h"

#include <vector>

namespace tile
{

/// A list of records in a cell.
struct CellList
{
    uint32_t uCount = 0;
    uint32_t uVersion = VersionCurrent; ///< of the tile file
    glm::vec3 origin{0.0f};             ///< added to positions
};

/// A list of records in a prefab file.
struct PrefabList
{
    uint32_t uCount = 0;
    uint32_t uVersion = PrefabVersionCurrent; ///< of the prefab file
    uint32_t uBits = 0;                       ///< of the section, as its header entry tells
};

// Every kind has, in a file of its own,
//   void writeRecord(ByteStream&, const Record&, const CellPlace&);
//   void writeRecord(BitStream&, const Record&);
//   bool readRecords(ByteCursor&, const CellList&, std::vector<Record>&);
//   bool readRecords(BitStream&, const PrefabList&, std::vector<Record>&);
//   bool checkRecords<Record>(ByteCursor&, const CellList&, RecordEnds*);
// Readers append. A list whose bytes can't hold what it tells gives false and one line; vector
// and position are then as they were. checkRecords() says whether readRecords() will take the
// list and moves behind it; it keeps nothing and allocates nothing but the ends.

/// Offsets behind each record, from where the list begins.
using RecordEnds = std::vector<uint32_t>;

template <class Record>
[[nodiscard]] bool checkRecords(ByteCursor& cursor, const CellList& list, RecordEnds* pEnds = nullptr);

namespace detail
{

inline bool refuse(const char* pKind, uint32_t uRecord, uint32_t uCount)
{
    QM_LOG_ERROR(pKind, " record ", uRecord, " of ", uCount, " doesn't fit its section");
    return false;
}

/// Reads a list of a cell with a function (CellFieldReader&, uint32_t uVersion, Record&) -> bool.
/// A record has at least uMinBytes bytes.
template <class Record, class ReadOne>
bool readCellList(const char* pKind, ByteCursor& cursor, const CellList& list, size_t uMinBytes,
                  std::vector<Record>& vecOut, ReadOne&& fnRead)
{
    if (list.uCount > cursor.remaining() / uMinBytes)
        return refuse(pKind, static_cast<uint32_t>(cursor.remaining() / uMinBytes), list.uCount);
    const size_t uBefore = vecOut.size();
    vecOut.reserve(uBefore + list.uCount);
    CellFieldReader reader(cursor.rest(), list.origin, true);
    for (uint32_t i = 0; i < list.uCount; ++i)
        if (!fnRead(reader, list.uVersion, vecOut.emplace_back()))
        {
            vecOut.resize(uBefore);
            return refuse(pKind, i, list.uCount);
        }
    return cursor.skip(reader.position());
}

template <class Record, class ReadOne>
bool checkCellList(const char* pKind, ByteCursor& cursor, const CellList& list, RecordEnds* pEnds,
                   ReadOne&& fnRead)
{
    CellFieldReader reader(cursor.rest(), list.origin, false);
    if (list.uCount > reader.remaining())
        return refuse(pKind, static_cast<uint32_t>(reader.remaining()), list.uCount);
    if (pEnds)
        pEnds->reserve(list.uCount);
    Record record;
    for (uint32_t i = 0; i < list.uCount; ++i)
    {
        if (!fnRead(reader, list.uVersion, record))
            return refuse(pKind, i, list.uCount);
        if (pEnds)
            pEnds->push_back(static_cast<uint32_t>(reader.position()));
    }
    return cursor.skip(reader.position());
}

/// Reads a list of a prefab file with a function (PrefabFieldReader&, uint32_t uVersion, Record&).
template <class Record, class ReadOne>
bool readPrefabList(const char* pKind, BitStream& stream, const PrefabList& list, size_t uMinBytes,
                    std::vector<Record>& vecOut, ReadOne&& fnRead)
{
    const size_t uRoom = stream.bitsLeft() / 8 / uMinBytes;
    if (list.uCount > uRoom)
        return refuse(pKind, static_cast<uint32_t>(uRoom), list.uCount);
    const uint32_t uStart = stream.readOffset();
    const size_t uBefore = vecOut.size();
    vecOut.reserve(uBefore + list.uCount);
    PrefabFieldReader reader(stream);
    for (uint32_t i = 0; i < list.uCount; ++i)
        if (!fnRead(reader, list.uVersion, vecOut.emplace_back()))
        {
            vecOut.resize(uBefore);
            static_cast<void>(stream.setReadOffset(uStart));
            return refuse(pKind, i, list.uCount);
        }
    return true;
}

} // namespace detail

} // namespace tile
