// Assets by the ten thousands: picking, creating, moving, removing, adding one more.

#include "Benchmarks/AssetScene.h"
#include "Benchmarks/Harness.h"

#include <BulletCollision/BroadphaseCollision/btDbvtBroadphase.h>
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

/// A place for each in Bullet's tree, without pairs.
class Proxies
{
public:
    void add(const std::vector<glm::vec3>& vecPlaces)
    {
        for (const glm::vec3& place : vecPlaces)
            m_vecProxies.push_back(m_broadphase.createProxy(lowest(place), highest(place),
                                                            SPHERE_SHAPE_PROXYTYPE, nullptr, 4, 1, nullptr));
    }
    void move(const std::vector<glm::vec3>& vecPlaces)
    {
        for (size_t i = 0; i < vecPlaces.size(); ++i)
            m_broadphase.setAabb(m_vecProxies[i], lowest(vecPlaces[i]), highest(vecPlaces[i]), nullptr);
    }
    void remove()
    {
        for (btBroadphaseProxy* pProxy : m_vecProxies)
            m_broadphase.destroyProxy(pProxy, nullptr);
        m_vecProxies.clear();
    }
    [[nodiscard]] bool standsAt(size_t i, const glm::vec3& place) const
    {
        return m_vecProxies[i]->m_aabbMin == lowest(place);
    }

private:
    static constexpr float s_fRadius = 0.75f;
    static btVector3 lowest(const glm::vec3& at)
    {
        return {at.x - s_fRadius, at.y - s_fRadius, at.z - s_fRadius};
    }
    static btVector3 highest(const glm::vec3& at)
    {
        return {at.x + s_fRadius, at.y + s_fRadius, at.z + s_fRadius};
    }

    btNullPairCache m_pairs;
    btDbvtBroadphase m_broadphase{&m_pairs};
    std::vector<btBroadphaseProxy*> m_vecProxies;
};

/// One work after the other, so that each part can be seen; the sum is what counts.
int living(AssetScene& scene)
{
    Entities& entities = scene.entities;
    scene.fill();
    std::vector<glm::vec3> vecPlaces;
    std::vector<glm::vec3> vecMoved;
    std::vector<Transform> vecPivots;
    for (const Entity& entity : entities.all())
    {
        const Transform pivot = entities.pivot(entity);
        vecPlaces.push_back(pivot.position);
        vecPivots.push_back(pivot);
        vecPivots.back().position += glm::vec3(2.0f, 1.0f, 0.5f);
        vecMoved.push_back(vecPivots.back().position);
    }
    const std::vector<EntityCreateArgs> vecArgs = scene.args(SceneAssets);
    std::vector<EntityCreateArgs> vecNew;
    Proxies proxies;
    const auto create = [&] { entities.createEntities(std::move(vecNew)); };
    const auto move = [&]
    {
        const std::span<const Entity> spanAll = entities.all();
        for (size_t i = 0; i < spanAll.size(); ++i)
            entities.setPivot(spanAll[i], vecPivots[i]);
    };
    const auto remove = [&]
    {
        while (entities.count() > 0)
            entities.removeEntity(entities.all().back(), false);
    };
    const auto prepare = [&]
    {
        scene.open();
        vecNew = vecArgs;
    };
    const auto prepareMove = [&]
    {
        prepare();
        create();
    };
    const auto equal = [&]
    {
        prepareMove();
        proxies.remove();
        proxies.add(vecPlaces);
        move();
        proxies.move(vecMoved);
        bool bEqual = entities.count() == vecMoved.size();
        for (size_t i = 0; bEqual && i < vecMoved.size(); ++i)
            bEqual = proxies.standsAt(i, vecMoved[i]) &&
                     glm::length(entities.pivot(entities.all()[i]).position - vecMoved[i]) < 1.0e-3f;
        return bEqual;
    };
    run({.sName = "create 50,000 assets",
         .fnFloor = [&] { proxies.add(vecPlaces); },
         .fnProduct = create,
         .fnBeforeFloor = [&] { proxies.remove(); },
         .fnBeforeProduct = prepare});
    run({.sName = "move 50,000 assets",
         .fnFloor = [&] { proxies.move(vecMoved); },
         .fnProduct = move,
         .fnBeforeFloor =
             [&]
         {
             proxies.remove();
             proxies.add(vecPlaces);
         },
         .fnBeforeProduct = prepareMove});
    run({.sName = "remove 50,000 assets",
         .fnFloor = [&] { proxies.remove(); },
         .fnProduct = remove,
         .fnBeforeFloor =
             [&]
         {
             proxies.remove();
             proxies.add(vecMoved);
         },
         .fnBeforeProduct = prepareMove});
    proxies.remove();
    return !run({.sName = "create, move and remove 50,000 assets",
                 .fLimit = 3.0,
                 .fnFloor =
                     [&]
                 {
                     proxies.add(vecPlaces);
                     proxies.move(vecMoved);
                     proxies.remove();
                 },
                 .fnProduct =
                     [&]
                 {
                     create();
                     move();
                     remove();
                 },
                 .fnEqual = equal,
                 .fnBeforeProduct = prepare});
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
    return iMissed + living(scene) + adding(scene);
}

const Registration s_entities(&entityWork);

} // namespace
