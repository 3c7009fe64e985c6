#pragma once // Chooses a colour by area, hue bar, numbers and hex text.

#include "MyGuiCommon/ColorModel.h"

#include <MyGUI_MouseButton.h>
#include <MyGUI_Prerequest.h>
#include <functional>

class AdvanceEditBox;
class GuiTips;
class NumberEdit;

/// Fills a widget from its top on: an area of saturation and value, a bar of hues, a row for each
/// channel, and the hex text beside a swatch. Main thread only.
class ColorEditor
{
public:
    /// All are borrowed; the widgets are the view's.
    ColorEditor(MyGUI::Widget* pView, GuiTips& tips);
    ColorEditor(const ColorEditor&) = delete;
    ColorEditor& operator=(const ColorEditor&) = delete;

    /// Called for each change by the user.
    void setHandler(std::function<void()> fnChanged) { m_fnChanged = std::move(fnChanged); }

    [[nodiscard]] const ColorModel::Rgba& color() const { return m_model.color(); }
    /// Shows a colour; calls nobody. Text that is being typed stays.
    void setColor(const ColorModel::Rgba& color);
    /// Whether alpha can be chosen; at first not.
    void setAlphaShown(bool bShown);
    /// Pixels that the rows take.
    [[nodiscard]] int neededHeight() const;

private:
    void makeArea();
    void makeRows(GuiTips& tips);
    void placeRows();
    void paintArea();
    void show();
    void changed();
    void onArea(MyGUI::Widget* pSender, int iX, int iY, MyGUI::MouseButton button);
    void onHue(MyGUI::Widget* pSender, int iX, int iY, MyGUI::MouseButton button);
    void onHexAccept(MyGUI::EditBox* pSender);
    void onHexFocus(MyGUI::Widget* pSender, MyGUI::Widget* pOld);
    void onHexReleased(MyGUI::Widget* pSender, int iX, int iY, MyGUI::MouseButton button);
    void onHexLostFocus(MyGUI::Widget* pSender, MyGUI::Widget* pNew);
    void takeHex();

    MyGUI::Widget* m_pView;
    ColorModel m_model;
    std::function<void()> m_fnChanged;
    bool m_bAlpha = false;
    bool m_bTyping = false;    ///< the hex text has the keyboard
    bool m_bSelectAll = false; ///< the press that gave it the keyboard isn't over
    float m_fShownHue = -1.0f; ///< that the area is painted with
    MyGUI::ImageBox* m_pArea = nullptr;
    MyGUI::ImageBox* m_pHue = nullptr;
    MyGUI::ImageBox* m_pAreaMark = nullptr;
    MyGUI::ImageBox* m_pHueMark = nullptr;
    std::array<MyGUI::TextBox*, 5> m_arrLabels{}; ///< the channels' and that of the hex text
    std::array<AdvanceEditBox*, 4> m_arrChannels{};
    NumberEdit* m_pHex = nullptr;
    MyGUI::ImageBox* m_pSwatch = nullptr;
};
