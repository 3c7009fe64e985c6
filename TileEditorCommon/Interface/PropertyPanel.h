#pragma once // A properties panel as a scrolling column of widgets.

#include "TileEditorCommon/Contracts/PropertyPanelI.h"
#include "TileEditorCommon/Interface/PropertyRows.h"

#include <MyGUI_Prerequest.h>
#include <map>
#include <memory>
#include <unordered_map>

namespace tilebuilder
{

/// Shows a colour to be edited: calls onEdit for each change.
using ColorOpener = std::function<void(const ColorRgba& color, bool bAlpha, ColorEdit onEdit)>;

/// Rows that are given again keep their widgets, and so their focus, drag and scroll place. Data views
/// stand as a note until trees can be shown.
class PropertyPanel : public PropertyPanelI
{
public:
    /// All are borrowed.
    PropertyPanel(MyGUI::ScrollView* pView, GuiTips& tips, ColorOpener fnOpenColor);
    ~PropertyPanel() override;
    PropertyPanel(const PropertyPanel&) = delete;
    PropertyPanel& operator=(const PropertyPanel&) = delete;

    /// Each frame: tells which groups the mouse entered and left.
    void update();
    /// Lays the rows out again, for another size of the view.
    void place();
    /// No swatch counts as edited any more.
    void closeColor() { m_sColorKey.clear(); }

    // PropertyPanelI

    void begin(uint64_t uSubject) override;
    void end() override;
    void heading(std::string_view sText) override;
    void beginGroup(std::string_view sKey, std::string_view sTitle, bool bOpenAtFirst,
                    HoverAction onHover) override;
    void endGroup() override;
    void beginLine() override;
    void endLine() override;
    void label(std::string_view sText) override;
    void text(std::string_view sLabel, std::string_view sValue, TextEdit onEdit) override;
    void check(std::string_view sLabel, bool bValue, BoolEdit onEdit) override;
    void intNumber(std::string_view sLabel, int32_t iValue, const IntRange& range, IntEdit onEdit) override;
    void floatNumber(std::string_view sLabel, float fValue, const FloatRange& range,
                     FloatEdit onEdit) override;
    void triple(std::string_view sLabel, const std::array<float, 3>& value, const FloatRange& range,
                TripleEdit onEdit) override;
    void choice(std::string_view sLabel, const std::vector<std::string>& vecOptions, size_t uIndex,
                ChoiceEdit onEdit) override;
    void swatch(std::string_view sLabel, const ColorRgba& color, bool bAlpha, ColorEdit onEdit) override;
    void button(std::string_view sLabel, PanelAction onPress) override;
    void pictureButton(std::string_view sLabel, std::string_view sPicture, PanelAction onPress) override;
    void dataView(std::string_view sKey, DynamicData::Value& tree, const DynamicData::Value* pBaseline,
                  const DynamicTemplate* pTemplate, DataEdit onEdit) override;

private:
    struct Slot
    {
        std::unique_ptr<PanelRow> pRow;
        bool bGiven = false;
    };
    /// A row's place in the column.
    struct Entry
    {
        PanelRow* pRow = nullptr;
        int iDepth = 0;
        uint32_t uLine = 0;  ///< rows of one line share the height; 0: in no line
        bool bTitle = false; ///< of its group, which it stands outside of but for the mouse
        bool bShown = true;  ///< no group around it is closed
        size_t uGroup = 0;   ///< of the innermost group, in m_vecGroups; s_uNone: none
    };
    struct Group
    {
        std::string sPath;
        size_t uParent = s_uNone;
        HoverAction onHover;
    };
    static constexpr size_t s_uNone = static_cast<size_t>(-1);

    template <class Row, class... Arguments>
    Row& take(char cKind, std::string_view sLabel, Arguments&&... arguments);
    [[nodiscard]] std::string groupPath() const;
    [[nodiscard]] bool isOpen(size_t uGroup) const;
    void fold();
    void takeWheel(MyGUI::Widget* pWidget);
    void onWheel(MyGUI::Widget* pSender, int iDelta);
    FloatEditBox* boxAfter(const FloatEditBox* pBox, bool bBackwards) const;

    MyGUI::ScrollView* m_pView;
    RowHost m_host;
    ColorOpener m_fnOpenColor;
    std::unordered_map<std::string, Slot> m_mapRows;
    std::map<std::string, bool, std::less<>> m_mapOpen; ///< groups by their path
    std::vector<Entry> m_vecEntries;
    std::vector<Group> m_vecGroups;
    std::vector<std::string> m_vecHovered; ///< paths, outermost first
    uint64_t m_uSubject = 0;
    size_t m_uGroup = s_uNone; ///< that rows go into
    uint32_t m_uLine = 0;
    uint32_t m_uLines = 0;
    std::map<std::string, int> m_mapEquals; ///< how many rows of a key came so far
    std::string m_sLastKey;                 ///< of the latest row
    std::string m_sColorKey;                ///< of the swatch that is edited
    bool m_bFilling = false;
};

} // namespace tilebuilder
