#pragma once // The program's random numbers where nothing rests on their sequence.

#include <cstdint>

/// Seeds this thread's generator.
void seedRandom(uint64_t uSeed);

/// 32 random bits.
[[nodiscard]] uint32_t random32();

/// 0 to 32767.
[[nodiscard]] inline uint32_t random15()
{
    return random32() >> 17;
}
