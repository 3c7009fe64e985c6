#include "KestrelCommon/Services/TaskManager.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"

#include <algorithm>
#include <new>
#include <oneapi/tbb/global_control.h>
#include <oneapi/tbb/info.h>
#include <oneapi/tbb/task_arena.h>
#include <oneapi/tbb/task_group.h>

TaskManager* g_kestrelTaskManager = nullptr;

struct TaskManager::Pools
{
    explicit Pools(int iStandard)
        : handle(tbb::attach{}),
          control(tbb::global_control::max_allowed_parallelism, static_cast<size_t>(iStandard)),
          lowPriority(2, 1, tbb::task_arena::priority::normal),
          background(1, 0, tbb::task_arena::priority::high)
    {
    }

    tbb::task_scheduler_handle handle;
    tbb::global_control control;
    tbb::task_arena lowPriority;
    tbb::task_arena background;
};

TaskManager::TaskManager()
{
    QM_ASSERT(g_kestrelTaskManager == nullptr);
    g_kestrelTaskManager = this;
}

TaskManager::~TaskManager()
{
    stop();
    if (g_kestrelTaskManager == this)
        g_kestrelTaskManager = nullptr;
}

int TaskManager::start()
{
    m_uThreadCount = static_cast<uint32_t>(std::max(1, tbb::info::default_concurrency()));
    UTILS::log(UTILS::concat("Starting task manager with ", m_uThreadCount, " threads"));
    m_pPools = std::make_unique<Pools>(static_cast<int>(standardConcurrency()));
    m_pPools->lowPriority.initialize();
    m_pPools->background.initialize();
    m_bStarted = true;
    return 0;
}

void TaskManager::stop()
{
    if (!m_bStarted)
        return;
    m_pPools->lowPriority.terminate();
    m_pPools->background.terminate();
    // Fails only when other libraries of the process still use the scheduler; they end with it.
    static_cast<void>(tbb::finalize(m_pPools->handle, std::nothrow));
    m_pPools.reset();
    m_bStarted = false;
}

uint32_t TaskManager::standardConcurrency() const
{
    return std::max(m_uThreadCount, 2u);
}

void TaskManager::enqueueBackground(std::function<void()> fnTask)
{
    if (QM_ASSERT(m_bStarted))
        m_pPools->background.enqueue(std::move(fnTask));
}

void TaskManager::enqueueLowPriority(std::function<void()> fnTask)
{
    if (QM_ASSERT(m_bStarted))
        m_pPools->lowPriority.enqueue(std::move(fnTask));
}
