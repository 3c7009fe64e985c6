#pragma once // The shadows that instances throw on the ground, seen from above.

#include "KestrelCommon/Device/GraphicsDeviceI.h"
#include "KestrelCommon/renderer/InstanceWorld.h"

#include <glm/vec2.hpp>

namespace rend
{

class InstanceDraw;

/// Keeps a picture of a tile's ground from above that is dark where the sun is hidden. Each instance is
/// pressed flat along the light onto the height of its foot. Only squares of 32 m around what changed are
/// drawn anew, a few a frame.
/// Main thread only; the device must outlive it.
class InstanceShade
{
public:
    explicit InstanceShade(GraphicsDeviceI& device) : m_device(device) {}
    ~InstanceShade();
    InstanceShade(const InstanceShade&) = delete;
    InstanceShade& operator=(const InstanceShade&) = delete;

    /// For a tile that reaches so far along X and Y, metres; 0: none. Outside of a pass; with bWhole
    /// all that is stale is drawn at once. Towards the sun, of length 1.
    void update(InstanceDraw& draw, InstanceWorld& world, const glm::vec2& tileSize,
                const glm::vec3& sunDirection, bool bWhole);

    /// Null while there is nothing to show.
    [[nodiscard]] TextureHandle texture() const { return m_device.targetColour(m_target); }
    /// Of the texture's side, a metre; 0 while there is nothing to show.
    [[nodiscard]] float scale() const { return m_target && !m_bEmpty ? 1.0f / m_fReach : 0.0f; }
    /// Differs after each renewal.
    [[nodiscard]] uint64_t revision() const { return m_uRevision; }

    /// The part of the ground that the shadow of a box can touch: lowest and highest X and Y.
    [[nodiscard]] static std::array<glm::vec2, 2> reachOf(const Aabb& box, const glm::vec3& sunDirection);

private:
    void resize(const glm::vec2& tileSize);
    void markStale(const Aabb& box);

    GraphicsDeviceI& m_device;
    TargetHandle m_target;
    float m_fReach = 0.0f;        ///< metres that the texture's side covers
    int m_iSquares = 0;           ///< of 32 m, along a side
    int m_iTexels = 0;            ///< of a square's side
    std::vector<bool> m_vecStale; ///< by square, row after row
    size_t m_uStale = 0;
    size_t m_uNext = 0;   ///< where the search for the next stale square goes on
    bool m_bEmpty = true; ///< nothing throws a shadow
    glm::vec3 m_sunDirection{0.0f};
    uint32_t m_uWorld = 0;
    uint64_t m_uRevision = 0;
};

} // namespace rend
