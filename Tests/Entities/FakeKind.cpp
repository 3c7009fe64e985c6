#include "Tests/Entities/FakeKind.h"

#include "KestrelCommon/Io/ByteStream.h"

#include <algorithm>
#include <array>
#include <cstring>

using namespace tilebuilder;

void FakeRecords::write(ByteStream& stream, std::span<uint32_t> spanIds, const glm::vec3& origin) const
{
    using Record = std::array<std::byte, s_uSize>;
    std::vector<std::pair<Record, uint32_t>> vecRecords;
    for (const uint32_t uId : spanIds)
    {
        const FakeInstance& instance = *m_kind.find(uId);
        const glm::vec3 position = instance.origin.position - origin;
        const glm::quat& rotation = instance.origin.rotation;
        const float arrValues[] = {position.x,
                                   position.y,
                                   position.z,
                                   rotation.x,
                                   rotation.y,
                                   rotation.z,
                                   rotation.w,
                                   instance.origin.scale.x,
                                   instance.origin.scale.y,
                                   instance.origin.scale.z};
        auto& entry = vecRecords.emplace_back(Record{}, uId);
        std::memcpy(entry.first.data(), &instance.uValue, 4);
        std::memcpy(entry.first.data() + 4, arrValues, sizeof(arrValues));
    }
    std::sort(vecRecords.begin(), vecRecords.end());
    for (size_t i = 0; i < vecRecords.size(); ++i)
    {
        stream.write(vecRecords[i].first.data(), s_uSize);
        spanIds[i] = vecRecords[i].second;
    }
}

bool FakeRecords::split(std::span<const std::byte> spanRecords, uint32_t uCount, uint32_t /*uVersion*/,
                        std::vector<uint32_t>& vecEnds) const
{
    if (spanRecords.size() != uCount * s_uSize)
        return false;
    for (uint32_t i = 1; i <= uCount; ++i)
        vecEnds.push_back(i * s_uSize);
    return true;
}

bool FakeRecords::read(std::span<const std::byte> spanRecords, uint32_t uCount, const glm::vec3& origin,
                       uint32_t /*uVersion*/, std::vector<EntityCreateArgs>& vecArgs) const
{
    if (spanRecords.size() != uCount * s_uSize)
        return false;
    for (uint32_t i = 0; i < uCount; ++i)
    {
        uint32_t uValue = 0;
        float arrValues[10];
        std::memcpy(&uValue, spanRecords.data() + i * s_uSize, 4);
        std::memcpy(arrValues, spanRecords.data() + i * s_uSize + 4, sizeof(arrValues));
        EntityCreateArgs& args = vecArgs.emplace_back();
        args.eTypeId = m_kind.getTypeId();
        args.transform.position = origin + glm::vec3(arrValues[0], arrValues[1], arrValues[2]);
        args.transform.rotation = glm::quat(arrValues[6], arrValues[3], arrValues[4], arrValues[5]);
        args.transform.scale = {arrValues[7], arrValues[8], arrValues[9]};
        args.pPayload = std::make_shared<FakePayload>(uValue);
    }
    return true;
}

FakeWorld::FakeWorld() : entities(sink, tools)
{
    tools.tool = ToolPlace;
    const auto addKind = [this](EntityTypeId eId, std::optional<tile::SectionGroup> eGroup)
    {
        auto pKind = std::make_unique<FakeKind>(entities, eId);
        FakeKind* pBorrowed = pKind.get();
        EntityKind kind;
        kind.pColors = pKind.get();
        if (eGroup)
            kind.vecRecords.push_back(std::make_unique<FakeRecords>(*pKind, *eGroup));
        kind.pType = std::move(pKind);
        if (eId == EntityTypeId_Decal)
            kind.fnLocked = [this](uint32_t uId) { return setLocked.contains(uId); };
        entities.addKind(std::move(kind));
        return pBorrowed;
    };
    pAssets = addKind(EntityTypeId_Asset, tile::SectionGroup::Assets);
    pDecals = addKind(EntityTypeId_Decal, tile::SectionGroup::Decals);
    pPrefabs = addKind(EntityTypeId_Prefab, std::nullopt);
    pGrids = addKind(EntityTypeId_Grid, std::nullopt);
    entities.openTile({2, 1, tile::TypeGround, ""});
    sink.reset();
}

Entity FakeWorld::add(const Transform& transform, uint32_t uValue, EntityTypeId eId)
{
    EntityCreateArgs args;
    args.eTypeId = eId;
    args.transform = transform;
    args.pPayload = std::make_shared<FakePayload>(uValue);
    return entities.createEntity(std::move(args));
}

Entity FakeWorld::add(const glm::vec3& position, uint32_t uValue, EntityTypeId eId)
{
    Transform transform;
    transform.position = position;
    return add(transform, uValue, eId);
}

Entity FakeWorld::addSelected(const glm::vec3& position, EntityTypeId eId)
{
    const Entity entity = add(position, 0, eId);
    entities.select(entity, true);
    return entity;
}

const FakeInstance& FakeWorld::instance(const Entity& entity)
{
    return *static_cast<const FakeInstance*>(entity.pType->getInstance(entity.uId));
}

FakeWorld::Stored FakeWorld::store(const SectionKey& key) const
{
    const std::span<const uint32_t> spanIds = entities.index().ids(StoredForm::Plain, key);
    std::vector<uint32_t> vecIds(spanIds.begin(), spanIds.end());
    ByteStream stream;
    entities.records(key.eGroup)->write(stream, vecIds, entities.index().origin(key.uCell));
    return {{stream.bytes().begin(), stream.bytes().end()}, static_cast<uint32_t>(vecIds.size())};
}

std::vector<std::pair<SectionKey, FakeWorld::Stored>> FakeWorld::storeAll() const
{
    std::vector<std::pair<SectionKey, Stored>> vecState;
    for (const tile::SectionGroup eGroup : {tile::SectionGroup::Assets, tile::SectionGroup::Decals})
        for (uint32_t uCell = 0; uCell < entities.index().cells(); ++uCell)
            for (uint32_t uLevel = 0; uLevel < CellIndex::s_uLevels; ++uLevel)
            {
                const SectionKey key{eGroup, uCell, uLevel};
                vecState.emplace_back(key, store(key));
            }
    return vecState;
}

void FakeWorld::restore(const std::vector<std::pair<SectionKey, Stored>>& vecState, bool bSelect)
{
    entities.beginRestore();
    for (const auto& [key, stored] : vecState)
        entities.restoreSection(key, stored.vecBytes, stored.uCount, tile::VersionCurrent);
    entities.endRestore(bSelect);
}
