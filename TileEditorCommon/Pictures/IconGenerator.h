#pragma once // Draws small pictures off screen and writes them to files.

#include "KestrelCommon/Device/DeviceTypes.h"
#include "KestrelCommon/renderer/RenderSettings.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>

namespace rend
{
class Renderer;
}

namespace tilebuilder
{

/// The size of a tile's picture and how the tile lies in it.
struct TilePictureFraming
{
    uint32_t uWidth;
    uint32_t uHeight; ///< pixels
    float fZoom;
    float fOffset; ///< moves the tile up, as a part of the picture's height
};

/// Main thread only. The renderer must outlive it.
class IconGenerator
{
public:
    explicit IconGenerator(rend::Renderer& renderer) : m_renderer(renderer) {}
    ~IconGenerator();
    IconGenerator(const IconGenerator&) = delete;
    IconGenerator& operator=(const IconGenerator&) = delete;

    /// Draws the ground that is loaded, a tile of iWidth x iHeight cells, amid plain quads, and writes it
    /// to the keyed path (".png" or ".jpg"). The small form lies beside a saved tile, the large one goes
    /// to the workshop. False, with a line in the log, when the path doesn't resolve; false when the file
    /// can't be written.
    bool renderTile(std::string_view sPath, int iWidth, int iHeight, bool bSmall);

    [[nodiscard]] static TilePictureFraming framing(bool bSmall);
    /// The view of a tile of that many cells: orthographic, from above at a slant, with its eight quads.
    [[nodiscard]] static rend::SceneView tileView(int iWidth, int iHeight, const TilePictureFraming& framing);

private:
    /// FNV-1a over the key's bytes.
    struct KeyHash
    {
        size_t operator()(uint64_t uKey) const;
    };

    [[nodiscard]] rend::TargetHandle targetFor(const TilePictureFraming& framing);

    rend::Renderer& m_renderer;
    std::unordered_map<uint64_t, rend::TargetHandle, KeyHash> m_mapTargets; ///< by picture size
};

} // namespace tilebuilder
