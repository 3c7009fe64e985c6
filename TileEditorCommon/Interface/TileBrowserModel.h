#pragma once // What the open window lists. No GUI.

#include "MyGuiCommon/MenuEntry.h"
#include "TileEditorCommon/Contracts/EditorActionsI.h"

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tilebuilder
{

/// The tiles that can be opened, and those of them that the search words and the chosen
/// categories leave over.
class TileBrowserModel
{
public:
    /// Takes the run's categories and chooses all of them.
    explicit TileBrowserModel(EditorActionsI& actions);

    /// Looks the tiles up anew. The words and the choice stay.
    void refreshItems();
    /// A tile's name has to hold every word; capitals don't count.
    void setSearch(std::string_view sText);

    /// A click on a category of the menu. Without Ctrl it stays alone, or goes if it was alone;
    /// with Ctrl it joins or leaves. A category that the run doesn't have changes nothing.
    void clickCategory(const std::string& sCategory, bool bControl);
    [[nodiscard]] bool isSelected(const std::string& sCategory) const;

    /// The menu "Options": a check entry a category, whose id is the category's name.
    [[nodiscard]] MenuEntry categoryMenu(const std::function<void(const std::string&)>& fnClick) const;

    [[nodiscard]] size_t total() const { return m_vecItems.size(); }
    [[nodiscard]] size_t count() const { return m_vecFiltered.size(); }
    /// A tile that is left over.
    [[nodiscard]] const TileFile& shown(size_t uIndex) const { return m_vecItems[m_vecFiltered[uIndex]]; }

    /// "3 tiles", or "1 of 3 tiles".
    [[nodiscard]] std::string countText() const;
    /// Why the list is empty and what to do; empty while it isn't.
    [[nodiscard]] std::string emptyText() const;

private:
    void applyFilter();

    EditorActionsI& m_actions;
    std::vector<std::string> m_vecWords; ///< lower case
    std::vector<TileFile> m_vecItems;
    std::vector<size_t> m_vecFiltered; ///< places in m_vecItems
    std::set<std::string> m_setSelected;
    std::vector<std::string> m_vecAvailable; ///< in the order of the menu
};

/// The keyed path of an item's picture.
[[nodiscard]] std::string previewPicture(const TileFile& file);

} // namespace tilebuilder
