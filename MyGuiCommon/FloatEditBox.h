#pragma once // A box for a number with a fraction.

#include "MyGuiCommon/AdvanceEditBox.h"

/// What a number may be, and how dragging changes it.
struct FloatBoxRange
{
    double fMin = -1e30;
    double fMax = 1e30;
    double fStep = 0.0;      ///< values are whole multiples of it; 0: any value
    double fPerPixel = 0.05; ///< of a drag; a tenth of it with Shift
    bool bSlider = false;    ///< the place along the box is the value, and is filled so far
    int iDigits = 3;         ///< shown behind the point, as far as there is room
};

/// Drag along the box to change the number, click it to type. Enter, Tab or a click elsewhere takes the
/// typed number, Escape drops it; while typing the arrow keys step by 1, and Tab goes on to the
/// next box of the panel. Escape during a drag brings the old number back.
///
/// The skin has children named "Fill", "Text" and "Edit".
class FloatEditBox : public MyGUI::Widget
{
    MYGUI_RTTI_DERIVED(FloatEditBox)

public:
    void setRange(const FloatBoxRange& range);
    /// Shows a value; calls nobody. While the user drags or types it is only kept in mind.
    void setValue(double fValue);
    [[nodiscard]] double value() const { return m_fValue; }
    /// The user drags or types.
    [[nodiscard]] bool isBusy() const { return m_bEditing || m_bDragging; }

    /// Called for each change by the user; bFinished with the last one of a drag or of typing.
    void setHandler(std::function<void(double fValue, bool bFinished)> fnChanged)
    {
        m_fnChanged = std::move(fnChanged);
    }
    /// Where Tab goes; none: out of the box.
    void setNextBox(std::function<FloatEditBox*()> fnNext) { m_fnNext = std::move(fnNext); }
    void beginEdit();

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
    void onKeyButtonPressed(MyGUI::KeyCode key, MyGUI::Char uChar) override;

private:
    [[nodiscard]] double allowed(double fValue) const;
    void change(double fValue);
    void finish(double fValue);
    void show();
    void dragTo(int iX);
    void endEdit(bool bTake);
    void onAccept(MyGUI::EditBox* pSender);
    void onKey(MyGUI::Widget* pSender, MyGUI::KeyCode key, MyGUI::Char uChar);
    void onEditLostFocus(MyGUI::Widget* pSender, MyGUI::Widget* pNew);

    FloatBoxRange m_range;
    double m_fValue = 0.0;
    double m_fBefore = 0.0; ///< when the drag or the typing began
    std::function<void(double, bool)> m_fnChanged;
    std::function<FloatEditBox*()> m_fnNext;
    MyGUI::Widget* m_pFill = nullptr;
    MyGUI::TextBox* m_pText = nullptr;
    NumberEdit* m_pEdit = nullptr;
    int m_iPressX = 0;
    int m_iLastX = 0;
    double m_fDragged = 0.0; ///< the value of the drag before it is rounded
    bool m_bPressed = false;
    bool m_bDragging = false;
    bool m_bEditing = false;
};
