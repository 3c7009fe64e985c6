#include "KestrelCommon/Resources/TextureRules.h"

#include "KestrelCommon/Core/Console.h"

namespace resource
{

namespace
{

constexpr int s_iMaxSide = 8192;

bool isPowerOfTwo(int iSide)
{
    return iSide > 0 && std::has_single_bit(static_cast<unsigned>(iSide));
}

} // namespace

bool checkTextureSize(std::string_view sPath, int iWidth, int iHeight, TextureResourceLayout eLayout)
{
    if (!isCompressed(eLayout))
        return true;
    const std::string sSize = UTILS::concat(" uses a compressed layout but its size is ", iWidth, "x",
                                            iHeight, ". compressed textures must be ");
    if (iWidth < 1 || iHeight < 1 || iWidth % 4 != 0 || iHeight % 4 != 0)
    {
        QM_LOG_ERROR(sPath, sSize, "multiples of 4.");
        return false;
    }
    if (!isPowerOfTwo(iWidth) || !isPowerOfTwo(iHeight))
    {
        QM_LOG_ERROR(sPath, sSize, "power of 2s.");
        return false;
    }
    if (iWidth > s_iMaxSide || iHeight > s_iMaxSide)
    {
        QM_LOG_ERROR(sPath, " is to big at ", iWidth, "x", iHeight,
                     ". 8192x8192 is the maximum size possible.");
        return false;
    }
    return true;
}

void checkMipCount(std::string_view sPath, int iMips, TextureResourceLayout eLayout)
{
    if (eLayout == TextureResourceLayout::Rgba8 && iMips != 1)
        QM_LOG_WARNING(sPath, " is uncompressed but uses mipmaps: ", iMips);
    if (iMips >= 2)
        QM_LOG_WARNING(sPath, " uses mipmap count: ", iMips, " its recomended to only use 1 or 0(auto).");
}

} // namespace resource
