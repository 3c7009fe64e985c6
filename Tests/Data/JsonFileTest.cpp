#include "KestrelCommon/Data/JsonFile.h"

#include <gtest/gtest.h>
#include <json/json.h>

namespace
{

TEST(JsonFile, nestingBeyondTheLimitFailsInsteadOfExhaustingTheStack)
{
    std::string sError;
    EXPECT_FALSE(parseJson(std::string(100000, '['), sError));
    EXPECT_FALSE(sError.empty());
}

TEST(JsonFile, membersOfAnotherTypeGiveTheDefault)
{
    std::string sError;
    const auto jRoot = parseJson(R"({"a": [1], "b": "text", "c": 3})", sError);
    ASSERT_TRUE(jRoot) << sError;
    EXPECT_EQ(jsonText(*jRoot, "c", "none"), "none");
    EXPECT_EQ(jsonNumber(*jRoot, "b", 7.0), 7.0);
    EXPECT_EQ(jsonNumber(jsonMember(*jRoot, "a"), "b", 7.0), 7.0) << "an array has no members";
    EXPECT_TRUE(jsonBool(*jRoot, "missing", true));
}

} // namespace
