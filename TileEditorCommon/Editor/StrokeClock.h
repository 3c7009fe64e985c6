#pragma once // When a held brush paints: 20 times a second, whatever the frame rate.

#include <algorithm>
#include <optional>

namespace tilebuilder
{

/// Gathers frame time during a stroke and turns it into ticks. A late frame gives one tick of
/// several steps, so that what is painted doesn't depend on the frame rate.
class StrokeClock
{
public:
    static constexpr float s_fTick = 0.05f; ///< seconds

    void add(float fSeconds) { m_fStrokeTime += fSeconds; }

    /// The seconds that a dab stands for, a multiple of the tick; nothing while none is due.
    [[nodiscard]] std::optional<float> take()
    {
        if (m_fStrokeTime < s_fTick)
            return std::nullopt;
        const float fStep = static_cast<float>(static_cast<int>(m_fStrokeTime * 20.0f)) * s_fTick;
        m_fStrokeTime -= fStep;
        return fStep;
    }

    /// The first dab of the next press comes at once.
    void rearm() { m_fStrokeTime = s_fTick; }

    /// Strength of a dab, 0 to 1, from the slider's 0 to 100.
    [[nodiscard]] static float dabStrength(int iSlider, float fStep)
    {
        return std::min(1.0f, static_cast<float>(iSlider) * 0.099999994f * fStep);
    }

private:
    float m_fStrokeTime = s_fTick;
};

} // namespace tilebuilder
