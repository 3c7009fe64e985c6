#pragma once // What brings an entity into being.

#include "KestrelCommon/Core/Transform.h"
#include "TileEditorCommon/Contracts/EntityTypeId.h"

#include <cstdint>
#include <memory>

namespace tilebuilder
{

/// What is particular to a kind. Shared by copies of the arguments, so nobody changes one that
/// others may hold.
class IPayload
{
public:
    virtual ~IPayload() = default;
    /// Mixes in what tells this object from another of its kind.
    [[nodiscard]] virtual uint64_t hash(uint64_t uSeed) const = 0;
};

/// The one way of describing a new entity: cell and prefab readers, cloning and placement make it.
/// The payload classes stand in EntityPayloads.h and with their kinds.
struct EntityCreateArgs
{
    struct Asset;
    struct VoxelMesh;
    struct Harvestable;
    struct Blueprint;
    struct Prefab;
    struct Node;
    struct Decal;
    struct Selector;

    EntityTypeId eTypeId = EntityTypeId_COUNT;
    uint32_t uId = 0;         ///< filled in by Entities
    uint32_t uParentId = 0;   ///< the prefab that owns it; 0: it stands on the tile itself
    uint32_t uPrefabSlot = 0; ///< id space: on a tile without ground the slot of its top-level prefab
    Transform transform;      ///< of the origin, in the world
    std::shared_ptr<IPayload> pPayload;
    bool bStored = false; ///< rebuilt from stored or cloned data, not placed by hand

    /// Null for arguments of another kind or without a payload.
    template <typename Payload>
    [[nodiscard]] const Payload* payload() const
    {
        return dynamic_cast<const Payload*>(pPayload.get());
    }

    /// Equal for arguments that would make the same entity; takes in no rotation, so a match is
    /// only sure once the transforms are equal too.
    [[nodiscard]] uint64_t recordHash() const;
};

} // namespace tilebuilder
