#pragma once // A document that was left with its history.

#include "TileEditorCommon/Document/Tile.h"

#include <glm/gtc/quaternion.hpp>
#include <glm/vec3.hpp>

namespace tilebuilder
{

struct CachedTile
{
    std::unique_ptr<Tile> pTile;
    uint64_t uLeft = 0; ///< rises with every document that is left
    glm::vec3 cameraPosition{0.0f};
    glm::quat cameraRotation{1.0f, 0.0f, 0.0f, 0.0f};
};

} // namespace tilebuilder
