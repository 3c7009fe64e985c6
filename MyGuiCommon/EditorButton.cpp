#include "MyGuiCommon/EditorButton.h"

#include "MyGuiCommon/GuiMetrics.h"

#include <MyGUI_ImageBox.h>

namespace
{

constexpr int s_iIconSize = 24;
constexpr int s_iPadding = 12;
constexpr float s_fDisabledAlpha = 0.35f;

} // namespace

void EditorButton::setIcon(const std::string& sTexture)
{
    if (sTexture == m_sTexture)
        return;
    m_sTexture = sTexture;
    if (!m_pIcon && !sTexture.empty())
    {
        m_pIcon = createWidget<MyGUI::ImageBox>("QM_Image", MyGUI::IntCoord(), MyGUI::Align::Default);
        m_pIcon->setNeedMouseFocus(false);
        placeIcon();
        applyColour();
    }
    if (!m_pIcon)
        return;
    m_pIcon->setVisible(!sTexture.empty());
    if (!sTexture.empty())
        m_pIcon->setImageTexture(sTexture);
}

void EditorButton::setIconColour(const MyGUI::Colour& colour)
{
    m_colour = colour;
    applyColour();
}

void EditorButton::applyColour()
{
    if (!m_pIcon)
        return;
    m_pIcon->setColour(m_colour);
    m_pIcon->setAlpha(getInheritedEnabled() ? 1.0f : s_fDisabledAlpha);
}

void EditorButton::baseUpdateEnable()
{
    Button::baseUpdateEnable();
    applyColour();
}

void EditorButton::setCaption(const MyGUI::UString& sCaption)
{
    Button::setCaption(sCaption);
    placeIcon();
}

void EditorButton::placeIcon()
{
    if (!m_pIcon)
        return;
    const int iSize = GuiMetrics::px(s_iIconSize);
    const int iTop = (getHeight() - iSize) / 2;
    const bool bAlone = getCaption().empty();
    if (!bAlone)
        setTextAlign(MyGUI::Align::Right | MyGUI::Align::VCenter); // clear of the icon
    m_pIcon->setAlign(bAlone ? MyGUI::Align::Center : MyGUI::Align::Left | MyGUI::Align::VCenter);
    m_pIcon->setCoord(bAlone ? (getWidth() - iSize) / 2 : GuiMetrics::px(4), iTop, iSize, iSize);
}

int EditorButton::neededWidth()
{
    const int iIcon = m_pIcon && m_pIcon->getVisible() ? GuiMetrics::px(s_iIconSize) : 0;
    if (getCaption().empty())
        return iIcon + GuiMetrics::px(4);
    return iIcon + getTextSize().width + GuiMetrics::px(2 * s_iPadding);
}

void EditorButton::setPropertyOverride(const std::string& sKey, const std::string& sValue)
{
    if (sKey == "Icon")
        setIcon(sValue);
    else if (sKey == "IconColour")
        setIconColour(MyGUI::Colour::parse(sValue));
    else
    {
        Button::setPropertyOverride(sKey, sValue);
        return;
    }
    eventChangeProperty(this, sKey, sValue);
}

void EditorButton::onKeyButtonPressed(MyGUI::KeyCode key, MyGUI::Char uChar)
{
    Button::onKeyButtonPressed(key, uChar);
    const bool bPress =
        key == MyGUI::KeyCode::Return || key == MyGUI::KeyCode::NumpadEnter || key == MyGUI::KeyCode::Space;
    if (bPress && getInheritedEnabled())
        eventMouseButtonClick(this);
}
