#pragma once // The thread pools of the process.

#include <cstdint>
#include <functional>
#include <memory>

/// Sets the pools up at start and takes them down at the end; it schedules nothing itself.
/// From start() on, every parallel loop of the main thread and of its workers runs in the
/// standard pool without naming it.
///
/// Pools: standard with one thread a hardware thread, at least 2; low priority with up to 2;
///        background with 1, above normal.
class TaskManager
{
public:
    TaskManager();
    ~TaskManager();
    TaskManager(const TaskManager&) = delete;
    TaskManager& operator=(const TaskManager&) = delete;

    int start();

    /// Waits for all pools to end. Nothing may be running in them. Does nothing unless started.
    void stop();

    /// Hardware threads that start() found.
    [[nodiscard]] uint32_t threadCount() const { return m_uThreadCount; }
    /// Threads of the standard pool.
    [[nodiscard]] uint32_t standardConcurrency() const;

    /// Queues work on the background pool or the low-priority pool; it must end before stop().
    void enqueueBackground(std::function<void()> fnTask);
    void enqueueLowPriority(std::function<void()> fnTask);

private:
    struct Pools;

    uint32_t m_uThreadCount = 1;
    std::unique_ptr<Pools> m_pPools;
    bool m_bStarted = false;
};

extern TaskManager* g_kestrelTaskManager;
