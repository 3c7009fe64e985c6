#include "TileEditorCommon/Ground/CollisionWorld.h"

#include <btBulletCollisionCommon.h>

namespace tilebuilder
{

struct CollisionWorld::Parts
{
    btDefaultCollisionConfiguration configuration;
    btCollisionDispatcher dispatcher{&configuration};
    btNullPairCache pairs; ///< nothing here collides, rays ask the tree alone
    btDbvtBroadphase broadphase{&pairs};
    btCollisionWorld world{&dispatcher, &broadphase, &configuration};
};

CollisionWorld::CollisionWorld() : m_pParts(std::make_unique<Parts>()) {}
CollisionWorld::~CollisionWorld() = default;

btCollisionWorld& CollisionWorld::world()
{
    return m_pParts->world;
}

} // namespace tilebuilder
