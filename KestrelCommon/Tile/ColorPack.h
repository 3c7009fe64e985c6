#pragma once // Ground colours between floats and bytes.

#include <array>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace tile
{

/// Red, green, blue, alpha; usually 0 to 1.
struct ColorValue
{
    float r = 1.0f;
    float g = 1.0f;
    float b = 1.0f;
    float a = 1.0f;
    bool operator==(const ColorValue&) const = default;
};
static_assert(sizeof(ColorValue) == 16);

constexpr float ByteToFloat = 0.003921569f;

/// Each channel times 255, truncated, masked to a byte; red lowest.
[[nodiscard]] inline uint32_t packColor(const ColorValue& color)
{
#ifdef __SSE2__
    const __m128i iChannels = _mm_cvttps_epi32(_mm_mul_ps(_mm_loadu_ps(&color.r), _mm_set1_ps(255.0f)));
    const __m128i iMasked = _mm_and_si128(iChannels, _mm_set1_epi32(255));
    const __m128i iWords = _mm_packs_epi32(iMasked, iMasked);
    return static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(iWords, iWords)));
#else
    const auto byteOf = [](float fValue)
    { return static_cast<uint32_t>(static_cast<int32_t>(fValue * 255.0f)) & 255u; };
    return byteOf(color.r) | byteOf(color.g) << 8 | byteOf(color.b) << 16 | byteOf(color.a) << 24;
#endif
}

/// The four bytes of a word times ByteToFloat, lowest first, to four floats at any alignment.
inline void unpackBytes(uint32_t uWord, float* pOut)
{
#ifdef __SSE2__
    const __m128i iZero = _mm_setzero_si128();
    const __m128i iBytes = _mm_cvtsi32_si128(static_cast<int>(uWord));
    const __m128i iChannels = _mm_unpacklo_epi16(_mm_unpacklo_epi8(iBytes, iZero), iZero);
    _mm_storeu_ps(pOut, _mm_mul_ps(_mm_cvtepi32_ps(iChannels), _mm_set1_ps(ByteToFloat)));
#else
    for (int i = 0; i < 4; ++i)
        pOut[i] = static_cast<float>(uWord >> 8 * i & 255u) * ByteToFloat;
#endif
}

[[nodiscard]] inline ColorValue unpackColor(uint32_t uWord)
{
    ColorValue color;
    unpackBytes(uWord, &color.r);
    return color;
}

} // namespace tile
