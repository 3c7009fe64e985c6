#include "KestrelCommon/Services/InputManager.h"

#include "KestrelCommon/Core/GuiSinkI.h"
#include "KestrelCommon/Platform/VirtualKeys.h"
#include "KestrelCommon/Services/InputTarget.h"

namespace
{

/// The state after a frame has seen the present one.
uint32_t nextState(uint32_t uState, bool& bReleaseDue)
{
    switch (uState)
    {
    case InputPressed:
        if (std::exchange(bReleaseDue, false))
            return InputReleased;
        return InputHeld;
    case InputReleased:
        return InputUp;
    default:
        return uState;
    }
}

/// Takes a change of a key or button into its state.
void applyChange(bool bDown, uint32_t& uState, bool& bReleaseDue)
{
    if (!bDown && uState == InputPressed)
        bReleaseDue = true;
    else
        uState = bDown ? InputPressed : InputReleased;
    if (bDown)
        bReleaseDue = false;
}

} // namespace

uint32_t InputManager::mods() const
{
    return (keyDown[KeyShift] ? ModShift : 0u) | (keyDown[KeyControl] ? ModControl : 0u) |
           (keyDown[KeyAlt] ? ModAlt : 0u);
}

void InputManager::advance()
{
    m_bConsumed = false;
    iWheelDelta = 0;
    cursorDelta = {};
    for (size_t i = 0; i < s_uKeyCount; ++i)
        keyState[i] = nextState(keyState[i], m_arrKeyReleaseDue[i]);
    for (size_t i = 0; i < s_uButtonCount; ++i)
        buttonState[i] = nextState(buttonState[i], m_arrButtonReleaseDue[i]);
}

void InputManager::update()
{
    if (m_bConsumed)
        advance();
    // A handler may queue events of its own; those wait for the next pass.
    const std::vector<PlatformEvent> vecWork = std::exchange(m_vecQueue, {});
    for (const PlatformEvent& event : vecWork)
        dispatch(event);
}

void InputManager::clear()
{
    keyDown.fill(0);
    keyState.fill(InputUp);
    buttonDown.fill(0);
    buttonState.fill(InputUp);
    m_arrScanDown.fill(false);
    m_arrKeyReleaseDue.fill(false);
    m_arrButtonReleaseDue.fill(false);
    iWheelDelta = 0;
    cursorDelta = {};
    if (m_pGui)
        m_pGui->releaseAll();
}

void InputManager::dispatch(const PlatformEvent& event)
{
    switch (event.eType)
    {
    case PlatformEventType::MouseMove:
        dispatchMove(event);
        break;
    case PlatformEventType::MouseButton:
        dispatchButton(event);
        break;
    case PlatformEventType::MouseWheel:
        dispatchWheel(event);
        break;
    case PlatformEventType::Key:
        dispatchKey(event);
        break;
    case PlatformEventType::Text:
        dispatchText(event);
        break;
    case PlatformEventType::FocusGained:
    case PlatformEventType::FocusLost:
        clear();
        break;
    case PlatformEventType::Close:
    case PlatformEventType::Resize:
        break;
    }
}

void InputManager::dispatchMove(const PlatformEvent& event)
{
    mousePosition = {event.iX, event.iY};
    cursorDelta.iX += event.iDeltaX;
    cursorDelta.iY += event.iDeltaY;
    if (m_pGui && m_pGui->mouseMove(event.iX, event.iY, m_iWheelSum))
        return;
    if (m_pTarget)
        m_pTarget->mouseMove({.iX = event.iX, .iY = event.iY, .uMods = mods()});
}

void InputManager::dispatchButton(const PlatformEvent& event)
{
    if (event.iButton < 0 || static_cast<size_t>(event.iButton) >= s_uButtonCount)
        return;
    const auto uButton = static_cast<size_t>(event.iButton);
    if ((buttonDown[uButton] != 0) == event.bDown)
        return;
    mousePosition = {event.iX, event.iY};
    buttonDown[uButton] = event.bDown ? 1 : 0;
    applyChange(event.bDown, buttonState[uButton], m_arrButtonReleaseDue[uButton]);

    if (m_pGui)
    {
        m_pGui->mouseMove(event.iX, event.iY, m_iWheelSum);
        if (event.bDown ? m_pGui->mouseDown(event.iX, event.iY, event.iButton)
                        : m_pGui->mouseUp(event.iX, event.iY, event.iButton))
            return;
    }
    if (!m_pTarget)
        return;
    const InputEvent input{.iX = event.iX, .iY = event.iY, .iButton = event.iButton, .uMods = mods()};
    if (event.bDown)
        m_pTarget->mouseDown(input);
    else
        m_pTarget->mouseUp(input);
}

void InputManager::dispatchWheel(const PlatformEvent& event)
{
    // The interface tells a wheel step from a move by the sum alone, so it gets the place first.
    if (m_pGui)
        m_pGui->mouseMove(event.iX, event.iY, m_iWheelSum);
    m_iWheelSum += event.iWheel;
    if (m_pGui && m_pGui->mouseMove(event.iX, event.iY, m_iWheelSum))
        return;
    iWheelDelta += event.iWheel;
    if (m_pTarget)
        m_pTarget->mouseWheel({.iX = event.iX, .iY = event.iY, .iWheel = event.iWheel, .uMods = mods()});
}

void InputManager::dispatchKey(const PlatformEvent& event)
{
    if (event.uVirtualKey == KeyNone || event.uVirtualKey >= s_uKeyCount || event.iScanCode <= 0 ||
        static_cast<size_t>(event.iScanCode) >= s_uKeyCount)
        return;
    bool& bScanDown = m_arrScanDown[static_cast<size_t>(event.iScanCode)];
    if (event.bRepeat || bScanDown == event.bDown)
        return;
    bScanDown = event.bDown;

    uint8_t& uCount = keyDown[event.uVirtualKey];
    const bool bWasDown = uCount != 0;
    uCount = static_cast<uint8_t>(uCount + (event.bDown ? 1 : -1));
    const bool bChanged = bWasDown != (uCount != 0);
    if (bChanged && event.bDown)
        m_arrPressMods[event.uVirtualKey] = mods();
    if (bChanged)
        applyChange(event.bDown, keyState[event.uVirtualKey], m_arrKeyReleaseDue[event.uVirtualKey]);

    if (m_pGui && (event.bDown ? m_pGui->keyDown(event.iScanCode, 0) : m_pGui->keyUp(event.iScanCode)))
        return;
    if (!m_pTarget || !bChanged)
        return;
    const InputEvent input{.uVirtualKey = event.uVirtualKey, .uMods = mods()};
    if (event.bDown)
        m_pTarget->keyDown(input);
    else
        m_pTarget->keyUp(input);
}

void InputManager::dispatchText(const PlatformEvent& event)
{
    if (m_pGui && event.uCodePoint != 0)
        m_pGui->text(event.uCodePoint);
}
