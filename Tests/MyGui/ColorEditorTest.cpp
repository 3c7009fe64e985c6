// The colour editor: what it does to a colour, and its widgets.

#include "MyGuiCommon/ColorEditor.h"
#include "MyGuiCommon/AdvanceEditBox.h"
#include "MyGuiCommon/GuiPixels.h"
#include "MyGuiCommon/GuiTips.h"
#include "Tests/MyGui/GuiFixture.h"

#include <MyGUI_EditBox.h>
#include <MyGUI_RenderManager.h>

namespace
{

constexpr int s_iEnter = 28;
constexpr int s_iEscape = 1;

TEST(ColorModelTest, everyByteComesBackWhenTruncated)
{
    ColorModel model;
    for (int32_t iByte = 0; iByte < 256; ++iByte)
    {
        model.setByte(1, iByte);
        EXPECT_EQ(static_cast<int32_t>(model.color()[1] * 255.0f), iByte);
        EXPECT_EQ(model.byteOf(1), iByte);
    }
    // What is dragged is whole bytes as well.
    model.setHue(0.37f);
    model.setSaturationValue(0.61f, 0.83f);
    for (size_t i = 0; i < 3; ++i)
        EXPECT_EQ(static_cast<int32_t>(model.color()[i] * 255.0f), model.byteOf(i));
}

TEST(ColorModelTest, hueAndSaturationSurviveGreyAndBlack)
{
    ColorModel model;
    model.setHex("3060C0");
    const float fHue = model.hue();
    EXPECT_NEAR(fHue, 0.6111f, 0.001f);
    EXPECT_NEAR(model.saturation(), 0.75f, 0.001f);
    model.setSaturationValue(0.0f, 0.5f);
    EXPECT_EQ(model.hex(false), "808080");
    EXPECT_EQ(model.hue(), fHue);
    model.setSaturationValue(0.75f, 0.0f);
    model.setColor(model.color()); // as a refresh does
    EXPECT_EQ(model.hue(), fHue);
    EXPECT_EQ(model.saturation(), 0.75f);
    model.setSaturationValue(0.75f, 192.0f / 255.0f);
    EXPECT_EQ(model.hex(false), "3060C0");
}

TEST(ColorModelTest, huesGoRound)
{
    ColorModel model;
    for (const auto& [fHue, pHex] : {std::pair{0.0f, "FF0000"},
                                     {1.0f / 6, "FFFF00"},
                                     {1.0f / 3, "00FF00"},
                                     {0.5f, "00FFFF"},
                                     {2.0f / 3, "0000FF"},
                                     {5.0f / 6, "FF00FF"},
                                     {1.0f, "FF0000"}})
    {
        model.setSaturationValue(1.0f, 1.0f);
        model.setHue(fHue);
        EXPECT_EQ(model.hex(false), pHex);
        ColorModel other;
        other.setColor(model.color());
        EXPECT_NEAR(other.hue(), fHue == 1.0f ? 0.0f : fHue, 0.001f);
    }
}

TEST(ColorModelTest, hexTakesThreeSixAndEightDigitsAndNothingElse)
{
    ColorModel model;
    EXPECT_TRUE(model.setHex(" #4aF "));
    EXPECT_EQ(model.hex(true), "44AAFFFF");
    EXPECT_TRUE(model.setHex("10203040"));
    EXPECT_EQ(model.hex(true), "10203040");
    EXPECT_TRUE(model.setHex("#ffffff"));
    EXPECT_EQ(model.hex(true), "FFFFFF40") << "alpha stays";
    for (const char* pText :
         {"", "#", "12", "1234", "12345", "GGGGGG", "-12345", "+1234F", "0x12", "123456789"})
        EXPECT_FALSE(model.setHex(pText)) << pText;
    EXPECT_EQ(model.hex(true), "FFFFFF40");
}

struct ColorEditorTest : GuiFixture
{
    void SetUp() override
    {
        GuiFixture::SetUp();
        m_pView = MyGUI::Gui::getInstance().createWidgetT(
            "Widget", "Default", MyGUI::IntCoord(100, 100, 224, 400), MyGUI::Align::Default, "Main");
        m_pTips = std::make_unique<GuiTips>();
        m_pEditor = std::make_unique<ColorEditor>(m_pView, *m_pTips);
        m_pEditor->setHandler([this] { ++m_iChanges; });
    }
    void TearDown() override
    {
        m_pEditor.reset();
        m_pTips.reset();
        GuiFixture::TearDown();
    }

