#pragma once // Logs how long a scope took.

#include <string>

/// On destruction logs "name - milliseconds" on the profile channel.
class ScopeTimer
{
public:
    explicit ScopeTimer(std::string sName);
    ~ScopeTimer();
    ScopeTimer(const ScopeTimer&) = delete;
    ScopeTimer& operator=(const ScopeTimer&) = delete;

private:
    std::string m_sName;
    double m_fStart; ///< seconds
};
