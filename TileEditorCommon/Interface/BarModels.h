#pragma once // What the three bars show, built from the editor's state. No GUI.

#include "MyGuiCommon/MenuEntry.h"

#include <vector>

namespace tilebuilder
{

class EditorActionsI;
class EditorInterfaceI;
class KeyBindings;

/// Red, green, blue and alpha of the tool buttons.
namespace ToolColours
{
using Colour = std::array<float, 4>;
inline constexpr Colour active{1.0f, 0.8156863f, 0.26666668f, 1.0f};
inline constexpr Colour inactive{0.6f, 0.6f, 0.6f, 1.0f};
inline constexpr Colour xBright{0.55f, 1.0f, 0.55f, 1.0f};
inline constexpr Colour yBright{0.55f, 0.55f, 1.0f, 1.0f};
inline constexpr Colour zBright{1.0f, 1.0f, 0.55f, 1.0f};
} // namespace ToolColours

/// The whole left bar with its menus; the states of its entries come from leftBarStates().
[[nodiscard]] std::vector<MenuEntry> buildLeftBar(EditorActionsI& actions, EditorInterfaceI& windows,
                                                  const KeyBindings& keys, std::function<void()> fnHelp);

/// An entry's state that a refresh sets anew.
struct EntryState
{
    std::string sId;
    bool bEnabled = true;
    bool bChecked = false;
    std::string sLabel; ///< empty: stays
};
[[nodiscard]] std::vector<EntryState> leftBarStates(EditorActionsI& actions, const EditorInterfaceI& windows);

/// The tool buttons. Colours and checks come with the list.
[[nodiscard]] std::vector<MenuEntry> buildToolButtons(EditorActionsI& actions, const KeyBindings& keys);

/// Its label tells memory and step; a document that was left stands behind the entries.
[[nodiscard]] MenuEntry buildHistoryMenu(EditorActionsI& actions);

/// "Back" and the name of a document that has a path, then the history; empty without a document.
[[nodiscard]] std::vector<MenuEntry> buildRightBar(EditorActionsI& actions);

} // namespace tilebuilder
