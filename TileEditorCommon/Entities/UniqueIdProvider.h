#pragma once // Ids of run-time objects.

#include "KestrelCommon/Core/Assert.h"

#include <cstdint>

/// Gives numbers that no other object of this run has. Exactly one exists while there are entities.
class UniqueIdProvider
{
public:
    UniqueIdProvider();
    ~UniqueIdProvider();
    UniqueIdProvider(const UniqueIdProvider&) = delete;
    UniqueIdProvider& operator=(const UniqueIdProvider&) = delete;

    /// Never 0.
    [[nodiscard]] uint32_t next() { return ++m_uLast; }

private:
    uint32_t m_uLast = 0;
};

/// The one that exists, or null.
inline UniqueIdProvider* g_kestrelUniqueIdProvider = nullptr;

inline UniqueIdProvider::UniqueIdProvider()
{
    static_cast<void>(QM_ASSERT(g_kestrelUniqueIdProvider == nullptr));
    g_kestrelUniqueIdProvider = this;
}

inline UniqueIdProvider::~UniqueIdProvider()
{
    g_kestrelUniqueIdProvider = nullptr;
}
