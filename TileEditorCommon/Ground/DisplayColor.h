#pragma once // From a painted ground colour to the one that is shown.

#include "TileEditorCommon/Ground/NoiseImage.h"

#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace tilebuilder
{

/// Red, green and blue times a factor, truncated; alpha as it is. Red lowest, in and out.
[[nodiscard]] inline uint32_t tintColor(uint32_t uColor, float fFactor)
{
#ifdef __SSE2__
    const __m128i iZero = _mm_setzero_si128();
    const __m128i iBytes = _mm_cvtsi32_si128(static_cast<int>(uColor));
    const __m128 vecChannels = _mm_cvtepi32_ps(_mm_unpacklo_epi16(_mm_unpacklo_epi8(iBytes, iZero), iZero));
    const __m128i iTinted =
        _mm_cvttps_epi32(_mm_mul_ps(vecChannels, _mm_set_ps(1.0f, fFactor, fFactor, fFactor)));
    const __m128i iWords = _mm_packs_epi32(iTinted, iTinted);
    return static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(iWords, iWords)));
#else
    const auto tint = [&](uint32_t uShift)
    { return static_cast<uint32_t>(static_cast<float>(uColor >> uShift & 255u) * fFactor) << uShift; };
    return tint(0) | tint(8) | tint(16) | (uColor & 0xFF000000u);
#endif
}

[[nodiscard]] inline uint32_t displayColor(uint32_t uColor, float fFactor)
{
    return __builtin_bswap32(tintColor(uColor, fFactor));
}

/// The colour of vertex (i, j): noise applied, red highest, alpha lowest.
[[nodiscard]] inline uint32_t displayColor(uint32_t uColor, uint32_t i, uint32_t j)
{
    return displayColor(uColor, NoiseImage::factor(j / 2, i / 2));
}

} // namespace tilebuilder
