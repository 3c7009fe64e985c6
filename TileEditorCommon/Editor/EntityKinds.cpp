#include "TileEditorCommon/Editor/EntityKinds.h"

#include "TileEditorCommon/Editor/TileEditor.h"
#include "TileEditorCommon/Entities/Entities.h"
#include "TileEditorCommon/Entities/Grid/GridEntityType.h"

namespace tilebuilder
{

void addEntityKinds(Entities& entities, const EditorServices& /*services*/)
{
    entities.addKind({.pType = std::make_unique<GridEntityType>(entities)});
}

} // namespace tilebuilder
