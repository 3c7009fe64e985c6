#include "KestrelCommon/Core/ScopeTimer.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/FrameClock.h"

ScopeTimer::ScopeTimer(std::string sName) : m_sName(std::move(sName)), m_fStart(FrameClock::seconds()) {}

ScopeTimer::~ScopeTimer()
{
    // std::to_string writes six decimals, as "%f" does.
    const double fMilliseconds = (FrameClock::seconds() - m_fStart) * 1000.0;
    UTILS::log(UTILS::concat(m_sName, " - ", fMilliseconds, "ms"), UTILS::AttributeNormal, UTILS::LogProfile);
}
