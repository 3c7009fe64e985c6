#pragma once // The ground's resources on the graphics device.

#include "KestrelCommon/Device/GraphicsDeviceI.h"
#include "KestrelCommon/renderer/TerrainSurfaceBindings.h"
#include "TileEditorCommon/Ground/EditorTerrainSurface.h"

namespace tilebuilder
{

class TerrainGroundMaterialSet;

/// Owns the buffers and textures that the renderer draws the ground from, and keeps them equal
/// to a surface. The device must outlive it. Main thread.
class GroundUploader
{
public:
    /// The materials, if any, are published with the ground and outlive the uploader.
    explicit GroundUploader(rend::GraphicsDeviceI& device,
                            const TerrainGroundMaterialSet* pMaterials = nullptr)
        : m_device(device),
          m_pMaterials(pMaterials)
    {
    }
    ~GroundUploader() { destroy(); }
    GroundUploader(const GroundUploader&) = delete;
    GroundUploader& operator=(const GroundUploader&) = delete;

    /// Sends what changed since the last call and clears the surface's record of it; new grids get
    /// new resources, which are published. Call after EditorTerrainSurface::rebuild().
    void upload(EditorTerrainSurface& surface, rend::TerrainSurfaceBindings& bindings);

    /// Publishes the arrays of the material set; for when another one was loaded.
    void bindMaterials(rend::TerrainSurfaceBindings& bindings) const;

    /// Empties the bindings and destroys the resources; the next upload makes them again.
    void release(rend::TerrainSurfaceBindings& bindings);

private:
    void destroy();
    void publish(rend::TerrainSurfaceBindings& bindings) const;
    void create(const EditorTerrainSurface& surface);
    void sendTexels(const EditorTerrainSurface& surface, const GridRect& rect);

    rend::GraphicsDeviceI& m_device;
    const TerrainGroundMaterialSet* m_pMaterials;
    uint64_t m_uLayout = 0;
    uint32_t m_uIndexCount = 0;
    uint32_t m_uVerticesX = 0;
    uint32_t m_uVerticesY = 0;
    rend::BufferHandle m_vertexBuffer;
    rend::BufferHandle m_indexBuffer;
    rend::BufferHandle m_constantBuffer;
    rend::TextureHandle m_texture0;
    rend::TextureHandle m_texture1;
};

} // namespace tilebuilder
