#pragma once // The rows of a properties panel, for those who fill one without knowing a widget.

#include "TileEditorCommon/Contracts/EditorToolState.h"

#include <array>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class DynamicTemplate;
namespace DynamicData
{
class Value;
}

namespace tilebuilder
{

/// Where an edit stands. A drag, or typing in a field, calls Changing any number of times and then
/// Finished once with the last value. A click or a pick from a list calls Finished alone.
/// An owner that makes undo steps or does costly work on every value may wait for Finished.
enum class EditPhase : uint8_t
{
    Changing,
    Finished,
};

/// The limits of a number; values that come back lie within them. A step of 0 leaves values
/// unrounded. Only a range with both ends given can be shown as a slider.
struct FloatRange
{
    float min = std::numeric_limits<float>::lowest();
    float max = std::numeric_limits<float>::max();
    float step = 0.0f;
    bool slider = false;
};

struct IntRange
{
    int32_t min = std::numeric_limits<int32_t>::min();
    int32_t max = std::numeric_limits<int32_t>::max();
    int32_t step = 1;
    bool slider = false;
};

using BoolEdit = std::function<void(bool bValue)>;
using TextEdit = std::function<void(const std::string& sValue, EditPhase ePhase)>;
using IntEdit = std::function<void(int32_t iValue, EditPhase ePhase)>;
using FloatEdit = std::function<void(float fValue, EditPhase ePhase)>;
using TripleEdit = std::function<void(const std::array<float, 3>& value, EditPhase ePhase)>;
using ColorEdit = std::function<void(const ColorRgba& color, EditPhase ePhase)>;
using ChoiceEdit = std::function<void(size_t uIndex)>;
using PanelAction = std::function<void()>;
using HoverAction = std::function<void(bool bInside)>;
/// After the view wrote into the tree.
using DataEdit = std::function<void(EditPhase ePhase)>;

/// A panel that is filled from top to bottom:
///
///     panel.begin(uSubject);
///     panel.heading("Lamp");
///     panel.beginGroup("light", "Light");
///     panel.floatNumber("Range", fRange, {0.0f, 500.0f}, onRange);
///     panel.endGroup();
///     panel.end();
///
/// Every call adds a row below the last. A filling that is not between begin() and end(), an
/// unbalanced group or line and a nested line are faults of the caller (assertion).
///
/// Rebuilds: whoever fills the panel does so anew at each refresh; there is no other way to change
///     a value that is shown. A row is the same row as before when the subject, the keys of the
///     groups around it, its kind, its label and its place among its equals are the same. A row
///     that stays keeps its focus, its selected text and its drag: while the user is in it, the new
///     current value does not replace what the user sees, and the edit goes on with the new callback.
/// Groups: a group's key, joined to those of the groups around it, tells whether it is open. The
///     panel keeps that for as long as it lives, so open groups survive a rebuild and a change of
///     the subject. The rows of a closed group are added all the same.
/// Callbacks: copied, and held until a begin() after which their row isn't given again, or until the
///     panel ends. What they refer to must live as long, or be looked up by id when they are called.
///     Never called from within begin(), a row's call or end(). A callback may fill the panel
///     anew; it stays alive until it returns. An empty one makes a row that only shows its value.
/// Ownership: strings and values are copied; only the trees of dataView() are borrowed.
/// Labels: language tags of the form "#{NAME}" are replaced, colour codes are shown as text.
/// Threads: main thread only.
class PropertyPanelI
{
public:
    virtual ~PropertyPanelI() = default;

    /// Starts the list anew. The subject tells one thing that is edited from another (an entity's
    /// key, a file); rows of another subject are never taken for the same.
    virtual void begin(uint64_t uSubject) = 0;
    /// The rows that weren't given again go.
    virtual void end() = 0;

    // Structure

    virtual void heading(std::string_view sText) = 0;
    /// A part that folds, with all rows up to its endGroup(); groups nest. The key is unique among
    /// its neighbours. onHover tells when the mouse enters and leaves the group, title included.
    virtual void beginGroup(std::string_view sKey, std::string_view sTitle, bool bOpenAtFirst = true,
                            HoverAction onHover = {}) = 0;
    virtual void endGroup() = 0;
    /// The rows up to endLine() stand side by side.
    virtual void beginLine() = 0;
    virtual void endLine() = 0;

    // Rows; the label stands beside the value, an empty one gives the value the whole width

    /// Text that can't be edited.
    virtual void label(std::string_view sText) = 0;
    /// UTF-8. Changing at each keystroke, Finished at Enter or when the field is left.
    virtual void text(std::string_view sLabel, std::string_view sValue, TextEdit onEdit) = 0;
    virtual void check(std::string_view sLabel, bool bValue, BoolEdit onEdit) = 0;
    virtual void intNumber(std::string_view sLabel, int32_t iValue, const IntRange& range,
                           IntEdit onEdit) = 0;
    virtual void floatNumber(std::string_view sLabel, float fValue, const FloatRange& range,
                             FloatEdit onEdit) = 0;
    /// Three numbers x, y and z with the same limits.
    virtual void triple(std::string_view sLabel, const std::array<float, 3>& value, const FloatRange& range,
                        TripleEdit onEdit) = 0;
    /// One of the options; an index past the end shows none.
    virtual void choice(std::string_view sLabel, const std::vector<std::string>& vecOptions, size_t uIndex,
                        ChoiceEdit onEdit) = 0;
    /// A field of the colour, 0 to 1, that opens the colour editor; bAlpha offers the alpha too.
    virtual void swatch(std::string_view sLabel, const ColorRgba& color, bool bAlpha, ColorEdit onEdit) = 0;
    virtual void button(std::string_view sLabel, PanelAction onPress) = 0;
    /// A button with a picture over its label; a keyed path, or a bare name from the skins.
    virtual void pictureButton(std::string_view sLabel, std::string_view sPicture, PanelAction onPress) = 0;
    /// A tree of values that the view shows and writes in place, by the template when there is one.
    /// What differs from the baseline is marked; null: nothing is. Borrowed: tree, baseline and
    /// template outlive the row. The key is that of a group: which branches are open survives. When
    /// nothing is open and the tree has a single element, that one opens by itself.
    virtual void dataView(std::string_view sKey, DynamicData::Value& tree,
                          const DynamicData::Value* pBaseline, const DynamicTemplate* pTemplate,
                          DataEdit onEdit) = 0;
};

/// Opens a group for a scope.
class PanelGroup
{
public:
    PanelGroup(PropertyPanelI& panel, std::string_view sKey, std::string_view sTitle,
               bool bOpenAtFirst = true, HoverAction onHover = {})
        : m_panel(panel)
    {
        m_panel.beginGroup(sKey, sTitle, bOpenAtFirst, std::move(onHover));
    }
    ~PanelGroup() { m_panel.endGroup(); }
    PanelGroup(const PanelGroup&) = delete;
    PanelGroup& operator=(const PanelGroup&) = delete;

private:
    PropertyPanelI& m_panel;
};

/// Sets rows side by side for a scope.
class PanelLine
{
public:
    explicit PanelLine(PropertyPanelI& panel) : m_panel(panel) { m_panel.beginLine(); }
    ~PanelLine() { m_panel.endLine(); }
    PanelLine(const PanelLine&) = delete;
    PanelLine& operator=(const PanelLine&) = delete;

private:
    PropertyPanelI& m_panel;
};

} // namespace tilebuilder
