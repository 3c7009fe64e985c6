#pragma once // How the entities of one stored list become records and back.

#include "KestrelCommon/Tile/SectionTable.h"

#include <cstdint>
#include <glm/vec3.hpp>
#include <span>
#include <vector>

class ByteStream;

namespace tilebuilder
{

struct EntityCreateArgs;

/// A kind has one for each of its stored lists.
///
/// Positions: records hold the origin's place less that of the cell; arguments hold the world's.
/// Threads: const operations from many at once while no entity changes.
class EntityRecordsI
{
public:
    virtual ~EntityRecordsI() = default;

    [[nodiscard]] virtual tile::SectionGroup group() const = 0;

    /// Whether an entity of the kind stands in this list, for kinds that have two.
    [[nodiscard]] virtual bool holds(uint32_t /*uId*/) const { return true; }
    /// The level of detail that an entity belongs to, 0 to 3; 0 for lists without levels.
    [[nodiscard]] virtual uint32_t level(uint32_t /*uId*/) const { return 0; }

    /// Appends the records of these entities, sorted by their bytes, so that equal content gives
    /// equal sections; brings the ids into the order of their records.
    virtual void write(ByteStream& stream, std::span<uint32_t> spanIds, const glm::vec3& origin) const = 0;

    /// The end of each record, counted from the first byte. False, with one line, when the records
    /// don't take all of the bytes; vecEnds stays as it was.
    [[nodiscard]] virtual bool split(std::span<const std::byte> spanRecords, uint32_t uCount,
                                     uint32_t uVersion, std::vector<uint32_t>& vecEnds) const = 0;

    /// Appends the arguments of each record. False, with one line, when they are broken; vecArgs
    /// stays as it was.
    [[nodiscard]] virtual bool read(std::span<const std::byte> spanRecords, uint32_t uCount,
                                    const glm::vec3& origin, uint32_t uVersion,
                                    std::vector<EntityCreateArgs>& vecArgs) const = 0;
};

} // namespace tilebuilder
