#pragma once // Draws small pictures off screen and writes them to files.

#include "KestrelCommon/Device/DeviceTypes.h"
#include "KestrelCommon/renderer/InstanceWorld.h"
#include "KestrelCommon/renderer/RenderSettings.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
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

    // Objects, alone before nothing

    static constexpr uint32_t s_uObjectSide = 128; ///< pixels of their pictures

    /// Starts what a picture of the object needs. True when all of it is there.
    bool prepareObject(const std::shared_ptr<const resource::Renderable>& pRenderable);
    /// Draws the object upright and writes it to the first of the keyed paths that can be written, with
    /// the folders that lack; tells which, or nothing when none can. Colours in the order of its slots.
    std::string renderObject(std::span<const std::string> spanPaths,
                             const std::shared_ptr<const resource::Renderable>& pRenderable,
                             std::span<const uint32_t> spanColours);
    /// From the front, a little from the right and above, so that these points of a model, standing
    /// upright in its unit scale, fill the picture.
    [[nodiscard]] static rend::SceneView objectView(std::span<const glm::vec3> spanPoints);

    [[nodiscard]] static TilePictureFraming framing(bool bSmall);
    /// The view of a tile of that many cells: orthographic, from above at a slant, with its eight quads.
    [[nodiscard]] static rend::SceneView tileView(int iWidth, int iHeight, const TilePictureFraming& framing);

private:
    /// FNV-1a over the key's bytes.
    struct KeyHash
    {
        size_t operator()(uint64_t uKey) const;
    };

    [[nodiscard]] rend::TargetHandle targetFor(uint32_t uWidth, uint32_t uHeight);
    /// What stands alone in the small world.
    void setSubject(const std::shared_ptr<const resource::Renderable>& pRenderable,
                    std::span<const uint32_t> spanColours);
    void clearSubject();

    rend::Renderer& m_renderer;
    std::unordered_map<uint64_t, rend::TargetHandle, KeyHash> m_mapTargets; ///< by picture size
    rend::InstanceWorld m_objects;                                          ///< holds one at a time
    std::shared_ptr<const resource::Renderable> m_pSubject;
    uint32_t m_uSubject = rend::InstanceWorld::s_uNone;
    uint32_t m_uSubjectSlot = rend::InstanceWorld::s_uNone;
};

} // namespace tilebuilder
