#pragma once // The tile's mark as a member of one of the world generator's lists. No GUI.

#include "TileEditorCommon/Contracts/EditorActionsI.h"

#include <string>
#include <vector>

namespace tilebuilder
{

/// Shows the open tile's category and the list of that category, and writes what is chosen.
class TileSettingsModel
{
public:
    static constexpr size_t s_uNone = static_cast<size_t>(-1);

    explicit TileSettingsModel(EditorActionsI& actions);

    /// Reads the tile; false when it says what is shown.
    bool update();

    /// s_uNone: a category or an entry that no list has; a file may bear any number.
    [[nodiscard]] size_t category() const;
    [[nodiscard]] size_t entry() const;
    [[nodiscard]] const std::vector<std::string>& entries() const { return m_vecEntries; }
    [[nodiscard]] bool isOpen() const { return m_bOpen; }

    /// Another category starts at its first entry. A number that doesn't exist changes nothing.
    void chooseCategory(size_t uCategory);
    void chooseEntry(size_t uEntry);

private:
    EditorActionsI& m_actions;
    TerrainCategory m_shown;
    std::vector<std::string> m_vecEntries;
    bool m_bOpen = false;
};

} // namespace tilebuilder
