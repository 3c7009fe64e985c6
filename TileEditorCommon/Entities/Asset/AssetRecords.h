#pragma once // Assets as they are stored.

#include "TileEditorCommon/Entities/EntityRecordsI.h"

namespace tilebuilder
{

class AssetEntityType;
class EntityHostI;

/// Both are borrowed.
class AssetRecords : public EntityRecordsI
{
public:
    AssetRecords(const AssetEntityType& type, const EntityHostI& host) : m_type(type), m_host(host) {}

    [[nodiscard]] tile::SectionGroup group() const override { return tile::SectionGroup::Assets; }
    /// By the diagonal of the scaled box: from 8, 24 and 72 m on the next.
    [[nodiscard]] uint32_t level(uint32_t uId) const override;
    void write(ByteStream& stream, std::span<uint32_t> spanIds, const glm::vec3& origin) const override;
    [[nodiscard]] bool split(std::span<const std::byte> spanRecords, uint32_t uCount, uint32_t uVersion,
                             std::vector<uint32_t>& vecEnds) const override;
    [[nodiscard]] bool read(std::span<const std::byte> spanRecords, uint32_t uCount, const glm::vec3& origin,
                            uint32_t uVersion, std::vector<EntityCreateArgs>& vecArgs) const override;

private:
    const AssetEntityType& m_type;
    const EntityHostI& m_host;
};

} // namespace tilebuilder
