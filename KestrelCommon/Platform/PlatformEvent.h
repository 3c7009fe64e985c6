#pragma once // What the window hands up: plain events, free of the library below.

#include <cstdint>

enum class PlatformEventType : uint8_t
{
    Close, ///< the user or the desktop asks the window to close
    Resize,
    FocusGained,
    FocusLost,
    MouseMove,
    MouseButton,
    MouseWheel,
    Key,
    Text,
};

/// One event; only the fields of its type mean anything.
struct PlatformEvent
{
    PlatformEventType eType = PlatformEventType::Close;

    int iX = 0;      ///< client pixels of the cursor; for Resize the new client width
    int iY = 0;      ///< the new client height for Resize
    int iDeltaX = 0; ///< MouseMove: raw movement, also while the cursor stands still in relative mode
    int iDeltaY = 0;
    int iWheel = 0;  ///< 120 a notch, positive away from the user
    int iButton = 0; ///< 0 left, 1 right, 2 middle, 3 and 4 the side buttons

    bool bDown = false;       ///< MouseButton, Key
    bool bRepeat = false;     ///< Key: the system repeats a held key
    uint32_t uVirtualKey = 0; ///< Key: VirtualKey, 0 when unknown
    int iScanCode = 0;        ///< Key: DirectInput number, 0 when unknown
    uint32_t uCodePoint = 0;  ///< Text: one Unicode code point
    uint32_t uMods = 0;       ///< bits of KeyMod at the time of the event
};
