#pragma once // The ground's shade map: hill shadows, dim hollows, patches of tint.

#include "KestrelCommon/Device/GraphicsDeviceI.h"
#include "KestrelCommon/renderer/TerrainSurfaceBindings.h"

#include <glm/vec3.hpp>

namespace rend
{

/// Keeps a texture with one texel a vertex of the ground, renewed when the ground changes; where a CPU
/// draws, by and by in bands of rows, so that a stroke on a large tile stays quick.
/// Main thread only; the device must outlive it.
class GroundShade
{
public:
    explicit GroundShade(GraphicsDeviceI& device) : m_device(device) {}
    ~GroundShade();
    GroundShade(const GroundShade&) = delete;
    GroundShade& operator=(const GroundShade&) = delete;

    void setPipeline(PipelineHandle pipeline) { m_pipeline = pipeline; }

    /// Renews what is stale, outside of a pass; with bWhole all of it at once. The frame's constants
    /// stand in the given buffer and slot.
    void update(const TerrainSurfaceBindings& ground, const glm::vec3& sunDirection, BufferHandle frame,
                uint32_t uFrameSlot, bool bWhole);

    /// Null before the first update.
    [[nodiscard]] TextureHandle texture() const { return m_device.targetColour(m_target); }
    /// Differs after each renewal.
    [[nodiscard]] uint64_t revision() const { return m_uRevision; }

private:
    GraphicsDeviceI& m_device;
    PipelineHandle m_pipeline;
    TargetHandle m_target;
    BufferHandle m_vertices; ///< that the map was made from
    uint64_t m_uVertices = 0;
    glm::vec3 m_sunDirection{0.0f};
    int m_iColumns = 0;
    int m_iRows = 0;
    int m_iNextRow = 0;
    int m_iStaleRows = 0; ///< from the next row on, round the end
    uint64_t m_uRevision = 0;
};

} // namespace rend
