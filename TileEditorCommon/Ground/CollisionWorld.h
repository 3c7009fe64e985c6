#pragma once // The editor's collision world.

#include <memory>

class btCollisionWorld;

namespace tilebuilder
{

/// Owns the world that the ground and, later, entities are picked in. Main thread.
class CollisionWorld
{
public:
    CollisionWorld();
    ~CollisionWorld();
    CollisionWorld(const CollisionWorld&) = delete;
    CollisionWorld& operator=(const CollisionWorld&) = delete;

    [[nodiscard]] btCollisionWorld& world();

private:
    struct Parts;
    std::unique_ptr<Parts> m_pParts;
};

} // namespace tilebuilder
