#pragma once // A number box with a slider behind the number.

#include "MyGuiCommon/NumberBoxModel.h"

#include <MyGUI_EditBox.h>
#include <functional>

namespace MyGUI
{
class Button;
class TextBox;
} // namespace MyGUI

/// The box to type a number in. Escape is told before the box gives the keyboard away, which else
/// would look like a click beside it.
class NumberEdit : public MyGUI::EditBox
{
    MYGUI_RTTI_DERIVED(NumberEdit)

public:
    std::function<void()> m_fnEscape;

protected:
    void onKeyButtonPressed(MyGUI::KeyCode key, MyGUI::Char uChar) override;
};

/// Drag along the box to slide, press the arrows at its ends to step by 1, click it to type. Enter
/// takes the typed number, Escape drops it; while typing the arrow keys step and Tab goes on to the
/// next number box of the panel.
///
/// The skin has children named "Fill", "Text", "Edit", "Less" and "More".
class AdvanceEditBox : public MyGUI::Widget
{
    MYGUI_RTTI_DERIVED(AdvanceEditBox)

public:
    void setRange(const NumberRange& range);
    /// Shows a value; calls nobody. While the user types, the text stays.
    void setValue(int32_t iValue);
    [[nodiscard]] int32_t value() const { return m_iValue; }

    /// Called for each change by the user.
    void setHandler(std::function<void(int32_t)> fnChanged) { m_fnChanged = std::move(fnChanged); }

    void setSize(const MyGUI::IntSize& size) override;
    void setCoord(const MyGUI::IntCoord& coord) override;
    using MyGUI::Widget::setCoord;
    using MyGUI::Widget::setSize;

protected:
    void initialiseOverride() override;
    void shutdownOverride() override;
    void onMouseButtonPressed(int iX, int iY, MyGUI::MouseButton button) override;
    void onMouseDrag(int iX, int iY, MyGUI::MouseButton button) override;
    void onMouseButtonReleased(int iX, int iY, MyGUI::MouseButton button) override;
    void onMouseSetFocus(MyGUI::Widget* pOld) override;
    void onMouseLostFocus(MyGUI::Widget* pNew) override;

private:
    void change(int32_t iValue);
    void show();
    void slideTo(int iX);
    void beginEdit();
    void endEdit(bool bTake);
    AdvanceEditBox* nextBox();
    void onArrow(MyGUI::Widget* pSender);
    void onAccept(MyGUI::EditBox* pSender);
    void onKey(MyGUI::Widget* pSender, MyGUI::KeyCode key, MyGUI::Char uChar);
    void onEditLostFocus(MyGUI::Widget* pSender, MyGUI::Widget* pNew);

    NumberRange m_range;
    int32_t m_iValue = 0;
    std::function<void(int32_t)> m_fnChanged;
    MyGUI::Widget* m_pFill = nullptr;
    MyGUI::TextBox* m_pText = nullptr;
    NumberEdit* m_pEdit = nullptr;
    MyGUI::Button* m_pLess = nullptr;
    MyGUI::Button* m_pMore = nullptr;
    int m_iPressX = 0;
    bool m_bPressed = false;
    bool m_bSliding = false;
    bool m_bEditing = false;
};
