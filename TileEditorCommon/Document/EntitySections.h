#pragma once // The entities of a tile in its images.

#include "TileEditorCommon/Document/CellObjectProviderI.h"

#include <memory>
#include <span>
#include <vector>

namespace tilebuilder
{

class Entities;

/// One provider for each stored list that the entities have records for. They work together: the
/// first that begins to read prepares the entities, the last that ends completes them.
class EntitySections
{
public:
    /// The entities must outlive it; all kinds are there already.
    explicit EntitySections(Entities& entities);
    ~EntitySections();
    EntitySections(const EntitySections&) = delete;
    EntitySections& operator=(const EntitySections&) = delete;

    [[nodiscard]] std::span<const std::unique_ptr<CellObjectProviderI>> providers() const
    {
        return m_vecProviders;
    }

private:
    class List;

    void beginRead(const ObjectReadMode& mode);
    size_t readRecords(const List& list, const ObjectSection& section);
    void endRead();

    Entities& m_entities;
    std::vector<std::unique_ptr<CellObjectProviderI>> m_vecProviders;
    ObjectReadMode m_mode;
    size_t m_uReading = 0; ///< lists that began and haven't ended
};

} // namespace tilebuilder
