#include "Tests/Support/RecordingPanel.h"

#include <gtest/gtest.h>

using namespace tilebuilder;

namespace
{

std::string numbersText(std::span<const float> spanNumbers)
{
    std::string sText;
    for (const float fNumber : spanNumbers)
    {
        char arrText[32];
        std::snprintf(arrText, sizeof(arrText), "%g", static_cast<double>(fNumber));
        sText += (sText.empty() ? "" : " ") + std::string(arrText);
    }
    return sText;
}

} // namespace

const RecordingPanel::Row* RecordingPanel::find(std::string_view sLabel) const
{
    for (const Row& row : m_vecRows)
        if (row.sLabel == sLabel && row.eKind != Kind::EndGroup)
            return &row;
    return nullptr;
}

std::string RecordingPanel::value(std::string_view sLabel) const
{
    const Row* pRow = find(sLabel);
    return pRow ? pRow->sValue : "(no row)";
}

std::string RecordingPanel::dump() const
{
    static constexpr const char* s_arrKinds[] = {"heading", "group",  "end",     "label",  "text",
                                                 "check",   "int",    "float",   "triple", "choice",
                                                 "swatch",  "button", "picture", "data"};
    std::string sDump;
    size_t uDepth = 0;
    for (const Row& row : m_vecRows)
    {
        if (row.eKind == Kind::EndGroup)
        {
            --uDepth;
            continue;
        }
        sDump += std::string(uDepth * 2, ' ') + s_arrKinds[static_cast<size_t>(row.eKind)];
        sDump += row.sLabel.empty() ? "" : " " + row.sLabel;
        sDump += row.sValue.empty() ? "\n" : " = " + row.sValue + "\n";
        uDepth += row.eKind == Kind::Group;
    }
    return sDump;
}

template <class Callback, class... Arguments>
void RecordingPanel::call(std::string_view sLabel, Arguments... arguments)
{
    const Row* pRow = find(sLabel);
    ASSERT_TRUE(pRow) << "no row '" << sLabel << "' in\n" << dump();
    const Callback* pCallback = std::get_if<Callback>(&pRow->callback);
    ASSERT_TRUE(pCallback) << "row '" << sLabel << "' is of another kind";
    if (const Callback fnCopy = *pCallback)
        fnCopy(arguments...);
}

void RecordingPanel::press(std::string_view sLabel)
{
    call<PanelAction>(sLabel);
}
void RecordingPanel::set(std::string_view sLabel, bool bValue)
{
    call<BoolEdit>(sLabel, bValue);
}
void RecordingPanel::set(std::string_view sLabel, const char* pValue)
{
    call<TextEdit>(sLabel, std::string(pValue), EditPhase::Finished);
}
void RecordingPanel::set(std::string_view sLabel, int32_t iValue)
{
    call<IntEdit>(sLabel, iValue, EditPhase::Finished);
}
void RecordingPanel::set(std::string_view sLabel, float fValue)
{
    call<FloatEdit>(sLabel, fValue, EditPhase::Finished);
}
void RecordingPanel::set(std::string_view sLabel, const std::array<float, 3>& value)
{
    call<TripleEdit>(sLabel, value, EditPhase::Finished);
}
void RecordingPanel::set(std::string_view sLabel, const ColorRgba& color)
{
    call<ColorEdit>(sLabel, color, EditPhase::Finished);
}
void RecordingPanel::edited(std::string_view sKey)
{
    call<DataEdit>(sKey, EditPhase::Finished);
}
void RecordingPanel::hover(std::string_view sGroup, bool bInside)
{
    call<HoverAction>(sGroup, bInside);
}

void RecordingPanel::choose(std::string_view sLabel, std::string_view sOption)
{
    const Row* pRow = find(sLabel);
    ASSERT_TRUE(pRow) << "no row '" << sLabel << "' in\n" << dump();
    const auto iterOption = std::ranges::find(pRow->vecOptions, sOption);
    ASSERT_NE(iterOption, pRow->vecOptions.end()) << "no option '" << sOption << "'";
    call<ChoiceEdit>(sLabel, static_cast<size_t>(iterOption - pRow->vecOptions.begin()));
}

void RecordingPanel::drag(std::string_view sLabel, const std::vector<float>& vecValues)
{
    for (const float fValue : vecValues)
        call<FloatEdit>(sLabel, fValue, EditPhase::Changing);
    call<FloatEdit>(sLabel, vecValues.back(), EditPhase::Finished);
}

