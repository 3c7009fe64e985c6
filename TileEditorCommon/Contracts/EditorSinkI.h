#pragma once // How the rooms below the editor object tell it that something changed.

#include <cstdint>

namespace tilebuilder
{

/// Main thread only.
class EditorSinkI
{
public:
    virtual ~EditorSinkI() = default;

    /// The one way into the undo history: a change of the document, bits of ChangeMask.
    virtual void markChanged(uint32_t uMask) = 0;

    /// The interface must refresh; makes no undo step.
    virtual void markInterfaceDirty(uint32_t uMask) = 0;
};

} // namespace tilebuilder