    [[nodiscard]] std::string hex() { return widget<MyGUI::EditBox>("Hex")->getOnlyText(); }

    MyGUI::Widget* m_pView = nullptr;
    std::unique_ptr<GuiTips> m_pTips;
    std::unique_ptr<ColorEditor> m_pEditor;
    int m_iChanges = 0;
};

TEST_F(ColorEditorTest, areaAndHueBarAreDraggedAlsoBeyondTheirEdges)
{
    const MyGUI::IntCoord hue = widget("HueBar")->getAbsoluteCoord();
    click(hue.left + (hue.width - 1) / 3, hue.top + 4);
    const MyGUI::IntCoord area = widget("ColorArea")->getAbsoluteCoord();
    m_pGui->mouseMove(area.left + 20, area.top + 20, 0);
    m_pGui->mouseDown(area.left + 20, area.top + 20, 0);
    m_pGui->mouseMove(area.left + 900, area.top - 50, 0);
    m_pGui->mouseUp(area.left + 900, area.top - 50, 0);
    EXPECT_EQ(m_iChanges, 3);
    EXPECT_EQ(m_pEditor->color()[1], 1.0f);
    EXPECT_LT(m_pEditor->color()[0], 0.02f);
    EXPECT_EQ(hex().substr(2), "FF00");
    EXPECT_EQ(widget<AdvanceEditBox>("Green")->value(), 255);
}

TEST_F(ColorEditorTest, hexIsTakenOnEnterAndDroppedOnEscapeOrNonsense)
{
    click(widget("Hex"));
    type("2080f0");
    m_pEditor->setColor({1.0f, 0.0f, 0.0f, 1.0f}); // a refresh in between
    EXPECT_EQ(hex(), "2080f0") << "what is being typed stays";
    key(s_iEnter);
    EXPECT_EQ(hex(), "2080F0");
    EXPECT_EQ(m_iChanges, 1);
    EXPECT_FALSE(m_pGui->hasKeyFocus());

    click(widget("Hex"));
    type("112233");
    key(s_iEscape);
    EXPECT_EQ(hex(), "2080F0");
    click(widget("Hex"));
    type("no");
    key(s_iEnter);
    EXPECT_EQ(hex(), "2080F0");
    EXPECT_EQ(m_iChanges, 1);
    EXPECT_FALSE(m_pGui->isEditing());
}

TEST_F(ColorEditorTest, alphaHasARowOnlyWhereItCounts)
{
    const int iHeight = m_pEditor->neededHeight();
    EXPECT_FALSE(widget("Alpha")->getVisible());
    m_pEditor->setAlphaShown(true);
    EXPECT_EQ(m_pEditor->neededHeight(), iHeight + 32);
    EXPECT_EQ(hex(), "FFFFFFFF");
    click(widget("Alpha"));
    type("128");
    key(s_iEnter);
    EXPECT_EQ(hex(), "FFFFFF80");
    EXPECT_EQ(static_cast<int>(m_pEditor->color()[3] * 255.0f), 128);
}

TEST_F(ColorEditorTest, thumbnailIsMadeOnceAndAMissingPictureIsOneLine)
{
    const char* pFile = "$GAME_DATA/Terrain/Materials/gnd_sand_dune_dif.png";
    const std::string sName = GuiPixels::thumbnail(pFile, 96, 54);
    const MyGUI::ITexture* pTexture = MyGUI::RenderManager::getInstance().getTexture(sName);
    ASSERT_TRUE(pTexture);
    EXPECT_EQ(pTexture->getWidth(), 96);
    EXPECT_EQ(pTexture->getHeight(), 54);
    const size_t uTextures = m_device.textureCount();
    EXPECT_EQ(GuiPixels::thumbnail(pFile, 96, 54), sName);
    EXPECT_EQ(m_device.textureCount(), uTextures);
    EXPECT_EQ(m_log.errors(), 0u);

    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(MyGUI::RenderManager::getInstance().getTexture(
            GuiPixels::thumbnail("$GAME_DATA/none.png", 96, 54)));
    EXPECT_EQ(m_log.count("Failed to load picture '$GAME_DATA/none.png'"), 1u);
    m_uExpectedErrors = 1;
}

} // namespace
