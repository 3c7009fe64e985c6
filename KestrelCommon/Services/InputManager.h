#pragma once // Turns the window's events into key and button states, after the interface had its turn.

#include "KestrelCommon/Platform/PlatformEvent.h"

#include <array>
#include <cstdint>
#include <vector>

class GuiSinkI;
class InputTarget;

/// Values of keyState and buttonState.
enum InputState : uint32_t
{
    InputUp = 0,
    InputPressed = 1, ///< went down in this pass
    InputHeld = 2,
    InputReleased = 3, ///< went up in this pass
};

struct CursorPosition
{
    int iX = 0;
    int iY = 0;
};

/// The editor's source of input. Events are queued as they come and worked off by update() in
/// each pass of the frame loop: each goes to the interface first and, when that leaves it, to the
/// target. A key event that repeats a state goes to neither.
///
/// States and deltas follow the devices, whoever took an event; only wheel steps that the
/// interface took are left out. They last until a frame has used them: endFrame() says so, and the
/// next update() moves on. So a press is seen for exactly one frame, even when a pass draws
/// nothing, and a press and a release within one frame are seen as pressed, then released.
///
/// Threads: main thread only.
class InputManager
{
public:
    static constexpr size_t s_uKeyCount = 256;
    static constexpr size_t s_uButtonCount = 5;

    /// Both are borrowed and may be null.
    void setTarget(InputTarget* pTarget) { m_pTarget = pTarget; }
    void setGui(GuiSinkI* pGui) { m_pGui = pGui; }

    void queue(const PlatformEvent& event) { m_vecQueue.push_back(event); }

    /// Works off the queue; called in every pass.
    void update();

    /// The frame that saw the present values is over; called once in each pass that ran a frame.
    void endFrame() { m_bConsumed = true; }

    /// Forgets all keys, buttons and wheel steps, here and in the interface. A change of the
    /// focus in the queue does the same.
    void clear();

    // What the latest update() left; readable by all

    CursorPosition mousePosition;
    int iWheelDelta = 0;                              ///< 120 a notch
    CursorPosition cursorDelta;                       ///< raw movement in this pass
    std::array<uint8_t, s_uKeyCount> keyDown{};       ///< by virtual key: how many such keys are down
    std::array<uint32_t, s_uKeyCount> keyState{};     ///< InputState
    std::array<uint8_t, s_uButtonCount> buttonDown{}; ///< 0 left, 1 right, 2 middle
    std::array<uint32_t, s_uButtonCount> buttonState{};

    /// Bits of KeyMod by the keys that are down.
    [[nodiscard]] uint32_t mods() const;
    /// The same at the moment when a key went down; of a quick chord all keys may be up by now.
    [[nodiscard]] uint32_t modsAtPress(uint32_t uVirtualKey) const
    {
        return uVirtualKey < s_uKeyCount ? m_arrPressMods[uVirtualKey] : 0;
    }

private:
    void advance();
    void dispatch(const PlatformEvent& event);
    void dispatchMove(const PlatformEvent& event);
    void dispatchButton(const PlatformEvent& event);
    void dispatchWheel(const PlatformEvent& event);
    void dispatchKey(const PlatformEvent& event);
    void dispatchText(const PlatformEvent& event);

    InputTarget* m_pTarget = nullptr;
    GuiSinkI* m_pGui = nullptr;
    std::vector<PlatformEvent> m_vecQueue;
    std::array<bool, s_uKeyCount> m_arrScanDown{};      ///< by scan code: both Shift keys are one virtual key
    std::array<bool, s_uKeyCount> m_arrKeyReleaseDue{}; ///< went up in the frame in which it went down
    std::array<bool, s_uButtonCount> m_arrButtonReleaseDue{};
    std::array<uint32_t, s_uKeyCount> m_arrPressMods{};
    int m_iWheelSum = 0;
    bool m_bConsumed = false;
};