// PropertyPanelI

RecordingPanel::Row& RecordingPanel::add(Kind eKind, std::string_view sLabel, std::string sValue)
{
    m_bFault |= !m_bOpen;
    std::string sGroups;
    for (const std::string& sGroup : m_vecGroups)
        sGroups += (sGroups.empty() ? "" : "/") + sGroup;
    Row& row = m_vecRows.emplace_back(Row{eKind, std::string(sLabel), std::move(sValue), std::move(sGroups)});
    row.bInLine = m_bLine;
    return row;
}

void RecordingPanel::begin(uint64_t)
{
    m_bFault |= m_bOpen;
    m_vecRows.clear();
    m_bOpen = true;
}
void RecordingPanel::end()
{
    m_bFault |= !m_bOpen || m_bLine || !m_vecGroups.empty();
    m_bOpen = false;
}
void RecordingPanel::heading(std::string_view sText)
{
    add(Kind::Heading, sText, {});
}
void RecordingPanel::beginGroup(std::string_view sKey, std::string_view sTitle, bool, HoverAction onHover)
{
    add(Kind::Group, sTitle, {}).callback = std::move(onHover);
    m_vecGroups.emplace_back(sKey);
}
void RecordingPanel::endGroup()
{
    m_bFault |= m_vecGroups.empty();
    if (!m_vecGroups.empty())
        m_vecGroups.pop_back();
    add(Kind::EndGroup, {}, {});
}
void RecordingPanel::beginLine()
{
    m_bFault |= m_bLine;
    m_bLine = true;
}
void RecordingPanel::endLine()
{
    m_bFault |= !m_bLine;
    m_bLine = false;
}
void RecordingPanel::label(std::string_view sText)
{
    add(Kind::Label, sText, {});
}
void RecordingPanel::text(std::string_view sLabel, std::string_view sValue, TextEdit onEdit)
{
    add(Kind::Text, sLabel, std::string(sValue)).callback = std::move(onEdit);
}
void RecordingPanel::check(std::string_view sLabel, bool bValue, BoolEdit onEdit)
{
    add(Kind::Check, sLabel, bValue ? "on" : "off").callback = std::move(onEdit);
}
void RecordingPanel::intNumber(std::string_view sLabel, int32_t iValue, const IntRange& range, IntEdit onEdit)
{
    Row& row = add(Kind::Int, sLabel, std::to_string(iValue));
    row.intRange = range;
    row.callback = std::move(onEdit);
}
void RecordingPanel::floatNumber(std::string_view sLabel, float fValue, const FloatRange& range,
                                 FloatEdit onEdit)
{
    Row& row = add(Kind::Float, sLabel, numbersText({&fValue, 1}));
    row.floatRange = range;
    row.callback = std::move(onEdit);
}
void RecordingPanel::triple(std::string_view sLabel, const std::array<float, 3>& value,
                            const FloatRange& range, TripleEdit onEdit)
{
    Row& row = add(Kind::Triple, sLabel, numbersText(value));
    row.floatRange = range;
    row.callback = std::move(onEdit);
}
void RecordingPanel::choice(std::string_view sLabel, const std::vector<std::string>& vecOptions,
                            size_t uIndex, ChoiceEdit onEdit)
{
    Row& row = add(Kind::Choice, sLabel, uIndex < vecOptions.size() ? vecOptions[uIndex] : "(none)");
    row.vecOptions = vecOptions;
    row.callback = std::move(onEdit);
}
void RecordingPanel::swatch(std::string_view sLabel, const ColorRgba& color, bool, ColorEdit onEdit)
{
    add(Kind::Swatch, sLabel, numbersText(color)).callback = std::move(onEdit);
}
void RecordingPanel::button(std::string_view sLabel, PanelAction onPress)
{
    add(Kind::Button, sLabel, {}).callback = std::move(onPress);
}
void RecordingPanel::pictureButton(std::string_view sLabel, std::string_view sPicture, PanelAction onPress)
{
    add(Kind::Picture, sLabel, std::string(sPicture)).callback = std::move(onPress);
}
void RecordingPanel::dataView(std::string_view sKey, DynamicData::Value& tree,
                              const DynamicData::Value* pBaseline, const DynamicTemplate* pTemplate,
                              DataEdit onEdit)
{
    Row& row = add(Kind::DataView, sKey, {});
    row.pTree = &tree;
    row.pBaseline = pBaseline;
    row.pTemplate = pTemplate;
    row.callback = std::move(onEdit);
}
