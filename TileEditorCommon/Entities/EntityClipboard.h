#pragma once // What was copied, and putting it back.

#include "KestrelCommon/Tile/Records/TagList.h"
#include "TileEditorCommon/Contracts/Entity.h"
#include "TileEditorCommon/Entities/EntityCreateArgs.h"

#include <vector>

namespace tilebuilder
{

class Entities;

/// Lives as long as the editor object and outlives documents. Main thread only.
class EntityClipboard
{
public:
    explicit EntityClipboard(Entities& entities) : m_entities(entities) {}

    /// Nothing changes with an empty selection.
    void copySelected();
    /// The copies stand around the point as the originals stood around their mean, and become the
    /// selection.
    void pasteAt(const glm::vec3& point);
    /// The last copied thing takes the place of each selected one.
    void replaceSelected();
    /// Every selected thing takes the colours that it has a place for.
    void pasteColors();

    [[nodiscard]] bool hasThings() const { return !m_vecArgs.empty(); }
    /// The pivot of the first copied thing, of unit scale; null when nothing was copied.
    [[nodiscard]] const Transform* transform() const
    {
        return m_vecTransforms.empty() ? nullptr : &m_vecTransforms.front();
    }
    /// Of the entity that was active then.
    [[nodiscard]] const tile::ColorMap& colors() const { return m_colors; }

private:
    Entities& m_entities;
    std::vector<EntityCreateArgs> m_vecArgs;
    std::vector<Transform> m_vecTransforms;
    tile::ColorMap m_colors;
};

} // namespace tilebuilder
