#pragma once // Binds the editor's actions to their keys and to the wheel. No GUI.

namespace tilebuilder
{

class EditorActionsI;
class EditorInterfaceI;
class KeyBindings;

/// Binds all actions; both others must outlive the table's last update().
void bindEditorActions(KeyBindings& keys, EditorActionsI& actions, EditorInterfaceI& windows);

} // namespace tilebuilder
