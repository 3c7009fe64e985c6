#include "KestrelCommon/Core/Uuid.h"

#include <gtest/gtest.h>

namespace
{

TEST(Uuid, readsAndWritesItsTextForm)
{
    const auto uuid = Uuid::parse("0123ABCD-4567-49ef-8123-456789abcdef");
    ASSERT_TRUE(uuid);
    EXPECT_EQ(uuid->bytes[1], 0x23);
    EXPECT_EQ(uuid->text(), "0123abcd-4567-49ef-8123-456789abcdef");
}

TEST(Uuid, refusesAnyOtherForm)
{
    for (const char* pText :
         {"", "0123abcd-4567-49ef-8123-456789abcde", "0123abcd-4567-49ef-8123-456789abcdef0",
          "0123abcd4567-49ef-8123-456789abcdef--", "0123abcd-4567-49ef-8123-456789abcdeg",
          "{123abcd-4567-49ef-8123-456789abcdef", "0123abcd-4567-49ef-81234-56789abcdef"})
        EXPECT_FALSE(Uuid::parse(pText)) << pText;
}

TEST(Uuid, newOnesAreVersionFourAndDiffer)
{
    const Uuid first = Uuid::random();
    EXPECT_EQ(first.bytes[6] >> 4, 4);
    EXPECT_EQ(first.bytes[8] >> 6, 2);
    EXPECT_NE(first, Uuid::random());
}

} // namespace
