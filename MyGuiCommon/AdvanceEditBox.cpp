#include "MyGuiCommon/AdvanceEditBox.h"

#include "MyGuiCommon/GuiMetrics.h"

#include <MyGUI_Button.h>
#include <MyGUI_InputManager.h>

namespace
{

constexpr int s_iDragStart = 3; ///< units of movement that tell a drag from a click

} // namespace

void NumberEdit::onKeyButtonPressed(MyGUI::KeyCode key, MyGUI::Char uChar)
{
    if (key == MyGUI::KeyCode::Escape && m_fnEscape)
        m_fnEscape();
    EditBox::onKeyButtonPressed(key, uChar);
}

void AdvanceEditBox::initialiseOverride()
{
    Widget::initialiseOverride();
    assignWidget(m_pFill, "Fill");
    assignWidget(m_pText, "Text");
    assignWidget(m_pEdit, "Edit");
    assignWidget(m_pLess, "Less");
    assignWidget(m_pMore, "More");
    if (m_pFill)
        m_pFill->setNeedMouseFocus(false);
    if (m_pText)
        m_pText->setNeedMouseFocus(false);
    if (m_pLess)
        m_pLess->eventMouseButtonClick += MyGUI::newDelegate(this, &AdvanceEditBox::onArrow);
    if (m_pMore)
        m_pMore->eventMouseButtonClick += MyGUI::newDelegate(this, &AdvanceEditBox::onArrow);
    if (m_pEdit)
    {
        m_pEdit->setVisible(false);
        m_pEdit->m_fnEscape = [this] { endEdit(false); };
        m_pEdit->eventEditSelectAccept += MyGUI::newDelegate(this, &AdvanceEditBox::onAccept);
        m_pEdit->eventKeyButtonPressed += MyGUI::newDelegate(this, &AdvanceEditBox::onKey);
        m_pEdit->eventKeyLostFocus += MyGUI::newDelegate(this, &AdvanceEditBox::onEditLostFocus);
    }
    show();
}

void AdvanceEditBox::shutdownOverride()
{
    m_pFill = nullptr;
    m_pText = nullptr;
    m_pEdit = nullptr;
    m_pLess = nullptr;
    m_pMore = nullptr;
    Widget::shutdownOverride();
}

void AdvanceEditBox::setRange(const NumberRange& range)
{
    m_range = range;
    show();
}

void AdvanceEditBox::setValue(int32_t iValue)
{
    if (iValue == m_iValue)
        return;
    m_iValue = iValue;
    show();
}

void AdvanceEditBox::setSize(const MyGUI::IntSize& size)
{
    Widget::setSize(size);
    show();
}

void AdvanceEditBox::setCoord(const MyGUI::IntCoord& coord)
{
    Widget::setCoord(coord);
    show();
}

void AdvanceEditBox::show()
{
    if (m_pText)
        m_pText->setCaption(std::to_string(m_iValue));
    if (!m_pFill)
        return;
    const int iInner = getWidth() - 2 * m_pFill->getLeft();
    const int iFilled = static_cast<int>(
        std::lround(NumberBoxModel::fraction(m_range, m_iValue) * static_cast<float>(iInner)));
    m_pFill->setVisible(iFilled > 0);
    m_pFill->setSize(iFilled, m_pFill->getHeight());
}

void AdvanceEditBox::change(int32_t iValue)
{
    if (iValue == m_iValue)
        return;
    m_iValue = iValue;
    show();
    if (m_fnChanged)
        m_fnChanged(iValue);
}

void AdvanceEditBox::slideTo(int iX)
{
    const int iInset = m_pFill ? m_pFill->getLeft() : 0;
    const int iInner = std::max(getWidth() - 2 * iInset, 1);
    change(NumberBoxModel::fromFraction(m_range, static_cast<float>(iX - getAbsoluteLeft() - iInset) /
                                                     static_cast<float>(iInner)));
}

void AdvanceEditBox::onMouseButtonPressed(int iX, int iY, MyGUI::MouseButton button)
{
    Widget::onMouseButtonPressed(iX, iY, button);
    if (button != MyGUI::MouseButton::Left || !getInheritedEnabled())
        return;
    m_bPressed = true;
    m_bSliding = false;
    m_iPressX = iX;
}

