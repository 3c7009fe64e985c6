#include "KestrelCommon/Resources/BlockEncoder.h"

#include "KestrelCommon/Device/DeviceChecks.h"

namespace resource
{

namespace
{

constexpr size_t s_uBlockBytes = 16;

using Channel = std::array<float, 16>; ///< one value a pixel, rows from the top

/// The block's pixels, a channel after the other, so that loops over pixels run in SIMD registers.
struct Block
{
    std::array<Channel, 4> arrChannels;
};

size_t blocksAlong(int iSide)
{
    return (static_cast<size_t>(iSide) + 3) / 4;
}

void readBlock(const Picture& picture, size_t uBlockX, size_t uBlockY, Block& block)
{
    const auto uWidth = static_cast<size_t>(picture.iWidth);
    const auto uHeight = static_cast<size_t>(picture.iHeight);
    for (size_t u = 0; u < 16; ++u)
    {
        const size_t uX = std::min(uBlockX * 4 + u % 4, uWidth - 1);
        const size_t uY = std::min(uBlockY * 4 + u / 4, uHeight - 1);
        const std::byte* pPixel = picture.vecPixels.data() + (uY * uWidth + uX) * 4;
        for (size_t c = 0; c < 4; ++c)
            block.arrChannels[c][u] = static_cast<float>(pPixel[c]);
    }
}

void writeLittle(uint64_t uValue, size_t uBytes, std::byte* pOut)
{
    for (size_t u = 0; u < uBytes; ++u)
        pOut[u] = static_cast<std::byte>(uValue >> (8 * u));
}

/// 8 bytes: the largest value, the smallest, and 3 bits a pixel. Codes 0 and 1 are the two ends; 2 to 7
/// lead from the first to the second.
void encodeChannel(const Channel& arrValues, std::byte* pOut)
{
    float fLow = arrValues[0];
    float fHigh = arrValues[0];
    for (const float fValue : arrValues)
    {
        fLow = std::min(fLow, fValue);
        fHigh = std::max(fHigh, fValue);
    }
    uint64_t uCodes = 0;
    if (fHigh > fLow)
    {
        const float fScale = 7.0f / (fHigh - fLow);
        std::array<int32_t, 16> arrSteps{};
        for (size_t u = 0; u < 16; ++u)
            arrSteps[u] = static_cast<int32_t>((fHigh - arrValues[u]) * fScale + 0.5f);
        constexpr std::array<uint64_t, 8> s_arrCodes = {0, 2, 3, 4, 5, 6, 7, 1};
        for (size_t u = 0; u < 16; ++u)
            uCodes |= s_arrCodes[static_cast<size_t>(arrSteps[u])] << (3 * u);
    }
    pOut[0] = static_cast<std::byte>(fHigh);
    pOut[1] = static_cast<std::byte>(fLow);
    writeLittle(uCodes, 6, pOut + 2);
}

using Colour = std::array<float, 3>;

/// The direction in which the block's colours differ most, by repeated multiplication with their
/// covariances. The start, the row with the largest spread, can't stand square to it.
Colour mainAxis(const Block& block, const Colour& arrMean)
{
    std::array<Colour, 3> arrSpread{};
    for (size_t a = 0; a < 3; ++a)
        for (size_t b = a; b < 3; ++b)
        {
            float fSum = 0.0f;
            for (size_t u = 0; u < 16; ++u)
                fSum += (block.arrChannels[a][u] - arrMean[a]) * (block.arrChannels[b][u] - arrMean[b]);
            arrSpread[a][b] = fSum;
            arrSpread[b][a] = fSum;
        }
    size_t uLargest = 0;
    for (size_t a = 1; a < 3; ++a)
        if (arrSpread[a][a] > arrSpread[uLargest][uLargest])
            uLargest = a;
    Colour arrAxis = arrSpread[uLargest];
    for (int iRound = 0; iRound < 4; ++iRound)
    {
        const float fLongest =
            std::max({std::abs(arrAxis[0]), std::abs(arrAxis[1]), std::abs(arrAxis[2]), 1e-6f});
        const Colour arrUnit = {arrAxis[0] / fLongest, arrAxis[1] / fLongest, arrAxis[2] / fLongest};
        for (size_t a = 0; a < 3; ++a)
            arrAxis[a] =
                arrSpread[a][0] * arrUnit[0] + arrSpread[a][1] * arrUnit[1] + arrSpread[a][2] * arrUnit[2];
    }
    const float fLength =
        std::sqrt(arrAxis[0] * arrAxis[0] + arrAxis[1] * arrAxis[1] + arrAxis[2] * arrAxis[2]);
    for (float& fPart : arrAxis)
        fPart = fLength > 1e-6f ? fPart / fLength : 0.57735f;
    return arrAxis;
}

/// 5, 6 and 5 bits, and what a GPU makes of them.
struct ShortColour
{
    uint16_t uBits = 0;
    Colour arrShown{};
};

ShortColour shorten(const Colour& arrMean, const Colour& arrAxis, float fAlong)
{
    ShortColour colour;
    constexpr std::array<uint32_t, 3> s_arrBits = {5, 6, 5};
    for (size_t c = 0; c < 3; ++c)
    {
        const uint32_t uLargest = (1u << s_arrBits[c]) - 1;
        const float fValue = std::clamp(arrMean[c] + arrAxis[c] * fAlong, 0.0f, 255.0f);
        const auto uValue = static_cast<uint32_t>(fValue * static_cast<float>(uLargest) / 255.0f + 0.5f);
        colour.uBits = static_cast<uint16_t>(colour.uBits << s_arrBits[c] | uValue);
        colour.arrShown[c] = static_cast<float>(uValue * 255) / static_cast<float>(uLargest);
    }
    return colour;
}

/// 8 bytes: two colours and 2 bits a pixel. Codes 0 and 1 are the ends, 2 and 3 the thirds between.
void encodeColours(const Block& block, std::byte* pOut)
{
    Colour arrMean{};
    for (size_t c = 0; c < 3; ++c)
    {
        for (const float fValue : block.arrChannels[c])
            arrMean[c] += fValue;
        arrMean[c] /= 16.0f;
    }
    const Colour arrAxis = mainAxis(block, arrMean);
    const auto along = [&block](const Colour& arrFrom, const Colour& arrDirection)
    {
        Channel arrAlong{};
        for (size_t u = 0; u < 16; ++u)
            arrAlong[u] = (block.arrChannels[0][u] - arrFrom[0]) * arrDirection[0] +
                          (block.arrChannels[1][u] - arrFrom[1]) * arrDirection[1] +
                          (block.arrChannels[2][u] - arrFrom[2]) * arrDirection[2];
        return arrAlong;
    };
    const Channel arrAlong = along(arrMean, arrAxis);
    const auto [itLow, itHigh] = std::minmax_element(arrAlong.begin(), arrAlong.end());
    // Ends a little within the range serve the many pixels inside better than they cost the two outermost.
    const float fInset = (*itHigh - *itLow) / 16.0f;
    ShortColour first = shorten(arrMean, arrAxis, *itHigh - fInset);
    ShortColour second = shorten(arrMean, arrAxis, *itLow + fInset);
    if (first.uBits < second.uBits)
        std::swap(first, second); // the other order means three colours to some readers

    uint64_t uCodes = 0;
    if (first.uBits != second.uBits)
    {
        Colour arrWay{};
        float fSquare = 0.0f;
        for (size_t c = 0; c < 3; ++c)
        {
            arrWay[c] = second.arrShown[c] - first.arrShown[c];
            fSquare += arrWay[c] * arrWay[c];
        }
        for (float& fPart : arrWay)
            fPart *= 3.0f / fSquare;
        const Channel arrThirds = along(first.arrShown, arrWay);
        std::array<int32_t, 16> arrSteps{};
        for (size_t u = 0; u < 16; ++u)
            arrSteps[u] = static_cast<int32_t>(std::clamp(arrThirds[u] + 0.5f, 0.0f, 3.0f));
        constexpr std::array<uint64_t, 4> s_arrCodes = {0, 2, 3, 1};
        for (size_t u = 0; u < 16; ++u)
            uCodes |= s_arrCodes[static_cast<size_t>(arrSteps[u])] << (2 * u);
    }
    writeLittle(first.uBits, 2, pOut);
    writeLittle(second.uBits, 2, pOut + 2);
    writeLittle(uCodes, 4, pOut + 4);
}

} // namespace

size_t blockBytes(int iWidth, int iHeight)
{
    return iWidth < 1 || iHeight < 1 ? 0 : blocksAlong(iWidth) * blocksAlong(iHeight) * s_uBlockBytes;
}

size_t blockChainBytes(int iWidth, int iHeight, int iMips)
{
    size_t uBytes = 0;
    for (int iMip = 0; iMip < iMips; ++iMip)
        uBytes += blockBytes(rend::mipSide(iWidth, iMip), rend::mipSide(iHeight, iMip));
    return uBytes;
}

bool encodeBlocks(const Picture& picture, TextureResourceLayout eLayout, std::span<std::byte> spanOut)
{
    const size_t uBytes = blockBytes(picture.iWidth, picture.iHeight);
    if (!canEncode(eLayout) || uBytes == 0 || spanOut.size() != uBytes ||
        picture.vecPixels.size() !=
            static_cast<size_t>(picture.iWidth) * static_cast<size_t>(picture.iHeight) * 4)
        return false;
    Block block;
    std::byte* pOut = spanOut.data();
    for (size_t uY = 0; uY < blocksAlong(picture.iHeight); ++uY)
        for (size_t uX = 0; uX < blocksAlong(picture.iWidth); ++uX, pOut += s_uBlockBytes)
        {
            readBlock(picture, uX, uY, block);
            const bool bColours = eLayout == TextureResourceLayout::Bc3;
            encodeChannel(block.arrChannels[bColours ? 3 : 0], pOut);
            if (bColours)
                encodeColours(block, pOut + 8);
            else
                encodeChannel(block.arrChannels[1], pOut + 8);
        }
    return true;
}

std::vector<std::byte> encodeBlockChain(const Picture& picture, TextureResourceLayout eLayout, int iMips,
                                        bool bColour)
{
    std::vector<std::byte> vecBlocks(blockChainBytes(picture.iWidth, picture.iHeight, iMips));
    const Picture* pLevel = &picture;
    Picture below;
    size_t uAt = 0;
    for (int iMip = 0; iMip < iMips; ++iMip)
    {
        const size_t uBytes = blockBytes(pLevel->iWidth, pLevel->iHeight);
        if (uBytes == 0 || !encodeBlocks(*pLevel, eLayout, std::span(vecBlocks).subspan(uAt, uBytes)))
            return {};
        uAt += uBytes;
        if (iMip + 1 == iMips)
            break;
        below = bColour ? halveColours(*pLevel) : halveValues(*pLevel);
        pLevel = &below;
    }
    return vecBlocks;
}

} // namespace resource
