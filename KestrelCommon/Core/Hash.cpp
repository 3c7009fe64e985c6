#include "KestrelCommon/Core/Hash.h"

#include <xxhash.h>

uint64_t xxh3(std::span<const std::byte> spanBytes)
{
    return XXH3_64bits(spanBytes.data(), spanBytes.size());
}
uint64_t xxh3(std::string_view sText)
{
    return XXH3_64bits(sText.data(), sText.size());
}
uint64_t xxh3(std::span<const std::byte> spanBytes, uint64_t uSeed)
{
    return XXH3_64bits_withSeed(spanBytes.data(), spanBytes.size(), uSeed);
}
