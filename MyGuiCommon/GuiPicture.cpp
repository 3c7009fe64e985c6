#include "MyGuiCommon/GuiPicture.h"

#include "KestrelCommon/Core/Console.h"

#include <FreeImage.h>

namespace
{

constexpr unsigned s_uMaxSide = 8192;
constexpr int s_iBleedPixels = 4;

struct BitmapDeleter
{
    void operator()(FIBITMAP* pBitmap) const { FreeImage_Unload(pBitmap); }
};
using Bitmap = std::unique_ptr<FIBITMAP, BitmapDeleter>;

/// Gives each clear pixel that has a coloured neighbour the mean of those neighbours' colours.
void bleedOnce(GuiPicture& picture, std::vector<uint8_t>& vecKnown)
{
    const std::vector<uint8_t> vecBefore = vecKnown;
    const auto at = [&](int iX, int iY)
    { return static_cast<size_t>(iY) * static_cast<size_t>(picture.iWidth) + static_cast<size_t>(iX); };
    for (int iY = 0; iY < picture.iHeight; ++iY)
        for (int iX = 0; iX < picture.iWidth; ++iX)
        {
            if (vecBefore[at(iX, iY)])
                continue;
            int arrSum[3] = {};
            int iCount = 0;
            for (int iV = std::max(iY - 1, 0); iV <= std::min(iY + 1, picture.iHeight - 1); ++iV)
                for (int iU = std::max(iX - 1, 0); iU <= std::min(iX + 1, picture.iWidth - 1); ++iU)
                {
                    if (!vecBefore[at(iU, iV)])
                        continue;
                    for (size_t c = 0; c < 3; ++c)
                        arrSum[c] += picture.vecPixels[at(iU, iV) * 4 + c];
                    ++iCount;
                }
            if (iCount == 0)
                continue;
            for (size_t c = 0; c < 3; ++c)
                picture.vecPixels[at(iX, iY) * 4 + c] = static_cast<uint8_t>(arrSum[c] / iCount);
            vecKnown[at(iX, iY)] = 1;
        }
}

void bleedColours(GuiPicture& picture)
{
    std::vector<uint8_t> vecKnown(picture.vecPixels.size() / 4);
    for (size_t i = 0; i < vecKnown.size(); ++i)
        vecKnown[i] = picture.vecPixels[i * 4 + 3] > 0;
    for (int i = 0; i < s_iBleedPixels; ++i)
        bleedOnce(picture, vecKnown);
}

} // namespace

std::optional<GuiPicture> loadGuiPicture(const std::string& sRealPath)
{
    const FREE_IMAGE_FORMAT eFormat = FreeImage_GetFileType(sRealPath.c_str(), 0);
    Bitmap pLoaded(eFormat == FIF_UNKNOWN ? nullptr : FreeImage_Load(eFormat, sRealPath.c_str(), 0));
    const Bitmap pBitmap(pLoaded ? FreeImage_ConvertTo32Bits(pLoaded.get()) : nullptr);
    if (!pBitmap)
    {
        QM_LOG_ERROR("Failed to load picture '", sRealPath, "'");
        return std::nullopt;
    }
    const unsigned uWidth = FreeImage_GetWidth(pBitmap.get());
    const unsigned uHeight = FreeImage_GetHeight(pBitmap.get());
    if (uWidth == 0 || uHeight == 0 || uWidth > s_uMaxSide || uHeight > s_uMaxSide)
    {
        QM_LOG_ERROR("Picture '", sRealPath, "' has an impossible size: ", uWidth, " x ", uHeight);
        return std::nullopt;
    }
    GuiPicture picture{static_cast<int>(uWidth), static_cast<int>(uHeight), {}};
    picture.vecPixels.resize(size_t{uWidth} * uHeight * 4);
    for (unsigned uY = 0; uY < uHeight; ++uY)
    {
        const BYTE* pLine = FreeImage_GetScanLine(pBitmap.get(), static_cast<int>(uHeight - 1 - uY));
        uint8_t* pOut = picture.vecPixels.data() + size_t{uY} * uWidth * 4;
        for (unsigned uX = 0; uX < uWidth; ++uX, pLine += 4, pOut += 4)
        {
            pOut[0] = pLine[FI_RGBA_RED];
            pOut[1] = pLine[FI_RGBA_GREEN];
            pOut[2] = pLine[FI_RGBA_BLUE];
            pOut[3] = pLine[FI_RGBA_ALPHA];
        }
    }
    bleedColours(picture);
    return picture;
}
