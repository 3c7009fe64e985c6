#pragma once // When a finished change enters the undo history.

#include <cstdint>

namespace tilebuilder
{

/// A change waits until the hand is off the button and nothing changed for 151 ms, so that a
/// burst, however long, is one step.
class PendingChange
{
public:
    static constexpr uint32_t s_uQuietMs = 151;

    void mark(uint32_t uMask, uint32_t uNowMs)
    {
        m_uMask |= uMask;
        m_uTimeMs = uNowMs;
        m_bPending = true;
    }

    /// The changes of the next two frames are those of reading a document, not the user's.
    void skipFrames() { m_uSkipFrames = 2; }

    /// Once a frame, before isDue().
    void beginFrame()
    {
        if (m_uSkipFrames == 0)
            return;
        --m_uSkipFrames;
        clear();
    }

    [[nodiscard]] bool isDue(uint32_t uNowMs, bool bButtonDown) const
    {
        return m_bPending && !bButtonDown && uNowMs - m_uTimeMs >= s_uQuietMs;
    }

    [[nodiscard]] bool isPending() const { return m_bPending; }

    void clear()
    {
        m_bPending = false;
        m_uMask = 0;
    }

private:
    bool m_bPending = false;
    uint32_t m_uMask = 0;
    uint32_t m_uTimeMs = 0;
    uint32_t m_uSkipFrames = 0;
};

} // namespace tilebuilder
