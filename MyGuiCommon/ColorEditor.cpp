#include "MyGuiCommon/ColorEditor.h"

#include "MyGuiCommon/AdvanceEditBox.h"
#include "MyGuiCommon/GuiMetrics.h"
#include "MyGuiCommon/GuiPixels.h"
#include "MyGuiCommon/GuiTips.h"

#include <MyGUI_EditBox.h>
#include <MyGUI_ImageBox.h>
#include <MyGUI_InputManager.h>
#include <MyGUI_TextBox.h>
#include <cmath>

using GuiMetrics::px;

namespace
{

constexpr int s_iAreaHeight = 128;
constexpr int s_iHueHeight = 12;
constexpr int s_iRowHeight = 24;
constexpr int s_iRowGap = 8;
constexpr int s_iGap = 8;
constexpr int s_iMargin = 8; ///< around what is shown, for marks that reach over edges
constexpr int s_iLabelWidth = 64;
constexpr int s_iAreaMark = 14;
constexpr int s_iHueMarkWidth = 8;
constexpr int s_iHueMarkHeight = 16;
constexpr float s_fRadius = 4.0f; ///< of corners, units

constexpr const char* s_pAreaTexture = "color editor area";
constexpr const char* s_pHueTexture = "color editor hues";
constexpr const char* s_pSwatchTexture = "color editor swatch";

struct Row
{
    const char* pName;
    const char* pTip;
};
constexpr std::array<Row, 5> s_arrRows{{{"Red", "0 to 255"},
                                        {"Green", "0 to 255"},
                                        {"Blue", "0 to 255"},
                                        {"Alpha", "0 to 255, 255 is opaque"},
                                        {"Hex", "RRGGBB, also short as RGB"}}};

/// Fills a texture whose corners are round.
void fillRounded(const char* pName, int iWidth, int iHeight,
                 const std::function<std::array<float, 3>(float, float)>& fnColour)
{
    const float fRadius = s_fRadius * GuiMetrics::scale();
    const auto fWidth = static_cast<float>(iWidth);
    const auto fHeight = static_cast<float>(iHeight);
    GuiPixels::fill(pName, iWidth, iHeight,
                    [&](float x, float y)
                    {
                        const auto [r, g, b] = fnColour(x, y);
                        const float fToSide = std::min(x, 1.0f - x) * fWidth;
                        const float fToEnd = std::min(y, 1.0f - y) * fHeight;
                        const float fOut =
                            std::hypot(std::max(fRadius - fToSide, 0.0f), std::max(fRadius - fToEnd, 0.0f));
                        return GuiPixels::Colour{r, g, b, fRadius - fOut + 0.5f};
                    });
}

MyGUI::ImageBox* makeImage(MyGUI::Widget* pParent, const MyGUI::IntCoord& coord, const std::string& sName)
{
    return pParent->createWidget<MyGUI::ImageBox>("QM_Image", coord, MyGUI::Align::Default, sName);
}

MyGUI::ImageBox* makeMark(MyGUI::Widget* pParent, int iWidth, int iHeight, const char* pFile)
{
    MyGUI::ImageBox* pMark = makeImage(pParent, MyGUI::IntCoord(0, 0, iWidth, iHeight), "");
    pMark->setImageTexture(pFile);
    pMark->setNeedMouseFocus(false);
    return pMark;
}

} // namespace

ColorEditor::ColorEditor(MyGUI::Widget* pView, GuiTips& tips) : m_pView(pView)
{
    makeArea();
    makeRows(tips);
    placeRows();
    show();
}

void ColorEditor::makeArea()
{
    const int iLeft = px(s_iMargin);
    const int iWidth = m_pView->getWidth() - 2 * iLeft;
    m_pArea = makeImage(m_pView, MyGUI::IntCoord(iLeft, iLeft, iWidth, px(s_iAreaHeight)), "ColorArea");
    m_pArea->eventMouseButtonPressed += MyGUI::newDelegate(this, &ColorEditor::onArea);
    m_pArea->eventMouseDrag += MyGUI::newDelegate(this, &ColorEditor::onArea);
    m_pHue = makeImage(m_pView,
                       MyGUI::IntCoord(iLeft, m_pArea->getBottom() + px(s_iGap), iWidth, px(s_iHueHeight)),
                       "HueBar");
    m_pHue->eventMouseButtonPressed += MyGUI::newDelegate(this, &ColorEditor::onHue);
    m_pHue->eventMouseDrag += MyGUI::newDelegate(this, &ColorEditor::onHue);
    fillRounded(s_pHueTexture, iWidth, px(s_iHueHeight),
                [](float x, float) { return ColorModel::pureHue(x); });
    m_pHue->setImageTexture(s_pHueTexture);
    paintArea();
    m_pArea->setImageTexture(s_pAreaTexture); // before the marks: what gets its texture last is drawn on top
    m_pAreaMark = makeMark(m_pView, px(s_iAreaMark), px(s_iAreaMark), "Editor/ed_color_ring.png");
    m_pHueMark = makeMark(m_pView, px(s_iHueMarkWidth), px(s_iHueMarkHeight), "Editor/ed_color_mark.png");
}

