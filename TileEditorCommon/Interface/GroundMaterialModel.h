#pragma once // What the ground material window shows and does. No GUI.

#include "TileEditorCommon/Contracts/EditorActionsI.h"

namespace tilebuilder
{

/// Sets to choose from, the materials of the bound set, and which of them is painted. Changes no
/// document. The editor object is borrowed.
class GroundMaterialModel
{
public:
    static constexpr size_t s_uNone = static_cast<size_t>(-1);

    /// Takes the state as it is: the material that is painted stays.
    explicit GroundMaterialModel(EditorActionsI& actions);

    [[nodiscard]] const std::vector<MaterialSetChoice>& sets() const { return m_vecSets; }
    /// The bound set's place among them; s_uNone when it is in no list.
    [[nodiscard]] size_t boundSet() const;
    [[nodiscard]] const std::vector<MaterialChoice>& materials() const { return m_bound.vecMaterials; }
    /// s_uNone when what is painted isn't among the materials.
    [[nodiscard]] size_t selected() const;

    /// True when another set was bound since: the materials are new, and the first is painted.
    bool update();

    /// A set that can't be bound leaves the bound one.
    void chooseSet(size_t uIndex);
    void chooseMaterial(size_t uIndex);

private:
    EditorActionsI& m_actions;
    std::vector<MaterialSetChoice> m_vecSets;
    BoundMaterials m_bound;
};

} // namespace tilebuilder
