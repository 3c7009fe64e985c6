#pragma once // The axes at the origin of the world.

#include "KestrelCommon/renderer/InstanceWorld.h"

namespace tilebuilder
{

/// A model among the world's instances while it is shown, and nothing that rays meet. The world must
/// outlive it. Main thread only.
class OriginMark
{
public:
    static constexpr const char* s_pRenderable = "$GAME_DATA/TileEditor/gui_gizmo_origin.rend";
    static constexpr float s_fScale = 5.0f;

    explicit OriginMark(rend::InstanceWorld& world) : m_world(world) {}
    ~OriginMark();
    OriginMark(const OriginMark&) = delete;
    OriginMark& operator=(const OriginMark&) = delete;

    [[nodiscard]] bool isShown() const { return m_uInstance != rend::InstanceWorld::s_uNone; }
    /// The model is read when it is first shown.
    void show(bool bShow);

private:
    rend::InstanceWorld& m_world;
    uint32_t m_uRenderable = rend::InstanceWorld::s_uNone;
    uint32_t m_uInstance = rend::InstanceWorld::s_uNone;
};

} // namespace tilebuilder
