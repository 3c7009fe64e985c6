#pragma once // Icons that face the eye, all drawn at once.

#include "KestrelCommon/Device/DeviceTypes.h"

#include <glm/vec3.hpp>
#include <glm/vec4.hpp>
#include <span>
#include <vector>

namespace rend
{

/// Collects icons and shows them all from end() on, until the next end(). The renderer draws them over
/// the scene; what stands before one lets it shine through faintly.
/// Threads: main thread only.
class BillboardBatch
{
public:
    /// As the GPU takes it.
    struct Icon
    {
        glm::vec3 position; ///< metres, of the middle
        float fSize;        ///< metres on a side
        uint32_t uColour;   ///< bytes R, G, B, A from the lowest; display values
        uint32_t uLayer;
    };
    static_assert(sizeof(Icon) == 24);

    /// A texture array whose layers are the icons; borrowed. Null draws nothing.
    void setImages(TextureHandle images) { m_images = images; }
    [[nodiscard]] TextureHandle images() const { return m_images; }

    void begin() { m_vecAdded.clear(); }
    /// Display colour with alpha, 0 to 1.
    void add(const glm::vec3& position, float fSize, const glm::vec4& colour, uint32_t uLayer);
    void end() { m_vecShown.swap(m_vecAdded); }

    [[nodiscard]] std::span<const Icon> shown() const { return m_vecShown; }

private:
    TextureHandle m_images;
    std::vector<Icon> m_vecAdded;
    std::vector<Icon> m_vecShown;
};

/// Bytes R, G, B, A from the lowest.
[[nodiscard]] uint32_t packColour(const glm::vec4& colour);

} // namespace rend
