#include "KestrelCommon/Platform/VirtualKeys.h"

namespace
{

struct KeyRow
{
    int iUsage;
    uint32_t uVirtualKey;
    int iScanCode;
    std::string_view sName;
};

// USB HID usage tables, page 7, beside the Win32 and the DirectInput numbers of the same key.
constexpr KeyRow s_arrKeys[] = {
    {4, 'A', 0x1E, "a"},
    {5, 'B', 0x30, "b"},
    {6, 'C', 0x2E, "c"},
    {7, 'D', 0x20, "d"},
    {8, 'E', 0x12, "e"},
    {9, 'F', 0x21, "f"},
    {10, 'G', 0x22, "g"},
    {11, 'H', 0x23, "h"},
    {12, 'I', 0x17, "i"},
    {13, 'J', 0x24, "j"},
    {14, 'K', 0x25, "k"},
    {15, 'L', 0x26, "l"},
    {16, 'M', 0x32, "m"},
    {17, 'N', 0x31, "n"},
    {18, 'O', 0x18, "o"},
    {19, 'P', 0x19, "p"},
    {20, 'Q', 0x10, "q"},
    {21, 'R', 0x13, "r"},
    {22, 'S', 0x1F, "s"},
    {23, 'T', 0x14, "t"},
    {24, 'U', 0x16, "u"},
    {25, 'V', 0x2F, "v"},
    {26, 'W', 0x11, "w"},
    {27, 'X', 0x2D, "x"},
    {28, 'Y', 0x15, "y"},
    {29, 'Z', 0x2C, "z"},
    {30, '1', 0x02, "1"},
    {31, '2', 0x03, "2"},
    {32, '3', 0x04, "3"},
    {33, '4', 0x05, "4"},
    {34, '5', 0x06, "5"},
    {35, '6', 0x07, "6"},
    {36, '7', 0x08, "7"},
    {37, '8', 0x09, "8"},
    {38, '9', 0x0A, "9"},
    {39, '0', 0x0B, "0"},
    {40, KeyReturn, 0x1C, "enter"},
    {41, KeyEscape, 0x01, "esc"},
    {42, KeyBackspace, 0x0E, "backspace"},
    {43, KeyTab, 0x0F, "tab"},
    {44, KeySpace, 0x39, "space"},
    {45, 0xBD, 0x0C, "-"},
    {46, 0xBB, 0x0D, "="},
    {47, 0xDB, 0x1A, "["},
    {48, 0xDD, 0x1B, "]"},
    {49, 0xDC, 0x2B, "\\"},
    {50, 0xDC, 0x2B, "\\"},
    {51, 0xBA, 0x27, ";"},
    {52, 0xDE, 0x28, "'"},
    {53, 0xC0, 0x29, "`"},
    {54, 0xBC, 0x33, ","},
    {55, 0xBE, 0x34, "."},
    {56, 0xBF, 0x35, "/"},
    {57, KeyCapsLock, 0x3A, "caps lock"},
    {58, KeyF1, 0x3B, "f1"},
    {59, KeyF1 + 1, 0x3C, "f2"},
    {60, KeyF1 + 2, 0x3D, "f3"},
    {61, KeyF1 + 3, 0x3E, "f4"},
    {62, KeyF1 + 4, 0x3F, "f5"},
    {63, KeyF1 + 5, 0x40, "f6"},
    {64, KeyF1 + 6, 0x41, "f7"},
    {65, KeyF1 + 7, 0x42, "f8"},
    {66, KeyF1 + 8, 0x43, "f9"},
    {67, KeyF1 + 9, 0x44, "f10"},
    {68, KeyF1 + 10, 0x57, "f11"},
    {69, KeyF1 + 11, 0x58, "f12"},
    {70, KeySnapshot, 0xB7, "sys req"},
    {71, 0x91, 0x46, "scroll lock"},
    {72, KeyPause, 0xC5, "pause"},
    {73, KeyInsert, 0xD2, "insert"},
    {74, KeyHome, 0xC7, "home"},
    {75, KeyPageUp, 0xC9, "page up"},
    {76, KeyDelete, 0xD3, "delete"},
    {77, KeyEnd, 0xCF, "end"},
    {78, KeyPageDown, 0xD1, "page down"},
    {79, KeyRight, 0xCD, "right"},
    {80, KeyLeft, 0xCB, "left"},
    {81, KeyDown, 0xD0, "down"},
    {82, KeyUp, 0xC8, "up"},
    {83, 0x90, 0x45, "num lock"},
    {84, 0x6F, 0xB5, "num /"},
    {85, 0x6A, 0x37, "num *"},
    {86, 0x6D, 0x4A, "num -"},
    {87, 0x6B, 0x4E, "num +"},
    {88, KeyReturn, 0x9C, "enter"},
    {89, KeyNumpad0 + 1, 0x4F, "num 1"},
    {90, KeyNumpad0 + 2, 0x50, "num 2"},
    {91, KeyNumpad0 + 3, 0x51, "num 3"},
    {92, KeyNumpad0 + 4, 0x4B, "num 4"},
    {93, KeyNumpad0 + 5, 0x4C, "num 5"},
    {94, KeyNumpad0 + 6, 0x4D, "num 6"},
    {95, KeyNumpad0 + 7, 0x47, "num 7"},
    {96, KeyNumpad0 + 8, 0x48, "num 8"},
    {97, KeyNumpad0 + 9, 0x49, "num 9"},
    {98, KeyNumpad0, 0x52, "num 0"},
    {99, 0x6E, 0x53, "num ."},
    {100, 0xE2, 0x56, "<"},
    {101, 0x5D, 0xDD, "menu"},
    {224, KeyControl, 0x1D, "ctrl"},
    {225, KeyShift, 0x2A, "shift"},
    {226, KeyAlt, 0x38, "alt"},
    {227, 0x5B, 0xDB, "left windows"},
    {228, KeyControl, 0x9D, "ctrl"},
    {229, KeyShift, 0x36, "shift"},
    {230, KeyAlt, 0xB8, "alt"},
    {231, 0x5C, 0xDC, "right windows"},
};

const KeyRow* rowOf(uint32_t uVirtualKey)
{
    for (const KeyRow& row : s_arrKeys)
        if (row.uVirtualKey == uVirtualKey)
            return &row;
    return nullptr;
}

} // namespace

KeyCodes keyCodes(int iUsage)
{
    for (const KeyRow& row : s_arrKeys)
        if (row.iUsage == iUsage)
            return {row.uVirtualKey, row.iScanCode};
    return {};
}

int scanCodeOf(uint32_t uVirtualKey)
{
    const KeyRow* pRow = rowOf(uVirtualKey);
    return pRow ? pRow->iScanCode : 0;
}

std::string_view keyName(uint32_t uVirtualKey)
{
    const KeyRow* pRow = rowOf(uVirtualKey);
    return pRow ? pRow->sName : std::string_view{};
}
