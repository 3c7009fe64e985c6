#pragma once // What the ground hands to the renderer.

#include "KestrelCommon/Device/DeviceTypes.h"

#include <cstdint>

namespace rend
{

/// The one object by which the ground is published. The renderer owns it; whoever made the
/// resources keeps them alive while they stand here. Null handles draw nothing.
struct TerrainSurfaceBindings
{
    uint64_t renderLayers = 0x2040; ///< takes part in layers 6 and 13

    BufferHandle vertexBuffer{}; ///< "EditorTerrainSurfaceMesh", 20 bytes a vertex: normal, height, colour
    BufferHandle indexBuffer{};  ///< "EditorTerrainSurfaceIndex", triangles
    BufferHandle surfaceInfo{};  ///< "CB_SURFACE_INFO": vertices a row (uint32), 1 / quads along X (float), 8
                                 ///< bytes unused
    TextureHandle texture0{};    ///< ground weights 0 to 3
    TextureHandle texture1{};    ///< ground weights 4 to 7
    TextureHandle diffuseArray{}; ///< of the bound ground material set, nine layers
    TextureHandle asgArray{};
    TextureHandle normalArray{};

    // How the index buffer is read; beside the handles because the device keeps no formats.
    uint32_t indexCount = 0;
    uint32_t verticesX = 0; ///< 2 m apart
    uint32_t verticesY = 0;
    IndexWidth indexWidth = IndexWidth::Bits32;

    /// All but the layers to null.
    void release() { *this = {.renderLayers = renderLayers}; }
};

} // namespace rend
