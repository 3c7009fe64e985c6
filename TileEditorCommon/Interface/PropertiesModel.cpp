#include "TileEditorCommon/Interface/PropertiesModel.h"

#include "KestrelCommon/Core/Text.h"
#include "TileEditorCommon/Contracts/EditorActionsI.h"
#include "TileEditorCommon/Contracts/EntityListI.h"
#include "TileEditorCommon/Contracts/EntityTraits.h"
#include "TileEditorCommon/Contracts/ScaleFlags.h"

namespace tilebuilder
{

namespace
{

constexpr float s_fQuarter = 0.25f;

std::array<float, 3> toArray(const glm::vec3& vector)
{
    return {vector.x, vector.y, vector.z};
}

} // namespace

PropertiesModel::PropertiesModel(EditorActionsI& actions) : m_actions(actions), m_pList(actions.entities())
{
    update();
}

void PropertiesModel::update()
{
    if (!m_pList)
        return;
    if (m_uGeneration != m_pList->generation() || !m_pList->exists(m_shown))
        m_shown = NullEntity;
    m_uGeneration = m_pList->generation();
    const std::span<const Entity> spanSelected = m_pList->selected();
    if (!spanSelected.empty() && m_pList->exists(spanSelected.back()) && spanSelected.back() != m_shown)
    {
        m_shown = spanSelected.back();
        m_rotation = {0.0f, 0.0f, 0.0f, 0.0f}; // of no entity: the angles come from the turn
    }
}

std::string PropertiesModel::kindText() const
{
    const std::string sKind(entityTraits(m_pList->kind(m_shown)).sName);
    const size_t uSelected = m_pList->selected().size();
    return uSelected > 1 ? UTILS::concat(sKind, ", last of ", uSelected, " selected") : sKind;
}

void PropertiesModel::fill(PropertyPanelI& panel)
{
    update();
    panel.begin(m_uGeneration << 32 | m_shown.uId);
    if (m_shown)
    {
        const Entity entity = m_shown;
        const Transform transform = m_pList->pivot(entity);
        if (transform.rotation != m_rotation)
        {
            m_rotation = transform.rotation;
            m_angles = eulerAngles(m_rotation);
        }
        panel.heading(m_pList->name(entity));
        panel.label(kindText());
        panel.triple("Position", toArray(transform.position), {},
                     [this, entity](const Values& values, EditPhase) { move(entity, values); });
        panel.triple("Rotation", m_angles, {},
                     [this, entity](const Values& values, EditPhase) { turn(entity, values); });
        const uint8_t uFlags = m_pList->scaleFlags(entity);
        const Values factors =
            toArray(uFlags & ScaleQuarter ? transform.scale / s_fQuarter : transform.scale);
        if ((uFlags & ScaleCan) && (uFlags & ScaleUniform))
            panel.floatNumber("Scale", factors[0], {.min = 0.0f},
                              [this, entity](float fFactor, EditPhase) {
                                  scale(entity, {fFactor, fFactor, fFactor});
                              });
        else if (uFlags & ScaleCan)
            panel.triple("Scale", factors, {.min = 0.0f},
                         [this, entity](const Values& values, EditPhase) { scale(entity, values); });
        m_pList->displayProperties(entity, panel);
    }
    panel.end();
}

void PropertiesModel::move(const Entity& entity, const Values& position)
{
    Transform transform = m_pList->pivot(entity);
    transform.position = {position[0], position[1], position[2]};
    write(entity, transform);
}

void PropertiesModel::turn(const Entity& entity, const EulerAngles& degrees)
{
    Transform transform = m_pList->pivot(entity);
    transform.rotation = rotationFrom(degrees);
    write(entity, transform);
    if (entity != m_shown)
        return;
    m_angles = degrees;
    m_rotation = m_pList->pivot(entity).rotation; // a kind may hold another sign or more exact a unit length
}

void PropertiesModel::scale(const Entity& entity, const Values& factors)
{
    const uint8_t uFlags = m_pList->scaleFlags(entity);
    if (!(uFlags & ScaleCan))
        return;
    glm::vec3 scale(factors[0], factors[1], factors[2]);
    if (uFlags & ScaleUniform)
        scale = glm::vec3(factors[0]);
    if (uFlags & ScaleKeepY)
        scale.y = 1.0f;
    if (uFlags & ScaleQuarter)
        scale *= s_fQuarter;
    Transform transform = m_pList->pivot(entity);
    transform.scale = scale;
    write(entity, transform);
}

void PropertiesModel::write(const Entity& entity, const Transform& transform)
{
    if (!m_pList->exists(entity))
        return;
    m_pList->setPivot(entity, transform);
    m_actions.markInterfaceDirty(0);
}

} // namespace tilebuilder
