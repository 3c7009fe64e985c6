#include "KestrelCommon/Resources/Picture.h"

#include "KestrelCommon/Core/Uuid.h"

#include <FreeImage.h>

#include <limits>

namespace resource
{

namespace
{

constexpr unsigned s_uMaxSide = 16384;

struct BitmapDeleter
{
    void operator()(FIBITMAP* pBitmap) const { FreeImage_Unload(pBitmap); }
};
using Bitmap = std::unique_ptr<FIBITMAP, BitmapDeleter>;

struct MemoryDeleter
{
    void operator()(FIMEMORY* pMemory) const { FreeImage_CloseMemory(pMemory); }
};
using Memory = std::unique_ptr<FIMEMORY, MemoryDeleter>;

/// The library keeps rows from the bottom and, on this byte order, pixels as B, G, R, A.
void copyRow(const BYTE* pFrom, std::byte* pTo, size_t uPixels)
{
    for (size_t u = 0; u < uPixels; ++u, pFrom += 4, pTo += 4)
    {
        pTo[0] = std::byte{pFrom[FI_RGBA_RED]};
        pTo[1] = std::byte{pFrom[FI_RGBA_GREEN]};
        pTo[2] = std::byte{pFrom[FI_RGBA_BLUE]};
        pTo[3] = std::byte{pFrom[FI_RGBA_ALPHA]};
    }
}

/// Where a pixel of the scaled side gets its value: two neighbours, or a span when shrinking.
struct Tap
{
    int iFirst;
    std::vector<float> vecWeights;
};

std::vector<Tap> taps(int iFrom, int iTo)
{
    std::vector<Tap> vecTaps;
    const float fScale = static_cast<float>(iFrom) / static_cast<float>(iTo);
    const float fRadius = std::max(fScale, 1.0f);
    for (int i = 0; i < iTo; ++i)
    {
        const float fCentre = (static_cast<float>(i) + 0.5f) * fScale - 0.5f;
        const int iFirst = static_cast<int>(std::floor(fCentre - fRadius)) + 1;
        const int iLast = static_cast<int>(std::ceil(fCentre + fRadius)) - 1;
        Tap tap{iFirst, {}};
        float fSum = 0.0f;
        for (int k = iFirst; k <= iLast; ++k)
        {
            const float fWeight = std::max(0.0f, 1.0f - std::abs(static_cast<float>(k) - fCentre) / fRadius);
            tap.vecWeights.push_back(fWeight);
            fSum += fWeight;
        }
        for (float& fWeight : tap.vecWeights)
            fWeight /= fSum;
        vecTaps.push_back(std::move(tap));
    }
    return vecTaps;
}

std::optional<Picture> toPicture(Bitmap pBitmap)
{
    if (!pBitmap || !FreeImage_HasPixels(pBitmap.get()))
        return std::nullopt;
    if (FreeImage_GetBPP(pBitmap.get()) != 32)
        pBitmap.reset(FreeImage_ConvertTo32Bits(pBitmap.get()));
    if (!pBitmap)
        return std::nullopt;
    const unsigned uWidth = FreeImage_GetWidth(pBitmap.get());
    const unsigned uHeight = FreeImage_GetHeight(pBitmap.get());
    if (uWidth == 0 || uHeight == 0 || uWidth > s_uMaxSide || uHeight > s_uMaxSide)
        return std::nullopt;

    Picture picture{static_cast<int>(uWidth), static_cast<int>(uHeight), {}};
    picture.vecPixels.resize(size_t{uWidth} * uHeight * 4);
    for (unsigned uRow = 0; uRow < uHeight; ++uRow)
        copyRow(FreeImage_GetScanLine(pBitmap.get(), static_cast<int>(uHeight - 1 - uRow)),
                picture.vecPixels.data() + size_t{uRow} * uWidth * 4, uWidth);
    return picture;
}

/// Null when the file is missing or of no known format.
Bitmap loadBitmap(const std::filesystem::path& path, int iFlags)
{
    const std::string sPath = path.string();
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return nullptr;
    FREE_IMAGE_FORMAT eFormat = FreeImage_GetFileType(sPath.c_str());
    if (eFormat == FIF_UNKNOWN)
        eFormat = FreeImage_GetFIFFromFilename(sPath.c_str()); // TGA has no magic number
    if (eFormat == FIF_UNKNOWN || !FreeImage_FIFSupportsReading(eFormat))
        return nullptr;
    return Bitmap(FreeImage_Load(eFormat, sPath.c_str(), iFlags));
}

} // namespace

std::optional<Picture> loadPicture(const std::filesystem::path& path)
{
    return toPicture(loadBitmap(path, 0));
}

std::optional<std::pair<int, int>> pictureSize(const std::filesystem::path& path)
{
    const Bitmap pBitmap = loadBitmap(path, FIF_LOAD_NOPIXELS);
    if (!pBitmap)
        return std::nullopt;
    const unsigned uWidth = FreeImage_GetWidth(pBitmap.get());
    const unsigned uHeight = FreeImage_GetHeight(pBitmap.get());
    if (uWidth == 0 || uHeight == 0 || uWidth > s_uMaxSide || uHeight > s_uMaxSide)
        return std::nullopt;
    return std::pair(static_cast<int>(uWidth), static_cast<int>(uHeight));
}

std::optional<Picture> readPicture(std::span<const std::byte> spanFile, const std::filesystem::path& name)
{
    if (spanFile.empty() || spanFile.size() > std::numeric_limits<DWORD>::max())
        return std::nullopt;
    // The library only reads from a memory that it is given, though it asks for a writable one.
    const Memory pMemory(
        FreeImage_OpenMemory(reinterpret_cast<BYTE*>(const_cast<std::byte*>(spanFile.data())),
                             static_cast<DWORD>(spanFile.size())));
    if (!pMemory)
        return std::nullopt;
    FREE_IMAGE_FORMAT eFormat = FreeImage_GetFileTypeFromMemory(pMemory.get());
    if (eFormat == FIF_UNKNOWN)
        eFormat = FreeImage_GetFIFFromFilename(name.string().c_str());
    if (eFormat == FIF_UNKNOWN || !FreeImage_FIFSupportsReading(eFormat))
        return std::nullopt;
    return toPicture(Bitmap(FreeImage_LoadFromMemory(eFormat, pMemory.get())));
}

Picture scalePicture(const Picture& picture, int iWidth, int iHeight)
{
    if (picture.iWidth < 1 || picture.iHeight < 1 || iWidth < 1 || iHeight < 1)
        return {};
    if (picture.iWidth == iWidth && picture.iHeight == iHeight)
        return picture;

    const std::vector<Tap> vecColumns = taps(picture.iWidth, iWidth);
    const std::vector<Tap> vecRows = taps(picture.iHeight, iHeight);
    const auto from = [&](int iRow, int iColumn)
    {
        const int iY = std::clamp(iRow, 0, picture.iHeight - 1);
        const int iX = std::clamp(iColumn, 0, picture.iWidth - 1);
        return picture.vecPixels.data() +
               (static_cast<size_t>(iY) * static_cast<size_t>(picture.iWidth) + static_cast<size_t>(iX)) * 4;
    };
    const auto uWide = static_cast<size_t>(iWidth);
    std::vector<std::array<float, 4>> vecAcross(uWide * static_cast<size_t>(picture.iHeight));
    for (int iRow = 0; iRow < picture.iHeight; ++iRow)
        for (size_t u = 0; u < uWide; ++u)
        {
            std::array<float, 4> arrSum{};
            for (size_t k = 0; k < vecColumns[u].vecWeights.size(); ++k)
            {
                const std::byte* pFrom = from(iRow, vecColumns[u].iFirst + static_cast<int>(k));
                for (size_t c = 0; c < 4; ++c)
                    arrSum[c] += vecColumns[u].vecWeights[k] * static_cast<float>(pFrom[c]);
            }
            vecAcross[static_cast<size_t>(iRow) * uWide + u] = arrSum;
        }

    Picture result{iWidth, iHeight, std::vector<std::byte>(uWide * static_cast<size_t>(iHeight) * 4)};
    for (size_t uRow = 0; uRow < vecRows.size(); ++uRow)
        for (size_t u = 0; u < uWide; ++u)
            for (size_t c = 0; c < 4; ++c)
            {
                float fSum = 0.0f;
                for (size_t k = 0; k < vecRows[uRow].vecWeights.size(); ++k)
                {
                    const int iRow =
                        std::clamp(vecRows[uRow].iFirst + static_cast<int>(k), 0, picture.iHeight - 1);
                    fSum += vecRows[uRow].vecWeights[k] * vecAcross[static_cast<size_t>(iRow) * uWide + u][c];
                }
                result.vecPixels[(uRow * uWide + u) * 4 + c] =
                    static_cast<std::byte>(std::clamp(fSum + 0.5f, 0.0f, 255.0f));
            }
    return result;
}

Picture reducePicture(const Picture& picture, int iFactor)
{
    if (iFactor < 1)
        return {};
    Picture result{picture.iWidth / iFactor, picture.iHeight / iFactor, {}};
    const auto uFactor = static_cast<size_t>(iFactor);
    const auto uWide = static_cast<size_t>(result.iWidth);
    const auto uFromWide = static_cast<size_t>(picture.iWidth);
    result.vecPixels.resize(uWide * static_cast<size_t>(result.iHeight) * 4);
    for (size_t uByte = 0; uByte < result.vecPixels.size(); ++uByte)
    {
        const size_t uX = uByte / 4 % uWide * uFactor;
        const size_t uY = uByte / 4 / uWide * uFactor;
        size_t uSum = uFactor * uFactor / 2;
        for (size_t y = 0; y < uFactor; ++y)
            for (size_t x = 0; x < uFactor; ++x)
                uSum +=
                    static_cast<size_t>(picture.vecPixels[((uY + y) * uFromWide + uX + x) * 4 + uByte % 4]);
        result.vecPixels[uByte] = static_cast<std::byte>(uSum / (uFactor * uFactor));
    }
    return result;
}

Picture halveColours(const Picture& picture)
{
    static const std::array<float, 256> s_arrLight = []
    {
        std::array<float, 256> arrLight{};
        for (size_t u = 0; u < arrLight.size(); ++u)
        {
            const float fShown = static_cast<float>(u) / 255.0f;
            arrLight[u] = fShown <= 0.04045f ? fShown / 12.92f : std::pow((fShown + 0.055f) / 1.055f, 2.4f);
        }
        return arrLight;
    }();
    if (picture.iWidth < 1 || picture.iHeight < 1)
        return {};
    Picture result{std::max(picture.iWidth / 2, 1), std::max(picture.iHeight / 2, 1), {}};
    const auto uWide = static_cast<size_t>(result.iWidth);
    const auto uFromWide = static_cast<size_t>(picture.iWidth);
    const size_t uRight = picture.iWidth > 1 ? 4 : 0;
    const size_t uDown = picture.iHeight > 1 ? uFromWide * 4 : 0;
    result.vecPixels.resize(uWide * static_cast<size_t>(result.iHeight) * 4);
    for (size_t uByte = 0; uByte < result.vecPixels.size(); ++uByte)
    {
        const size_t uFrom = (uByte / 4 / uWide * 2 * uFromWide + uByte / 4 % uWide * 2) * 4 + uByte % 4;
        const std::array<size_t, 4> arrFrom{uFrom, uFrom + uRight, uFrom + uDown, uFrom + uRight + uDown};
        float fSum = 0.0f;
        for (const size_t u : arrFrom)
        {
            const auto uValue = static_cast<size_t>(picture.vecPixels[u]);
            fSum += uByte % 4 == 3 ? static_cast<float>(uValue) : s_arrLight[uValue];
        }
        fSum *= 0.25f;
        if (uByte % 4 != 3)
            fSum =
                255.0f * (fSum <= 0.0031308f ? fSum * 12.92f : 1.055f * std::pow(fSum, 1.0f / 2.4f) - 0.055f);
        result.vecPixels[uByte] = static_cast<std::byte>(std::clamp(fSum + 0.5f, 0.0f, 255.0f));
    }
    return result;
}

Picture halveValues(const Picture& picture)
{
    if (picture.iWidth < 1 || picture.iHeight < 1)
        return {};
    Picture result{std::max(picture.iWidth / 2, 1), std::max(picture.iHeight / 2, 1), {}};
    const auto uWide = static_cast<size_t>(result.iWidth);
    const auto uFromWide = static_cast<size_t>(picture.iWidth);
    const size_t uRight = picture.iWidth > 1 ? 4 : 0;
    const size_t uDown = picture.iHeight > 1 ? uFromWide * 4 : 0;
    result.vecPixels.resize(uWide * static_cast<size_t>(result.iHeight) * 4);
    for (size_t uByte = 0; uByte < result.vecPixels.size(); ++uByte)
    {
        const std::byte* pFrom = picture.vecPixels.data() +
                                 (uByte / 4 / uWide * 2 * uFromWide + uByte / 4 % uWide * 2) * 4 + uByte % 4;
        const size_t uSum = static_cast<size_t>(pFrom[0]) + static_cast<size_t>(pFrom[uRight]) +
                            static_cast<size_t>(pFrom[uDown]) + static_cast<size_t>(pFrom[uRight + uDown]);
        result.vecPixels[uByte] = static_cast<std::byte>((uSum + 2) / 4);
    }
    return result;
}

bool writePicture(const std::filesystem::path& path, int iWidth, int iHeight,
                  std::span<const std::byte> spanRgba)
{
    if (iWidth < 1 || iHeight < 1 ||
        spanRgba.size() != static_cast<size_t>(iWidth) * static_cast<size_t>(iHeight) * 4)
        return false;
    const std::string sExtension = path.extension().string();
    const bool bJpeg = sExtension == ".jpg" || sExtension == ".jpeg";
    Bitmap pBitmap(FreeImage_Allocate(iWidth, iHeight, bJpeg ? 24 : 32));
    if (!pBitmap)
        return false;
    const size_t uBytes = bJpeg ? 3 : 4;
    for (int iRow = 0; iRow < iHeight; ++iRow)
    {
        const std::byte* pFrom =
            spanRgba.data() + static_cast<size_t>(iRow) * static_cast<size_t>(iWidth) * 4;
        BYTE* pTo = FreeImage_GetScanLine(pBitmap.get(), iHeight - 1 - iRow);
        for (int iColumn = 0; iColumn < iWidth; ++iColumn, pFrom += 4, pTo += uBytes)
        {
            pTo[FI_RGBA_RED] = static_cast<BYTE>(pFrom[0]);
            pTo[FI_RGBA_GREEN] = static_cast<BYTE>(pFrom[1]);
            pTo[FI_RGBA_BLUE] = static_cast<BYTE>(pFrom[2]);
            if (!bJpeg)
                pTo[FI_RGBA_ALPHA] = static_cast<BYTE>(pFrom[3]);
        }
    }
    const std::filesystem::path beside = path.string() + "." + Uuid::random().text() + ".tmp";
    bool bDone = FreeImage_Save(bJpeg ? FIF_JPEG : FIF_PNG, pBitmap.get(), beside.string().c_str(),
                                bJpeg ? JPEG_QUALITYGOOD | JPEG_SUBSAMPLING_444 : PNG_DEFAULT) != FALSE;
    std::error_code error;
    if (bDone)
    {
        std::filesystem::rename(beside, path, error);
        bDone = !error;
    }
    if (!bDone)
        std::filesystem::remove(beside, error);
    return bDone;
}

} // namespace resource
