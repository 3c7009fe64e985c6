#pragma once // A thing that stands on a tile, as a value.

#include "TileEditorCommon/Contracts/EntityTypeId.h"

#include <cstdint>

namespace tilebuilder
{

class EntityTypeI;

/// Names a living entity and the type that owns its instance. Compared by id alone, which is unique
/// until the document is left and never 0 for a living entity. Holding one keeps nothing alive: ask
/// the type whether it still exists.
struct Entity
{
    uint32_t uId = 0;
    EntityTypeI* pType = nullptr; ///< borrowed, lives as long as the editor object's Entities

    explicit operator bool() const { return pType != nullptr; }
    bool operator==(const Entity& other) const { return uId == other.uId; }
};

/// What lookups yield when there is none.
constexpr Entity NullEntity{};

} // namespace tilebuilder
