#pragma once // The rules for arguments that every device applies alike.

#include "KestrelCommon/Device/DeviceTypes.h"

#include <cstddef>

namespace rend
{

/// Mips of a full chain down to 1 x 1; 0 for a size below 1.
[[nodiscard]] int fullMipCount(int iWidth, int iHeight);

/// Side of a mip: halved, rounded down, at least 1.
[[nodiscard]] constexpr int mipSide(int iSide, int iMip)
{
    return iSide >> iMip > 1 ? iSide >> iMip : 1;
}

/// Bytes of one texel, or of one 4 x 4 block of a compressed layout; 0: no such layout.
[[nodiscard]] size_t texelBytes(const TextureDesc& desc);

/// Each logs one error line that names the resource and is false when the arguments break a rule.
[[nodiscard]] bool checkBuffer(const BufferDesc& desc, size_t uInitialBytes);
[[nodiscard]] bool checkBufferUpdate(const BufferDesc& desc, size_t uOffset, size_t uBytes);
[[nodiscard]] bool checkTexture(const TextureDesc& desc);
[[nodiscard]] bool checkTextureUpdate(const TextureDesc& desc, const TextureRegion& region, size_t uRowPitch,
                                      size_t uBytes);
[[nodiscard]] bool checkTarget(const TargetDesc& desc);

} // namespace rend
