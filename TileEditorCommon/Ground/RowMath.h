#pragma once // Arithmetic on rows of samples, four at a time where the machine can.

#include <cmath>
#include <cstddef>
#include <span>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace tilebuilder
{

/// The distance from a point of samples in a row: sqrt((fFirst + i * fStep)^2 + fAcross^2).
inline void rowDistances(std::span<float> spanOut, float fFirst, float fStep, float fAcross)
{
    const float fAcross2 = fAcross * fAcross;
    size_t i = 0;
#ifdef __SSE2__
    const __m128 vecLanes = _mm_set_ps(3.0f, 2.0f, 1.0f, 0.0f);
    for (; i + 4 <= spanOut.size(); i += 4)
    {
        const __m128 vecIndex = _mm_add_ps(_mm_set1_ps(static_cast<float>(i)), vecLanes);
        const __m128 vecX = _mm_add_ps(_mm_set1_ps(fFirst), _mm_mul_ps(vecIndex, _mm_set1_ps(fStep)));
        _mm_storeu_ps(spanOut.data() + i,
                      _mm_sqrt_ps(_mm_add_ps(_mm_mul_ps(vecX, vecX), _mm_set1_ps(fAcross2))));
    }
#endif
    for (; i < spanOut.size(); ++i)
    {
        const float fX = fFirst + static_cast<float>(i) * fStep;
        spanOut[i] = std::sqrt(fX * fX + fAcross2);
    }
}

/// The factor of normals: 1 / sqrt(16 * (dx^2 + dy^2) + 256).
inline void rowInverseLengths(const float* pDx, const float* pDy, float* pOut, size_t uCount)
{
    size_t i = 0;
#ifdef __SSE2__
    for (; i + 4 <= uCount; i += 4)
    {
        const __m128 vecDx = _mm_loadu_ps(pDx + i);
        const __m128 vecDy = _mm_loadu_ps(pDy + i);
        const __m128 vecSum = _mm_add_ps(_mm_mul_ps(vecDx, vecDx), _mm_mul_ps(vecDy, vecDy));
        const __m128 vecSquare = _mm_add_ps(_mm_mul_ps(_mm_set1_ps(16.0f), vecSum), _mm_set1_ps(256.0f));
        _mm_storeu_ps(pOut + i, _mm_div_ps(_mm_set1_ps(1.0f), _mm_sqrt_ps(vecSquare)));
    }
#endif
    for (; i < uCount; ++i)
        pOut[i] = 1.0f / std::sqrt(16.0f * (pDx[i] * pDx[i] + pDy[i] * pDy[i]) + 256.0f);
}

} // namespace tilebuilder
