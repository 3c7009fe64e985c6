#include "TileEditorCommon/Interface/PropertyPanel.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Text.h"
#include "MyGuiCommon/FloatEditBox.h"
#include "MyGuiCommon/GuiMetrics.h"

#include <MyGUI_InputManager.h>
#include <MyGUI_ScrollView.h>
#include <algorithm>
#include <cmath>

using GuiMetrics::px;

namespace tilebuilder
{

namespace
{

constexpr int s_iRowGap = 4;
constexpr int s_iScrollWidth = 14;
constexpr int s_iWheelStep = 56; ///< two rows a notch
constexpr int s_iIndent = 8;
constexpr int s_iHeadingHeight = 24;
constexpr int s_iNoteHeight = 20;
constexpr int s_iDigits = 3;
constexpr double s_fFloatPerPixel = 0.05;
constexpr double s_fIntPerPixel = 0.25;
constexpr const char* s_pPictureFolder = "$GAME_DATA/Gui/Editor/";

FloatRange toFloats(const IntRange& range)
{
    return {.min = static_cast<float>(range.min),
            .max = static_cast<float>(range.max),
            .step = static_cast<float>(std::max(range.step, 1)),
            .slider = range.slider};
}

/// Whole numbers that a float can't hold become the nearest that it can.
int32_t toInt(float fValue)
{
    return static_cast<int32_t>(
        std::clamp(std::round(static_cast<double>(fValue)), -2147483648.0, 2147483647.0));
}

} // namespace

PropertyPanel::PropertyPanel(MyGUI::ScrollView* pView, GuiTips& tips, ColorOpener fnOpenColor)
    : m_pView(pView),
      m_host{pView, &tips},
      m_fnOpenColor(std::move(fnOpenColor))
{
}

PropertyPanel::~PropertyPanel()
{
    for (auto& [sKey, slot] : m_mapRows)
        slot.pRow->silence();
}

template <class Row, class... Arguments>
Row& PropertyPanel::take(char cKind, std::string_view sLabel, Arguments&&... arguments)
{
    QM_ASSERT_TEXT(m_bFilling, "m_bFilling");
    std::string sKey = UTILS::concat(groupPath(), '|', cKind, '|', sLabel);
    sKey += UTILS::concat('|', m_mapEquals[sKey]++);
    Slot& slot = m_mapRows[sKey];
    if (!slot.pRow)
    {
        slot.pRow = std::make_unique<Row>(m_host, std::forward<Arguments>(arguments)...);
        takeWheel(slot.pRow->root());
        for (FloatEditBox* pBox : slot.pRow->boxes())
            pBox->setNextBox([this, pBox]
                             { return boxAfter(pBox, MyGUI::InputManager::getInstance().isShiftPressed()); });
    }
    slot.bGiven = true;
    m_vecEntries.push_back({.pRow = slot.pRow.get(), .uLine = m_uLine, .uGroup = m_uGroup});
    m_sLastKey = std::move(sKey);
    return static_cast<Row&>(*slot.pRow);
}

/// The wheel scrolls the panel wherever in a row the mouse is.
void PropertyPanel::takeWheel(MyGUI::Widget* pWidget)
{
    pWidget->eventMouseWheel += MyGUI::newDelegate(this, &PropertyPanel::onWheel);
    for (size_t i = 0; i < pWidget->getChildCount(); ++i)
        takeWheel(pWidget->getChildAt(i));
}

void PropertyPanel::onWheel(MyGUI::Widget*, int iDelta)
{
    m_pView->setViewOffset({0, m_pView->getViewOffset().top + (iDelta < 0 ? -1 : 1) * px(s_iWheelStep)});
}

std::string PropertyPanel::groupPath() const
{
    return m_uGroup == s_uNone ? std::string() : m_vecGroups[m_uGroup].sPath;
}

void PropertyPanel::begin(uint64_t uSubject)
{
    QM_ASSERT_TEXT(!m_bFilling, "!m_bFilling");
    m_bFilling = true;
    if (uSubject != m_uSubject)
    {
        for (auto& [sKey, slot] : m_mapRows)
            slot.pRow->silence();
        m_mapRows.clear();
        m_sColorKey.clear();
    }
    m_uSubject = uSubject;
    for (auto& [sKey, slot] : m_mapRows)
        slot.bGiven = false;
    m_vecEntries.clear();
    m_vecGroups.clear();
    m_mapEquals.clear();
    m_uGroup = s_uNone;
    m_uLine = 0;
}

void PropertyPanel::end()
{
    QM_ASSERT_TEXT(m_bFilling && m_uGroup == s_uNone && m_uLine == 0, "m_vecGroups.empty()");
    m_bFilling = false;
    for (auto it = m_mapRows.begin(); it != m_mapRows.end();)
    {
        if (it->second.bGiven)
        {
            ++it;
            continue;
        }
        it->second.pRow->silence();
        it = m_mapRows.erase(it);
    }
    place();
}

/// Finds how deep each row stands and whether a group around it is closed.
void PropertyPanel::fold()
{
    for (Entry& entry : m_vecEntries)
    {
        entry.bShown = true;
        entry.iDepth = 0;
        size_t uGroup = entry.uGroup;
        if (entry.bTitle)
        {
            static_cast<GroupRow&>(*entry.pRow).setOpen(isOpen(uGroup));
            uGroup = m_vecGroups[uGroup].uParent;
        }
        for (; uGroup != s_uNone; uGroup = m_vecGroups[uGroup].uParent)
        {
            ++entry.iDepth;
            entry.bShown &= isOpen(uGroup);
        }
    }
}

bool PropertyPanel::isOpen(size_t uGroup) const
{
    const auto it = m_mapOpen.find(m_vecGroups[uGroup].sPath);
    return it == m_mapOpen.end() || it->second;
}

void PropertyPanel::place()
{
    fold();
    // The same with and without a scroll bar, so that nothing moves when it comes.
    const int iWidth = m_pView->getWidth() - px(s_iScrollWidth);
    int iTop = 0;
    for (size_t i = 0; i < m_vecEntries.size();)
    {
        // The rows of a line, or one row.
        size_t uEnd = i + 1;
        while (m_vecEntries[i].uLine != 0 && uEnd < m_vecEntries.size() &&
               m_vecEntries[uEnd].uLine == m_vecEntries[i].uLine)
            ++uEnd;
        const int iLeft = std::max(m_vecEntries[i].iDepth - 1, 0) * px(s_iIndent);
        const int iCount = static_cast<int>(uEnd - i);
        const int iGap = px(s_iRowGap);
        int iHeight = 0;
        for (size_t u = i; u < uEnd; ++u)
            iHeight = std::max(iHeight, m_vecEntries[u].pRow->height());
        for (size_t u = i; u < uEnd; ++u)
        {
            const Entry& entry = m_vecEntries[u];
            const int iPlace = static_cast<int>(u - i);
            const int iFrom = (iWidth - iLeft + iGap) * iPlace / iCount;
            const int iTo = (iWidth - iLeft + iGap) * (iPlace + 1) / iCount - iGap;
            entry.pRow->root()->setVisible(entry.bShown);
            if (entry.bShown)
                entry.pRow->place({iLeft + iFrom, iTop, iTo - iFrom, iHeight});
        }
        if (m_vecEntries[i].bShown)
            iTop += iHeight + iGap;
        i = uEnd;
    }
    m_pView->setCanvasSize(iWidth, iTop);
}

void PropertyPanel::update()
{
    // The groups around the row that the mouse is over.
    std::vector<std::string> vecHovered;
    for (MyGUI::Widget* pWidget = MyGUI::InputManager::getInstance().getMouseFocusWidget(); pWidget;
         pWidget = pWidget->getParent())
        for (const Entry& entry : m_vecEntries)
            if (entry.pRow->root() == pWidget)
                for (size_t u = entry.uGroup; u != s_uNone; u = m_vecGroups[u].uParent)
                    vecHovered.insert(vecHovered.begin(), m_vecGroups[u].sPath);
    if (vecHovered == m_vecHovered)
        return;
    const std::vector<std::string> vecOld = std::exchange(m_vecHovered, vecHovered);
    std::vector<std::pair<HoverAction, bool>> vecCalls; // a callback may fill the panel
    for (const Group& group : m_vecGroups)
    {
        const bool bWas = std::find(vecOld.begin(), vecOld.end(), group.sPath) != vecOld.end();
        const bool bIs = std::find(vecHovered.begin(), vecHovered.end(), group.sPath) != vecHovered.end();
        if (group.onHover && bWas != bIs)
            vecCalls.emplace_back(group.onHover, bIs);
    }
    for (const auto& [onHover, bInside] : vecCalls)
        onHover(bInside);
}

/// The number box that Tab leads to: the next one of the panel that is shown, around the end.
FloatEditBox* PropertyPanel::boxAfter(const FloatEditBox* pBox, bool bBackwards) const
{
    std::vector<FloatEditBox*> vecBoxes;
    for (const Entry& entry : m_vecEntries)
        if (entry.bShown)
            for (FloatEditBox* pOther : entry.pRow->boxes())
                if (pOther->getInheritedEnabled() || pOther == pBox)
                    vecBoxes.push_back(pOther);
    const auto it = std::find(vecBoxes.begin(), vecBoxes.end(), pBox);
    if (it == vecBoxes.end())
        return nullptr;
    const auto uPlace = static_cast<size_t>(it - vecBoxes.begin());
    return vecBoxes[(uPlace + (bBackwards ? vecBoxes.size() - 1 : 1)) % vecBoxes.size()];
}

// Structure

void PropertyPanel::heading(std::string_view sText)
{
    take<TextLineRow>('H', {}, "QM_TitleText", s_iHeadingHeight).show(sText);
}

void PropertyPanel::beginGroup(std::string_view sKey, std::string_view sTitle, bool bOpenAtFirst,
                               HoverAction onHover)
{
    Group group{
        .sPath = UTILS::concat(groupPath(), '/', sKey), .uParent = m_uGroup, .onHover = std::move(onHover)};
    m_mapOpen.try_emplace(group.sPath, bOpenAtFirst);
    m_vecGroups.push_back(std::move(group));
    m_uGroup = m_vecGroups.size() - 1;
    take<GroupRow>('G', {}).show(sTitle,
                                 [this, sPath = m_vecGroups.back().sPath]
                                 {
                                     m_mapOpen[sPath] = !m_mapOpen[sPath];
                                     place();
                                 });
    m_vecEntries.back().bTitle = true;
}

void PropertyPanel::endGroup()
{
    if (QM_ASSERT_TEXT(m_uGroup != s_uNone, "m_uGroup != s_uNone"))
        m_uGroup = m_vecGroups[m_uGroup].uParent;
}

void PropertyPanel::beginLine()
{
    if (QM_ASSERT_TEXT(m_uLine == 0, "m_uLine == 0"))
        m_uLine = ++m_uLines;
}

void PropertyPanel::endLine()
{
    QM_ASSERT_TEXT(m_uLine != 0, "m_uLine != 0");
    m_uLine = 0;
}

// Rows

void PropertyPanel::label(std::string_view sText)
{
    take<TextLineRow>('L', {}, "QM_TextDim", s_iNoteHeight).show(sText);
}

void PropertyPanel::text(std::string_view sLabel, std::string_view sValue, TextEdit onEdit)
{
    take<EditRow>('T', sLabel).show(sLabel, sValue, std::move(onEdit));
}

void PropertyPanel::check(std::string_view sLabel, bool bValue, BoolEdit onEdit)
{
    take<CheckRow>('C', sLabel).show(sLabel, bValue, std::move(onEdit));
}

void PropertyPanel::intNumber(std::string_view sLabel, int32_t iValue, const IntRange& range, IntEdit onEdit)
{
    NumbersRow::Edit onNumbers;
    if (onEdit)
        onNumbers = [onEdit = std::move(onEdit)](const std::array<float, 3>& values, EditPhase ePhase)
        { onEdit(toInt(values[0]), ePhase); };
    take<NumbersRow>('I', sLabel, size_t{1})
        .show(sLabel, {static_cast<float>(iValue)}, toFloats(range), 0, s_fIntPerPixel, std::move(onNumbers));
}

void PropertyPanel::floatNumber(std::string_view sLabel, float fValue, const FloatRange& range,
                                FloatEdit onEdit)
{
    NumbersRow::Edit onNumbers;
    if (onEdit)
        onNumbers = [onEdit = std::move(onEdit)](const std::array<float, 3>& values, EditPhase ePhase)
        { onEdit(values[0], ePhase); };
    take<NumbersRow>('F', sLabel, size_t{1})
        .show(sLabel, {fValue}, range, s_iDigits, s_fFloatPerPixel, std::move(onNumbers));
}

void PropertyPanel::triple(std::string_view sLabel, const std::array<float, 3>& value,
                           const FloatRange& range, TripleEdit onEdit)
{
    take<NumbersRow>('3', sLabel, size_t{3})
        .show(sLabel, value, range, s_iDigits, s_fFloatPerPixel, std::move(onEdit));
}

void PropertyPanel::choice(std::string_view sLabel, const std::vector<std::string>& vecOptions, size_t uIndex,
                           ChoiceEdit onEdit)
{
    take<ChoiceRow>('O', sLabel).show(sLabel, vecOptions, uIndex, std::move(onEdit));
}

void PropertyPanel::swatch(std::string_view sLabel, const ColorRgba& color, bool bAlpha, ColorEdit onEdit)
{
    auto& row = take<SwatchRow>('S', sLabel);
    const std::string sKey = m_sLastKey;
    PanelAction onPress;
    if (onEdit && m_fnOpenColor)
        onPress = [this, sKey, color, bAlpha, onEdit = std::move(onEdit)]
        {
            const ColorOpener fnOpen = m_fnOpenColor;
            fnOpen(color, bAlpha, onEdit);
            m_sColorKey = sKey;
        };
    row.show(sLabel, color, sKey == m_sColorKey, std::move(onPress));
}

void PropertyPanel::button(std::string_view sLabel, PanelAction onPress)
{
    take<ButtonRow>('B', sLabel, false).show(sLabel, {}, std::move(onPress));
}

void PropertyPanel::pictureButton(std::string_view sLabel, std::string_view sPicture, PanelAction onPress)
{
    const bool bBare = sPicture.find('/') == std::string_view::npos;
    take<ButtonRow>('P', sLabel, true)
        .show(sLabel, bBare ? s_pPictureFolder + std::string(sPicture) : std::string(sPicture),
              std::move(onPress));
}

void PropertyPanel::dataView(std::string_view sKey, DynamicData::Value&, const DynamicData::Value*,
                             const DynamicTemplate*, DataEdit)
{
    take<TextLineRow>('D', sKey, "QM_TextDim", s_iNoteHeight)
        .show(UTILS::concat(sKey, " can't be edited here yet."));
}

} // namespace tilebuilder
