#pragma once // The figure that shows the size of things.

#include "KestrelCommon/renderer/InstanceWorld.h"
#include "TileEditorCommon/Entities/EntityHostI.h"
#include "TileEditorCommon/Entities/EntityTypeI.h"

namespace tilebuilder
{

class EntityRenderI;

/// At most one instance exists. It is never stored, and changes nothing that is.
class CharacterEntityType : public EntityTypeI
{
public:
    static constexpr EntityTypeId s_eTypeId = EntityTypeId_Character;
    static constexpr const char* s_pRenderable = "$GAME_DATA/Character/character.rend";
    static constexpr float s_fScale = 0.25f; ///< its model counts in quarter metres; never another

    /// The world must outlive it.
    CharacterEntityType(EntityHostI& host, rend::InstanceWorld& world) : m_host(host), m_world(world) {}
    ~CharacterEntityType() override;

    [[nodiscard]] EntityTypeId getTypeId() const override { return s_eTypeId; }
    bool create(EntityCreateArgs& args, std::span<const uint64_t> spanStack) override;
    [[nodiscard]] bool exists(uint32_t uId) const override { return m_uId != 0 && m_uId == uId; }
    void remove(uint32_t uId, bool bRemoveLinks) override;
    [[nodiscard]] std::string getDisplayName(uint32_t uId) const override;
    [[nodiscard]] Transform getCenterTransform(uint32_t uId) const override;
    void setCenterTransform(uint32_t uId, const Transform& transform) override;
    bool getBounds(uint32_t uId, Aabb& box) const override;
    void displayProperties(uint32_t uId, PropertyPanelI& panel) override;

    /// What its two switches show, for this frame: its bounds, and what it would see.
    void drawSwitches(EntityRenderI& render) const;

private:
    void load();
    [[nodiscard]] Transform drawn() const;

    EntityHostI& m_host;
    rend::InstanceWorld& m_world;
    uint32_t m_uId = 0; ///< 0: there is none
    Transform m_transform;
    std::shared_ptr<const resource::Renderable> m_pRenderable;
    uint32_t m_uRenderable = rend::InstanceWorld::s_uNone;
    uint32_t m_uInstance = rend::InstanceWorld::s_uNone;
    bool m_bDebugCulling = false;
    bool m_bVisualizeFrustum = false;
};

} // namespace tilebuilder
