#pragma once // The kinds of entities that this editor has.

namespace rend
{
class InstanceWorld;
}

namespace tilebuilder
{

class Entities;

/// Puts every kind into its slot, in the order in which they may lean on each other. The world
/// must outlive the entities.
void addEntityKinds(Entities& entities, rend::InstanceWorld& world);

} // namespace tilebuilder
