#include "MyGuiCommon/FloatEditBox.h"

#include "MyGuiCommon/GuiMetrics.h"
#include "MyGuiCommon/NumberText.h"

#include <MyGUI_InputManager.h>
#include <cmath>

namespace
{

constexpr int s_iDragStart = 3; ///< units of movement that tell a drag from a click
constexpr int s_iTypedDigits = 6;
constexpr int s_iTextMargin = 7;

} // namespace

void FloatEditBox::initialiseOverride()
{
    Widget::initialiseOverride();
    assignWidget(m_pFill, "Fill");
    assignWidget(m_pText, "Text");
    assignWidget(m_pEdit, "Edit");
    if (m_pFill)
        m_pFill->setNeedMouseFocus(false);
    if (m_pText)
        m_pText->setNeedMouseFocus(false);
    if (m_pEdit)
    {
        m_pEdit->setVisible(false);
        m_pEdit->m_fnEscape = [this] { endEdit(false); };
        m_pEdit->eventEditSelectAccept += MyGUI::newDelegate(this, &FloatEditBox::onAccept);
        m_pEdit->eventKeyButtonPressed += MyGUI::newDelegate(this, &FloatEditBox::onKey);
        m_pEdit->eventKeyLostFocus += MyGUI::newDelegate(this, &FloatEditBox::onEditLostFocus);
    }
    show();
}

void FloatEditBox::shutdownOverride()
{
    m_pFill = nullptr;
    m_pText = nullptr;
    m_pEdit = nullptr;
    Widget::shutdownOverride();
}

void FloatEditBox::setRange(const FloatBoxRange& range)
{
    m_range = range;
    show();
}

void FloatEditBox::setValue(double fValue)
{
    if (isBusy())
        return;
    m_fValue = fValue;
    show();
}

void FloatEditBox::setSize(const MyGUI::IntSize& size)
{
    Widget::setSize(size);
    show();
}

void FloatEditBox::setCoord(const MyGUI::IntCoord& coord)
{
    Widget::setCoord(coord);
    show();
}

void FloatEditBox::show()
{
    if (m_pText)
    {
        // As many digits behind the point as there is room for.
        for (int iDigits = m_range.iDigits; iDigits >= 0; --iDigits)
        {
            m_pText->setCaption(NumberText::format(m_fValue, iDigits));
            if (m_pText->getTextSize().width <= getWidth() - 2 * GuiMetrics::px(s_iTextMargin))
                break;
        }
    }
    if (!m_pFill)
        return;
    const double fPart = (m_fValue - m_range.fMin) / (m_range.fMax - m_range.fMin);
    const int iFilled = static_cast<int>(std::lround(std::clamp(fPart, 0.0, 1.0) * (getWidth() - 2)));
    m_pFill->setVisible(m_range.bSlider && iFilled > 0);
    m_pFill->setSize(iFilled, m_pFill->getHeight());
}

double FloatEditBox::allowed(double fValue) const
{
    if (m_range.fStep > 0.0)
        fValue = std::round(fValue / m_range.fStep) * m_range.fStep;
    return std::clamp(fValue, m_range.fMin, m_range.fMax);
}

void FloatEditBox::change(double fValue)
{
    fValue = allowed(fValue);
    if (fValue == m_fValue)
        return;
    m_fValue = fValue;
    show();
    const std::function<void(double, bool)> fnChanged = m_fnChanged; // may be set anew by itself
    if (fnChanged)
        fnChanged(fValue, false);
}

/// The drag or the typing is over; tells nobody when nothing came of it.
void FloatEditBox::finish(double fValue)
{
    const bool bTold = m_fValue != m_fBefore;
    m_fValue = fValue;
    show();
    const std::function<void(double, bool)> fnChanged = m_fnChanged;
    if (fnChanged && (bTold || fValue != m_fBefore))
        fnChanged(fValue, true);
}

void FloatEditBox::dragTo(int iX)
{
    if (m_range.bSlider)
    {
        const double fPart = static_cast<double>(iX - getAbsoluteLeft()) / std::max(getWidth(), 1);
        change(m_range.fMin + std::clamp(fPart, 0.0, 1.0) * (m_range.fMax - m_range.fMin));
        return;
    }
    const double fFine = MyGUI::InputManager::getInstance().isShiftPressed() ? 0.1 : 1.0;
    m_fDragged = std::clamp(m_fDragged + (iX - m_iLastX) * m_range.fPerPixel * fFine / GuiMetrics::scale(),
                            m_range.fMin, m_range.fMax);
    m_iLastX = iX;
    // Whole tenths of what a pixel is worth: no endless fractions.
    const double fGrain = m_range.fPerPixel * 0.1;
    change(std::round(m_fDragged / fGrain) * fGrain);
}

