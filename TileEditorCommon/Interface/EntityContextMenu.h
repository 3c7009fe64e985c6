#pragma once // The right-click menu of entities at the mouse.

#include <MyGUI_Prerequest.h>
#include <cstdint>
#include <span>

namespace tilebuilder
{

class EditorActionsI;
class KeyBindings;
struct EntityMenuItem;

/// Made anew at each opening. Entries of both kinds in one, those in square brackets, open their
/// children under the mouse and run their command at a click.
class EntityContextMenu
{
public:
    /// Borrows both.
    EntityContextMenu(EditorActionsI& actions, const KeyBindings& keys) : m_actions(actions), m_keys(keys) {}
    ~EntityContextMenu();
    EntityContextMenu(const EntityContextMenu&) = delete;
    EntityContextMenu& operator=(const EntityContextMenu&) = delete;

    /// At a pixel of the client area, moved so that all of it shows.
    void show(int iX, int iY);
    [[nodiscard]] bool isVisible() const;
    /// The open menu, null before the first; for tests.
    [[nodiscard]] MyGUI::PopupMenu* menu() const { return m_pMenu; }

private:
    void destroy();
    void fill(MyGUI::MenuControl* pMenu, std::span<const EntityMenuItem> spanItems);
    static void hide(MyGUI::MenuControl* pMenu);
    void onClick(MyGUI::Widget* pSender);

    EditorActionsI& m_actions;
    const KeyBindings& m_keys;
    MyGUI::PopupMenu* m_pMenu = nullptr; ///< of the GUI's root
};

} // namespace tilebuilder
