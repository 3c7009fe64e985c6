#include "KestrelCommon/Device/DeviceChecks.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"

namespace rend
{

namespace
{

constexpr int s_iMaxSide = 16384;  ///< what every driver of OpenGL 4.3 takes
constexpr int s_iMaxLayers = 2048; ///< likewise

} // namespace

int fullMipCount(int iWidth, int iHeight)
{
    if (iWidth < 1 || iHeight < 1)
        return 0;
    return std::bit_width(static_cast<unsigned>(std::max(iWidth, iHeight)));
}

size_t texelBytes(const TextureDesc& desc)
{
    using enum resource::TextureResourceLayout;
    if (desc.bLuminanceAlpha)
        return 2;
    switch (desc.eLayout)
    {
    case Bc1:
    case Bc4:
    case R32G8X24:
        return 8;
    case Bc2:
    case Bc3:
    case Bc5:
        return 16;
    case R11G11B10Float:
    case Rgba8:
    case Rg16:
    case R32:
    case R24G8:
        return 4;
    case R16:
        return 2;
    case R8:
        return 1;
    }
    QM_ASSERT_TEXT(false, "\"Undefined resource::TextureResourceLayout\" && false");
    return 0;
}

bool checkBuffer(const BufferDesc& desc, size_t uInitialBytes)
{
    if (desc.uSize == 0)
    {
        QM_LOG_ERROR("Buffer ", desc.sName, " has no size");
        return false;
    }
    if (uInitialBytes != 0 && uInitialBytes != desc.uSize)
    {
        QM_LOG_ERROR("Buffer ", desc.sName, " of ", desc.uSize, " bytes got ", uInitialBytes);
        return false;
    }
    return true;
}

bool checkBufferUpdate(const BufferDesc& desc, size_t uOffset, size_t uBytes)
{
    if (uOffset <= desc.uSize && uBytes <= desc.uSize - uOffset)
        return true;
    QM_LOG_ERROR("Update of ", uBytes, " bytes at ", uOffset, " passes the end of buffer ", desc.sName);
    return false;
}

bool checkTexture(const TextureDesc& desc)
{
    if (texelBytes(desc) == 0)
        return false;
    if (desc.iWidth < 1 || desc.iHeight < 1 || desc.iWidth > s_iMaxSide || desc.iHeight > s_iMaxSide ||
        desc.iLayers < 0 || desc.iLayers > s_iMaxLayers)
    {
        QM_LOG_ERROR("Texture ", desc.sName, " can't have the size ", desc.iWidth, "x", desc.iHeight, "x",
                     desc.iLayers);
        return false;
    }
    if (desc.iMips < 1 || desc.iMips > fullMipCount(desc.iWidth, desc.iHeight))
    {
        QM_LOG_ERROR("Texture ", desc.sName, " can't have ", desc.iMips, " mips");
        return false;
    }
    return true;
}

bool checkTextureUpdate(const TextureDesc& desc, const TextureRegion& region, size_t uRowPitch, size_t uBytes)
{
    const bool bCompressed = !desc.bLuminanceAlpha && resource::isCompressed(desc.eLayout);
    const bool bPlace = region.iMip >= 0 && region.iMip < desc.iMips && region.iLayer >= 0 &&
                        region.iLayer < std::max(desc.iLayers, 1);
    if (!bPlace)
    {
        QM_LOG_ERROR("Texture ", desc.sName, " has no layer ", region.iLayer, " at mip ", region.iMip);
        return false;
    }

    const int iMipWidth = mipSide(desc.iWidth, region.iMip);
    const int iMipHeight = mipSide(desc.iHeight, region.iMip);
    const bool bInside = region.iX >= 0 && region.iY >= 0 && region.iWidth > 0 && region.iHeight > 0 &&
                         region.iWidth <= iMipWidth - region.iX && region.iHeight <= iMipHeight - region.iY;
    const auto isBlocked = [](int iStart, int iSide, int iEnd)
    { return iStart % 4 == 0 && (iSide % 4 == 0 || iStart + iSide == iEnd); };
    if (!bInside || (bCompressed && (!isBlocked(region.iX, region.iWidth, iMipWidth) ||
                                     !isBlocked(region.iY, region.iHeight, iMipHeight))))
    {
        QM_LOG_ERROR("Update of ", region.iWidth, "x", region.iHeight, " at ", region.iX, ", ", region.iY,
                     " isn't within texture ", desc.sName);
        return false;
    }

    const size_t uColumns = static_cast<size_t>(bCompressed ? (region.iWidth + 3) / 4 : region.iWidth);
    const size_t uRows = static_cast<size_t>(bCompressed ? (region.iHeight + 3) / 4 : region.iHeight);
    const size_t uRowBytes = uColumns * texelBytes(desc);
    if (uRowPitch < uRowBytes || uRowPitch % texelBytes(desc) != 0 ||
        uBytes < uRowPitch * (uRows - 1) + uRowBytes)
    {
        QM_LOG_ERROR("Update of texture ", desc.sName, " got ", uBytes, " bytes at a row pitch of ",
                     uRowPitch);
        return false;
    }
    return true;
}

bool checkTarget(const TargetDesc& desc)
{
    if (desc.iWidth > 0 && desc.iHeight > 0 && desc.iWidth <= s_iMaxSide && desc.iHeight <= s_iMaxSide)
        return true;
    QM_LOG_ERROR("Target ", desc.sName, " can't have the size ", desc.iWidth, "x", desc.iHeight);
    return false;
}

} // namespace rend
