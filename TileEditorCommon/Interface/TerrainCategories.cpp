#include "TileEditorCommon/Interface/TerrainCategories.h"

namespace tilebuilder
{

namespace
{

// The world generator's own rows. A row of eight digits tells the roads (the last four) and the
// cliffs (the first four, backwards); a row of four tells its one feature backwards.
constexpr std::string_view s_arrCliffsAndRoads[] = {
    "00000000", "10000000", "20000000", "30000000", "11000000", "21000000", "31000000", "12000000",
    "22000000", "32000000", "13000000", "23000000", "33000000", "10100000", "20100000", "30100000",
    "11100000", "21100000", "31100000", "12100000", "22100000", "32100000", "13100000", "23100000",
    "33100000", "20200000", "30200000", "11200000", "21200000", "31200000", "12200000", "22200000",
    "32200000", "13200000", "23200000", "33200000", "30300000", "11300000", "21300000", "31300000",
    "12300000", "22300000", "32300000", "13300000", "23300000", "33300000", "00000011", "10000011",
    "01000011", "11000011", "00100011", "10100011", "01100011", "11100011", "00010011", "10010011",
    "01010011", "11010011", "00110011", "10110011", "01110011", "00000101", "10000101", "01000101",
    "11000101", "10100101", "01100101", "11100101", "01010101", "11010101",
};
constexpr std::string_view s_arrRavines[] = {
    "0000", "1000", "2000", "1100", "2100", "1200", "2200", "1010", "2010",
    "1110", "2110", "1210", "2210", "2020", "1120", "2120", "1220", "2220",
};
constexpr std::string_view s_arrLakes[] = {
    "0000", "1000", "1100", "1010", "1110", "1111",
};

std::span<const std::string_view> rowsOf(uint32_t uCategory)
{
    switch (uCategory)
    {
    case 1:
        return s_arrCliffsAndRoads;
    case 2:
        return s_arrRavines;
    case 3:
        return s_arrLakes;
    default:
        return {};
    }
}

std::string backwards(std::string_view sDigits)
{
    return {sDigits.rbegin(), sDigits.rend()};
}

std::string labelOf(uint32_t uCategory, std::string_view sRow)
{
    switch (uCategory)
    {
    case 1:
        return "Road(" + std::string(sRow.substr(4)) + ") Cliff(" + backwards(sRow.substr(0, 4)) + ")";
    case 2:
        return "Ravine(" + backwards(sRow) + ")";
    default:
        return "Lake(" + backwards(sRow) + ")";
    }
}

} // namespace

std::vector<std::string> terrainCategoryLabels(uint32_t uCategory)
{
    std::vector<std::string> vecLabels;
    for (const std::string_view sRow : rowsOf(uCategory))
        vecLabels.push_back(labelOf(uCategory, sRow) + " [" + std::to_string(vecLabels.size()) + "]");
    return vecLabels;
}

} // namespace tilebuilder
