#pragma once // The 40 bytes at the head of a record, and the shorter ones of old versions.

#include "KestrelCommon/Core/Transform.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tile
{

constexpr size_t TransformSize = 40;        ///< position, rotation x y z w, scale
constexpr size_t UniformTransformSize = 32; ///< one scale for all axes
constexpr size_t PlaceSize = 28;            ///< position and rotation

// Records hold the fields as they lie in memory.
static_assert(sizeof(Transform) == TransformSize && offsetof(Transform, rotation) == 12 &&
              offsetof(Transform, scale) == PlaceSize);
static_assert(sizeof(glm::quat) == 16 && offsetof(glm::quat, x) == 0 && offsetof(glm::quat, w) == 12);

/// What of a transform a record holds.
enum class TransformForm : uint8_t
{
    Full,
    UniformScale,
    NoScale, ///< scale 1
};

[[nodiscard]] constexpr size_t transformSize(TransformForm eForm)
{
    return eForm == TransformForm::Full           ? TransformSize
           : eForm == TransformForm::UniformScale ? UniformTransformSize
                                                  : PlaceSize;
}

/// Equal bit for bit: records that differ in the sign of a zero are other records.
[[nodiscard]] inline bool equal(const Transform& first, const Transform& second)
{
    return std::memcmp(&first, &second, sizeof(Transform)) == 0;
}

} // namespace tile
