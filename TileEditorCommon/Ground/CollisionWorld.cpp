#include "TileEditorCommon/Ground/CollisionWorld.h"

#include <btBulletCollisionCommon.h>

namespace tilebuilder
{

struct CollisionWorld::Parts
{
    btDefaultCollisionConfiguration configuration;
    btCollisionDispatcher dispatcher{&configuration};
    btDbvtBroadphase broadphase;
    btCollisionWorld world{&dispatcher, &broadphase, &configuration};
};

CollisionWorld::CollisionWorld() : m_pParts(std::make_unique<Parts>()) {}
CollisionWorld::~CollisionWorld() = default;

btCollisionWorld& CollisionWorld::world()
{
    return m_pParts->world;
}

} // namespace tilebuilder