void AdvanceEditBox::onMouseDrag(int iX, int iY, MyGUI::MouseButton button)
{
    Widget::onMouseDrag(iX, iY, button);
    if (!m_bPressed || button != MyGUI::MouseButton::Left)
        return;
    m_bSliding = m_bSliding || std::abs(iX - m_iPressX) >= GuiMetrics::px(s_iDragStart);
    if (m_bSliding)
        slideTo(iX);
}

void AdvanceEditBox::onMouseButtonReleased(int iX, int iY, MyGUI::MouseButton button)
{
    Widget::onMouseButtonReleased(iX, iY, button);
    if (!m_bPressed || button != MyGUI::MouseButton::Left)
        return;
    m_bPressed = false;
    if (m_bSliding)
        MyGUI::InputManager::getInstance().resetKeyFocusWidget(this);
    else
        beginEdit();
}

void AdvanceEditBox::onMouseSetFocus(MyGUI::Widget* pOld)
{
    Widget::onMouseSetFocus(pOld);
    _setWidgetState("highlighted");
}

void AdvanceEditBox::onMouseLostFocus(MyGUI::Widget* pNew)
{
    Widget::onMouseLostFocus(pNew);
    _setWidgetState("normal");
}

void AdvanceEditBox::beginEdit()
{
    if (!m_pEdit || m_bEditing)
        return;
    m_bEditing = true;
    m_pEdit->setVisible(true);
    m_pText->setVisible(false);
    m_pEdit->setOnlyText(std::to_string(m_iValue));
    MyGUI::InputManager::getInstance().setKeyFocusWidget(m_pEdit);
    m_pEdit->setTextSelection(0, m_pEdit->getTextLength());
}

void AdvanceEditBox::endEdit(bool bTake)
{
    if (!m_pEdit ||
        !std::exchange(m_bEditing, false)) // hiding the box takes its focus, which ends here again
        return;
    const std::optional<int32_t> typed = NumberBoxModel::parse(m_range, std::string(m_pEdit->getOnlyText()));
    m_pEdit->setVisible(false);
    m_pText->setVisible(true);
    MyGUI::InputManager::getInstance().resetKeyFocusWidget(m_pEdit);
    if (bTake && typed)
        change(*typed);
}

/// The number box behind this one in its panel; the first behind the last. Null when it is alone.
AdvanceEditBox* AdvanceEditBox::nextBox()
{
    std::vector<AdvanceEditBox*> vecBoxes;
    for (size_t i = 0; getParent() && i < getParent()->getChildCount(); ++i)
        if (auto* pBox = getParent()->getChildAt(i)->castType<AdvanceEditBox>(false))
            vecBoxes.push_back(pBox);
    const auto itThis = std::find(vecBoxes.begin(), vecBoxes.end(), this);
    if (vecBoxes.size() < 2 || itThis == vecBoxes.end())
        return nullptr;
    return itThis + 1 == vecBoxes.end() ? vecBoxes.front() : *(itThis + 1);
}

void AdvanceEditBox::onArrow(MyGUI::Widget* pSender)
{
    change(NumberBoxModel::step(m_range, m_iValue, pSender == m_pMore ? 1 : -1));
    MyGUI::InputManager::getInstance().resetKeyFocusWidget(pSender);
}

void AdvanceEditBox::onAccept(MyGUI::EditBox*)
{
    endEdit(true);
}

void AdvanceEditBox::onKey(MyGUI::Widget*, MyGUI::KeyCode key, MyGUI::Char)
{
    if (key == MyGUI::KeyCode::Tab)
    {
        if (AdvanceEditBox* pNext = nextBox())
            pNext->beginEdit(); // takes the keyboard, which ends the typing here
    }
    else if (key == MyGUI::KeyCode::ArrowUp || key == MyGUI::KeyCode::ArrowDown)
    {
        change(NumberBoxModel::step(m_range, m_iValue, key == MyGUI::KeyCode::ArrowUp ? 1 : -1));
        m_pEdit->setOnlyText(std::to_string(m_iValue));
        m_pEdit->setTextSelection(0, m_pEdit->getTextLength());
    }
}

void AdvanceEditBox::onEditLostFocus(MyGUI::Widget*, MyGUI::Widget*)
{
    endEdit(true);
}
