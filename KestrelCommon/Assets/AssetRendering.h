#pragma once // The assets of the database and their instances in the world.

#include "KestrelCommon/Core/Transform.h"
#include "KestrelCommon/Core/Uuid.h"
#include "KestrelCommon/renderer/InstanceWorld.h"

#include <map>
#include <memory>
#include <string>
#include <unordered_map>

namespace terrain
{

/// Colour slot to colour; red in the lowest byte.
using ColorMap = std::map<std::string, uint32_t, std::less<>>;

/// The triangles of an asset, for rays: in the model's own space, shared by all instances.
struct TriangleShape
{
    std::span<const glm::vec3> spanPositions;
    std::span<const uint32_t> spanIndices; ///< three a triangle
};

/// Assets by id, and instances of them by the id of their owner. A derived class may keep more of both:
/// it makes the objects that it hands in.
///
/// No GPU is needed: an InstanceWorld is plain data. Models are read when they are first needed.
/// Lifetime: the world must outlive it.
/// Threads: main thread only, but for const operations, which any number of threads may call between
/// changes.
class AssetRendering
{
public:
    struct Asset
    {
        virtual ~Asset() = default;

        Uuid uuid;
        std::string strName;
        std::shared_ptr<const resource::Renderable> pRenderable;
        std::shared_ptr<const resource::Renderable> pWireframeRenderable; ///< for its highlight
        ColorMap mapDefaultColors;
        uint32_t uRenderable = rend::InstanceWorld::s_uNone; ///< both in the world
        uint32_t uWireframeRenderable = rend::InstanceWorld::s_uNone;
        /// The entity that each wireframe instance belongs to, in their order.
        std::vector<uint32_t> m_vecWireframeAssetEntityIds;
    };

    struct AssetInstance
    {
        virtual ~AssetInstance() = default;

        Uuid uuid;
        ColorMap m_colorMap;
        Transform transform;
        uint32_t uInstanceSlot = rend::InstanceWorld::s_uNone;
        uint32_t uWireframeIndex = rend::InstanceWorld::s_uNone; ///< place among the wireframe instances
        uint32_t uEntityId = 0;
        bool bSelected = false;  ///< highlighted
        Asset* pAsset = nullptr; ///< the one with its uuid
    };

    explicit AssetRendering(rend::InstanceWorld& world) : m_world(world) {}
    virtual ~AssetRendering();
    AssetRendering(const AssetRendering&) = delete;
    AssetRendering& operator=(const AssetRendering&) = delete;

    // Assets

    /// The same path yields the same model as long as it is in use.
    std::shared_ptr<const resource::Renderable> makeRenderable(const resource::RenderableDesc& desc,
                                                               bool bWireframe,
                                                               const resource::PathResolver& fnResolve);
    /// Takes an asset in. One of the same uuid is replaced, with a line; its instances go over to the new
    /// one. True when the uuid is new.
    bool addAsset(std::unique_ptr<Asset> pAsset);
    /// Null when there is none; logs nothing.
    [[nodiscard]] Asset* findAssetOrNull(const Uuid& uuid) const;
    [[nodiscard]] size_t assetCount() const { return m_mapAssets.size(); }

    /// Of the model, in its own units; loads it. nullopt when the uuid isn't known.
    [[nodiscard]] std::optional<Aabb> localBounds(const Uuid& uuid) const;
    /// Empty when the uuid isn't known; valid as long as the asset stays.
    [[nodiscard]] TriangleShape triangleShape(const Uuid& uuid) const;

    // Instances

    /// Places an instance; its uuid, transform, colours and entity id are set by the caller. Null when the
    /// uuid isn't known, or the entity has one already.
    AssetInstance* addInstance(std::unique_ptr<AssetInstance> pInstance);
    /// Its highlight goes with it.
    void removeInstance(uint32_t uEntityId);
    [[nodiscard]] AssetInstance* findInstance(uint32_t uEntityId) const;
    [[nodiscard]] size_t instanceCount() const { return m_uInstances; }

    /// Stores the transform and moves what is drawn, the highlight too.
    void setInstanceTransform(AssetInstance& instance, const Transform& transform);
    /// After a change of the instance's colour map.
    void updateInstanceColors(AssetInstance& instance);
    void setHighlighted(AssetInstance& instance, bool bHighlighted);
    /// Takes it out of the picture, and back.
    void setShown(AssetInstance& instance, bool bShown);

protected:
    /// The instance's asset was replaced by another of the same uuid.
    virtual void onAssetReplaced(AssetInstance& /*instance*/) {}

private:
    void place(AssetInstance& instance);
    void unplace(AssetInstance& instance);

    rend::InstanceWorld& m_world;
    std::unordered_map<Uuid, std::unique_ptr<Asset>> m_mapAssets;
    std::vector<std::unique_ptr<AssetInstance>> m_vecInstances; ///< by entity id; ids are dense
    size_t m_uInstances = 0;
    std::unordered_map<std::string, std::weak_ptr<const resource::ModelFile>> m_mapModels; ///< by path
};

} // namespace terrain
