// Assets: what a frame gathers of them.

#include "Benchmarks/Harness.h"
#include "KestrelCommon/renderer/InstanceGather.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>

#include <glm/gtc/matrix_transform.hpp>

namespace
{

using namespace bench;
using rend::InstanceData;

/// A world of 50,000 instances of 60 kinds, spread evenly over 1024 m x 1024 m.
void fill(rend::InstanceWorld& world)
{
    std::vector<uint32_t> vecKinds;
    for (int i = 0; i < 60; ++i)
    {
        auto pModel = std::make_shared<const resource::ModelFile>("none", [](std::string_view)
                                                                  { return std::filesystem::path(); });
        vecKinds.push_back(world.addRenderable(
            std::make_shared<const resource::Renderable>(resource::RenderableDesc{}, pModel, false)));
    }
    std::mt19937 random(5);
    const auto roll = [&random](float fTo) { return fTo * static_cast<float>(random() % 1000000) * 1.0e-6f; };
    for (size_t u = 0; u < 50000; ++u)
        world.addInstance(vecKinds[random() % 60],
                          {{roll(1024.0f), roll(1024.0f), roll(20.0f)},
                           glm::angleAxis(roll(6.0f), glm::vec3(0, 0, 1)),
                           glm::vec3(0.25f)},
                          {});
    world.sortCells();
}

/// Half of the world is in view. The floor copies the very instances from one run of memory.
int frame()
{
    constexpr const char* s_pName = "frame of 50,000 assets of 60 kinds, half in view";
    if (!isWanted(s_pName))
        return 0;
    rend::InstanceWorld world;
    fill(world);
    const glm::mat4 view = glm::translate(glm::mat4(1.0f), glm::vec3(-1, -1, 0)) *
                           glm::scale(glm::mat4(1.0f), glm::vec3(2.0f / 511.0f, 2.0f / 1100.0f, 0.0f));
    rend::InstanceGather gather;
    const auto product = [&] {
        gather.gather(world, rend::Frustum(view), {256, 512, 10}, {.fSmallest = 0.0008f}, {});
    };
    product();
    const std::vector<InstanceData> vecVisible(gather.instances().begin(), gather.instances().end());
    std::vector<InstanceData> vecTo(vecVisible.size());
    std::printf("%zu assets in view, %zu kinds\n", vecVisible.size(), gather.batches().size());
    return !run({.sName = s_pName,
                 .fLimit = 3.0,
                 .fnFloor =
                     [&]
                 {
                     std::copy(vecVisible.begin(), vecVisible.end(), vecTo.begin());
                     keep(vecTo);
                 },
                 .fnProduct = product,
                 .fnEqual =
                     [&]
                 {
                     const auto bytes = [](const auto& list) { return std::as_bytes(std::span(list)); };
                     return vecTo.size() > 24000 && vecTo.size() < 28000 &&
                            std::ranges::equal(bytes(vecTo), bytes(gather.instances()));
                 },
                 .iRepeat = 20});
}

const Registration s_assets(&frame);

} // namespace
