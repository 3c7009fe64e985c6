#pragma once // Which clutter types the brush plants. No GUI.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace tilebuilder
{

class EditorActionsI;

/// A check box of the clutter panel.
struct ClutterEntry
{
    std::string sLabel;
    bool bChecked = false;
};

/// A flag for each global clutter index.
class ClutterModel
{
public:
    using Flags = std::array<bool, 255>;

    explicit ClutterModel(EditorActionsI& actions);

    /// In the order of the global table.
    [[nodiscard]] std::vector<ClutterEntry> entries() const;
    /// Flips a flag and rebuilds the tool's selection in ascending order. Another index does nothing.
    void toggle(size_t uIndex);
    /// Reads the flags from the tool's selection; false when they were so before.
    bool update();

private:
    void writeSelection();

    EditorActionsI& m_actions;
    Flags GrassValues{};
};

} // namespace tilebuilder
