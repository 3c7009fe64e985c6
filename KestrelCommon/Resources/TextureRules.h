#pragma once // What a request for a texture must fulfil.

#include "KestrelCommon/Device/DeviceTypes.h"

#include <string_view>

namespace resource
{

/// The rules of compressed layouts: sides are multiples of 4, powers of 2, at most 8192. Other layouts
/// pass. The path only names the request in the error line, one a broken rule.
[[nodiscard]] bool checkTextureSize(std::string_view sPath, int iWidth, int iHeight,
                                    TextureResourceLayout eLayout);

/// Warns of counts that are odd for the layout; 0 means a full chain.
void checkMipCount(std::string_view sPath, int iMips, TextureResourceLayout eLayout);

} // namespace resource
