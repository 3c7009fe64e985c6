#pragma once // Colours of entities, for those who copy, paste and pick them.

#include "KestrelCommon/Tile/Records/TagList.h"

#include <cstdint>

namespace tilebuilder
{

/// For kinds whose instances have colours of their own. Main thread only.
class EntityColorsI
{
public:
    virtual ~EntityColorsI() = default;

    /// By slot name, red in the lowest byte; empty for an unknown id.
    [[nodiscard]] virtual tile::ColorMap colors(uint32_t uId) const = 0;
    /// Takes those whose slot the instance has; an undo step when one of them differs.
    virtual void setColors(uint32_t uId, const tile::ColorMap& mapColors) = 0;
};

} // namespace tilebuilder
