#pragma once // The ground on the screen: its resources, its material set, what the renderer draws.

#include "TileEditorCommon/Ground/GroundUploader.h"
#include "TileEditorCommon/Ground/TerrainGroundMaterialSet.h"

#include <glm/vec3.hpp>

namespace rend
{
class Renderer;
}
namespace resource
{
class ResourceManager;
}

namespace tilebuilder
{

/// Publishes a surface to the renderer. Main thread only.
class GroundView : private GroundTextureSourceI
{
public:
    /// Both must outlive it. Binds the standard material set.
    GroundView(rend::Renderer& renderer, resource::ResourceManager& resources);

    /// Sends what changed; after EditorTerrainSurface::rebuild().
    void update(EditorTerrainSurface& surface);
    /// Nothing is drawn until the next update.
    void release();

    /// Two circles on the ground, at the rim and at half the radius, for this frame.
    void drawBrush(const EditorTerrainSurface& surface, const glm::vec3& centre, float fRadius);

private:
    rend::TextureHandle createTextureArray(std::string_view sName, std::span<const std::string> spanPaths,
                                           int iWidth, int iHeight,
                                           resource::TextureResourceLayout eLayout) override;
    /// The resource manager keeps its arrays for whoever asks for them next.
    void destroyTexture(rend::TextureHandle) override {}

    rend::Renderer& m_renderer;
    resource::ResourceManager& m_resources;
    TerrainGroundMaterialSet m_materialSet;
    GroundUploader m_uploader;
};

} // namespace tilebuilder
