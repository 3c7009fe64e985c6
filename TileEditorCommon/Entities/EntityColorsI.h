#pragma once // Colours of entities that can be copied from one to another.

#include <cstdint>
#include <map>
#include <string>

namespace tilebuilder
{

/// By name. Packed with red in the lowest byte, alpha in the highest.
using EntityColors = std::map<std::string, uint32_t>;

/// For kinds that have colours of their own. Main thread only.
class EntityColorsI
{
public:
    virtual ~EntityColorsI() = default;

    /// Empty for an unknown id.
    [[nodiscard]] virtual EntityColors getColors(uint32_t uId) const = 0;
    /// Takes those that the entity has a place for and shows them at once.
    virtual void setColors(uint32_t uId, const EntityColors& colors) = 0;
};

} // namespace tilebuilder
