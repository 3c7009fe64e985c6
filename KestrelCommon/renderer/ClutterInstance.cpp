#include "KestrelCommon/renderer/ClutterInstance.h"

#include <bit>

namespace rend
{

uint16_t toHalf(float fValue)
{
    const auto uBits = std::bit_cast<uint32_t>(fValue);
    const uint32_t uSign = (uBits >> 16) & 0x8000u;
    const uint32_t uMagnitude = uBits & 0x7FFFFFFFu;
    if (uMagnitude > 0x7F800000u)
        return static_cast<uint16_t>(uSign | 0x7E00u); // not a number
    // Exponents 127 - 14 to 127 + 15 are those of normal halves.
    if (uMagnitude >= 0x38800000u)
    {
        const uint32_t uRounded = uMagnitude - 0x38000000u + 0x1000u;
        return static_cast<uint16_t>(uSign | (uRounded >= 0x0F800000u ? 0x7C00u : uRounded >> 13));
    }
    const uint32_t uShift = 126u - (uMagnitude >> 23); // 14 just below the normal halves
    if (uShift > 24u)
        return static_cast<uint16_t>(uSign);
    const uint32_t uMantissa = (uMagnitude & 0x7FFFFFu) | 0x800000u;
    return static_cast<uint16_t>(uSign | ((uMantissa + (1u << (uShift - 1u))) >> uShift));
}

ClutterInstance makeClutterInstance(uint8_t uIndex, const glm::vec3& position, const glm::vec3& normal,
                                    uint32_t color)
{
    return {position.x,
            position.y,
            {toHalf(normal.x), toHalf(normal.y), toHalf(normal.z)},
            toHalf(position.z),
            (color & 0xFFFFFF00u) | uIndex};
}

} // namespace rend
