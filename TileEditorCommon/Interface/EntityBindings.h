#pragma once // Keys and captions of what is done to the selection. No GUI.

#include <string>

namespace tilebuilder
{

class EditorActionsI;
class KeyBindings;
struct EntityMenuItem;

/// Binds the actions of the entity tool; the other must outlive the table's last update().
void bindEntityActions(KeyBindings& keys, EditorActionsI& actions);

/// Label and key, with what is no tag of ours escaped.
[[nodiscard]] std::string entityMenuCaption(const EntityMenuItem& item, const KeyBindings& keys);

} // namespace tilebuilder
