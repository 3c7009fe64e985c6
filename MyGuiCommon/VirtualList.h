#pragma once // A list or grid of equal cells, of which only those in view have widgets.

#include <MyGUI_Widget.h>
#include <functional>
#include <vector>

namespace MyGUI
{
class Button;
class ScrollBar;
} // namespace MyGUI

/// What fills a list. Cells are buttons without a handler of their own; what is put on them must not
/// need the mouse. A cell shows one item after the other: set everything anew when it is drawn.
struct VirtualListContent
{
    std::string sCellSkin = "QM_ListCell";
    int iCellWidth = 0; ///< pixels; the cells share the width. 0: one a row
    int iCellHeight = 24;
    std::function<void(MyGUI::Button& cell)> fnCreate;
    std::function<void(MyGUI::Button& cell, size_t uIndex)> fnDraw;

    // Of the user, any may be empty

    std::function<void(size_t uIndex)> fnPress; ///< the left button went down
    std::function<void(size_t uIndex)> fnDoubleClick;
    std::function<void(size_t uIndex)> fnDrag; ///< moved with the left button down; once a press
    std::function<void(size_t uIndex, int iX, int iY)> fnMenu; ///< the right button went up
    std::function<bool(MyGUI::KeyCode key)> fnKey;             ///< true: taken
};

/// Scrolls by the wheel, three rows a notch, by its bar and by showCell(). The skin has children
/// named "Client" and "VScroll". Main thread only.
class VirtualList : public MyGUI::Widget
{
    MYGUI_RTTI_DERIVED(VirtualList)

public:
    void setContent(VirtualListContent content);
    /// Cells stay where they are scrolled to, as far as there are still that many; all in view are
    /// drawn anew.
    void setCount(size_t uCount);
    [[nodiscard]] size_t count() const { return m_uCount; }
    /// All in view.
    void redraw();
    /// Scrolls as little as brings the cell wholly into view.
    void showCell(size_t uIndex);
    [[nodiscard]] int offset() const { return m_iOffset; } ///< pixels
    void setOffset(int iOffset);
    [[nodiscard]] size_t columns() const;
    /// Whole rows in view; at least 1.
    [[nodiscard]] size_t pageRows() const;
    /// The widget that shows an item; null while it is out of view.
    [[nodiscard]] MyGUI::Button* cell(size_t uIndex) const;

    void setSize(const MyGUI::IntSize& size) override;
    void setCoord(const MyGUI::IntCoord& coord) override;
    using MyGUI::Widget::setCoord;
    using MyGUI::Widget::setSize;

protected:
    void initialiseOverride() override;
    void shutdownOverride() override;
    void onMouseWheel(int iDelta) override;
    void onKeyButtonPressed(MyGUI::KeyCode key, MyGUI::Char uChar) override;
    void onKeySetFocus(MyGUI::Widget* pOld) override;
    void onKeyLostFocus(MyGUI::Widget* pNew) override;

private:
    struct Cell
    {
        MyGUI::Button* pButton = nullptr;
        size_t uIndex = s_uNone;
    };
    static constexpr size_t s_uNone = static_cast<size_t>(-1);

    void layOut(bool bRedraw);
    void makeCells(size_t uNeeded);
    [[nodiscard]] int contentHeight() const;
    [[nodiscard]] size_t indexOf(const MyGUI::Widget* pCell) const;
    void onScroll(MyGUI::ScrollBar* pSender, size_t uPosition);
    void onWheel(MyGUI::Widget* pSender, int iDelta);
    void onPress(MyGUI::Widget* pSender, int iX, int iY, MyGUI::MouseButton button);
    void onDrag(MyGUI::Widget* pSender, int iX, int iY, MyGUI::MouseButton button);
    void onRelease(MyGUI::Widget* pSender, int iX, int iY, MyGUI::MouseButton button);
    void onDoubleClick(MyGUI::Widget* pSender);

    VirtualListContent m_content;
    size_t m_uCount = 0;
    int m_iOffset = 0;
    MyGUI::Widget* m_pClient = nullptr;
    MyGUI::ScrollBar* m_pScroll = nullptr;
    std::vector<Cell> m_vecCells; ///< item i is shown by cell i modulo their number
    bool m_bPressed = false;
    MyGUI::IntPoint m_press;
};
