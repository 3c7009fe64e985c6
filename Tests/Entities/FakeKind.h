#pragma once // A small kind of entities for tests: boxes with an offset pivot, a number and a colour.

#include "TileEditorCommon/Contracts/ChangeMask.h"
#include "TileEditorCommon/Contracts/EditorSinkI.h"
#include "TileEditorCommon/Contracts/EditorToolState.h"
#include "TileEditorCommon/Entities/Entities.h"
#include "TileEditorCommon/Entities/EntityColorsI.h"
#include "TileEditorCommon/Entities/EntityCreateArgs.h"
#include "TileEditorCommon/Entities/InstanceMap.h"

#include <unordered_set>

/// Counts what the rooms below tell the editor object.
struct RecordingSink : tilebuilder::EditorSinkI
{
    void markChanged(uint32_t uMask) override
    {
        uChanged |= uMask;
        ++uChanges;
    }
    void markInterfaceDirty(uint32_t uMask) override
    {
        uDirty |= uMask;
        ++uRefreshes;
    }
    void reset() { *this = {}; }

    uint32_t uChanged = 0;
    uint32_t uDirty = 0;
    uint32_t uChanges = 0;
    uint32_t uRefreshes = 0;
};

/// What tells one fake from another. The level of detail is value / 1000.
struct FakePayload : tilebuilder::IPayload
{
    explicit FakePayload(uint32_t uNumber) : uValue(uNumber) {}
    [[nodiscard]] uint64_t hash(uint64_t uSeed) const override { return uSeed * 31 + uValue; }

    uint32_t uValue;
};

struct FakeInstance
{
    Transform origin;
    Aabb bounds{{-1.0f, -1.0f, 0.0f}, {1.0f, 1.0f, 4.0f}}; ///< centre at (0, 0, 2)
    uint32_t uValue = 0;
    uint8_t uScaleFlags = tilebuilder::ScaleCan | tilebuilder::ScaleQuarter;
    bool bByGrid = false;
    uint32_t uSelections = 0;
    tile::ColorMap colors{{"base", 0}, {"trim", 0}};
};

class FakeKind : public tilebuilder::EntityTypeI, public tilebuilder::EntityColorsI
{
public:
    FakeKind(tilebuilder::EntityHostI& host, tilebuilder::EntityTypeId eId) : m_eId(eId), m_instances(host) {}

    [[nodiscard]] tilebuilder::EntityTypeId getTypeId() const override { return m_eId; }
    bool create(tilebuilder::EntityCreateArgs& args, std::span<const uint64_t> /*spanStack*/) override
    {
        if (bRefuses)
            return false;
        const auto* pPayload = dynamic_cast<const FakePayload*>(args.pPayload.get());
        FakeInstance instance;
        instance.origin = args.transform;
        instance.uValue = pPayload ? pPayload->uValue : 0;
        m_instances.add(args.uId, std::move(instance));
        bLastStored = args.bStored;
        return true;
    }
    [[nodiscard]] bool exists(uint32_t uId) const override { return m_instances.find(uId) != nullptr; }
    void remove(uint32_t uId, bool bRemoveLinks) override
    {
        m_instances.remove(uId);
        bLastRemovedLinks = bRemoveLinks;
    }
    [[nodiscard]] std::string getDisplayName(uint32_t uId) const override
    {
        const FakeInstance* pInstance = m_instances.find(uId);
        return pInstance ? "fake " + std::to_string(pInstance->uValue) : std::string();
    }
    [[nodiscard]] Transform getCenterTransform(uint32_t uId) const override
    {
        const FakeInstance* pInstance = m_instances.find(uId);
        if (!pInstance)
            return {};
        Transform centre = pInstance->origin;
        centre.position = centre.apply(pInstance->bounds.centre());
        return centre;
    }
    void setCenterTransform(uint32_t uId, const Transform& transform) override
    {
        if (const auto edit = m_instances.edit(uId, tilebuilder::ChangeEntitySet))
        {
            edit->origin = transform;
            edit->origin.position =
                transform.position - transform.rotation * (transform.scale * edit->bounds.centre());
        }
    }
    [[nodiscard]] Transform getOriginTransform(uint32_t uId) const override
    {
        const FakeInstance* pInstance = m_instances.find(uId);
        return pInstance ? pInstance->origin : Transform{};
    }
    void setOriginTransform(uint32_t uId, const Transform& transform) override
    {
        if (const auto edit = m_instances.edit(uId, tilebuilder::ChangeEntitySet))
            edit->origin = transform;
    }
    bool getBounds(uint32_t uId, Aabb& box) const override
    {
        const FakeInstance* pInstance = m_instances.find(uId);
        if (pInstance)
            box = pInstance->bounds;
        return pInstance != nullptr;
    }
    void onSelect(uint32_t uId) override { ++m_instances.edit(uId, 0)->uSelections; }
    void onDeselect(uint32_t uId) override { --m_instances.edit(uId, 0)->uSelections; }
    [[nodiscard]] const void* getInstance(uint32_t uId) const override { return m_instances.find(uId); }
    bool connect(uint32_t uId, const tilebuilder::Entity& other) override
    {
        vecConnected.emplace_back(uId, other.uId);
        return true;
    }
    bool getCloneArgs(uint32_t uId, tilebuilder::EntityCreateArgs& args) const override
    {
        const FakeInstance* pInstance = m_instances.find(uId);
        if (!pInstance || bNoClones)
            return false;
        args.eTypeId = m_eId;
        args.transform = pInstance->origin;
        args.pPayload = std::make_shared<FakePayload>(pInstance->uValue);
        return true;
    }
    [[nodiscard]] uint8_t getScaleFlags(uint32_t uId) const override
    {
        const FakeInstance* pInstance = m_instances.find(uId);
        return pInstance ? pInstance->uScaleFlags : 0;
    }
    [[nodiscard]] bool movesByGrid(uint32_t uId) const override
    {
        const FakeInstance* pInstance = m_instances.find(uId);
        return pInstance && pInstance->bByGrid;
    }

