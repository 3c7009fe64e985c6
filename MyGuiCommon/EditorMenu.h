#pragma once // The editor's menu widget: a bar of menus or buttons whose entries are found by id.

#include "MyGuiCommon/MenuEntry.h"

#include <MyGUI_Prerequest.h>
#include <memory>
#include <span>
#include <string_view>

class GuiTips;

/// Fills a bar from the layout. A MyGUI::MenuBar becomes a menu bar with drop-downs; any other
/// widget becomes a row of buttons, of which one of kind Menu opens its children below it.
///
/// A setter does nothing for an id that has no entry. Handlers run within the widget's event.
/// Lifetime: borrows the bar and the tips, which must outlive it.
class EditorMenu
{
public:
    EditorMenu(MyGUI::Widget* pBar, GuiTips& tips);
    ~EditorMenu();
    EditorMenu(const EditorMenu&) = delete;
    EditorMenu& operator=(const EditorMenu&) = delete;

    /// Adds behind the last entry of the bar or of the menu with that id.
    void add(const MenuEntry& entry, std::string_view sMenuId = {});
    void addEntry(std::string_view sLabel, std::function<void()> fnAction, std::string_view sId = {},
                  std::string_view sMenuId = {});
    void addCheck(std::string_view sLabel, std::function<void()> fnAction, std::string_view sId = {},
                  std::string_view sMenuId = {});
    void addSeparator(std::string_view sMenuId = {});

    void setEnabled(std::string_view sId, bool bEnabled);
    void setChecked(std::string_view sId, bool bChecked);
    void setText(std::string_view sId, std::string_view sLabel);
    void setColour(std::string_view sId, const std::array<float, 4>& colour);
    void setIcon(std::string_view sId, std::string_view sTexture);
    void setTip(std::string_view sId, std::string_view sTip);

    void clear();

    /// Replaces all entries, unless the list looks like the one given before and force is false.
    /// True when it did.
    bool replace(std::span<const MenuEntry> spanEntries, bool bForce = false);

    /// Width of all entries of a row of buttons, pixels.
    [[nodiscard]] int contentWidth() const;
    /// The widget of an entry, null for none; for tests and for placing things at it.
    [[nodiscard]] MyGUI::Widget* find(std::string_view sId) const;

private:
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};
