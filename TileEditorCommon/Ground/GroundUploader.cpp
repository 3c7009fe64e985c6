#include "TileEditorCommon/Ground/GroundUploader.h"

#include "TileEditorCommon/Ground/TerrainGroundMaterialSet.h"

namespace tilebuilder
{

namespace
{

struct SurfaceInfo
{
    uint32_t uVerticesX;
    float fInverseQuadsX;
    uint32_t arrUnused[2];
};
static_assert(sizeof(SurfaceInfo) == 16);

constexpr size_t s_uQuadBytes = 6 * sizeof(uint32_t);

} // namespace

void GroundUploader::destroy()
{
    m_device.destroyBuffer(std::exchange(m_vertexBuffer, {}));
    m_device.destroyBuffer(std::exchange(m_indexBuffer, {}));
    m_device.destroyBuffer(std::exchange(m_constantBuffer, {}));
    m_device.destroyTexture(std::exchange(m_texture0, {}));
    m_device.destroyTexture(std::exchange(m_texture1, {}));
    m_uIndexCount = m_uVerticesX = m_uVerticesY = 0;
    m_uLayout = 0;
}

void GroundUploader::publish(rend::TerrainSurfaceBindings& bindings) const
{
    bindings.vertexBuffer = m_vertexBuffer;
    bindings.indexBuffer = m_indexBuffer;
    bindings.surfaceInfo = m_constantBuffer;
    bindings.texture0 = m_texture0;
    bindings.texture1 = m_texture1;
    bindings.indexCount = m_uIndexCount;
    bindings.verticesX = m_uVerticesX;
    bindings.verticesY = m_uVerticesY;
    bindings.indexWidth = rend::IndexWidth::Bits32;
    bindMaterials(bindings);
}

void GroundUploader::bindMaterials(rend::TerrainSurfaceBindings& bindings) const
{
    if (!m_pMaterials)
        return;
    bindings.diffuseArray = m_pMaterials->diffuseArray();
    bindings.asgArray = m_pMaterials->asgArray();
    bindings.normalArray = m_pMaterials->normalArray();
}

void GroundUploader::release(rend::TerrainSurfaceBindings& bindings)
{
    destroy();
    bindings.release();
}

void GroundUploader::create(const EditorTerrainSurface& surface)
{
    const auto spanVertices = std::as_bytes(surface.vertices());
    const auto spanIndices = std::as_bytes(surface.indices());
    m_vertexBuffer = m_device.createBuffer({.sName = "EditorTerrainSurfaceMesh",
                                            .uSize = spanVertices.size(),
                                            .uStride = sizeof(EditorTerrainSurface::Vertex),
                                            .eKind = rend::BufferKind::Vertex},
                                           spanVertices);
    m_indexBuffer = m_device.createBuffer({.sName = "EditorTerrainSurfaceIndex",
                                           .uSize = spanIndices.size(),
                                           .uStride = sizeof(uint32_t),
                                           .eKind = rend::BufferKind::Index},
                                          spanIndices);
    const SurfaceInfo info{surface.verticesX(), 1.0f / static_cast<float>(surface.quadsX()), {}};
    m_constantBuffer = m_device.createBuffer(
        {.sName = "CB_SURFACE_INFO", .uSize = sizeof(info), .eKind = rend::BufferKind::Constant},
        std::as_bytes(std::span(&info, 1)));
    const rend::TextureDesc desc{.sName = "Terrain Material texture",
                                 .iWidth = static_cast<int>(surface.texelsX()),
                                 .iHeight = static_cast<int>(surface.texelsY())};
    m_texture0 = m_device.createTexture(desc);
    m_texture1 = m_device.createTexture(desc);
    sendTexels(surface, {0, 0, desc.iWidth, desc.iHeight});
    m_uIndexCount = static_cast<uint32_t>(surface.indices().size());
    m_uVerticesX = surface.verticesX();
    m_uVerticesY = surface.verticesY();
}

void GroundUploader::sendTexels(const EditorTerrainSurface& surface, const GridRect& rect)
{
    const rend::TextureRegion region{rect.x0, rect.y0, rect.width(), rect.height(), 0, 0};
    const size_t uPitch = size_t{surface.texelsX()} * sizeof(uint32_t);
    const size_t uFirst = static_cast<size_t>(rect.y0) * surface.texelsX() + static_cast<size_t>(rect.x0);
    const size_t uCount =
        static_cast<size_t>(rect.height() - 1) * surface.texelsX() + static_cast<size_t>(rect.width());
    m_device.updateTexture(m_texture0, region, uPitch,
                           std::as_bytes(surface.texels0().subspan(uFirst, uCount)));
    m_device.updateTexture(m_texture1, region, uPitch,
                           std::as_bytes(surface.texels1().subspan(uFirst, uCount)));
}

void GroundUploader::upload(EditorTerrainSurface& surface, rend::TerrainSurfaceBindings& bindings)
{
    const SurfaceUploads uploads = surface.pending();
    surface.clearPending();
    if (uploads.uLayout != m_uLayout)
    {
        destroy();
        m_uLayout = uploads.uLayout;
        if (surface.isInitialised())
            create(surface);
        publish(bindings);
        return;
    }
    if (!uploads.vertices.empty())
    {
        const auto spanRows =
            surface.vertices().subspan(static_cast<size_t>(uploads.vertices.y0) * surface.verticesX(),
                                       static_cast<size_t>(uploads.vertices.height()) * surface.verticesX());
        m_device.updateBuffer(m_vertexBuffer,
                              static_cast<size_t>(uploads.vertices.y0) * surface.verticesX() *
                                  sizeof(EditorTerrainSurface::Vertex),
                              std::as_bytes(spanRows));
    }
    if (!uploads.quads.empty())
    {
        const auto spanRows =
            surface.indices().subspan(static_cast<size_t>(uploads.quads.y0) * surface.quadsX() * 6,
                                      static_cast<size_t>(uploads.quads.height()) * surface.quadsX() * 6);
        m_device.updateBuffer(m_indexBuffer,
                              static_cast<size_t>(uploads.quads.y0) * surface.quadsX() * s_uQuadBytes,
                              std::as_bytes(spanRows));
    }
    if (!uploads.texels.empty())
        sendTexels(surface, uploads.texels);
}

} // namespace tilebuilder
