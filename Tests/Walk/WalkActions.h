#pragma once // What a user does in the random walk.

#include "Tests/Walk/WalkWorld.h"

#include <span>

namespace tilebuilder
{

struct WalkAction
{
    const char* pName;
    uint32_t uWeight;
    void (*fnDo)(WalkWorld&);
};

/// Each does nothing where it makes no sense.
[[nodiscard]] std::span<const WalkAction> walkActions();

/// One of them, by their weights.
[[nodiscard]] const WalkAction& someWalkAction(WalkWorld& walk);

} // namespace tilebuilder