void ColorEditor::makeRows(GuiTips& tips)
{
    const int iLeft = px(s_iMargin + s_iLabelWidth);
    const int iWidth = m_pView->getWidth() - iLeft - px(s_iMargin);
    for (size_t i = 0; i < s_arrRows.size(); ++i)
    {
        m_arrLabels[i] = m_pView->createWidget<MyGUI::TextBox>(
            "QM_TextDim", MyGUI::IntCoord(px(s_iMargin), 0, px(s_iLabelWidth), px(s_iRowHeight)),
            MyGUI::Align::Default);
        m_arrLabels[i]->setCaption(s_arrRows[i].pName);
        tips.set(m_arrLabels[i], s_arrRows[i].pTip);
    }
    for (size_t i = 0; i < m_arrChannels.size(); ++i)
    {
        m_arrChannels[i] = m_pView->createWidget<AdvanceEditBox>(
            "AdvanceEditBox", MyGUI::IntCoord(iLeft, 0, iWidth, px(s_iRowHeight)), MyGUI::Align::Default,
            s_arrRows[i].pName);
        m_arrChannels[i]->setRange({0, 255, 0, 255});
        m_arrChannels[i]->setHandler(
            [this, i](int32_t iValue)
            {
                m_model.setByte(i, iValue);
                changed();
            });
    }
    const int iSwatch = px(s_iRowHeight);
    m_pHex = m_pView->createWidget<NumberEdit>(
        "QM_EditBox", MyGUI::IntCoord(iLeft, 0, iWidth - iSwatch - px(s_iGap), px(s_iRowHeight)),
        MyGUI::Align::Default, "Hex");
    m_pHex->setMaxTextLength(9);
    m_pHex->eventEditSelectAccept += MyGUI::newDelegate(this, &ColorEditor::onHexAccept);
    m_pHex->eventKeySetFocus += MyGUI::newDelegate(this, &ColorEditor::onHexFocus);
    m_pHex->getClientWidget()->eventMouseButtonReleased +=
        MyGUI::newDelegate(this, &ColorEditor::onHexReleased);
    m_pHex->eventKeyLostFocus += MyGUI::newDelegate(this, &ColorEditor::onHexLostFocus);
    m_pHex->m_fnEscape = [this]
    {
        m_pHex->setOnlyText(m_model.hex(m_bAlpha));
        MyGUI::InputManager::getInstance().resetKeyFocusWidget(m_pHex);
    };
    m_pSwatch =
        makeImage(m_pView, MyGUI::IntCoord(iLeft + iWidth - iSwatch, 0, iSwatch, iSwatch), "ColorSwatch");
    fillRounded(s_pSwatchTexture, iSwatch, iSwatch,
                [](float, float) {
                    return std::array{1.0f, 1.0f, 1.0f};
                });
    m_pSwatch->setImageTexture(s_pSwatchTexture);
}

void ColorEditor::placeRows()
{
    int iTop = m_pHue->getBottom() + px(s_iGap + s_iRowGap / 2);
    for (size_t i = 0; i < s_arrRows.size(); ++i)
    {
        const bool bShown = i != 3 || m_bAlpha;
        m_arrLabels[i]->setVisible(bShown);
        m_arrLabels[i]->setPosition(m_arrLabels[i]->getLeft(), iTop);
        if (i < m_arrChannels.size())
        {
            m_arrChannels[i]->setVisible(bShown);
            m_arrChannels[i]->setPosition(m_arrChannels[i]->getLeft(), iTop);
        }
        if (bShown)
            iTop += px(s_iRowHeight + s_iRowGap);
    }
    const int iHexTop = m_arrLabels.back()->getTop();
    m_pHex->setPosition(m_pHex->getLeft(), iHexTop);
    m_pSwatch->setPosition(m_pSwatch->getLeft(), iHexTop);
}

