#pragma once // The kinds of entities that this editor has.

namespace tilebuilder
{

class Entities;
struct EditorServices;

/// Puts every kind into its slot, in the order in which they may lean on each other.
void addEntityKinds(Entities& entities, const EditorServices& services);

} // namespace tilebuilder
