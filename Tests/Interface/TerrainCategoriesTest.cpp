#include "TileEditorCommon/Interface/TerrainCategories.h"

#include <gtest/gtest.h>

namespace tilebuilder
{
namespace
{

TEST(TerrainCategories, everyListHasItsEntriesWithTheDigitsInTheirOrder)
{
    const auto vecCliffs = terrainCategoryLabels(1);
    const auto vecRavines = terrainCategoryLabels(2);
    const auto vecLakes = terrainCategoryLabels(3);
    ASSERT_EQ(vecCliffs.size(), 70u);
    ASSERT_EQ(vecRavines.size(), 18u);
    ASSERT_EQ(vecLakes.size(), 6u);
    EXPECT_EQ(vecCliffs[4], "Road(0000) Cliff(0011) [4]");
    EXPECT_EQ(vecCliffs[69], "Road(0101) Cliff(1011) [69]");
    EXPECT_EQ(vecRavines[5], "Ravine(0021) [5]");
    EXPECT_EQ(vecLakes[3], "Lake(0101) [3]");
    EXPECT_TRUE(terrainCategoryLabels(0).empty());
    EXPECT_TRUE(terrainCategoryLabels(4).empty());
}

} // namespace
} // namespace tilebuilder
