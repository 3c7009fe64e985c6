#pragma once // The ground on the screen: its resources, its material set, what the renderer draws.

#include "TileEditorCommon/Ground/GroundUploader.h"
#include "TileEditorCommon/Ground/TerrainGroundMaterialSet.h"

#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

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

/// Makes the arrays of material sets. The resource manager keeps them for whoever asks next.
class GroundTextures : public GroundTextureSourceI
{
public:
    /// Borrowed.
    explicit GroundTextures(resource::ResourceManager& resources) : m_resources(resources) {}

    rend::TextureHandle createTextureArray(std::string_view sName, std::span<const std::string> spanPaths,
                                           int iWidth, int iHeight,
                                           resource::TextureResourceLayout eLayout) override;
    void destroyTexture(rend::TextureHandle) override {}

private:
    resource::ResourceManager& m_resources;
};

/// Colours of the two circles of a brush.
struct BrushColours
{
    glm::vec4 rim{1.0f};
    glm::vec4 half{1.0f}; ///< at half the radius
};
/// Tells the painting tools apart; the colour tool's inner circle has the colour that it paints.
[[nodiscard]] BrushColours brushColours(uint8_t uTool, const glm::vec4& strokeColor);

/// Publishes a surface to the renderer. Main thread only.
class GroundView
{
public:
    /// Both must outlive it.
    GroundView(rend::Renderer& renderer, const TerrainGroundMaterialSet& materials);

    /// Sends what changed; after EditorTerrainSurface::rebuild().
    void update(EditorTerrainSurface& surface);
    /// The set has other arrays than before.
    void bindMaterials();
    /// Nothing is drawn until the next update.
    void release();

    /// Two circles on the ground, at the rim and at half the radius, for this frame.
    void drawBrush(const EditorTerrainSurface& surface, const glm::vec3& centre, float fRadius,
                   const BrushColours& colours);

private:
    rend::Renderer& m_renderer;
    GroundUploader m_uploader;
};

} // namespace tilebuilder
