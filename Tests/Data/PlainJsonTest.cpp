#include "KestrelCommon/Data/PlainJson.h"

#include <gtest/gtest.h>
#include <json/json.h>
#include <random>

namespace
{

bool parseFully(const std::string& sText, Json::Value& jRoot)
{
    Json::CharReaderBuilder builder;
    builder["collectComments"] = false;
    const std::unique_ptr<Json::CharReader> pReader(builder.newCharReader());
    std::string sError;
    return pReader->parse(sText.data(), sText.data() + sText.size(), &jRoot, &sError);
}

/// Whatever the short road takes, the long one takes to the same value.
bool agrees(const std::string& sText, bool& bTaken)
{
    Json::Value jShort;
    Json::Value jLong;
    bTaken = parsePlainJson(sText, jShort);
    return !bTaken || (parseFully(sText, jLong) && jShort == jLong && jShort.type() == jLong.type());
}

TEST(PlainJson, takesWhatDatabasesHoldAndLeavesTheRest)
{
    bool bTaken = false;
    for (const char* pText :
         {R"({"a": [1, -2, 0.25, -0, 123456789012345678], "b": {"": "", "c": "d\u00e4"}, "a": true})", "[]",
          " {} \n", "[null, false, [[[]]]]", "7", "\"text\"", "[0.1, 3.14159265358979, 16777217.5]"})
    {
        EXPECT_TRUE(agrees(pText, bTaken)) << pText;
        EXPECT_EQ(bTaken, std::string_view(pText).find('\\') == std::string_view::npos) << pText;
    }
    for (const char* pText : {"", "[1,]", "{\"a\" 1}", "// c\n{}", "\"open", "[1e5]", "1.", "-", "truth",
                              "{} {}", "\xEF\xBB\xBF{}", "12345678901234567890", "[1 2]", "nul"})
    {
        EXPECT_TRUE(agrees(pText, bTaken));
        EXPECT_FALSE(bTaken) << pText;
    }
    EXPECT_TRUE(agrees(std::string(5000, '['), bTaken));
}

TEST(PlainJson, agreesOnBrokenTexts)
{
    const std::string sWhole =
        R"({"list": [{"n": "x", "f": -1.5, "b": true, "u": null}, [10, 200.125], "y"]})";
    constexpr std::string_view s_sBytes = "{}[]\",:0159.-eE \\tfn/";
    std::mt19937 random(11);
    size_t uTaken = 0;
    for (int i = 0; i < 20000; ++i)
    {
        std::string sText = sWhole;
        for (uint32_t uChanges = 1 + random() % 3; uChanges > 0; --uChanges)
        {
            const size_t uPlace = random() % sText.size();
            if (random() % 3 == 0)
                sText.erase(uPlace, 1 + random() % 4);
            else
                sText[uPlace] = s_sBytes[random() % s_sBytes.size()];
        }
        bool bTaken = false;
        ASSERT_TRUE(agrees(sText, bTaken)) << sText;
        uTaken += bTaken;
    }
    EXPECT_GT(uTaken, 20u) << "enough of them are still sound";
}

} // namespace
