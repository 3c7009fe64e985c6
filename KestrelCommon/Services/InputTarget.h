#pragma once // Who gets the input that the interface left over.

#include <cstdint>

/// An event as the target sees it.
struct InputEvent
{
    int iX = 0; ///< client pixels
    int iY = 0;
    int iButton = 0;          ///< 0 left, 1 right, 2 middle, 3 and 4 the side buttons
    int iWheel = 0;           ///< 120 a notch, positive away from the user
    uint32_t uVirtualKey = 0; ///< VirtualKey
    uint32_t uMods = 0;       ///< bits of KeyMod
};

/// Takes each event and returns true. Main thread only.
class InputTarget
{
public:
    virtual ~InputTarget() = default;

    virtual bool keyDown(const InputEvent& event) = 0;
    virtual bool keyUp(const InputEvent& event) = 0;
    virtual bool mouseDown(const InputEvent& event) = 0;
    virtual bool mouseUp(const InputEvent& event) = 0;
    virtual bool mouseWheel(const InputEvent& event) = 0;
    virtual bool mouseMove(const InputEvent& event) = 0;
};
