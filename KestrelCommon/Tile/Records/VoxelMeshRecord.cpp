#include "KestrelCommon/Tile/Records/VoxelMeshRecord.h"

namespace tile
{

namespace
{

constexpr const char* s_pKind = "Voxel mesh";
constexpr size_t s_uBytes = TransformSize + sizeof(Uuid) + sizeof(uint32_t) * 2 + 1 + sizeof(uint32_t);
constexpr size_t s_uMinBytes = s_uBytes - 1; ///< with the flag of one bit

template <class Reader, class ReadFlag>
bool readFields(Reader& reader, ReadFlag&& fnFlag, VoxelMeshRecord& record)
{
    return reader.transform(record.transform) && reader.uuid(record.uuid) && reader.value(record.iPriority) &&
           reader.value(record.uMaterial) && fnFlag(record.bSubtractive) && reader.value(record.uBlurMode);
}

bool readCell(CellFieldReader& reader, uint32_t, VoxelMeshRecord& record)
{
    return readFields(
        reader, [&](bool& bFlag) { return reader.flag(bFlag); }, record);
}

// Bits of a list from a place in the file: ids begin at a byte boundary.
uint64_t sectionBits(uint32_t uStart, uint32_t uCount, uint32_t uFlagBits)
{
    uint64_t uEnd = uStart;
    for (uint32_t i = 0; i < uCount; ++i)
        uEnd = (uEnd + TransformSize * 8 + 7) / 8 * 8 + sizeof(Uuid) * 8 + 32 + 32 + uFlagBits + 32;
    return uEnd - uStart;
}

} // namespace

bool VoxelMeshRecord::operator==(const VoxelMeshRecord& other) const
{
    return equal(transform, other.transform) && uuid == other.uuid && iPriority == other.iPriority &&
           uMaterial == other.uMaterial && bSubtractive == other.bSubtractive && uBlurMode == other.uBlurMode;
}

void writeRecord(ByteStream& stream, const VoxelMeshRecord& record, const CellPlace& place)
{
    CellFieldWriter writer(stream, s_uBytes);
    writer.transform(record.transform, place.origin);
    writer.value(record.uuid);
    writer.value(record.iPriority);
    writer.value(record.uMaterial);
    writer.flag(record.bSubtractive);
    writer.value(record.uBlurMode);
}

void writeRecord(BitStream& stream, const VoxelMeshRecord& record)
{
    PrefabFieldWriter writer(stream);
    writer.transform(record.transform);
    writer.uuid(record.uuid);
    writer.value(record.iPriority);
    writer.value(record.uMaterial);
    writer.flag(record.bSubtractive);
    writer.value(record.uBlurMode);
}

bool readRecords(ByteCursor& cursor, const CellList& list, std::vector<VoxelMeshRecord>& vecOut)
{
    return detail::readCellList(s_pKind, cursor, list, s_uMinBytes, vecOut, readCell);
}

bool readRecords(BitStream& stream, const PrefabList& list, std::vector<VoxelMeshRecord>& vecOut)
{
    if (list.uCount > list.uBits / (s_uMinBytes * 8))
        return detail::refuse(s_pKind, static_cast<uint32_t>(list.uBits / (s_uMinBytes * 8)), list.uCount);
    const bool bByte = list.uBits == sectionBits(stream.readOffset(), list.uCount, 8);
    if (!bByte && list.uBits != sectionBits(stream.readOffset(), list.uCount, 1))
        return detail::refuse(s_pKind, 0, list.uCount);
    return detail::readPrefabList(s_pKind, stream, list, s_uMinBytes, vecOut,
                                  [bByte](PrefabFieldReader& reader, uint32_t, VoxelMeshRecord& record)
                                  {
                                      return readFields(
                                          reader,
                                          [&](bool& bFlag)
                                          {
                                              uint8_t uByte;
                                              if (!bByte)
                                                  return reader.flag(bFlag);
                                              if (!reader.value(uByte))
                                                  return false;
                                              bFlag = uByte != 0;
                                              return true;
                                          },
                                          record);
                                  });
}

template <>
bool checkRecords<VoxelMeshRecord>(ByteCursor& cursor, const CellList& list, RecordEnds* pEnds)
{
    return detail::checkCellList<VoxelMeshRecord>(s_pKind, cursor, list, pEnds, readCell);
}

} // namespace tile
