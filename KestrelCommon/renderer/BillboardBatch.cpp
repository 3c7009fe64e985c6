#include "KestrelCommon/renderer/BillboardBatch.h"

#include <algorithm>

namespace rend
{

void BillboardBatch::add(const glm::vec3& position, float fSize, const glm::vec4& colour, uint32_t uLayer)
{
    m_vecAdded.push_back({position, fSize, packColour(colour), uLayer});
}

uint32_t packColour(const glm::vec4& colour)
{
    uint32_t uColour = 0;
    for (int i = 0; i < 4; ++i)
        uColour |= static_cast<uint32_t>(std::clamp(colour[i], 0.0f, 1.0f) * 255.0f + 0.5f) << (8 * i);
    return uColour;
}

} // namespace rend
