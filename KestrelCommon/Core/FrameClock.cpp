#include "KestrelCommon/Core/FrameClock.h"

#include <atomic>
#include <chrono>

namespace FrameClock
{

namespace
{
const auto s_start = std::chrono::steady_clock::now();
std::atomic<uint64_t> s_uTicks{0};
std::atomic<uint64_t> s_uFrame{0};
} // namespace

uint32_t clockMs()
{
    const auto elapsed = std::chrono::steady_clock::now() - s_start;
    return static_cast<uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count());
}

double seconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - s_start).count();
}

uint64_t ticks()
{
    return s_uTicks;
}
void countTick()
{
    ++s_uTicks;
}
uint64_t frame()
{
    return s_uFrame;
}
void countFrame()
{
    ++s_uFrame;
}

} // namespace FrameClock
