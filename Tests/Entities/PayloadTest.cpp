#include "TileEditorCommon/Entities/EntityPayloads.h"

#include <gtest/gtest.h>

using namespace tilebuilder;

namespace
{

/// Two payloads that differ in one field must never be taken for the same thing of a state.
template <class Payload, class Change>
void expectOther(const Change& fnChange)
{
    Payload first;
    Payload second;
    EXPECT_EQ(first.hash(7), second.hash(7));
    fnChange(second);
    EXPECT_NE(first.hash(7), second.hash(7));
}

TEST(EntityPayloadTest, everyFieldTellsOneFromAnother)
{
    using Args = EntityCreateArgs;
    expectOther<Args::VoxelMesh>([](auto& payload) { payload.uuid = Uuid::random(); });
    expectOther<Args::VoxelMesh>([](auto& payload) { payload.arrSettings[2] = 1; });
    expectOther<Args::VoxelMesh>([](auto& payload) { payload.arrFlags[1] = 1; });
    expectOther<Args::Harvestable>([](auto& payload) { payload.uColor = 1; });
    expectOther<Args::Harvestable>([](auto& payload) { payload.setTags = {"a"}; });
    expectOther<Args::Blueprint>([](auto& payload) { payload.strPathOrJson = "$GAME_DATA/a"; });
    expectOther<Args::Blueprint>([](auto& payload) { payload.iSortingIndex = -1; });
    expectOther<Args::Prefab>([](auto& payload) { payload.uFlags = 2; });
    expectOther<Args::Prefab>([](auto& payload) { payload.vecChildArgs.emplace_back(); });
    expectOther<Args::Node>([](auto& payload) { payload.strName = "n"; });
    expectOther<Args::Node>([](auto& payload) { payload.vecTags = {"", "n"}; });
    expectOther<Args::Decal>([](auto& payload) { payload.uLayer = 3; });

    // A child that stands elsewhere makes another prefab.
    Args::Prefab first;
    first.vecChildArgs.emplace_back();
    Args::Prefab second = first;
    second.vecChildArgs[0].transform.position.z = 1.0f;
    EXPECT_NE(first.hash(0), second.hash(0));
}

} // namespace
