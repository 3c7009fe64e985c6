#include "KestrelCommon/Core/Random.h"

namespace
{
thread_local uint64_t s_uState = 0x9E3779B97F4A7C15ull;
}

void seedRandom(uint64_t uSeed)
{
    s_uState = uSeed;
}

// SplitMix64 (Steele, Lea, Flood 2014): one addition and three xor-shift-multiplies a number.
uint32_t random32()
{
    uint64_t uMixed = s_uState += 0x9E3779B97F4A7C15ull;
    uMixed = (uMixed ^ (uMixed >> 30)) * 0xBF58476D1CE4E5B9ull;
    uMixed = (uMixed ^ (uMixed >> 27)) * 0x94D049BB133111EBull;
    return static_cast<uint32_t>((uMixed ^ (uMixed >> 31)) >> 32);
}
