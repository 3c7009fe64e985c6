#pragma once // The ground's resources on the graphics device.

#include "KestrelCommon/Device/GraphicsDeviceI.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

namespace tilebuilder
{

/// Owns the buffers and textures that the renderer draws the ground from, and keeps them equal
/// to a surface. The device must outlive it. Main thread.
class GroundUploader
{
public:
    explicit GroundUploader(rend::GraphicsDeviceI& device) : m_device(device) {}
    ~GroundUploader() { release(); }
    GroundUploader(const GroundUploader&) = delete;
    GroundUploader& operator=(const GroundUploader&) = delete;

    /// Sends what changed since the last call and clears the surface's record of it. Call after
    /// EditorTerrainSurface::rebuild(). True when the resources are new and must be bound anew.
    bool update(EditorTerrainSurface& surface);

    void release();

    /// 20 bytes a vertex, as EditorTerrainSurface::Vertex.
    [[nodiscard]] rend::BufferHandle vertexBuffer() const { return m_vertexBuffer; }
    /// 32-bit indices, six a quad.
    [[nodiscard]] rend::BufferHandle indexBuffer() const { return m_indexBuffer; }
    /// "CB_SURFACE_INFO": vertices per row as 32-bit, then 1 / quads per row as float, 16 bytes.
    [[nodiscard]] rend::BufferHandle constantBuffer() const { return m_constantBuffer; }
    /// Weights 0 to 3 and 4 to 7.
    [[nodiscard]] rend::TextureHandle texture0() const { return m_texture0; }
    [[nodiscard]] rend::TextureHandle texture1() const { return m_texture1; }
    [[nodiscard]] uint32_t indexCount() const { return m_uIndexCount; }

private:
    void create(const EditorTerrainSurface& surface);
    void sendTexels(const EditorTerrainSurface& surface, const GridRect& rect);

    rend::GraphicsDeviceI& m_device;
    uint64_t m_uLayout = 0;
    uint32_t m_uIndexCount = 0;
    rend::BufferHandle m_vertexBuffer;
    rend::BufferHandle m_indexBuffer;
    rend::BufferHandle m_constantBuffer;
    rend::TextureHandle m_texture0;
    rend::TextureHandle m_texture1;
};

} // namespace tilebuilder
