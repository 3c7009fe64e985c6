#include "KestrelCommon/Resources/BlockEncoder.h"

#include <gtest/gtest.h>

using namespace resource;

namespace
{

/// What the formats say of a channel's 8 bytes, with all their modes.
std::array<int, 16> decodeChannel(const std::byte* pBlock)
{
    const int iFirst = static_cast<int>(pBlock[0]);
    const int iSecond = static_cast<int>(pBlock[1]);
    std::array<int, 8> arrPalette{iFirst, iSecond};
    const int iSteps = iFirst > iSecond ? 7 : 5;
    for (int i = 1; i < iSteps; ++i)
        arrPalette[static_cast<size_t>(i + 1)] = ((iSteps - i) * iFirst + i * iSecond + iSteps / 2) / iSteps;
    if (iSteps == 5)
        arrPalette[7] = 255;
    std::array<int, 16> arrOut{};
    for (size_t u = 0; u < 16; ++u)
    {
        uint32_t uCode = 0;
        for (size_t uBit = 0; uBit < 3; ++uBit)
            uCode |= (static_cast<uint32_t>(pBlock[2 + (u * 3 + uBit) / 8]) >> ((u * 3 + uBit) % 8) & 1)
                     << uBit;
        arrOut[u] = arrPalette[uCode];
    }
    return arrOut;
}

std::array<std::array<int, 3>, 16> decodeColours(const std::byte* pBlock)
{
    std::array<std::array<int, 3>, 4> arrPalette{};
    for (size_t u = 0; u < 2; ++u)
    {
        const int iBits = static_cast<int>(pBlock[u * 2]) | static_cast<int>(pBlock[u * 2 + 1]) << 8;
        arrPalette[u] = {(iBits >> 11) * 255 / 31, (iBits >> 5 & 63) * 255 / 63, (iBits & 31) * 255 / 31};
    }
    for (size_t c = 0; c < 3; ++c)
    {
        arrPalette[2][c] = (2 * arrPalette[0][c] + arrPalette[1][c]) / 3;
        arrPalette[3][c] = (arrPalette[0][c] + 2 * arrPalette[1][c]) / 3;
    }
    std::array<std::array<int, 3>, 16> arrOut{};
    for (size_t u = 0; u < 16; ++u)
        arrOut[u] = arrPalette[static_cast<size_t>(pBlock[4 + u / 4]) >> (u % 4 * 2) & 3];
    return arrOut;
}

Picture decode(std::span<const std::byte> spanBlocks, int iWidth, int iHeight, TextureResourceLayout eLayout)
{
    Picture picture{iWidth, iHeight, {}};
    picture.vecPixels.resize(static_cast<size_t>(iWidth * iHeight) * 4);
    for (int i = 0; i < iWidth * iHeight; ++i)
    {
        const int iX = i % iWidth;
        const int iY = i / iWidth;
        const std::byte* pBlock = spanBlocks.data() + (iY / 4 * ((iWidth + 3) / 4) + iX / 4) * 16;
        const auto uPixel = static_cast<size_t>(iY % 4 * 4 + iX % 4);
        std::array<int, 4> arrPixel{};
        if (eLayout == TextureResourceLayout::Bc3)
        {
            const auto arrColour = decodeColours(pBlock + 8)[uPixel];
            arrPixel = {arrColour[0], arrColour[1], arrColour[2], decodeChannel(pBlock)[uPixel]};
        }
        else
            arrPixel = {decodeChannel(pBlock)[uPixel], decodeChannel(pBlock + 8)[uPixel], 0, 0};
        for (size_t c = 0; c < 4; ++c)
            picture.vecPixels[static_cast<size_t>(i) * 4 + c] = static_cast<std::byte>(arrPixel[c]);
    }
    return picture;
}

/// Decibels over the channels from uFirst to below uEnd.
double peakRatio(const Picture& a, const Picture& b, size_t uFirst, size_t uEnd)
{
    double fSum = 1e-9;
    size_t uCount = 0;
    for (size_t u = 0; u < a.vecPixels.size(); ++u)
    {
        if (u % 4 < uFirst || u % 4 >= uEnd)
            continue;
        const double fOff = static_cast<double>(a.vecPixels[u]) - static_cast<double>(b.vecPixels[u]);
        fSum += fOff * fOff;
        ++uCount;
    }
    return 10.0 * std::log10(255.0 * 255.0 * static_cast<double>(uCount) / fSum);
}

/// Like a ground: one hue with grain that is mostly light and dark, alpha in waves.
Picture ground(int iWidth, int iHeight)
{
    Picture picture{iWidth, iHeight, {}};
    uint32_t uState = 12345;
    const auto noise = [&uState](int iRange)
    {
        uState = uState * 1664525u + 1013904223u;
        return static_cast<int>(uState >> 16) % (2 * iRange + 1) - iRange;
    };
    for (int i = 0; i < iWidth * iHeight; ++i)
    {
        const int iLight = noise(30) + static_cast<int>(25.0 * std::sin(i % iWidth * 0.2));
        const auto put = [&](int iValue)
        { picture.vecPixels.push_back(static_cast<std::byte>(std::clamp(iValue, 0, 255))); };
        put(110 + iLight + noise(4));
        put(125 + iLight + noise(4));
        put(70 + iLight / 2 + noise(4));
        put(128 + static_cast<int>(100.0 * std::sin(i * 0.01)));
    }
    return picture;
}

std::vector<std::byte> encoded(const Picture& picture, TextureResourceLayout eLayout)
{
    std::vector<std::byte> vecBlocks(blockBytes(picture.iWidth, picture.iHeight));
    EXPECT_TRUE(encodeBlocks(picture, eLayout, vecBlocks));
    return vecBlocks;
}

constexpr auto s_eBc3 = TextureResourceLayout::Bc3;
constexpr auto s_eBc5 = TextureResourceLayout::Bc5;

} // namespace

