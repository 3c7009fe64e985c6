#pragma once // The one table of a cell's section groups, for writer, reader and checker.

#include "KestrelCommon/Tile/TileFormat.h"
#include "KestrelCommon/Tile/TileVersion.h"

#include <cstring>
#include <span>

namespace tile
{

enum class SectionGroup : uint8_t
{
    Mips,
    Clutter,
    Assets,
    Blueprints,
    Nodes,
    Prefabs,
    Decals,
    Harvestables,
    Kinematics,
    VoxelMeshes,
    VoxelTerrain,
    Scripts, ///< never written
};
constexpr size_t SectionGroupCount = 12;

/// One section as a cell header tells of it. Groups without a count field always count 1.
struct Section
{
    uint32_t uCount = 0;
    uint32_t uIndex = 0;          ///< offset of the bytes in the image
    uint32_t uCompressedSize = 0; ///< bytes in the image
    uint32_t uSize = 0;           ///< bytes before compression
};

/// A group: where its fields stand in the cell header, and the texts of its assertions.
struct SectionGroupInfo
{
    static constexpr uint16_t s_uNoCount = 0xFFFF;

    SectionGroup eGroup;
    const char* pName;
    uint8_t uElements;      ///< mips, levels or 1
    uint16_t uCount;        ///< byte offset of the first count field
    uint16_t uIndex;        ///< of the first index field; the other fields follow in blocks
    uint32_t uFirstVersion; ///< versions below it have no such sections
    const char* pSizeAssertion;
    const char* pReadAssertion;

    [[nodiscard]] constexpr bool isObjects() const { return uCount != s_uNoCount; }
};

/// All groups, in the order in which a cell's sections are written; scripts stand last.
[[nodiscard]] std::span<const SectionGroupInfo, SectionGroupCount> sectionGroups();
[[nodiscard]] const SectionGroupInfo& sectionGroup(SectionGroup eGroup);

/// The groups of objects in the order in which the editor reads them.
[[nodiscard]] std::span<const SectionGroup> objectReadOrder();

[[nodiscard]] Section section(const CellHeader& header, const SectionGroupInfo& group, uint32_t uElement);

/// A section of count 0 stores 0 in all its fields.
void setSection(CellHeader& header, const SectionGroupInfo& group, uint32_t uElement, const Section& section);

/// Whether a file of that version has this section: versions are counted, and groups whose
/// reader also asks for an index are absent without one.
[[nodiscard]] bool isPresent(const SectionGroupInfo& group, const Section& section, uint32_t uVersion);

} // namespace tile
