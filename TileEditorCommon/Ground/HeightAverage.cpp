#include "TileEditorCommon/Ground/HeightAverage.h"

#include <cmath>
#include <cstring>
#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

namespace tilebuilder
{

namespace
{

using Pair = double __attribute__((vector_size(16)));
constexpr int s_iBlock = 8; // columns of a block, held in registers

// Below this many terms a task costs more than it saves.
constexpr int64_t s_iSerialTerms = 60'000;

double gauss(int iDistance, float fSigma)
{
    const float fScale = 0.5f / (fSigma * fSigma);
    const auto fDistance = static_cast<float>(iDistance);
    return std::exp(-fScale * fDistance * fDistance) / (2.5066283f * fSigma);
}

Pair load(const double* pFrom)
{
    Pair pair;
    std::memcpy(&pair, pFrom, sizeof(pair));
    return pair;
}

void store(double* pTo, Pair pair)
{
    std::memcpy(pTo, &pair, sizeof(pair));
}

// Adds to s_iBlock sums the kernel times values that move on by iStep for each of its terms.
void convolve(const double* pKernel, int iTerms, const double* pValues, ptrdiff_t iStep, double* pSums)
{
    Pair a = load(pSums);
    Pair b = load(pSums + 2);
    Pair c = load(pSums + 4);
    Pair d = load(pSums + 6);
    for (int i = 0; i < iTerms; ++i, pValues += iStep)
    {
        const Pair k{pKernel[i], pKernel[i]};
        a += k * load(pValues);
        b += k * load(pValues + 2);
        c += k * load(pValues + 4);
        d += k * load(pValues + 6);
    }
    store(pSums, a);
    store(pSums + 2, b);
    store(pSums + 4, c);
    store(pSums + 6, d);
}

int roundUp(int iValue, int iTo)
{
    return (iValue + iTo - 1) / iTo * iTo;
}

} // namespace

float weightedAverage(const HeightGrid& grid, int i, int j, float fRadius)
{
    const int iReach = static_cast<int>(fRadius + 1.0f);
    const float fSigma = fRadius / 3.0f;
    double fWeights = 0.0;
    double fSum = 0.0;
    for (int v = std::max(j - iReach, 0); v < std::min(j + iReach, grid.iRows); ++v)
        for (int u = std::max(i - iReach, 0); u < std::min(i + iReach, grid.iColumns); ++u)
        {
            const double fWeight = (gauss(u - i, fSigma) + gauss(v - j, fSigma)) * 0.5;
            fWeights += fWeight;
            fSum +=
                fWeight * static_cast<double>(
                              grid.spanHeights[static_cast<size_t>(v) * static_cast<size_t>(grid.iColumns) +
                                               static_cast<size_t>(u)]);
        }
    return static_cast<float>(fSum / fWeights);
}

void HeightAverager::prepare(const HeightGrid& grid, const GridRect& rect, float fRadius)
{
    m_rect = rect;
    // A window wider than the grid is clipped to it anyway.
    m_iReach =
        static_cast<int>(std::min(fRadius + 1.0f, static_cast<float>(std::max(grid.iColumns, grid.iRows))));
    m_iStride = roundUp(rect.width(), s_iBlock);

    const float fSigma = fRadius / 3.0f;
    const auto uTerms = static_cast<size_t>(2 * m_iReach);
    m_vecKernel.resize(uTerms);
    m_vecPrefix.resize(uTerms + 1);
    m_vecPrefix[0] = 0.0;
    for (int d = 0; d <= m_iReach; ++d)
    {
        const double fValue = gauss(d, fSigma);
        m_vecKernel[static_cast<size_t>(m_iReach - d)] = fValue;
        if (d < m_iReach)
            m_vecKernel[static_cast<size_t>(m_iReach + d)] = fValue;
    }
    for (size_t i = 0; i < uTerms; ++i)
        m_vecPrefix[i + 1] = m_vecPrefix[i] + m_vecKernel[i];

    const int iRows = std::min(rect.y1 + m_iReach, grid.iRows) - std::max(rect.y0 - m_iReach, 0);
    m_vecRowSums.resize(static_cast<size_t>(iRows) * static_cast<size_t>(m_iStride));
    m_vecResults.resize(static_cast<size_t>(rect.width()) * static_cast<size_t>(rect.height()));
}

// R of one row: for each column of the rectangle the sum over its clipped window along X.
void HeightAverager::sumRows(const HeightGrid& grid, int iRow)
{
    const int iFirstRow = std::max(m_rect.y0 - m_iReach, 0);
    const float* pHeights =
        grid.spanHeights.data() + static_cast<size_t>(iRow) * static_cast<size_t>(grid.iColumns);
    double* pSums =
        m_vecRowSums.data() + static_cast<size_t>(iRow - iFirstRow) * static_cast<size_t>(m_iStride);
    double fSum = 0.0;
    for (int u = std::max(m_rect.x0 - m_iReach, 0); u < std::min(m_rect.x0 + m_iReach, grid.iColumns); ++u)
        fSum += static_cast<double>(pHeights[u]);
    for (int i = m_rect.x0;;)
    {
        *pSums++ = fSum;
        if (++i == m_rect.x1)
            break;
        if (i + m_iReach - 1 < grid.iColumns)
            fSum += static_cast<double>(pHeights[i + m_iReach - 1]);
        if (i - m_iReach - 1 >= 0)
            fSum -= static_cast<double>(pHeights[i - m_iReach - 1]);
    }
    for (int i = m_rect.width(); i < m_iStride; ++i)
        *pSums++ = 0.0;
}

void HeightAverager::averageRows(const HeightGrid& grid, int iFirst, int iLast)
{
    const auto uColumns = static_cast<size_t>(grid.iColumns);
    const int iReach = m_iReach;
    const int iFirstRow = std::max(m_rect.y0 - iReach, 0);
    const int iWidth = m_rect.width();

    // C of the current row, padded by zeros so that windows needn't be clipped along X.
    const int iPadded = m_iStride + 2 * iReach;
    const int iOrigin = m_rect.x0 - iReach; // column of the first element
    thread_local std::vector<double> s_vecScratch;
    s_vecScratch.assign(static_cast<size_t>(iPadded) + static_cast<size_t>(m_iStride) * 2, 0.0);
    double* pColumnSums = s_vecScratch.data();
    double* pAlongX = pColumnSums + iPadded;
    double* pAlongY = pAlongX + m_iStride;
    const int iFrom = std::max(iOrigin, 0);
    const int iTo = std::min(iOrigin + iPadded, grid.iColumns);

    const auto addRow = [&](int iRow, double fSign)
    {
        const float* pHeights = grid.spanHeights.data() + static_cast<size_t>(iRow) * uColumns;
        for (int u = iFrom; u < iTo; ++u)
            pColumnSums[u - iOrigin] += fSign * static_cast<double>(pHeights[u]);
    };
    for (int v = std::max(iFirst - iReach, 0); v < std::min(iFirst + iReach, grid.iRows); ++v)
        addRow(v, 1.0);

    // Columns whose window along X is the whole row share their row sums, and so the result.
    const int iSharedFrom = std::clamp(grid.iColumns - iReach - m_rect.x0, 0, iWidth);
    const int iSharedTo = std::clamp(iReach - m_rect.x0 + 1, 0, iWidth);

    bool bSameWindow = false;
    for (int j = iFirst; j < iLast; ++j)
    {
        if (j > iFirst)
        {
            const bool bEnters = j + iReach - 1 < grid.iRows;
            const bool bLeaves = j - iReach - 1 >= 0;
            bSameWindow = !bEnters && !bLeaves;
            if (bEnters)
                addRow(j + iReach - 1, 1.0);
            if (bLeaves)
                addRow(j - iReach - 1, -1.0);
        }
        if (!bSameWindow)
        {
            std::fill_n(pAlongX, m_iStride, 0.0);
            for (int i = 0; i < iWidth; i += s_iBlock)
                convolve(m_vecKernel.data(), 2 * iReach, pColumnSums + i, 1, pAlongX + i);
        }

        const int iTop = std::max(j - iReach, 0);
        const int iBottom = std::min(j + iReach, grid.iRows);
        const double* pKernel = m_vecKernel.data() + (iTop - (j - iReach));
        const double* pRowSums =
            m_vecRowSums.data() + static_cast<size_t>(iTop - iFirstRow) * static_cast<size_t>(m_iStride);
        std::fill_n(pAlongY, m_iStride, 0.0);
        for (int i = 0; i < iWidth; i += s_iBlock)
        {
            if (i > iSharedFrom && i + s_iBlock <= iSharedTo)
                std::fill_n(pAlongY + i, s_iBlock, pAlongY[i - 1]);
            else
                convolve(pKernel, iBottom - iTop, pRowSums + i, m_iStride, pAlongY + i);
        }

        const double fGaussY = m_vecPrefix[static_cast<size_t>(iBottom - (j - iReach))] -
                               m_vecPrefix[static_cast<size_t>(iTop - (j - iReach))];
        const double fCountY = iBottom - iTop;
        float* pOut = m_vecResults.data() + static_cast<size_t>(j - m_rect.y0) * static_cast<size_t>(iWidth);
        for (int i = 0; i < iWidth; ++i)
        {
            const int iColumn = m_rect.x0 + i;
            const int iLeft = std::max(iColumn - iReach, 0);
            const int iRight = std::min(iColumn + iReach, grid.iColumns);
            const double fGaussX = m_vecPrefix[static_cast<size_t>(iRight - (iColumn - iReach))] -
                                   m_vecPrefix[static_cast<size_t>(iLeft - (iColumn - iReach))];
            const double fWeights = fCountY * fGaussX + (iRight - iLeft) * fGaussY;
            pOut[i] = static_cast<float>((pAlongX[i] + pAlongY[i]) / fWeights);
        }
    }
}

std::span<const float> HeightAverager::run(const HeightGrid& grid, const GridRect& rect, float fRadius)
{
    if (rect.empty() || !(fRadius > 0.0f))
        return {};
    prepare(grid, rect, fRadius);
    const int iTop = std::max(rect.y0 - m_iReach, 0);
    const int iBottom = std::min(rect.y1 + m_iReach, grid.iRows);
    const int64_t iTerms = int64_t{4} * m_iReach * rect.width() * rect.height();
    if (iTerms < s_iSerialTerms)
    {
        for (int v = iTop; v < iBottom; ++v)
            sumRows(grid, v);
        averageRows(grid, rect.y0, rect.y1);
        return m_vecResults;
    }
    tbb::parallel_for(tbb::blocked_range<int>(iTop, iBottom, 16),
                      [&](const auto& range)
                      {
                          for (int v = range.begin(); v < range.end(); ++v)
                              sumRows(grid, v);
                      });
    // Every task starts with the column sums of its first row, so tasks stay thick.
    const int iGrain = std::max(16, rect.height() / 16);
    tbb::parallel_for(tbb::blocked_range<int>(rect.y0, rect.y1, static_cast<size_t>(iGrain)),
                      [&](const auto& range) { averageRows(grid, range.begin(), range.end()); });
    return m_vecResults;
}

} // namespace tilebuilder
