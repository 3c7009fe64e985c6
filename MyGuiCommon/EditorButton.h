#pragma once // A button with an icon.

#include <MyGUI_Button.h>
#include <MyGUI_Colour.h>
#include <string>

namespace MyGUI
{
class ImageBox;
}

/// Text, an icon or both. The icon stands in the middle, or left of the text, 24 units wide.
/// Enter and Space press it while it has the keyboard.
class EditorButton : public MyGUI::Button
{
    MYGUI_RTTI_DERIVED(EditorButton)

public:
    /// A picture file below the GUI folder; empty takes the icon away.
    void setIcon(const std::string& sTexture);
    /// Tints the icon; disabled buttons show it dim.
    void setIconColour(const MyGUI::Colour& colour);

    void setCaption(const MyGUI::UString& sCaption) override;

    /// Width that holds icon and caption with the usual margins, pixels.
    [[nodiscard]] int neededWidth();

protected:
    void setPropertyOverride(const std::string& sKey, const std::string& sValue) override;
    void onKeyButtonPressed(MyGUI::KeyCode key, MyGUI::Char uChar) override;
    void baseUpdateEnable() override;

private:
    void placeIcon();
    void applyColour();

    MyGUI::ImageBox* m_pIcon = nullptr;
    std::string m_sTexture;
    MyGUI::Colour m_colour = MyGUI::Colour::White;
};
