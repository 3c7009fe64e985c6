#include "Tools/ContentBuilder/ImageFile.h"

#include <FreeImage.h>

namespace content
{

bool writeImage(const std::filesystem::path& path, int iWidth, int iHeight, std::span<const uint8_t> spanRgba)
{
    bool bAlpha = false;
    for (size_t u = 3; u < spanRgba.size(); u += 4)
        bAlpha = bAlpha || spanRgba[u] != 255;
    FIBITMAP* pBitmap = FreeImage_Allocate(iWidth, iHeight, bAlpha ? 32 : 24);
    if (!pBitmap)
        return false;
    for (int iRow = 0; iRow < iHeight; ++iRow)
    {
        BYTE* pTo = FreeImage_GetScanLine(pBitmap, iHeight - 1 - iRow);
        const uint8_t* pFrom = spanRgba.data() + static_cast<size_t>(iRow) * static_cast<size_t>(iWidth) * 4;
        for (int iColumn = 0; iColumn < iWidth; ++iColumn, pFrom += 4, pTo += bAlpha ? 4 : 3)
        {
            pTo[FI_RGBA_RED] = pFrom[0];
            pTo[FI_RGBA_GREEN] = pFrom[1];
            pTo[FI_RGBA_BLUE] = pFrom[2];
            if (bAlpha)
                pTo[FI_RGBA_ALPHA] = pFrom[3];
        }
    }
    const bool bTga = path.extension() == ".tga";
    const BOOL bDone = FreeImage_Save(bTga ? FIF_TARGA : FIF_PNG, pBitmap, path.c_str(),
                                      bTga ? TARGA_DEFAULT : PNG_Z_BEST_COMPRESSION);
    FreeImage_Unload(pBitmap);
    return bDone != FALSE;
}

} // namespace content
