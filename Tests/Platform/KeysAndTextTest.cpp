#include "KestrelCommon/Platform/Utf8.h"
#include "KestrelCommon/Platform/VirtualKeys.h"

#include <gtest/gtest.h>

#include <set>

namespace
{

// Two keys with one scan code would swallow each other's events; a code above 255 would get lost.
TEST(VirtualKeysTest, everyKeyHasItsOwnScanCodeAndAName)
{
    std::set<int> setScanCodes;
    for (int iUsage = 0; iUsage < 512; ++iUsage)
    {
        const KeyCodes codes = keyCodes(iUsage);
        if (codes.uVirtualKey == KeyNone)
            continue;
        EXPECT_FALSE(keyName(codes.uVirtualKey).empty()) << iUsage;
        EXPECT_LT(codes.uVirtualKey, 256u) << iUsage;
        EXPECT_GT(codes.iScanCode, 0) << iUsage;
        EXPECT_LT(codes.iScanCode, 256) << iUsage;
        if (iUsage != 50) // the key left of Enter stands for the one above it
            EXPECT_TRUE(setScanCodes.insert(codes.iScanCode).second) << iUsage;
    }
    EXPECT_GT(setScanCodes.size(), 100u);
}

TEST(VirtualKeysTest, numbersAreThoseOfTheFiles)
{
    EXPECT_EQ(keyCodes(22).uVirtualKey, 0x53u); // S
    EXPECT_EQ(keyCodes(22).iScanCode, 31);
    EXPECT_EQ(keyCodes(30).uVirtualKey, 0x31u);  // 1
    EXPECT_EQ(keyCodes(229).uVirtualKey, 0x10u); // right Shift
    EXPECT_EQ(keyCodes(82).iScanCode, 200);      // up
    EXPECT_EQ(scanCodeOf(KeyShift), 42);
    EXPECT_EQ(scanCodeOf(0xFF), 0);
    EXPECT_EQ(keyName(KeyDelete), "delete");
}

TEST(Utf8Test, malformedBytesBecomeReplacementsAndNothingIsLost)
{
    using Points = std::vector<uint32_t>;
    EXPECT_EQ(codePoints("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x8C\xB1"), (Points{'a', 0xE4, 0x20AC, 0x1F331}));
    EXPECT_EQ(codePoints("\xC3"), Points{0xFFFD});                                 // cut short
    EXPECT_EQ(codePoints("\xC0\xAF"), (Points{0xFFFD, 0xFFFD}));                   // overlong
    EXPECT_EQ(codePoints("\xED\xA0\x80z"), (Points{0xFFFD, 0xFFFD, 0xFFFD, 'z'})); // surrogate
    EXPECT_EQ(codePoints("\xF5\x80"), (Points{0xFFFD, 0xFFFD}));
}

} // namespace
