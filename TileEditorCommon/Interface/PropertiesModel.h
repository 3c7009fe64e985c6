#pragma once // What the properties window shows of the active entity. No GUI.

#include "KestrelCommon/Core/EulerAngles.h"
#include "KestrelCommon/Core/Transform.h"
#include "TileEditorCommon/Contracts/Entity.h"
#include "TileEditorCommon/Contracts/PropertyPanelI.h"

namespace tilebuilder
{

class EditorActionsI;
class EntityListI;

/// Name, kind, place, turn and size, then the rows of the kind. The entity shown is the active
/// one, or the last one that was while it lives.
///
/// Angles that were typed stand for as long as the entity keeps the turn that they gave, though
/// other angles may mean the same turn. Sizes are in the kind's own unit, so that 1 is natural.
class PropertiesModel
{
public:
    explicit PropertiesModel(EditorActionsI& actions);

    /// Looks which entity is shown now.
    void update();
    [[nodiscard]] const Entity& shown() const { return m_shown; }
    /// The whole panel; one without rows when nothing is shown.
    void fill(PropertyPanelI& panel);

private:
    using Values = std::array<float, 3>;

    void move(const Entity& entity, const Values& position);
    void turn(const Entity& entity, const EulerAngles& degrees);
    void scale(const Entity& entity, const Values& factors);
    void write(const Entity& entity, const Transform& transform);
    [[nodiscard]] std::string kindText() const;

    EditorActionsI& m_actions;
    EntityListI* m_pList;
    Entity m_shown;
    uint64_t m_uGeneration = 0;                   ///< of the list, when the entity was taken
    EulerAngles m_angles{};                       ///< as shown
    glm::quat m_rotation{1.0f, 0.0f, 0.0f, 0.0f}; ///< that they stand for
};

} // namespace tilebuilder
