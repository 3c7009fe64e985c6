#include "MyGuiCommon/GuiPicture.h"
#include "MyGuiCommon/GuiResolution.h"
#include "MyGuiCommon/GuiText.h"
#include "MyGuiCommon/GuiXmlScale.h"
#include "MyGuiCommon/HyperText.h"
#include "MyGuiCommon/MenuEntry.h"
#include "MyGuiCommon/NumberBoxModel.h"
#include "MyGuiCommon/NumberText.h"
#include "Tests/Support/LogCapture.h"

#include <gtest/gtest.h>

namespace
{

const GuiResolutionTable s_mapTable{
    {1000, {1.0f}}, {1001, {1.0f}}, {1002, {1.0f}}, {1280, {1.0f}}, {3840, {2.0f}}};

struct ResolutionCase
{
    int iWidth;
    int iHeight;
    int iChosen;
};

struct GuiResolutionTest : testing::TestWithParam<ResolutionCase>
{
};

TEST_P(GuiResolutionTest, takesTheLastWidthThatFitsTheBox)
{
    const auto [iWidth, iHeight, iChosen] = GetParam();
    EXPECT_EQ(chooseGuiResolution(s_mapTable, iWidth, iHeight).iWidth, iChosen);
}

INSTANTIATE_TEST_SUITE_P(Sizes, GuiResolutionTest,
                         testing::Values(ResolutionCase{1000, 1000, 1001}, // 563 lines high, so 1001 wide
                                         ResolutionCase{1920, 1080, 1280}, ResolutionCase{3840, 2160, 3840},
                                         ResolutionCase{5000, 2160, 3840}, // wider than 16:9
                                         ResolutionCase{5000, 720, 1280},  // height decides
                                         ResolutionCase{320, 240, 1000})); // smaller than all

TEST(GuiResolutionTest2, heightRoundsAndTheBoxIsCentred)
{
    const GuiResolution chosen = chooseGuiResolution(s_mapTable, 1001, 800);
    EXPECT_EQ(chosen.iHeight, 563);
    EXPECT_EQ(chosen.iOffsetX, 0);
    EXPECT_EQ(chosen.iOffsetY, 118);
    EXPECT_EQ(chooseGuiResolution(s_mapTable, 899, 600).iOffsetX, -50); // towards zero
}

TEST(GuiResolutionTest2, brokenTablesAreRefusedWithOneLine)
{
    for (const char* pJson : {"", "[]", "{\"resolutionList\": []}", "{\"resolutionList\": [3]}",
                              "{\"resolutionList\": {\"w\": 4}}"})
    {
        LogCapture log;
        EXPECT_FALSE(parseGuiResolutions(pJson)) << pJson;
        EXPECT_EQ(log.errors(), 1u) << pJson;
    }
    LogCapture log;
    const auto table = parseGuiResolutions(
        R"({"resolutionList": [{}, {"w": 640, "scale": 99}, {"w": "x"}, {"w": 3840, "scale": 2}]})");
    ASSERT_TRUE(table);
    EXPECT_EQ(table->size(), 3u);
    EXPECT_EQ(table->at(640).fScale, 1.0f);
    EXPECT_EQ(table->at(3840).fScale, 2.0f);
    EXPECT_TRUE(table->contains(1280));
}

TEST(GuiXmlScaleTest, screenLengthsGrowAndPlacesInPicturesStay)
{
    const std::string sOut = scaleGuiXml(
        R"(<MyGUI type="Resource"><Resource type="ResourceSkin" size="10 20"><Property key="MinSize" value="7 9"/>)"
        R"(<Property key="Alpha" value="0.5"/><BasisSkin offset="1 2 3 4"><State offset="8 8 8 8" border="6"/></BasisSkin>)"
        R"(</Resource><Resource type="ResourceTrueTypeFont"><Property key="Size" value="13"/></Resource></MyGUI>)",
        2.0f);
    for (const char* pPart : {"size=\"20 40\"", "value=\"14 18\"", "value=\"0.5\"", "offset=\"2 4 6 8\"",
                              "offset=\"8 8 8 8\"", "border=\"6\"", "value=\"26"})
        EXPECT_NE(sOut.find(pPart), std::string::npos) << pPart << " in " << sOut;
}

TEST(NumberBoxModelTest, sliderArrowsAndTypingHaveTheirOwnRanges)
{
    const NumberRange range{0, 100, 0, 10000};
    EXPECT_EQ(NumberBoxModel::fromFraction(range, 0.256f), 26);
    EXPECT_EQ(NumberBoxModel::fromFraction(range, 2.0f), 100);
    EXPECT_EQ(NumberBoxModel::fraction(range, 5000), 1.0f);
    EXPECT_EQ(NumberBoxModel::step(range, 100, 1), 100);
    EXPECT_EQ(NumberBoxModel::step(range, 0, -1), 0);
    EXPECT_EQ(NumberBoxModel::step(range, 5000, 1), 5000);
    EXPECT_EQ(NumberBoxModel::step(range, 5000, -1), 4999);
}

TEST(NumberBoxModelTest, typedTextIsClampedOrRefused)
{
    const NumberRange range{0, 100, 0, 10000};
    EXPECT_EQ(NumberBoxModel::parse(range, " 250 "), 250);
    EXPECT_EQ(NumberBoxModel::parse(range, "12.6"), 13);
    EXPECT_EQ(NumberBoxModel::parse(range, "-5"), 0);
    EXPECT_EQ(NumberBoxModel::parse(range, "1e9"), 10000);
    for (const char* pText : {"", "abc", "12x", "nan", "inf", "1,5"})
        EXPECT_FALSE(NumberBoxModel::parse(range, pText)) << pText;
}

TEST(GuiTextTest, cutsBetweenCharactersAndOnlyWhenNeeded)
{
    const auto bytes = [](std::string_view sText) { return static_cast<int>(sText.size()); };
    EXPECT_EQ(GuiText::shorten("Valley", 6, bytes), "Valley");
    EXPECT_EQ(GuiText::shorten("Valleys", 6, bytes), "Val\xE2\x80\xA6");
    EXPECT_EQ(GuiText::shorten("V\xC3\xA4lley", 6, bytes), "V\xC3\xA4\xE2\x80\xA6");
    EXPECT_EQ(GuiText::shorten("V\xC3\xA4lley", 5, bytes), "V\xE2\x80\xA6");
    EXPECT_EQ(GuiText::shorten("Valley", 1, bytes), "\xE2\x80\xA6");
}

TEST(GuiPictureTest, clearPixelsTakeTheColourBesideThemAndStayClear)
{
    resource::Picture picture{3, 1, {}};
    for (const int i : {200, 100, 50, 255, 0, 0, 0, 0, 0, 0, 0, 0})
        picture.vecPixels.push_back(static_cast<std::byte>(i));
    bleedColours(picture);
    for (const size_t uPixel : {1u, 2u})
    {
        EXPECT_EQ(picture.vecPixels[uPixel * 4], std::byte{200});
        EXPECT_EQ(picture.vecPixels[uPixel * 4 + 2], std::byte{50});
        EXPECT_EQ(picture.vecPixels[uPixel * 4 + 3], std::byte{0});
    }
    LogCapture log;
    EXPECT_FALSE(loadGuiPicture("/nowhere.png"));
    EXPECT_EQ(log.errors(), 1u);
}

TEST(HyperTextTest, paragraphsEmphasisAndEntities)
{
    using Kind = HyperTextBlock::Kind;
    using Blocks = std::vector<HyperTextBlock>;
    EXPECT_EQ(parseHyperText("<h1>A &amp; B</h1>\n<p>Press  <b>Ctrl</b>\n now #1</p><li>x</li>"),
              (Blocks{{Kind::Title, "A & B"},
                      {Kind::Text, "Press #FFD044Ctrl#E6E8EB now ##1"},
                      {Kind::Item, "x"}}));
    EXPECT_EQ(parseHyperText("loose<h2>head"), (Blocks{{Kind::Text, "loose"}, {Kind::Header, "head"}}));
    EXPECT_EQ(parseHyperText("<p> </p><small></small><i>a</i> < b &x; <unended"),
              (Blocks{{Kind::Text, "a < b &x; <unended"}}));
    EXPECT_TRUE(parseHyperText("").empty());
}

TEST(MenuEntryTest, listsThatLookDifferentHashDifferent)
{
    using List = std::vector<MenuEntry>;
    const List base{{.sLabel = "ab", .sId = "c"}};
    List handler = base;
    handler[0].fnAction = [] {};
    EXPECT_EQ(hashMenu(base), hashMenu(handler));
    EXPECT_NE(hashMenu(base), hashMenu(List{{.sLabel = "a", .sId = "bc"}}));
    EXPECT_NE(hashMenu(base), hashMenu(List{{.sLabel = "ab", .sId = "c", .bEnabled = false}}));
    EXPECT_NE(hashMenu(List{{.vecChildren = base}}), hashMenu(List{{}, base[0]}));
    EXPECT_EQ(escapeCaption("a#b"), "a##b");
}

TEST(NumberTextTest, numbersReadAsShortAsTheyAre)
{
    EXPECT_EQ(NumberText::format(1.5, 3), "1.5");
    EXPECT_EQ(NumberText::format(-0.12549, 3), "-0.125");
    EXPECT_EQ(NumberText::format(1000.0, 3), "1000");
    EXPECT_EQ(NumberText::format(-0.0001, 3), "0");
    EXPECT_EQ(NumberText::format(0.1f, 6), "0.1");
    EXPECT_EQ(NumberText::format(12.5, 0), "12");
    EXPECT_EQ(NumberText::format(-1.7e308, 3).size(), 310u);
}

TEST(NumberTextTest, onlyWholeNumbersOfThisWorldAreTaken)
{
    EXPECT_EQ(NumberText::parse(" +1,5 "), 1.5);
    EXPECT_EQ(NumberText::parse("-3e2"), -300.0);
    EXPECT_EQ(NumberText::parse(".5"), 0.5);
    for (const char* pText : {"", " ", "1 2", "1.5m", "nan", "inf", "1e999", "--1", "+", "0x10"})
        EXPECT_EQ(NumberText::parse(pText), std::nullopt) << pText;
}

TEST(GuiTextTest, theMiddleGoesWhereNamesDifferAtTheirEnds)
{
    const auto measure = [](std::string_view sPart)
    {
        int iWidth = 0;
        for (const char c : sPart)
            iWidth += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 10 : 0;
        return iWidth;
    };
    EXPECT_EQ(GuiText::shortenMiddle("rock_01", 70, measure), "rock_01");
    EXPECT_EQ(GuiText::shortenMiddle("rock_granite_01", 70, measure), "ro\xE2\x80\xA6"
                                                                      "e_01");
    EXPECT_EQ(GuiText::shortenMiddle("\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F", 30, measure),
              "\xE2\x80\xA6\xC3\xBC\xC3\x9F");
    EXPECT_EQ(GuiText::shortenMiddle("abc", 5, measure), "\xE2\x80\xA6");
}

} // namespace