int ColorEditor::neededHeight() const
{
    return m_pHex->getBottom();
}

void ColorEditor::setAlphaShown(bool bShown)
{
    if (bShown == m_bAlpha)
        return;
    m_bAlpha = bShown;
    placeRows();
    show();
}

void ColorEditor::setColor(const ColorModel::Rgba& color)
{
    const ColorModel::Rgba before = m_model.color();
    m_model.setColor(color);
    if (m_model.color() != before)
        show();
}

void ColorEditor::paintArea()
{
    if (m_fShownHue == m_model.hue())
        return;
    m_fShownHue = m_model.hue();
    fillRounded(s_pAreaTexture, m_pArea->getWidth(), m_pArea->getHeight(),
                [pure = ColorModel::pureHue(m_fShownHue)](float x, float y)
                {
                    std::array<float, 3> colour{};
                    for (size_t i = 0; i < 3; ++i)
                        colour[i] = (1.0f - y) * (1.0f - x + x * pure[i]);
                    return colour;
                });
}

void ColorEditor::show()
{
    paintArea();
    const auto at = [](float fPart, int iLength)
    { return static_cast<int>(std::lround(fPart * static_cast<float>(iLength - 1))); };
    m_pAreaMark->setPosition(
        m_pArea->getLeft() + at(m_model.saturation(), m_pArea->getWidth()) - m_pAreaMark->getWidth() / 2,
        m_pArea->getTop() + at(1.0f - m_model.value(), m_pArea->getHeight()) - m_pAreaMark->getHeight() / 2);
    m_pHueMark->setPosition(m_pHue->getLeft() + at(m_model.hue(), m_pHue->getWidth()) -
                                m_pHueMark->getWidth() / 2,
                            m_pHue->getTop() + (m_pHue->getHeight() - m_pHueMark->getHeight()) / 2);
    for (size_t i = 0; i < m_arrChannels.size(); ++i)
        m_arrChannels[i]->setValue(m_model.byteOf(i));
    const auto& [r, g, b, a] = m_model.color();
    m_pSwatch->setColour(MyGUI::Colour(r, g, b));
    if (!m_bTyping)
        m_pHex->setOnlyText(m_model.hex(m_bAlpha));
}

void ColorEditor::changed()
{
    show();
    if (m_fnChanged)
        m_fnChanged();
}

void ColorEditor::onArea(MyGUI::Widget*, int iX, int iY, MyGUI::MouseButton button)
{
    if (button != MyGUI::MouseButton::Left)
        return;
    const MyGUI::IntCoord area = m_pArea->getAbsoluteCoord();
    m_model.setSaturationValue(
        static_cast<float>(iX - area.left) / static_cast<float>(std::max(area.width - 1, 1)),
        1.0f - static_cast<float>(iY - area.top) / static_cast<float>(std::max(area.height - 1, 1)));
    changed();
}

void ColorEditor::onHue(MyGUI::Widget*, int iX, int, MyGUI::MouseButton button)
{
    if (button != MyGUI::MouseButton::Left)
        return;
    const MyGUI::IntCoord bar = m_pHue->getAbsoluteCoord();
    m_model.setHue(static_cast<float>(iX - bar.left) / static_cast<float>(std::max(bar.width - 1, 1)));
    changed();
}

void ColorEditor::onHexAccept(MyGUI::EditBox* pSender)
{
    MyGUI::InputManager::getInstance().resetKeyFocusWidget(pSender); // which takes the text
}

void ColorEditor::onHexFocus(MyGUI::Widget*, MyGUI::Widget*)
{
    m_bTyping = true;
    m_bSelectAll = true;
    m_pHex->setTextSelection(0, m_pHex->getTextLength());
}

/// The press that gave the keyboard set the cursor as well; a click selects all, a drag its part.
void ColorEditor::onHexReleased(MyGUI::Widget*, int, int, MyGUI::MouseButton)

{
    if (std::exchange(m_bSelectAll, false) && !m_pHex->isTextSelection())
        m_pHex->setTextSelection(0, m_pHex->getTextLength());
}

void ColorEditor::onHexLostFocus(MyGUI::Widget*, MyGUI::Widget*)
{
    m_bTyping = false;
    takeHex();
}

void ColorEditor::takeHex()
{
    const ColorModel::Rgba before = m_model.color();
    const bool bTaken = m_model.setHex(std::string(m_pHex->getOnlyText()));
    if (bTaken && m_model.color() != before)
        changed();
    else
        show(); // a text that is no colour gives way to the present one
}