    [[nodiscard]] tile::ColorMap colors(uint32_t uId) const override { return m_instances.find(uId)->colors; }
    void setColors(uint32_t uId, const tile::ColorMap& mapColors) override
    {
        const auto edit = m_instances.edit(uId, tilebuilder::ChangeEntityValues);
        for (auto& [sName, uColor] : edit->colors)
            if (const auto itColor = mapColors.find(sName); itColor != mapColors.end())
                uColor = itColor->second;
    }

    [[nodiscard]] const FakeInstance* find(uint32_t uId) const { return m_instances.find(uId); }
    /// Changes without a word to anyone but the host.
    [[nodiscard]] tilebuilder::InstanceEdit<FakeInstance> edit(uint32_t uId)
    {
        return m_instances.edit(uId, tilebuilder::ChangeEntityValues);
    }
    [[nodiscard]] size_t size() const { return m_instances.size(); }

    bool bRefuses = false; ///< create() fails
    bool bNoClones = false;
    bool bLastStored = false;
    bool bLastRemovedLinks = false;
    std::vector<std::pair<uint32_t, uint32_t>> vecConnected;

private:
    tilebuilder::EntityTypeId m_eId;
    tilebuilder::InstanceMap<FakeInstance> m_instances;
};

/// 44 bytes a record: number, position, rotation as x, y, z, w, scale.
class FakeRecords : public tilebuilder::EntityRecordsI
{
public:
    static constexpr size_t s_uSize = 44;

    FakeRecords(const FakeKind& kind, tile::SectionGroup eGroup) : m_kind(kind), m_eGroup(eGroup) {}

    [[nodiscard]] tile::SectionGroup group() const override { return m_eGroup; }
    [[nodiscard]] uint32_t level(uint32_t uId) const override { return m_kind.find(uId)->uValue / 1000; }
    void write(ByteStream& stream, std::span<uint32_t> spanIds, const glm::vec3& origin) const override;
    [[nodiscard]] bool split(std::span<const std::byte> spanRecords, uint32_t uCount, uint32_t uVersion,
                             std::vector<uint32_t>& vecEnds) const override;
    [[nodiscard]] bool read(std::span<const std::byte> spanRecords, uint32_t uCount, const glm::vec3& origin,
                            uint32_t uVersion,
                            std::vector<tilebuilder::EntityCreateArgs>& vecArgs) const override;

private:
    const FakeKind& m_kind;
    tile::SectionGroup m_eGroup;
};

/// Entities on an open tile of 2 x 1 cells with fakes in the places of assets and decals, and of
/// prefabs and grids, which it doesn't store.
struct FakeWorld
{
    FakeWorld();

    /// A new one at a place, of unit scale and upright.
    tilebuilder::Entity add(const glm::vec3& position, uint32_t uValue = 0,
                            tilebuilder::EntityTypeId eId = tilebuilder::EntityTypeId_Asset);
    tilebuilder::Entity add(const Transform& transform, uint32_t uValue = 0,
                            tilebuilder::EntityTypeId eId = tilebuilder::EntityTypeId_Asset);
    /// The same, selected along with what is.
    tilebuilder::Entity addSelected(const glm::vec3& position,
                                    tilebuilder::EntityTypeId eId = tilebuilder::EntityTypeId_Asset);
    [[nodiscard]] static const FakeInstance& instance(const tilebuilder::Entity& entity);
    /// Bytes and count of a section of the plain form, as a tile image holds them.
    struct Stored
    {
        std::vector<std::byte> vecBytes;
        uint32_t uCount = 0;
    };
    [[nodiscard]] Stored store(const tilebuilder::SectionKey& key) const;
    /// All sections of the fakes.
    [[nodiscard]] std::vector<std::pair<tilebuilder::SectionKey, Stored>> storeAll() const;
    /// Back to what storeAll() gave, through the difference.
    void restore(const std::vector<std::pair<tilebuilder::SectionKey, Stored>>& vecState,
                 bool bSelect = false);

    RecordingSink sink;
    tilebuilder::EditorToolState tools;
    tilebuilder::Entities entities;
    FakeKind* pAssets = nullptr;
    FakeKind* pDecals = nullptr;
    FakeKind* pPrefabs = nullptr;
    FakeKind* pGrids = nullptr;
    std::unordered_set<uint32_t> setLocked; ///< ids of decals that can't be picked
};