void FloatEditBox::onMouseButtonPressed(int iX, int iY, MyGUI::MouseButton button)
{
    Widget::onMouseButtonPressed(iX, iY, button);
    if (button != MyGUI::MouseButton::Left || !getInheritedEnabled())
        return;
    m_bPressed = true;
    m_iPressX = iX;
}

void FloatEditBox::onMouseDrag(int iX, int iY, MyGUI::MouseButton button)
{
    Widget::onMouseDrag(iX, iY, button);
    if (!m_bPressed || button != MyGUI::MouseButton::Left)
        return;
    if (!m_bDragging && std::abs(iX - m_iPressX) >= GuiMetrics::px(s_iDragStart))
    {
        m_bDragging = true;
        m_fBefore = m_fDragged = m_fValue;
        m_iLastX = m_iPressX;
    }
    if (m_bDragging)
        dragTo(iX);
}

void FloatEditBox::onMouseButtonReleased(int iX, int iY, MyGUI::MouseButton button)
{
    Widget::onMouseButtonReleased(iX, iY, button);
    if (!m_bPressed || button != MyGUI::MouseButton::Left)
        return;
    m_bPressed = false;
    if (!m_bDragging)
    {
        beginEdit();
        return;
    }
    m_bDragging = false;
    MyGUI::InputManager::getInstance().resetKeyFocusWidget(this);
    finish(m_fValue);
}

void FloatEditBox::onKeyButtonPressed(MyGUI::KeyCode key, MyGUI::Char uChar)
{
    if (key == MyGUI::KeyCode::Escape && m_bDragging)
    {
        m_bDragging = m_bPressed = false;
        finish(m_fBefore);
    }
    Widget::onKeyButtonPressed(key, uChar);
}

void FloatEditBox::onMouseSetFocus(MyGUI::Widget* pOld)
{
    Widget::onMouseSetFocus(pOld);
    _setWidgetState("highlighted");
}

void FloatEditBox::onMouseLostFocus(MyGUI::Widget* pNew)
{
    Widget::onMouseLostFocus(pNew);
    _setWidgetState("normal");
}

void FloatEditBox::beginEdit()
{
    if (!m_pEdit || m_bEditing)
        return;
    m_bEditing = true;
    m_fBefore = m_fValue;
    m_pEdit->setVisible(true);
    m_pText->setVisible(false);
    m_pEdit->setOnlyText(NumberText::format(m_fValue, s_iTypedDigits));
    MyGUI::InputManager::getInstance().setKeyFocusWidget(m_pEdit);
    m_pEdit->setTextSelection(0, m_pEdit->getTextLength());
}

void FloatEditBox::endEdit(bool bTake)
{
    if (!m_pEdit || !m_bEditing) // hiding the box takes its focus, which ends here again
        return;
    m_bEditing = false;
    const std::string sText(m_pEdit->getOnlyText());
    const bool bTyped = sText != NumberText::format(m_fValue, s_iTypedDigits);
    const std::optional<double> typed = NumberText::parse(sText);
    m_pEdit->setVisible(false);
    m_pText->setVisible(true);
    MyGUI::InputManager::getInstance().resetKeyFocusWidget(m_pEdit);
    finish(!bTake ? m_fBefore : bTyped && typed ? allowed(*typed) : m_fValue);
}

void FloatEditBox::onAccept(MyGUI::EditBox*)
{
    endEdit(true);
}

void FloatEditBox::onKey(MyGUI::Widget*, MyGUI::KeyCode key, MyGUI::Char)
{
    if (key == MyGUI::KeyCode::Tab)
    {
        FloatEditBox* pNext = m_fnNext ? m_fnNext() : nullptr;
        if (pNext && pNext != this)
            pNext->beginEdit(); // takes the keyboard, which ends the typing here
        else
            endEdit(true);
    }
    else if (key == MyGUI::KeyCode::ArrowUp || key == MyGUI::KeyCode::ArrowDown)
    {
        const double fFrom = NumberText::parse(std::string(m_pEdit->getOnlyText())).value_or(m_fValue);
        change(fFrom + (key == MyGUI::KeyCode::ArrowUp ? 1.0 : -1.0) * std::max(m_range.fStep, 1.0));
        m_pEdit->setOnlyText(NumberText::format(m_fValue, s_iTypedDigits));
        m_pEdit->setTextSelection(0, m_pEdit->getTextLength());
    }
}

void FloatEditBox::onEditLostFocus(MyGUI::Widget*, MyGUI::Widget*)
{
    endEdit(true);
}
