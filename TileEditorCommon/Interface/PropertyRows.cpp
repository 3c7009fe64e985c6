#include "TileEditorCommon/Interface/PropertyRows.h"

#include "MyGuiCommon/EditorButton.h"
#include "MyGuiCommon/FloatEditBox.h"
#include "MyGuiCommon/GuiMetrics.h"
#include "MyGuiCommon/GuiText.h"
#include "MyGuiCommon/GuiTips.h"
#include "MyGuiCommon/MenuEntry.h"

#include <MyGUI_ComboBox.h>
#include <MyGUI_EditBox.h>
#include <MyGUI_Gui.h>
#include <MyGUI_ImageBox.h>
#include <MyGUI_InputManager.h>
#include <MyGUI_LanguageManager.h>

using GuiMetrics::px;

namespace tilebuilder
{

namespace
{

constexpr int s_iRowHeight = 24;
constexpr int s_iLabelWidth = 68;
constexpr int s_iCheckWidth = 24;
constexpr int s_iGap = 4;
constexpr int s_iBarWidth = 2;
constexpr int s_iBarInset = 6;
constexpr float s_fBarAlpha = 0.6f;
constexpr int s_iPictureRow = 76;
constexpr int s_iPicture = 48;

const std::array<MyGUI::Colour, 3> s_arrAxes{
    MyGUI::Colour(0.55f, 1.0f, 0.55f), MyGUI::Colour(0.55f, 0.55f, 1.0f), MyGUI::Colour(1.0f, 1.0f, 0.55f)};

template <class T>
T* make(MyGUI::Widget* pParent, const char* pSkin)
{
    return pParent->createWidget<T>(pSkin, MyGUI::IntCoord(0, 0, px(100), px(s_iRowHeight)),
                                    MyGUI::Align::Default);
}

/// Language tags replaced, colour codes left as text.
std::string shown(std::string_view sText)
{
    return MyGUI::LanguageManager::getInstance().replaceTags(std::string(sText)).asUTF8();
}

} // namespace

PanelRow::PanelRow(const RowHost& host) : m_host(host), m_pRoot(make<MyGUI::Widget>(host.pView, "Default")) {}

PanelRow::~PanelRow()
{
    MyGUI::Gui::getInstance().destroyWidget(m_pRoot);
}

int PanelRow::height() const
{
    return px(s_iRowHeight);
}

void PanelRow::place(const MyGUI::IntCoord& coord)
{
    if (m_pRoot->getCoord() == coord)
        return;
    m_pRoot->setCoord(coord);
    placeParts(coord.width, coord.height);
}

void PanelRow::showLabel(std::string_view sLabel)
{
    m_sLabel = shown(sLabel);
    if (m_sLabel.empty())
        return;
    if (!m_pLabel)
        m_pLabel = make<MyGUI::TextBox>(m_pRoot, "QM_TextDim");
    placeLabel(m_pLabel->getHeight());
}

void PanelRow::placeLabel(int iHeight)
{
    if (!m_pLabel)
        return;
    placeLabel({0, 0, px(s_iLabelWidth - s_iGap), iHeight});
}

void PanelRow::placeLabel(const MyGUI::IntCoord& coord)
{
    m_pLabel->setCoord(coord);
    const bool bShortened = GuiText::fitCaption(*m_pLabel, m_sLabel, m_pLabel->getWidth());
    m_host.pTips->set(m_pLabel, bShortened ? escapeCaption(m_sLabel) : std::string());
}

MyGUI::IntCoord PanelRow::valueCoord(int iWidth, int iHeight) const
{
    const int iLeft = m_sLabel.empty() ? 0 : px(s_iLabelWidth);
    return {iLeft, 0, std::max(iWidth - iLeft, 1), iHeight};
}

// Texts

TextLineRow::TextLineRow(const RowHost& host, const char* pSkin, int iHeight)
    : PanelRow(host),
      m_pText(make<MyGUI::TextBox>(m_pRoot, pSkin)),
      m_iHeight(iHeight)
{
}

int TextLineRow::height() const
{
    return px(m_iHeight);
}

void TextLineRow::show(std::string_view sText)
{
    m_sText = shown(sText);
    placeParts(m_pRoot->getWidth(), m_pRoot->getHeight());
}

void TextLineRow::placeParts(int iWidth, int iHeight)
{
    m_pText->setCoord(0, 0, iWidth, iHeight);
    const bool bShortened = GuiText::fitCaption(*m_pText, m_sText, iWidth);
    m_host.pTips->set(m_pText, bShortened ? escapeCaption(m_sText) : std::string());
}

// Groups

GroupRow::GroupRow(const RowHost& host)
    : PanelRow(host),
      m_pButton(make<MyGUI::Button>(m_pRoot, "QM_ListCell")),
      m_pFold(make<MyGUI::Button>(m_pButton, "QM_Fold")),
      m_pTitle(make<MyGUI::TextBox>(m_pButton, "QM_Header"))
{
    m_pButton->setNeedKeyFocus(false);
    m_pFold->setNeedMouseFocus(false);
    m_pTitle->setNeedMouseFocus(false);
    m_pButton->eventMouseButtonClick += MyGUI::newDelegate(this, &GroupRow::onClick);
}

void GroupRow::setOpen(bool bOpen)
{
    m_pFold->setStateSelected(bOpen);
}

void GroupRow::show(std::string_view sTitle, std::function<void()> fnToggle)
{
    m_fnToggle = std::move(fnToggle);
    m_sLabel = shown(sTitle);
    placeParts(m_pRoot->getWidth(), m_pRoot->getHeight());
}

void GroupRow::placeParts(int iWidth, int iHeight)
{
    m_pButton->setCoord(0, 0, iWidth, iHeight);
    m_pFold->setCoord(0, (iHeight - px(16)) / 2, px(16), px(16));
    m_pTitle->setCoord(px(20), 0, iWidth - px(20), iHeight);
    GuiText::fitCaption(*m_pTitle, m_sLabel, m_pTitle->getWidth());
}

void GroupRow::onClick(MyGUI::Widget*)
{
    const std::function<void()> fnToggle = m_fnToggle;
    if (fnToggle)
        fnToggle();
}

// Text boxes

EditRow::EditRow(const RowHost& host) : PanelRow(host), m_pEdit(make<MyGUI::EditBox>(m_pRoot, "QM_EditBox"))
{
    m_pEdit->eventEditTextChange += MyGUI::newDelegate(this, &EditRow::onText);
    m_pEdit->eventEditSelectAccept += MyGUI::newDelegate(this, &EditRow::onAccept);
    m_pEdit->eventKeySetFocus += MyGUI::newDelegate(this, &EditRow::onFocus);
    m_pEdit->eventKeyLostFocus += MyGUI::newDelegate(this, &EditRow::onLostFocus);
}

void EditRow::show(std::string_view sLabel, std::string_view sValue, TextEdit onEdit)
{
    m_onEdit = std::move(onEdit);
    m_pEdit->setEditReadOnly(!m_onEdit);
    showLabel(sLabel);
    if (!m_bTyping && std::string(m_pEdit->getOnlyText()) != sValue)
        m_pEdit->setOnlyText(std::string(sValue));
}

void EditRow::placeParts(int iWidth, int iHeight)
{
    placeLabel(iHeight);
    m_pEdit->setCoord(valueCoord(iWidth, iHeight));
}

void EditRow::tell(EditPhase ePhase)
{
    const TextEdit onEdit = m_onEdit;
    if (onEdit)
        onEdit(std::string(m_pEdit->getOnlyText()), ePhase);
}

void EditRow::onText(MyGUI::EditBox*)
{
    m_bTyped = true;
    tell(EditPhase::Changing);
}

void EditRow::onAccept(MyGUI::EditBox*)
{
    MyGUI::InputManager::getInstance().resetKeyFocusWidget(m_pEdit);
}

void EditRow::onFocus(MyGUI::Widget*, MyGUI::Widget*)
{
    m_bTyping = true;
    m_bTyped = false;
}

void EditRow::onLostFocus(MyGUI::Widget*, MyGUI::Widget*)
{
    m_bTyping = false;
    if (std::exchange(m_bTyped, false))
        tell(EditPhase::Finished);
}

// Check boxes

CheckRow::CheckRow(const RowHost& host) : PanelRow(host), m_pBox(make<MyGUI::Button>(m_pRoot, "QM_CheckBox"))
{
    m_pBox->setNeedKeyFocus(false);
    m_pBox->eventMouseButtonClick += MyGUI::newDelegate(this, &CheckRow::onClick);
}

void CheckRow::show(std::string_view sLabel, bool bValue, BoolEdit onEdit)
{
    m_onEdit = std::move(onEdit);
    m_pBox->setEnabled(static_cast<bool>(m_onEdit));
    m_pBox->setStateSelected(bValue);
    const bool bNewLabel = !m_pLabel;
    showLabel(sLabel);
    if (bNewLabel && m_pLabel)
        m_pLabel->eventMouseButtonClick += MyGUI::newDelegate(this, &CheckRow::onClick);
    if (m_bPlaced)
        placeParts(m_pRoot->getWidth(), m_pRoot->getHeight());
}

void CheckRow::placeParts(int iWidth, int iHeight)
{
    m_bPlaced = true;
    // The words stand behind the box, where they have more room.
    MyGUI::IntCoord coord = valueCoord(iWidth, iHeight);
    m_pBox->setCoord(coord.left, coord.top, std::min(coord.width, px(s_iCheckWidth)), coord.height);
    coord.left += m_pBox->getWidth();
    coord.width = std::max(iWidth - coord.left, 1);
    if (m_pLabel)
        placeLabel(coord);
}

void CheckRow::onClick(MyGUI::Widget*)
{
    if (!m_pBox->getEnabled())
        return;
    const bool bValue = !m_pBox->getStateSelected();
    m_pBox->setStateSelected(bValue);
    const BoolEdit onEdit = m_onEdit;
    if (onEdit)
        onEdit(bValue);
}

// Numbers

NumbersRow::NumbersRow(const RowHost& host, size_t uCount) : PanelRow(host)
{
    for (size_t i = 0; i < uCount; ++i)
    {
        auto* pBox = make<FloatEditBox>(m_pRoot, "FloatEditBox");
        pBox->setHandler(
            [this, i](double fValue, bool bFinished)
            {
                m_values[i] = static_cast<float>(fValue);
                const std::array<float, 3> values = m_values;
                const Edit onEdit = m_onEdit;
                if (onEdit)
                    onEdit(values, bFinished ? EditPhase::Finished : EditPhase::Changing);
            });
        m_vecBoxes.push_back(pBox);
        if (uCount != 3)
            continue;
        auto* pBar = make<MyGUI::Widget>(m_pRoot, "WhiteSkin"); // over the box, since it comes later
        pBar->setColour(s_arrAxes[i]);
        pBar->setAlpha(s_fBarAlpha);
        pBar->setNeedMouseFocus(false);
        m_vecBars.push_back(pBar);
    }
}

void NumbersRow::show(std::string_view sLabel, const std::array<float, 3>& values, const FloatRange& range,
                      int iDigits, double fPerPixel, Edit onEdit)
{
    m_onEdit = std::move(onEdit);
    m_values = values;
    showLabel(sLabel);
    for (size_t i = 0; i < m_vecBoxes.size(); ++i)
    {
        FloatBoxRange box{.fMin = range.min,
                          .fMax = range.max,
                          .fStep = range.step,
                          .fPerPixel = fPerPixel,
                          .bSlider = range.slider,
                          .iDigits = iDigits};
        m_vecBoxes[i]->setEnabled(static_cast<bool>(m_onEdit));
        m_vecBoxes[i]->setRange(box);
        if (m_vecBoxes[i]->isBusy()) // the user's own number goes on with the edit
            m_values[i] = static_cast<float>(m_vecBoxes[i]->value());
        else
            m_vecBoxes[i]->setValue(values[i]);
    }
}

void NumbersRow::placeParts(int iWidth, int iHeight)
{
    placeLabel(iHeight);
    const MyGUI::IntCoord value = valueCoord(iWidth, iHeight);
    const int iCount = static_cast<int>(m_vecBoxes.size());
    const int iGap = px(s_iGap);
    for (int i = 0; i < iCount; ++i)
    {
        const int iLeft = (value.width + iGap) * i / iCount;
        const int iRight = (value.width + iGap) * (i + 1) / iCount - iGap;
        m_vecBoxes[static_cast<size_t>(i)]->setCoord(value.left + iLeft, 0, iRight - iLeft, iHeight);
        if (!m_vecBars.empty())
            m_vecBars[static_cast<size_t>(i)]->setCoord(value.left + iLeft + px(3), px(s_iBarInset),
                                                        px(s_iBarWidth), iHeight - 2 * px(s_iBarInset));
    }
}

// Choices

ChoiceRow::ChoiceRow(const RowHost& host)
    : PanelRow(host),
      m_pBox(make<MyGUI::ComboBox>(m_pRoot, "QM_ComboBox"))
{
    m_pBox->setComboModeDrop(true);
    m_pBox->setMaxListLength(px(224));
    m_pBox->eventComboAccept += MyGUI::newDelegate(this, &ChoiceRow::onAccept);
}

void ChoiceRow::show(std::string_view sLabel, const std::vector<std::string>& vecOptions, size_t uIndex,
                     ChoiceEdit onEdit)
{
    m_onEdit = std::move(onEdit);
    m_pBox->setEnabled(static_cast<bool>(m_onEdit));
    showLabel(sLabel);
    if (vecOptions != m_vecOptions)
    {
        m_vecOptions = vecOptions;
        m_pBox->removeAllItems();
        for (const std::string& sOption : vecOptions)
            m_pBox->addItem(escapeCaption(shown(sOption)));
        m_uIndex = MyGUI::ITEM_NONE;
        m_pBox->setIndexSelected(m_uIndex);
    }
    if (const size_t uShown = uIndex < vecOptions.size() ? uIndex : MyGUI::ITEM_NONE; uShown != m_uIndex)
    {
        m_uIndex = uShown;
        m_pBox->setIndexSelected(uShown);
    }
}

void ChoiceRow::placeParts(int iWidth, int iHeight)
{
    placeLabel(iHeight);
    m_pBox->setCoord(valueCoord(iWidth, iHeight));
}

void ChoiceRow::onAccept(MyGUI::ComboBox* pSender, size_t uIndex)
{
    MyGUI::InputManager::getInstance().resetKeyFocusWidget(pSender);
    m_uIndex = uIndex;
    const ChoiceEdit onEdit = m_onEdit;
    if (onEdit && uIndex < m_vecOptions.size())
        onEdit(uIndex);
}

// Colours

SwatchRow::SwatchRow(const RowHost& host)
    : PanelRow(host),
      m_pFrame(make<MyGUI::Button>(m_pRoot, "QM_Swatch")),
      m_pColor(make<MyGUI::Widget>(m_pFrame, "WhiteSkin"))
{
    m_pFrame->setNeedKeyFocus(false);
    m_pColor->setNeedMouseFocus(false);
    m_pFrame->eventMouseButtonClick += MyGUI::newDelegate(this, &SwatchRow::onClick);
}

void SwatchRow::show(std::string_view sLabel, const ColorRgba& color, bool bEdited, PanelAction onPress)
{
    m_onPress = std::move(onPress);
    m_pFrame->setEnabled(static_cast<bool>(m_onPress));
    m_pFrame->setStateSelected(bEdited);
    m_pColor->setColour(MyGUI::Colour(color[0], color[1], color[2]));
    showLabel(sLabel);
}

void SwatchRow::placeParts(int iWidth, int iHeight)
{
    placeLabel(iHeight);
    m_pFrame->setCoord(valueCoord(iWidth, iHeight));
    const int iRim = px(3);
    m_pColor->setCoord(iRim, iRim, std::max(m_pFrame->getWidth() - 2 * iRim, 1),
                       std::max(m_pFrame->getHeight() - 2 * iRim, 1));
}

void SwatchRow::onClick(MyGUI::Widget*)
{
    const PanelAction onPress = m_onPress;
    if (onPress)
        onPress();
}

// Buttons

ButtonRow::ButtonRow(const RowHost& host, bool bPicture)
    : PanelRow(host),
      m_pButton(make<EditorButton>(m_pRoot, "QM_SmallButton"))
{
    m_pButton->setNeedKeyFocus(false);
    m_pButton->eventMouseButtonClick += MyGUI::newDelegate(this, &ButtonRow::onClick);
    if (!bPicture)
        return;
    m_pPicture = make<MyGUI::ImageBox>(m_pButton, "QM_Image");
    m_pName = make<MyGUI::TextBox>(m_pButton, "QM_NoteCenter");
    m_pPicture->setNeedMouseFocus(false);
    m_pName->setNeedMouseFocus(false);
}

int ButtonRow::height() const
{
    return px(m_pPicture ? s_iPictureRow : 28);
}

void ButtonRow::show(std::string_view sLabel, const std::string& sPicture, PanelAction onPress)
{
    m_onPress = std::move(onPress);
    m_pButton->setEnabled(static_cast<bool>(m_onPress));
    m_sLabel = shown(sLabel);
    if (m_pPicture)
        m_pPicture->setImageTexture(sPicture);
    placeParts(m_pRoot->getWidth(), m_pRoot->getHeight());
}

void ButtonRow::placeParts(int iWidth, int iHeight)
{
    m_pButton->setCoord(0, 0, iWidth, iHeight);
    MyGUI::TextBox& text = m_pName ? *m_pName : *m_pButton;
    if (m_pPicture)
    {
        m_pPicture->setCoord((iWidth - px(s_iPicture)) / 2, px(4), px(s_iPicture), px(s_iPicture));
        m_pName->setCoord(px(4), px(s_iPicture + 6), std::max(iWidth - px(8), 1), px(18));
    }
    const bool bShortened = GuiText::fitCaption(text, m_sLabel, std::max(iWidth - px(12), 1));
    m_host.pTips->set(m_pButton, bShortened ? escapeCaption(m_sLabel) : std::string());
}

void ButtonRow::onClick(MyGUI::Widget*)
{
    const PanelAction onPress = m_onPress;
    if (onPress)
        onPress();
}

} // namespace tilebuilder
