// Instances in their lists: what leaves is replaced by the last, and all stay findable.

#include "KestrelCommon/renderer/InstanceGather.h"

#include <glm/gtc/matrix_transform.hpp>
#include <gtest/gtest.h>
#include <random>

namespace
{

using namespace rend;

/// A renderable of the stand-in box, with that many colour slots a, b, c and so on.
std::shared_ptr<const resource::Renderable> boxWith(size_t uSlots)
{
    resource::RenderableDesc desc{.sMesh = "none", .mapMaterials = {}};
    for (size_t u = 0; u < uSlots; ++u)
        desc.mapMaterials[std::string(1, static_cast<char>('a' + u))].sColorSlot =
            std::string(1, static_cast<char>('a' + u));
    auto pModel = std::make_shared<const resource::ModelFile>("none", [](std::string_view)
                                                              { return std::filesystem::path(); });
    return std::make_shared<const resource::Renderable>(desc, pModel, false);
}

Transform at(float fX, float fY, float fScale = 0.25f)
{
    return {{fX, fY, 0.0f}, {0.70710677f, 0.70710677f, 0.0f, 0.0f}, glm::vec3(fScale)};
}

/// All that a gathering of the whole world yields, as (x, first colour), sorted.
std::vector<std::pair<float, uint32_t>> seen(InstanceWorld& world, const InstanceLimits& limits = {})
{
    world.sortCells();
    const glm::mat4 all = glm::scale(glm::mat4(1.0f), glm::vec3(1.0e-5f, 1.0e-5f, 0.0f));
    InstanceGather gather;
    gather.gather(world, Frustum(all), {0, 0, 0}, limits, {});
    std::vector<std::pair<float, uint32_t>> vecSeen;
    size_t uExpected = 0;
    for (const InstanceBatch& batch : gather.batches())
    {
        EXPECT_EQ(batch.uFirst, uExpected);
        uExpected += batch.uCount;
    }
    EXPECT_EQ(uExpected, gather.instances().size());
    for (const InstanceData& data : gather.instances())
        vecSeen.emplace_back(data.arrRows[0].w, data.arrColours[0]);
    std::sort(vecSeen.begin(), vecSeen.end());
    return vecSeen;
}

TEST(InstanceWorld, slotsStayTrueThroughAnyOrderOfChanges)
{
    InstanceWorld world;
    const std::array arrKinds{world.addRenderable(boxWith(1)), world.addRenderable(boxWith(6)),
                              world.addRenderable(boxWith(0))};
    struct Known
    {
        uint32_t uSlot;
        float fX;
        uint32_t uColour;
        bool bTwoPages;
    };
    std::vector<Known> vecKnown;
    std::mt19937 random(7);
    for (int i = 0; i < 3000; ++i)
    {
        const auto fX = static_cast<float>(random() % 100000) * 0.003f;
        const uint32_t uColour = random();
        const size_t uPick = vecKnown.empty() ? 0 : random() % vecKnown.size();
        const unsigned uAction = random() % 5;
        if (vecKnown.empty() || uAction < 2)
        {
            const size_t uKind = random() % 3;
            vecKnown.push_back({world.addInstance(arrKinds[uKind], at(fX, 0), std::array{uColour}), fX,
                                uColour, uKind == 1});
        }
        else if (uAction == 2)
        {
            world.removeInstance(vecKnown[uPick].uSlot);
            vecKnown[uPick] = vecKnown.back();
            vecKnown.pop_back();
        }
        else if (uAction == 3)
        {
            world.setTransform(vecKnown[uPick].uSlot, at(fX, 0));
            vecKnown[uPick].fX = fX;
        }
        else
        {
            world.setColours(vecKnown[uPick].uSlot, std::array{uColour});
            vecKnown[uPick].uColour = uColour;
        }
        if (i % 50 == 0)
            world.sortCells(); // changes places under the slots
    }
    std::vector<std::pair<float, uint32_t>> vecExpected;
    for (const Known& known : vecKnown)
    {
        EXPECT_EQ(world.instance(known.uSlot)->arrRows[0].w, known.fX);
        vecExpected.emplace_back(known.fX, known.uColour);
        if (known.bTwoPages)
            vecExpected.emplace_back(known.fX, 0xFFFFFFFFu); // no colours given for slots 5 and 6
    }
    std::sort(vecExpected.begin(), vecExpected.end());
    EXPECT_EQ(seen(world), vecExpected);
    for (const Known& known : vecKnown)
        world.removeInstance(known.uSlot);
    EXPECT_TRUE(seen(world).empty());
    world.removeInstance(0); // long gone
    EXPECT_EQ(world.instanceCount(arrKinds[0]), 0u);
}

TEST(InstanceWorld, boxesFollowTurnedAndMovedInstances)
{
    InstanceWorld world;
    const uint32_t uKind = world.addRenderable(boxWith(0));
    const uint32_t uSlot = world.addInstance(uKind, at(31.9f, 5.0f, 2.0f), {});
    world.sortCells();
    ASSERT_EQ(world.cells().size(), 1u);
    // Upright, the box of 4 units stands on the ground: 8 m a side and as high, across the square's edge.
    const Aabb box = world.cells()[0]->box;
    EXPECT_NEAR(box.lowest.x, 27.9f, 1e-4f);
    EXPECT_NEAR(box.highest.x, 35.9f, 1e-4f);
    EXPECT_NEAR(box.lowest.z, 0.0f, 1e-4f);
    EXPECT_NEAR(box.highest.z, 8.0f, 1e-4f);
    // Moved to the next square, it leaves nothing behind.
    world.setTransform(uSlot, at(40.0f, 5.0f));
    world.sortCells();
    ASSERT_EQ(world.cells().size(), 2u);
    EXPECT_TRUE(world.cells()[0]->vecBatches.empty());
    EXPECT_NEAR(world.cells()[1]->box.lowest.x, 39.5f, 1e-4f);
    // A place that is no place neither crashes nor is lost.
    world.setTransform(uSlot, at(std::numeric_limits<float>::quiet_NaN(), 1.0e20f));
    world.removeInstance(uSlot);
    world.sortCells();
    EXPECT_EQ(world.instanceCount(uKind), 0u);
}

TEST(InstanceGather, leavesOutWhatSeemsSmallestFirst)
{
    InstanceWorld world;
    const uint32_t uKind = world.addRenderable(boxWith(0));
    for (const float fX : {10.0f, 100.0f, 1000.0f})
        world.addInstance(uKind, at(fX, 0), {});
    EXPECT_EQ(seen(world, {.fSmallest = 0.005f}).size(), 2u); // 1 m at 1000 m is too small
    world.sortCells();
    InstanceGather gather;
    const std::array<uint32_t, 1> arrTriangles{12};
    const Frustum all(glm::scale(glm::mat4(1.0f), glm::vec3(1.0e-5f, 1.0e-5f, 0.0f)));
    gather.gather(world, all, {0, 0, 0}, {.uTriangles = 12}, arrTriangles);
    EXPECT_TRUE(gather.isThinned());
    ASSERT_EQ(gather.instances().size(), 1u);
    EXPECT_EQ(gather.instances()[0].arrRows[0].w, 10.0f);
    gather.gather(world, all, {0, 0, 0}, {.uTriangles = 36}, arrTriangles);
    EXPECT_FALSE(gather.isThinned());
    EXPECT_EQ(gather.instances().size(), 3u);
}

} // namespace
