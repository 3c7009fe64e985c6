#pragma once // The right-click menu of entities. No GUI.

#include "TileEditorCommon/Contracts/EntityMenuItem.h"

namespace tilebuilder
{

class EntityCommands;

/// Built anew at every opening: labels count what is selected and what there is. Commands are
/// numbers of EntityCommand.
[[nodiscard]] std::vector<EntityMenuItem> buildEntityMenu(const EntityCommands& commands);

} // namespace tilebuilder
