// Assets as entities: coming, moving, going.

#include "Benchmarks/Harness.h"
#include "Tests/AssetEntities/AssetWorld.h"

#include <BulletCollision/BroadphaseCollision/btDbvtBroadphase.h>
#include <btBulletCollisionCommon.h>
#include <random>

namespace
{

using namespace bench;
using namespace tilebuilder;

constexpr size_t s_uCount = 50000;

/// Spheres of 0.75 m in a collision world without pairs.
struct ProxyWorld
{
    ProxyWorld() { broadphase.m_deferedcollide = true; } // no search for pairs, which nobody asks for
    btDefaultCollisionConfiguration config;
    btCollisionDispatcher dispatcher{&config};
    btNullPairCache pairs;
    btDbvtBroadphase broadphase{&pairs};
    btCollisionWorld world{&dispatcher, &broadphase, &config};
    btSphereShape shape{0.75f};
};

btTransform at(const glm::vec3& place)
{
    return btTransform(btQuaternion::getIdentity(), btVector3(place.x, place.y, place.z));
}

int lives()
{
    constexpr const char* s_pName = "create, move and remove 50,000 assets";
    if (!isWanted(s_pName))
        return 0;
    std::mt19937 random(3);
    const auto roll = [&random] { return 128.0f * static_cast<float>(random() % 100000) * 1.0e-5f; };
    std::vector<glm::vec3> vecFrom;
    std::vector<glm::vec3> vecTo;
    for (size_t u = 0; u < s_uCount; ++u)
    {
        vecFrom.emplace_back(roll(), roll(), 0.0f);
        vecTo.emplace_back(roll(), roll(), 1.0f);
    }
    ProxyWorld proxies;
    AssetWorld assets;
    assets.start();
    size_t uMost = 0;
    size_t uLeft = 1;
    return !run({.sName = s_pName,
                 .fLimit = 3.0,
                 .fnFloor =
                     [&]
                 {
                     std::vector<std::unique_ptr<btCollisionObject>> vecObjects;
                     for (const glm::vec3& place : vecFrom)
                     {
                         auto& pObject = vecObjects.emplace_back(std::make_unique<btCollisionObject>());
                         pObject->setCollisionShape(&proxies.shape);
                         pObject->setWorldTransform(at(place));
                         proxies.world.addCollisionObject(pObject.get(), 4, -1);
                     }
                     for (size_t u = 0; u < s_uCount; ++u)
                     {
                         vecObjects[u]->setWorldTransform(at(vecTo[u]));
                         proxies.world.updateSingleAabb(vecObjects[u].get());
                     }
                     for (const auto& pObject : vecObjects)
                         proxies.world.removeCollisionObject(pObject.get());
                 },
                 .fnProduct =
                     [&]
                 {
                     std::vector<Entity> vecPlaced;
                     for (const glm::vec3& place : vecFrom)
                         vecPlaced.push_back(assets.place(1, {place, {1, 0, 0, 0}, glm::vec3(0.25f)}));
                     uMost = assets.m_instances.instanceCount();
                     for (size_t u = 0; u < s_uCount; ++u)
                         assets.m_pType->setOriginTransform(vecPlaced[u].uId,
                                                            {vecTo[u], {1, 0, 0, 0}, glm::vec3(0.25f)});
                     for (const Entity& entity : vecPlaced)
                         assets.m_entities.removeEntity(entity, false);
                     uLeft = assets.m_instances.instanceCount();
                 },
                 .fnEqual = [&] { return uMost == s_uCount && uLeft == 0; }});
}

const Registration s_lives(&lives);

} // namespace