TEST(BlockEncoderTest, groundsStayCloseToTheirPictures)
{
    const Picture picture = ground(64, 64);
    const Picture colours = decode(encoded(picture, s_eBc3), 64, 64, s_eBc3);
    EXPECT_GT(peakRatio(picture, colours, 0, 3), 34.0);
    EXPECT_GT(peakRatio(picture, colours, 3, 4), 35.0);
    const Picture channels = decode(encoded(picture, s_eBc5), 64, 64, s_eBc5);
    EXPECT_GT(peakRatio(picture, channels, 0, 2), 38.0);
}

/// Blocks of two colours in any direction of the cube: only their rounding to 5 and 6 bits and the ends'
/// inset may show. An axis taken from brightness alone would lose those that run against each other.
TEST(BlockEncoderTest, twoColoursInABlockAreKeptApartInEveryDirection)
{
    for (uint32_t uCase = 0; uCase < 64; ++uCase)
    {
        Picture picture{4, 4, std::vector<std::byte>(64)};
        for (size_t u = 0; u < 16; ++u)
            for (size_t c = 0; c < 3; ++c)
                picture.vecPixels[u * 4 + c] =
                    std::byte{(uCase >> (c + (u / 2 % 2 ? 3 : 0)) & 1) ? uint8_t{224} : uint8_t{32}};
        const Picture shown = decode(encoded(picture, s_eBc3), 4, 4, s_eBc3);
        for (size_t u = 0; u < 64; ++u)
            EXPECT_NEAR(static_cast<int>(shown.vecPixels[u]), static_cast<int>(picture.vecPixels[u]), 18)
                << uCase;
    }
}

TEST(BlockEncoderTest, plainBlocksAndEndsOfChannelsAreExact)
{
    Picture picture{4, 4, std::vector<std::byte>(64)};
    for (const int iValue : {0, 1, 77, 254, 255})
    {
        std::ranges::fill(picture.vecPixels, static_cast<std::byte>(iValue));
        EXPECT_EQ(decode(encoded(picture, s_eBc3), 4, 4, s_eBc3).vecPixels[3], picture.vecPixels[3]);
        EXPECT_NEAR(static_cast<int>(decode(encoded(picture, s_eBc3), 4, 4, s_eBc3).vecPixels[0]), iValue, 4);
        EXPECT_EQ(decode(encoded(picture, s_eBc5), 4, 4, s_eBc5).vecPixels[1], picture.vecPixels[1]);
    }
    for (size_t u = 0; u < 64; ++u)
        picture.vecPixels[u] = static_cast<std::byte>(u / 4 * 17);
    const Picture shown = decode(encoded(picture, s_eBc5), 4, 4, s_eBc5);
    EXPECT_EQ(shown.vecPixels[0], std::byte{0});
    EXPECT_EQ(shown.vecPixels[60], std::byte{255});
    for (size_t u = 0; u < 64; u += 4)
        EXPECT_NEAR(static_cast<int>(shown.vecPixels[u]), static_cast<int>(picture.vecPixels[u]), 19);
}

/// The chain of an 8 x 2 picture: 8 x 2, 4 x 1, 2 x 1, 1 x 1, each at least a block.
TEST(BlockEncoderTest, mipsBelowABlockRepeatTheirLastPixels)
{
    Picture picture{8, 2, std::vector<std::byte>(64)};
    for (size_t u = 0; u < 64; ++u)
        picture.vecPixels[u] = u / 4 % 8 < 4 ? std::byte{40} : std::byte{200};
    EXPECT_EQ(blockChainBytes(8, 2, 4), 32u + 16 + 16 + 16);
    const std::vector<std::byte> vecChain = encodeBlockChain(picture, s_eBc5, 4, false);
    ASSERT_EQ(vecChain.size(), 80u);
    EXPECT_EQ(vecChain[0], std::byte{40});
    EXPECT_EQ(vecChain[1], std::byte{40}) << "nothing but the picture's own pixels in the padding";
    EXPECT_EQ(vecChain[16], std::byte{200});
    EXPECT_EQ(decodeChannel(&vecChain[32])[1], 40);
    EXPECT_EQ(decodeChannel(&vecChain[32])[2], 200);
    EXPECT_EQ(vecChain[64], std::byte{120}) << "the average of values";
    const std::vector<std::byte> vecColours = encodeBlockChain(picture, s_eBc3, 4, true);
    ASSERT_EQ(vecColours.size(), 80u);
    EXPECT_EQ(vecColours[64], std::byte{120}) << "alpha as it stands";
    EXPECT_NEAR(decodeColours(&vecColours[64 + 8])[0][1], 147, 3) << "the average of light";

    std::vector<std::byte> vecShort(31, std::byte{9});
    EXPECT_FALSE(encodeBlocks(picture, s_eBc3, vecShort));
    EXPECT_FALSE(encodeBlocks(picture, TextureResourceLayout::Bc1, vecShort));
    EXPECT_EQ(vecShort[0], std::byte{9});
    EXPECT_TRUE(encodeBlockChain({}, s_eBc3, 3, true).empty());
}
