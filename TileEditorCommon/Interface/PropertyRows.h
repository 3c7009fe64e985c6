#pragma once // The rows of a properties panel as widgets.

#include "TileEditorCommon/Contracts/PropertyPanelI.h"

#include <MyGUI_Prerequest.h>
#include <MyGUI_Types.h>
#include <memory>

class EditorButton;
class FloatEditBox;
class GuiTips;

namespace tilebuilder
{

/// What rows share: the view that they stand in, and where tips are shown.
struct RowHost
{
    MyGUI::Widget* pView = nullptr;
    GuiTips* pTips = nullptr;
};

/// One row and its widgets, which it owns. Show() functions set the value and the callback anew;
/// while the user is in the row the value stays. Handlers copy their callback before they call it,
/// since it may fill the panel and destroy the row.
class PanelRow
{
public:
    explicit PanelRow(const RowHost& host);
    virtual ~PanelRow();
    PanelRow(const PanelRow&) = delete;
    PanelRow& operator=(const PanelRow&) = delete;

    [[nodiscard]] MyGUI::Widget* root() const { return m_pRoot; }
    /// Pixels.
    [[nodiscard]] virtual int height() const;
    void place(const MyGUI::IntCoord& coord);
    /// Number boxes in the order of Tab.
    [[nodiscard]] virtual std::vector<FloatEditBox*> boxes() const { return {}; }
    /// No callback is made from here on.
    virtual void silence() = 0;

protected:
    virtual void placeParts(int iWidth, int iHeight) = 0;
    /// Shows the label and returns where the value begins.
    void showLabel(std::string_view sLabel);
    [[nodiscard]] MyGUI::IntCoord valueCoord(int iWidth, int iHeight) const;
    /// The label before the value, shortened to its column.
    void placeLabel(int iHeight);
    void placeLabel(const MyGUI::IntCoord& coord); ///< there must be one

    RowHost m_host;
    MyGUI::Widget* m_pRoot;
    MyGUI::TextBox* m_pLabel = nullptr;
    std::string m_sLabel;
};

/// A title, or a note, over the whole width.
class TextLineRow : public PanelRow
{
public:
    TextLineRow(const RowHost& host, const char* pSkin, int iHeight);
    void show(std::string_view sText);
    [[nodiscard]] int height() const override;
    void silence() override {}

protected:
    void placeParts(int iWidth, int iHeight) override;

private:
    MyGUI::TextBox* m_pText;
    std::string m_sText;
    int m_iHeight;
};

class GroupRow : public PanelRow
{
public:
    explicit GroupRow(const RowHost& host);
    void show(std::string_view sTitle, std::function<void()> fnToggle);
    void setOpen(bool bOpen);
    void silence() override { m_fnToggle = {}; }

protected:
    void placeParts(int iWidth, int iHeight) override;

private:
    void onClick(MyGUI::Widget* pSender);

    MyGUI::Button* m_pButton;
    MyGUI::Button* m_pFold;
    MyGUI::TextBox* m_pTitle;
    std::function<void()> m_fnToggle;
};

class EditRow : public PanelRow
{
public:
    explicit EditRow(const RowHost& host);
    void show(std::string_view sLabel, std::string_view sValue, TextEdit onEdit);
    void silence() override { m_onEdit = {}; }

protected:
    void placeParts(int iWidth, int iHeight) override;

private:
    void tell(EditPhase ePhase);
    void onText(MyGUI::EditBox* pSender);
    void onAccept(MyGUI::EditBox* pSender);
    void onFocus(MyGUI::Widget* pSender, MyGUI::Widget* pOld);
    void onLostFocus(MyGUI::Widget* pSender, MyGUI::Widget* pNew);

    MyGUI::EditBox* m_pEdit;
    TextEdit m_onEdit;
    bool m_bTyping = false;
    bool m_bTyped = false; ///< since the keyboard came
};

class CheckRow : public PanelRow
{
public:
    explicit CheckRow(const RowHost& host);
    void show(std::string_view sLabel, bool bValue, BoolEdit onEdit);
    void silence() override { m_onEdit = {}; }

protected:
    void placeParts(int iWidth, int iHeight) override;

private:
    void onClick(MyGUI::Widget* pSender);

    MyGUI::Button* m_pBox;
    BoolEdit m_onEdit;
    bool m_bPlaced = false;
};

/// One number or three side by side; of three, a bar in its axis' colour tells each.
class NumbersRow : public PanelRow
{
public:
    using Edit = std::function<void(const std::array<float, 3>& values, EditPhase ePhase)>;

    NumbersRow(const RowHost& host, size_t uCount);
    void show(std::string_view sLabel, const std::array<float, 3>& values, const FloatRange& range,
              int iDigits, double fPerPixel, Edit onEdit);
    [[nodiscard]] std::vector<FloatEditBox*> boxes() const override { return m_vecBoxes; }
    void silence() override { m_onEdit = {}; }

protected:
    void placeParts(int iWidth, int iHeight) override;

private:
    std::vector<FloatEditBox*> m_vecBoxes;
    std::vector<MyGUI::Widget*> m_vecBars;
    std::array<float, 3> m_values{};
    Edit m_onEdit;
};

class ChoiceRow : public PanelRow
{
public:
    explicit ChoiceRow(const RowHost& host);
    void show(std::string_view sLabel, const std::vector<std::string>& vecOptions, size_t uIndex,
              ChoiceEdit onEdit);
    void silence() override { m_onEdit = {}; }

protected:
    void placeParts(int iWidth, int iHeight) override;

private:
    void onAccept(MyGUI::ComboBox* pSender, size_t uIndex);

    MyGUI::ComboBox* m_pBox;
    std::vector<std::string> m_vecOptions;
    size_t m_uIndex = 0;
    ChoiceEdit m_onEdit;
};

class SwatchRow : public PanelRow
{
public:
    explicit SwatchRow(const RowHost& host);
    void show(std::string_view sLabel, const ColorRgba& color, bool bEdited, PanelAction onPress);
    void silence() override { m_onPress = {}; }

protected:
    void placeParts(int iWidth, int iHeight) override;

private:
    void onClick(MyGUI::Widget* pSender);

    MyGUI::Button* m_pFrame;
    MyGUI::Widget* m_pColor;
    PanelAction m_onPress;
};

/// With a picture over its label, or without.
class ButtonRow : public PanelRow
{
public:
    ButtonRow(const RowHost& host, bool bPicture);
    void show(std::string_view sLabel, const std::string& sPicture, PanelAction onPress);
    [[nodiscard]] int height() const override;
    void silence() override { m_onPress = {}; }

protected:
    void placeParts(int iWidth, int iHeight) override;

private:
    void onClick(MyGUI::Widget* pSender);

    EditorButton* m_pButton;
    MyGUI::ImageBox* m_pPicture = nullptr;
    MyGUI::TextBox* m_pName = nullptr;
    PanelAction m_onPress;
};

} // namespace tilebuilder
