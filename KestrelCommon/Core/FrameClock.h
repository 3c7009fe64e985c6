#pragma once // Time and frame counters of the program.

#include <cstdint>

/// Main thread writes, any thread reads.
namespace FrameClock
{

/// Wall milliseconds of a steady clock since the program's start.
[[nodiscard]] uint32_t clockMs();

/// The same in seconds, with the clock's full resolution.
[[nodiscard]] double seconds();

/// Passes of the frame loop, rendered or not.
[[nodiscard]] uint64_t ticks();
void countTick();

/// Rendered frames.
[[nodiscard]] uint64_t frame();
void countFrame();

} // namespace FrameClock
