#pragma once // The table of keyboard and wheel actions. No GUI.

#include <cstdint>
#include <functional>
#include <map>
#include <string>

class InputManager;

namespace tilebuilder
{

/// Ids of the actions, as menus and tips name them.
enum EditorAction : uint32_t
{
    ActionFocus = 0,
    ActionFocusLast = 1,
    ActionNew = 8,
    ActionSave = 9,
    ActionSaveAs = 10,
    ActionOpen = 11,
    ActionCharacter = 13,
    ActionTranslate = 14,
    ActionRotate = 15,
    ActionScale = 16,
    ActionToolPlace = 17,
    ActionToolHeight = 18,
    ActionToolMaterial = 19,
    ActionToolColor = 20,
    ActionToolClutter = 21,
    ActionInfo = 28,
    ActionMoveGrid = 31,
    ActionToggleGrid = 32,
    ActionSnap = 33,
    ActionPivot = 34,
    ActionOutliner = 61,
    ActionHide = 62,
};

/// Ids of the wheel's actions.
enum WheelAction : uint32_t
{
    WheelMoveCamera = 2,
    WheelFlySpeed = 3,
    WheelStrength = 4,
    WheelSize = 5,
};

struct KeyBinding
{
    uint32_t uVk = 0;
    uint32_t uMods = 0; ///< bits of KeyMod, compared for equality
    bool bNeedsPointerFree = true;
    bool bNeedsNoKeyFocus = true;
    std::function<void()> fnHandler; ///< empty: polled, or not there yet
};

struct WheelBinding
{
    uint32_t uMods = 0;
    bool bNeedsPointerFree = true;
    bool bNeedsNoKeyFocus = false;
    std::function<void(int32_t)> fnHandler; ///< gets the signed number of steps, positive away from the user
};

/// Which key does what, and whether it may now.
///
/// Lifetime: borrows the input manager. Handlers may bind anew.
/// Threads:  main thread only.
class KeyBindings
{
public:
    explicit KeyBindings(const InputManager& input) : m_input(input) {}

    /// Replaces what is bound to the id.
    void bind(uint32_t uId, KeyBinding binding) { m_mapKeys[uId] = std::move(binding); }
    void bindWheel(uint32_t uId, WheelBinding binding) { m_mapWheel[uId] = std::move(binding); }

    /// Runs the handlers of this frame's keys in the order of their ids, then those of the wheel.
    ///
    /// bPointerFree: the mouse is over no widget and the keyboard, if taken, isn't with an edit box.
    /// bNoKeyFocus:  no widget has the keyboard.
    /// bFlying:      the view flies, which uses keys of its own: only the wheel acts.
    void update(bool bPointerFree, bool bNoKeyFocus, bool bFlying = false);

    /// The key of the id went down in this frame with the right modifiers and its conditions held
    /// at the latest update(); for actions that are polled.
    [[nodiscard]] bool isActive(uint32_t uId) const;

    /// "#BBBBBB(ctrl+s)" for captions; empty for an id that isn't bound.
    [[nodiscard]] std::string text(uint32_t uId) const;

private:
    [[nodiscard]] bool isActive(const KeyBinding& binding) const;

    const InputManager& m_input;
    std::map<uint32_t, KeyBinding> m_mapKeys;
    std::map<uint32_t, WheelBinding> m_mapWheel;
    bool m_bPointerFree = false;
    bool m_bNoKeyFocus = false;
    bool m_bFlying = false;
};

} // namespace tilebuilder
