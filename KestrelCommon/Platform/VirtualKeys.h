#pragma once // The key numbers that the editor works with.

#include <cstdint>
#include <string_view>

/// Virtual keys keep their Win32 numbers; letters and digits are their upper-case characters.
enum VirtualKey : uint32_t
{
    KeyNone = 0,
    KeyBackspace = 0x08,
    KeyTab = 0x09,
    KeyReturn = 0x0D,
    KeyShift = 0x10,
    KeyControl = 0x11,
    KeyAlt = 0x12,
    KeyPause = 0x13,
    KeyCapsLock = 0x14,
    KeyEscape = 0x1B,
    KeySpace = 0x20,
    KeyPageUp = 0x21,
    KeyPageDown = 0x22,
    KeyEnd = 0x23,
    KeyHome = 0x24,
    KeyLeft = 0x25,
    KeyUp = 0x26,
    KeyRight = 0x27,
    KeyDown = 0x28,
    KeySnapshot = 0x2C,
    KeyInsert = 0x2D,
    KeyDelete = 0x2E,
    KeyNumpad0 = 0x60,
    KeyF1 = 0x70,
};

/// Bits of the modifier keys.
enum KeyMod : uint32_t
{
    ModShift = 1,
    ModControl = 2,
    ModAlt = 4,
};

/// One physical key: its virtual key and its scan code in the DirectInput numbering.
struct KeyCodes
{
    uint32_t uVirtualKey = KeyNone;
    int iScanCode = 0;
};

/// Both codes of a key by its USB usage number (keyboard page); zeros for a key that is not known.
/// The left and right modifier share a virtual key but not a scan code.
[[nodiscard]] KeyCodes keyCodes(int iUsage);

/// The scan code of a virtual key, of the left one for modifiers; 0 when there is none.
[[nodiscard]] int scanCodeOf(uint32_t uVirtualKey);

/// Lower-case name for shortcut texts; empty for a key that is not known.
[[nodiscard]] std::string_view keyName(uint32_t uVirtualKey);
