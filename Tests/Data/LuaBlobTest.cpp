// The direct writers and readers: golden bytes of every code, and reads that the blob cuts short.

#include "KestrelCommon/Data/LuaBlob.h"
#include "Tests/Data/Bytes.h"
#include "Tests/Support/LogCapture.h"

#include <gtest/gtest.h>

namespace
{

TEST(LuaBlob, everyCodeHasItsBytes)
{
    struct Case
    {
        const char* pName;
        void (*fnWrite)(LuaBlobWriter& out);
        const char* pHex;
    };
    const Case arrCases[] = {
        {"header", [](LuaBlobWriter& out) { out.header(); }, "4c5541 00000001"},
        {"nil", [](LuaBlobWriter& out) { out.nil(); }, "01"},
        {"true", [](LuaBlobWriter& out) { out.boolean(true); }, "02 80"},
        {"false", [](LuaBlobWriter& out) { out.boolean(false); }, "02 00"},
        {"number", [](LuaBlobWriter& out) { out.number(1.0f); }, "03 3f800000"},
        {"string", [](LuaBlobWriter& out) { out.string("ab"); }, "04 00000002 6162"},
        {"int32", [](LuaBlobWriter& out) { out.int32(-2); }, "06 fffffffe"},
        {"int16", [](LuaBlobWriter& out) { out.int16(0x1234); }, "07 1234"},
        {"int8", [](LuaBlobWriter& out) { out.int8(-1); }, "08 ff"},
        {"json", [](LuaBlobWriter& out) { out.json("{}"); }, "09 00000002 7b7d"},
        {"color",
         [](LuaBlobWriter& out) {
             out.color({1.0f, 0.0f, 0.0f, 1.0f});
         },
         "64 00002715 3f800000 00000000 00000000 3f800000"},
        {"empty table", [](LuaBlobWriter& out) { out.table(0); }, "05 00000000 00"},
        {"array from 5", [](LuaBlobWriter& out) { out.array(1, 5), out.int8(1); },
         "05 00000001 80000002 84 0080"},
        {"code behind a bit", [](LuaBlobWriter& out) { out.boolean(true), out.int8(-1); }, "02 84 7f80"},
        {"an empty text aligns too", [](LuaBlobWriter& out) { out.boolean(true), out.string(""), out.nil(); },
         "02 82 00000000 00 01"},
    };
    for (const Case& golden : arrCases)
    {
        BitStream stream;
        LuaBlobWriter out(stream);
        golden.fnWrite(out);
        EXPECT_EQ(hexOf(stream), withoutBlanks(golden.pHex)) << golden.pName;
    }
}

/// What is written at any bit position comes back, and is passed over as a whole.
TEST(LuaBlob, readsBackWhatItWrites)
{
    LogCapture log;
    for (int iShift = 0; iShift < 8; ++iShift)
    {
        BitStream stream;
        LuaBlobWriter out(stream);
        for (int i = 0; i < iShift; ++i)
            stream.writeBool(true);
        const auto writeAll = [&out]
        {
            out.table(2);
            out.string("a key");
            out.array(2, -3);
            out.boolean(true);
            out.int16(-300);
            out.string("");
            out.array(3);
            out.int32(-70000);
            out.number(-0.1f);
            out.color({0.1f, 0.2f, 0.3f, 0.4f});
        };
        writeAll();
        writeAll();
        out.int8(-9);
        bool bBit = false;
        for (int i = 0; i < iShift; ++i)
            ASSERT_TRUE(stream.readBool(bBit));
        LuaBlobReader in(stream);
        in.skip();
        const LuaTableHeader table = in.table();
        EXPECT_EQ(table.uCount, 2u);
        EXPECT_FALSE(table.bArray);
        EXPECT_EQ(in.string(), "a key");
        const LuaTableHeader array = in.table();
        EXPECT_TRUE(array.bArray);
        EXPECT_EQ(array.iStartIndex, -3);
        EXPECT_TRUE(in.boolean());
        EXPECT_EQ(in.int16(), -300);
        EXPECT_EQ(in.string(), "");
        EXPECT_EQ(in.table().uCount, 3u);
        EXPECT_EQ(in.int32(), -70000);
        EXPECT_EQ(in.number(), -0.1f);
        EXPECT_EQ(in.takeType(), LuaSaveDataType::Userdata);
        EXPECT_EQ(in.uint32Body(), 10005u);
        EXPECT_EQ(in.colorBody()[3], 0.4f);
        EXPECT_EQ(in.int8(), -9);
        EXPECT_FALSE(in.isCut());
        EXPECT_EQ(stream.bitsLeft(), 0u);
    }
    EXPECT_EQ(log.lines().size(), 0u) << log.dump();
}

TEST(LuaBlob, lengthsAndCountsThatCanNotBeEndTheRead)
{
    const std::pair<const char*, bool> arrCases[] = {
        {"04 7fffffff 616263", false},          // a text of 2 GB
        {"05 40000000 80000000 80", true},      // a table of a billion items
        {"05 00000003 80000000 80 0404", true}, // three items in two bytes
    };
    for (const auto& [pHex, bTable] : arrCases)
    {
        const std::vector<uint8_t> vecBytes = bytesOfHex(pHex);
        BitStream stream(vecBytes.data(), vecBytes.size(), false);
        LuaBlobReader in(stream);
        if (bTable)
        {
            EXPECT_EQ(in.table().uCount, 0u) << pHex;
        }
        else
        {
            EXPECT_EQ(in.string(), "") << pHex;
        }
        EXPECT_TRUE(in.isCut()) << pHex;
        EXPECT_EQ(in.uint32Body(), 0u) << "what follows reads as zero";
    }
}

TEST(LuaBlob, aWrongTypeIsAnAssertionAndTheReadGoesOn)
{
    LogCapture log;
    BitStream stream;
    LuaBlobWriter out(stream);
    out.number(1.0f);
    out.int16(5);
    out.string("x");
    LuaBlobReader in(stream);
    EXPECT_EQ(in.int32(), 0x3f800000);
    EXPECT_TRUE(log.has("ASSERT: 'type == LuaSaveDataType::Int32'"));
    EXPECT_EQ(in.int16(), 5);
    static_cast<void>(in.table());
    EXPECT_TRUE(log.has("ASSERT: 'type == LuaSaveDataType::Table'"));
}

} // namespace
