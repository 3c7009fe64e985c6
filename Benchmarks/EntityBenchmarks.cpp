// Assets by the ten thousands: picking one, adding one more.

#include "Benchmarks/AssetScene.h"
#include "Benchmarks/Harness.h"

#include <algorithm>
#include <chrono>
#include <glm/geometric.hpp>

namespace
{

using namespace bench;
using namespace tilebuilder;

/// Everything is looked at once, and the nearest to the line kept.
std::optional<size_t> scan(const std::vector<glm::vec3>& vecPositions, const std::vector<uint32_t>& vecGroups,
                           const PickRay& ray, uint32_t uMask)
{
    constexpr float fNear = PickList::s_fNearRadius;
    constexpr float fFar = PickList::s_fFarRadius;
    std::optional<size_t> found;
    float fBestBeside = fFar * fFar;
    float fBestAlong = 0.0f;
    for (size_t i = 0; i < vecPositions.size(); ++i)
    {
        if (!isShown(vecGroups[i], uMask))
            continue;
        const glm::vec3 offset = vecPositions[i] - ray.start;
        const float fAlong = std::max(glm::dot(offset, ray.direction), 0.01f);
        const glm::vec3 beside = offset - ray.direction * fAlong;
        const float fBeside = glm::dot(beside, beside);
        const float fRadius = fNear + fAlong * (fFar - fNear) / ray.length;
        if (fBeside > fRadius * fRadius || fBeside > fBestBeside || fAlong > ray.length)
            continue;
        if (fBeside == fBestBeside && found && fAlong > fBestAlong)
            continue;
        fBestBeside = fBeside;
        fBestAlong = fAlong;
        found = i;
    }
    return found;
}

int picking(AssetScene& scene)
{
    std::vector<glm::vec3> vecPositions;
    std::vector<uint32_t> vecGroups;
    for (const Entity& entity : scene.entities.all())
    {
        vecPositions.push_back(scene.entities.pivot(entity).position);
        vecGroups.push_back(entity.pType->getFilterFlag());
    }
    std::vector<PickRay> vecRays;
    for (size_t i = 0; i < 20; ++i)
    {
        PickRay ray;
        ray.start = {-30.0f, 20.0f + 40.0f * static_cast<float>(i), 70.0f};
        ray.direction = glm::normalize(vecPositions[i * 997] - ray.start);
        vecRays.push_back(ray);
    }
    std::vector<size_t> vecFloor(vecRays.size());
    std::vector<Entity> vecProduct(vecRays.size());
    const auto equal = [&]
    {
        bool bEqual = true;
        for (size_t i = 0; i < vecRays.size(); ++i)
            bEqual = bEqual && scene.entities.all()[vecFloor[i]] == vecProduct[i];
        return bEqual;
    };
    return !run({.sName = "20 cone picks over 50,000 proxies",
                 .fLimit = 2.0,
                 .fnFloor =
                     [&]
                 {
                     for (size_t i = 0; i < vecRays.size(); ++i)
                         vecFloor[i] =
                             scan(vecPositions, vecGroups, vecRays[i], scene.tools.viewMask).value_or(0);
                 },
                 .fnProduct =
                     [&]
                 {
                     for (size_t i = 0; i < vecRays.size(); ++i)
                         vecProduct[i] = scene.entities.pick(vecRays[i]);
                 },
                 .fnEqual = equal});
}

/// Milliseconds of the median of 1,000 additions, one by one.
double medianOfAdding(AssetScene& scene, std::vector<EntityCreateArgs> vecArgs)
{
    std::vector<double> vecTimes;
    for (EntityCreateArgs& args : vecArgs)
    {
        const auto start = std::chrono::steady_clock::now();
        scene.entities.createEntity(std::move(args));
        vecTimes.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    }
    std::ranges::nth_element(vecTimes, vecTimes.begin() + 500);
    return vecTimes[500];
}

int adding(AssetScene& scene)
{
    Comparison comparison;
    comparison.sName = "median of 1,000 assets added to 50,000";
    comparison.fLimit = 1.5;
    if (!isWanted(comparison.sName))
        return 0;
    const std::vector<EntityCreateArgs> vecArgs = scene.args(1000);
    std::vector<double> vecEmpty;
    std::vector<double> vecFull;
    for (int i = 0; i < 9; ++i)
    {
        scene.open();
        vecEmpty.push_back(medianOfAdding(scene, vecArgs));
        scene.fill();
        vecFull.push_back(medianOfAdding(scene, vecArgs));
    }
    std::ranges::sort(vecEmpty);
    std::ranges::sort(vecFull);
    return !report(comparison, vecEmpty[4], vecFull[4], scene.entities.count() == SceneAssets + 1000);
}

int entityWork()
{
    TileWorld world(16, 16);
    AssetScene scene(world);
    scene.fill();
    const int iMissed = picking(scene);
    return iMissed + adding(scene);
}

const Registration s_entities(&entityWork);

} // namespace
