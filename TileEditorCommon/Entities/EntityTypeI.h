#pragma once // A kind of entity: owns all its instances.

#include "KestrelCommon/Core/Aabb.h"
#include "KestrelCommon/Core/Transform.h"
#include "TileEditorCommon/Contracts/Entity.h"
#include "TileEditorCommon/Contracts/ScaleFlags.h"

#include <glm/vec3.hpp>
#include <span>
#include <string>

namespace tilebuilder
{

struct EntityCreateArgs;
class EntityHostI;
class PropertyPanelI;

/// Bits of isCamera().
enum CameraFlags : uint32_t
{
    CameraViewpoint = 1, ///< the camera window lists the entity
    CameraHidden = 2,    ///< the entity stays out of the outliner
};

/// What a kind does with its instances, each known by its entity's id.
///
/// Unknown ids: every lookup yields its empty result (identity transform, empty or null name, false,
///     0), every change does nothing. Neither logs.
/// Pivots: the origin transform is where the model's own origin lies, and what files hold; the
///     centre transform has the same turn and scale and stands at the middle of the bounds. Both in
///     the world, metres. Kinds with one pivot implement the centre ones alone.
/// Threads: main thread only; const operations may run on many threads while nothing changes.
class EntityTypeI
{
public:
    virtual ~EntityTypeI() = default;

    // Life

    /// A document is about to be read.
    virtual void beginLoad() {}
    /// All instances are gone: drops what was kept beside them.
    virtual void clearAll() {}
    [[nodiscard]] virtual EntityTypeId getTypeId() const = 0;
    /// Makes the instance args.uId; may fill in more of the arguments. False: nothing was made, reported.
    virtual bool create(EntityCreateArgs& args, std::span<const uint64_t> spanStack) = 0;
    [[nodiscard]] virtual bool exists(uint32_t uId) const = 0;
    /// bRemoveLinks: what others hold of the entity goes too.
    virtual void remove(uint32_t uId, bool bRemoveLinks) = 0;

    // Place

    [[nodiscard]] virtual std::string getDisplayName(uint32_t uId) const = 0;
    [[nodiscard]] virtual Transform getCenterTransform(uint32_t uId) const = 0;
    virtual void setCenterTransform(uint32_t uId, const Transform& transform) = 0;
    [[nodiscard]] virtual Transform getOriginTransform(uint32_t uId) const { return getCenterTransform(uId); }
    virtual void setOriginTransform(uint32_t uId, const Transform& transform)
    {
        setCenterTransform(uId, transform);
    }
    /// As it was created, whatever moved since: for a prefab's child its place within the prefab.
    [[nodiscard]] virtual Transform getLocalCenterTransform(uint32_t /*uId*/) const { return {}; }
    [[nodiscard]] virtual Transform getLocalTransform(uint32_t uId) const
    {
        return getLocalCenterTransform(uId);
    }
    /// In the model's own units around its origin, before scale. False: it has none.
    virtual bool getBounds(uint32_t /*uId*/, Aabb& /*box*/) const { return false; }

    // Selection

    virtual void onSelect(uint32_t /*uId*/) {}
    virtual void onDeselect(uint32_t /*uId*/) {}
    /// For those who know the type; null when there is none. Read only: changes go through the type.
    [[nodiscard]] virtual const void* getInstance(uint32_t /*uId*/) const { return nullptr; }

    // View through it

    /// Degrees, vertical.
    [[nodiscard]] virtual float getFieldOfView(uint32_t /*uId*/) const { return 0.0f; }
    virtual void setFieldOfView(uint32_t /*uId*/, float /*fDegrees*/) {}

    // Work

    /// All of a document's entities are there.
    virtual void afterLoad() {}
    /// True when the two are connected now.
    virtual bool connect(uint32_t /*uId*/, const Entity& /*other*/) { return false; }
    /// Adds the rows of the kind to a panel that the caller begins and ends.
    virtual void displayProperties(uint32_t /*uId*/, PropertyPanelI& /*panel*/) {}
    /// A frame; seconds.
    virtual void update(float /*dt*/) {}

    // Copies

    /// A new top-level entity like this one, at its place; `copy` stays as it was on false.
    virtual bool clone(uint32_t uId, EntityHostI& host, Entity& copy);
    virtual bool getCloneArgs(uint32_t /*uId*/, EntityCreateArgs& /*args*/) const { return false; }

    // Traits of one entity

    /// Bits of ScaleFlags.
    [[nodiscard]] virtual uint8_t getScaleFlags(uint32_t /*uId*/) const { return 0; }
    [[nodiscard]] virtual uint32_t isCamera(uint32_t /*uId*/) const { return 0; }
    /// Drags always snap.
    [[nodiscard]] virtual bool movesByGrid(uint32_t /*uId*/) const { return false; }
    [[nodiscard]] virtual glm::vec3 getColor(uint32_t /*uId*/) const { return glm::vec3(1.0f); }
    /// Handle of its icon.
    [[nodiscard]] virtual uint32_t getGizmo(uint32_t /*uId*/) const { return 0; }
    [[nodiscard]] virtual uint32_t getFilterFlag() const;

    /// Not a thing that a click or the outliner may take.
    [[nodiscard]] virtual bool isLocked(uint32_t /*uId*/) const { return false; }
};

} // namespace tilebuilder
