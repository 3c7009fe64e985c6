#include "KestrelCommon/renderer/SceneSchedule.h"

namespace rend
{

namespace
{

constexpr std::array<double, 4> s_arrScales{1.0, 0.85, 0.72, 0.6};
constexpr int s_iFramesToJudge = 4;
constexpr double s_fSlowPeriod = 0.038; ///< seconds; slower ones lose pixels
constexpr double s_fFastPeriod = 0.021; ///< quicker ones win some: 1.4 times the pixels fit the slow one
constexpr double s_fPause = 0.25;       ///< a longer frame says nothing of the drawing
constexpr double s_fRest = 0.2;         ///< seconds without a change until the picture is drawn sharply

} // namespace

SceneSchedule::Size SceneSchedule::sizeFor(const SceneState& state, size_t uStep) const
{
    const auto scaled = [&](int iSide)
    { return std::max(1, static_cast<int>(static_cast<double>(iSide) * s_arrScales[uStep] + 0.5)); };
    return {scaled(state.iWidth), scaled(state.iHeight)};
}

/// From one changed frame to the next.
void SceneSchedule::judge(double fPeriod)
{
    if (!m_bAdapt || fPeriod > s_fPause)
        return;
    m_fPeriods += fPeriod;
    if (++m_iJudged < s_iFramesToJudge)
        return;
    const double fMean = m_fPeriods / m_iJudged;
    m_iJudged = 0;
    m_fPeriods = 0.0;
    if (fMean > s_fSlowPeriod && m_uStep + 1 < s_arrScales.size())
        ++m_uStep;
    else if (fMean < s_fFastPeriod && m_uStep > 0)
        --m_uStep;
}

std::optional<SceneSchedule::Size> SceneSchedule::next(const SceneState& state, double fNow, bool bPartial)
{
    const bool bFirst = !m_lastState;
    const bool bResized =
        bFirst || m_lastState->iWidth != state.iWidth || m_lastState->iHeight != state.iHeight;
    const bool bChanged = bFirst || *m_lastState != state;
    if (bChanged && m_bMoved)
        judge(fNow - m_fLastFrame);
    m_fLastFrame = fNow;
    m_bMoved = bChanged && !bResized;
    if (bChanged)
    {
        m_lastState = state;
        m_bResting = false;
        m_fLastChange = fNow;
        const size_t uStep = bResized ? 0 : m_uStep;
        m_bSharp = uStep == 0;
        return sizeFor(state, uStep);
    }
    if (m_bResting || (m_bSharp && !bPartial) || fNow - m_fLastChange < s_fRest)
        return std::nullopt;
    m_bSharp = true;
    m_bResting = true;
    return sizeFor(state, 0);
}

} // namespace rend
