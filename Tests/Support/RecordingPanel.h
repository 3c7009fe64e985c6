#pragma once // A properties panel without widgets: rows that tests read, press and set.

#include "TileEditorCommon/Contracts/PropertyPanelI.h"

#include <variant>

/// Keeps the rows of the last filling. Rows are found by label, the first of that name counts; a test that
/// asks for a row that isn't there fails. Callbacks run on a copy, so that they may fill the panel anew.
class RecordingPanel : public tilebuilder::PropertyPanelI
{
public:
    enum class Kind
    {
        Heading,
        Group,
        EndGroup,
        Label,
        Text,
        Check,
        Int,
        Float,
        Triple,
        Choice,
        Swatch,
        Button,
        Picture,
        DataView,
    };

    struct Row
    {
        Kind eKind;
        std::string sLabel;  ///< of a group its title, of a data view its key
        std::string sValue;  ///< as text
        std::string sGroups; ///< keys of the groups around it, with '/' between
        tilebuilder::FloatRange floatRange{};
        tilebuilder::IntRange intRange{};
        std::vector<std::string> vecOptions{};
        bool bInLine = false;
        std::variant<std::monostate, tilebuilder::BoolEdit, tilebuilder::TextEdit, tilebuilder::IntEdit,
                     tilebuilder::FloatEdit, tilebuilder::TripleEdit, tilebuilder::ColorEdit,
                     tilebuilder::ChoiceEdit, tilebuilder::PanelAction, tilebuilder::DataEdit>
            callback{};
        DynamicData::Value* pTree = nullptr;
        const DynamicData::Value* pBaseline = nullptr;
        const DynamicTemplate* pTemplate = nullptr;
    };

    // What a test asks

    /// Null when there is none.
    [[nodiscard]] const Row* find(std::string_view sLabel) const;
    [[nodiscard]] const std::vector<Row>& rows() const { return m_vecRows; }
    /// The value as text; "(no row)" without one.
    [[nodiscard]] std::string value(std::string_view sLabel) const;
    /// A line a row: kind, label, value, indented by group.
    [[nodiscard]] std::string dump() const;
    /// Groups, lines and fillings were all ended.
    [[nodiscard]] bool isBalanced() const { return m_vecGroups.empty() && !m_bLine && !m_bOpen && !m_bFault; }

    void press(std::string_view sLabel);
    void set(std::string_view sLabel, bool bValue);
    void set(std::string_view sLabel, const char* pValue);
    void set(std::string_view sLabel, int32_t iValue);
    void set(std::string_view sLabel, float fValue);
    void set(std::string_view sLabel, const std::array<float, 3>& value);
    void set(std::string_view sLabel, const tilebuilder::ColorRgba& color);
    void choose(std::string_view sLabel, std::string_view sOption);
    /// As a drag: Changing for all but the last value, which comes once more as Finished.
    void drag(std::string_view sLabel, const std::vector<float>& vecValues);
    void hover(std::string_view sGroup, bool bInside);
    /// After the test itself wrote into the tree of a data view.
    void edited(std::string_view sKey);

    // PropertyPanelI
    void begin(uint64_t uSubject) override;
    void end() override;
    void heading(std::string_view sText) override;
    void beginGroup(std::string_view sKey, std::string_view sTitle, bool bOpenAtFirst,
                    tilebuilder::HoverAction onHover) override;
    void endGroup() override;
    void beginLine() override;
    void endLine() override;
    void label(std::string_view sText) override;
    void text(std::string_view sLabel, std::string_view sValue, tilebuilder::TextEdit onEdit) override;
    void check(std::string_view sLabel, bool bValue, tilebuilder::BoolEdit onEdit) override;
    void intNumber(std::string_view sLabel, int32_t iValue, const tilebuilder::IntRange& range,
                   tilebuilder::IntEdit onEdit) override;
    void floatNumber(std::string_view sLabel, float fValue, const tilebuilder::FloatRange& range,
                     tilebuilder::FloatEdit onEdit) override;
    void triple(std::string_view sLabel, const std::array<float, 3>& value,
                const tilebuilder::FloatRange& range, tilebuilder::TripleEdit onEdit) override;
    void choice(std::string_view sLabel, const std::vector<std::string>& vecOptions, size_t uIndex,
                tilebuilder::ChoiceEdit onEdit) override;
    void swatch(std::string_view sLabel, const tilebuilder::ColorRgba& color, bool bAlpha,
                tilebuilder::ColorEdit onEdit) override;
    void button(std::string_view sLabel, tilebuilder::PanelAction onPress) override;
    void pictureButton(std::string_view sLabel, std::string_view sPicture,
                       tilebuilder::PanelAction onPress) override;
    void dataView(std::string_view sKey, DynamicData::Value& tree, const DynamicData::Value* pBaseline,
                  const DynamicTemplate* pTemplate, tilebuilder::DataEdit onEdit) override;

private:
    Row& add(Kind eKind, std::string_view sLabel, std::string sValue);
    template <class Callback, class... Arguments>
    void call(std::string_view sLabel, Arguments... arguments);

    std::vector<Row> m_vecRows;
    std::vector<std::string> m_vecGroups;
    bool m_bOpen = false;
    bool m_bLine = false;
    bool m_bFault = false;
};
