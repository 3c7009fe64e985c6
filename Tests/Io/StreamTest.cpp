#include "KestrelCommon/Core/Uuid.h"
#include "KestrelCommon/Io/BitStream.h"
#include "KestrelCommon/Io/ByteCursor.h"
#include "KestrelCommon/Io/Lz4Section.h"
#include "Tests/Support/LogCapture.h"

#include <gtest/gtest.h>
#include <lz4.h>
#include <lz4hc.h>
#include <vector>

namespace
{

std::vector<int> bytesOf(std::span<const std::byte> spanBytes)
{
    std::vector<int> vecResult;
    for (const std::byte b : spanBytes)
        vecResult.push_back(static_cast<int>(b));
    return vecResult;
}

TEST(ByteStream, growsToThePowerAboveAndIsPatched)
{
    ByteStream stream(4096);
    stream.reserve(4095);
    EXPECT_EQ(stream.capacity(), 4096u);
    stream.reserve(4096);
    EXPECT_EQ(stream.capacity(), 8192u);
    stream.write(0x01020304u);
    stream.writeZeros(2);
    stream.setPosition(1);
    stream.write(uint8_t{9});
    stream.setPosition(6);
    EXPECT_EQ(bytesOf(stream.bytes()), (std::vector{4, 9, 2, 1, 0, 0}));
    const OwnedBytes pBytes = stream.take();
    EXPECT_EQ(stream.size(), 0u);
    EXPECT_EQ(pBytes[1], std::byte{9});
}

TEST(ByteCursor, refusesToPassTheEndAndMovesNothing)
{
    const std::vector<std::byte> vecBytes(6, std::byte{1});
    ByteCursor cursor(vecBytes);
    uint32_t uValue = 7;
    ASSERT_TRUE(cursor.read(uValue));
    EXPECT_EQ(uValue, 0x01010101u);
    uValue = 7;
    EXPECT_FALSE(cursor.read(uValue));
    EXPECT_EQ(uValue, 7u);
    EXPECT_TRUE(cursor.view(3).empty());
    EXPECT_FALSE(cursor.skip(3));
    EXPECT_EQ(cursor.position(), 4u);
    EXPECT_EQ(cursor.view(2).size(), 2u);
}

TEST(BitStream, valuesStandInNetworkOrderAndBitsFromTheTop)
{
    BitStream stream;
    stream.write(0x01020304u);
    const uint8_t arrBits[] = {0xAB, 0x0C};
    stream.writeBits(arrBits, 12);
    EXPECT_EQ(bytesOf(stream.bytes()), (std::vector{1, 2, 3, 4, 0xAB, 0xC0}));
    uint32_t uValue = 0;
    uint8_t arrBack[2] = {};
    ASSERT_TRUE(stream.read(uValue));
    ASSERT_TRUE(stream.readBits(arrBack, 12));
    EXPECT_EQ(uValue, 0x01020304u);
    EXPECT_EQ(arrBack[0], 0xAB);
    EXPECT_EQ(arrBack[1], 0x0C);
}

/// Values of every kind behind 0 to 7 stray bits.
TEST(BitStream, everythingComesBackAtAnyBitPosition)
{
    for (uint32_t uShift = 0; uShift < 8; ++uShift)
    {
        BitStream stream;
        for (uint32_t i = 0; i < uShift; ++i)
            stream.writeBool(i % 2);
        const Uuid uuid = Uuid::random();
        std::vector<uint8_t> vecLong(700);
        for (size_t i = 0; i < vecLong.size(); ++i)
            vecLong[i] = static_cast<uint8_t>(i * 7);
        stream.write(uint16_t{0xBEEF});
        stream.write(-5);
        stream.write(1.5f);
        stream.write(uuid);
        stream.writeBytes(vecLong.data(), 700); // leaves the inline storage
        const uint8_t uOdd = 5;
        stream.writeBits(&uOdd, 3);
        bool bBit = false;
        for (uint32_t i = 0; i < uShift; ++i)
        {
            ASSERT_TRUE(stream.readBool(bBit));
            EXPECT_EQ(bBit, i % 2 == 1);
        }
        uint16_t uShort = 0;
        int32_t iInt = 0;
        float fFloat = 0;
        Uuid uuidBack;
        std::vector<uint8_t> vecBack(700);
        uint8_t uOddBack = 0;
        ASSERT_TRUE(stream.read(uShort) && stream.read(iInt) && stream.read(fFloat) &&
                    stream.read(uuidBack) && stream.readBytes(vecBack.data(), 700) &&
                    stream.readBits(&uOddBack, 3));
        EXPECT_EQ(uShort, 0xBEEF);
        EXPECT_EQ(iInt, -5);
        EXPECT_EQ(fFloat, 1.5f);
        EXPECT_EQ(uuidBack, uuid);
        EXPECT_EQ(vecBack, vecLong);
        EXPECT_EQ(uOddBack, 5);
        EXPECT_FALSE(stream.readBool(bBit));
        EXPECT_EQ(stream.readOffset(), stream.bitsUsed());
    }
}

TEST(BitStream, aForeignBlockIsReadToItsEndAndNeverWritten)
{
    LogCapture log;
    const uint8_t arrBytes[] = {1, 2, 3};
    BitStream stream(arrBytes, 3, false);
    uint16_t uValue = 0;
    ASSERT_TRUE(stream.read(uValue));
    EXPECT_FALSE(stream.read(uValue));
    EXPECT_EQ(stream.readOffset(), 16u);
    stream.write(uint8_t{9});
    EXPECT_TRUE(log.has("ASSERT: 'm_bOwnsData'"));
    EXPECT_EQ(stream.bitsUsed(), 24u);

    BitStream copy(arrBytes, 3, true);
    copy.write(uint8_t{9});
    EXPECT_EQ(bytesOf(copy.bytes()), (std::vector{1, 2, 3, 9}));
}

TEST(BitStream, alignedReadsMoveUpToTheNextByte)
{
    LogCapture log;
    const uint8_t arrBytes[] = {0, 2, 3};
    BitStream stream(arrBytes, 3, true);
    uint8_t uByte = 0;
    bool bBit = false;
    ASSERT_TRUE(stream.read(uByte));
    ASSERT_TRUE(stream.readAlignedBytes(&uByte, 1)); // at 8 already
    EXPECT_EQ(uByte, 2);
    BitStream shifted(arrBytes, 3, true);
    ASSERT_TRUE(shifted.read(uByte) && shifted.readBool(bBit));
    ASSERT_TRUE(shifted.readAlignedBytes(&uByte, 1)); // from 9 to 16
    EXPECT_EQ(uByte, 3);
    EXPECT_FALSE(shifted.readAlignedBytes(&uByte, 1));
    EXPECT_FALSE(shifted.readAlignedBytes(&uByte, 0));
    EXPECT_TRUE(log.has("ASSERT: 'numberOfBytesToRead > 0'"));
}

TEST(BitStream, growsByDoublingAndLaterByAStep)
{
    BitStream stream;
    std::vector<uint8_t> vecBytes(0x30000);
    stream.writeBytes(vecBytes.data(), 256);
    EXPECT_EQ(stream.bitsAllocated(), 2048u);
    stream.writeBytes(vecBytes.data(), 1);
    EXPECT_EQ(stream.bitsAllocated(), 2u * 2056);
    stream.writeBytes(vecBytes.data(), 0x30000);
    EXPECT_EQ(stream.bitsAllocated(), 2056u + 0x180000 + 0x100000);
}

TEST(BitStream, wordsAreTheSameBitsAsTheSlowWay)
{
    for (uint32_t uShift = 0; uShift < 8; ++uShift)
        for (uint32_t uBits = 1; uBits <= 56; ++uBits)
        {
            const uint64_t uValue = 0x9E3779B97F4A7C15u >> (64 - uBits);
            BitStream quick;
            BitStream slow;
            for (BitStream* pStream : {&quick, &slow})
                for (uint32_t i = 0; i < uShift; ++i)
                    pStream->writeBool(true);
            quick.writeWord(uValue, uBits);
            for (uint32_t i = 0; i < uBits; ++i)
                slow.writeBool(uValue >> (uBits - 1 - i) & 1);
            ASSERT_EQ(bytesOf(quick.bytes()), bytesOf(slow.bytes())) << uShift << " " << uBits;
            uint64_t uBack = 0;
            ASSERT_TRUE(uShift == 0 || quick.readWord(uBack, uShift));
            ASSERT_TRUE(quick.readWord(uBack, uBits));
            EXPECT_EQ(uBack, uValue);
            EXPECT_FALSE(quick.readWord(uBack, 1));
            quick.truncate(uShift);
            quick.writeBool(true);
            EXPECT_EQ(quick.bitsUsed(), uShift + 1);
        }
}

/// Bytes that repeat and bytes that don't, of all lengths that sections have.
TEST(Lz4Section, givesTheBytesOfLz4sOwnCallsAndTakesThemBack)
{
    ResizeableBuffer scratch;
    uint32_t uSeed = 1;
    for (const size_t uSize :
         {size_t{1}, size_t{104}, size_t{848}, size_t{16385}, size_t{42512}, size_t{300'000}})
        for (const uint32_t uMask : {0u, 3u, 255u})
        {
            std::vector<std::byte> vecRaw(uSize);
            for (std::byte& b : vecRaw)
                b = static_cast<std::byte>((uSeed = uSeed * 1664525 + 1013904223) >> 24 & uMask);
            const auto* pRaw = reinterpret_cast<const char*>(vecRaw.data());
            std::vector<char> vecWanted(lz4Bound(static_cast<uint32_t>(uSize)));
            for (const Lz4Quality eQuality : {Lz4Quality::Fast, Lz4Quality::Final})
            {
                const int iWanted =
                    eQuality == Lz4Quality::Fast
                        ? LZ4_compress_default(pRaw, vecWanted.data(), static_cast<int>(uSize),
                                               static_cast<int>(vecWanted.size()))
                        : LZ4_compress_HC(pRaw, vecWanted.data(), static_cast<int>(uSize),
                                          static_cast<int>(vecWanted.size()), 9);
                const auto spanPacked = lz4Compress(vecRaw, eQuality, scratch);
                ASSERT_EQ(spanPacked.size(), static_cast<size_t>(iWanted));
                EXPECT_EQ(std::memcmp(spanPacked.data(), vecWanted.data(), spanPacked.size()), 0);
                std::vector<std::byte> vecBack(uSize);
                EXPECT_TRUE(lz4Decompress(spanPacked, vecBack));
                EXPECT_EQ(vecBack, vecRaw);
                vecBack.resize(uSize + 1);
                EXPECT_FALSE(lz4Decompress(spanPacked, vecBack));
                EXPECT_FALSE(lz4Decompress(spanPacked, std::span(vecBack).first(uSize - 1)));
                EXPECT_FALSE(
                    lz4Decompress(spanPacked.first(spanPacked.size() - 1), std::span(vecBack).first(uSize)));
            }
        }
    EXPECT_EQ(lz4Bound(255), 255u + 1 + 16);
    EXPECT_EQ(lz4Bound(0x7E000001), 0u);
}

} // namespace
