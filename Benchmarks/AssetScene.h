#pragma once // A tile with tens of thousands of assets, for what is asked of entities.

#include "Tests/Document/TileWorld.h"
#include "TileEditorCommon/Contracts/EditorToolState.h"
#include "TileEditorCommon/Document/EntitySections.h"
#include "TileEditorCommon/Entities/Asset/AssetEntityType.h"
#include "TileEditorCommon/Entities/Entities.h"
#include "TileEditorCommon/Entities/EntityCreateArgs.h"

#include <random>

namespace bench
{

constexpr uint32_t SceneAssets = 50000;
constexpr uint32_t SceneKinds = 60; ///< a third each without colour slots, with two and with five

/// Assets of SceneKinds kinds on the tile of a world, which is borrowed.
class AssetScene
{
public:
    explicit AssetScene(TileWorld& world);

    /// A tile without assets, of the world's size.
    void open();
    /// Arguments of so many, evenly over the tile; the same with every call.
    [[nodiscard]] std::vector<tilebuilder::EntityCreateArgs> args(uint32_t uCount) const;
    /// An empty tile with SceneAssets of them.
    void fill();
    [[nodiscard]] static Uuid uuid(uint32_t u);

    TileWorld& world;
    tilebuilder::EditorToolState tools;
    rend::InstanceWorld instances;
    tilebuilder::Entities entities;
    std::unique_ptr<tilebuilder::EntitySections> pSections;
};

} // namespace bench
