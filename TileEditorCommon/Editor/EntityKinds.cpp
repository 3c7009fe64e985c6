#include "TileEditorCommon/Editor/EntityKinds.h"

#include "TileEditorCommon/Entities/Asset/AssetEntityType.h"
#include "TileEditorCommon/Entities/Character/CharacterEntityType.h"
#include "TileEditorCommon/Entities/Entities.h"
#include "TileEditorCommon/Entities/Grid/GridEntityType.h"

namespace tilebuilder
{

void addEntityKinds(Entities& entities, rend::InstanceWorld& world)
{
    entities.addKind(
        AssetEntityType::makeKind(std::make_unique<AssetEntityType>(entities, world, AssetLists{})));
    entities.addKind({.pType = std::make_unique<CharacterEntityType>(entities, world)});
    entities.addKind({.pType = std::make_unique<GridEntityType>(entities)});
}

} // namespace tilebuilder
