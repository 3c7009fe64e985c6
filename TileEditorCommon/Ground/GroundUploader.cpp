#include "TileEditorCommon/Ground/GroundUploader.h"

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

void GroundUploader::release()
{
    m_device.destroyBuffer(std::exchange(m_vertexBuffer, {}));
    m_device.destroyBuffer(std::exchange(m_indexBuffer, {}));
    m_device.destroyBuffer(std::exchange(m_constantBuffer, {}));
    m_device.destroyTexture(std::exchange(m_texture0, {}));
    m_device.destroyTexture(std::exchange(m_texture1, {}));
    m_uIndexCount = 0;
    m_uLayout = 0;
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

bool GroundUploader::update(EditorTerrainSurface& surface)
{
    const SurfaceUploads uploads = surface.pending();
    surface.clearPending();
    if (uploads.uLayout != m_uLayout)
    {
        release();
        m_uLayout = uploads.uLayout;
        if (surface.isInitialised())
            create(surface);
        return true;
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
    return false;
}

} // namespace tilebuilder
