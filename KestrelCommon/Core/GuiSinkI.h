#pragma once // What the input manager asks of the interface before the program sees an event.

#include <cstdint>

/// Each call is true when the interface took the event. Main thread only.
class GuiSinkI
{
public:
    virtual ~GuiSinkI() = default;

    /// Client pixels; the wheel is a sum of steps of 120.
    virtual bool mouseMove(int iX, int iY, int iWheelSum) = 0;
    virtual bool mouseDown(int iX, int iY, int iButton) = 0;
    virtual bool mouseUp(int iX, int iY, int iButton) = 0;

    /// A scan code in the DirectInput numbering and, for text, the code point or 0.
    virtual bool keyDown(int iScanCode, uint32_t uCodePoint) = 0;
    virtual bool keyUp(int iScanCode) = 0;
    virtual bool text(uint32_t uCodePoint) = 0;

    /// Lets go of mouse capture, key focus and all keys: the window lost or gained the focus.
    virtual void releaseAll() = 0;
};
